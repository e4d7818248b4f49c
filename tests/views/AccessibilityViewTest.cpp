// What a screen reader hears of the windows: the Hebrew a user sees (a
// caption, a label's text, a total's caption with its sum as the value),
// never the names scripts find the controls by. The main window of a
// working run, a detail child with its totals, and the period report.
#include "ViewFixture.h"

#include "app/reports/frmMonthReportMainView.h"
#include "reports/ReportFixture.h"
#include "views/ViewWait.h"

#include <QLabel>
#include <QPointer>
#include <QRegularExpression>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

// The names under w that hold a Latin letter once the ledger's own name
// (the user's word, shown in the title and the file's label) is taken out.
QStringList latinNames(QWidget* w, const QString& ledgerName)
{
    static const QRegularExpression latin(QStringLiteral("[A-Za-z]"));
    QStringList found;
    const auto spoken = spokenControls(w);
    for (auto it = spoken.begin(); it != spoken.end(); ++it) {
        QString name = it->name;
        name.remove(ledgerName);
        if (name.contains(latin))
            found << it.key() + QStringLiteral(": ") + it->name;
    }
    return found;
}

struct SilentBus : Bus {
    bool send(std::uint32_t, const QString&) override { return true; }
    bool sendToHost(std::uint32_t, std::uint32_t, const QString&) override { return true; }
};

class ReportAccessibility : public LoadTest {};

} // namespace

TEST_F(DemoWindowTest, TheMainWindowSpeaksHebrew)
{
    EXPECT_TRUE(latinNames(view.get(), QStringLiteral("shop")).isEmpty())
        << latinNames(view.get(), QStringLiteral("shop")).join(QLatin1Char('\n')).toStdString();
    const auto spoken = spokenControls(view.get());
    // Scripts still find each control by its name; a person hears what it shows.
    EXPECT_EQ(spoken.value(QStringLiteral("cmdRefresh")).name, QStringLiteral("רענן"));
    EXPECT_EQ(spoken.value(QStringLiteral("lblStatus")).name, m->shown().lblStatus);
    EXPECT_EQ(spoken.value(QStringLiteral("msfgMain")).name, QStringLiteral("שורות הקובץ"));
    // A working run has no totals under the grid: hidden, not heard.
    EXPECT_FALSE(spoken.contains(QStringLiteral("lblTotalIncome")));

    // A label says its new text when it changes.
    auto* status = view->findChild<QLabel*>(QStringLiteral("lblStatus"));
    ASSERT_NE(status, nullptr);
    m->shown().lblStatus = QStringLiteral("טוען");
    emit m->changed();
    EXPECT_EQ(QAccessible::queryAccessibleInterface(status)->text(QAccessible::Name), QStringLiteral("טוען"));

    // A cell reads its amount, a row header its number rather than the mark.
    QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(table);
    ASSERT_NE(grid, nullptr);
    QAccessibleTableInterface* cells = grid->tableInterface();
    ASSERT_NE(cells, nullptr);
    const int row = m->mainGrid().msfgMain.Row() - 1;
    QAccessibleInterface* balance = cells->cellAt(row, colBalance - 1);
    ASSERT_NE(balance, nullptr);
    EXPECT_EQ(balance->text(QAccessible::Name), m->mainGrid().msfgMain.text(row + 1, colBalance));
    bool heardCurrent = false;
    for (int i = 0; i < grid->childCount() && !heardCurrent; ++i) {
        QAccessibleInterface* c = grid->child(i);
        heardCurrent = c && c->role() == QAccessible::RowHeader
                       && c->text(QAccessible::Name) == QStringLiteral("שורה %1, השורה הנוכחית").arg(row + 1);
    }
    EXPECT_TRUE(heardCurrent);
}

TEST_F(LoadTest, ADetailChildSpeaksItsTotalsAsAmounts)
{
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+1','2025-03-01','1','a',1000,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(2,'+1','2025-03-01','2','b',234.5,0,1,' ','ללא צבע'),"
        "(3,'-1','2025-03-01','3','c',0,4,2,' ','ללא צבע');"));
    SilentBus bus;
    busOverride = &bus;
    start({QStringLiteral("detail"), QStringLiteral("0000beef"), QStringLiteral("2"), QStringLiteral("01/03/2025"),
           QStringLiteral("0.0000"), file},
          QString());
    ASSERT_FALSE(m->ended());
    frmMainView view(*m);
    view.show();
    emit m->loaded();
    QCoreApplication::processEvents();

    EXPECT_TRUE(latinNames(&view, QStringLiteral("shop")).isEmpty())
        << latinNames(&view, QStringLiteral("shop")).join(QLatin1Char('\n')).toStdString();
    const auto spoken = spokenControls(&view);
    EXPECT_EQ(spoken.value(QStringLiteral("lblTotalIncome")).name, QStringLiteral("סה\"כ הכנסות"));
    EXPECT_EQ(spoken.value(QStringLiteral("lblTotalIncome")).value, QStringLiteral("1,234.50"));
    EXPECT_EQ(spoken.value(QStringLiteral("lblTotalExpense")).name, QStringLiteral("סה\"כ הוצאות"));
    EXPECT_EQ(spoken.value(QStringLiteral("lblTotalExpense")).value, QStringLiteral("4.00"));
    m->exitProg();
}

TEST_F(ReportAccessibility, ThePeriodReportSpeaksHebrew)
{
    makeLedger(reportLines());
    start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    auto* view = new frmMonthReportMainView(m->reportParts(), reports::PeriodType::Month);
    QPointer<frmMonthReportMainView> alive(view);
    ASSERT_TRUE(waitFor([&] { return view->logic().shown().visible && !view->logic().isBuilding(); }, 30000));

    EXPECT_TRUE(latinNames(view, QStringLiteral("shop")).isEmpty())
        << latinNames(view, QStringLiteral("shop")).join(QLatin1Char('\n')).toStdString();
    const auto spoken = spokenControls(view);
    EXPECT_EQ(spoken.value(QStringLiteral("frmMonthReportMain")).name, QStringLiteral("סיכום חודשי"));
    EXPECT_EQ(spoken.value(QStringLiteral("txtFrom")).name, QStringLiteral("מתאריך"));
    EXPECT_EQ(spoken.value(QStringLiteral("cmdPrintPreview")).name, QStringLiteral("הדפס"));
    view->close();
    waitFor([&] { return alive.isNull(); }, 5000);
}
