#include "app/ui/frmSubtractFromTzefiView.h"

#include "app/Named.h"
#include "app/web/QtWebView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace pelkor::ui {

frmSubtractFromTzefiView::frmSubtractFromTzefiView(frmSubtractFromTzefi& logic, QWidget* parent)
    : QDialog(parent), logic_(logic), binder_(logic, *this)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    setObjectName(logic.name());

    auto* text = new QLabel(logic.text(), this);
    auto* imgArrow = named(new QToolButton(this), QStringLiteral("imgArrow"), QStringLiteral("הצג או הסתר את השורות"));
    imgArrow->setArrowType(Qt::DownArrow);
    imgArrow->setAutoRaise(true);
    wb_ = named(new web::QtWebView(this), QStringLiteral("wb"));
    wb_->setSpokenName(QStringLiteral("שורות התחזית"));
    auto* cmdOK = named(new QPushButton(logic.label(QStringLiteral("cmdOK")), this), QStringLiteral("cmdOK"));
    auto* cmdCancel = named(new QPushButton(logic.label(QStringLiteral("cmdCancel")), this), QStringLiteral("cmdCancel"));
    cmdOK->setDefault(true);

    auto* top = new QHBoxLayout;
    top->addWidget(text, 1);
    top->addWidget(imgArrow);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(wb_, 1);
    layout->addLayout(buttons);
    // The page's four columns and separators are 376 pixels wide; the rest
    // is the scroll bar and the margins.
    resize(440, 320);

    binder_.bindButton(QStringLiteral("imgArrow"), imgArrow);
    binder_.bindButton(QStringLiteral("cmdOK"), cmdOK);
    binder_.bindButton(QStringLiteral("cmdCancel"), cmdCancel);
    logic_.attachView(*wb_);
    logic_.changed = [this, imgArrow] {
        wb_->setVisible(logic_.isWbVisible());
        imgArrow->setArrowType(logic_.isWbVisible() ? Qt::DownArrow : Qt::LeftArrow);
        binder_.sync();
    };
    binder_.sync();
}

frmSubtractFromTzefiView::~frmSubtractFromTzefiView()
{
    // The logic outlives this window; it must not call into it.
    logic_.changed = {};
    logic_.detachView();
}

void frmSubtractFromTzefiView::showEvent(QShowEvent* e)
{
    QDialog::showEvent(e);
    // Timer1: the window exists, so the page may load and run its scripts.
    QTimer::singleShot(0, this, [this] { logic_.Timer1_Timer(); });
}

} // namespace pelkor::ui
