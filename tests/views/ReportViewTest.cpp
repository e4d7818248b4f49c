// The period report window on the real engine: built through its timers
// from a working run's file, a tick clicked in the live list hides the
// kind's rows and rewrites the totals in the live page. Saves what a user
// sees: <build>/screenshots/monthReport.png, monthReportUnticked.png,
// typeReport.png and printPreview.png (the preview in landscape).
#include "app/reports/frmMonthReportMainView.h"
#include "app/web/QtWebView.h"
#include "reports/ReportFixture.h"
#include "views/ViewWait.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>
#include <QPointer>
#include <QPrintPreviewDialog>
#include <QPrinter>

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

class ReportWindowView : public LoadTest {};

} // namespace

TEST_F(ReportWindowView, ATickInTheLiveListHidesTheRowAndRewritesTheTotals)
{
    makeLedger(reportLines());
    start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    auto* view = new frmMonthReportMainView(m->reportParts(), reports::PeriodType::Month);
    QPointer<frmMonthReportMainView> alive(view);
    reports::frmMonthReportMain& r = view->logic();
    ASSERT_TRUE(waitFor([&] { return r.shown().visible && !r.isBuilding(); }, 30000));
    EXPECT_EQ(view->windowTitle(), QStringLiteral("סיכום חודשי"));
    web::QtWebView* report = view->report(1);
    web::QtWebView* list = view->list(1);
    // The live page as built: the expenses' total, and the kind of the
    // opening line hidden.
    EXPECT_EQ(report->text(QStringLiteral("c10"), 0), QStringLiteral("750"));
    EXPECT_EQ(report->display(QStringLiteral("r11")), QStringLiteral("none"));
    pause(300);
    view->grab().save(shot(QStringLiteral("monthReport.png")));

    // The user unticks "-1" (list row 1) in the list.
    list->execScript(QStringLiteral("document.querySelectorAll('[id=chkKind]')[1].click()"));
    ASSERT_TRUE(waitFor([&] { return report->display(QStringLiteral("r2")) == QLatin1String("none"); }, 30000));
    EXPECT_FALSE(r.kindSums().checked[10]);
    EXPECT_EQ(report->text(QStringLiteral("c10"), 0), QStringLiteral("450"));
    EXPECT_EQ(report->text(QStringLiteral("c22"), 4), QStringLiteral("10,750"));
    EXPECT_EQ(report->text(QStringLiteral("c22"), 9), QStringLiteral("10,750"));   // the printed copy
    EXPECT_EQ(report->display(QStringLiteral("r2"), 11), QStringLiteral("none"));
    pause(300);
    view->grab().save(shot(QStringLiteral("monthReportUnticked.png")));

    // A click on an amount of the live page: January's 1,000 of "+1", whose
    // lines a detail child shows.
    report->execScript(QStringLiteral(
        "Array.from(document.querySelectorAll('a.sumlink')).find(function(a){return a.textContent=='1,000';}).click()"));
    ASSERT_TRUE(waitFor([&] { return !children.started.isEmpty(); }, 10000));
    EXPECT_EQ(children.started[0].section(QLatin1Char(' '), 2), QStringLiteral("3 01/01/2025 31/01/2025 +1 ") + file);
    EXPECT_FALSE(view->isEnabled());
    r.txtMessage_Change(QStringLiteral("nochange"));
    EXPECT_TRUE(view->isEnabled());

    // The types' pair in its place.
    r.optKindsOrTypes_Click(0);
    pause(300);
    view->grab().save(shot(QStringLiteral("typeReport.png")));
    r.optKindsOrTypes_Click(1);

    // The print preview, landscape.
    view->setPreviewModeless(true);
    r.cmdPrintPreview_Click();
    auto* preview = qobject_cast<QPrintPreviewDialog*>(view->previewDialog());
    ASSERT_NE(preview, nullptr);
    EXPECT_EQ(preview->printer()->pageLayout().orientation(), QPageLayout::Landscape);
    preview->resize(1000, 700);
    pause(1500);
    preview->grab().save(shot(QStringLiteral("printPreview.png")));

    // Saving as PDF offers the report's name in the program's own dialog:
    // Hebrew, the name left to right. Saved as pdfDialog.png.
    QString offered;
    Qt::LayoutDirection nameDirection = Qt::RightToLeft;
    QTimer watch;
    watch.setInterval(20);
    QObject::connect(&watch, &QTimer::timeout, [&] {
        auto* dlg = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dlg || !dlg->isVisible())
            return;
        watch.stop();
        auto* name = dlg->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        offered = name ? name->text() : QString();
        nameDirection = name ? name->layoutDirection() : Qt::RightToLeft;
        pause(300);
        dlg->grab().save(shot(QStringLiteral("pdfDialog.png")));
        dlg->reject();
    });
    watch.start();
    auto* savePdf = preview->findChild<QAction*>(QStringLiteral("cmdSavePdf"));
    ASSERT_NE(savePdf, nullptr);
    savePdf->trigger();
    EXPECT_EQ(offered, r.proposedSaveName() + QStringLiteral(".pdf"));
    EXPECT_EQ(nameDirection, Qt::LeftToRight);
    preview->close();
    view->close();
    waitFor([&] { return alive.isNull(); }, 5000);
}
