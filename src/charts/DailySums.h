// DailySums: the ledger folded into calendar days, and the day grid that
// shows them.
//
// One entry a day from the first dated line to the last, both included:
// the day's income, its expenses, and the balance at its end. A day
// without lines carries the balance of the day before. The grid holds a
// row a day (day d in row d + 1) with the date, the two sums, the day's
// net, the balance and the balance's excess over the credit limit.
//
// Not here: the chart and the window's state (charts/DailySummary).
#pragma once

#include "file/Lines.h"

#include <QDate>
#include <vector>

namespace pelkor {
namespace grid { class GridModel; }

namespace charts {

struct DaySums {
    QDate firstDate;                 // day 0
    int nDaysInSummary = 0;
    std::vector<double> dailyIns, dailyOuts, dailyBalances;
    QDate dateOf(int day) const { return firstDate.addDays(day); }
    // The day of a date, -1 for a date outside the days or no date.
    int dayOf(const QDate& d) const;
};

// Whether a line has a date of its own (not the empty date, not a new
// line's date still unfilled).
inline bool hasDayDate(const Line& L) { return L.Date.isValid() && L.Date > newLineNoDate(); }

// Folds the lines (in display order, sorted by date) into days. Every
// line's running balance is made afresh on the way (nextBalance, as the
// grid's balances are), lines without a date included; those lines count
// in the balances but in no day. No dated line: no days.
void calcDailySummary(std::vector<Line>& lines, DaySums& out);

// The day grid's columns (column 0 is fixed, row 0 the header).
inline constexpr int dayColDate = 1;
inline constexpr int dayColIns = 2;
inline constexpr int dayColOuts = 3;
inline constexpr int dayColNet = 4;
inline constexpr int dayColBalance = 5;
inline constexpr int dayColExcess = 6;
inline constexpr int dayGridCols = 7;

// Writes the days into g with its redraw off: the header, a row a day, and
// the colours: the net green above 0 and pink below, the balance red and
// bold under the credit limit, the excess red below 0 and green above.
void fillDailySummary(const DaySums& days, double theCredit, grid::GridModel& g);

} // namespace charts
} // namespace pelkor
