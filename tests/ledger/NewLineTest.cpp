// The new line at the end of the grid and the add-line dialog.
#include "ledger/LedgerEditor.h"

#include "base/Format.h"
#include "file/Display.h"
#include "ledger/GridFixture.h"
#include "seams/grid/GridModel.h"

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

// The zeroing line is line 2, on 05/03/2025.
const QString threeLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','11','מכירה',1000,0,1,' ','ללא צבע'),"
    "(2,'-1','2025-03-05','12','ספק',0,300,2,'ZZZZZZZZZZ','ללא צבע'),"
    "(3,'+2','2025-03-10','13','שירות',200,0,3,' ','ללא צבע');");

class NewLines : public GridTest {
protected:
    frmMain& open(const QString& rules = {}) { return openOn(threeLines, rules); }
    int last() { return g().Rows() - 1; }
    // A new line with a description, and a date unless none is given.
    void newLine(const QString& date, const QString& detail = QStringLiteral("חדש"))
    {
        ed().msfgMain_KeyDown(Qt::Key_Insert, Qt::NoModifier);
        if (!date.isEmpty())
            type(last(), colDate, date);
        type(last(), colDetail, detail);
    }
    int written(const QString& detail = QStringLiteral("חדש"))
    {
        return query(QStringLiteral("SELECT count(*) FROM pelkor WHERE detail='%1'").arg(detail)).toInt();
    }
};

} // namespace

// Each road that writes a pending line, with each answer: exactly one row
// for a dated line; none for an undated one, dropped (Yes) or kept pending
// (No). A second pass of the same road never writes it again.
TEST_F(NewLines, EveryRoadWritesThePendingLineOnceOrNotAtAll)
{
    struct Road {
        const char* name;
        std::function<void()> take;
        bool opensLine = false;   // the road opens a fresh line after
    };
    const Road roads[] = {
        {"another row", [this] { go(1, colKind); }},
        {"Insert", [this] { ed().msfgMain_KeyDown(Qt::Key_Insert, Qt::NoModifier); }, true},
        {"F5", [this] { ed().msfgMain_KeyDown(Qt::Key_F5, Qt::NoModifier); }},
        {"F6", [this] { ed().msfgMain_KeyDown(Qt::Key_F6, Qt::NoModifier); }},
        {"closing", [this] { m->Form_QueryUnload(); }},
        {"focus lost", [this] {
             g().setRow(1);   // a click elsewhere moved the cursor without its events
             ed().msfgMain_LostFocus();
         }},
    };
    struct Case { const char* date; const char* answer; int rows; bool pending; };
    const Case cases[] = {{"15/03/2025", "Yes", 1, false}, {"", "Yes", 0, false}, {"", "No", 0, true}};
    for (const Road& road : roads) {
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(road.name) + " / " + (*c.date ? "dated" : "undated") + " / " + c.answer);
            m.reset();
            QFile::remove(file);
            open(QStringLiteral("הוספת שורה => ") + QLatin1String(c.answer));
            newLine(QLatin1String(c.date));
            road.take();
            EXPECT_EQ(written(), c.rows);
            EXPECT_EQ(m->editState().isThereNewLine, c.pending || road.opensLine);
            if (c.pending && !m->ended())
                EXPECT_EQ(g().Row(), last());   // back on the pending line
            if (!m->ended()) {
                road.take();
                EXPECT_EQ(written(), c.rows);
            }
        }
    }
}

TEST_F(NewLines, ADateAloneMakesAnIncomeLineOfTheDefaultsThatTheNextLoadLandsOn)
{
    open();
    ed().msfgMain_KeyDown(Qt::Key_Insert, Qt::NoModifier);
    // The new line starts empty, with the balance of the line above.
    EXPECT_EQ(g().text(4, colBalance), g().text(3, colBalance));
    type(4, colDate, QStringLiteral("20/03/2025"));
    go(1, colKind);
    EXPECT_EQ(query(QStringLiteral("SELECT kind, date, confirm, detail, [in], out, TypeNum, memo FROM pelkor WHERE id=4")),
              QStringLiteral("+0|20/03/2025| | |0|0|1|newline ללא צבע"));
    // The record addresses the row: a later edit reaches it.
    type(4, colDetail, QStringLiteral("אחרי"));
    EXPECT_EQ(query(QStringLiteral("SELECT detail FROM pelkor WHERE id=4")), QStringLiteral("אחרי"));
    // The reload lands on it and cuts the mark from its memo.
    m->cmdRefresh_Click();
    EXPECT_EQ(m->ledger().lines[size_t(g().Row() - 1)].Id, QStringLiteral("4"));
    EXPECT_EQ(query(QStringLiteral("SELECT memo FROM pelkor WHERE id=4")), QStringLiteral("ללא צבע"));
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join(QLatin1Char('\n')).toStdString();
}

TEST_F(NewLines, TheKindFollowsTheSumsAndAWrongKindKeepsTheLinePending)
{
    open();
    // A negative kind typed with an income: its positive twin is written.
    newLine(QStringLiteral("20/03/2025"));
    type(last(), colKind, QStringLiteral("1-"));
    type(last(), colIn, QStringLiteral("50"));
    go(1, colKind);
    EXPECT_EQ(query(QStringLiteral("SELECT kind, [in], out, TypeNum FROM pelkor WHERE detail='חדש'")), QStringLiteral("+1|50|0|1"));

    // A kind that is no kind of the list: told, and the line stays.
    newLine(QStringLiteral("21/03/2025"), QStringLiteral("שני"));
    g().setText(last(), colKind, QStringLiteral("77"));
    go(1, colKind);
    EXPECT_EQ(written(QStringLiteral("שני")), 0);
    EXPECT_TRUE(m->editState().isThereNewLine);
    EXPECT_EQ(g().Row(), last());
    EXPECT_EQ(g().Col(), colKind);
    EXPECT_EQ(prompts().value(0), QStringLiteral("msgbox|שגיאה|הערך בסיווג אינו תואם את הרשימה|OK"));
    // Esc: gone, unwritten, unasked.
    ed().msfgMain_KeyDown(Qt::Key_Escape, Qt::NoModifier);
    EXPECT_FALSE(m->editState().isThereNewLine);
    EXPECT_EQ(m->ledger().lines.size(), size_t(g().Rows() - 1));
    EXPECT_EQ(m->ledger().lines.size(), 4u);
    EXPECT_EQ(prompts().size(), 1);
}

TEST_F(NewLines, InsertTwiceOnAnEmptyLineDropsTheFirstAndOpensAFreshOne)
{
    open(QStringLiteral("הוספת שורה => Yes"));
    ed().msfgMain_KeyDown(Qt::Key_Insert, Qt::NoModifier);
    const int rows = g().Rows();
    ed().msfgMain_KeyDown(Qt::Key_Insert, Qt::NoModifier);
    EXPECT_EQ(g().Rows(), rows);
    EXPECT_TRUE(m->editState().isThereNewLine);
    EXPECT_EQ(g().Row(), last());
    EXPECT_EQ(query(QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("3"));
    EXPECT_EQ(prompts().size(), 1);
}

TEST_F(NewLines, ALineInHistoryAsksAndTakesTheZeroingMark)
{
    open(QStringLiteral("אזהרה => Yes"));
    newLine(QStringLiteral("05/03/2025"));
    type(last(), colKind, QStringLiteral("2-"));
    type(last(), colOut, QStringLiteral("1"));
    EXPECT_TRUE(prompts().value(0).contains(QStringLiteral("החדשה")));
    go(1, colKind);
    // On the zeroing date, and last in the file's order there (kind 2- after
    // 1-): the mark is its.
    EXPECT_EQ(query(QStringLiteral("SELECT detail FROM pelkor WHERE zee='ZZZZZZZZZZ'")), QStringLiteral("חדש"));
}

TEST_F(NewLines, TheWrittenKeyIsTheRowsEvenWhenAnotherInstanceWroteFirst)
{
    open();
    newLine(QStringLiteral("20/03/2025"));
    // Another instance takes the key this line was forecast to get.
    const QString forecast = m->ledger().lines.back().Id;
    {
        store::Connection other;
        other.open(file);
        other.execute(QStringLiteral("INSERT INTO pelkor (id,kind,[date],confirm,detail,[in],out,TypeNum,zee,memo) "
                                     "VALUES (%1,'+1',#3/21/2025#,'9','אחר',5,0,1,' ','ללא צבע')").arg(forecast));
    }
    go(1, colKind);
    const QString id = m->ledger().lines.back().Id;
    EXPECT_NE(id, forecast);
    type(last(), colConfirm, QStringLiteral("77"));
    EXPECT_EQ(query(QStringLiteral("SELECT confirm FROM pelkor WHERE id=%1").arg(id)), QStringLiteral("77"));
    EXPECT_EQ(query(QStringLiteral("SELECT confirm FROM pelkor WHERE id=%1").arg(forecast)), QStringLiteral("9"));
}

// ---- the add-line dialog ------------------------------------------------------------

class AddLineDialog : public NewLines {
protected:
    QString second;
    void SetUp() override
    {
        NewLines::SetUp();
        second = dir.filePath(QStringLiteral("other.pkr"));
        pelkor::testing::makeLedger(second, QStringLiteral(
            "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
            "(1,'+1','2025-04-01','1','פתיחה',10,0,1,'ZZZZZZZZZZ','ללא צבע');"));
    }
    frmMain& openWith(const QString& dialogAnswer)
    {
        busOverride = &bus;
        frmMain& f = open(QStringLiteral("בחר קובץ => ") + second + QStringLiteral("\nהוספת שורה.*other => ") + dialogAnswer
                          + QStringLiteral("\nאזהרה => No\nהוספת שורה \\| בשורה => No"));
        f.instance().txtMessageId = 0x77;
        return f;
    }
    RecordingBus bus;
};

TEST_F(AddLineDialog, OnAnotherFileItWritesThereTellsTheOpenerAndLeavesTheMainConnection)
{
    openWith(QStringLiteral("txtKind=1;txtDate=02/05/2025;txtDetails=מהדוח;txtOut=40;txtMyType=;cmdOK=1"));
    m->clickControl(QStringLiteral("mnuAddLineToFile"));
    // Out turned the kind to its negative twin and the type to the expense default.
    EXPECT_EQ(queryRows(second, QStringLiteral("SELECT kind, date, detail, [in], out, TypeNum, memo FROM pelkor WHERE id=2")),
              QStringLiteral("-1|02/05/2025|מהדוח|0|40|2|newline ללא צבע"));
    // The new line is after the zeroing date: the mark stays.
    EXPECT_EQ(queryRows(second, QStringLiteral("SELECT id FROM pelkor WHERE zee='ZZZZZZZZZZ'")), QStringLiteral("1"));
    EXPECT_EQ(bus.sent, QStringList{QStringLiteral("00000077 closed")});
    EXPECT_TRUE(m->ledger().isCnOpen);
    EXPECT_EQ(m->ledger().cn.path(), file);
    EXPECT_EQ(query(QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("3"));
}

TEST_F(AddLineDialog, RefusalsKeepTheDialogAndNothingIsWritten)
{
    // A date that is none, then a date in history declined, then OK with no
    // date, kept open (No), and closed by the window's close box.
    openWith(QStringLiteral("txtDate=31/02/2025;txtIn=5;txtDate=01/03/2025;txtDetails=x;cmdOK=1"));
    m->clickControl(QStringLiteral("mnuAddLineToFile"));
    const QStringList p = prompts();
    ASSERT_GE(p.size(), 5);
    EXPECT_EQ(p[2], QStringLiteral("msgbox|שגיאה|התאריך אינו חוקי|OK"));
    EXPECT_TRUE(p[3].startsWith(QStringLiteral("msgbox|אזהרה|.השורה החדשה תהיה לפני שורת האיפוס")));
    EXPECT_TRUE(p[4].contains(QStringLiteral("בשורה החדשה אין תאריך")));
    EXPECT_EQ(queryRows(second, QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("1"));
    EXPECT_TRUE(bus.sent.isEmpty());
}

TEST_F(AddLineDialog, ASumTooLargeIsRefusedAndNothingIsWritten)
{
    openWith(QStringLiteral("txtDate=02/05/2025;txtOut=10000000000000;cmdOK=1"));
    m->clickControl(QStringLiteral("mnuAddLineToFile"));
    EXPECT_TRUE(prompts().contains(QStringLiteral("msgbox|שגיאה|") + sumTooLargeMessage() + QStringLiteral("|OK")))
        << prompts().join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(queryRows(second, QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("1"));
    EXPECT_TRUE(bus.sent.isEmpty());
}

TEST_F(NewLines, AForecastMadeBeforeTheWriteIsWrittenWithIt)
{
    open();
    newLine(QStringLiteral("20/04/2025"));
    type(last(), colIn, QStringLiteral("900"));
    // As the forecast dialog leaves the unsaved line: its record alone.
    m->ledger().lines.back().isTzefi = true;
    m->ledger().lines.back().relate = 99;
    go(1, colKind);
    EXPECT_EQ(query(QStringLiteral("SELECT IndTzefi, [relate] FROM pelkor WHERE detail='חדש'")), QStringLiteral("1|99"));
}
