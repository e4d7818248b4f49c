// Deleting lines and setting the zeroing line in the grid, as a user does
// it: a selection and the Delete key or a button, F6, another process's texts.
#include "ledger/LedgerEditor.h"

#include "base/Format.h"
#include "file/Display.h"
#include "ledger/GridFixture.h"
#include "seams/grid/GridModel.h"

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

// Two lines on 01/03 (the second bears the mark: the zeroing line is its
// date's last line in the file's order), then one line a date.
const QString sixLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','11','מכירה',1000,0,1,' ','ללא צבע'),"
    "(2,'-1','2025-03-01','12','ספק',0,300,2,'ZZZZZZZZZZ','ללא צבע'),"
    "(3,'+2','2025-03-06','13','שירות',200,0,3,' ','ללא צבע'),"
    "(4,'-2','2025-03-06','14','משכורת',0,500,8,' ','ללא צבע'),"
    "(5,'+1','2025-03-10','15','מכירה',50,0,1,' ','ללא צבע'),"
    "(6,'-1','2025-03-12','16','ספק',0,20,2,' ','ללא צבע');");

const QString question = QStringLiteral("msgbox|מחיקה|?האם אתה בטוח שברצונך למחוק את ");

class Deleting : public GridTest {
protected:
    frmMain& open(const QString& rules = {}) { return openOn(sixLines, rules); }
    // Whole rows from row to rowSel, the cursor staying on row.
    void selectRows(int row, int rowSel)
    {
        go(row, g().FixedCols());
        g().setRowSel(rowSel);
        g().setColSel(g().Cols() - 1);
    }
    void pressDelete() { ed().msfgMain_KeyDown(Qt::Key_Delete, Qt::NoModifier); }
    QString ids() { return query(QStringLiteral("SELECT id FROM pelkor ORDER BY id")); }
    QString marked() { return query(QStringLiteral("SELECT id FROM pelkor WHERE zee='ZZZZZZZZZZ'")); }
};

} // namespace

TEST_F(Deleting, ARangeWithConfirmedRowsDeletesExactlyTheOthers)
{
    open();
    // Rows 3..5; rows 3 and 5 are confirmed with the bank.
    selectRows(3, 5);
    g().setText(3, colMark, QStringLiteral("v"));
    g().setText(5, colMark, QStringLiteral("v"));
    pressDelete();
    EXPECT_EQ(prompts(), (QStringList{question + QStringLiteral("3 השורות המסומנות|Yes"),
                                      QStringLiteral("msgbox|פלקור|2 מהשורות לא נמחקו מכיוון שהן מותאמות|OK")}));
    EXPECT_EQ(ids(), QStringLiteral("1;2;3;5;6"));
    // The grid reloaded without the line, the cursor back on its row.
    EXPECT_EQ(g().Rows(), 6);
    EXPECT_EQ(g().Row(), 3);
    EXPECT_EQ(marked(), QStringLiteral("2"));

    // One confirmed of two: the other goes, and the message says "one".
    selectRows(4, 5);
    g().setText(5, colMark, QStringLiteral("v"));
    pressDelete();
    EXPECT_EQ(prompts().mid(2), (QStringList{question + QStringLiteral("2 השורות המסומנות|Yes"),
                                             QStringLiteral("msgbox|פלקור|אחת השורות לא נמחקה מכיוון שהיא מותאמת|OK")}));
    EXPECT_EQ(ids(), QStringLiteral("1;2;3;6"));

    // Every row confirmed: nothing goes, no reload.
    selectRows(3, 3);
    g().setText(3, colMark, QStringLiteral("v"));
    ed().cmdDel_Click();
    EXPECT_EQ(prompts().mid(4), (QStringList{question + QStringLiteral("השורה המסומנת|Yes"),
                                             QStringLiteral("msgbox|פלקור|השורה לא נמחקה מכיוון שהיא מותאמת|OK")}));
    EXPECT_EQ(ids(), QStringLiteral("1;2;3;6"));
    EXPECT_EQ(g().text(3, colMark), QStringLiteral("v")) << "no reload cleared the grid";
}

TEST_F(Deleting, TheQuestionNamesTheRowsAndHistoryAndNoKeepsThem)
{
    open(QStringLiteral("האם אתה בטוח => No\n"));
    // A button over a single cell asks with the plain word.
    go(3, colDetail);
    ed().cmdDel_Click();
    // Whole rows: "the marked row".
    selectRows(3, 3);
    pressDelete();
    // The zeroing line's own row is history.
    selectRows(2, 2);
    pressDelete();
    // A range begun above the red line says so; begun below it, it does
    // not, though it reaches into history: only Row is weighed.
    selectRows(1, 3);
    pressDelete();
    selectRows(3, 1);
    pressDelete();
    EXPECT_EQ(prompts(), (QStringList{
                             question + QStringLiteral("השורה|No"),
                             question + QStringLiteral("השורה המסומנת|No"),
                             question + QStringLiteral("השורה המסומנת למרות שהיא מעל שורת האיפוס|No"),
                             question + QStringLiteral("3 השורות המסומנות למרות שלפחות אחת מהן היא מעל שורת האיפוס|No"),
                             question + QStringLiteral("3 השורות המסומנות|No"),
                         }));
    EXPECT_EQ(ids(), QStringLiteral("1;2;3;4;5;6"));
    EXPECT_EQ(marked(), QStringLiteral("2"));
}

TEST_F(Deleting, TheKeyOverOneCellEmptiesItAndTheCommitKeepsABlank)
{
    open();
    go(4, colDetail);
    pressDelete();
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(g().text(4, colDetail), QString());
    go(5, colDetail);
    EXPECT_EQ(query(QStringLiteral("SELECT detail FROM pelkor WHERE id=4")), QStringLiteral(" "));
    // A confirmed row's sums are not the key's to empty.
    g().setText(5, colMark, QStringLiteral("v"));
    go(5, colIn);
    pressDelete();
    EXPECT_EQ(g().text(5, colIn), QStringLiteral("50.00"));
}

TEST_F(Deleting, TheLastLineOfAFileStays)
{
    open();
    ed().cmdDelAll_Click();
    EXPECT_EQ(prompts(), (QStringList{
                             question + QStringLiteral("6 השורות המסומנות למרות שלפחות אחת מהן היא מעל שורת האיפוס|Yes"),
                             QStringLiteral("msgbox|שגיאה|יש להשאיר לפחות שורה אחת בפלקור|OK"),
                         }));
    EXPECT_EQ(ids(), QStringLiteral("1;2;3;4;5;6"));
    EXPECT_FALSE(m->ended());
    // All but one may go.
    selectRows(6, 2);
    pressDelete();
    EXPECT_EQ(ids(), QStringLiteral("1"));
    EXPECT_EQ(marked(), QStringLiteral("1"));
    EXPECT_EQ(g().Rows(), 2);
    EXPECT_EQ(g().Row(), 1);
}

TEST_F(Deleting, TheMarkMovesWhenItsLineOrItsWholeDateGoes)
{
    open();
    // The zeroing line itself: its date's other line takes the mark.
    selectRows(2, 2);
    pressDelete();
    EXPECT_EQ(marked(), QStringLiteral("1"));
    EXPECT_EQ(m->ledger().iRowAboveRed, 1);
    EXPECT_EQ(m->ledger().ipusDate, QDate(2025, 3, 1));
    // Every line on or before the zeroing date: the date moves to the
    // oldest left, and the mark to that date's last line in the file's
    // order (the expense after the income).
    selectRows(1, 1);
    pressDelete();
    EXPECT_EQ(ids(), QStringLiteral("3;4;5;6"));
    EXPECT_EQ(marked(), QStringLiteral("4"));
    EXPECT_EQ(redLineRow(m->ledger(), m->instance()), 2);
}

// The range's deletes and the mark's move are one change: when the move
// fails (here the file refuses the mark), no line is gone and the old mark
// stands, as a process killed between the statements would leave it.
TEST_F(Deleting, ADeleteWhoseMarkMoveFailsLeavesTheFileAsItWas)
{
    makeLedger(sixLines + QStringLiteral(
                   "CREATE TRIGGER no_mark BEFORE UPDATE OF zee ON pelkor WHEN new.zee = 'ZZZZZZZZZZ' "
                   "BEGIN SELECT RAISE(ABORT, 'no mark'); END;"));
    start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    // The range takes the marked line with it: the mark must move.
    selectRows(2, 5);
    m->guarded(QStringLiteral("msfgMain_KeyDown"), [this] { pressDelete(); });
    EXPECT_EQ(ids(), QStringLiteral("1;2;3;4;5;6"));
    EXPECT_EQ(marked(), QStringLiteral("2"));
    EXPECT_EQ(m->ledger().ipusID, QStringLiteral("2"));
    EXPECT_FALSE(m->ended());
    EXPECT_TRUE(g().Redraw());

    // The file mended, the same delete goes through.
    {
        store::Connection cn;
        cn.open(file);
        cn.executeRaw(QStringLiteral("DROP TRIGGER no_mark;"));
    }
    selectRows(2, 5);
    pressDelete();
    EXPECT_EQ(ids(), QStringLiteral("1;6"));
    EXPECT_EQ(marked(), QStringLiteral("1"));
}

TEST_F(Deleting, F6SetsTheZeroingLineOnItsDatesLastLineAndTheRedLineFollows)
{
    open();
    // The first of the two lines of 06/03: the mark goes to the second.
    go(3, colDetail);
    ASSERT_TRUE(ed().msfgMain_KeyDown(Qt::Key_F6, Qt::NoModifier));
    EXPECT_EQ(marked(), QStringLiteral("4"));
    EXPECT_EQ(redLineRow(m->ledger(), m->instance()), 4);
    // The reload kept the cursor on its line and column.
    EXPECT_EQ(g().Row(), 3);
    EXPECT_EQ(g().Col(), colDetail);

    // F6 in the editor commits the cell first, then moves the line (later,
    // no history question).
    go(5, colDetail);
    ed().GridEdit(QLatin1Char('^'));
    ed().txtCell_Change(QStringLiteral("מכירה גדולה"), 11, 0);
    ed().txtCell_KeyDown(Qt::Key_F6, Qt::NoModifier);
    EXPECT_EQ(query(QStringLiteral("SELECT detail FROM pelkor WHERE id=5")), QStringLiteral("מכירה גדולה"));
    EXPECT_EQ(marked(), QStringLiteral("5"));
    EXPECT_EQ(redLineRow(m->ledger(), m->instance()), 5);
    EXPECT_FALSE(m->editState().editorOpen());
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join(QLatin1Char('\n')).toStdString();

    // Back into the past, and the button that brings it into view.
    go(1, colKind);
    ed().msfgMain_KeyDown(Qt::Key_F6, Qt::NoModifier);
    EXPECT_EQ(marked(), QStringLiteral("2"));
    go(6, colOut);
    g().setTopRow(5);
    m->cmdGoToIpusLine_Click();
    EXPECT_EQ(g().Row(), 2);
    EXPECT_EQ(g().TopRow(), 2);
    EXPECT_EQ(g().Col(), colKind);
}

TEST_F(Deleting, SetIpusAndDeleteFromAnotherProcessActLikeTheKeys)
{
    open();
    go(5, colKind);
    EXPECT_TRUE(m->txtMessage_Change(QStringLiteral("setipus")));
    EXPECT_EQ(marked(), QStringLiteral("5"));
    EXPECT_EQ(m->ledger().iRowAboveRed, 5);
    // "delete" is the Delete key: over a whole row it asks.
    selectRows(6, 6);
    EXPECT_TRUE(m->txtMessage_Change(QStringLiteral("delete")));
    EXPECT_EQ(prompts(), QStringList{question + QStringLiteral("השורה המסומנת|Yes")});
    EXPECT_EQ(ids(), QStringLiteral("1;2;3;4;5"));
}

// A bad-lines child may be emptied: "delete all" deletes its lines and the
// child ends as its OK ends it, its parent told.
TEST_F(Deleting, ABadLinesChildDeletesAllItsLinesAndEnds)
{
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+1','2025-03-01','1','a',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(2,'+1','2025-03-02','2','b','12,x',0,1,' ','ללא צבע'),"
        "(3,'-1','2025-03-03','3','c',0,'abc',2,' ','ללא צבע');"));
    RecordingBus bus;
    busOverride = &bus;
    start(splitCommand(QStringLiteral("new3 1234abcd 00000000 00000000 ") + file, 4), QString());
    ASSERT_FALSE(m->ended());
    ASSERT_EQ(m->ledger().lines.size(), 2u);
    ASSERT_TRUE(m->clickControl(QStringLiteral("cmdDelAll")));
    // A child's lines are no history: the plain question.
    EXPECT_EQ(prompts(), QStringList{question + QStringLiteral("2 השורות המסומנות|Yes")});
    EXPECT_EQ(ids(), QStringLiteral("1"));
    EXPECT_TRUE(m->ended());
    EXPECT_EQ(bus.sent, QStringList{QStringLiteral("1234abcd pelkor OK")});
}
