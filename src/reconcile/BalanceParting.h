// Where the file and the bank part: the latest run of days, ending at the
// zeroing date, on which the two running balances disagree, and its first
// day.
//
// Each side is its rows in date order, each with the running balance after
// it. A day's balance on a side is that of its last row on or before the
// day; a day is looked at only when both sides have a row on or before it.
// Walking the days back from upTo, the parting day is the earliest of the
// unbroken run of disagreeing days; the walk stops at the first day on which
// the balances agree again (within an agora).
#pragma once

#include <QDate>
#include <QString>

#include <optional>
#include <vector>

namespace pelkor::reconcile {

struct DatedBalance {
    QDate date;
    double balance = 0;
};

struct Parting {
    QDate date;
    double diff = 0;   // the bank's balance less the file's on that day
};

std::optional<Parting> findParting(const std::vector<DatedBalance>& file, const std::vector<DatedBalance>& bank,
                                   const QDate& upTo);
// "היתרות נפרדות ב-<date>: הפרש <sum>"
QString partingText(const Parting& p);

} // namespace pelkor::reconcile
