#include "reconcile/frmMatchSettings.h"

#include "base/Titles.h"
#include "seams/ui/Ui.h"

namespace pelkor::reconcile {

frmMatchSetting::frmMatchSetting(QString name, const QString& caption, QString box, int current, int low, int high,
                                 ui::Ui& ui)
    : Dialog(caption, caption), name_(std::move(name)), box_(std::move(box)), value_(current), low_(low), high_(high),
      ui_(ui)
{
    addControl(box_, Kind::TextBox, caption, QString::number(current));
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    setFocus(box_);
}

frmMatchSetting frmMatchSetting::maxDayDiff(int current, ui::Ui& ui)
{
    return frmMatchSetting(QStringLiteral("frmMaxDayDiffForMatch"), QStringLiteral("הבדל ימים מירבי להתאמה"),
                           QStringLiteral("txtMaxDiff"), current, 0, 40, ui);
}

frmMatchSetting frmMatchSetting::nDigits(int current, ui::Ui& ui)
{
    return frmMatchSetting(QStringLiteral("frmNDigitsForConfirmComparison"),
                           QStringLiteral("מספר ספרות להשוואת אסמכתאות"), QStringLiteral("txtNDigits"), current, 3, 8,
                           ui);
}

void frmMatchSetting::onClick(const QString& name)
{
    if (name == QLatin1String("cmdCancel")) {
        close(false);
        return;
    }
    if (name != QLatin1String("cmdOK"))
        return;
    bool ok = false;
    const int v = control(box_).trimmed().toInt(&ok);
    if (!ok) {
        ui_.msgBox(QStringLiteral("יש למלא מספר"), errorTitle);
        return;
    }
    if (v < low_ || v > high_) {
        ui_.msgBox(QStringLiteral("על המספר להיות בין %1 ל- %2").arg(low_).arg(high_), errorTitle);
        return;
    }
    value_ = v;
    close(true);
}

} // namespace pelkor::reconcile
