// Children whose parent died notice that no box answers for their parent
// any more and close themselves, leaving the file whole; no process is
// left behind.
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>

#include "QtPrinters.h"
#include "app/ProcessSupport.h"

using namespace pelkor;
using namespace pelkor::proctest;

namespace {

const QString someLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','1','a',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
    "(2,'-1','2025-03-01','2','b',0,'12,x',2,' ','ללא צבע');");

// The process of the transcript whose start line holds verb.
qint64 startedWith(const Program& run, const QString& verb)
{
    for (const Record& r : run.records())
        if (r.kind == QLatin1String("start") && r.text.contains(verb))
            return r.pid;
    return 0;
}

bool processGone(qint64 pid)
{
    return spinUntil([&] { return ::kill(pid_t(pid), 0) != 0; }, 30000);
}

} // namespace

// The repair run hands a bad line to its child and is killed: the child,
// which would wait for its user for ever, closes; the bad line is still
// there for the next run to offer again.
TEST(OrphanChild, ABadLinesChildClosesWhenTheRepairRunDies)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    RuntimeFolder folder;
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    makeLedger(file, someLines);
    Program parent(dir.path());
    ASSERT_TRUE(parent.setRules(QStringLiteral("בחר קובץ => ") + file + QLatin1Char('\n')));
    ASSERT_TRUE(parent.start({}));
    ASSERT_TRUE(parent.waitForWindow(QStringLiteral("mode 4 type 3"))) << parent.prompts().join(QLatin1Char('\n')).toStdString();
    const qint64 child = startedWith(parent, QStringLiteral(" new3 "));
    ASSERT_GT(child, 0);

    ASSERT_EQ(::kill(pid_t(parent.pid()), SIGKILL), 0);
    EXPECT_TRUE(processGone(child));
    EXPECT_TRUE(parent.waitForRecord([&](const Record& r) { return r.pid == child && r.kind == QLatin1String("exit"); }));
    EXPECT_EQ(integrityOf(file), QStringLiteral("ok"));
    EXPECT_EQ(query(file, QStringLiteral("SELECT out FROM pelkor WHERE id=2")), QStringLiteral("12,x"));
}
