#include "app/reports/frmInvoiceKindsView.h"

#include "app/Named.h"
#include "app/web/QtWebView.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace pelkor::ui {

frmInvoiceKindsView::frmInvoiceKindsView(reports::frmInvoiceKinds& logic, QWidget* parent)
    : QDialog(parent), logic_(logic), binder_(logic, *this)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    setObjectName(logic.name());

    auto* wb0 = named(new web::QtWebView(this), QStringLiteral("wbKinds0"));
    wb0->setSpokenName(QStringLiteral("סיווגי הכנסות"));
    auto* wb1 = named(new web::QtWebView(this), QStringLiteral("wbKinds1"));
    wb1->setSpokenName(QStringLiteral("סיווגי הוצאות"));
    auto* cmdOK = named(new QPushButton(logic.label(QStringLiteral("cmdOK")), this), QStringLiteral("cmdOK"));
    auto* cmdCancel = named(new QPushButton(logic.label(QStringLiteral("cmdCancel")), this), QStringLiteral("cmdCancel"));
    cmdOK->setDefault(true);

    auto* pages = new QHBoxLayout;
    pages->addWidget(wb0, 1);
    pages->addWidget(wb1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(pages, 1);
    layout->addLayout(buttons);
    // Two 171-pixel lists with their margins and scroll bars.
    resize(480, 480);

    binder_.bindButton(QStringLiteral("cmdOK"), cmdOK);
    binder_.bindButton(QStringLiteral("cmdCancel"), cmdCancel);
    logic_.attachViews(*wb0, *wb1);
    binder_.sync();
}

frmInvoiceKindsView::~frmInvoiceKindsView() { logic_.detachViews(); }

void frmInvoiceKindsView::showEvent(QShowEvent* e)
{
    QDialog::showEvent(e);
    // timerKindLists: the pages load once the window exists.
    QTimer::singleShot(200, this, [this] { logic_.timerKindLists_Timer(); });
}

} // namespace pelkor::ui
