#include "charts/DailySums.h"

#include "base/Format.h"
#include "file/Display.h"
#include "seams/grid/GridModel.h"

#include <algorithm>

namespace pelkor::charts {

int DaySums::dayOf(const QDate& d) const
{
    if (!d.isValid() || nDaysInSummary == 0)
        return -1;
    const qint64 day = firstDate.daysTo(d);
    return day >= 0 && day < nDaysInSummary ? int(day) : -1;
}

namespace {

// The days from first to last, sized and zeroed.
void sizeDays(DaySums& out, const QDate& first, const QDate& last)
{
    out.firstDate = first;
    out.nDaysInSummary = first.isValid() ? int(first.daysTo(last)) + 1 : 0;
    const size_t n = size_t(out.nDaysInSummary);
    out.dailyIns.assign(n, 0);
    out.dailyOuts.assign(n, 0);
    out.dailyBalances.assign(n, 0);
}

// The walk. `open` is the first day not yet closed; a line of a later day
// closes every day before its own with the balance before it, so a day
// without lines carries the last balance on. False when a dated line lies
// outside the days (the lines were not in date order).
bool walkDays(std::vector<Line>& lines, DaySums& out)
{
    const qint64 firstJd = out.firstDate.isValid() ? out.firstDate.toJulianDay() : 0;
    const qint64 n = out.nDaysInSummary;
    double balance = 0;
    qint64 open = 0;
    for (Line& L : lines) {
        const double before = balance;
        balance = nextBalance(balance, L);
        if (!hasDayDate(L))
            continue;
        const qint64 d = L.Date.toJulianDay() - firstJd;
        if (d < 0 || d >= n)
            return false;
        out.dailyIns[size_t(d)] += L.In;
        out.dailyOuts[size_t(d)] += L.out;
        if (d > open) {
            for (qint64 k = open; k < d; ++k)
                out.dailyBalances[size_t(k)] = before;
            open = d;
        }
    }
    // The days from the last open one close on the last balance.
    for (qint64 k = open; k < n; ++k)
        out.dailyBalances[size_t(k)] = balance;
    return true;
}

} // namespace

void calcDailySummary(std::vector<Line>& lines, DaySums& out)
{
    // The lines are sorted by date: the first and the last dated lines bound
    // the days. A line out of order (a date edited and not yet reloaded)
    // shows in the walk, and then the span is found over all lines.
    QDate first, last;
    for (const Line& L : lines)
        if (hasDayDate(L)) {
            first = L.Date;
            break;
        }
    for (auto it = lines.rbegin(); it != lines.rend(); ++it)
        if (hasDayDate(*it)) {
            last = it->Date;
            break;
        }
    sizeDays(out, first, std::max(first, last));
    if (walkDays(lines, out))
        return;
    for (const Line& L : lines)
        if (hasDayDate(L)) {
            first = std::min(first, L.Date);
            last = std::max(last, L.Date);
        }
    sizeDays(out, first, last);
    walkDays(lines, out);
}

void fillDailySummary(const DaySums& days, double theCredit, grid::GridModel& g)
{
    const bool redraw = g.Redraw();
    g.setRedraw(false);
    g.clear();
    g.setCols(dayGridCols);
    g.setFixedCols(1);
    g.setFixedRows(1);
    g.setRows(days.nDaysInSummary + 1);

    // The header, as the main grid's.
    static const QString headings[dayGridCols] = {
        QString(), QStringLiteral("תאריך"), QStringLiteral("סה\"כ הכנסות "), QStringLiteral("סה\"כ הוצאות "),
        QStringLiteral("עודף/גרעון יומי"), QStringLiteral("יתרה"), QStringLiteral("פער ממסגרת")};
    for (int c = 1; c < dayGridCols; ++c) {
        g.setText(0, c, headings[c]);
        g.setStyle(0, c, grid::CellStyle{colors::header, colors::headerText, false});
    }
    for (int c = dayColIns; c <= dayColExcess; ++c)
        g.setColAlignment(c, grid::Align::Left);

    constexpr std::uint32_t netUp = rgb(180, 255, 180), netDown = rgb(255, 180, 180);
    constexpr std::uint32_t red = rgb(255, 0, 0), green = rgb(0, 255, 0);
    for (int d = 0; d < days.nDaysInSummary; ++d) {
        const int r = d + 1;
        const double in = days.dailyIns[size_t(d)], out = days.dailyOuts[size_t(d)];
        const double net = in - out, balance = days.dailyBalances[size_t(d)];
        const double excess = balance - theCredit;
        g.setText(r, dayColDate, formatDate224(days.dateOf(d)));
        g.setText(r, dayColIns, FormatSum(in));
        g.setText(r, dayColOuts, FormatSum(out));
        g.setText(r, dayColNet, FormatSum(net));
        g.setText(r, dayColBalance, FormatSum(balance));
        g.setText(r, dayColExcess, FormatSum(excess));
        if (net > 0)
            g.setBackColor(r, dayColNet, netUp);
        else if (net < 0)
            g.setBackColor(r, dayColNet, netDown);
        if (excess < 0) {
            g.setStyle(r, dayColBalance, grid::CellStyle{grid::GridModel::defaultStyle.back, red, true});
            g.setForeColor(r, dayColExcess, red);
        } else if (excess > 0) {
            g.setForeColor(r, dayColExcess, green);
        }
    }
    if (g.Row() < 1 && g.Rows() > 1)
        g.setRow(1);
    g.setRedraw(true);
    if (!redraw)
        g.setRedraw(false);
    g.refresh();
}

} // namespace pelkor::charts
