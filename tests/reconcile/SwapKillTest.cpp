// The closing swap killed (kill -9) at 200 instants, each in a process of
// its own, on a file of 100,000 lines: the file always holds the old table
// of lines whole or the new one whole, never neither and never half, and
// the other tables agree with it.
//
// 160 instants are counted in the engine's steps: the worker kills itself
// at the n-th step of the swap, so they fall evenly from its first
// statement to its commit whatever the machine's speed. 40 come from
// outside, at delays spread over the swap's length as measured in the same
// run, so the commit's own writes and the checkpoint after it are hit too.
// Each worker is this program run again on SwapWorker.SwapOnce (skipped in
// an ordinary run).
#include "reconcile/Session.h"

#include "TestSupport.h"
#include "gen/LedgerGenerator.h"
#include "base/Trace.h"
#include "file/OpenLedger.h"
#include "seams/store/Connection.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <csignal>
#include <iostream>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

const char swapFile[] = "PELKOR_SWAP_FILE";
const char swapKillAt[] = "PELKOR_SWAP_KILL_AT";
constexpr int opsPerStep = 1000;   // engine instructions between two steps

long steps = 0, killAt = 0;

int onStep(void*)
{
    if (++steps == killAt)
        std::raise(SIGKILL);
    return 0;
}

// One swap on the file PELKOR_SWAP_FILE names; with PELKOR_SWAP_KILL_AT n
// the process kills itself at the swap's n-th step. Says "ready" before the
// swap and "swapped <steps> <ms>" after it.
TEST(SwapWorker, SwapOnce)
{
    if (qEnvironmentVariableIsEmpty(swapFile))
        GTEST_SKIP() << "runs only as a worker of another test";
    Trace trace{QString(), QString()};
    OpenLedger led{trace};
    led.filePath = qEnvironmentVariable(swapFile);
    led.cn.open(led.filePath);
    led.isCnOpen = true;
    killAt = qEnvironmentVariableIntValue(swapKillAt);
    sqlite3_progress_handler(led.cn.handle(), opsPerStep, onStep, nullptr);
    std::cout << "ready" << std::endl;
    QElapsedTimer t;
    t.start();
    reconcile::swapWorkingTable(led);
    const qint64 ms = t.elapsed();
    sqlite3_progress_handler(led.cn.handle(), 0, nullptr, nullptr);
    std::cout << "swapped " << steps << ' ' << ms << std::endl;
}

// The first row of a plain SQLite query, "a|b"; the engine's words on failure.
QString firstRow(const QString& file, const char* sql)
{
    sqlite3* db = nullptr;
    QString out = QStringLiteral("cannot open");
    if (sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &st, nullptr) != SQLITE_OK) {
            out = QString::fromUtf8(sqlite3_errmsg(db));
        } else if (sqlite3_step(st) == SQLITE_ROW) {
            QStringList f;
            for (int c = 0; c < sqlite3_column_count(st); ++c)
                f << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, c)));
            out = f.join(QLatin1Char('|'));
        }
        sqlite3_finalize(st);
    }
    sqlite3_close(db);
    return out;
}

// What tells one version of a table of lines from another, and a whole
// table from a part of it.
QString digest(const QString& file, const QString& table)
{
    return firstRow(file, QStringLiteral("SELECT count(*), total(id), total(\"in\"), total(out), sum(length(detail)), "
                                         "sum(CASE WHEN zee='ZZZZZZZZZZ' THEN id ELSE 0 END) FROM %1").arg(table).toUtf8().constData());
}

bool tableExists(const QString& file, const QString& table)
{
    return firstRow(file, QStringLiteral("SELECT count(*) FROM sqlite_master WHERE name='%1'").arg(table).toUtf8().constData()) ==
        QLatin1String("1");
}

// A worker swapping the file, killed by itself at SQLite step kill (0: none).
struct Worker : TestWorker {
    void start(const QString& file, long kill)
    {
        TestWorker::start(QStringLiteral("SwapWorker.SwapOnce"),
                          {{QString::fromLatin1(swapFile), file}, {QString::fromLatin1(swapKillAt), QString::number(kill)}});
    }
};

} // namespace

TEST(SwapKill, ASwapKilledAtAnyInstantLeavesOneWholeTableOfLines)
{
    ensureApplication();
    QTemporaryDir dir;
    const QString master = dir.filePath(QStringLiteral("master.pkr"));
    generator::GeneratorOptions options;
    options.lines = 100000;
    options.lastDate = QDate(2025, 11, 20);
    generator::generateLedger(master, options);
    {
        // A session at its end: an old backup, and the working table made
        // as the session makes it, then paired: the mark moved to its last
        // line and a rounding line added.
        Trace trace{QString(), QString()};
        OpenLedger led{trace};
        led.cn.open(master);
        led.cn.execute(QStringLiteral("SELECT * INTO bckpPelkor from pelkor WHERE id < 500"));
        led.cn.execute(QStringLiteral("SELECT * INTO tempPelkor from pelkor"));
        led.cn.execute(QStringLiteral("UPDATE tempPelkor SET zee=' ' WHERE zee='ZZZZZZZZZZ'"));
        led.cn.execute(QStringLiteral("UPDATE tempPelkor SET zee='ZZZZZZZZZZ' WHERE id=20000"));
        led.cn.execute(QStringLiteral("INSERT into tempPelkor ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) "
                                      "Values('+0',#11/1/2025#,' ','עיגול אגורות מול היתרה בבנק',0.01,0,1,' ','ללא צבע')"));
        led.cn.close();
    }
    const QString oldLines = digest(master, QStringLiteral("pelkor"));
    const QString newLines = digest(master, QStringLiteral("tempPelkor"));
    const QString oldBackup = digest(master, QStringLiteral("bckpPelkor"));
    ASSERT_NE(oldLines, newLines);
    ASSERT_TRUE(oldLines.startsWith(QStringLiteral("100000|"))) << oldLines.toStdString();

    int point = 0, keptOld = 0, tookNew = 0;
    // Whatever the instant, the file is sound and holds one whole version.
    const auto check = [&](const QString& file, const QString& how) {
        SCOPED_TRACE(QStringLiteral("point %1, %2").arg(point).arg(how).toStdString());
        ASSERT_EQ(firstRow(file, "PRAGMA quick_check"), QStringLiteral("ok"));
        ASSERT_TRUE(tableExists(file, QStringLiteral("pelkor"))) << "no table of lines at all";
        const QString lines = digest(file, QStringLiteral("pelkor"));
        if (lines == oldLines) {
            ++keptOld;
            // Nothing happened: the working table and the old backup stand.
            EXPECT_EQ(digest(file, QStringLiteral("tempPelkor")), newLines);
            EXPECT_EQ(digest(file, QStringLiteral("bckpPelkor")), oldBackup);
        } else {
            ASSERT_EQ(lines, newLines) << "half a table of lines";
            ++tookNew;
            EXPECT_EQ(digest(file, QStringLiteral("bckpPelkor")), oldLines);
            EXPECT_FALSE(tableExists(file, QStringLiteral("tempPelkor")));
        }
    };
    const auto copyOf = [&] {
        const QString file = dir.filePath(QStringLiteral("point.pkr"));
        for (const char* suffix : {"", "-wal", "-shm"})
            QFile::remove(file + QLatin1String(suffix));
        EXPECT_TRUE(QFile::copy(master, file));
        return file;
    };

    // The whole swap once, unkilled: how many steps and how long it takes.
    long total = 0;
    qint64 ms = 0;
    {
        const QString file = copyOf();
        Worker w;
        w.start(file, 0);
        ASSERT_TRUE(w.waitFor(QStringLiteral("swapped"))) << w.out.toStdString();
        w.p.waitForFinished();
        const QStringList words = w.out.mid(w.out.indexOf(QStringLiteral("swapped"))).split(QLatin1Char(' '));
        total = words.value(1).toLong();
        ms = words.value(2).trimmed().section(QLatin1Char('\n'), 0, 0).toLongLong();
        ASSERT_GT(total, 160) << w.out.toStdString();
        check(file, QStringLiteral("whole"));
        ASSERT_EQ(tookNew, 1);
    }

    for (int k = 0; k < 160; ++k, ++point) {
        const QString file = copyOf();
        Worker w;
        const long at = 1 + long(double(total - 1) * k / 159);
        w.start(file, at);
        ASSERT_TRUE(w.p.waitForStarted());
        w.p.waitForFinished(-1);
        w.out += QString::fromUtf8(w.p.readAll());
        EXPECT_EQ(w.p.exitStatus(), QProcess::CrashExit) << "step " << at << ": " << w.out.toStdString();
        check(file, QStringLiteral("step %1 of %2").arg(at).arg(total));
    }
    for (int k = 0; k < 40; ++k, ++point) {
        const QString file = copyOf();
        Worker w;
        w.start(file, 0);
        ASSERT_TRUE(w.waitFor(QStringLiteral("ready"))) << w.out.toStdString();
        QThread::usleep(static_cast<unsigned long>(ms * 1250 * k / 39));
        w.p.kill();
        w.p.waitForFinished(-1);
        check(file, QStringLiteral("%1 us after the start").arg(ms * 1250 * k / 39));
    }
    std::cout << "swap of " << total << " steps, " << ms << " ms: " << keptOld << " points kept the old lines, "
              << tookNew - 1 << " held the new" << std::endl;
    EXPECT_EQ(keptOld + tookNew - 1, 200);
}
