// A ledger another process holds in a write transaction, met by the real
// program: the wait is said, the question names the file and offers to
// wait again or give up; giving up changes nothing and leaves the window
// usable (a repair run ends with a word); waiting again goes on once the
// file is free; closing a file that needs no write never waits on it.
#include "seams/bus/Bus.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "app/ProcessSupport.h"

using namespace pelkor;
using namespace pelkor::proctest;

namespace {

// Line 1 has no reference: a load repairs it, so it must write.
const QString needsRepair = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01',NULL,'a',10,0,1,' ','ללא צבע'),"
    "(2,'-1','2025-03-02','2','b',0,4,2,'ZZZZZZZZZZ','ללא צבע');");
const QString clean = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','1','a',10,0,1,' ','ללא צבע'),"
    "(2,'-1','2025-03-02','2','b',0,4,2,'ZZZZZZZZZZ','ללא צבע');");

const QString question = QStringLiteral("msgbox|הקובץ תפוס|הקובץ \"\u2068shop.pkr\u2069\" תפוס כעת בידי תוכנה אחרת");

// Every row of the lines and settings, as text: what "unchanged" compares.
QString digest(const QString& file)
{
    return query(file, QStringLiteral("SELECT * FROM pelkor ORDER BY id")) + QLatin1Char('#')
        + query(file, QStringLiteral("SELECT * FROM Defaults"));
}

bool hasPrompt(const QStringList& prompts, const QString& start)
{
    for (const QString& p : prompts)
        if (p.startsWith(start))
            return true;
    return false;
}

// Nothing the user reads names a handler or speaks the engine's English.
void expectNoInternals(const QStringList& prompts)
{
    for (const QString& p : prompts) {
        EXPECT_FALSE(p.contains(QStringLiteral("Timer2")) || p.contains(QStringLiteral("Form_Load"))
                     || p.contains(QStringLiteral("locked")))
            << p.toStdString();
    }
}

// A ledger of the test's own; lockLedger() holds it in a write transaction
// of another connection, as a second process would.
class BusyFile : public ::testing::Test {
protected:
    void SetUp() override
    {
        PELKOR_REQUIRE_PROGRAM("prjPelkor");
        file = dir.filePath(QStringLiteral("shop.pkr"));
    }
    void lockLedger(const QString& lines)
    {
        makeLedger(file, lines);
        holder.open(file);
        holder.begin();
    }
    RuntimeFolder folder;
    QTemporaryDir dir;
    QString file;
    store::Connection holder;
};

} // namespace

TEST_F(BusyFile, GivingUpInARepairRunEndsItAndChangesNothing)
{
    lockLedger(needsRepair);
    const QString before = digest(file);

    Program run(dir.path());
    ASSERT_TRUE(run.traceOn());
    ASSERT_TRUE(run.setRules(QStringLiteral("בחר קובץ => %1\nהקובץ תפוס => Cancel\n").arg(file)));
    ASSERT_TRUE(run.start({}));
    EXPECT_EQ(run.finish(), 0);
    const QStringList prompts = run.prompts();
    EXPECT_TRUE(hasPrompt(prompts, question)) << prompts.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(hasPrompt(prompts, QStringLiteral("msgbox|פלקור|תיקון הקובץ \"\u2068shop.pkr\u2069\" הופסק כי תוכנה אחרת מחזיקה בו")))
        << prompts.join(QLatin1Char('\n')).toStdString();
    EXPECT_FALSE(hasPrompt(prompts, QStringLiteral("msgbox|פלקור|תיקון הקובץ הסתיים בהצלחה")));
    expectNoInternals(prompts);
    // The wait was said on the status line, and why it ended is traced.
    EXPECT_TRUE(run.trace().contains(QStringLiteral("*** busy: ") + file)) << run.trace().toStdString();
    EXPECT_TRUE(run.trace().contains(QStringLiteral("gave up on a busy file")));
    holder.rollback();
    EXPECT_EQ(digest(file), before);
}

TEST_F(BusyFile, WaitingAgainGoesOnOnceTheFileIsFree)
{
    lockLedger(needsRepair);

    Program run(dir.path());
    ASSERT_TRUE(run.traceOn());
    ASSERT_TRUE(run.setRules(QStringLiteral("הקובץ תפוס => Retry\n")));
    ASSERT_TRUE(run.start({QStringLiteral("open"), file}));
    ASSERT_TRUE(run.waitForRecord([](const Record& r) { return r.title == QStringLiteral("הקובץ תפוס"); }))
        << run.prompts().join(QLatin1Char('\n')).toStdString();
    holder.rollback();
    ASSERT_TRUE(run.waitForWindow(QStringLiteral("mode 1"))) << run.prompts().join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(query(file, QStringLiteral("SELECT confirm FROM pelkor WHERE id=1")), QStringLiteral(" "));
    expectNoInternals(run.prompts());
}

TEST_F(BusyFile, GivingUpInAWorkingRunLeavesTheWindowUsable)
{
    lockLedger(needsRepair);
    const QString before = digest(file);

    Program run(dir.path());
    ASSERT_TRUE(run.traceOn());
    ASSERT_TRUE(run.setRules(QStringLiteral("הקובץ תפוס => Cancel\n")));
    ASSERT_TRUE(run.start({QStringLiteral("open"), file}));
    // The run stays up: the user may press F5 once the file is free.
    ASSERT_TRUE(run.waitForRecord([](const Record& r) {
        return r.text.startsWith(QStringLiteral("הפעולה בוטלה כי הקובץ \"\u2068shop.pkr\u2069\" תפוס"));
    })) << run.prompts().join(QLatin1Char('\n')).toStdString();
    const quint32 box = bus::findPublished(run.pid(), QStringLiteral("txtMessage"));
    ASSERT_NE(box, 0u);
    EXPECT_EQ(digest(file), before);
    holder.rollback();
    EXPECT_EQ(bus::send(box, QStringLiteral("refresh"), 30000), bus::SendResult::Delivered);
    EXPECT_EQ(query(file, QStringLiteral("SELECT confirm FROM pelkor WHERE id=1")), QStringLiteral(" "));
    EXPECT_EQ(bus::send(box, QStringLiteral("close"), 30000), bus::SendResult::Delivered);
    EXPECT_EQ(run.finish(), 0);
    expectNoInternals(run.prompts());
}

TEST_F(BusyFile, ClosingACleanFileNeverWaitsOnIt)
{
    makeLedger(file, clean);
    Program run(dir.path());
    const quint32 box = startWorkingRun(run, {QStringLiteral("open"), file});
    ASSERT_NE(box, 0u) << run.prompts().join(QLatin1Char('\n')).toStdString();
    holder.open(file);
    holder.begin();
    EXPECT_EQ(bus::send(box, QStringLiteral("close"), 30000), bus::SendResult::Delivered);
    EXPECT_EQ(run.finish(), 0);
    EXPECT_FALSE(hasPrompt(run.prompts(), question)) << run.prompts().join(QLatin1Char('\n')).toStdString();
    EXPECT_FALSE(run.trace().contains(QStringLiteral("*** busy:")));
    holder.rollback();
}
