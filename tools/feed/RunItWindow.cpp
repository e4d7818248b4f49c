// RunItWindow: the window of runIt. See RunItWindow.h.
#include "RunItWindow.h"

#include "Downloader.h"

#include "seams/ui/Ui.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace pelkor::feed {

RunItWindow::RunItWindow(Downloader& downloader, ui::Ui& ui, QWidget* parent)
    : QWidget(parent), downloader_(downloader), ui_(ui)
{
    setObjectName(QStringLiteral("frmRunIt"));
    setWindowTitle(windowTitle());
    setLayoutDirection(Qt::RightToLeft);
    auto* layout = new QVBoxLayout(this);
    lblBank_ = new QLabel(downloader.bankLine(), this);
    QFont big = lblBank_->font();
    big.setPointSizeF(big.pointSizeF() * 1.3);
    big.setBold(true);
    lblBank_->setFont(big);
    layout->addWidget(lblBank_);
    txtSummary_ = new QPlainTextEdit(this);
    txtSummary_->setObjectName(QStringLiteral("txtSummary"));
    txtSummary_->setReadOnly(true);
    txtSummary_->setLayoutDirection(Qt::RightToLeft);
    layout->addWidget(txtSummary_, 1);
    auto* buttons = new QHBoxLayout;
    cmdOpen_ = new QPushButton(QStringLiteral("בחר דפי חשבון..."), this);
    cmdOK_ = new QPushButton(QStringLiteral("אישור"), this);
    cmdCancel_ = new QPushButton(QStringLiteral("ביטול"), this);
    cmdOpen_->setObjectName(QStringLiteral("cmdOpen"));
    cmdOK_->setObjectName(QStringLiteral("cmdOK"));
    cmdCancel_->setObjectName(QStringLiteral("cmdCancel"));
    buttons->addWidget(cmdOpen_);
    buttons->addStretch(1);
    buttons->addWidget(cmdOK_);
    buttons->addWidget(cmdCancel_);
    layout->addLayout(buttons);
    connect(cmdOpen_, &QPushButton::clicked, this, [this] { pick(); });
    connect(cmdOK_, &QPushButton::clicked, this, [this] { confirm(); });
    connect(cmdCancel_, &QPushButton::clicked, this, [this] { close(); });
    resize(640, 360);
    refresh();
}

void RunItWindow::start()
{
    show();
    QTimer::singleShot(0, this, [this] { pick(); });
}

void RunItWindow::click(const QString& control)
{
    if (control == QLatin1String("cmdOpen"))
        pick();
    else if (control == QLatin1String("cmdOK"))
        confirm();
    else if (control == QLatin1String("cmdCancel"))
        close();
}

QString RunItWindow::summaryText() const { return txtSummary_->toPlainText(); }

void RunItWindow::pick()
{
    downloader_.pickFiles();
    refresh();
    ui_.windowReady(objectName(), summaryText(), [this](const QString& control) {
        QTimer::singleShot(0, this, [this, control] { click(control); });
    });
}

void RunItWindow::refresh()
{
    txtSummary_->setPlainText(downloader_.summary());
    cmdOK_->setEnabled(!downloader_.files().isEmpty() && downloader_.plan().ok());
}

void RunItWindow::confirm()
{
    if (finished_ || !cmdOK_->isEnabled())
        return;
    QString error;
    const ExitCode code = downloader_.confirm(&error);
    if (code != ExitCode::Written)
        ui_.msgBox(error, windowTitle(), ui::Buttons::OK, ui::Icon::Critical);
    finish(int(code));
}

void RunItWindow::finish(int code)
{
    finished_ = true;
    hide();
    QCoreApplication::exit(code);
}

void RunItWindow::closeEvent(QCloseEvent* e)
{
    if (!finished_)
        finish(int(downloader_.close()));
    e->accept();
}

} // namespace pelkor::feed
