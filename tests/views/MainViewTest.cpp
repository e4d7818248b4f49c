// The main window over a loaded ledger: right to left, the lines shown.
#include "ViewFixture.h"

#include "frame/Controls.h"

#include <QAbstractItemModel>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QWheelEvent>
#include <QHeaderView>
#include <QTableView>

using namespace pelkor;
using namespace pelkor::testing;

TEST_F(DemoWindowTest, MainWindowShowsTheLedgerRightToLeft)
{
    EXPECT_EQ(view->windowTitle(), QStringLiteral("פלקור - shop"));
    EXPECT_EQ(view->layoutDirection(), Qt::RightToLeft);
    ASSERT_EQ(table->model()->rowCount(), int(m->ledger().lines.size()));
    // The first column (the kind) stands at the right edge.
    const int x0 = table->columnViewportPosition(0);
    const int x1 = table->columnViewportPosition(1);
    EXPECT_GT(x0, x1);
    EXPECT_EQ(table->model()->headerData(colKind - 1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("סיווג"));
}

TEST_F(DemoWindowTest, OneWheelNotchMovesTheGridAPage)
{
    const int page = m->mainGrid().msfgMain.visibleRows();
    ASSERT_GT(page, 5);
    m->mainGrid().msfgMain.setTopRow(1);
    QCoreApplication::processEvents();
    const auto wheel = [&](int dy) {
        const QPointF at(table->viewport()->width() / 2.0, table->viewport()->height() / 2.0);
        QWheelEvent e(at, table->viewport()->mapToGlobal(at), QPoint(), QPoint(0, dy), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(table->viewport(), &e);
        QCoreApplication::processEvents();
    };
    wheel(-120);   // a notch towards the user: a page down
    EXPECT_EQ(m->mainGrid().msfgMain.TopRow(), 1 + page);
    // What the view shows follows the model: the top row is the first one painted.
    EXPECT_EQ(table->rowAt(0), m->mainGrid().msfgMain.TopRow() - 1);
    wheel(120);
    EXPECT_EQ(m->mainGrid().msfgMain.TopRow(), 1);
    // A touchpad's small steps add up to one notch.
    for (int i = 0; i < 4; ++i)
        wheel(-30);
    EXPECT_EQ(m->mainGrid().msfgMain.TopRow(), 1 + page);
}

TEST_F(LoadTest, ANewLineChildIsASmallWindowWithItsTwoButtons)
{
    // A bad-lines child: one line with text in its sum.
    makeLedger(sampleLines()
               + QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo,relate,IndTzefi) "
                                "VALUES (6,'+1','2025-03-11','7','סכום שנפגם','abc',0,1,' ','ללא צבע',0,0);"));
    start({QStringLiteral("new3"), QStringLiteral("00000000"), QStringLiteral("00000000"), QStringLiteral("00000000"), file},
          QString());
    ASSERT_FALSE(m->ended());
    frmMainView view(*m);
    view.show();
    emit m->changed();
    QCoreApplication::processEvents();
    EXPECT_EQ(view.height(), childWindowHeight);
    EXPECT_FALSE(view.menuBar()->isVisible());
    QStringList shown;
    for (auto* b : view.findChildren<QPushButton*>())
        if (b->isVisible())
            shown << b->text();
    EXPECT_TRUE(shown.contains(QStringLiteral("אישור")));
    EXPECT_TRUE(shown.contains(QStringLiteral("ביטול")));
}

namespace {
struct SilentBus : Bus {
    bool send(std::uint32_t, const QString&) override { return true; }
    bool sendToHost(std::uint32_t, std::uint32_t, const QString&) override { return true; }
};
} // namespace

TEST_F(LoadTest, ADetailChildShowsItsTotalsUnderTheGrid)
{
    // A day of two incomes and an expense, and a line of the next day.
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+1','2025-03-01','1','a',1000,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(2,'+1','2025-03-01','2','b',234.5,0,1,' ','ללא צבע'),"
        "(3,'-1','2025-03-01','3','c',0,4,2,' ','ללא צבע'),"
        "(4,'-1','2025-03-02','4','d',0,99,2,' ','ללא צבע');"));
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

    auto* income = view.findChild<QLabel*>(QStringLiteral("lblTotalIncome"));
    auto* expense = view.findChild<QLabel*>(QStringLiteral("lblTotalExpense"));
    ASSERT_TRUE(income && expense);
    EXPECT_TRUE(income->isVisible());
    EXPECT_EQ(income->text(), QStringLiteral("1,234.50"));
    EXPECT_EQ(expense->text(), QStringLiteral("4.00"));
    // Sums read left to right beside their Hebrew captions.
    EXPECT_EQ(income->layoutDirection(), Qt::LeftToRight);
    QStringList captions;
    for (auto* l : view.findChildren<QLabel*>())
        if (l->isVisible())
            captions << l->text();
    EXPECT_TRUE(captions.contains(QStringLiteral("סה\"כ הכנסות:")));
    EXPECT_TRUE(captions.contains(QStringLiteral("סה\"כ הוצאות:")));

    m->exitProg();
}
