#include "app/ui/frmTzefiView.h"

#include "app/Named.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace pelkor::ui {

frmTzefiView::frmTzefiView(frmTzefi& logic, QWidget* parent) : QDialog(parent), binder_(logic, *this)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    setObjectName(logic.name());
    auto* chkTzefiLine = named(new QCheckBox(logic.label(QStringLiteral("chkTzefiLine")), this), QStringLiteral("chkTzefiLine"));
    auto* chkHashavshevet =
        named(new QCheckBox(logic.label(QStringLiteral("chkHashavshevet")), this), QStringLiteral("chkHashavshevet"));
    auto* cmdOK = named(new QPushButton(logic.label(QStringLiteral("cmdOK")), this), QStringLiteral("cmdOK"));
    auto* cmdCancel = named(new QPushButton(logic.label(QStringLiteral("cmdCancel")), this), QStringLiteral("cmdCancel"));
    cmdOK->setDefault(true);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(chkTzefiLine);
    auto* indented = new QHBoxLayout;
    indented->addSpacing(18);
    indented->addWidget(chkHashavshevet, 1);
    layout->addLayout(indented);
    layout->addStretch(1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    layout->addLayout(buttons);
    setMinimumWidth(340);

    binder_.bindCheck(QStringLiteral("chkTzefiLine"), chkTzefiLine);
    binder_.bindCheck(QStringLiteral("chkHashavshevet"), chkHashavshevet);
    binder_.bindButton(QStringLiteral("cmdOK"), cmdOK);
    binder_.bindButton(QStringLiteral("cmdCancel"), cmdCancel);
    binder_.sync();
    // The import's box shows while the line is to be a forecast.
    const auto showBox = [&logic, chkHashavshevet] {
        for (const Dialog::Control& c : logic.controls())
            if (c.name == QLatin1String("chkHashavshevet"))
                chkHashavshevet->setVisible(c.visible);
    };
    showBox();
    connect(chkTzefiLine, &QCheckBox::toggled, this, showBox);
}

} // namespace pelkor::ui
