// The charts' figures, on the lines a working run loaded:
//   days     calcDailySummary (every line's balance afresh, the sums of each
//            calendar day, the balances carried over empty days) against a
//            bare loop summing the same lines' In and out by day. Target 2.
//   chart    one balance chart of 61 points drawn on a 1200 x 400 surface
//            (frame, grid, labels, zoned line, dots, dates). An absolute
//            figure, a sanity line only: it should stay under 5 ms.
#include "BenchSupport.h"
#include "charts/DailySums.h"
#include "charts/clsBackBuffer.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

using namespace pelkor;

namespace {

double bareDays(const std::vector<Line>& lines, std::vector<double>& ins, std::vector<double>& outs)
{
    QElapsedTimer t;
    t.start();
    QDate first;
    for (const Line& L : lines)
        if (charts::hasDayDate(L)) {
            first = L.Date;
            break;
        }
    const qint64 firstJd = first.toJulianDay();
    std::fill(ins.begin(), ins.end(), 0);
    std::fill(outs.begin(), outs.end(), 0);
    for (const Line& L : lines) {
        if (!charts::hasDayDate(L))
            continue;
        const size_t d = size_t(L.Date.toJulianDay() - firstJd);
        ins[d] += L.In;
        outs[d] += L.out;
    }
    return double(t.nsecsElapsed()) / 1e6;
}

} // namespace

int chartsFigure(std::vector<Line>& lines, int runs)
{
    charts::DaySums days;
    charts::calcDailySummary(lines, days);
    std::vector<double> ins(size_t(days.nDaysInSummary)), outs(ins.size());
    const auto [mine, base] = bench::bestOf(
        std::max(runs, 5),
        [&] {
            QElapsedTimer t;
            t.start();
            charts::calcDailySummary(lines, days);
            return double(t.nsecsElapsed()) / 1e6;
        },
        [&] { return bareDays(lines, ins, outs); }, false);
    if (days.dailyIns != ins || days.dailyOuts != outs)
        std::fprintf(stderr, "days: the sums differ from the bare loop's\n");
    bench::printFigure(QStringLiteral("days %1 lines ms").arg(lines.size()), mine, base, "2.00", 2);

    // The chart needs the desktop's fonts: only under a GUI application.
    if (!QCoreApplication::instance()->inherits("QGuiApplication"))
        return 0;
    charts::clsBackBuffer surface;
    surface.Create(1200, 400, 0, 0, QCoreApplication::applicationDirPath() + QStringLiteral("/images/groupBorder.png"));
    QStringList xs;
    std::vector<double> ys;
    for (int d = 0; d < 61; ++d) {
        xs << QStringLiteral("%1/3/25").arg(d % 31 + 1);
        ys.push_back(std::round(20000 * std::cos(d / 9.0) - 150 * d));
    }
    surface.crdt = -15000;
    double chart = 1e300;
    for (int r = 0; r < 20; ++r) {
        QElapsedTimer t;
        t.start();
        surface.updateBalanceGraph(xs, ys, QStringLiteral("גרף יתרה יומי"));
        chart = std::min(chart, double(t.nsecsElapsed()) / 1e6);
    }
    std::printf("%-28s %12.2f %12s %8s %8s\n", "chart 61 points ms", chart, "-", "-", "< 5 ms");
    std::fflush(stdout);
    return 0;
}
