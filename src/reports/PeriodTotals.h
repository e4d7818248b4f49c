// PeriodTotals: the arithmetic of the period reports by kind and by type.
//
// A report sums the lines of one file into columns of months, weeks or
// days and runs a balance through them. This file holds the range (the
// first one a window opens with, and its adjusting to the lines the file
// has), the periods (weeks run Sunday to Saturday; the first and last
// period may be cut short by the range), the sums of each row in each
// period with the ticks of the lists, the totals and the running balance,
// the cell classes and the number and date forms of the pages.
//
// Not here: reading the sums from the file (PeriodSums), the pages
// (ReportPages) and the window (frmMonthReportMain). Nothing here touches a
// store or a view, so every rule can be tested on numbers alone.
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace pelkor::reports {

enum class PeriodType { Month, Week, Day };

// "m", "w", "d" and back; anything else reads as a month.
QString sPeriodOf(PeriodType t);
PeriodType periodTypeOf(const QString& sPeriod);
// The period word of titles ("חודשי", "שבועי", "יומי") and the window's
// caption ("סיכום חודשי", ...).
QString sPeriodicOf(PeriodType t);
QString reportCaption(PeriodType t);

// The day of the week counted from Sunday = 1 to Saturday = 7.
int weekday(const QDate& d);

// The range a report window opens with: the day after the zeroing line,
// and ten calendar months, 52 weeks (from that week's Sunday) or 60 days.
struct DateRange {
    QDate fromDate, toDate;
};
DateRange initialRange(PeriodType t, const QDate& ipusDate);

// Moves the range onto the lines of the file (min and max are the dates of
// its first and last line): the start forward to the first period that
// has lines, the end back to the last one, the start tested first; a range
// turned round by a move is closed onto the moved end. Returns the
// warnings, each its text with the new date (dd/mm/yyyy) appended, in the
// order the moves were made.
QStringList adjustRange(PeriodType t, DateRange& r, const QDate& min, const QDate& max);

// The columns of a range.
struct Periods {
    PeriodType type = PeriodType::Month;
    QDate fromDate, toDate;
    QDate lastSundayNotLaterThanFromDate;   // weekly reports only
    int nPeriods = 0;

    static Periods make(PeriodType t, const QDate& from, const QDate& to);
    // The column of a date; outside 0..nPeriods-1 when the date lies
    // outside the range.
    int indexOf(const QDate& d) const;
    // The first and last day a column covers: cut by fromDate and toDate
    // at the two ends.
    QDate startOf(int p) const;
    QDate endOf(int p) const;
    // The column's heading: "<month>/<year>", "מ-" and the week's first
    // day, or the day.
    QString heading(int p) const;
};

// The sums of one report (by kind or by type): a row per kind or type.
struct SumSet {
    int nRows = 0, nPeriods = 0;
    std::vector<char> checked;          // per row: ticked in the list
    std::vector<char> isExpenseRow;     // per row: counts as an expense
    std::vector<double> periodSums;     // row * nPeriods + period
    std::vector<double> totals;         // per row, over all periods
    std::vector<double> periodIncomes, periodExpenses, periodNet;
    std::vector<double> periodBalance;  // nPeriods + 1: the start of each period, then the close
    double totalIncomes = 0, totalExpenses = 0, totalNet = 0;
    bool showIncomesTotal = true, showExpensesTotal = true;

    // Clears every sum for a new shape; periodBalance(0) is set by the
    // caller (the opening balance). The ticks survive when the row count
    // stays.
    void reset(int rows, int periods);
    double& sum(int row, int p) { return periodSums[size_t(row) * size_t(nPeriods) + size_t(p)]; }
    double sum(int row, int p) const { return periodSums[size_t(row) * size_t(nPeriods) + size_t(p)]; }
    // totals from periodSums; then every row with a non-zero total is
    // ticked and every other one unticked (a rebuild's ticks).
    void sumTotalsAndTick();
};

// The kinds of a file: nCategories kinds of both signs, indices 0 to
// nCategories/2-1 the income kinds ("+0", "+1", ...), the rest the expense
// kinds ("-0", ...). The kind's index of a stored kind ("+3", "-0"), or -1
// for a kind that is not a sign and a number within the file's kinds.
int kindIndexOf(const QString& kind, int nCategories);

// calcKindTotals: the section sums of the ticked kinds, the net and the
// running balance from the sums and the ticks. periodBalance(0) is never
// touched; an unticked kind leaves every later balance.
void calcKindTotals(SumSet& s);

// The types of a file, with their categories, in the lists' order: the
// expense categories first, then by name.
struct TypeCategory {
    int CategoryNum = 0;
    QString CategoryName;
    bool isIncome = false;
};
struct ReportType {
    int TypeNum = 0;
    QString TypeName;
    QString CategoryName;
    bool isIncome = false;
};
struct TypeTotals {
    std::vector<TypeCategory> categories;
    std::vector<ReportType> types;
    int firstIncomeCategory = -1;       // -1: no income category
    SumSet sums;                        // a row per type
    std::vector<char> categChecked;
    std::vector<double> categPeriodSums;// category * nPeriods + period
    std::vector<double> categTotals;

    // The index of a type number in types, -1 when none has it.
    int getIndexOfTypeNum(int typeNum) const;
    int categoryIndexOf(const QString& name) const;
    double categSum(int c, int p) const { return categPeriodSums[size_t(c) * size_t(sums.nPeriods) + size_t(p)]; }
};

// calcTypeTotals: as calcKindTotals, each ticked type also adding to its
// category's sums. A type whose category name is not among the categories
// calls wrongCategory once per call and counts in no category.
void calcTypeTotals(TypeTotals& t, const std::function<void()>& wrongCategory);

// Cell classes of a balance (credit is the credit line as stored, a
// negative number) and of a surplus.
QString nonnegbalancetd(double value, double theCredit);
QString nonnegdeficittd(double value);

// The absolute value rounded to a whole number with "," grouping, "-" in
// front when negative; a zero is "" unless showZero.
QString formatAmount(double value, bool showZero);
// "d/m/yy": day and month without a leading zero, the year's two digits.
QString shortFormatDate(const QDate& d);

} // namespace pelkor::reports
