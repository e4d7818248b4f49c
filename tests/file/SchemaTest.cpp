// A new ledger must be one a user can start from, and the creation scripts
// must give every table the columns the statements rely on.
#include "file/Schema.h"
#include "seams/store/Connection.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pelkor;
using store::Connection;
using pelkor::testing::queryRows;

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

TEST_F(NewLedger, OneOpeningLineBearsTheMarkAndTheFileIsUnbound)
{
    EXPECT_EQ(queryRows(path, QStringLiteral("SELECT kind, date, detail, TypeNum, zee FROM pelkor")),
              QStringLiteral("+0|22/11/2026|יתרה התחלתית|1|ZZZZZZZZZZ"));
    // Type 1, the opening line's, is an income type; type 2 an expense one.
    EXPECT_EQ(queryRows(path, QStringLiteral("SELECT TypeNum, InOut FROM types, TypesCategories WHERE "
                                             "types.CategoryNum=TypesCategories.CategoryNum AND TypeNum IN (1, 2) "
                                             "ORDER BY TypeNum")),
              QStringLiteral("1|1;2|0"));
    EXPECT_EQ(queryRows(path, QStringLiteral("SELECT Credit, password, iBank, AccountNum FROM Defaults")),
              QStringLiteral("0|NULL|0|(none)"));
    EXPECT_EQ(queryRows(path, QStringLiteral("SELECT detail FROM invoiceCategs")), QStringLiteral(" "));
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

// The old file's script lacks what the load upgrades; the other scripts are
// run by the store, feed and merge tests.
TEST(Schemas, OldFileLacksTheUpgradedColumns)
{
    QTemporaryDir dir;
    Connection old;
    old.open(dir.filePath(QStringLiteral("old.pkr")), Connection::OpenMode::ReadWriteCreate);
    old.executeRaw(schema::oldDataFileScript());
    EXPECT_THROW(old.execute(QStringLiteral("SELECT isAuto FROM Defaults")), store::StoreError);
    EXPECT_THROW(old.execute(QStringLiteral("SELECT * FROM invoiceCategs")), store::StoreError);
    EXPECT_NO_THROW(old.execute(QStringLiteral("SELECT Password FROM Defaults")));
}
