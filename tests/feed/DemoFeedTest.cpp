// The demonstration feed against the demo ledger it is made from: the
// balances agree at the zeroing date, and after it there is work for a
// reconciliation to show.
#include "DemoFeed.h"

#include "gen/DemoLedger.h"
#include "file/Schema.h"
#include "seams/store/Connection.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pelkor;

TEST(DemoFeed, AgreesAtTheZeroingDateAndDiffersAfterIt)
{
    QTemporaryDir dir;
    const QString ledger = dir.filePath(QStringLiteral("demo.pkr"));
    const QString feedFile = dir.filePath(QStringLiteral("demo.mdb"));
    generator::generateDemoLedger(ledger, QDate(2025, 6, 1));
    ASSERT_EQ(feed::generateDemoFeed(ledger, feedFile), QString());

    store::Connection cn;
    cn.open(ledger, store::Connection::OpenMode::ReadOnly);
    cn.executeRaw(QStringLiteral("ATTACH '%1' AS f").arg(feedFile));
    auto one = [&](const QString& sql) { return cn.execute(sql).at(0, 0); };
    const QDate ipus = one(QStringLiteral("SELECT [date] FROM pelkor WHERE zee = '%1'").arg(QLatin1String(schema::ipusMark))).toDate();
    const QString ipusText = ipus.toString(Qt::ISODate);
    // The ledger's balance on the zeroing date is the bank's.
    const double ledgerBalance =
        one(QStringLiteral("SELECT sum([in]) - sum(out) FROM pelkor WHERE IndTzefi = 0 AND [date] <= '%1'").arg(ipusText))
            .toDouble();
    const double bankBalance =
        one(QStringLiteral("SELECT balance FROM f.demoOsh WHERE [date] <= '%1' ORDER BY [date] DESC, transactionID DESC")
                .arg(ipusText))
            .toDouble();
    EXPECT_NEAR(ledgerBalance, bankBalance, 0.005);

    // Rows with a line of the same date and sum, rows a day off, rows
    // without a line, days of several rows.
    const QString sameLine = QStringLiteral("EXISTS (SELECT 1 FROM pelkor p WHERE p.[date] = d.[date] AND "
                                            "p.[in] = d.[in] AND p.out = d.out)");
    const long rows = long(one(QStringLiteral("SELECT count(*) FROM f.demoOsh")).toInt());
    const long matched = long(one(QStringLiteral("SELECT count(*) FROM f.demoOsh d WHERE ") + sameLine).toInt());
    const long unmatchedAfter =
        long(one(QStringLiteral("SELECT count(*) FROM f.demoOsh d WHERE d.[date] > '%1' AND NOT ").arg(ipusText) + sameLine)
                 .toInt());
    const long unmatchedBefore =
        long(one(QStringLiteral("SELECT count(*) FROM f.demoOsh d WHERE d.[date] <= '%1' AND NOT ").arg(ipusText) + sameLine)
                 .toInt());
    EXPECT_GT(rows, 80);
    EXPECT_GT(matched * 10, rows * 8);  // most rows have their line
    EXPECT_GE(unmatchedAfter, 3);
    EXPECT_EQ(unmatchedBefore, 0);
    EXPECT_GE(one(QStringLiteral("SELECT count(*) FROM (SELECT [date] FROM f.demoOsh GROUP BY [date] "
                                 "HAVING count(*) > 1)"))
                  .toInt(),
              10);
    // The same ledger gives the same feed.
    const QString again = dir.filePath(QStringLiteral("again.mdb"));
    ASSERT_EQ(feed::generateDemoFeed(ledger, again), QString());
    cn.executeRaw(QStringLiteral("ATTACH '%1' AS g").arg(again));
    EXPECT_EQ(one(QStringLiteral("SELECT count(*) FROM f.demoOsh a JOIN g.demoOsh b USING (transactionID, [date], "
                                 "[in], out, balance)"))
                  .toInt(),
              rows);
}
