// The demo ledger opens cleanly and shows what a demonstration needs.
#include "file/LoadFixture.h"

#include "gen/DemoLedger.h"

#include <set>

using namespace pelkor;
using namespace pelkor::testing;

TEST_F(LoadTest, DemoLedgerOpensCleanlyWithEverythingToShow)
{
    generator::generateDemoLedger(file, QDate(2025, 6, 1));
    start({QStringLiteral("open"), file}, QString());
    EXPECT_FALSE(m->ended());
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join(QLatin1Char('\n')).toStdString();
    ASSERT_GT(m->ledger().lines.size(), 500u);
    EXPECT_EQ(m->shown().caption, QStringLiteral("פלקור - shop"));
    // The zeroing line three weeks back, forecast lines ahead.
    EXPECT_GE(m->ledger().ipusDate, QDate(2025, 5, 8));
    EXPECT_LE(m->ledger().ipusDate, QDate(2025, 5, 11));
    int daysOver = 0, forecasts = 0;
    std::set<QString> colours;
    QDate lastOver;
    for (size_t i = 0; i < m->ledger().lines.size(); ++i) {
        const Line& L = m->ledger().lines[i];
        if (m->ledger().balances[i] < m->ledger().theCredit && L.Date != lastOver) {
            ++daysOver;
            lastOver = L.Date;
        }
        forecasts += L.isTzefi ? 1 : 0;
        colours.insert(L.Memo);
    }
    EXPECT_EQ(m->ledger().theCredit, -40000.0);
    EXPECT_GE(daysOver, 1);
    EXPECT_LE(daysOver, 10);
    EXPECT_GT(forecasts, 3);
    EXPECT_EQ(colours.size(), 4u);
    EXPECT_GT(m->ledger().lines.back().Date, QDate(2025, 6, 1));
}
