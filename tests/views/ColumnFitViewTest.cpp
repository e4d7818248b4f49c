// Columns fit the texts they show as those change: a sum typed into a new
// line, the balance it brings and a type chosen from the list are shown
// whole, without a narrower window's help. Saved as
// <build>/screenshots/fittedColumns.png.
#include "ViewFixture.h"

#include "file/Display.h"
#include "views/ViewWait.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

namespace pelkor::testing {
namespace {

// Three lines of small sums: every column is fitted to narrow texts.
const QString smallSums = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','1','פתיחה',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
    "(2,'-1','2025-03-05','2','ספק',0,2,1,' ','ללא צבע'),"
    "(3,'+2','2025-03-06','3','שירות',5,0,1,' ','ללא צבע');");

class ColumnFit : public LoadTest {
protected:
    void SetUp() override
    {
        LoadTest::SetUp();
        makeLedger(smallSums);
        start({QStringLiteral("open"), file}, QString());
        ASSERT_FALSE(m->ended());
        view = std::make_unique<frmMainView>(*m);
        emit m->loaded();
        view->resize(1100, 500);
        view->show();
        QCoreApplication::processEvents();
        table = view->findChild<QTableView*>(QStringLiteral("msfgMain"));
        ASSERT_NE(table, nullptr);
        table->setFocus();
    }
    void send(int key, const QString& text = {})
    {
        QWidget* to = QApplication::focusWidget();
        ASSERT_NE(to, nullptr);
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(to, &down);
        QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, text);
        QApplication::sendEvent(QApplication::focusWidget(), &up);
        QCoreApplication::processEvents();
    }
    void typeText(const QString& text)
    {
        for (QChar c : text)
            send(c.unicode() < 128 ? int(c.toUpper().unicode()) : 0, QString(c));
    }
    void goToCol(int col)
    {
        while (m->mainGrid().msfgMain.Col() < col)
            send(Qt::Key_Left);
        while (m->mainGrid().msfgMain.Col() > col)
            send(Qt::Key_Right);
    }
    // The text of the current row's cell in col, as the grid holds it.
    QString cell(int col) { return m->mainGrid().msfgMain.text(m->mainGrid().msfgMain.Row(), col); }

    std::unique_ptr<frmMainView> view;
    QTableView* table = nullptr;
};

TEST_F(ColumnFit, SumsBalancesAndTypesTypedIntoNewLinesShowWhole)
{
    ASSERT_TRUE(cutCells(table).isEmpty()) << cutCells(table).join(QLatin1Char('\n')).toStdString();

    // A new line, 1500 in its income.
    send(Qt::Key_Insert);
    ASSERT_EQ(m->mainGrid().msfgMain.Row(), 4);
    goToCol(colIn);
    typeText(QStringLiteral("1500"));
    send(Qt::Key_Return);
    EXPECT_EQ(m->mainGrid().msfgMain.text(4, colIn), QStringLiteral("1,500.00"));
    EXPECT_EQ(m->mainGrid().msfgMain.text(4, colBalance), QStringLiteral("1,513.00"));
    EXPECT_TRUE(cutCells(table).isEmpty()) << cutCells(table).join(QLatin1Char('\n')).toStdString();

    // Its type from the list, longer than any shown before.
    goToCol(colType);
    typeText(QStringLiteral("ה"));
    send(Qt::Key_Return);
    EXPECT_EQ(m->mainGrid().msfgMain.text(4, colType), QStringLiteral("העברה בנקאית נכנסת"));
    EXPECT_TRUE(cutCells(table).isEmpty()) << cutCells(table).join(QLatin1Char('\n')).toStdString();

    // Another line takes the balance far below zero.
    send(Qt::Key_Insert);
    goToCol(colOut);
    typeText(QStringLiteral("1234567.89"));
    send(Qt::Key_Return);
    EXPECT_EQ(cell(colBalance).right(1), QStringLiteral("-"));
    EXPECT_TRUE(cutCells(table).isEmpty()) << cutCells(table).join(QLatin1Char('\n')).toStdString();
    pause(100);
    view->grab().save(shot(QStringLiteral("fittedColumns.png")));
}

} // namespace
} // namespace pelkor::testing
