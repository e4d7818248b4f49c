// The four pages of a monthly and of a weekly report of a small ledger,
// byte for byte (windows-1255) against reviewed files in
// tests/reports/golden. PELKOR_UPDATE_GOLDEN=1 writes them anew, for a
// person to review.
#include "reports/ReportFixture.h"

#include <QDir>

using namespace pelkor;
using namespace pelkor::reports;
using namespace pelkor::testing;

namespace {

const QString goldenDir = QStringLiteral(PELKOR_SOURCE_DIR "/tests/reports/golden/");

// A kind whose name carries markup characters: words on the page.
QString goldenLines()
{
    return reportLines() + QStringLiteral("UPDATE category SET category='מסים <i>&\"שונים\"' WHERE id='-4';");
}

class GoldenPages : public ReportTest, public ::testing::WithParamInterface<PeriodType> {};

} // namespace

TEST_P(GoldenPages, EachPageAsReviewed)
{
    openReport(GetParam(), goldenLines());
    const bool update = qEnvironmentVariable("PELKOR_UPDATE_GOLDEN") == QLatin1String("1");
    const QString prefix = sPeriodOf(GetParam()) + QLatin1Char('-');
    for (const char* page : {"kindList.htm", "typeList.htm", "kindReport.htm", "typeReport.htm"}) {
        const QString name = QString::fromLatin1(page);
        const QByteArray written = bytes(r->pagePath(name));
        ASSERT_FALSE(written.isEmpty()) << page;
        const QString golden = goldenDir + prefix + name;
        if (update) {
            QDir().mkpath(goldenDir);
            QFile f(golden);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
            f.write(written);
            continue;
        }
        EXPECT_EQ(written, bytes(golden)) << "page " << page << " differs from " << golden.toStdString();
    }
    // The markup of a kind's name is text on the page.
    EXPECT_EQ(kindList.text(QStringLiteral("tdKind"), 4), QString());
    EXPECT_TRUE(kindList.source().contains(QStringLiteral("מסים &lt;i&gt;&amp;&quot;שונים&quot;")));
}

INSTANTIATE_TEST_SUITE_P(Reports, GoldenPages, ::testing::Values(PeriodType::Month, PeriodType::Week),
                         [](const ::testing::TestParamInfo<PeriodType>& i) {
                             return i.param == PeriodType::Month ? std::string("Monthly") : std::string("Weekly");
                         });
