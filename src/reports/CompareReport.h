// CompareReport: the arithmetic and the pages of the comparison of two
// periods.
//
// Each period is a file and a range of its own (both may be the same
// file). Its lines are summed by kind and by type into one column per
// period, with the period reports' statements; the two sums sit side by
// side with their difference and a percent. Each period has its own
// opening balance and credit line, and no balance runs from one period to
// the next. The kinds follow one list for both files: the larger list when
// the counts differ, the first one when the names differ. The types are
// compared only when both files hold the same categories and types.
//
// Not here: the window (frmCompare) and any view.
#pragma once

#include "reports/PeriodSums.h"
#include "reports/ReportPages.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>

namespace pelkor::store { class Connection; }

namespace pelkor::reports {

// The periods' words and boxes: "ראשון"/"שני", "תקופה א"/"תקופה ב".
QString periodWord(int i);
QString frameFileCaption(int i);
// The comparison's colours, 0xBBGGRR: the two periods' cells and bars, then
// the expense chart's inner and outer ground, the income chart's.
extern const std::array<std::uint32_t, 6> cmpColors;
// "#rrggbb" of a 0xBBGGRR colour.
QString colourText(std::uint32_t bgr);

// The ranges a comparison opens with, before the files are read: the
// first a year up to the end of last month, the second before it.
std::array<DateRange, 2> defaultCompareRanges(const QDate& today);

// Moves period i's range onto its file's lines (min and max the first and
// last line's dates): a start before the first line moves forward to it, an
// end after the last line back to it, the other end following when the
// range would turn round. The warnings name the period by its word.
QStringList adjustCompareRange(int i, DateRange& r, const QDate& min, const QDate& max);

// The percent cell of a and b: empty when b is 0, else "-" when a is below
// b, then |a - b| * 100 / b as a whole number, then "%".
QString percentText(double a, double b);
// The difference's class: nodifftd for 0, posdifftd (green) below 0,
// negdifftd (red) above. An expense row passes its difference, an income
// row and the surplus the negated one.
QString nodifftd(double x);

// The kinds of a file ("SELECT * FROM category ..." in its order).
KindNames readKindNames(store::Connection& cn);

// The kinds both periods are summed by, and the warning that came of
// choosing them (empty when the lists agree).
struct KindChoice {
    KindNames names;
    QString warning;
};
// second is null when both periods are on the same file.
KindChoice chooseKinds(const KindNames& first, const KindNames* second);
// Whether two files' categories and types agree in count and names (their
// lists' order); a comparison by types needs it.
bool typesAgree(const TypeTotals& a, const TypeTotals& b);
extern const char kindsLargerWarning[];
extern const char kindsFirstWarning[];
extern const char typesDifferWarning[];

// The sums of both periods: a column per period. periodBalance is not
// used: each period's opening balance is its own.
struct CompareSums {
    KindNames names;
    SumSet kinds;                 // nPeriods 2
    TypeTotals types;             // the first file's catalogue; sums nPeriods 2
    bool typesIncluded = false;
    std::array<double, 2> opening{0, 0};
    std::array<double, 2> credit{0, 0};
};

// Reads period i's sums over range from cn into column i: by kind into
// s.kinds (by the chosen names), and when s.typesIncluded by type, each
// type of the file found by its place in the file's own list (catalogue),
// which agrees with s.types. Returns the count of groups with no kind of
// the list.
int readComparePeriod(store::Connection& cn, int i, const DateRange& range, const TypeTotals* catalogue, CompareSums& s);
// The totals of both columns from the sums and the ticks (a rebuild
// first ticks every row with a non-zero sum over the two periods).
void calcCompareTotals(CompareSums& s, bool retick);

// What heads a comparison page: per period the box's caption, the file's
// short name and the range.
struct CompareHead {
    std::array<QString, 2> shortFileName;
    std::array<DateRange, 2> range;
    int nameWidth = 150;
};
QString compareTitle(const CompareHead& head, bool byTypes);
QString compareKindPage(const CompareHead& head, const CompareSums& s);
QString compareTypePage(const CompareHead& head, const CompareSums& s, const TypeRows& rows);

// The bars of a chart: the ticked kinds of a side (or the ticked
// categories), their labels and their sums in the two periods.
struct ChartSeries {
    QStringList labels;
    std::vector<double> a, b;
};
ChartSeries kindChartSeries(const CompareSums& s, bool expenses);
ChartSeries typeChartSeries(const CompareSums& s, bool expenses);

} // namespace pelkor::reports
