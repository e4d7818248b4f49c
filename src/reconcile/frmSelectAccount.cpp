#include "reconcile/frmSelectAccount.h"

namespace pelkor::reconcile {

frmSelectAccount::frmSelectAccount(const QString& label, const QStringList& accounts)
    : Dialog(QStringLiteral("פלקור"), label)
{
    addControl(QStringLiteral("Label1"), Kind::Label, label);
    addControl(QStringLiteral("List1"), Kind::ListBox, QStringLiteral("חשבונות"),
               accounts.isEmpty() ? QString() : accounts.first())
        .items = accounts;
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    setFocus(QStringLiteral("List1"));
}

void frmSelectAccount::List1_DblClick()
{
    onClick(QStringLiteral("cmdOK"));
}

void frmSelectAccount::onClick(const QString& name)
{
    if (name == QLatin1String("cmdOK")) {
        chosen_ = control(QStringLiteral("List1")).trimmed();
        close(!chosen_.isEmpty());
    } else if (name == QLatin1String("cmdCancel")) {
        chosen_.clear();
        close(false);
    }
}

} // namespace pelkor::reconcile
