// A session's process killed at random moments (marking, pairing, a
// balancing line's dialog under way, the working table's copy): the next
// start finds the table of lines row for row as before, and a new session
// opens over whatever working tables the killed one left. Each worker is
// this program run again on one SessionWorker test (skipped in an ordinary
// run), driving frmMain's session on the file PELKOR_SESSION_FILE names.
#include "DemoSessionFiles.h"

#include "base/Format.h"
#include "file/Display.h"
#include "seams/platform/Paths.h"
#include "seams/web/ScriptedWebView.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

#include <iostream>
#include <random>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

const char sessionFile[] = "PELKOR_SESSION_FILE";
const char sessionFeed[] = "PELKOR_SESSION_FEED";

class SessionWorker : public GridTest {
protected:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty(sessionFile))
            GTEST_SKIP() << "runs only as a worker of another test";
        GridTest::SetUp();
        file = qEnvironmentVariable(sessionFile);
        placeProgramFiles(dir.filePath(QStringLiteral("program")), qEnvironmentVariable(sessionFeed));
    }
};

// Starts a session on the first bank and pairs, unpairs and opens balancing
// dialogs until it is killed; says "session" once the working table stands.
TEST_F(SessionWorker, PairForever)
{
    start({QStringLiteral("open"), file}, QStringLiteral("נמצא חשבון אחד => Yes\nלבטל התאמה => Yes\n"));
    ASSERT_FALSE(m->ended());
    web::ScriptedWebView page;
    m->setBankPage(&page);
    m->cmdBankCoordination_Click();
    page.sendEvent(QStringLiteral("0"));
    ASSERT_TRUE(m->session().pairing());
    std::cout << "session" << std::endl;
    reconcile::Session& s = m->session();
    std::mt19937 rng(unsigned(QCoreApplication::applicationPid()));
    for (int round = 0; round < 100000; ++round) {
        const int n = int(m->ledger().lines.size());
        const int line = m->ledger().iRowAboveRed + 1 + int(rng() % unsigned(std::max(1, n - m->ledger().iRowAboveRed)));
        const int bankRow = s.bank.iBankRowAboveRed + 1 + int(rng() % unsigned(std::max(1, s.bank.lastRow() - s.bank.iBankRowAboveRed)));
        g().setRow(std::min(line, g().Rows() - 1));
        m->msfgMainMarkClicked();
        if (rng() % 2) {
            g().setRow(std::min(line + 1, g().Rows() - 1));
            m->msfgMainMarkClicked();
        }
        s.bank.msfgBank.setRow(std::min(bankRow, s.bank.lastRow()));
        m->msfgBankMarkClicked();
        m->cmdCoordinate_Click();
        if (s.coord.isWaitingForDialog()) {
            messages.setCaption(QStringLiteral("pelkor CLOSED"));
            m->timerCoordinationMessageChecker_Timer();
        } else if (!s.links.rowLinks.empty() && rng() % 2) {
            g().setRow(m->session().links.getLineIndexByID(s.links.rowLinks.front().ids.front()) + 1);
            m->msfgMainMarkClicked();
        }
    }
}

// The importer, played in the worker: it leaves the statement the test
// made in the temporary folder and answers OK.
struct FeedLeavingImporter : reconcile::Importer {
    QString feed, target;
    Messages* box = nullptr;
    bool alive = false;
    QString program() const override { return QStringLiteral("runIt"); }
    bool prepare(const QStringList&) override { return true; }
    bool start(const QStringList&) override
    {
        QDir().mkpath(QFileInfo(target).path());
        QFile::remove(target);
        alive = QFile::copy(feed, target);
        box->setCaption(QStringLiteral("pelkor OK"));
        return alive;
    }
    bool running() const override { return alive; }
    bool crashed() const override { return false; }
    int exitCode() const override { return 0; }
    bool bringToFront(const QString&) override { return true; }
    void close() override { alive = false; }
};

// A file bound to a bank: the statement comes through the importer, and
// the opening proof empties the feed before the working table is made.
// Says "session" once it pairs, then pairs until it is killed.
TEST_F(SessionWorker, PairAfterDownload)
{
    FeedLeavingImporter runIt;
    runIt.feed = qEnvironmentVariable(sessionFeed);
    runIt.target = platform::Paths::under(dir.path()).tempDir + QStringLiteral("/atl613o4.dll");
    runIt.box = &messages;
    importer = &runIt;
    start({QStringLiteral("open"), file}, QStringLiteral("לבטל התאמה => Yes\n"));
    ASSERT_FALSE(m->ended());
    m->cmdBankCoordination_Click();
    m->session().timerMessageChecker_Timer();
    ASSERT_TRUE(m->session().pairing());
    ASSERT_EQ(queryRows(runIt.target, QStringLiteral("SELECT count(*) FROM mizrahiOsh")), QStringLiteral("0"));
    std::cout << "session" << std::endl;
    reconcile::Session& s = m->session();
    for (int round = 0; round < 100000; ++round) {
        g().setRow(m->ledger().iRowAboveRed + 1 + round % 20);
        m->msfgMainMarkClicked();
        s.bank.msfgBank.setRow(std::min(s.bank.iBankRowAboveRed + 1 + round % 20, s.bank.lastRow()));
        m->msfgBankMarkClicked();
        m->cmdCoordinate_Click();
        if (s.coord.isWaitingForDialog()) {
            messages.setCaption(QStringLiteral("pelkor CLOSED"));
            m->timerCoordinationMessageChecker_Timer();
        }
    }
}

class SessionKillAfterDownload : public GridTest {};

} // namespace

// Killed after the feed was emptied: the file keeps every line as it was,
// and the next start tells the user that the reconciliation was cut short
// and how to bring the statement in again, once.
TEST_F(SessionKillAfterDownload, TheNextStartSaysHowToBringTheStatementAgain)
{
    const QString feed = dir.filePath(QStringLiteral("statement.dll"));
    makeFiles(file, feed);
    {
        store::Connection cn;
        cn.open(file);
        cn.executeRaw(QStringLiteral("UPDATE Defaults SET iBank=5, AccountNum='7';"));
        cn.close();
        cn.open(feed);
        cn.executeRaw(QStringLiteral("ALTER TABLE demoOsh RENAME TO mizrahiOsh;"));
    }
    const QString before = query(QStringLiteral("SELECT * FROM pelkor ORDER BY id"));
    const QString settings = query(QStringLiteral("SELECT * FROM Defaults"));
    std::mt19937 rng(20251126);
    for (int point = 0; point < 5; ++point) {
        TestWorker w;
        ASSERT_TRUE(w.start(QStringLiteral("SessionWorker.PairAfterDownload"),
                            {{QString::fromLatin1(sessionFile), file}, {QString::fromLatin1(sessionFeed), feed}}));
        w.waitFor(QStringLiteral("\nsession\n"));
        ASSERT_EQ(w.p.state(), QProcess::Running) << w.out.toStdString();
        QThread::msleep(rng() % 400);
        w.p.kill();
        w.p.waitForFinished();
        ASSERT_EQ(query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before) << "at point " << point;
        ASSERT_EQ(query(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE name='tempPelkor'")), QStringLiteral("1"))
            << w.out.toStdString();
    }
    start({QStringLiteral("open"), file}, {});
    const QString told = prompts().join(u'\n');
    EXPECT_TRUE(told.contains(QStringLiteral("התאמת הבנק הקודמת של 'shop' נקטעה לפני שהושלמה. הקובץ נשאר כפי שהיה לפניה")))
        << told.toStdString();
    EXPECT_TRUE(told.contains(QStringLiteral("כדי להתאים שוב לחץ \"התאמת בנק\" וקלוט שוב את דף החשבון בחלון \"עידכון נתונים\"")))
        << told.toStdString();
    m->exitProg();
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before);
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM Defaults")), settings);
    QFile::remove(transcriptPath());
    start({QStringLiteral("open"), file}, {});
    EXPECT_TRUE(prompts().isEmpty()) << "told once: " << prompts().join(u'\n').toStdString();
}

TEST(SessionKill, AKilledSessionLeavesTheTableOfLinesAsItWas)
{
    ensureApplication();
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    const QString feed = dir.filePath(QStringLiteral("demo.mdb"));
    makeFiles(file, feed);
    const QString before = queryRows(file, QStringLiteral("SELECT * FROM pelkor ORDER BY id"));
    std::mt19937 rng(20251125);
    for (int point = 0; point < 50; ++point) {
        TestWorker w;
        ASSERT_TRUE(w.start(QStringLiteral("SessionWorker.PairForever"),
                            {{QString::fromLatin1(sessionFile), file}, {QString::fromLatin1(sessionFeed), feed}}));
        // Killed sometimes before the session stands, mostly while it works.
        const int delay = int(rng() % 700);
        const bool early = point % 10 == 0;
        if (!early)
            w.waitFor(QStringLiteral("session"));
        ASSERT_EQ(w.p.state(), QProcess::Running) << w.out.toStdString();
        QThread::msleep(early ? 200 + delay : delay);
        w.p.kill();
        w.p.waitForFinished();
        ASSERT_EQ(queryRows(file, QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before) << "at point " << point;
    }
    // A session after all those opens over what they left.
    store::Connection cn;
    cn.open(file);
    cn.executeRaw(QStringLiteral("DROP TABLE IF EXISTS probe;"));
    EXPECT_FALSE(cn.tableExists(QStringLiteral("probe")));
}
