// The daily summary alone, as the outer host opens it: "dayblnc" after the
// host's boxes, on the file the parameters name (the demo ledger). The
// window comes up in mode 6, and its close ends the process, which the
// host hears.
#include "file/Schema.h"
#include "gen/DemoLedger.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "app/ProcessSupport.h"
#include "app/TestHost.h"

using namespace pelkor;
using namespace pelkor::proctest;

TEST(DailySummaryProcess, TheHostsDayBalanceShowsTheSummaryAloneAndItsCloseEnds)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    RuntimeFolder folder;
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("demo.pkr"));
    generator::generateDemoLedger(file, QDate::currentDate());
    Program run(dir.path());
    QDir().mkpath(run.home());
    schema::createParams(run.home() + QStringLiteral("/PelkorParams.mdb"), dir.path(), file);
    ASSERT_TRUE(run.setRules(QStringLiteral("frmMain.*mode 6 => cmdClose\n")));

    TestHost host;
    ASSERT_TRUE(run.start(host.arguments({QStringLiteral("dayblnc")})));
    EXPECT_EQ(run.finish(), 0);
    const QStringList windows = run.prompts().filter(QStringLiteral("window|"));
    ASSERT_EQ(windows.size(), 1) << run.prompts().join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(windows.first(), QStringLiteral("window|frmMain|פלקור - demo | mode 6|cmdClose"));
    EXPECT_EQ(host.sent(), QStringList{QStringLiteral("focus|unload|focus")});
}
