// A merged instance as a real process, with the test playing the report
// over several files that starts it: the instance is its period report,
// of the period its verb names, over the dates of its command line; its
// close ends the run and tells the parent whether the file changed.
#include "seams/bus/Mailbox.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "app/ProcessSupport.h"

using namespace pelkor;
using namespace pelkor::proctest;

namespace {

// Two members' lines (zee holds the member's index) over three months.
const QString mergedLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-01-05','1','a',1000,0,1,'0','ללא צבע'),"
    "(2,'-1','2025-02-10','2','b',0,300,2,'1','ללא צבע'),"
    "(3,'-1','2025-03-15','3','c',0,200,2,'0','ללא צבע');"
    "CREATE TABLE IF NOT EXISTS mergedBanks ([index] INTEGER, fileName TEXT, conv DOUBLE);"
    "INSERT INTO mergedBanks VALUES (0,'shop.pkr',0),(1,'home.pkr',0);");

} // namespace

TEST(MergedReport, TheInstanceIsItsReportAndItsCloseEndsTheRun)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    RuntimeFolder folder;
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("merged.pkr"));
    makeLedger(file, mergedLines);

    for (const auto& [verb, caption] : {std::pair{"ktrep", "סיכום חודשי"}, std::pair{"ktrpw", "סיכום שבועי"}}) {
        SCOPED_TRACE(verb);
        // The merged report's txtMessage; a box of its own each time, since
        // a box hears a text equal to the one it holds as no change.
        QStringList heard;
        bus::Mailbox parent;
        parent.setHandler([&](const QString& t) { heard << t; });
        QFile::remove(dir.filePath(QStringLiteral("transcript.tsv")));
        Program child(dir.path());
        ASSERT_TRUE(child.setRules(QStringLiteral("frmMonthReportMain => cmdClose\n")));
        ASSERT_TRUE(child.start({QStringLiteral("merged %1 01/01/2025 31/03/2025 %2 %3")
                                     .arg(QLatin1String(verb), parent.idText(), file)}));
        EXPECT_EQ(child.finish(), 0);
        const QStringList windows = child.prompts().filter(QStringLiteral("window|"));
        ASSERT_EQ(windows.size(), 2) << windows.join(QLatin1Char('\n')).toStdString();
        EXPECT_EQ(windows[0], QStringLiteral("window|frmMain|פלקור - merged | mode 5|"));
        EXPECT_TRUE(windows[1].startsWith(QStringLiteral("window|frmMonthReportMain|") + QString::fromUtf8(caption)
                                          + QStringLiteral(" | ")))
            << windows[1].toStdString();
        EXPECT_TRUE(windows[1].endsWith(QStringLiteral(" | merged|cmdClose"))) << windows[1].toStdString();
        EXPECT_FALSE(child.prompts().join(QLatin1Char('\n')).contains(QStringLiteral("תיקון הקובץ")));
        spinUntil([&] { return !heard.isEmpty(); }, 5000);
        EXPECT_EQ(heard, QStringList{QStringLiteral("nochange")});
    }
}
