// Texts to a working run's txtMessage from another process, the way the
// outer host sends them: the test is the host, starts the run with its
// boxes, finds the run's txtMessage listed under the process it started,
// and reads in the run's trace what each text did.
#include "base/CommandLine.h"
#include "seams/bus/Bus.h"
#include "seams/bus/Published.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "app/ProcessSupport.h"
#include "app/TestHost.h"

using namespace pelkor;
using namespace pelkor::proctest;

namespace {

const QString lines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','1','a',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
    "(2,'-1','2025-03-02','2','b',0,4,2,' ','ללא צבע');");

// Generous: a send waits for the handler, and a reload on a loaded machine
// may be slow.
constexpr int sendMs = 30000;

QStringList textsOf(const QList<Handled>& handled)
{
    QStringList out;
    for (const Handled& h : handled)
        out << h.text;
    return out;
}

} // namespace

TEST(WorkingRunTexts, EachTextDoesItsOwnThingAndCloseSaysUnload)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    RuntimeFolder folder;
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    makeLedger(file, lines);
    TestHost host;
    Program run(dir.path());
    const quint32 box = startWorkingRun(run, host.arguments({QStringLiteral("open"), file}));
    ASSERT_NE(box, 0u) << run.prompts().join(QLatin1Char('\n')).toStdString();

    for (const char* text : {"nochange", "ltrb 25 300 770 300", "refresh", "refresh"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(bus::send(box, QString::fromUtf8(text), sendMs), bus::SendResult::Delivered);
    }
    // Nothing reached the host while the run worked.
    EXPECT_TRUE(host.events.isEmpty()) << host.events.join(QLatin1Char(',')).toStdString();
    EXPECT_EQ(bus::send(box, QStringLiteral("close"), sendMs), bus::SendResult::Delivered);
    EXPECT_EQ(run.finish(), 0);
    EXPECT_EQ(host.sent(), QStringList{QStringLiteral("focus|unload|focus")});

    const QString trace = run.trace();
    const QList<Handled> handled = textsHandled(trace);
    // The repeated "refresh" raised no event.
    ASSERT_EQ(textsOf(handled), (QStringList{QStringLiteral("nochange"), QStringLiteral("ltrb 25 300 770 300"),
                                             QStringLiteral("refresh"), QStringLiteral("close")}))
        << trace.toStdString();
    EXPECT_EQ(handled[0].lines, QStringList()) << "nochange does nothing";
    EXPECT_EQ(handled[1].lines, QStringList{QStringLiteral("*** setLTRB: 25 300 770 300")});
    EXPECT_EQ(handled[2].lines.value(0), QStringLiteral("*** cmdRefresh_Click: <<<< starting"));
    EXPECT_EQ(trace.count(QStringLiteral("*** cmdRefresh_Click: <<<< starting")), 1);
    EXPECT_EQ(handled[3].lines.value(0), QStringLiteral("*** exitProg: <<<< starting"));
}

// "setipus" and "gotoipus" run one handler: sent to two runs on the same
// file, each traces the same and leaves the same file. (This holds whether
// that handler has landed or not.)
TEST(WorkingRunTexts, SetIpusAndGotoIpusHaveTheSameEffect)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    RuntimeFolder folder;
    QTemporaryDir dir;
    const QString master = dir.filePath(QStringLiteral("master.pkr"));
    makeLedger(master, lines);
    QList<QStringList> traced;
    QStringList files;
    for (const QString& text : {QStringLiteral("setipus"), QStringLiteral("gotoipus")}) {
        SCOPED_TRACE(text.toStdString());
        QTemporaryDir runDir;
        const QString file = runDir.filePath(QStringLiteral("shop.pkr"));
        ASSERT_TRUE(QFile::copy(master, file));
        TestHost host;
        Program run(runDir.path());
        const quint32 box = startWorkingRun(run, host.arguments({QStringLiteral("open"), file}));
        ASSERT_NE(box, 0u);
        EXPECT_EQ(bus::send(box, text, sendMs), bus::SendResult::Delivered);
        EXPECT_EQ(bus::send(box, QStringLiteral("close"), sendMs), bus::SendResult::Delivered);
        EXPECT_EQ(run.finish(), 0);
        const QList<Handled> handled = textsHandled(run.trace());
        ASSERT_EQ(textsOf(handled), (QStringList{text, QStringLiteral("close")}));
        traced << handled[0].lines;
        files << query(file, QStringLiteral("SELECT * FROM pelkor ORDER BY id")) + QLatin1Char('\n')
                     + query(file, QStringLiteral("SELECT * FROM Defaults"));
    }
    ASSERT_EQ(traced.size(), 2);
    EXPECT_FALSE(traced[0].isEmpty());
    EXPECT_EQ(traced[0], traced[1]);
    EXPECT_EQ(files[0], files[1]);
}

// Lines a sender may get wrong: each is refused with "wrong option" (the
// trace and the standard error say why), and the file named on it is not
// touched, not even opened.
TEST(WorkingRunTexts, MalformedStartLinesTouchNoFile)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    RuntimeFolder folder;
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("my shop.pkr"));
    makeLedger(file, lines);
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QByteArray bytes = f.readAll();
    f.close();
    const QDateTime modified = QFileInfo(file).lastModified();

    const struct {
        QString line;
        QString why;
    } bad[] = {
        {QStringLiteral("detail 0000beef 1"), QStringLiteral("detail: missing fields")},
        {QStringLiteral("detail 0000bexf 1 01/03/2025 0.0000 ") + file, QStringLiteral("detail: bad id 0000bexf")},
        {QStringLiteral("detail 0000beef 1 29/02/2025 0.0000 ") + file, QStringLiteral("detail: bad date 29/02/2025")},
        {QStringLiteral("new3 1a2b3c4d 00000000 ") + file, QStringLiteral("new: missing fields")},
        {QStringLiteral("host 1a2b 00000000 open ") + file, QStringLiteral("host: bad id in 1a2b 00000000")},
    };
    for (const auto& b : bad) {
        SCOPED_TRACE(b.line.toStdString());
        QTemporaryDir runDir;
        Program run(runDir.path());
        ASSERT_TRUE(run.traceOn());
        ASSERT_TRUE(run.setRules(QString()));
        ASSERT_TRUE(run.start({b.line}));
        EXPECT_EQ(run.finish(), 0);
        EXPECT_TRUE(run.prompts().contains(QStringLiteral("msgbox|פלקור|wrong option|OK")))
            << run.prompts().join(QLatin1Char('\n')).toStdString();
        EXPECT_TRUE(run.trace().contains(QStringLiteral("*** initializeForm: ") + b.why)) << run.trace().toStdString();
    }
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_TRUE(f.readAll() == bytes);
    EXPECT_EQ(QFileInfo(file).lastModified(), modified);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("my shop.pkr")});
}
