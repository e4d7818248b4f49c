// frmNoIpus: the handlers of the no-ipus-line dialog.
#include "seams/ui/dialogs/frmNoIpus.h"

#include "seams/ui/dialogs/TypedDate.h"

namespace pelkor::ui {

frmNoIpus::frmNoIpus()
    : Dialog(QStringLiteral("שורת איפוס"),
             QStringLiteral("מערכת הפלקור לא מצאה שורת איפוס בקובץ הפלקור שבחרת. "
                            "יש לבחור תאריך משוער בו נעשה איפוס אחרון מול חשבון הבנק."))
{
    addControl(QStringLiteral("opt1stLine"), Kind::Option, QStringLiteral("השורה הראשונה בפלקור"));
    addControl(QStringLiteral("optDate"), Kind::Option, QStringLiteral("תאריך"));
    addControl(QStringLiteral("txtDate"), Kind::TextBox);
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    setEnabled(QStringLiteral("cmdOK"), false);
}

void frmNoIpus::onClick(const QString& name)
{
    if (name == QLatin1String("opt1stLine")) {
        setEnabled(QStringLiteral("cmdOK"), true);
    } else if (name == QLatin1String("optDate")) {
        setFocus(QStringLiteral("txtDate"));
    } else if (name == QLatin1String("cmdOK")) {
        reply_ = isOn(control(QStringLiteral("opt1stLine"))) ? QStringLiteral("*")
                                                             : control(QStringLiteral("txtDate"));
        close(true);
    }
}

void frmNoIpus::onChange(const QString& name)
{
    if (name == QLatin1String("txtDate"))
        setEnabled(QStringLiteral("cmdOK"), readTypedDate(control(name)).has_value());
}

} // namespace pelkor::ui
