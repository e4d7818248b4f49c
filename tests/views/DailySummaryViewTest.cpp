// The daily summary in the main window: its controls reachable by name, the
// picture painting the surface at its own size after a resize, and a
// mouse resting on a point bringing up the hover.
#include "app/charts/ChartView.h"
#include "charts/DailySummary.h"

#include <QMouseEvent>
#include <QScrollBar>

#include "ViewFixture.h"
#include "views/ViewWait.h"

using namespace pelkor;
using namespace pelkor::testing;


TEST_F(DemoWindowTest, DailySummaryShowsItsChartAndFollowsTheResize)
{
    m->mnuDailySummary_Click();
    QCoreApplication::processEvents();
    charts::DailySummary& d = m->daily();
    ASSERT_TRUE(d.active());
    const auto spoken = spokenControls(view.get());
    for (const char* name : {"msfgBank", "picChart", "HScrollChart", "lblChart", "lblMin", "lblMax", "cmdClose"})
        EXPECT_TRUE(spoken.contains(QLatin1String(name))) << name;
    EXPECT_EQ(spoken.value(QStringLiteral("lblChart")).name, QStringLiteral("   גרף יתרה 60 יום"));

    // The first drawing waits for the window; then the surface is the picture's size.
    auto* pic = view->findChild<ChartView*>(QStringLiteral("picChart"));
    ASSERT_NE(pic, nullptr);
    pause(400);
    EXPECT_EQ(d.picChart.pointCount(), 61);
    EXPECT_EQ(QSize(d.picChart.Width(), d.picChart.Height()), pic->size());
    view->resize(1300, 800);
    pause(100);
    EXPECT_EQ(QSize(d.picChart.Width(), d.picChart.Height()), pic->size());
    EXPECT_EQ(d.picChart.pointCount(), 61);   // drawn again at the new size

    // A mouse resting on a point: the hover comes after a quarter second.
    const QPoint at(d.picChart.getPntX(30), d.picChart.getPntY(30));
    QMouseEvent move(QEvent::MouseMove, QPointF(at), pic->mapToGlobal(QPointF(at)), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(pic, &move);
    pause(400);
    EXPECT_TRUE(d.chartHoverShown());

    // The scroll bar narrows the window.
    view->findChild<QScrollBar*>(QStringLiteral("HScrollChart"))->setValue(20);
    EXPECT_EQ(d.chartHalf(), 10);
    EXPECT_EQ(d.picChart.pointCount(), 21);
}

TEST_F(LoadTest, BalancesAboveAHundredMillionShowWholeInTheGridAndOnTheScale)
{
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+1','2025-03-01','1','פתיחה',123456789.12,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(2,'+1','2025-03-03','2','מכירה',250000000,0,1,' ','ללא צבע'),"
        "(3,'-1','2025-03-06','3','רכישה',0,987654321.5,1,' ','ללא צבע');"));
    start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    frmMainView view(*m);
    emit m->loaded();
    view.resize(1200, 700);
    view.show();
    QCoreApplication::processEvents();
    m->mnuDailySummary_Click();
    pause(400);
    charts::DailySummary& d = m->daily();
    ASSERT_TRUE(d.active());
    auto* bank = view.findChild<QTableView*>(QStringLiteral("msfgBank"));
    ASSERT_NE(bank, nullptr);
    EXPECT_EQ(d.msfgBank.text(3, charts::dayColBalance), QStringLiteral("373,456,789.12"));
    EXPECT_TRUE(cutCells(bank).isEmpty()) << cutCells(bank).join(QLatin1Char('\n')).toStdString();
    // The scale's values stand whole left of the plot.
    EXPECT_GT(d.picChart.plotLeftEdge(), charts::clsBackBuffer::plotLeft);
    view.grab().save(shot(QStringLiteral("dailyLargeBalances.png")));
    m->exitProg();
}
