// The daily summary: lines folded into days, and the mode in a working run
// (the chart's window of days, the two grids following each other).
#include "charts/DailySummary.h"
#include "file/Display.h"
#include "ledger/GridFixture.h"

#include "charts/ChartsSupport.h"

using namespace pelkor;
using namespace pelkor::charts;
using namespace pelkor::testing;

namespace {

Line line(const QDate& d, double in, double out)
{
    Line L;
    L.Date = d;
    L.In = in;
    L.out = out;
    return L;
}

// n days of lines from 01/01/2025, one a day, 100 in on each.
QString dayLines(int n)
{
    QString sql = QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES ");
    for (int i = 0; i < n; ++i)
        sql += QStringLiteral("%1(%2,'+1','%3','%2','d',100,0,1,'%4','ללא צבע')")
                   .arg(i ? QStringLiteral(",") : QString())
                   .arg(i + 1)
                   .arg(QDate(2025, 1, 1).addDays(i).toString(Qt::ISODate))
                   .arg(i == 0 ? QStringLiteral("ZZZZZZZZZZ") : QStringLiteral(" "));
    return sql + QLatin1Char(';');
}

class SummaryRun : public GridTest {
protected:
    // The chart draws text: the application must be a GUI one from the start.
    void SetUp() override
    {
        gui = ensureGuiApplication();
        GridTest::SetUp();
    }
    DailySummary& openSummary(int days)
    {
        openOn(dayLines(days), QString());
        m->mnuDailySummary_Click();
        DailySummary& d = m->daily();
        d.picChart_Resize(1200, 400);
        return d;
    }
    bool gui = false;
};

} // namespace

TEST(DailySums, DaysBetweenLinesCarryTheBalance)
{
    // The 1st and the 5th: five rows, the middle three empty with the 1st's
    // balance; two lines of one day add into one row; a line without a
    // date (sorted first) counts in the balance only.
    std::vector<Line> lines{line(nullDate(), 5, 0), line(QDate(2025, 3, 1), 100, 0), line(QDate(2025, 3, 1), 0, 30),
                            line(QDate(2025, 3, 5), 0, 200)};
    DaySums d;
    calcDailySummary(lines, d);
    ASSERT_EQ(d.nDaysInSummary, 5);
    EXPECT_EQ(d.dailyIns, (std::vector<double>{100, 0, 0, 0, 0}));
    EXPECT_EQ(d.dailyOuts, (std::vector<double>{30, 0, 0, 0, 200}));
    EXPECT_EQ(d.dailyBalances, (std::vector<double>{75, 75, 75, 75, -125}));

    // The grid: a negative excess is a red, bold balance and a red excess;
    // the net's ground follows its sign.
    grid::GridModel g;
    fillDailySummary(d, 0, g);
    ASSERT_EQ(g.Rows(), 6);
    EXPECT_EQ(g.text(3, dayColDate), QStringLiteral("03/03/2025"));
    EXPECT_EQ(g.text(5, dayColBalance), FormatSum(-125));
    EXPECT_TRUE(g.bold(5, dayColBalance));
    EXPECT_FALSE(g.bold(1, dayColBalance));
    EXPECT_NE(g.foreColor(5, dayColExcess), g.foreColor(1, dayColExcess));
    EXPECT_NE(g.backColor(1, dayColNet), g.backColor(5, dayColNet));
    EXPECT_EQ(g.backColor(2, dayColNet), 0xFFFFFFu);   // an empty day's net: no sign

    std::vector<Line> none{line(nullDate(), 1, 0)};
    calcDailySummary(none, d);
    EXPECT_EQ(d.nDaysInSummary, 0);
}

TEST_F(SummaryRun, TheChartWindowFollowsTheSelectedDay)
{
    if (!gui)
        GTEST_SKIP() << "needs a QGuiApplication; run this test alone";
    DailySummary& d = openSummary(200);
    EXPECT_EQ(m->instance().progMode, modeDailySummarySplit);
    ASSERT_EQ(d.msfgBank.Rows(), 201);

    // A day in the first 30: the window starts on the first day, 61 points.
    d.reallyScrollChart(10, true);
    EXPECT_EQ(d.chartFirst(), 0);
    EXPECT_EQ(d.picChart.pointCount(), 61);
    EXPECT_EQ(d.picChart.getX(0), QStringLiteral("1/1/25"));
    // Near the end: it ends on the last day, with fewer points.
    d.reallyScrollChart(190, true);
    EXPECT_EQ(d.chartFirst(), 160);
    EXPECT_EQ(d.picChart.pointCount(), 40);
    EXPECT_EQ(d.picChart.getY(39), 20000);

    // The same window again is not drawn again.
    int drawn = 0;
    QObject::connect(&d, &DailySummary::chartDrawn, [&] { ++drawn; });
    d.reallyScrollChart(190, true);
    EXPECT_EQ(drawn, 0);

    // The scroll bar at 15: seven days each side; " יום" from 11 days up.
    d.HScrollChart_Change(15);
    EXPECT_EQ(d.chartHalf(), 7);
    EXPECT_EQ(d.shown().lblChart, QStringLiteral("   גרף יתרה 15 יום"));
    EXPECT_EQ(d.picChart.pointCount(), 15);   // days 183..197
    // A wheel notch towards the user widens by five days.
    d.picChart_MouseWheel(-120);
    EXPECT_EQ(d.shown().HScrollChartValue, 20);
}

TEST_F(SummaryRun, TheGridsFollowEachOtherAndCloseReturnsToTheGrid)
{
    if (!gui)
        GTEST_SKIP() << "needs a QGuiApplication; run this test alone";
    DailySummary& d = openSummary(90);
    // The main grid's row names a day: the day grid and the chart go there.
    ed().msfgMainLeaveCell();
    g().setRow(40);
    m->msfgMain_EnterCell();
    EXPECT_EQ(d.msfgBank.Row(), 40);
    EXPECT_EQ(d.chartCenter(), 39);
    // The day grid's row moves the main grid to that day's line.
    d.msfgBank.setRow(70);
    d.msfgBank_EnterCell();
    EXPECT_EQ(g().Row(), 70);
    EXPECT_EQ(d.chartCenter(), 69);
    // A double click on the day: all its lines, unconverted, in a detail
    // child that answers to this window's box.
    m->instance().txtMessageId = 0x1234abcd;
    d.msfgBank_DblClick();
    ASSERT_EQ(children.started.size(), 1);
    EXPECT_EQ(children.started[0], QStringLiteral("detail 1234abcd 2 ") + formatDate224(m->ledger().lines[69].Date)
                                       + QStringLiteral(" 0.0000 ") + file);

    // A hover on a point shows its date and balance.
    const int i = 69 - d.chartFirst();
    d.picChart_MouseMove(d.picChart.getPntX(i) + 2, d.picChart.getPntY(i) + 2);
    d.timerChartHover_Timer();
    EXPECT_TRUE(d.chartHoverShown());

    // Close beside the summary: back to the full grid, the run goes on.
    m->cmdClose_Click();
    EXPECT_FALSE(m->ended());
    EXPECT_EQ(m->instance().progMode, modeFullScreen);
    EXPECT_FALSE(d.active());
}
