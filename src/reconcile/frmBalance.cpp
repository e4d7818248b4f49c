#include "reconcile/frmBalance.h"

namespace pelkor::reconcile {

namespace {
const QStringList options{QStringLiteral("optDoNothing"), QStringLiteral("optBalancingLine"), QStringLiteral("optNewPelkor"),
                          QStringLiteral("optPrevDay")};
}

frmBalance::frmBalance(int bcr, bool isNewPelkor, const QString& partingHint)
    : Dialog(QStringLiteral("יתרה לא תואמת"), QString())
{
    addControl(QStringLiteral("Label1"), Kind::Label,
               QStringLiteral("היתרה בשורת האיפוס (השורה מעל הפס האדום) בפלקור אינה תואמת ליתרה בשורה המקבילה בחשבון הבנק, או שלא"));
    addControl(QStringLiteral("Label2"), Kind::Label,
               QStringLiteral(" נמצאה שורה בעלת תאריך זהה לשורת האיפוס. על מנת לעבור למסך התאמת הבנק יש לבצע אחת מהפעולות הבאות: "));
    addControl(QStringLiteral("lblParting"), Kind::Label, partingHint).visible = !partingHint.isEmpty();
    const QStringList captions{
        QStringLiteral("תן לי לנסות להתאים את השורות באופן ידני ללא התערבות התוכנה."),
        QStringLiteral("הוסף שורה לאיזון היתרה באופן מלאכותי על מנת לעבור למסך ההתאמה האוטומטי."),
        QStringLiteral("זהו פלקור חדש  - הוסף את התנועות המופיעות בבנק אל הפלקור והתאם את תאריך השורה ההתחלתית."),
        QStringLiteral("העבר את שורת האיפוס ליום האחרון בו היתרות היו תואמות (עד 10 ימים אחורה)."),
    };
    for (int i = 0; i < options.size(); ++i)
        addControl(options[i], Kind::Option, captions[i], i == 0 ? QStringLiteral("1") : QStringLiteral("0")).group =
            QStringLiteral("opt");
    setEnabled(QStringLiteral("optBalancingLine"), bcr == 2);
    setEnabled(QStringLiteral("optPrevDay"), bcr == 2);
    setEnabled(QStringLiteral("optNewPelkor"), isNewPelkor);
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    setEnabled(QStringLiteral("cmdOK"), false);
    setFocus(QStringLiteral("optDoNothing"));
}

QString frmBalance::choice() const
{
    if (!accepted())
        return options.first();
    for (const QString& o : options)
        if (isOn(control(o)))
            return o;
    return options.first();
}

void frmBalance::onClick(const QString& name)
{
    if (name.startsWith(QLatin1String("opt")))
        setEnabled(QStringLiteral("cmdOK"), true);
    else if (name == QLatin1String("cmdOK"))
        close(true);
}

} // namespace pelkor::reconcile
