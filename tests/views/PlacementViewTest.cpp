// Windows open centred on the window they belong to: the period report on
// the main window, the forecast pick on the window it was asked from,
// runIt (whose owner is in another process) on the screen, and runIt's
// picker on runIt.
#include "Downloader.h"
#include "RunItWindow.h"

#include "app/reports/frmMonthReportMainView.h"
#include "app/ui/QtUi.h"
#include "ledger/TzefiDialogs.h"
#include "ledger/TzefiPage.h"
#include "reports/ReportFixture.h"
#include "seams/platform/Paths.h"
#include "views/ViewWait.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

QRect screenArea()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}

// A plain window standing away from the screen's corner and centre.
std::unique_ptr<QWidget> ownerWindow()
{
    auto w = std::make_unique<QWidget>();
    const QRect area = screenArea();
    w->resize(area.width() / 2, area.height() / 2);
    w->move(area.left() + area.width() / 3, area.top() + area.height() / 3);
    w->show();
    QCoreApplication::processEvents();
    return w;
}

// Watches for the next modal dialog: its centre as it shows, then it is
// closed unanswered.
struct ModalWatch {
    ModalWatch()
    {
        timer.setInterval(20);
        QObject::connect(&timer, &QTimer::timeout, [this] {
            auto* dlg = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (!dlg || !dlg->isVisible())
                return;
            centre = dlg->geometry().center();
            timer.stop();
            dlg->reject();
        });
        timer.start();
    }
    QTimer timer;
    QPoint centre{-1, -1};
};

class Placement : public LoadTest {};

} // namespace

TEST_F(Placement, TheReportOpensCentredOnItsOwner)
{
    makeLedger(reportLines());
    start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    const auto owner = ownerWindow();
    auto* view = new frmMonthReportMainView(m->reportParts(), reports::PeriodType::Month, owner.get());
    QPointer<frmMonthReportMainView> alive(view);
    QCoreApplication::processEvents();
    EXPECT_TRUE(screenArea().contains(view->geometry())) << "the report is larger than the screen";
    EXPECT_EQ(view->geometry().center(), owner->geometry().center());
    view->close();
    waitFor([&] { return alive.isNull(); }, 5000);
}

TEST(PlacementWindows, TheForecastPickAndRunItsPickerOpenCentredOnTheirOwners)
{
    QTemporaryDir dir;
    // The forecast pick, asked from a window that shows.
    const auto owner = ownerWindow();
    const std::vector<TzefiCandidate> c{{QStringLiteral("4"), QStringLiteral("+3"), QDate(2025, 4, 1),
                                         QStringLiteral("שכר דירה"), 1234.5, 3}};
    frmSubtractFromTzefi pick(c, tzefiPage(c, QStringLiteral("Arial")), dir.path());
    ASSERT_TRUE(pick.Form_Load());
    ModalWatch seen;
    ui::QtUi(owner.get()).runDialog(pick);
    EXPECT_EQ(seen.centre, owner->geometry().center());

    // runIt: its owner is another process, so the screen's centre.
    ui::QtUi qtUi;
    feed::Command command;
    command.bank = 1;
    command.box = QStringLiteral("00000000");
    command.nDays = 90;
    feed::Downloader d(qtUi, platform::Paths::under(dir.path()), command);
    feed::RunItWindow w(d, qtUi);
    qtUi.setParentWindow(&w);
    // The picker opens at the start; it is answered once seen.
    ModalWatch picker;
    w.start();
    ASSERT_TRUE(waitFor([&] { return picker.centre != QPoint(-1, -1); }, 10000));
    EXPECT_EQ(w.geometry().center(), screenArea().center());
    EXPECT_EQ(picker.centre, w.geometry().center());
    w.click(QStringLiteral("cmdCancel"));
}
