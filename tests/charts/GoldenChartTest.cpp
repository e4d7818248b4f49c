// The two charts drawn from fixed data, compared with reviewed pictures in
// tests/charts/golden. PELKOR_UPDATE_GOLDEN=1 writes the pictures anew
// (look at them before committing).
//
// Tolerance: text is rasterised by the desktop's font engine, whose
// smoothing may move a glyph's edge by a shade. A pixel counts as
// different when a channel differs by more than 48; up to 0.5% of the
// pixels may differ (some 900 of a 600 x 300 picture: the edges of a few
// labels, never a line or a bar).
#include "base/Format.h"
#include "charts/clsBackBuffer.h"

#include <QDir>
#include <gtest/gtest.h>

#include <cmath>

#include "charts/ChartsSupport.h"

using namespace pelkor;
using namespace pelkor::charts;

namespace {

QString goldenPath(const QString& name)
{
    return QStringLiteral(PELKOR_SOURCE_DIR "/tests/charts/golden/") + name;
}

// Empty when the picture matches; else why not.
std::string compareWithGolden(const QImage& got, const QString& name)
{
    const QString path = goldenPath(name);
    if (qEnvironmentVariable("PELKOR_UPDATE_GOLDEN") == QLatin1String("1")) {
        QDir().mkpath(QFileInfo(path).path());
        got.save(path);
        return {};
    }
    const QImage want = QImage(path).convertToFormat(QImage::Format_ARGB32);
    if (want.isNull())
        return "no golden picture " + path.toStdString();
    const QImage have = got.convertToFormat(QImage::Format_ARGB32);
    if (want.size() != have.size())
        return "size differs";
    long differ = 0;
    for (int y = 0; y < have.height(); ++y)
        for (int x = 0; x < have.width(); ++x) {
            const QRgb a = have.pixel(x, y), b = want.pixel(x, y);
            if (std::abs(qRed(a) - qRed(b)) > 48 || std::abs(qGreen(a) - qGreen(b)) > 48 || std::abs(qBlue(a) - qBlue(b)) > 48)
                ++differ;
        }
    const long allowed = long(have.width()) * have.height() / 200;
    if (differ > allowed) {
        have.save(QDir::tempPath() + QStringLiteral("/got-") + name);
        return std::to_string(differ) + " pixels differ (allowed " + std::to_string(allowed) + "); the picture drawn is in "
            + QDir::tempPath().toStdString() + "/got-" + name.toStdString();
    }
    return {};
}

} // namespace

TEST(GoldenCharts, BalanceChart)
{
    PELKOR_REQUIRE_GUI();
    clsBackBuffer s;
    ASSERT_TRUE(s.Create(600, 300, 0, 0, QStringLiteral(PELKOR_SOURCE_DIR "/share/images/groupBorder.png")));
    // Sixty-one days that dip under zero and under the credit limit.
    QStringList xs;
    std::vector<double> ys;
    const QDate first(2025, 3, 1);
    for (int d = 0; d < 61; ++d) {
        xs << first.addDays(d).toString(QStringLiteral("d/M/yy"));
        ys.push_back(std::round(20000 * std::cos(d / 9.0) + 3000 - 150 * d));
    }
    s.crdt = -15000;
    s.updateBalanceGraph(xs, ys, QStringLiteral("גרף יתרה יומי"));
    s.showBalanceHover(QString(), xs[20], FormatChartSum(ys[20], 0), s.getPntX(20), s.getPntY(20) - s.hoverHeight() - 3);
    EXPECT_EQ(compareWithGolden(s.hDC(), QStringLiteral("balance.png")), "");
}

TEST(GoldenCharts, BarChart)
{
    PELKOR_REQUIRE_GUI();
    clsBackBuffer s;
    ASSERT_TRUE(s.Create(600, 300, rgb(80, 120, 220), rgb(240, 150, 60)));
    s.updateComparisonChart({QStringLiteral("הכנסות"), QStringLiteral("שכר"), QStringLiteral("ספקים"), QStringLiteral("שכירות")},
                            {52000, 18000, 9000, 0}, {47000, 18500, 12500, 6000}, QStringLiteral("השוואת תקופות"),
                            rgb(229, 229, 255), rgb(233, 248, 255), false);
    s.elapsed();
    s.showComparisonHover(QStringLiteral("ספקים"), FormatChartSum(12500, 0), 560, 60);
    EXPECT_EQ(compareWithGolden(s.hDC(), QStringLiteral("bars.png")), "");
}
