#include "app/reconcile/ReconcileDialogs.h"

#include "app/Named.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace pelkor::ui {

namespace {

// The row of אישור (the default) and ביטול at the foot of a dialog, bound
// to the logic's cmdOK and cmdCancel.
QHBoxLayout* okCancelRow(QDialog* d, const Dialog& logic, DialogBinder& binder)
{
    auto* cmdOK = named(new QPushButton(logic.label(QStringLiteral("cmdOK")), d), QStringLiteral("cmdOK"));
    auto* cmdCancel = named(new QPushButton(logic.label(QStringLiteral("cmdCancel")), d), QStringLiteral("cmdCancel"));
    cmdOK->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    binder.bindButton(QStringLiteral("cmdOK"), cmdOK);
    binder.bindButton(QStringLiteral("cmdCancel"), cmdCancel);
    return buttons;
}

} // namespace

frmSelectAccountView::frmSelectAccountView(reconcile::frmSelectAccount& logic, QWidget* parent)
    : QDialog(parent), binder_(logic, *this)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    auto* label = named(new QLabel(logic.label(QStringLiteral("Label1")), this), QStringLiteral("Label1"));
    label->setWordWrap(true);
    auto* list = named(new QListWidget(this), QStringLiteral("List1"), QStringLiteral("חשבונות הבנק"));
    // Account numbers read left to right.
    list->setLayoutDirection(Qt::LeftToRight);
    for (const auto& c : logic.controls())
        if (c.name == QLatin1String("List1"))
            list->addItems(c.items);
    if (list->count() > 0)
        list->setCurrentRow(0);
    auto* buttons = okCancelRow(this, logic, binder_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(list, 1);
    layout->addLayout(buttons);
    setMinimumWidth(420);

    connect(list, &QListWidget::currentTextChanged, this,
            [&logic](const QString& text) { logic.setControl(QStringLiteral("List1"), text); });
    connect(list, &QListWidget::itemDoubleClicked, this, [this, &logic](QListWidgetItem* item) {
        logic.setControl(QStringLiteral("List1"), item->text());
        logic.List1_DblClick();
        binder_.sync();
    });
    binder_.sync();
}

frmSetTargetDateView::frmSetTargetDateView(reconcile::frmSetTargetDate& logic, QWidget* parent)
    : QDialog(parent), binder_(logic, *this)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    auto* text = new QLabel(logic.text(), this);
    text->setWordWrap(true);
    auto* txtDate = named(new QLineEdit(this), QStringLiteral("txtDate"), QStringLiteral("תאריך ההתאמה"));
    txtDate->setPlaceholderText(QStringLiteral("dd/mm/yyyy"));
    auto* buttons = okCancelRow(this, logic, binder_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(txtDate);
    layout->addLayout(buttons);
    setMinimumWidth(320);
    binder_.bindText(QStringLiteral("txtDate"), txtDate);
    binder_.sync();
}

frmMatchSettingView::frmMatchSettingView(reconcile::frmMatchSetting& logic, QWidget* parent)
    : QDialog(parent), binder_(logic, *this)
{
    setObjectName(logic.name());
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    auto* box = named(new QLineEdit(this), logic.box(), logic.caption());
    auto* buttons = okCancelRow(this, logic, binder_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(logic.caption(), this));
    layout->addWidget(box);
    layout->addLayout(buttons);
    setMinimumWidth(280);
    binder_.bindText(logic.box(), box);
    binder_.sync();
    // The current value is selected, so that typing replaces it.
    box->selectAll();
}

frmBalanceView::frmBalanceView(reconcile::frmBalance& logic, QWidget* parent)
    : QDialog(parent), binder_(logic, *this)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    auto* layout = new QVBoxLayout(this);
    // The two labels read as one sentence.
    auto* text = named(new QLabel(logic.label(QStringLiteral("Label1")) + logic.label(QStringLiteral("Label2")), this),
                       QStringLiteral("Label1"));
    text->setWordWrap(true);
    layout->addWidget(text);
    const QString hint = logic.label(QStringLiteral("lblParting"));
    if (!hint.isEmpty()) {
        auto* parting = named(new QLabel(hint, this), QStringLiteral("lblParting"));
        parting->setStyleSheet(QStringLiteral("color: #a00000"));
        layout->addWidget(parting);
    }
    auto* frame = new QGroupBox(this);
    auto* options = new QVBoxLayout(frame);
    for (const char* name : {"optDoNothing", "optBalancingLine", "optNewPelkor", "optPrevDay"}) {
        const QString n = QString::fromLatin1(name);
        auto* opt = named(new QRadioButton(logic.label(n), frame), n);
        options->addWidget(opt);
        binder_.bindOption(n, opt);
    }
    layout->addWidget(frame);
    auto* cmdOK = named(new QPushButton(logic.label(QStringLiteral("cmdOK")), this), QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    layout->addLayout(buttons);
    setMinimumWidth(520);
    binder_.bindButton(QStringLiteral("cmdOK"), cmdOK);
    binder_.sync();
}

} // namespace pelkor::ui
