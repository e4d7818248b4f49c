// A move of 1,000 lines killed (SIGKILL) at 100 points by real processes:
// after each, the next open of the source finishes or undoes the move, and
// every line is in exactly one of the two files.
//
// The child is this test program, run on one disabled test that opens the
// source as a working run, selects the lines and moves them; it says
// "moving" just before the move, and the parent kills it at a random time
// from there on, up to a little past how long a whole move takes.
#include "ledger/GridFixture.h"
#include "transfer/MoveJournal.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSet>
#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

constexpr int kept = 100;      // lines that stay (and the zeroing line's)
constexpr int moved = 1000;    // lines the child moves

QString sourceSql()
{
    QString sql = QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
                                 "(1,'+0','2025-01-01',' ','יתרה התחלתית',0,0,1,'ZZZZZZZZZZ','ללא צבע')");
    const QDate first(2025, 1, 2);
    for (int i = 2; i <= 1 + kept + moved; ++i)
        sql += QStringLiteral(",(%1,'%2','%3','%1','line %1',%4,%5,%6,' ','ללא צבע')")
                   .arg(i)
                   .arg(i % 2 ? QStringLiteral("-3") : QStringLiteral("+2"))
                   .arg(first.addDays(i / 4).toString(Qt::ISODate))
                   .arg(i % 2 ? 0 : i)
                   .arg(i % 2 ? i : 0)
                   .arg(i % 2 ? 2 : 1);
    return sql + QLatin1Char(';');
}

// The details of the file's lines, "line N" each.
QStringList details(const QString& file)
{
    return queryRows(file, QStringLiteral("SELECT detail FROM pelkor WHERE detail LIKE 'line %' ORDER BY id"))
        .split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

class MoveKill : public GridTest {};

} // namespace

// The child's part: run only by the kill test, with the files in its environment.
TEST_F(MoveKill, DISABLED_Child)
{
    file = qEnvironmentVariable("PELKOR_KILL_SOURCE");
    const QString target = qEnvironmentVariable("PELKOR_KILL_TARGET");
    ASSERT_FALSE(file.isEmpty());
    start({QStringLiteral("open"), file},
          QStringLiteral("frmMoveOrCopy => optMove=1;cmdBrowse=1;cmdOK=1\nבחר קובץ יעד => ") + target);
    ASSERT_EQ(g().Rows(), 2 + kept + moved);
    go(2 + kept, g().FixedCols());
    g().setRowSel(g().Rows() - 1);
    g().setColSel(g().Cols() - 1);
    std::fputs("moving\n", stdout);
    std::fflush(stdout);
    m->cmdMove_Click();
    std::fputs("moved\n", stdout);
    std::fflush(stdout);
}

TEST_F(MoveKill, EveryLineIsInExactlyOneFileWhereverTheMoveIsKilled)
{
    const QString pristineSource = dir.filePath(QStringLiteral("pristine-source.pkr"));
    const QString pristineTarget = dir.filePath(QStringLiteral("pristine-target.pkr"));
    pelkor::testing::makeLedger(pristineSource, sourceSql());
    pelkor::testing::makeLedger(pristineTarget, QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+0','2025-01-01',' ','יתרה התחלתית',0,0,1,'ZZZZZZZZZZ','ללא צבע');"));
    QStringList all = details(pristineSource);
    ASSERT_EQ(all.size(), kept + moved);

    const QString source = dir.filePath(QStringLiteral("source.pkr"));
    const QString target = dir.filePath(QStringLiteral("target.pkr"));
    qint64 wholeMove = 0;
    int finished = 0, undone = 0, untouched = 0, whole = 0;
    for (int round = 0; round <= 100; ++round) {
        for (const QString& suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")}) {
            QFile::remove(source + suffix);
            QFile::remove(target + suffix);
        }
        ASSERT_TRUE(QFile::copy(pristineSource, source));
        ASSERT_TRUE(QFile::copy(pristineTarget, target));

        TestWorker child;
        ASSERT_TRUE(child.start(QStringLiteral("MoveKill.DISABLED_Child"), {{QStringLiteral("PELKOR_KILL_SOURCE"), source},
                                                                           {QStringLiteral("PELKOR_KILL_TARGET"), target}}));
        ASSERT_TRUE(child.waitFor(QStringLiteral("moving"))) << child.out.toStdString();
        QElapsedTimer t;
        t.start();
        if (round == 0) {
            // The first round runs whole: it measures the move and checks its end.
            child.waitFor(QStringLiteral("moved"));
            wholeMove = std::max<qint64>(t.elapsed(), 1);
            child.p.waitForFinished(30000);
            ASSERT_EQ(child.p.exitCode(), 0) << child.out.toStdString();
        } else {
            const qint64 at = QRandomGenerator::global()->bounded(wholeMove * 6 / 5 + 1);
            while (t.elapsed() < at && child.p.state() == QProcess::Running)
                child.p.waitForFinished(int(std::max<qint64>(1, at - t.elapsed())));
            child.p.kill();
            child.p.waitForFinished(10000);
        }

        // The next open of the source.
        {
            store::Connection cn;
            cn.open(source);
            const transfer::PendingMoves p = transfer::finishPendingMoves(cn, QStringLiteral("pelkor"));
            finished += p.finished;
            undone += p.undone;
            ASSERT_EQ(p.left, 0);
        }
        const QStringList inSource = details(source);
        const QStringList inTarget = details(target);
        QStringList both = inSource + inTarget;
        both.sort();
        QStringList expected = all;
        expected.sort();
        ASSERT_EQ(both, expected) << "round " << round << ": " << inSource.size() << " in the source, "
                                  << inTarget.size() << " in the target";
        ASSERT_TRUE(inTarget.isEmpty() || inTarget.size() == moved) << "round " << round;
        untouched += inTarget.isEmpty();
        whole += inTarget.size() == moved;
        store::Connection check;
        check.open(source);
        if (check.tableExists(QStringLiteral("moveJournal")))
            ASSERT_EQ(check.execute(QStringLiteral("SELECT count(*) FROM moveJournal")).field(0).toInt(), 0);
        if (round == 0)
            ASSERT_EQ(inTarget.size(), moved) << child.out.toStdString();
    }
    // Kills fell before, inside and after the move.
    std::printf("move of %d lines: %lld ms; after the kills %d untouched, %d moved (%d finished at the open, %d undone)\n",
                moved, wholeMove, untouched, whole, finished, undone);
    EXPECT_GT(whole, 1);
}
