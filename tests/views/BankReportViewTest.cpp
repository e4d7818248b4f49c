// The merged bank report window on the real engine: three generated
// ledgers in merge.ini, the page built through its timers, the task
// pane's buttons named and spoken in Hebrew, a click on an amount of the
// live page starting a detail child of that day and file (played by the
// test), and the pane given back by the child's answer. Saves
// <build>/screenshots/bankReport.png.
#include "app/charts/uctlTaskpaneButton.h"
#include "app/reports/frmBankReportMainView.h"
#include "app/web/QtWebView.h"
#include "charts/clsBackBuffer.h"
#include "gen/LedgerGenerator.h"
#include "reports/ReportFixture.h"
#include "views/ViewFixture.h"
#include "views/ViewWait.h"

#include <QAbstractButton>
#include <QPointer>

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

class BankReportView : public LoadTest {};

} // namespace

TEST_F(BankReportView, ThePageBuildsAndACellClickAsksForADetailChild)
{
    makeLedger(reportLines());
    start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    QStringList files;
    for (int i = 0; i < 3; ++i) {
        files << dir.filePath(QStringLiteral("בנק %1.pkr").arg(i + 1));
        generator::GeneratorOptions o;
        o.lines = 400;
        o.years = 1;
        o.lastDate = QDate(2025, 6, 30);
        o.seed = 77u + unsigned(i);
        generator::generateLedger(files.last(), o);
    }
    reports::BankReportParts parts = m->bankReportParts();
    parts.report.today = QDate(2025, 6, 1);
    parts.templatePath = QStringLiteral(PELKOR_BINARY_DIR "/merge.pkr");
    reports::writeMergeIni(parts.mergeIniPath, files);
    auto* view = new frmBankReportMainView(std::move(parts));
    QPointer<frmBankReportMainView> alive(view);
    reports::frmBankReportMain& r = view->logic();
    ASSERT_TRUE(waitFor([&] { return r.shown().visible && !r.isBuilding(); }, 30000));
    EXPECT_EQ(view->windowTitle(), QStringLiteral("דו\"ח איחוד בנקים"));
    EXPECT_EQ(r.includedFiles(), files);
    web::QtWebView* page = view->page();
    EXPECT_EQ(page->count(QStringLiteral("tst")), 4 + 4);   // the screen copy and the printed page

    // Every task-pane button by its name, spoken by its Hebrew caption.
    const QMultiMap<QString, Spoken> spoken = spokenControls(view);
    for (const char* name : {"cmdShow", "chkShowGraphs", "cmdTransferMoney", "cmdClose", "cmdExport", "chkShowIncomeAndExpenseCols",
                             "cmdSaveInIni", "cmdRemove", "cmdAdd", "cmdMonthReport", "cmdWeekReport", "cmdDayReport", "cmdPrintPreview"}) {
        auto* b = view->findChild<charts::uctlTaskpaneButton*>(QLatin1String(name));
        ASSERT_NE(b, nullptr) << name;
        ASSERT_TRUE(spoken.contains(QLatin1String(name))) << name;
        EXPECT_EQ(spoken.value(QLatin1String(name)).name, b->faceText()) << name;
    }
    // The charts are shown: their check button offers to hide them.
    EXPECT_EQ(view->findChild<charts::uctlTaskpaneButton*>(QStringLiteral("chkShowGraphs"))->faceText(),
              QStringLiteral("הסתר תרשימי יתרה"));
    EXPECT_GT(view->separateChart().pointCount(), 0);
    pause(300);
    view->grab().save(shot(QStringLiteral("bankReport.png")));

    // A click on the second file's first income link that is not zero.
    page->execScript(QStringLiteral(
        "Array.from(document.querySelectorAll('#divscr a.sumlink')).find(function(a){"
        "return a.getAttribute('href').indexOf(',1,1)')>0 && a.getAttribute('href').indexOf('(this,0,')>0;}).click()"));
    ASSERT_TRUE(waitFor([&] { return !children.started.isEmpty(); }, 10000));
    const QStringList f = children.started[0].split(QLatin1Char(' '));
    EXPECT_EQ(f[0], QStringLiteral("detail"));
    EXPECT_EQ(f[2], QStringLiteral("0"));
    EXPECT_EQ(f[4], QStringLiteral("0.0000"));
    EXPECT_TRUE(children.started[0].endsWith(files[1]));
    EXPECT_FALSE(view->findChild<QWidget*>(QStringLiteral("frameTaskPane"))->isEnabled());
    r.txtMessage_Change(QStringLiteral("nochange"));
    EXPECT_TRUE(view->findChild<QWidget*>(QStringLiteral("frameTaskPane"))->isEnabled());

    // Hiding the income and expense columns narrows the head cells.
    r.clickControl(QStringLiteral("chkShowIncomeAndExpenseCols"));
    ASSERT_TRUE(waitFor([&] { return page->evaluate(QStringLiteral("document.getElementById('tst').colSpan")).toInt() == 2; }, 10000));
    pause(300);
    view->grab().save(shot(QStringLiteral("bankReportNarrow.png")));
    view->close();
    waitFor([&] { return alive.isNull(); }, 5000);
}
