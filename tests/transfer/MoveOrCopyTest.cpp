// Lines sent to another file from a working run, as a user sends them: a
// selection, cmdMove, frmMoveOrCopy and the target chosen by rule.
#include "file/Display.h"
#include "ledger/GridFixture.h"
#include "seams/grid/GridModel.h"
#include "transfer/MoveJournal.h"
#include "transfer/MoveOrCopy.h"
#include "transfer/frmMoveOrCopy.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

// The source: its zeroing line on 01/03 (line 2), then lines in March.
const QString sourceLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','11','מכירה',1000,0,1,' ','ללא צבע'),"
    "(2,'-1','2025-03-01','12','ספק',0,300,2,'ZZZZZZZZZZ','ללא צבע'),"
    "(3,'-7','2025-03-04','13','עמלה',0,5,2,' ','אדום'),"
    "(4,'+2','2025-03-06','14','שירות',200,0,3,' ','ללא צבע'),"
    "(5,'-7','2025-03-08','15','עמלה',0,7,2,' ','ללא צבע'),"
    "(6,'-8','2025-03-09','16','שונות',0,9,2,' ','ללא צבע'),"
    "(7,'-7','2025-03-10','17','עמלה',0,11,2,' ','ללא צבע'),"
    "(8,'-8','2025-03-12','18','שונות',0,13,2,' ','ללא צבע');");

class MoveOrCopy : public GridTest {
protected:
    // The target: the standard kinds less -7 and -8, its zeroing line on
    // targetIpus.
    void makeTarget(const QString& targetIpus = QStringLiteral("2025-02-01"),
                    const QString& more = QStringLiteral("DELETE FROM category WHERE id IN ('-7','-8');"))
    {
        target = dir.filePath(QStringLiteral("other.pkr"));
        pelkor::testing::makeLedger(target, QStringLiteral(
            "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
            "(1,'+0','%1',' ','יתרה התחלתית',0,0,1,'ZZZZZZZZZZ','ללא צבע');").arg(targetIpus) + more);
    }
    int asked(const QString& needle)
    {
        int n = 0;
        for (const QString& s : prompts())
            n += s.contains(needle);
        return n;
    }
    frmMain& openSource(const QString& rules)
    {
        return openOn(sourceLines, QStringLiteral("בחר קובץ יעד => ") + target + QLatin1Char('\n') + rules);
    }
    void selectRows(int row, int rowSel)
    {
        go(row, g().FixedCols());
        g().setRowSel(rowSel);
        g().setColSel(g().Cols() - 1);
    }
    QString targetRows()
    {
        return queryRows(target, QStringLiteral("SELECT kind, date, detail, TypeNum FROM pelkor WHERE id > 1 ORDER BY id"));
    }
    QString target;
};

} // namespace

TEST_F(MoveOrCopy, AMissingKindIsAskedOnceForAllItsLinesAndACancelledOneLeavesThemOut)
{
    makeTarget();
    openSource(QStringLiteral("frmMoveOrCopy => optCopy=1;cmdBrowse=1;cmdOK=1\n"
                              "הסיווג 7- אינו קיים => lstKind0=5-\n"
                              "הסיווג 8- אינו קיים => Cancel\n"));
    selectRows(3, 8);
    m->cmdMove_Click();
    EXPECT_EQ(asked(QStringLiteral("הסיווג 7- אינו קיים בקובץ היעד. בחר סיווג במקומו.")), 1);
    EXPECT_EQ(asked(QStringLiteral("הסיווג 8- אינו קיים")), 1);
    // Three lines of -7 under -5, none of -8; the two left out are only counted.
    EXPECT_EQ(targetRows(), QStringLiteral("-5|04/03/2025|עמלה|2;+2|06/03/2025|שירות|3;-5|08/03/2025|עמלה|2;-5|10/03/2025|עמלה|2"));
    EXPECT_EQ(asked(QStringLiteral("msgbox|פלקור|4 שורות הועתקו|OK")), 1);
    // A copy leaves the source whole, and the colour word travels.
    EXPECT_EQ(queryRows(file, QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("8"));
    EXPECT_EQ(queryRows(target, QStringLiteral("SELECT memo FROM pelkor WHERE id = 2")), QStringLiteral("אדום"));
}

TEST(KindTranslation, AKindOfTheOtherDirectionIsRefusedAndAskedAgainThenRemembered)
{
    Catalogue dest;
    dest.categories = QStringList{QStringLiteral("+3"), QStringLiteral("-5")};
    dest.categoryDescs = QStringList{QStringLiteral("a"), QStringLiteral("b")};
    QStringList answers{QStringLiteral("3+"), QStringLiteral("5-")};
    QStringList texts;
    transfer::KindTranslation t(dest, [&](const Catalogue&, const QString& text) {
        texts << text;
        return answers.isEmpty() ? QString() : answers.takeFirst();
    });
    ui::ScriptedUi ui(ui::DialogRules::parse(QString()), QString(), {});
    t.setUi(ui);
    EXPECT_EQ(t.translate(QStringLiteral("-7")), QStringLiteral("-5"));
    EXPECT_EQ(t.translate(QStringLiteral("-7")), QStringLiteral("-5"));
    EXPECT_EQ(t.translate(QStringLiteral("+3")), QStringLiteral("+3"));
    EXPECT_EQ(t.questions(), 2);
    // A kind cancelled once stays out without a further question.
    EXPECT_EQ(t.translate(QStringLiteral("-9")), QString());
    EXPECT_EQ(t.translate(QStringLiteral("-9")), QString());
    EXPECT_EQ(t.questions(), 3);
}

TEST_F(MoveOrCopy, AMoveSkipsHistoryOnBothSidesAndLeavesConfirmedLinesInTheSource)
{
    // The target's zeroing date is 06/03; its kinds are the source's.
    makeTarget(QStringLiteral("2025-03-06"), QString());
    openSource(QStringLiteral("frmMoveOrCopy => optMove=1;cmdBrowse=1;cmdOK=1\n"));
    // Rows 2..8: row 2 is on the source's zeroing date, rows 3 and 4 on or
    // before the target's; row 7 (id 7) is confirmed with the bank.
    selectRows(2, 8);
    g().setText(7, colMark, QStringLiteral("v"));
    m->cmdMove_Click();
    EXPECT_EQ(targetRows(), QStringLiteral("-7|08/03/2025|עמלה|2;-8|09/03/2025|שונות|2;-7|10/03/2025|עמלה|2;-8|12/03/2025|שונות|2"));
    EXPECT_EQ(queryRows(file, QStringLiteral("SELECT id FROM pelkor ORDER BY id")), QStringLiteral("1;2;3;4;7"));
    EXPECT_EQ(asked(QStringLiteral("msgbox|פלקור|4 שורות הועברו|OK")), 1);
    // The zeroing marks of both files stay where they were, and no note is left.
    EXPECT_EQ(queryRows(file, QStringLiteral("SELECT id FROM pelkor WHERE zee='ZZZZZZZZZZ'")), QStringLiteral("2"));
    EXPECT_EQ(queryRows(target, QStringLiteral("SELECT id FROM pelkor WHERE zee='ZZZZZZZZZZ'")), QStringLiteral("1"));
    EXPECT_EQ(queryRows(file, QStringLiteral("SELECT count(*) FROM moveJournal")), QStringLiteral("0"));
    // The grid was read again.
    EXPECT_EQ(g().Rows(), 6);
}

TEST_F(MoveOrCopy, MissingTypesBecomeTheDefaultOfTheLinesDirectionAndAreReported)
{
    makeTarget(QStringLiteral("2025-02-01"), QStringLiteral("DELETE FROM Types WHERE TypeNum IN (3, 6);"));
    openSource(QStringLiteral("frmMoveOrCopy => optCopy=1;cmdBrowse=1;cmdOK=1\n"));
    m->ledger().lines[2].Type = QStringLiteral("העברה בנקאית יוצאת");   // row 3, an expense
    selectRows(3, 4);
    m->cmdMove_Click();
    EXPECT_EQ(queryRows(target, QStringLiteral("SELECT TypeNum FROM pelkor WHERE id > 1 ORDER BY id")), QStringLiteral("2;1"));
    EXPECT_EQ(asked(QStringLiteral("2 שורות הועתקו\\nסוג אחד או יותר הוחלפו מכיוון שהם לא קיימים בקובץ היעד")), 1);
}

TEST_F(MoveOrCopy, ACopyWhollyBeforeTheTargetsZeroingDateWritesNothing)
{
    makeTarget(QStringLiteral("2025-12-31"), QString());
    openSource(QStringLiteral("frmMoveOrCopy => optCopy=1;cmdBrowse=1;cmdOK=1\n"));
    selectRows(3, 8);
    m->cmdMove_Click();
    EXPECT_EQ(targetRows(), QString());
    EXPECT_EQ(asked(QStringLiteral("msgbox|פלקור|אף שורה לא הועתקה|OK")), 1);
}

TEST_F(MoveOrCopy, TargetsThatCannotTakeLinesAreRefusedWithNothingWritten)
{
    makeTarget();
    openSource(QStringLiteral("frmMoveOrCopy => optMove=1;cmdBrowse=1;cmdOK=1\n"));
    selectRows(3, 8);
    transfer::MoveParts parts{m->ledger(), m->instance(), g(), m->ui()};
    const auto problem = [&](const QString& path) { return transfer::moveOrCopyRows(parts, path, true).problem; };
    EXPECT_EQ(problem(file), QStringLiteral("קובץ המקור הוא גם קובץ היעד"));
    EXPECT_TRUE(problem(dir.filePath(QStringLiteral("none.pkr"))).contains(QStringLiteral("לא נמצא")));
    const QString text = dir.filePath(QStringLiteral("notes.pkr"));
    QFile f(text);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("not a ledger at all, just words\n");
    f.close();
    EXPECT_TRUE(problem(text).contains(QStringLiteral("אינו קובץ פלקור")));
    // A ledger without types: nothing goes.
    const QString noTypes = dir.filePath(QStringLiteral("notypes.pkr"));
    pelkor::testing::makeLedger(noTypes, QStringLiteral("DELETE FROM Types;"));
    EXPECT_EQ(problem(noTypes), QStringLiteral("error: no destTypes"));
    EXPECT_EQ(queryRows(noTypes, QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("0"));
    EXPECT_EQ(queryRows(file, QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("8"));
    // The source itself, chosen in the dialog, is refused there.
    ui::ScriptedUi ui2(ui::DialogRules::parse(QStringLiteral("בחר קובץ יעד => ") + file), QString(), {});
    transfer::frmMoveOrCopy dlg(ui2, file, dir.path(), {});
    dlg.click(QStringLiteral("cmdBrowse"));
    EXPECT_FALSE(dlg.isEnabled(QStringLiteral("cmdOK")));
}

TEST_F(MoveOrCopy, AnOlderTargetIsUpgradedBeforeItTakesLines)
{
    target = dir.filePath(QStringLiteral("old.pkr"));
    pelkor::testing::makeLedger(target, QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+0','2025-01-01',' ','יתרה התחלתית',0,0,1,'ZZZZZZZZZZ','ללא צבע');"), true);
    openSource(QStringLiteral("frmMoveOrCopy => optCopy=1;cmdBrowse=1;cmdOK=1\n"));
    selectRows(4, 4);
    m->cmdMove_Click();
    EXPECT_EQ(targetRows(), QStringLiteral("+2|06/03/2025|שירות|3"));
    EXPECT_EQ(queryRows(target, QStringLiteral("SELECT trim(detail) FROM invoiceCategs")), QString());
}

TEST_F(MoveOrCopy, AMoveAKilledProcessLeftIsFinishedOrUndoneAtTheNextOpen)
{
    makeTarget(QStringLiteral("2025-02-01"), QString());
    makeLedger(sourceLines);
    // Killed after the target's insert: the delete is done at the open.
    {
        store::Connection src, dst;
        src.open(file);
        dst.open(target);
        transfer::writeMoveIntent(src, QStringLiteral("t1"), target, {QStringLiteral("5"), QStringLiteral("6")});
        store::Transaction tx(dst);
        dst.execute(QStringLiteral("INSERT INTO pelkor (kind, date, detail) VALUES ('-7', #3/8/2025#, 'עמלה')"));
        transfer::markMoveInTarget(dst, QStringLiteral("t1"));
        tx.commit();
        // Killed before it: the note goes and the lines stay.
        transfer::writeMoveIntent(src, QStringLiteral("t2"), target, {QStringLiteral("7")});
    }
    start({QStringLiteral("open"), file}, QString());
    EXPECT_EQ(queryRows(file, QStringLiteral("SELECT id FROM pelkor ORDER BY id")), QStringLiteral("1;2;3;4;7;8"));
    EXPECT_EQ(queryRows(file, QStringLiteral("SELECT count(*) FROM moveJournal")), QStringLiteral("0"));
    EXPECT_EQ(g().Rows(), 7);
}
