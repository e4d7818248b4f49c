// The period reports' arithmetic on numbers alone: the range and its
// moves, the periods at their cut ends, the balance chain under the ticks,
// the type categories, and the forms of amounts and dates.
#include "reports/PeriodTotals.h"

#include <gtest/gtest.h>

#include "QtPrinters.h"

using namespace pelkor::reports;

namespace {

QDate d(int y, int m, int day) { return QDate(y, m, day); }

// A kind report of n kinds over nPeriods with the given sums.
SumSet sums(int n, int nPeriods, double opening)
{
    SumSet s;
    s.periodBalance.assign(1, opening);
    s.reset(n, nPeriods);
    for (int k = 0; k < n; ++k)
        s.isExpenseRow[size_t(k)] = k >= n / 2;
    return s;
}

} // namespace

TEST(Periods, AWeeklyReportFromAWednesdayStartsThereAndRunsSundayToSaturday)
{
    // 5 March 2025 is a Wednesday.
    const Periods p = Periods::make(PeriodType::Week, d(2025, 3, 5), d(2025, 3, 25));
    EXPECT_EQ(p.lastSundayNotLaterThanFromDate, d(2025, 3, 2));
    EXPECT_EQ(p.indexOf(d(2025, 3, 8)), 0);   // Saturday: still the first, short week
    EXPECT_EQ(p.indexOf(d(2025, 3, 9)), 1);   // the Sunday four days later
    EXPECT_EQ(p.indexOf(d(2025, 3, 1)), -1);  // before the first week
    EXPECT_EQ(p.nPeriods, 4);                 // 5-8, 9-15, 16-22, 23-25
    // The first cell passes fromDate, not its Sunday; the last ends at toDate.
    EXPECT_EQ(p.startOf(0), d(2025, 3, 5));
    EXPECT_EQ(p.endOf(0), d(2025, 3, 8));
    EXPECT_EQ(p.startOf(1), d(2025, 3, 9));
    EXPECT_EQ(p.endOf(1), d(2025, 3, 15));
    EXPECT_EQ(p.endOf(3), d(2025, 3, 25));
}

TEST(Periods, MonthsAndDaysAtTheirEnds)
{
    const Periods m = Periods::make(PeriodType::Month, d(2024, 11, 17), d(2025, 2, 10));
    EXPECT_EQ(m.nPeriods, 4);
    EXPECT_EQ(m.indexOf(d(2025, 1, 31)), 2);
    EXPECT_EQ(m.startOf(0), d(2024, 11, 17));
    EXPECT_EQ(m.endOf(0), d(2024, 11, 30));
    EXPECT_EQ(m.startOf(1), d(2024, 12, 1));
    EXPECT_EQ(m.endOf(3), d(2025, 2, 10));   // the last passes toDate
    const Periods day = Periods::make(PeriodType::Day, d(2025, 2, 27), d(2025, 3, 1));
    EXPECT_EQ(day.nPeriods, 3);
    EXPECT_EQ(day.endOf(1), d(2025, 2, 28));
}

TEST(Range, TheFirstRangeByPeriodType)
{
    const QDate ipus = d(2025, 3, 11);   // the report starts the next day, a Wednesday
    EXPECT_EQ(initialRange(PeriodType::Month, ipus).toDate, d(2025, 12, 31));
    EXPECT_EQ(initialRange(PeriodType::Week, ipus).toDate, d(2026, 3, 7));    // 52 weeks from Sunday 9/3
    EXPECT_EQ(initialRange(PeriodType::Day, ipus).toDate, d(2025, 5, 10));
    EXPECT_EQ(initialRange(PeriodType::Day, ipus).fromDate, d(2025, 3, 12));
}

TEST(Range, MovesOntoTheLinesWithItsWarnings)
{
    // Every line after toDate: the start moves to the first line's month,
    // the end follows it, one period.
    DateRange r{d(2025, 1, 1), d(2025, 1, 31)};
    QStringList w = adjustRange(PeriodType::Month, r, d(2025, 4, 7), d(2025, 6, 2));
    EXPECT_EQ(r.fromDate, d(2025, 4, 1));
    EXPECT_EQ(r.toDate, d(2025, 4, 1));
    EXPECT_EQ(w, QStringList{QStringLiteral("תאריך ההתחלה יוזז קדימה אל תחילת החודש הראשון בו יש תנועות: 01/04/2025")});

    // Weeks: a start on Thursday 6/3 with the first line on Tuesday 4/3 of
    // the same week is not moved; one a week earlier is moved to its Sunday.
    r = {d(2025, 3, 6), d(2025, 3, 29)};
    EXPECT_TRUE(adjustRange(PeriodType::Week, r, d(2025, 3, 4), d(2025, 3, 28)).isEmpty());
    r = {d(2025, 2, 20), d(2025, 4, 30)};
    w = adjustRange(PeriodType::Week, r, d(2025, 3, 4), d(2025, 3, 19));
    EXPECT_EQ(r.fromDate, d(2025, 3, 2));
    EXPECT_EQ(r.toDate, d(2025, 3, 22));   // the Saturday of the last line's week
    EXPECT_EQ(w.size(), 2);

    // Days: clipped to the lines; a range within them stays.
    r = {d(2025, 3, 1), d(2025, 3, 31)};
    adjustRange(PeriodType::Day, r, d(2025, 3, 4), d(2025, 3, 19));
    EXPECT_EQ(r.fromDate, d(2025, 3, 4));
    EXPECT_EQ(r.toDate, d(2025, 3, 19));
}

TEST(KindTotals, AnUntickedKindChangesOnlyTheLaterBalances)
{
    // Two kinds a side; income kind 0 earns 100 each month, expense kind 2
    // spends 500 in period 3 only; period 1 is empty.
    SumSet s = sums(4, 6, 1000);
    for (int p : {0, 2, 3, 4, 5})
        s.sum(0, p) = 100;
    s.sum(2, 3) = 500;
    s.sumTotalsAndTick();
    calcKindTotals(s);
    EXPECT_EQ(s.checked, (std::vector<char>{1, 0, 1, 0}));   // ticked by a non-zero total
    EXPECT_EQ(s.periodNet[1], 0);
    EXPECT_EQ(s.periodBalance[2], s.periodBalance[1]);        // the empty period carries the balance
    EXPECT_EQ(s.periodBalance[4], 1000 + 300 - 500);
    EXPECT_EQ(s.periodBalance[6], 1000 + 500 - 500);

    const std::vector<double> before = s.periodBalance;
    s.checked[2] = 0;
    calcKindTotals(s);
    for (int p = 0; p <= 3; ++p)
        EXPECT_EQ(s.periodBalance[size_t(p)], before[size_t(p)]) << p;
    for (int p = 4; p <= 6; ++p)
        EXPECT_EQ(s.periodBalance[size_t(p)], before[size_t(p)] + 500) << p;
    EXPECT_EQ(s.totalExpenses, 0);
    EXPECT_EQ(s.periodNet[3], 100);
    EXPECT_EQ(s.periodBalance[0], 1000);   // the opening balance is never touched
}

TEST(KindTotals, KindsThatAreNoSignAndNumberHaveNoRow)
{
    EXPECT_EQ(kindIndexOf(QStringLiteral("+0"), 18), 0);
    EXPECT_EQ(kindIndexOf(QStringLiteral("-0"), 18), 9);
    EXPECT_EQ(kindIndexOf(QStringLiteral("-8"), 18), 17);
    for (const char* bad : {"+9", "-12", "5", "+", "", "+x", "*3", "+-1", "+ 2"})
        EXPECT_EQ(kindIndexOf(QString::fromLatin1(bad), 18), -1) << bad;
}

TEST(TypeTotals, CategoriesHoldTheirTickedTypesAndAWrongNameIsToldOnce)
{
    TypeTotals t;
    t.categories = {{2, QStringLiteral("תשלומים"), false}, {1, QStringLiteral("תקבולים"), true}};
    t.types = {{2, QStringLiteral("שיקים"), QStringLiteral("תשלומים"), false},
               {6, QStringLiteral("העברה"), QStringLiteral("תשלומים"), false},
               {1, QStringLiteral("מזומן"), QStringLiteral("תקבולים"), true},
               {9, QStringLiteral("יתום"), QStringLiteral("אין כזו"), true}};
    t.sums.periodBalance.assign(1, 0);
    t.sums.reset(4, 2);
    for (size_t i = 0; i < 4; ++i)
        t.sums.isExpenseRow[i] = !t.types[i].isIncome;
    t.sums.sum(0, 0) = 30;
    t.sums.sum(1, 0) = 70;
    t.sums.sum(2, 1) = 400;
    t.sums.sum(3, 1) = 5;
    t.sums.sumTotalsAndTick();
    int told = 0;
    calcTypeTotals(t, [&] { ++told; });
    EXPECT_EQ(told, 1);
    EXPECT_EQ(t.categTotals, (std::vector<double>{100, 400}));
    EXPECT_EQ(t.sums.totalIncomes, 405);   // the orphan type still counts in its section
    t.sums.checked[1] = 0;
    calcTypeTotals(t, {});
    EXPECT_EQ(t.categSum(0, 0), 30);
    EXPECT_EQ(t.sums.periodBalance[2], 405 - 30);
    EXPECT_EQ(t.getIndexOfTypeNum(7), -1);
}

TEST(Forms, AmountsDatesAndCellClasses)
{
    EXPECT_EQ(formatAmount(1234567.49, true), QStringLiteral("1,234,567"));
    EXPECT_EQ(formatAmount(-1234.5, true), QStringLiteral("-1,235"));
    EXPECT_EQ(formatAmount(0, false), QString());
    EXPECT_EQ(formatAmount(0.3, true), QStringLiteral("0"));
    EXPECT_EQ(formatAmount(-0.3, true), QStringLiteral("0"));
    EXPECT_EQ(shortFormatDate(d(2009, 1, 5)), QStringLiteral("5/1/09"));
    EXPECT_EQ(nonnegbalancetd(0, -5000), QStringLiteral("nonnegbalancetd"));
    EXPECT_EQ(nonnegbalancetd(-5000, -5000), QStringLiteral("negbalancetd"));
    EXPECT_EQ(nonnegbalancetd(-5000.01, -5000), QStringLiteral("overnegbalancetd"));
    EXPECT_EQ(nonnegbalancetd(-1, 0), QStringLiteral("overnegbalancetd"));
    EXPECT_EQ(nonnegdeficittd(-0.01), QStringLiteral("negdeficittd"));
    EXPECT_EQ(nonnegdeficittd(0), QStringLiteral("nonnegdeficittd"));
}
