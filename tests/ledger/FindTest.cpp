// Find over a column of the main grid: how numbers match, the wrap and its
// question, and the red line as the search's upper edge.
#include "ledger/Find.h"

#include "file/Display.h"
#include "file/LoadFixture.h"
#include "seams/grid/GridModel.h"

#include <gtest/gtest.h>

using namespace pelkor;

TEST(FindMatch, NumbersAndKindsMatchInTheirOtherForms)
{
    EXPECT_TRUE(Finder::isFindMatch(QStringLiteral("1,234.50"), QStringLiteral("1234.5")));
    EXPECT_TRUE(Finder::isFindMatch(QStringLiteral("100.00-"), QStringLiteral("-100")));
    EXPECT_TRUE(Finder::isFindMatch(QStringLiteral("5+"), QStringLiteral("5")));
    EXPECT_TRUE(Finder::isFindMatch(QStringLiteral("Invoice 17"), QStringLiteral("invoice")));
    EXPECT_FALSE(Finder::isFindMatch(QStringLiteral("1,234.50"), QStringLiteral("-1234")));
    EXPECT_EQ(Finder::signToFront(QStringLiteral("12-")), QStringLiteral("-12"));
}

namespace {

// The zeroing line is line 2 (rows 1 and 2 are history); "ספק" stands on
// rows 1, 3 and 4.
const QString lines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'-1','2025-03-01','1','ספק ראשון',0,-100,2,' ','ללא צבע'),"
    "(2,'+1','2025-03-02','2','מכירה',500,0,1,'ZZZZZZZZZZ','ללא צבע'),"
    "(3,'-1','2025-03-05','3','ספק שני',0,1234.5,2,' ','ללא צבע'),"
    "(4,'-1','2025-03-06','4','ספק שלישי',0,20,2,' ','ללא צבע');");

class Find : public pelkor::testing::LoadTest {
protected:
    frmMain& open(const QString& rules)
    {
        makeLedger(lines);
        frmMain& f = start({QStringLiteral("open"), file}, rules);
        grid::GridModel& g = f.mainGrid().msfgMain;
        g.setRow(1);
        g.setCol(colDetail);
        f.editor().msfgMain_EnterCell();
        EXPECT_TRUE(f.finder().showFind());
        return f;
    }
};

} // namespace

TEST_F(Find, BelowTheRedLineItWrapsOnceAfterAskingThenReports)
{
    frmMain& f = open(QStringLiteral("החיפוש הגיע לשורה האחרונה => OK\n"));
    f.findState().findText = QStringLiteral("ספק");
    grid::GridModel& g = f.mainGrid().msfgMain;
    EXPECT_EQ(f.finder().doFind(true, true), Finder::Outcome::Hit);
    EXPECT_EQ(g.Row(), 3);   // row 1 is above the red line
    EXPECT_EQ(f.finder().doFind(true, true), Finder::Outcome::Hit);
    EXPECT_EQ(g.Row(), 4);
    // Past the last row: the question, then from the first row below the
    // red line, never row 1.
    EXPECT_EQ(f.finder().doFind(true, true), Finder::Outcome::Hit);
    EXPECT_EQ(g.Row(), 3);
    EXPECT_EQ(prompts().size(), 1);

    f.findState().findText = QStringLiteral("אין כזה");
    EXPECT_EQ(f.finder().doFind(true, true), Finder::Outcome::NotFound);
    // One question for the wrap, then the report without asking again.
    const QStringList got = prompts();
    EXPECT_EQ(got.filter(QStringLiteral("החיפוש הגיע לשורה האחרונה")).size(), 2) << got.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(got.last().startsWith(QStringLiteral("msgbox|חיפוש|לא נמצא הטקסט \"")));
    EXPECT_TRUE(got.last().contains(QStringLiteral("בטור הפירוט בפלקור")));
}

TEST_F(Find, TheWholeColumnWhenNotOnlyBelowTheRedLine)
{
    frmMain& f = open(QString());
    f.findState().onlyBelowRed = false;
    f.findState().findCol = colOut;
    f.findState().findRow = 0;
    f.findState().findText = QStringLiteral("1234.5");
    EXPECT_EQ(f.finder().doFind(true, true), Finder::Outcome::Hit);
    EXPECT_EQ(f.mainGrid().msfgMain.Row(), 3);
    f.findState().findText = QStringLiteral("-100");
    EXPECT_EQ(f.finder().doFind(false, true), Finder::Outcome::Hit);
    EXPECT_EQ(f.mainGrid().msfgMain.Row(), 1);
}
