// Sums beyond what a line holds to the agora: refused with one message on
// every road a sum comes in by (the grid, the calculator, recurring lines;
// the add-line dialog in NewLineTest), and the file left as it was.
#include "base/Format.h"
#include "file/Display.h"
#include "ledger/GridFixture.h"
#include "ledger/frmCalc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

const QString twoLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-02-20','11','מכירה',1000,0,1,' ','ללא צבע'),"
    "(2,'-1','2025-03-01','12','ספק',0,300,2,'ZZZZZZZZZZ','ללא צבע'),"
    "(3,'-1','2025-03-05','13','שכירות',0,200,2,' ','ללא צבע');");

class SumLimit : public GridTest {
protected:
    QString refusal() const { return QStringLiteral("msgbox|שגיאה|") + sumTooLargeMessage() + QStringLiteral("|OK"); }
    QString all() { return query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")); }
};

} // namespace

TEST(SumLimitRule, EveryAgoraBelowTenThousandBillionAndNoMore)
{
    EXPECT_FALSE(isSumTooLarge(9999999999999.99));
    EXPECT_FALSE(isSumTooLarge(-9999999999999.99));
    EXPECT_FALSE(isSumTooLarge(0.001));
    EXPECT_TRUE(isSumTooLarge(9999999999999.996));   // rounds to 10^13
    EXPECT_TRUE(isSumTooLarge(-1e13));
    EXPECT_TRUE(isSumTooLarge(99999999999999999.0));
    EXPECT_TRUE(isSumTooLarge(std::numeric_limits<double>::infinity()));
    EXPECT_TRUE(isSumTooLarge(std::nan("")));
    // The limit itself still prints to the agora it is.
    EXPECT_EQ(FormatSum(maxSum), QStringLiteral("9,999,999,999,999.99"));
    EXPECT_TRUE(sumTooLargeMessage().startsWith(QStringLiteral("הסכום גדול מדי")));
    EXPECT_TRUE(sumTooLargeMessage().contains(QStringLiteral("9,999,999,999,999.99")));
}

TEST_F(SumLimit, TheGridRefusesASumTooLargeAndTakesTheLargestItHolds)
{
    openOn(twoLines, {});
    const QString before = all();
    type(3, colOut, QStringLiteral("10000000000000"));
    type(3, colIn, QStringLiteral("99,999,999,999,999,999"));
    EXPECT_EQ(prompts(), (QStringList{refusal(), refusal()}));
    EXPECT_EQ(all(), before);
    EXPECT_EQ(g().text(3, colOut), QStringLiteral("200.00"));
    EXPECT_EQ(g().text(3, colIn), QStringLiteral("0.00"));
    EXPECT_EQ(g().Row(), 3);
    EXPECT_EQ(g().Col(), colIn);

    type(3, colOut, QStringLiteral("9,999,999,999,999.99"));
    EXPECT_EQ(prompts().size(), 2);
    EXPECT_EQ(g().text(3, colBalance), QStringLiteral("9,999,999,999,299.99-"));
    m->cmdRefresh_Click();
    EXPECT_EQ(g().text(3, colOut), QStringLiteral("9,999,999,999,999.99"));
    EXPECT_EQ(g().text(3, colBalance), QStringLiteral("9,999,999,999,299.99-"));
}

TEST_F(SumLimit, TheCalculatorKeepsAResultNoLineHolds)
{
    ensureApplication();
    QTemporaryDir d;
    ui::ScriptedUi ui{ui::DialogRules{}, d.filePath(QStringLiteral("t.tsv")), QStringList{}};
    frmCalc calc(0, ui);
    for (QChar c : QStringLiteral("999999999999*100"))
        calc.keyPress(c);
    calc.click(QStringLiteral("cmdOK"));
    EXPECT_FALSE(calc.isClosed());
    EXPECT_EQ(calc.control(QStringLiteral("txtNum")), QStringLiteral("99999999999900"));
    calc.click(QStringLiteral("cmdClear"));
    calc.keyPress(QLatin1Char('5'));
    calc.click(QStringLiteral("cmdOK"));
    EXPECT_TRUE(calc.isClosed());
    EXPECT_EQ(calc.calcValue(), 5.0);
    QFile t(d.filePath(QStringLiteral("t.tsv")));
    ASSERT_TRUE(t.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(t.readAll()).count(QStringLiteral("msgbox\tשגיאה\t") + sumTooLargeMessage()), 1);
}

TEST_F(SumLimit, RecurringLinesRefuseASumTooLargeAndASeriesThatGrowsPastIt)
{
    for (const char* fields : {"txtFromDate=08/04/2025;txtToDate=08/06/2025;txtJump=חודש;txtOut=10000000000000",
                               "txtFromDate=08/04/2025;txtToDate=08/06/2025;txtJump=חודש;txtIn=9000000000000;"
                               "txtChangeInPercents=20;chkSaveInDB=1"}) {
        m.reset();
        for (const char* suffix : {"", "-wal", "-shm"})
            QFile::remove(file + QLatin1String(suffix));
        QFile::remove(transcriptPath());
        openOn(twoLines, QStringLiteral("frmConstantTransactions => ") + QString::fromUtf8(fields) + QLatin1Char('\n'));
        const QString before = all();
        m->mnuAddConstantTransactions_Click();
        EXPECT_TRUE(prompts().contains(refusal())) << fields << prompts().join(QLatin1Char('\n')).toStdString();
        EXPECT_EQ(all(), before) << fields;
        EXPECT_EQ(query(QStringLiteral("SELECT COUNT(*) FROM ConstantLines")), QStringLiteral("0"));
    }
}
