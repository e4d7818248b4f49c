#include "reconcile/BalanceParting.h"

#include "base/Format.h"

#include <cmath>

namespace pelkor::reconcile {

namespace {

// The index of the last row on or before d, from a start at or after it
// (the walk goes back, so each side's index only falls); -1 when none.
int lastOnOrBefore(const std::vector<DatedBalance>& rows, int from, const QDate& d)
{
    while (from >= 0 && rows[size_t(from)].date > d)
        --from;
    return from;
}

} // namespace

std::optional<Parting> findParting(const std::vector<DatedBalance>& file, const std::vector<DatedBalance>& bank,
                                   const QDate& upTo)
{
    int f = lastOnOrBefore(file, int(file.size()) - 1, upTo);
    int b = lastOnOrBefore(bank, int(bank.size()) - 1, upTo);
    std::optional<Parting> parting;
    QDate day = upTo;
    while (f >= 0 && b >= 0) {
        const double diff = bank[size_t(b)].balance - file[size_t(f)].balance;
        if (std::fabs(diff) <= 0.01 + 1e-9)
            break;
        // The balances on this day are those of rows dated on or before
        // it: the run of disagreement reaches back to the later of the two.
        day = std::max(file[size_t(f)].date, bank[size_t(b)].date);
        parting = Parting{day, diff};
        const QDate before = day.addDays(-1);
        f = lastOnOrBefore(file, f, before);
        b = lastOnOrBefore(bank, b, before);
    }
    return parting;
}

QString partingText(const Parting& p)
{
    // The sum stands in a left-to-right isolate, so that in the Hebrew line
    // its minus shows behind the digits, as in the grid.
    return QStringLiteral("היתרות נפרדות ב-%1: הפרש \u2066%2\u2069").arg(formatDate224(p.date), FormatSum(p.diff));
}

} // namespace pelkor::reconcile
