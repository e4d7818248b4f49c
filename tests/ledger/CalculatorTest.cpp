// The calculator's sequences as a user presses them, and its result going
// back into a sum cell and from there into the file.
#include "ledger/frmCalc.h"

#include "file/Display.h"
#include "file/LoadFixture.h"
#include "ledger/LedgerEditor.h"
#include "seams/grid/GridModel.h"
#include "seams/ui/DialogRules.h"
#include "seams/ui/ScriptedUi.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pelkor;

namespace {

class Calculator : public ::testing::Test {
protected:
    void SetUp() override { pelkor::testing::ensureApplication(); }
    // Presses the keys of a desk calculator, one character each.
    QString keys(frmCalc& calc, const QString& pressed)
    {
        for (QChar c : pressed)
            calc.keyPress(c == QLatin1Char('=') ? QLatin1Char('\r') : c);
        return calc.control(QStringLiteral("txtNum"));
    }
    QTemporaryDir dir;
    ui::ScriptedUi ui{ui::DialogRules{}, dir.filePath(QStringLiteral("t.tsv")), QStringList{}};
};

} // namespace

TEST_F(Calculator, PrecedenceWithTwoLevels)
{
    // + then * replaces the operator: the next number multiplies the sum so
    // far; the last starts from the cell's value.
    const struct { double start; const char* keys; const char* shown; } cases[] = {
        {0, "2+3*4=", "14"}, {0, "2*3+4=", "10"}, {0, "2+3+*4=", "20"}, {1234.5, "-0.5=", "1234"}};
    for (const auto& c : cases) {
        frmCalc calc(c.start, ui);
        EXPECT_EQ(keys(calc, QString::fromLatin1(c.keys)), QString::fromLatin1(c.shown)) << c.keys;
    }
}

TEST_F(Calculator, DivisionByZeroIsRefusedAndKeepsTheState)
{
    frmCalc calc(0, ui);
    EXPECT_EQ(keys(calc, QStringLiteral("7/0=")), QStringLiteral("0"));
    // Another divisor, and = again.
    EXPECT_EQ(keys(calc, QStringLiteral("2=")), QStringLiteral("3.5"));
    frmCalc viaOperator(0, ui);
    keys(viaOperator, QStringLiteral("9/0*"));
    EXPECT_EQ(keys(viaOperator, QStringLiteral("3=")), QStringLiteral("3"));
    QFile t(dir.filePath(QStringLiteral("t.tsv")));
    ASSERT_TRUE(t.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(t.readAll()).count(QStringLiteral("msgbox\tשגיאה\tלא ניתן לחלק באפס")), 2);
}

TEST_F(Calculator, DisplayMemoryAndTheResult)
{
    frmCalc calc(0, ui);
    // The thirteenth digit is ignored.
    EXPECT_EQ(keys(calc, QStringLiteral("1234567890123")), QStringLiteral("123456789012"));
    calc.click(QStringLiteral("cmdClear"));
    keys(calc, QStringLiteral("2+3="));
    calc.click(QStringLiteral("cmdMemAdd"));
    EXPECT_EQ(calc.control(QStringLiteral("txtMem")), QStringLiteral("M"));
    // After a memory key the next digit starts a new number.
    EXPECT_EQ(keys(calc, QStringLiteral("4")), QStringLiteral("4"));
    calc.click(QStringLiteral("cmdMemRead"));
    EXPECT_EQ(calc.control(QStringLiteral("txtNum")), QStringLiteral("5"));
    calc.click(QStringLiteral("cmdOK"));
    EXPECT_FALSE(calc.didCancelCalc());
    EXPECT_EQ(calc.calcValue(), 5.0);
}

// A double click on a sum cell opens the calculator on the cell's value;
// its result goes into the cell and is written when the cursor leaves.
using SumCell = pelkor::testing::LoadTest;
TEST_F(SumCell, TheCalculatorsResultReachesTheFile)
{
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+1','2025-03-01','1','פתיחה',1000,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(2,'-1','2025-03-05','2','ספק',0,200,2,' ','ללא צבע');"));
    frmMain& f = start({QStringLiteral("open"), file}, QStringLiteral("frmCalc => cmdAdd=1;cmdDigit5=1;cmdDigit0=1;cmdOK=1\n"));
    grid::GridModel& g = f.mainGrid().msfgMain;
    g.setRow(2);
    g.setCol(colOut);
    f.editor().msfgMain_EnterCell();
    f.editor().msfgMain_DblClick();
    EXPECT_EQ(g.text(2, colOut), QStringLiteral("250.00"));
    f.editor().msfgMain_KeyDown(Qt::Key_Up, Qt::NoModifier);
    EXPECT_EQ(query(QStringLiteral("SELECT out FROM pelkor WHERE id=2")), QStringLiteral("250"));
}
