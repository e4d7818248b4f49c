// The chart surface: the axis scale, the balance chart's credit line,
// the bars, the hovers' reach, and input that would break a careless chart.
#include "base/Format.h"
#include "charts/clsBackBuffer.h"

#include <gtest/gtest.h>

#include <cmath>

#include "charts/ChartsSupport.h"

using namespace pelkor;
using namespace pelkor::charts;
using pelkor::testing::near;

namespace {

QStringList labels(int n)
{
    QStringList out;
    for (int i = 0; i < n; ++i)
        out << QString::number(i + 1) + QStringLiteral("/3/25");
    return out;
}

} // namespace

TEST(AxisScale, StepsCoverTheValuesAndStayFinite)
{
    // 0 to 7000: s = 1000, p = 1000, 1.2p is the first to reach s.
    EXPECT_EQ(axisScale(0, 7000).g, 1200);
    EXPECT_EQ(axisScale(-9000, 1000).yMin, -9000);   // floored to the step below
    const struct { double lo, hi; } cases[] = {{2500, 2500}, {0, 7000}, {-9000, 1000}, {0.2, 0.5}, {-1e12, 1e12}};
    for (const auto& c : cases) {
        const AxisScale a = axisScale(c.lo, c.hi);
        EXPECT_TRUE(std::isfinite(a.g) && a.g > 0) << c.lo;
        EXPECT_LE(a.yMin, c.lo);
        EXPECT_GE(a.yMax, c.hi);
        EXPECT_LT(a.yMin, a.yMax);
    }
    EXPECT_EQ(FormatChartSum(-1234567.4, 0), QStringLiteral("-1,234,567"));
    EXPECT_EQ(FormatChartSum(-0.2, 0), QStringLiteral("0"));
}

TEST(BalanceChart, CreditAboveTheAxisRunsAlongTheTop)
{
    PELKOR_REQUIRE_GUI();
    clsBackBuffer s;
    ASSERT_TRUE(s.Create(400, 300, 0, 0));
    s.crdt = 20000;
    s.updateBalanceGraph(labels(8), {0, 1000, 2000, 3000, 4000, 5000, 6000, 7000}, QStringLiteral("גרף"));
    EXPECT_EQ(s.axis().yMax, 9600);
    EXPECT_EQ(s.creditRow(), 21);
    EXPECT_TRUE(near(s.hDC(), 200, 21, Qt::red));
    // A limit under the axis is not drawn.
    s.crdt = -1e9;
    s.updateBalanceGraph(labels(8), {0, 1000, 2000, 3000, 4000, 5000, 6000, 7000}, QStringLiteral("גרף"));
    EXPECT_EQ(s.creditRow(), -1);
}

TEST(BalanceChart, WideScaleValuesMoveThePlotInRatherThanLoseDigits)
{
    PELKOR_REQUIRE_GUI();
    clsBackBuffer s;
    ASSERT_TRUE(s.Create(500, 300, 0, 0));
    // Balances above a hundred million: the scale reads "-200,000,000".
    const std::vector<double> big{-150e6, 120e6, 230e6, 310e6};
    s.updateBalanceGraph(labels(4), big, QStringLiteral("גרף"));
    const QImage img = s.hDC();
    // Ink of the scale's values: dark pixels left of the plot.
    int firstInk = -1;
    for (int x = 0; x < s.plotLeftEdge() - 1 && firstInk < 0; ++x)
        for (int y = clsBackBuffer::balanceTop; y < img.height() - clsBackBuffer::balanceBottomMargin; ++y)
            if (qGray(img.pixel(x, y)) < 110) {
                firstInk = x;
                break;
            }
    ASSERT_GE(firstInk, 0);
    EXPECT_GE(firstInk, clsBackBuffer::labelMargin - 1);
    EXPECT_GT(s.plotLeftEdge(), clsBackBuffer::plotLeft);
    // The points follow the plot's edge.
    EXPECT_EQ(s.getPntX(0), s.plotLeftEdge());
    // Small values keep the usual margin.
    s.updateBalanceGraph(labels(4), {0, 1000, 2000, 3000}, QStringLiteral("גרף"));
    EXPECT_EQ(s.plotLeftEdge(), clsBackBuffer::plotLeft);
}

TEST(BalanceChart, DotsOnlyWhereThePointsStandApart)
{
    PELKOR_REQUIRE_GUI();
    clsBackBuffer s;
    std::vector<double> v(100, 0);
    for (size_t i = 0; i < v.size(); ++i)
        v[i] = double(i * 37 % 1000);
    ASSERT_TRUE(s.Create(400, 300, 0, 0));
    s.updateBalanceGraph(labels(100), v, QString());
    EXPECT_FALSE(s.dotsDrawn());   // 297 pixels for 99 steps
    v.resize(61);
    ASSERT_TRUE(s.Create(1200, 400, 0, 0));
    s.updateBalanceGraph(labels(61), v, QString());
    EXPECT_TRUE(s.dotsDrawn());
}

TEST(BalanceChart, HoverReachesFivePixelsAndNoFurther)
{
    PELKOR_REQUIRE_GUI();
    clsBackBuffer s;
    ASSERT_TRUE(s.Create(400, 300, 0, 0));
    s.updateBalanceGraph(labels(3), {0, 500, 1000}, QString());
    const int x = s.getPntX(1), y = s.getPntY(1);
    EXPECT_EQ(s.getBalanceHoverIndex(x + 5, y), 1);
    EXPECT_EQ(s.getBalanceHoverIndex(x + 3, y - 4), 1);
    EXPECT_EQ(s.getBalanceHoverIndex(x + 6, y), -1);
    EXPECT_EQ(s.getBalanceHoverIndex(x, y + 6), -1);
    // A hover at the right edge stays inside the surface.
    s.showBalanceHover(QString(), QStringLiteral("3/3/25"), QStringLiteral("1,000"), 399, 10);
    EXPECT_TRUE(near(s.hDC(), 396, 12, Qt::white, 0) || near(s.hDC(), 396, 12, Qt::black, 80));
}

TEST(BarChart, BarsRiseFromZeroAndALowestBarStillShows)
{
    PELKOR_REQUIRE_GUI();
    clsBackBuffer s;
    const std::uint32_t a = rgb(0, 0, 255), b = rgb(255, 128, 0);
    ASSERT_TRUE(s.Create(400, 300, a, b));
    s.updateComparisonChart({QStringLiteral("ינואר"), QStringLiteral("פברואר")}, {0, 100}, {50, 0}, QStringLiteral("השוואה"),
                            rgb(255, 255, 255), rgb(240, 240, 240), true);
    EXPECT_DOUBLE_EQ(s.fraction(), 0.1);
    for (int tick = 0; tick < 10; ++tick)
        s.elapsed();
    EXPECT_FALSE(s.animating());   // ten ticks

    const int bottom = 300 - clsBackBuffer::barsBottomMargin;
    const clsBackBuffer::Pair& p0 = s.pair(0);
    EXPECT_EQ(s.zeroY(), bottom);
    EXPECT_EQ(p0.YA, bottom - 2);   // a zero bar still shows
    const int mid = (p0.XL + p0.XM) / 2;
    // Hover: the first bar's pixels, the second bar's (index + 10000), a gap.
    EXPECT_EQ(s.getComparisonHoverIndex(mid, bottom - 1), 0);
    EXPECT_EQ(s.getComparisonHoverIndex(p0.XM, (p0.YB + bottom) / 2), 10000);
    EXPECT_EQ(s.getComparisonHoverIndex(p0.XR + 1, bottom - 1), -1);
    // Without the animation the bars stand whole after one tick.
    s.updateComparisonChart({QStringLiteral("א")}, {10}, {20}, QString(), 0xFFFFFF, 0xF0F0F0, false);
    s.elapsed();
    EXPECT_FALSE(s.animating());
}

TEST(ChartSurface, BadInputStaysSane)
{
    PELKOR_REQUIRE_GUI();
    clsBackBuffer s;
    s.updateBalanceGraph(labels(2), {1, 2}, QString());   // before Create: nothing
    EXPECT_EQ(s.pointCount(), 0);
    EXPECT_FALSE(s.Create(0, 10, 0, 0));
    ASSERT_TRUE(s.Create(300, 200, 0, 0));
    std::vector<double> long3650(3650);
    for (size_t i = 0; i < long3650.size(); ++i)
        long3650[i] = std::sin(double(i) / 50) * 1e5;
    const struct {
        const char* name;
        std::vector<double> values;
        double credit;
    } cases[] = {
        {"one point", {500}, 0},
        {"all equal", std::vector<double>(61, 1234), 0},
        {"a trillion", {1e12, 1e12 + 1, -1e12}, 0},
        {"credit far below", {100, 200, 300}, -1e15},
        {"3650 days", long3650, -50000},
    };
    for (const auto& c : cases) {
        s.crdt = c.credit;
        s.updateBalanceGraph(labels(int(c.values.size())), c.values, QStringLiteral("גרף"));
        ASSERT_EQ(s.pointCount(), int(c.values.size())) << c.name;
        for (int i = 0; i < s.pointCount(); ++i) {
            ASSERT_TRUE(std::isfinite(s.point(i).y())) << c.name;
            ASSERT_GE(s.getPntY(i), clsBackBuffer::balanceTop - 1) << c.name;
            ASSERT_LE(s.getPntY(i), 200 - clsBackBuffer::balanceBottomMargin + 1) << c.name;
        }
    }
    s.updateComparisonChart({}, {}, {}, QString(), 0xFFFFFF, 0xFFFFFF, true);
    EXPECT_EQ(s.pairCount(), 0);
    EXPECT_FALSE(s.animating());
}
