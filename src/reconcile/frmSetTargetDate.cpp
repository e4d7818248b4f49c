#include "reconcile/frmSetTargetDate.h"

#include "base/Format.h"
#include "base/Titles.h"
#include "seams/ui/Ui.h"
#include "seams/ui/dialogs/TypedDate.h"

namespace pelkor::reconcile {

frmSetTargetDate::frmSetTargetDate(const QDate& targetDate, const QDate& ipusDate, const QDate& startDay, ui::Ui& ui)
    : Dialog(QStringLiteral("תאריך התאמה"), QStringLiteral("עד איזה תאריך להתאים את הפלקור לבנק?")),
      ipusDate_(ipusDate), startDay_(startDay), ui_(ui)
{
    addControl(QStringLiteral("txtDate"), Kind::TextBox, QStringLiteral("תאריך"), formatDate224(targetDate));
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    setFocus(QStringLiteral("txtDate"));
}

void frmSetTargetDate::onChange(const QString& name)
{
    if (name == QLatin1String("txtDate"))
        setEnabled(QStringLiteral("cmdOK"), ui::readTypedDate(control(name)).has_value());
}

void frmSetTargetDate::onClick(const QString& name)
{
    if (name == QLatin1String("cmdCancel")) {
        close(false);
        return;
    }
    if (name != QLatin1String("cmdOK"))
        return;
    const auto d = ui::readTypedDate(control(QStringLiteral("txtDate")));
    if (!d)
        return;
    if (*d <= ipusDate_) {
        ui_.msgBox(QStringLiteral("יש למלא תאריך מאוחר מתאריך האיפוס הנוכחי"), errorTitle);
        return;
    }
    if (*d >= startDay_) {
        ui_.msgBox(QStringLiteral("יש למלא תאריך מוקדם מ: ") + formatDate224(startDay_), errorTitle);
        return;
    }
    chosen_ = *d;
    close(true);
}

} // namespace pelkor::reconcile
