// Transfers killed (SIGKILL) at random points by real processes: after
// each kill, the next open of the source settles what was left, and every
// transfer is in both files or in neither.
//
// The child is this test program, run on one disabled test that makes
// transfer after transfer through frmTransfer (each numbered in its
// detail); the parent kills it at a random time up to a little past how
// long the whole run takes.
#include "TestSupport.h"
#include "base/Trace.h"
#include "seams/store/Connection.h"
#include "seams/ui/DialogRules.h"
#include "seams/ui/ScriptedUi.h"
#include "transfer/TransferJournal.h"
#include "transfer/TransferTestFiles.h"
#include "transfer/frmTransfer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

constexpr int transfers = 60;

// The numbers of the transfers a file holds, from the details "n <k>".
QStringList numbers(const QString& file)
{
    QStringList n = queryRows(file, QStringLiteral("SELECT confirm FROM pelkor WHERE confirm LIKE 'n %' ORDER BY confirm"))
                        .split(QLatin1Char(';'), Qt::SkipEmptyParts);
    n.sort();
    return n;
}

} // namespace

TEST(TransferKill, DISABLED_Child)
{
    ensureApplication();
    const QString source = qEnvironmentVariable("PELKOR_KILL_SOURCE");
    const QString dest = qEnvironmentVariable("PELKOR_KILL_TARGET");
    ASSERT_FALSE(source.isEmpty());
    QTemporaryDir dir;
    Trace trace(dir.path(), QStringLiteral("kill"));
    ui::ScriptedUi ui(ui::DialogRules::parse(QStringLiteral("בחר קובץ מקור => ") + source + QStringLiteral("\nבחר קובץ יעד => ") + dest),
                      dir.filePath(QStringLiteral("t.tsv")));
    std::fputs("transferring\n", stdout);
    std::fflush(stdout);
    for (int k = 0; k < transfers; ++k) {
        transfer::frmTransfer t({ui, trace, QDate(2025, 6, 1), dir.path(), QString()});
        t.click(QStringLiteral("cmdBrowse0"));
        t.click(QStringLiteral("cmdBrowse1"));
        t.typeInto(transfer::frmTransfer::sourceRow, transfer::tcOut, QString::number(k + 1));
        t.typeInto(transfer::frmTransfer::sourceRow, transfer::tcDate, QStringLiteral("01/05/2025"));
        t.typeInto(transfer::frmTransfer::sourceRow, transfer::tcConfirm, QStringLiteral("n %1").arg(k, 3, 10, QLatin1Char('0')));
        t.typeInto(transfer::frmTransfer::destRow, transfer::tcConfirm, QStringLiteral("n %1").arg(k, 3, 10, QLatin1Char('0')));
        ASSERT_TRUE(t.cmdOK_Click()) << k;
    }
    std::fputs("transferred\n", stdout);
    std::fflush(stdout);
}

TEST(TransferKill, EveryTransferIsInBothFilesOrNeitherWhereverItIsKilled)
{
    ensureApplication();
    QTemporaryDir dir;
    const QString pristineSource = dir.filePath(QStringLiteral("pristine-source.pkr"));
    const QString pristineDest = dir.filePath(QStringLiteral("pristine-dest.pkr"));
    makeTransferPair(pristineSource, pristineDest);
    const QString source = dir.filePath(QStringLiteral("source.pkr"));
    const QString dest = dir.filePath(QStringLiteral("dest.pkr"));
    qint64 whole = 0;
    int kept = 0, undone = 0, rounds = 30;
    for (int round = 0; round <= rounds; ++round) {
        for (const QString& suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")}) {
            QFile::remove(source + suffix);
            QFile::remove(dest + suffix);
        }
        ASSERT_TRUE(QFile::copy(pristineSource, source));
        ASSERT_TRUE(QFile::copy(pristineDest, dest));

        TestWorker child;
        ASSERT_TRUE(child.start(QStringLiteral("TransferKill.DISABLED_Child"), {{QStringLiteral("PELKOR_KILL_SOURCE"), source},
                                                                               {QStringLiteral("PELKOR_KILL_TARGET"), dest}}));
        ASSERT_TRUE(child.waitFor(QStringLiteral("transferring"))) << child.out.toStdString();
        QElapsedTimer t;
        t.start();
        if (round == 0) {
            // The first round runs whole: it measures the run and checks its end.
            child.p.waitForFinished(120000);
            child.out += QString::fromUtf8(child.p.readAll());
            whole = std::max<qint64>(t.elapsed(), 1);
            ASSERT_EQ(child.p.exitCode(), 0) << child.out.toStdString();
            ASSERT_TRUE(child.out.contains(QStringLiteral("transferred"))) << child.out.toStdString();
        } else {
            const qint64 at = QRandomGenerator::global()->bounded(whole * 11 / 10 + 1);
            while (t.elapsed() < at && child.p.state() == QProcess::Running)
                child.p.waitForFinished(int(std::max<qint64>(1, at - t.elapsed())));
            child.p.kill();
            child.p.waitForFinished(10000);
        }

        // The next open of the source.
        {
            store::Connection cn;
            cn.open(source);
            const transfer::PendingTransfers p = transfer::finishPendingTransfers(cn, QStringLiteral("pelkor"));
            kept += p.kept;
            undone += p.undone;
            ASSERT_EQ(p.left, 0);
        }
        const QStringList inSource = numbers(source), inDest = numbers(dest);
        ASSERT_EQ(inSource, inDest) << "round " << round;
        if (round == 0)
            ASSERT_EQ(inSource.size(), transfers);
        store::Connection check;
        check.open(source);
        if (check.tableExists(QStringLiteral("transferJournal")))
            ASSERT_EQ(check.execute(QStringLiteral("SELECT count(*) FROM transferJournal")).field(0).toInt(), 0);
    }
    std::printf("%d transfers: %lld ms; after the kills %d pairs found whole at the open, %d undone\n", transfers, whole,
                kept, undone);
}
