#include "reports/frmConvert.h"

#include "reports/BankReport.h"
#include "seams/ui/Ui.h"

#include <cmath>

namespace pelkor::reports {

namespace {

const QString group = QStringLiteral("conv");

QString fourDecimals(double v) { return QString::number(std::fabs(v), 'f', 4); }

} // namespace

frmConvert::frmConvert(ui::Ui& ui, double rate) : Dialog(QStringLiteral("המרת מטבעות"), QString()), ui_(ui), rate_(rate)
{
    addControl(QStringLiteral("optNone"), Kind::Option, QStringLiteral("ללא המרה")).group = group;
    addControl(QStringLiteral("optMult"), Kind::Option, QStringLiteral("מוכפל ב:")).group = group;
    addControl(QStringLiteral("txtMult"), Kind::TextBox, QStringLiteral("מוכפל ב"));
    addControl(QStringLiteral("optDiv"), Kind::Option, QStringLiteral("מחולק ב:")).group = group;
    addControl(QStringLiteral("txtDiv"), Kind::TextBox, QStringLiteral("מחולק ב"));
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    // initConversionDialog: both boxes empty, the option and box of the rate.
    if (rate > 0) {
        setValue(QStringLiteral("optMult"), QStringLiteral("1"));
        setValue(QStringLiteral("txtMult"), fourDecimals(rate));
        setFocus(QStringLiteral("txtMult"));
    } else if (rate < 0) {
        setValue(QStringLiteral("optDiv"), QStringLiteral("1"));
        setValue(QStringLiteral("txtDiv"), fourDecimals(rate));
        setFocus(QStringLiteral("txtDiv"));
    } else {
        setValue(QStringLiteral("optNone"), QStringLiteral("1"));
        setFocus(QStringLiteral("optNone"));
    }
}

void frmConvert::onChange(const QString& name)
{
    // Typing in a box chooses its option.
    const QString option = name == QLatin1String("txtMult") ? QStringLiteral("optMult")
                         : name == QLatin1String("txtDiv")  ? QStringLiteral("optDiv")
                                                            : QString();
    if (option.isEmpty() || isOn(control(option)))
        return;
    for (const char* o : {"optNone", "optMult", "optDiv"})
        setValue(QLatin1String(o), QLatin1String(o) == option ? QStringLiteral("1") : QStringLiteral("0"));
}

void frmConvert::onClick(const QString& name)
{
    if (name == QLatin1String("optMult"))
        return setFocus(QStringLiteral("txtMult"));
    if (name == QLatin1String("optDiv"))
        return setFocus(QStringLiteral("txtDiv"));
    if (name == QLatin1String("cmdCancel"))
        return close(false);
    if (name != QLatin1String("cmdOK"))
        return;
    if (isOn(control(QStringLiteral("optNone")))) {
        rate_ = 0;
        return close(true);
    }
    const bool mult = isOn(control(QStringLiteral("optMult")));
    const QString box = mult ? QStringLiteral("txtMult") : QStringLiteral("txtDiv");
    double v = 0;
    QString message;
    if (!parseRate(control(box), v, message)) {
        ui_.msgBox(message, QStringLiteral("שגיאה"));
        return setFocus(box);
    }
    rate_ = mult ? v : -v;
    close(true);
}

} // namespace pelkor::reports
