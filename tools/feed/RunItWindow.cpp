// RunItWindow: the window of runIt. See RunItWindow.h.
#include "RunItWindow.h"

#include "Downloader.h"

#include "app/Placement.h"
#include "base/Format.h"
#include "seams/ui/Ui.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QTextDocument>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace pelkor::feed {

RunItWindow::RunItWindow(Downloader& downloader, ui::Ui& ui, QWidget* parent)
    : QWidget(parent), downloader_(downloader), ui_(ui)
{
    setObjectName(QStringLiteral("frmRunIt"));
    setWindowTitle(feed::windowTitle());
    setLayoutDirection(Qt::RightToLeft);
    auto* layout = new QVBoxLayout(this);
    lblBank_ = new QLabel(downloader.bankLine(), this);
    QFont big = lblBank_->font();
    big.setPointSizeF(big.pointSizeF() * 1.3);
    big.setBold(true);
    lblBank_->setFont(big);
    layout->addWidget(lblBank_);
    lblFiles_ = new QLabel(this);
    lblFiles_->setWordWrap(true);
    layout->addWidget(lblFiles_);
    // One line an account: what the feed will hold of it.
    grdAccounts_ = new QTableWidget(0, 7, this);
    grdAccounts_->setObjectName(QStringLiteral("grdAccounts"));
    grdAccounts_->setAccessibleName(QStringLiteral("חשבונות"));
    grdAccounts_->setHorizontalHeaderLabels({QStringLiteral("חשבון"), QStringLiteral("שורות"), QStringLiteral("מתאריך"),
                                             QStringLiteral("עד תאריך"), QStringLiteral("זכות"), QStringLiteral("חובה"),
                                             QStringLiteral("יתרת סגירה")});
    grdAccounts_->verticalHeader()->hide();
    grdAccounts_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    grdAccounts_->horizontalHeader()->setStretchLastSection(true);
    grdAccounts_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    layout->addWidget(grdAccounts_, 2);
    // Problems, and the whole summary that scripted runs are shown.
    txtSummary_ = new QPlainTextEdit(this);
    txtSummary_->setObjectName(QStringLiteral("txtSummary"));
    txtSummary_->setAccessibleName(QStringLiteral("בעיות"));
    txtSummary_->setReadOnly(true);
    QTextOption rtl = txtSummary_->document()->defaultTextOption();
    rtl.setTextDirection(Qt::RightToLeft);
    rtl.setAlignment(Qt::AlignRight);
    txtSummary_->document()->setDefaultTextOption(rtl);
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
    // Its owner is in another process: it opens in the middle of the
    // screen, and the picker over it.
    centreOn(*this, nullptr);
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

QString RunItWindow::summaryText() const { return summary_; }

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
    summary_ = downloader_.summary();
    QStringList files;
    for (const Downloader::Loaded& l : downloader_.files())
        files << QStringLiteral("%1 (%2)").arg(QFileInfo(l.path).fileName(), formatName(l.result.format));
    lblFiles_->setText(files.isEmpty() ? QStringLiteral("לא נבחרו דפי חשבון")
                                       : QStringLiteral("דפי חשבון: ") + files.join(QStringLiteral(", ")));
    const QList<AccountSummary> accounts = downloader_.files().isEmpty() ? QList<AccountSummary>()
                                                                         : downloader_.plan().accounts;
    grdAccounts_->setRowCount(int(accounts.size()));
    for (int i = 0; i < accounts.size(); ++i) {
        const AccountSummary& a = accounts[i];
        const QStringList cells{a.account,
                                QString::number(a.rows),
                                a.first.toString(QStringLiteral("dd/MM/yyyy")),
                                a.last.toString(QStringLiteral("dd/MM/yyyy")),
                                FormatSum(a.credits),
                                FormatSum(a.debits),
                                FormatSum(a.closing) + (a.currency.isEmpty() ? QString() : QLatin1Char(' ') + a.currency)};
        for (int c = 0; c < cells.size(); ++c)
            grdAccounts_->setItem(i, c, new QTableWidgetItem(cells[c]));
    }
    QStringList problems;
    for (const QString& line : summary_.split(QLatin1Char('\n')))
        if (line.startsWith(QStringLiteral("בעיה: ")) || line.startsWith(QStringLiteral("שגיאה: ")))
            problems << line;
    txtSummary_->setPlainText(problems.isEmpty() && !accounts.isEmpty() ? QStringLiteral("לא נמצאו בעיות")
                                                                         : problems.join(QLatin1Char('\n')));
    cmdOK_->setEnabled(!downloader_.files().isEmpty() && downloader_.plan().ok());
}

void RunItWindow::confirm()
{
    if (finished_ || !cmdOK_->isEnabled())
        return;
    QString error;
    const ExitCode code = downloader_.confirm(&error);
    if (code != ExitCode::Written)
        ui_.msgBox(error, feed::windowTitle(), ui::Buttons::OK, ui::Icon::Critical);
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
