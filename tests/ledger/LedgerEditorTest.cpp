// Editing the ledger in the grid as a user does it: what the user is told,
// what the file holds after, and what the grid shows.
#include "ledger/LedgerEditor.h"

#include "base/Format.h"
#include "file/Display.h"
#include "ledger/GridFixture.h"
#include "seams/grid/GridModel.h"
#include "seams/platform/FakeKeyboardLayouts.h"

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

// The zeroing line is line 1, on 01/03/2025: it is history.
const QString fourLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','11','מכירה',1000,0,1,'ZZZZZZZZZZ','ללא צבע'),"
    "(2,'-1','2025-03-05','12','ספק',0,300,2,' ','ללא צבע'),"
    "(3,'+2','2025-03-06','13','שירות',200,0,3,' ','ללא צבע'),"
    "(4,'-2','2025-03-10','14','משכורת',0,500,8,' ','ללא צבע');");

class Editing : public GridTest {
protected:
    frmMain& open(const QString& rules = {}) { return openOn(fourLines, rules); }
    QString row(int id)
    {
        return query(QStringLiteral("SELECT kind, date, confirm, detail, [in], out, TypeNum FROM pelkor WHERE id=%1").arg(id));
    }
};

} // namespace

TEST_F(Editing, ASumThatChangesSidesWritesBothColumnsAndTheBalances)
{
    open();
    // Line 3 (row 3) is income 200; 100 in its expense turns it into expense.
    type(3, colOut, QStringLiteral("100"));
    EXPECT_EQ(row(3), QStringLiteral("-2|06/03/2025|13|שירות|0|100|2"));
    EXPECT_EQ(g().text(3, colKind), FormatKind(QStringLiteral("-2")));
    EXPECT_EQ(g().text(3, colIn), QStringLiteral("0.00"));
    // The income type gave way to the default expense type, in the grid.
    EXPECT_EQ(g().text(3, colType), QStringLiteral("תשלום כללי"));
    // Balances from that row on: 1000 - 300 - 100 - 500.
    EXPECT_EQ(g().text(4, colBalance), QStringLiteral("100.00"));
    EXPECT_EQ(g().Col(), colType);

    // A changed expense amount stays expense; a zero expense makes the
    // line income again, with the default income type.
    type(3, colOut, QStringLiteral("1,250.5"));
    EXPECT_EQ(row(3), QStringLiteral("-2|06/03/2025|13|שירות|0|1250.5|2"));
    type(3, colOut, QStringLiteral("0"));
    EXPECT_EQ(row(3), QStringLiteral("+2|06/03/2025|13|שירות|0|0|1"));
    EXPECT_EQ(g().text(3, colType), QStringLiteral("תקבול כללי"));
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join(QLatin1Char('\n')).toStdString();
}

// What the grid shows after a commit is what a reload shows: the default
// type a sum gives a line that changes sides, the default kind of an
// emptied kind cell, and the balances.
TEST_F(Editing, WhatACommitShowsIsWhatTheFileHolds)
{
    open();
    const auto shown = [&] {
        QStringList rows;
        for (int r = 1; r < g().Rows(); ++r) {
            QStringList cells;
            for (int c = colKind; c <= colBalance; ++c)
                cells << g().text(r, c);
            rows << cells.join(QLatin1Char('|'));
        }
        return rows;
    };
    // An income line of an income type (3) given an expense; an expense
    // line of an expense type (8) given an income; an emptied kind on each
    // side; and an expense of type 2 given 0, which makes it income.
    type(3, colOut, QStringLiteral("300"));
    type(4, colIn, QStringLiteral("75.5"));
    type(2, colKind, QString());
    type(4, colKind, QString());
    type(2, colOut, QStringLiteral("0"));
    EXPECT_EQ(row(3), QStringLiteral("-2|06/03/2025|13|שירות|0|300|2"));
    EXPECT_EQ(row(4), QStringLiteral("+0|10/03/2025|14|משכורת|75.5|0|1"));
    EXPECT_EQ(row(2), QStringLiteral("+0|05/03/2025|12|ספק|0|0|1"));
    const QStringList before = shown();
    EXPECT_EQ(before.value(2), QStringLiteral("2-|06/03/2025|13|שירות|0.00|300.00|תשלום כללי|700.00"));
    m->cmdRefresh_Click();
    EXPECT_EQ(shown(), before);
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join(QLatin1Char('\n')).toStdString();
}

// The balances after an edit are the ones a load adds up, digit for digit
// and colour for colour: a sum no agora of which a double holds replaced
// by an ordinary one, and sums whose binary fractions leave a balance a
// hair below zero, which prints with its sign and is over a credit line
// of 0.
TEST_F(Editing, TheBalancesAfterAnEditAreTheReloads)
{
    openOn(QStringLiteral(
               "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
               "(1,'+1','2025-03-01','11','מכירה',1000,0,1,'ZZZZZZZZZZ','ללא צבע'),"
               "(2,'-1','2025-03-05','12','ספק',0,99999999999999999,2,' ','ללא צבע'),"
               "(3,'+2','2025-03-06','13','שירות',0.3,0,3,' ','ללא צבע'),"
               "(4,'-2','2025-03-07','14','עמלה',0,0.1,8,' ','ללא צבע'),"
               "(5,'-2','2025-03-08','15','עמלה',0,0.2,8,' ','ללא צבע');"
               "UPDATE Defaults SET Credit=0;"),
           {});
    const auto balances = [&] {
        QStringList shown;
        for (int r = 1; r < g().Rows(); ++r)
            shown << g().text(r, colBalance) + (g().style(r, colBalance).bold ? QStringLiteral(" red") : QString());
        return shown;
    };
    type(2, colOut, QStringLiteral("1000"));
    EXPECT_EQ(balances(), (QStringList{QStringLiteral("1,000.00"), QStringLiteral("0.00"), QStringLiteral("0.30"),
                                       QStringLiteral("0.20"), QStringLiteral("0.00- red")}));
    type(2, colOut, QStringLiteral("2500.5"));
    const QStringList edited = balances();
    EXPECT_EQ(edited.value(1), QStringLiteral("1,500.50- red"));
    m->cmdRefresh_Click();
    EXPECT_EQ(balances(), edited);
}

TEST_F(Editing, RefusalsLeaveRecordAndFileAndBringTheCursorBack)
{
    open();
    const QString before = query(QStringLiteral("SELECT * FROM pelkor ORDER BY id"));
    type(2, colOut, QStringLiteral("12x"));
    type(2, colDate, QStringLiteral("31/02/2025"));
    type(2, colKind, QStringLiteral("3"));          // a plain number is income: not on an expense
    type(2, colKind, QStringLiteral("-77"));        // no such kind
    go(2, colType);
    ed().GridEdit(QLatin1Char('^'));
    ed().txtCombo_Change(QStringLiteral("אין כזה"), 7, 0);
    ed().cmbTypes_KeyDown(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ(prompts(), (QStringList{
                             QStringLiteral("msgbox|שגיאה|הערך בטור ההוצאה אינו מספר|OK"),
                             QStringLiteral("msgbox|שגיאה|התאריך אינו חוקי|OK"),
                             QStringLiteral("msgbox|שגיאה|סיווג חיובי אינו יכול להשתייך להוצאה|OK"),
                             QStringLiteral("msgbox|שגיאה|הערך בסיווג אינו תואם את הרשימה|OK"),
                             QStringLiteral("msgbox|שגיאה|הסוג שמילאת אינו חוקי|OK"),
                         }));
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before);
    // Each time the cell shows the record again and the cursor stays on it.
    EXPECT_EQ(g().Row(), 2);
    EXPECT_EQ(g().Col(), colType);
    EXPECT_EQ(g().text(2, colType), QStringLiteral("תשלום כללי"));
    EXPECT_EQ(g().text(2, colOut), QStringLiteral("300.00"));
    EXPECT_EQ(g().text(2, colKind), FormatKind(QStringLiteral("-1")));
    // The same number with a minus sign is an expense kind of the list.
    type(2, colKind, QStringLiteral("-3"));
    EXPECT_EQ(row(2), QStringLiteral("-3|05/03/2025|12|ספק|0|300|2"));
}

TEST_F(Editing, TextsAreCutEscapedAndStoredAsTyped)
{
    open();
    type(2, colConfirm, QString(51, QLatin1Char('7')));
    EXPECT_EQ(prompts().value(0),
              QStringLiteral("msgbox|שגיאה|הערך בטור האסמכתא ארוך מדי. האורך המירבי המותר הוא 50 אותיות. הערך יקוצר|OK"));
    EXPECT_EQ(query(QStringLiteral("SELECT confirm FROM pelkor WHERE id=2")), QString(50, QLatin1Char('7')));
    // Not a refusal: the cursor went on.
    EXPECT_EQ(g().Col(), colDetail);

    type(2, colDetail, QStringLiteral("'; DROP TABLE pelkor; --"));
    EXPECT_EQ(query(QStringLiteral("SELECT detail FROM pelkor WHERE id=2")), QStringLiteral("`; DROP TABLE pelkor; --"));
    type(3, colDetail, QStringLiteral("Invoice 17 חשבונית"));
    EXPECT_EQ(query(QStringLiteral("SELECT detail FROM pelkor WHERE id=3")), QStringLiteral("Invoice 17 חשבונית"));
    // An emptied description is kept as one blank.
    type(3, colDetail, QString());
    EXPECT_EQ(query(QStringLiteral("SELECT detail FROM pelkor WHERE id=3")), QStringLiteral(" "));
    EXPECT_EQ(prompts().size(), 1);
}

TEST_F(Editing, HistoryAboveTheRedLineIsTouchedOnlyWhenTheUserSaysSo)
{
    open(QStringLiteral("לפני שורת האיפוס.*עדכון זה => No\n"));
    type(1, colDetail, QStringLiteral("מכירה גדולה"));
    EXPECT_EQ(prompts().value(0), QStringLiteral("msgbox|אזהרה|.הינך מעדכן נתון הנמצא לפני שורת האיפוס. עדכון זה עלול לעדכן נתוני היסטוריה|No"));
    EXPECT_EQ(row(1), QStringLiteral("+1|01/03/2025|11|מכירה|1000|0|1"));
    EXPECT_EQ(g().text(1, colDetail), QStringLiteral("מכירה"));
    // No is no refusal: the cursor went on.
    EXPECT_EQ(g().Col(), colIn);
    // A later line moved on or before the zeroing date asks the other question.
    type(3, colDate, QStringLiteral("1/3/25"));
    EXPECT_EQ(prompts().value(1), QStringLiteral("msgbox|אזהרה|.שורה זו תעבור להיות לפני שורת האיפוס. עדכון זה עלול לעדכן נתוני היסטוריה|No"));
    EXPECT_EQ(row(3), QStringLiteral("+2|06/03/2025|13|שירות|200|0|3"));
}

TEST_F(Editing, ADateMovedIntoHistoryTakesTheMarkWhenTheUserAgrees)
{
    open(QStringLiteral("לפני שורת האיפוס => Yes\n"));
    type(4, colDate, QStringLiteral("1.3.2025"));
    EXPECT_EQ(row(4), QStringLiteral("-2|01/03/2025|14|משכורת|0|500|8"));
    // The last line on the zeroing date in the file's order bears the mark.
    EXPECT_EQ(query(QStringLiteral("SELECT id FROM pelkor WHERE zee='ZZZZZZZZZZ'")), QStringLiteral("4"));
    // The line stays where it was until the next load.
    EXPECT_EQ(g().text(4, colDate), QStringLiteral("01/03/2025"));
}

TEST_F(Editing, TheTypeIsCompletedFromItsListAndBackspaceDropsTheCompletion)
{
    open();
    go(2, colType);
    ed().GridEdit(QChar(u'ה'));    // typed on an expense line: the expense list
    const EditState& e = m->editState();
    ASSERT_TRUE(e.txtCombo.visible);
    for (const QString& r : e.cmbTypesRows)
        EXPECT_TRUE(r.endsWith(QStringLiteral("(תשלומים)"))) << r.toStdString();
    EXPECT_EQ(e.txtCombo.text, QStringLiteral("הוראת קבע"));
    EXPECT_EQ(e.txtCombo.selectedText(), QStringLiteral("וראת קבע"));
    // The next letter replaces the completion and searches again.
    ed().txtCombo_Change(QStringLiteral("הע"), 2, 0);
    EXPECT_EQ(e.txtCombo.text, QStringLiteral("העברה בנקאית יוצאת"));
    // Backspace over the completion removes it and brings none back.
    ed().cmbTypes_KeyDown(Qt::Key_Backspace, Qt::NoModifier);
    ed().txtCombo_Change(QStringLiteral("הע"), 2, 0);
    EXPECT_EQ(e.txtCombo.text, QStringLiteral("הע"));
    ed().txtCombo_Change(QStringLiteral("העב"), 3, 0);
    ed().cmbTypes_KeyDown(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ(query(QStringLiteral("SELECT TypeNum FROM pelkor WHERE id=2")), QStringLiteral("6"));
    EXPECT_EQ(e.lastOutType, QStringLiteral("העברה בנקאית יוצאת"));
    EXPECT_FALSE(e.txtCombo.visible);
}

TEST_F(Editing, TheKindDialogTakesAChoice)
{
    open(QStringLiteral("dlgKind => lstKind0=3-\n"));
    go(2, colKind);
    ed().msfgMain_DblClick();
    EXPECT_EQ(row(2), QStringLiteral("-3|05/03/2025|12|ספק|0|300|2"));
    EXPECT_EQ(g().Col(), colDate);
}

TEST_F(Editing, TheKindDialogClosedWithoutAChoiceChangesNothing)
{
    open();
    go(3, colKind);
    ed().msfgMain_DblClick();
    EXPECT_EQ(row(3), QStringLiteral("+2|06/03/2025|13|שירות|200|0|3"));
    EXPECT_EQ(g().Col(), colKind);
}

TEST_F(Editing, EscClosesTheEditorWithoutACommitAndF2RepeatsTheLastText)
{
    open();
    go(3, colDetail);
    ed().GridEdit(QChar(u'ש'));
    EXPECT_EQ(m->editState().txtCell.text, QStringLiteral("ש"));
    ed().txtCell_KeyDown(Qt::Key_Escape, Qt::NoModifier);
    EXPECT_FALSE(m->editState().txtCell.visible);
    EXPECT_EQ(g().text(3, colDetail), QStringLiteral("שירות"));
    type(3, colDetail, QStringLiteral("עבודה"));
    go(4, colDetail);
    ed().msfgMain_KeyDown(Qt::Key_F2, Qt::NoModifier);
    ed().msfgMain_KeyDown(Qt::Key_Down, Qt::NoModifier);
    EXPECT_EQ(query(QStringLiteral("SELECT detail FROM pelkor WHERE id=4")), QStringLiteral("עבודה"));
    // F8: the date a day on, and the cursor a row down.
    go(2, colDetail);
    ed().msfgMain_KeyDown(Qt::Key_F8, Qt::NoModifier);
    EXPECT_EQ(query(QStringLiteral("SELECT date FROM pelkor WHERE id=2")), QStringLiteral("06/03/2025"));
    EXPECT_EQ(g().Row(), 3);
    EXPECT_EQ(g().Col(), colDetail);
}

// The keyboard follows the column: English for kinds and sums, Hebrew for
// the texts and the type; at exit the layout of the start comes back.
TEST_F(Editing, TheKeyboardFollowsTheColumnAndComesBackAtExit)
{
    FakeKeyboardLayouts desktop(QStringLiteral("00000409"));
    layouts = &desktop;
    open();
    go(2, colDetail);
    EXPECT_EQ(desktop.current, QStringLiteral("0000040d"));
    go(2, colIn);
    EXPECT_EQ(desktop.current, QStringLiteral("00000409"));
    go(2, colType);
    EXPECT_EQ(desktop.current, QStringLiteral("0000040d"));
    // Moving within the Hebrew columns switches nothing more.
    const qsizetype switches = desktop.activations.size();
    go(3, colType);
    EXPECT_EQ(desktop.activations.size(), switches);
    m->exitProg();
    EXPECT_EQ(desktop.current, QStringLiteral("00000409"));
}
