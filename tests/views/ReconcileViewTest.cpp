// A reconciliation in the real window: the bank button, the bank menu
// page, the bank's rows beside the grid, marks by clicks in the pink
// cells, a pair and its undoing, and leaving with the file as it was.
#include "ViewFixture.h"
#include "ViewWait.h"

#include "app/web/QtWebView.h"
#include "reconcile/BankFeed.h"
#include "seams/grid/GridTableModel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMouseEvent>

namespace pelkor::testing {
namespace {

// A click of the left button at p of w, as the desktop delivers it.
void clickAt(QWidget* w, const QPoint& p)
{
    const QPointF local(p), global(w->mapToGlobal(p));
    QMouseEvent press(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &press);
    QCoreApplication::sendEvent(w, &release);
    QCoreApplication::processEvents();
}

class ReconcileViewTest : public LoadTest {
protected:
    void SetUp() override
    {
        LoadTest::SetUp();
        generator::generateDemoLedger(file, QDate(2025, 6, 1));
        makeDemoFeed();
        const QString program = dir.filePath(QStringLiteral("program"));
        QDir().mkpath(program);
        QFile::copy(QStringLiteral(PELKOR_SOURCE_DIR "/share/BankMenu.html"), program + QStringLiteral("/BankMenu.html"));
        QFile::copy(dir.filePath(QStringLiteral("demo.mdb")), program + QStringLiteral("/demo.mdb"));
        start({QStringLiteral("open"), file},
              QStringLiteral("נמצא חשבון אחד => Yes\nלבטל התאמה => Yes\nלשמור שינויים => No\n"));
        ASSERT_FALSE(m->ended());
        view = std::make_unique<frmMainView>(*m);
        emit m->loaded();
        view->resize(1400, 800);
        view->show();
        QCoreApplication::processEvents();
        before = query(QStringLiteral("SELECT * FROM pelkor ORDER BY id"));
    }
    // The bank's rows: the ledger's lines up to its zeroing date and a few
    // after it, with the running balance.
    void makeDemoFeed()
    {
        store::Connection cn;
        cn.open(file);
        auto rs = cn.execute(QStringLiteral("SELECT [date], [in], out, zee FROM pelkor WHERE NOT IndTzefi ORDER BY [date], id"));
        store::Connection feed;
        feed.open(dir.filePath(QStringLiteral("demo.mdb")), store::Connection::OpenMode::ReadWriteCreate);
        feed.executeRaw(schema::feedScript({QStringLiteral("demoOsh")}));
        double balance = 0;
        int after = -1;
        store::Transaction tx(feed);
        for (long r = 0; r < rs.recordCount() && after < 6; ++r) {
            balance += rs.at(r, 1).toDouble() - rs.at(r, 2).toDouble();
            if (after >= 0 || rs.at(r, 3).toString() == QLatin1String("ZZZZZZZZZZ"))
                ++after;
            feed.execute(QStringLiteral("INSERT INTO demoOsh (accountNum, transactionID, [date], confirm, description, [in], out, balance) "
                                        "VALUES ('12-345', %1, %2, 'c', 'bank', %3, %4, %5)")
                             .arg(r + 1)
                             .arg(formatDateForSQL(rs.at(r, 0).toDate()))
                             .arg(rs.at(r, 1).toDouble(), 0, 'f', 2)
                             .arg(rs.at(r, 2).toDouble(), 0, 'f', 2)
                             .arg(balance, 0, 'f', 2));
        }
        tx.commit();
    }
    QAbstractButton* button(const QString& name) { return view->findChild<QAbstractButton*>(name); }
    // The grid of that name the window uses now (the daily summary has a
    // msfgBank of its own, hidden here).
    grid::GridView* gridNamed(const QString& name)
    {
        const auto grids = view->findChildren<grid::GridView*>(name);
        for (grid::GridView* g : grids)
            if (g->isVisible())
                return g;
        return grids.isEmpty() ? nullptr : grids.last();
    }
    // A click in the pink mark cell of grid row r.
    void clickMark(grid::GridView* g, int r)
    {
        g->scrollTo(g->tableModel()->indexOf(r, colMark));
        QCoreApplication::processEvents();
        clickAt(g->viewport(), g->cellRect(r, colMark).center());
    }

    std::unique_ptr<frmMainView> view;
    QString before;
};

TEST_F(ReconcileViewTest, APairMadeAndUndoneByClicksAndASessionLeftWithTheFileAsItWas)
{
    ASSERT_NE(button(QStringLiteral("cmdBankCoordination")), nullptr);
    button(QStringLiteral("cmdBankCoordination"))->click();
    auto* page = view->findChild<web::QtWebView*>(QStringLiteral("wbMain"));
    ASSERT_NE(page, nullptr);
    ASSERT_TRUE(waitFor([&] { return page->isVisible() && page->readyState() == QLatin1String("complete"); }));
    view->grab().save(shot(QStringLiteral("reconcileBankMenu.png")));
    // The user picks the first bank on the page.
    pause(300);
    page->click(QStringLiteral("bank0"));
    grid::GridView* bank = nullptr;
    ASSERT_TRUE(waitFor([&] { return (bank = gridNamed(QStringLiteral("msfgBank"))) && bank->isVisible() && m->session().pairing(); }))
        << prompts().join(u'\n').toStdString() << " location " << page->location().toStdString()
        << " split " << m->session().shown.split << " gotoauto " << m->session().shown.cmdGoToAutomaticCoordination
        << " diff " << m->session().balanceDiff << " pairing " << m->session().pairing() << " bankShown " << m->session().shown.bankGridVisible << " lastrow " << m->session().bank.lastRow() << " red " << m->session().bank.iBankRowAboveRed;
    const int first = m->session().bank.iBankRowAboveRed + 1;
    const int line = m->ledger().iRowAboveRed + 1;
    auto* main = gridNamed(QStringLiteral("msfgMain"));
    clickMark(main, line);
    clickMark(bank, first);
    EXPECT_EQ(m->session().links.paintedIDs.size(), 1);
    EXPECT_EQ(m->session().links.paintedBankRows.size(), 1);
    button(QStringLiteral("cmdCoordinate"))->click();
    QCoreApplication::processEvents();
    EXPECT_EQ(m->mainGrid().msfgMain.text(line, colMark), QStringLiteral("v"));
    EXPECT_EQ(m->session().bank.msfgBank.text(first, colMark), QStringLiteral("v"));
    view->grab().save(shot(QStringLiteral("reconcilePair.png")));

    // A click on the confirmed line undoes the pair, after the question.
    clickMark(main, line);
    EXPECT_EQ(m->mainGrid().msfgMain.text(line, colMark), QString());
    EXPECT_EQ(m->session().bank.msfgBank.text(first, colMark), QString());
    EXPECT_TRUE(m->session().links.rowLinks.empty());

    // The invitation starts the search; the proposed pairs come in a window
    // of their own that holds the main window until it is left.
    auto* invitation = view->findChild<QWidget*>(QStringLiteral("frmButton"));
    ASSERT_NE(invitation, nullptr);
    EXPECT_TRUE(invitation->isVisible());
    invitation->findChild<QAbstractButton*>(QStringLiteral("cmdGo"))->click();
    auto* matches = view->findChild<QWidget*>(QStringLiteral("frmMatches"));
    ASSERT_NE(matches, nullptr);
    ASSERT_TRUE(waitFor([&] { return matches->isVisible(); }));
    EXPECT_TRUE(matches->isWindow());
    EXPECT_EQ(matches->windowTitle(), QStringLiteral("התאמות"));
    EXPECT_EQ(QApplication::activeModalWidget(), matches);
    EXPECT_FALSE(invitation->findChild<QAbstractButton*>(QStringLiteral("cmdClose"))->isVisible());
    matches->grab().save(shot(QStringLiteral("reconcileMatches.png")));
    matches->findChild<QAbstractButton*>(QStringLiteral("cmdCancel"))->click();
    QCoreApplication::processEvents();
    EXPECT_FALSE(matches->isVisible());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);

    // A pair accepted on the page and applied by OK; the next click in a
    // line's pink cell marks that line at once.
    m->mnuFindMatches_Click();
    ASSERT_TRUE(waitFor([&] { return matches->isVisible(); }));
    auto* proposals = matches->findChild<web::QtWebView*>(QStringLiteral("wb"));
    ASSERT_TRUE(waitFor([&] { return proposals->readyState() == QLatin1String("complete") &&
                                     proposals->count(QStringLiteral("imgAccept")) > 0; }));
    proposals->execScript(QStringLiteral("acceptClicked(1)"));
    ASSERT_TRUE(waitFor([&] { return m->session().finder.isAcceptedMatch(1); }));
    const int paired = m->session().finder.matches.front().iMain;
    matches->findChild<QAbstractButton*>(QStringLiteral("cmdOK"))->click();
    QCoreApplication::processEvents();
    EXPECT_EQ(m->mainGrid().msfgMain.text(paired, colMark), QStringLiteral("v"));
    int free = -1;
    for (int r = m->ledger().iRowAboveRed + 1; r < m->mainGrid().msfgMain.Rows() && free < 0; ++r)
        if (m->mainGrid().msfgMain.text(r, colMark).isEmpty() && !m->mainGrid().msfgMain.isRowHidden(r))
            free = r;
    ASSERT_GT(free, 0);
    clickMark(main, free);
    EXPECT_EQ(m->session().links.paintedIDs.size(), 1);
    clickMark(main, free);
    EXPECT_EQ(m->session().links.paintedIDs.size(), 0);

    button(QStringLiteral("cmdExitCoordination"))->click();
    QCoreApplication::processEvents();
    EXPECT_FALSE(m->session().active());
    EXPECT_FALSE(bank->isVisible());
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before);
}

} // namespace
} // namespace pelkor::testing
