// The repair run of the real program, headless: scripted dialogs answer,
// the transcript tells what the user saw, the file shows what was repaired.
#include "file/Schema.h"
#include "seams/store/Connection.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>

#include "QtPrinters.h"
#include "app/ProcessSupport.h"
#include "app/TestHost.h"

using namespace pelkor::proctest;

namespace {

// Runs the repair run of file, headless, with these rules after the one
// that picks the file, and a transcript when one is named; kills it after
// killAfterMs when that is not negative. Returns the exit code, or -1 when
// it did not finish by itself.
int repairRun(const QString& dir, const QString& file, int killAfterMs, const QString& moreRules = {},
              const QString& transcript = {})
{
    Program p(dir);
    p.transcript = transcript;
    if (!p.setRules(QStringLiteral("בחר קובץ => ") + file + QLatin1Char('\n') + moreRules) || !p.start({}))
        return -1;
    return p.finish(killAfterMs >= 0 ? killAfterMs : 120000);
}

// Two lines, the second with text in its sum: the load hands it to a
// new-line child of type 3.
const QString textInASum = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','1','a',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
    "(2,'-1','2025-03-02','2','b',0,'12,x',2,' ','ללא צבע');");

QString dump(const QString& file)
{
    pelkor::store::Connection cn;
    cn.open(file);
    auto rs = cn.execute(QStringLiteral("SELECT id, kind, confirm, zee, memo FROM pelkor ORDER BY id"));
    QStringList rows;
    for (long r = 0; r < rs.recordCount(); ++r)
        rows << QStringLiteral("%1|%2|%3|%4|%5").arg(rs.at(r, 0).toString(), rs.at(r, 1).toString(),
                                                     rs.at(r, 2).toString(), rs.at(r, 3).toString(),
                                                     rs.at(r, 4).toString());
    auto d = cn.execute(QStringLiteral("SELECT isAuto FROM Defaults"));
    return rows.join(QLatin1Char('\n')) + QStringLiteral("\nisAuto=") + d.at(0, 0).toString();
}


} // namespace

TEST(RepairProcess, DamagedFileIsRepairedAndReported)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("my shop.pkr"));
    makeLedger(file,
               QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
                              "(1,'+1','2025-03-01',NULL,'a',10,0,1,' ','ללא צבע'),"
                              "(2,'+77','2025-03-02','2','b',10,0,1,' ','ללא צבע'),"
                              "(3,'-1','2025-03-03','3','c',0,4,2,' ','newline אדום');"),
               true);
    const QString transcript = dir.filePath(QStringLiteral("transcript.tsv"));
    EXPECT_EQ(repairRun(dir.path(), file, -1, QStringLiteral("# the zeroing date\nfrmNoIpus => optDate=1;txtDate=05/03/2025\n"),
                        transcript),
              0);

    const QStringList got = promptsOf(transcript);
    ASSERT_EQ(got.size(), 8) << got.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(got[0], QStringLiteral("start||" PELKOR_BINARY_DIR "/prjPelkor|"));
    EXPECT_EQ(got[1], QStringLiteral("open|בחר קובץ|פלקור (*.pkr)|*.pkr|") + file);
    EXPECT_EQ(got[2], QStringLiteral("frmNoIpus|שורת איפוס|מערכת הפלקור לא מצאה שורת איפוס בקובץ הפלקור שבחרת. "
                                     "יש לבחור תאריך משוער בו נעשה איפוס אחרון מול חשבון הבנק.|optDate=1;txtDate=05/03/2025"));
    EXPECT_EQ(got[3], QStringLiteral("msgbox|תאריך איפוס|תאריך האיפוס נקבע ל-03/03/2025,\\nמכיוון שאין שורות בתאריך 05/03/2025|OK"));
    EXPECT_EQ(got[4], QStringLiteral("msgbox|סיווג לא חוקי|נמצאה שורה ללא סיווג חוקי. השורה תמחק מהפלקור\\n77+|OK"));
    EXPECT_EQ(got[5], QStringLiteral("window|frmMain|פלקור - my shop | mode 2|"));
    EXPECT_EQ(got[6], QStringLiteral("msgbox|פלקור|תיקון הקובץ הסתיים בהצלחה|OK"));
    EXPECT_EQ(got[7], QStringLiteral("exit||0|"));

    pelkor::store::Connection cn;
    cn.open(file);
    auto rs = cn.execute(QStringLiteral("SELECT id, confirm, zee, memo FROM pelkor ORDER BY id"));
    QStringList lines;
    for (long r = 0; r < rs.recordCount(); ++r)
        lines << QStringLiteral("%1:%2:%3:%4").arg(rs.at(r, 0).toString(), rs.at(r, 1).toString(),
                                                   rs.at(r, 2).toString(), rs.at(r, 3).toString());
    EXPECT_EQ(lines.join(QLatin1Char(',')), QStringLiteral("1: : :ללא צבע,3:3:ZZZZZZZZZZ:אדום"));
    EXPECT_EQ(cn.execute(QStringLiteral("SELECT isAuto FROM Defaults")).at(0, 0).toString(), QStringLiteral("1"));
    EXPECT_EQ(cn.execute(QStringLiteral("SELECT detail FROM invoiceCategs")).at(0, 0).toString(), QStringLiteral(" "));
    // The settings were written back in the data directory.
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("home/pelkor.ini"))));
}


// A repair run killed at any moment leaves a file that the next run repairs
// to exactly what one uninterrupted run gives.
TEST(RepairProcess, KilledMidLoadLeavesNoHalfRepair)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    QTemporaryDir dir;
    const QString master = dir.filePath(QStringLiteral("master.pkr"));
    {
        QString sql = QStringLiteral("BEGIN;");
        // 6,000 lines; every 50th of an unknown kind, every 7th without a
        // reference, every 11th with the newline prefix; the marker on a
        // line that is not the last of its date. (Two markers would not do:
        // each load moves one of them, so two loads differ from one by
        // design.)
        for (int i = 1; i <= 6000; ++i) {
            const QDate d = QDate(2024, 1, 1).addDays(i / 20);
            sql += QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
                                  "(%1,'%2','%3',%4,'line %1',%5,%6,%7,'%8','%9');")
                       .arg(i)
                       .arg(i % 50 == 0 ? QStringLiteral("+60") : (i % 2 ? QStringLiteral("+1") : QStringLiteral("-1")))
                       .arg(d.toString(Qt::ISODate))
                       .arg(i % 7 == 0 ? QStringLiteral("NULL") : QStringLiteral("'%1'").arg(i))
                       .arg(i % 2 ? 100 : 0)
                       .arg(i % 2 ? 0 : 60)
                       .arg(i % 2 ? 1 : 2)
                       .arg(i == 3001 ? QStringLiteral("ZZZZZZZZZZ") : QStringLiteral(" "))
                       .arg(i % 11 == 0 ? QStringLiteral("newline אדום") : QStringLiteral("ללא צבע"));
        }
        makeLedger(master, sql + QStringLiteral("COMMIT;"), true);
    }
    const QString whole = dir.filePath(QStringLiteral("whole.pkr"));
    ASSERT_TRUE(QFile::copy(master, whole));
    ASSERT_EQ(repairRun(dir.path(), whole, -1), 0);
    const QString expected = dump(whole);

    for (int killAt : {150, 300, 450, 600, 900}) {
        SCOPED_TRACE(killAt);
        const QString file = dir.filePath(QStringLiteral("k%1.pkr").arg(killAt));
        ASSERT_TRUE(QFile::copy(master, file));
        repairRun(dir.path(), file, killAt);
        ASSERT_EQ(repairRun(dir.path(), file, -1), 0);
        EXPECT_TRUE(dump(file) == expected);   // (a 6,000-line difference is no use printed)
    }
}

// Two real processes: the repair run hands a line with text in a sum to a
// new-line child; the child's OK (or Cancel) reaches the parent through its
// mailbox, and the parent goes on (or ends).
TEST(RepairProcess, BadLinesGoToARealChildAndBack)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    for (const bool ok : {true, false}) {
        SCOPED_TRACE(ok ? "OK" : "Cancel");
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("shop.pkr"));
        makeLedger(file, textInASum);
        const QString transcript = dir.filePath(QStringLiteral("transcript.tsv"));
        const QString rule = ok ? QStringLiteral("frmMain.*mode 4 type 3 => cmdOK\n")
                                : QStringLiteral("frmMain.*mode 4 type 3 => cmdCancel\n");
        const int code = repairRun(dir.path(), file, -1, rule, transcript);
        EXPECT_EQ(code, 0);
        const QStringList got = promptsOf(transcript);
        const QString child = QStringLiteral("window|frmMain|פלקור - shop | mode 4 type 3|") + (ok ? "cmdOK" : "cmdCancel");
        EXPECT_TRUE(got.contains(child)) << got.join(QLatin1Char('\n')).toStdString();
        EXPECT_EQ(got.contains(QStringLiteral("msgbox|פלקור|תיקון הקובץ הסתיים בהצלחה|OK")), ok);
        EXPECT_EQ(query(file, QStringLiteral("SELECT out FROM pelkor WHERE id=2")),
                  ok ? QStringLiteral("0") : QStringLiteral("12,x"));
        if (ok)
            continue;
        // Cancel says what became of the lines, and the next run offers
        // them again.
        EXPECT_TRUE(got.contains(QStringLiteral("msgbox|פלקור|השורות שחסר בהן תאריך או סכום נשארו בקובץ כפי שהיו, ולכן הקובץ לא נפתח.\\n"
                                                "בפעם הבאה שהקובץ ייפתח הן יוצגו שוב לתיקון.|OK")))
            << got.join(QLatin1Char('\n')).toStdString();
        const QString again = dir.filePath(QStringLiteral("again.tsv"));
        EXPECT_EQ(repairRun(dir.path(), file, -1, rule, again), 0);
        EXPECT_TRUE(promptsOf(again).contains(child)) << promptsOf(again).join(QLatin1Char('\n')).toStdString();
    }
}


// The new-line child dies without a word (killed while the user would be
// typing): the parent does not stay disabled waiting for it. It takes the
// silence as "pelkor CLOSED", which for the bad-lines child ends the repair
// run, and its trace says why. The file is whole and as it was.
TEST(RepairProcess, AChildKilledWithoutAWordEndsTheRepairRun)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    RuntimeFolder folder;
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    makeLedger(file, textInASum);
    const QString before = query(file, QStringLiteral("SELECT * FROM pelkor ORDER BY id"));

    Program parent(dir.path());
    ASSERT_TRUE(parent.traceOn());
    // No rule for the child's window: it waits for a user who never comes.
    ASSERT_TRUE(parent.setRules(QStringLiteral("בחר קובץ => ") + file + QLatin1Char('\n')));
    ASSERT_TRUE(parent.start({}));
    ASSERT_TRUE(parent.waitForWindow(QStringLiteral("mode 4 type 3"))) << parent.prompts().join(QLatin1Char('\n')).toStdString();

    // The child is the process whose start line is a new-line verb.
    qint64 child = 0;
    for (const Record& r : parent.records())
        if (r.kind == QLatin1String("start") && r.text.contains(QLatin1String(" new3 ")))
            child = r.pid;
    ASSERT_GT(child, 0);
    ASSERT_NE(child, parent.pid());
    ASSERT_EQ(::kill(pid_t(child), SIGKILL), 0);

    EXPECT_EQ(parent.finish(), 0);
    const QStringList got = parent.prompts();
    // The parent ended on its own (no report of a finished repair), and the
    // child left no exit line: it never got to say anything.
    EXPECT_FALSE(got.contains(QStringLiteral("msgbox|פלקור|תיקון הקובץ הסתיים בהצלחה|OK")));
    EXPECT_EQ(got.filter(QStringLiteral("exit||")).size(), 1) << got.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(parent.records().last().pid, parent.pid());

    const QString trace = parent.trace();
    EXPECT_TRUE(trace.contains(QStringLiteral("*** timerCoordinationMessageChecker: the child ended without an answer")))
        << trace.toStdString();
    EXPECT_TRUE(trace.contains(QStringLiteral("*** timerCoordinationMessageChecker: pelkor CLOSED")));
    EXPECT_TRUE(trace.contains(QStringLiteral("*** exitProg: <<<< starting")));

    EXPECT_EQ(integrityOf(file), QStringLiteral("ok"));
    EXPECT_EQ(query(file, QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before);
}

// Under the outer host the repair run hands its host's boxes on to the
// new-line child, yet only the run itself says "unload", once, when it
// ends: a new-line child never does.
TEST(RepairProcess, UnderAHostOnlyTheRunSaysUnload)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    RuntimeFolder folder;
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    makeLedger(file, textInASum);
    TestHost host;
    Program run(dir.path());
    ASSERT_TRUE(run.setRules(QStringLiteral("בחר קובץ => ") + file + QStringLiteral("\nfrmMain.*mode 4 type 3 => cmdOK\n")));
    ASSERT_TRUE(run.start(host.arguments({})));
    EXPECT_EQ(run.finish(), 0);

    const QList<Record> records = run.records();
    QStringList childStarts;
    for (const Record& r : records)
        if (r.kind == QLatin1String("start") && r.text.contains(QLatin1String(" new3 ")))
            childStarts << r.text.mid(r.text.indexOf(QLatin1String(" new3 ")) + 1);
    ASSERT_EQ(childStarts.size(), 1);
    EXPECT_TRUE(childStarts[0].startsWith(QStringLiteral("new3 ")));
    EXPECT_EQ(childStarts[0].mid(14, 17), pelkor::idText(host.box1.id()) + QLatin1Char(' ') + pelkor::idText(host.box2.id()));
    EXPECT_TRUE(run.prompts().contains(QStringLiteral("msgbox|פלקור|תיקון הקובץ הסתיים בהצלחה|OK")));
    EXPECT_EQ(host.sent(), QStringList{QStringLiteral("focus|unload|focus")});
}
