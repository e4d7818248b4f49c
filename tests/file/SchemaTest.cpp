// A new ledger must be one a user can start from, and the creation scripts
// must give every table the columns the statements rely on.
#include "file/Schema.h"
#include "seams/store/Connection.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pelkor;
using store::Connection;

namespace {

struct NewLedger : ::testing::Test {
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("חנות.pkr"));
    QDate today{2026, 11, 22};
    Connection cn;
    void SetUp() override
    {
        schema::createLedger(path, today);
        cn.open(path);
    }
};

} // namespace

TEST_F(NewLedger, KindsComeInPairsFromZeroWithoutGapInTheLedgersOrder)
{
    auto rs = cn.execute(QStringLiteral("SELECT * FROM category ORDER BY Left(id,1) DESC, Len(Mid(id,2)), Mid(id,2)"));
    ASSERT_GT(rs.recordCount(), 4);
    ASSERT_EQ(rs.recordCount() % 2, 0);
    const long pairs = rs.recordCount() / 2;
    for (long i = 0; i < pairs; ++i) {
        EXPECT_EQ(rs.at(i, 0).toString(), QStringLiteral("+%1").arg(i));
        EXPECT_EQ(rs.at(pairs + i, 0).toString(), QStringLiteral("-%1").arg(i));
        EXPECT_FALSE(rs.at(i, 1).toString().trimmed().isEmpty());
        EXPECT_FALSE(rs.at(i, 1).toString().contains(QLatin1Char('\'')));
    }
}

TEST_F(NewLedger, DefaultTypesSitOnTheirSides)
{
    auto rs = cn.execute(QStringLiteral(
        "SELECT TypeNum,TypeName,types.CategoryNum,InOut,TypesCategories.CategoryNum,CategoryName FROM types,"
        "TypesCategories WHERE types.CategoryNum=TypesCategories.CategoryNum ORDER BY CategoryName,TypeName"));
    ASSERT_GT(rs.recordCount(), 2);
    bool sawIncome = false, sawExpense = false;
    for (long r = 0; r < rs.recordCount(); ++r) {
        const auto num = rs.at(r, 0).toInt();
        if (num == 1) { sawIncome = true; EXPECT_EQ(rs.at(r, 3).toInt(), 1); }
        if (num == 2) { sawExpense = true; EXPECT_NE(rs.at(r, 3).toInt(), 1); }
    }
    EXPECT_TRUE(sawIncome);
    EXPECT_TRUE(sawExpense);
}

TEST_F(NewLedger, DefaultsHoldEveryColumnAndTheFileIsUnbound)
{
    auto rs = cn.execute(QStringLiteral("SELECT * FROM Defaults"));
    ASSERT_EQ(rs.recordCount(), 1);
    EXPECT_EQ(rs.field(QStringLiteral("Credit")).toDouble(), 0.0);
    EXPECT_TRUE(rs.field(QStringLiteral("password")).isNull());
    EXPECT_EQ(rs.field(QStringLiteral("NDays")).toInt(), 90);
    EXPECT_EQ(rs.field(QStringLiteral("isAuto")).toInt(), 0);
    EXPECT_EQ(rs.field(QStringLiteral("iBank")).toInt(), 0);
    EXPECT_EQ(rs.field(QStringLiteral("AccountNum")).toString(), QStringLiteral("(none)"));
}

TEST_F(NewLedger, OneOpeningLineBearsTheIpusMark)
{
    auto rs = cn.execute(QStringLiteral("SELECT id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, "
                                        "[relate], IndTzefi FROM pelkor"));
    ASSERT_EQ(rs.recordCount(), 1);
    EXPECT_EQ(rs.field(QStringLiteral("kind")).toString(), QStringLiteral("+0"));
    EXPECT_EQ(rs.field(QStringLiteral("date")).toDate(), today);
    EXPECT_EQ(rs.field(QStringLiteral("confirm")).toString(), QStringLiteral(" "));
    EXPECT_EQ(rs.field(QStringLiteral("detail")).toString(), QStringLiteral("יתרה התחלתית"));
    EXPECT_EQ(rs.field(QStringLiteral("TypeNum")).toInt(), 1);
    EXPECT_EQ(rs.field(QStringLiteral("zee")).toString(), QStringLiteral("ZZZZZZZZZZ"));
    EXPECT_EQ(rs.field(QStringLiteral("memo")).toString(), QStringLiteral("ללא צבע"));
    EXPECT_EQ(cn.execute(QStringLiteral("SELECT id FROM pelkor WHERE zee='ZZZZZZZZZZ'")).recordCount(), 1);
    // The invoice kinds row is there too, with one blank for its list.
    auto inv = cn.execute(QStringLiteral("SELECT * FROM invoiceCategs"));
    ASSERT_EQ(inv.recordCount(), 1);
    EXPECT_EQ(inv.field(QStringLiteral("detail")).toString(), QStringLiteral(" "));
}

TEST_F(NewLedger, LinesAddedLaterNumberThemselves)
{
    cn.execute(QStringLiteral("INSERT into pelkor([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) "
                              "Values('-1',#11/23/2026#,' ','ספק',0,120.5,2,' ','ללא צבע')"));
    auto rs = cn.execute(QStringLiteral("SELECT MAX(id) FROM pelkor"));
    EXPECT_EQ(rs.at(0, 0).toInt(), 2);
}

TEST(CreateLedger, RefusesAnExistingFileAndLeavesItAlone)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("a.pkr"));
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("not a ledger");
    }
    EXPECT_THROW(schema::createLedger(path, QDate(2026, 1, 1)), store::StoreError);
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray("not a ledger"));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files).size(), 1);
}

TEST(CreateLedger, FailureInAFolderThatDoesNotExistLeavesNothing)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("missing/a.pkr"));
    EXPECT_THROW(schema::createLedger(path, QDate(2026, 1, 1)), store::StoreError);
    EXPECT_FALSE(QFile::exists(path));
}

TEST(Schemas, OldFileLacksTheUpgradedColumnsAndTheOtherScriptsCreateTheirTables)
{
    QTemporaryDir dir;
    Connection old;
    old.open(dir.filePath(QStringLiteral("old.pkr")), Connection::OpenMode::ReadWriteCreate);
    old.executeRaw(schema::oldDataFileScript());
    EXPECT_THROW(old.execute(QStringLiteral("SELECT isAuto FROM Defaults")), store::StoreError);
    EXPECT_THROW(old.execute(QStringLiteral("SELECT * FROM invoiceCategs")), store::StoreError);
    EXPECT_NO_THROW(old.execute(QStringLiteral("SELECT Password FROM Defaults")));

    Connection params;
    params.open(dir.filePath(QStringLiteral("PelkorParams.mdb")), Connection::OpenMode::ReadWriteCreate);
    params.executeRaw(schema::paramsScript());
    params.execute(QStringLiteral("INSERT INTO PARAMETER (PARAMETER, T) VALUES ('directory', '/home/u/ספרים')"));
    EXPECT_EQ(params.execute(QStringLiteral("SELECT T FROM PARAMETER WHERE PARAMETER='directory'")).at(0, 0).toString(),
              QStringLiteral("/home/u/ספרים"));

    Connection merge;
    merge.open(dir.filePath(QStringLiteral("merge.pkr")), Connection::OpenMode::ReadWriteCreate);
    merge.executeRaw(schema::mergeTemplateScript());
    EXPECT_EQ(merge.execute(QStringLiteral("SELECT * FROM mergedBanks ORDER BY index")).fieldCount(), 3);
    EXPECT_EQ(merge.execute(QStringLiteral("SELECT COUNT(id) FROM Category")).at(0, 0).toInt(), 0);

    Connection feed;
    feed.open(dir.filePath(QStringLiteral("atl613o3.dll")), Connection::OpenMode::ReadWriteCreate);
    feed.executeRaw(schema::feedScript(schema::bankFeedTables()));
    for (const QString& t : schema::bankFeedTables())
        EXPECT_TRUE(feed.tableExists(t)) << t.toStdString();
    EXPECT_TRUE(feed.tableExists(QStringLiteral("main")));
    EXPECT_EQ(schema::bankFeedTables().size(), 9);   // twelve banks, three share one table
}
