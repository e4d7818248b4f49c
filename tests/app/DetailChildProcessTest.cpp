// A detail child (progMode 3) as a real process, with the test playing its
// parent: the parent's txtMessage is a box of this test, its id on the
// child's command line. What the child says at its close, at a refresh,
// and when its selection is empty.
#include "seams/bus/Bus.h"
#include "seams/bus/Mailbox.h"
#include "seams/bus/Published.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "app/ProcessSupport.h"

using namespace pelkor;
using namespace pelkor::proctest;

namespace {

// Three lines on 01/03/2025 and one the day after; the file's name has a
// blank, as the rest of a command line may.
const QString cleanLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','1','a',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
    "(2,'-1','2025-03-01','2','b',0,4,2,' ','ללא צבע'),"
    "(3,'-1','2025-03-02','3','c',0,4,2,' ','ללא צבע');");

class DetailChild : public ::testing::Test {
protected:
    void SetUp() override
    {
        PELKOR_REQUIRE_PROGRAM("prjPelkor");
        parent.setHandler([this](const QString& t) { heard << t; });
        file = dir.filePath(QStringLiteral("my shop.pkr"));
    }
    // Starts the child as a parent does: the verb line as one argument.
    bool startChild(Program& child, const QString& selection, const QString& windowRule)
    {
        child.setRules(windowRule.isEmpty() ? QString() : QStringLiteral("frmMain.*mode 3 => ") + windowRule + QLatin1Char('\n'));
        return child.start({QStringLiteral("detail %1 %2 %3").arg(parent.idText(), selection, file)});
    }

    RuntimeFolder folder;
    QTemporaryDir dir;
    QString file;
    bus::Mailbox parent;   // the parent's txtMessage
    QStringList heard;
};

} // namespace

TEST_F(DetailChild, ClosingTellsWhetherTheFileChanged)
{
    // Unchanged: the child's load repairs nothing, and its close says so.
    makeLedger(file, cleanLines);
    {
        Program child(dir.path());
        ASSERT_TRUE(startChild(child, QStringLiteral("2 01/03/2025 0.0000"), QStringLiteral("cmdClose")));
        EXPECT_EQ(child.finish(), 0);
        EXPECT_EQ(heard, QStringList{QStringLiteral("nochange")});
        EXPECT_EQ(child.prompts().filter(QStringLiteral("window|")),
                  QStringList{QStringLiteral("window|frmMain|פירוט תנועות - my shop | mode 3 | "
                                             "my shop - תנועות לתאריך 01/03/2025 (ללא המרה)|cmdClose")});
    }

    // Changed: the load deletes a line of the selection whose kind is no
    // kind, so the close says "closed". The divided factor shows in the label.
    heard.clear();
    QFile::remove(dir.filePath(QStringLiteral("transcript.tsv")));
    {
        store::Connection cn;
        cn.open(file);
        cn.executeRaw(QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) "
                                     "VALUES (4,'-77','2025-03-01','4','d',0,4,2,' ','ללא צבע');"));
    }
    Program child(dir.path());
    ASSERT_TRUE(startChild(child, QStringLiteral("1 01/03/2025 -2.0000"), QStringLiteral("cmdClose")));
    EXPECT_EQ(child.finish(), 0);
    EXPECT_EQ(heard, QStringList{QStringLiteral("closed")});
    EXPECT_EQ(child.prompts().mid(1, 2),
              (QStringList{QStringLiteral("msgbox|סיווג לא חוקי|נמצאה שורה ללא סיווג חוקי. השורה תמחק מהפלקור\\n77-|OK"),
                           QStringLiteral("window|frmMain|פירוט תנועות - my shop | mode 3 | "
                                          "my shop - הוצאות לתאריך 01/03/2025 (מחולק ב: 2.0000)|cmdClose")}));
    EXPECT_EQ(query(file, QStringLiteral("SELECT id FROM pelkor ORDER BY id")), QStringLiteral("1;2;3"));
}

// A selection with no lines ends the child at once: no window, and the
// parent hears that nothing changed.
TEST_F(DetailChild, AnEmptySelectionEndsAtOnce)
{
    makeLedger(file, cleanLines);
    Program child(dir.path());
    ASSERT_TRUE(startChild(child, QStringLiteral("0 02/03/2025 0.0000"), QString()));
    EXPECT_EQ(child.finish(), 0);
    EXPECT_EQ(heard, QStringList{QStringLiteral("nochange")});
    const QStringList got = child.prompts();
    ASSERT_EQ(got.size(), 2) << got.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(got[0].startsWith(QStringLiteral("start||")));
    EXPECT_EQ(got[1], QStringLiteral("exit||0|"));
}

// The refresh button reloads and tells the parent "refresh"; the parent's
// "close" (to the child's own txtMessage, found under its process) ends it
// with "nochange".
TEST_F(DetailChild, RefreshIsToldAndTheParentMayCloseIt)
{
    makeLedger(file, cleanLines);
    Program child(dir.path());
    ASSERT_TRUE(child.traceOn());
    ASSERT_TRUE(startChild(child, QStringLiteral("2 01/03/2025 0.0000"), QStringLiteral("cmdRefresh")));
    ASSERT_TRUE(spinUntil([&] { return !heard.isEmpty(); }, 60000));
    EXPECT_EQ(heard, QStringList{QStringLiteral("refresh")});
    // A child on its lines stays for its user: no report of a repair, no end.
    spinUntil([&] { return child.process.state() == QProcess::NotRunning; }, 1500);
    ASSERT_EQ(child.process.state(), QProcess::Running);
    EXPECT_FALSE(child.prompts().join(QLatin1Char('\n')).contains(QStringLiteral("תיקון הקובץ")));

    const quint32 box = bus::findPublished(child.pid(), QStringLiteral("txtMessage"));
    ASSERT_NE(box, 0u);
    EXPECT_EQ(bus::send(box, QStringLiteral("close"), 30000), bus::SendResult::Delivered);
    EXPECT_EQ(child.finish(), 0);
    EXPECT_EQ(heard, (QStringList{QStringLiteral("refresh"), QStringLiteral("nochange")}));
    EXPECT_EQ(child.trace().count(QStringLiteral("*** cmdRefresh_Click: <<<< starting")), 1);
    // Its listing went with it.
    EXPECT_EQ(bus::findPublished(child.pid(), QStringLiteral("txtMessage")), 0u);
}
