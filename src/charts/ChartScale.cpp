#include "charts/ChartScale.h"

#include <QLocale>

#include <cmath>

namespace pelkor::charts {

AxisScale axisScale(double min, double max)
{
    AxisScale a;
    if (!std::isfinite(min) || !std::isfinite(max) || min > max)
        min = max = 0;
    if (min == max) {
        a.g = 10000;
    } else {
        const double s = (max - min) / 7;
        // p: 1 followed by as many zeros as Int(s) has digits less one (1
        // for an s under 10, which includes an s under 1).
        double p = 1;
        const double whole = std::floor(s);
        while (p * 10 <= whole && std::isfinite(p * 10))
            p *= 10;
        const double candidates[] = {std::round(p * 1.2), std::round(p * 1.5), 2 * p, 5 * p};
        a.g = 10 * p;
        for (double c : candidates)
            if (c >= s) {
                a.g = c;
                break;
            }
    }
    a.yMin = std::floor(min / a.g) * a.g;
    a.yMax = a.yMin + 8 * a.g;
    return a;
}

QString FormatChartSum(double value, int decimals)
{
    // The C locale with its grouping turned on: "," between thousands and
    // "." before decimals, whatever the machine's locale is.
    static const QLocale locale = [] {
        QLocale l = QLocale::c();
        l.setNumberOptions(QLocale::DefaultNumberOptions);
        return l;
    }();
    if (!std::isfinite(value))
        return QStringLiteral("0");
    // A value that rounds to nothing reads as 0, not as "-0".
    if (std::round(std::abs(value) * std::pow(10.0, decimals)) == 0)
        value = 0;
    const QString s = locale.toString(value, 'f', decimals);
    return s;
}

} // namespace pelkor::charts
