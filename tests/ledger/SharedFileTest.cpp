// Real processes on one file: two working runs adding lines side by side,
// and a delete of a range killed in the middle. Each worker is this program
// run again on one Worker test (skipped in an ordinary run), working through
// the window's own code on the file PELKOR_WORKER_FILE names.
#include "ledger/GridFixture.h"

#include "base/Format.h"
#include "file/Display.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

#include <sqlite3.h>

#include <csignal>
#include <iostream>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

const char workerFile[] = "PELKOR_WORKER_FILE";

class Worker : public GridTest {
protected:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty(workerFile))
            GTEST_SKIP() << "runs only as a worker of another test";
        GridTest::SetUp();
        file = qEnvironmentVariable(workerFile);
    }
};

QProcess* startWorker(const QString& test, const QString& file, const QString& tag, QObject* parent)
{
    auto* p = new QProcess(parent);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QString::fromLatin1(workerFile), file);
    env.insert(QStringLiteral("PELKOR_WORKER_TAG"), tag);
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    p->setProcessEnvironment(env);
    p->setProcessChannelMode(QProcess::MergedChannels);
    p->start(QCoreApplication::applicationFilePath(), {QStringLiteral("--gtest_filter=Worker.") + test});
    return p;
}

QString lines(int n, int markAt)
{
    QString sql = QStringLiteral("BEGIN;");
    for (int i = 1; i <= n; ++i)
        sql += QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
                              "(%1,'+1','%2','%1','line %1',10,0,1,'%3','ללא צבע');")
                   .arg(i)
                   .arg(QDate(2020, 1, 1).addDays(i / 10).toString(Qt::ISODate))
                   .arg(i == markAt ? QStringLiteral("ZZZZZZZZZZ") : QStringLiteral(" "));
    return sql + QStringLiteral("COMMIT;");
}

std::string integrity(const QString& file)
{
    sqlite3* db = nullptr;
    std::string result = "cannot open";
    if (sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &st, nullptr) == SQLITE_OK && sqlite3_step(st) == SQLITE_ROW)
            result = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
        sqlite3_finalize(st);
    }
    sqlite3_close(db);
    return result;
}

} // namespace

// ---- the workers ---------------------------------------------------------------

// A thousand lines, each opened with Insert, typed and written when the
// next Insert leaves it. What the user was shown goes to the output.
TEST_F(Worker, AddLines)
{
    start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    const QString tag = qEnvironmentVariable("PELKOR_WORKER_TAG");
    for (int i = 0; i < 1000; ++i) {
        ed().msfgMain_KeyDown(Qt::Key_Insert, Qt::NoModifier);
        const int row = g().Rows() - 1;
        type(row, colDate, QStringLiteral("15/03/2025"));
        type(row, colDetail, tag + QString::number(i));
        type(row, colIn, QString::number(i + 1));
    }
    ASSERT_TRUE(ed().maybeWriteNewLineToDB());
    for (const QString& p : prompts())
        std::cout << "PROMPT " << p.toStdString() << "\n";
    std::cout.flush();
}

// Every line but the last deleted in one range; says "deleting" first.
TEST_F(Worker, DeleteRange)
{
    start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    std::cout << "deleting" << std::endl;
    ed().deleteRows(1, g().Rows() - 2, false);
}

// ---- the tests -------------------------------------------------------------------

TEST(SharedFile, TwoWorkingRunsAddingLinesSideBySideLoseNothing)
{
    ensureApplication();
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shared.pkr"));
    makeLedger(file, lines(20, 5), false, {-5000, 60, " +1 "});
    QObject owner;
    QProcess* a = startWorker(QStringLiteral("AddLines"), file, QStringLiteral("a"), &owner);
    QProcess* b = startWorker(QStringLiteral("AddLines"), file, QStringLiteral("b"), &owner);
    for (QProcess* p : {a, b}) {
        ASSERT_TRUE(p->waitForFinished(240000));
        const QString out = QString::fromUtf8(p->readAll());
        EXPECT_EQ(p->exitCode(), 0) << out.toStdString();
        // No busy file, nor anything else, was put before the user.
        EXPECT_FALSE(out.contains(QStringLiteral("PROMPT"))) << out.toStdString();
    }
    EXPECT_EQ(queryRows(file, QStringLiteral("SELECT count(*), count(DISTINCT id) FROM pelkor")), QStringLiteral("2020|2020"));
    // Each worker's thousand lines, each once, with its own sums.
    for (const char* tag : {"a", "b"})
        EXPECT_EQ(queryRows(file, QStringLiteral("SELECT count(DISTINCT detail), sum([in]) FROM pelkor WHERE detail LIKE '%1%'")
                                      .arg(QLatin1String(tag))),
                  QStringLiteral("1000|500500")) << tag;
    EXPECT_EQ(queryRows(file, QStringLiteral("SELECT count(*) FROM pelkor WHERE zee='ZZZZZZZZZZ'")), QStringLiteral("1"));
}

// A delete of a range with its zeroing mark's move, killed at several
// moments: the file holds every line or only the last, and one mark.
TEST(SharedFile, ADeleteKilledMidwayLeavesTheFileAsBeforeOrAsAfter)
{
    ensureApplication();
    QTemporaryDir dir;
    const QString master = dir.filePath(QStringLiteral("master.pkr"));
    const int n = 20000;
    makeLedger(master, lines(n, 10000), false, {-5000, 60, " +1 "});
    for (int killAfterMs : {0, 20, 60, 150, 400}) {
        SCOPED_TRACE(killAfterMs);
        const QString file = dir.filePath(QStringLiteral("k%1.pkr").arg(killAfterMs));
        ASSERT_TRUE(QFile::copy(master, file));
        QObject owner;
        QProcess* p = startWorker(QStringLiteral("DeleteRange"), file, QString(), &owner);
        QByteArray out;
        while (!out.contains("deleting") && p->state() != QProcess::NotRunning && p->waitForReadyRead(60000))
            out += p->readAll();
        ASSERT_TRUE(out.contains("deleting")) << out.toStdString();
        QThread::msleep(killAfterMs);
        ::kill(pid_t(p->processId()), SIGKILL);
        p->waitForFinished(10000);
        const QString count = queryRows(file, QStringLiteral("SELECT count(*) FROM pelkor"));
        EXPECT_TRUE(count == QString::number(n) || count == QStringLiteral("1")) << count.toStdString();
        EXPECT_EQ(queryRows(file, QStringLiteral("SELECT count(*) FROM pelkor WHERE zee='ZZZZZZZZZZ'")), QStringLiteral("1"));
        EXPECT_EQ(integrity(file), "ok");
    }
}
