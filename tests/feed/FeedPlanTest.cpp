// From statements to feed rows and into the feed file: balances, overlaps,
// the day limit, numbering, and a feed that is replaced whole or not at all.
#include "FeedTestSupport.h"
#include "FeedWriter.h"
#include "TextInput.h"

#include "TestSupport.h"
#include "file/Schema.h"
#include "seams/store/Connection.h"

using namespace pelkor;
using namespace pelkor::feed;
using namespace pelkor::feedtest;

namespace {

ReadResult csv(const QByteArray& text, const QString& name = QStringLiteral("s.csv"))
{
    return readStatement(text, name);
}

// Two statements of account 77 that overlap on 03/01 to 04/01. The second
// holds the two equal coffees of 04/01 as well: they are two bank rows, not one.
const QByteArray january =
    "מספר חשבון: 77\nתאריך,תיאור,סכום,יתרה\n"
    "01/01/2025,פתיחה,100.00,100.00\n02/01/2025,קפה,-12.00,88.00\n03/01/2025,דלק,-50.00,38.00\n"
    "04/01/2025,קפה,-12.00,26.00\n04/01/2025,קפה,-12.00,14.00\n";
const QByteArray later =
    "מספר חשבון: 77\nתאריך,תיאור,סכום,יתרה\n"
    "03/01/2025,דלק,-50.00,38.00\n04/01/2025,קפה,-12.00,26.00\n04/01/2025,קפה,-12.00,14.00\n"
    "20/02/2025,משכורת,500.00,514.00\n";

} // namespace

TEST(FeedPlan, OverlappingStatementsGiveEachBankRowOnce)
{
    const FeedPlan p = planOf({csv(later), csv(january)});
    ASSERT_TRUE(p.ok()) << p.error.toStdString();
    ASSERT_EQ(p.accounts.size(), 1);
    EXPECT_EQ(p.accounts[0].rows, 6);
    EXPECT_EQ(p.accounts[0].duplicates, 3);
    QStringList got;
    for (const FeedRow& r : p.rows)
        got << QStringLiteral("%1 %2 %3 %4").arg(r.transactionID).arg(r.date.toString(Qt::ISODate), r.description)
                   .arg(r.balance);
    EXPECT_EQ(got, (QStringList{"1 2025-01-01 פתיחה 100", "2 2025-01-02 קפה 88", "3 2025-01-03 דלק 38",
                                "4 2025-01-04 קפה 26", "5 2025-01-04 קפה 14", "6 2025-02-20 משכורת 514"}));
    // The same files give the same numbers again.
    const FeedPlan again = planOf({csv(later), csv(january)});
    ASSERT_EQ(again.rows.size(), p.rows.size());
    for (qsizetype i = 0; i < p.rows.size(); ++i)
        EXPECT_EQ(again.rows[i].transactionID, p.rows[i].transactionID);
}

TEST(FeedPlan, DayLimitCountsBackFromTheLastDate)
{
    // 20/02 less 30 days is 21/01: the January rows go, 20/02 stays.
    const FeedPlan p = planOf({csv(january), csv(later)}, std::nullopt, 30);
    ASSERT_TRUE(p.ok());
    ASSERT_EQ(p.rows.size(), 1);
    EXPECT_EQ(p.rows[0].date, QDate(2025, 2, 20));
    EXPECT_EQ(p.accounts[0].older, 5);
    // The balance stays the one after the row in the whole statement.
    EXPECT_DOUBLE_EQ(p.rows[0].balance, 514.00);
}

TEST(FeedPlan, BalancesFromOpeningClosingOrTheUser)
{
    // Newest first with an opening balance only: turned round, then forward.
    const QByteArray newestFirst = "Balance at start of period,,100.00\nDate,Label,Amount\n"
                                   "05/01/2025,c,-30.00\n03/01/2025,b,-20.00\n02/01/2025,a,10.00\n";
    FeedPlan p = planOf({csv(newestFirst)});
    ASSERT_TRUE(p.ok()) << p.error.toStdString();
    ASSERT_EQ(p.rows.size(), 3);
    EXPECT_EQ(p.rows[0].description, QStringLiteral("a"));
    EXPECT_DOUBLE_EQ(p.rows[0].balance, 110.00);
    EXPECT_DOUBLE_EQ(p.rows[2].balance, 60.00);
    EXPECT_LT(p.rows[0].transactionID, p.rows[2].transactionID);

    // No balance at all: the user is asked, and the balances run back from it.
    const QByteArray bare = "Date,Label,Amount\n02/01/2025,a,10.00\n03/01/2025,b,-20.00\n";
    p = planOf({csv(bare)}, 500.0);
    ASSERT_TRUE(p.ok());
    EXPECT_DOUBLE_EQ(p.rows[1].balance, 500.00);
    EXPECT_DOUBLE_EQ(p.rows[0].balance, 520.00);
    p = planOf({csv(bare)}, std::nullopt);
    EXPECT_FALSE(p.ok());
    EXPECT_TRUE(p.noBalanceGiven);
    EXPECT_TRUE(p.rows.isEmpty());
}

TEST(FeedWriter, ReplacesTheFeedWholeOrLeavesItAlone)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("atl613o4.dll"));
    // An old feed with a rename in main and a row of its own.
    {
        store::Connection cn;
        cn.open(path, store::Connection::OpenMode::ReadWriteCreate);
        cn.executeRaw(schema::feedScript(schema::bankFeedTables()));
        cn.executeRaw(QStringLiteral("INSERT INTO main VALUES ('77', '76');"
                                     "INSERT INTO mizrahiOsh VALUES ('old', 1, '2024-01-01', NULL, 'x', 1, 0, 1, 0);"));
    }
    const FeedPlan p = planOf({csv(january)});
    ASSERT_TRUE(p.ok());
    EXPECT_EQ(writeFeed(path, QStringLiteral("mizrahiOsh"), p.rows), QString());
    EXPECT_EQ(pelkor::testing::queryRows(path, QStringLiteral("SELECT accountNum, transactionID, date, confirm, description, "
                                                      "[in], out, balance FROM mizrahiOsh WHERE transactionID <= 2")),
              QStringLiteral("77|1|01/01/2025|NULL|פתיחה|100|0|100;77|2|02/01/2025|NULL|קפה|0|12|88"));
    EXPECT_EQ(pelkor::testing::queryRows(path, QStringLiteral("SELECT * FROM main")), QStringLiteral("77|76"));
    EXPECT_EQ(pelkor::testing::queryRows(path, QStringLiteral("SELECT count(*) FROM poalimOsh")), QStringLiteral("0"));

    // A write that fails (a table name the engine refuses) leaves the feed
    // as it was, and no new file beside it.
    const QString before = pelkor::testing::queryRows(path, QStringLiteral("SELECT * FROM mizrahiOsh"));
    EXPECT_FALSE(writeFeed(path, QStringLiteral("no such\"table"), p.rows).isEmpty());
    EXPECT_EQ(pelkor::testing::queryRows(path, QStringLiteral("SELECT * FROM mizrahiOsh")), before);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("atl613o4.dll")});
}
