// frmPassword: the password dialog and its loop.
#include "seams/ui/dialogs/frmPassword.h"

#include "seams/ui/Ui.h"

namespace pelkor::ui {

frmPassword::frmPassword(const QString& fileName)
    : Dialog(QStringLiteral("סיסמה - ") + fileName, QStringLiteral("הקלד סיסמה:"))
{
    addControl(QStringLiteral("txtPassw"), Kind::TextBox).secret = true;
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    setFocus(QStringLiteral("txtPassw"));
}

void frmPassword::onClick(const QString& name)
{
    if (name == QLatin1String("cmdOK")) {
        result_ = control(QStringLiteral("txtPassw"));
        close(true);
    } else if (name == QLatin1String("cmdCancel")) {
        result_ = canceledText();
        close(false);
    }
}

void frmPassword::onDismiss()
{
    result_ = canceledText();
}

bool getPassword(Ui& ui, const QString& storedPassword, const QString& fileName)
{
    if (storedPassword.isEmpty())
        return true;
    for (;;) {
        frmPassword dlg(fileName);
        ui.runDialog(dlg);
        if (!dlg.isClosed())
            dlg.dismiss();
        if (dlg.result() == frmPassword::canceledText())
            return false;
        if (dlg.result() == storedPassword)
            return true;
        ui.msgBox(QStringLiteral("הסיסמה שגויה"), QStringLiteral("פלקור"));
    }
}

} // namespace pelkor::ui
