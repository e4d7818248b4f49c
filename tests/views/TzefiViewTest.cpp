// The forecast dialogs as a user sees them: the pick page in WebEngine on
// the offscreen platform, a row clicked by the page's own script, reaching
// the dialog only once the page is complete, the orange choice and the
// hover; and the forecast dialog's boxes. Screenshots:
// <build>/screenshots/frmSubtractFromTzefi.png, frmTzefi.png.
#include "app/ui/frmSubtractFromTzefiView.h"
#include "app/ui/frmTzefiView.h"
#include "app/web/QtWebView.h"
#include "views/ViewWait.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QPushButton>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

std::vector<TzefiCandidate> candidates()
{
    return {{QStringLiteral("4"), QStringLiteral("+3"), QDate(2025, 4, 1), QStringLiteral("שכר דירה - משרד ראשי"), 1234.5, 3},
            {QStringLiteral("5"), QStringLiteral("+12"), QDate(2025, 4, 10), QStringLiteral("לקוח <גדול> & \"בניו\" בע\"מ, תשלום שני"), 18000, 4},
            {QStringLiteral("6"), QStringLiteral("+1"), QDate(2025, 5, 2), QStringLiteral("ארנונה"), 99.5, 5}};
}

} // namespace

TEST(TzefiWindows, APickedRowReachesTheDialogOnlyFromTheCompletePage)
{
    QTemporaryDir dir;
    const auto c = candidates();
    frmSubtractFromTzefi logic(c, tzefiPage(c, QStringLiteral("Arial")), dir.path());
    ui::frmSubtractFromTzefiView view(logic);
    ASSERT_TRUE(logic.Form_Load());
    web::QtWebView& wb = view.wb();
    for (const char* name : {"wb", "imgArrow", "cmdOK", "cmdCancel"})
        EXPECT_NE(view.findChild<QWidget*>(QString::fromLatin1(name)), nullptr) << name;
    // Every time a click reaches the dialog, the page must be complete.
    int heard = 0, heardLoading = 0;
    const auto mirror = logic.changed;
    logic.changed = [&] {
        ++heard;
        heardLoading += wb.isComplete() ? 0 : 1;
        mirror();
    };
    view.show();
    // The user clicks as soon as the page is asked for, while it loads.
    ASSERT_TRUE(waitFor([&] { return !wb.location().isEmpty(); }));
    EXPECT_FALSE(logic.isEnabled(QStringLiteral("cmdOK")));
    if (!wb.isComplete())
        wb.execScript(QStringLiteral("var t = document.getElementById('t1'); if (t && t.rows.length) t.rows[0].click();"));
    ASSERT_TRUE(waitFor([&] { return wb.isComplete(); }, 60000))
        << "WebEngine did not load the page: " << wb.location().toStdString() << " " << wb.readyState().toStdString();
    waitFor([] { return false; }, 300);
    auto* cmdOK = view.findChild<QPushButton*>(QStringLiteral("cmdOK"));

    const auto back = [&](int row) {
        return wb.evaluate(QStringLiteral("document.getElementById('t1').rows[%1].style.backgroundColor").arg(row)).toString();
    };
    wb.execScript(QStringLiteral("document.getElementById('t1').rows[1].click()"));
    ASSERT_TRUE(waitFor([&] { return logic.isEnabled(QStringLiteral("cmdOK")) && back(1) == QLatin1String("orange"); }));
    EXPECT_TRUE(cmdOK->isEnabled());
    // Hover lights another row, never the chosen one.
    wb.execScript(QStringLiteral("var r = document.getElementById('t1').rows; r[2].dispatchEvent(new MouseEvent('mouseover'));"
                                 "r[1].dispatchEvent(new MouseEvent('mouseout'));"));
    waitFor([&] { return back(2) != QLatin1String("white"); }, 3000);
    EXPECT_EQ(back(2), QStringLiteral("rgb(255, 228, 181)"));
    EXPECT_EQ(back(1), QStringLiteral("orange"));
    // The markup in a detail is text, cut at 22 characters.
    EXPECT_EQ(wb.evaluate(QStringLiteral("document.getElementById('t1').rows[1].cells[4].innerText")).toString(),
              QStringLiteral("לקוח <גדול> & \"בניו\" ב..."));
    waitFor([] { return false; }, 300);
    view.grab().save(shot(QStringLiteral("frmSubtractFromTzefi.png")));

    // A second click moves the choice; the first row goes back to white.
    wb.execScript(QStringLiteral("document.getElementById('t1').rows[0].click()"));
    ASSERT_TRUE(waitFor([&] { return back(0) == QLatin1String("orange"); }));
    EXPECT_EQ(back(1), QStringLiteral("white"));
    waitFor([] { return false; }, 200);
    cmdOK->click();
    EXPECT_TRUE(logic.isClosed());
    EXPECT_EQ(logic.rwIndex(), 0);
    EXPECT_GE(heard, 2);
    EXPECT_EQ(heardLoading, 0) << "a click on the loading page reached the dialog";
}

TEST(TzefiWindows, TheImportBoxShowsOnlyForAForecast)
{
    frmTzefi logic(true, 99);
    ui::frmTzefiView view(logic);
    view.show();
    QCoreApplication::processEvents();
    auto* tzefiLine = view.findChild<QCheckBox*>(QStringLiteral("chkTzefiLine"));
    auto* hashavshevet = view.findChild<QCheckBox*>(QStringLiteral("chkHashavshevet"));
    ASSERT_TRUE(tzefiLine && hashavshevet);
    EXPECT_TRUE(tzefiLine->isChecked() && hashavshevet->isChecked() && hashavshevet->isVisible());
    view.grab().save(shot(QStringLiteral("frmTzefi.png")));
    tzefiLine->click();
    QCoreApplication::processEvents();
    EXPECT_FALSE(hashavshevet->isVisible());
    view.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    EXPECT_FALSE(logic.wasTzefiChecked());
    EXPECT_TRUE(logic.wasHashavshevetChecked());
}
