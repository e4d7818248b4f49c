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
    const QMap<QString, QString> names = accessibleNames(view.get());
    for (const char* name : {"msfgBank", "picChart", "HScrollChart", "lblChart", "lblMin", "lblMax", "cmdClose"})
        EXPECT_TRUE(names.contains(QLatin1String(name))) << name;
    EXPECT_EQ(names.value(QStringLiteral("lblChart")), QStringLiteral("   גרף יתרה 60 יום"));

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
