// PeriodSums: what a period report reads of its file.
//
// The dates of the first and last line, the opening balance before the
// range, the kinds' and the types' sums by period, and the type catalogue
// of the lists. Each is one statement on the given connection, grouped by
// day in the store, so a report over a million lines carries a few
// thousand rows into memory, not the lines. The lines of a merged file
// carry their member file's index in zee and are converted by that file's
// rate (reallyConvNum), the opening balance too.
//
// Not here: the arithmetic on the sums (PeriodTotals), the pages.
#pragma once

#include "reports/PeriodTotals.h"

#include <QDate>
#include <vector>

namespace pelkor::store { class Connection; }

namespace pelkor::reports {

// A merged file's conversion: the rate of each member file by its index
// (zee). Empty for a plain file.
struct MergedRates {
    bool isMerged = false;
    std::vector<double> convs;
    double rateOf(int index) const { return index >= 0 && size_t(index) < convs.size() ? convs[size_t(index)] : 0.0; }
};

// "SELECT min([date]),max([date]) FROM pelkor": invalid dates when the
// file has no lines.
struct DateSpan {
    QDate min, max;
    bool isEmpty() const { return !min.isValid() || !max.isValid(); }
};
DateSpan readDateSpan(store::Connection& cn);

// The sum of in less out of every line before fromDate (0 when none).
double readOpeningBalance(store::Connection& cn, const QDate& fromDate, const MergedRates& m);

// The sums of the range by kind into kinds (reset to nCategories rows and
// the periods, the opening balance kept) and, when types is given, by type
// into types->sums: one statement grouped by day, kind and type. An income
// row adds in - out, an expense row out - in, so a refund reduces its row.
// A line whose type has no row in Types (or whose type's category is
// missing) is in no type. Returns how many groups had a kind that is no
// kind of the file (left out of the kinds).
int readPeriodSums(store::Connection& cn, const Periods& periods, int nCategories, const MergedRates& m, SumSet& kinds,
                   TypeTotals* types);

// The lists' categories and types, expense categories first, then by name;
// types in their categories' order, then by name.
void readTypeCatalogue(store::Connection& cn, TypeTotals& t);

} // namespace pelkor::reports
