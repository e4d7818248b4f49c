// Typing into the grid of the real window on the offscreen platform: the
// key presses go to the widgets as a user's would, and the file changes.
#include "ViewFixture.h"

#include "file/Display.h"
#include "ledger/EditState.h"

#include <QLineEdit>
#include <QListWidget>
#include <QApplication>
#include <QKeyEvent>

namespace pelkor::testing {
namespace {

const QString lines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','1','פתיחה',1000,0,1,'ZZZZZZZZZZ','ללא צבע'),"
    "(2,'-1','2025-03-05','2','ספק',0,200,2,' ','ללא צבע'),"
    "(3,'+2','2025-03-06','3','שירות',300,0,3,' ','ללא צבע');");

class EditingView : public LoadTest {
protected:
    void SetUp() override
    {
        LoadTest::SetUp();
        makeLedger(lines);
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
    // Keys to whichever widget has the focus, as the keyboard sends them.
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
    void press(Qt::Key k) { send(k); }
    void typeText(const QString& text)
    {
        for (QChar c : text)
            send(c.unicode() < 128 ? int(c.toUpper().unicode()) : 0, QString(c));
    }
    void goTo(int row, int col)
    {
        while (m->mainGrid().msfgMain.Row() < row)
            press(Qt::Key_Down);
        while (m->mainGrid().msfgMain.Col() < col)
            press(Qt::Key_Left);
        while (m->mainGrid().msfgMain.Col() > col)
            press(Qt::Key_Right);
    }
    std::unique_ptr<frmMainView> view;
    QTableView* table = nullptr;
};

TEST_F(EditingView, DateDetailSumAndTypeTypedIntoTheGridReachTheFile)
{
    goTo(2, colDate);
    typeText(QStringLiteral("7/3/2025"));
    auto* txtCell = view->findChild<QLineEdit*>(QStringLiteral("txtCell"));
    ASSERT_NE(txtCell, nullptr);
    EXPECT_TRUE(txtCell->isVisible());
    // The editor lies exactly over the cell.
    const QRect cell = table->visualRect(table->currentIndex());
    EXPECT_EQ(txtCell->geometry(), cell);
    press(Qt::Key_Return);
    EXPECT_FALSE(txtCell->isVisible());
    EXPECT_EQ(query(QStringLiteral("SELECT date FROM pelkor WHERE id=2")), QStringLiteral("07/03/2025"));

    goTo(2, colDetail);
    typeText(QStringLiteral("ספק נייר"));
    press(Qt::Key_Return);
    EXPECT_EQ(query(QStringLiteral("SELECT detail FROM pelkor WHERE id=2")), QStringLiteral("ספק נייר"));
    // Enter went on past the income to the expense.
    goTo(2, colOut);
    typeText(QStringLiteral("250"));
    press(Qt::Key_Return);
    EXPECT_EQ(query(QStringLiteral("SELECT out FROM pelkor WHERE id=2")), QStringLiteral("250"));

    // The type by completion: one letter, the list shows, Enter takes it.
    ASSERT_EQ(m->mainGrid().msfgMain.Col(), colType);
    typeText(QStringLiteral("ש"));
    auto* list = view->findChild<QListWidget*>(QStringLiteral("cmbTypes"));
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->isVisible());
    auto* txtCombo = view->findChild<QLineEdit*>(QStringLiteral("txtCombo"));
    EXPECT_EQ(txtCombo->text(), QStringLiteral("שיקים יוצאים"));
    EXPECT_EQ(txtCombo->selectedText(), QStringLiteral("יקים יוצאים"));
    press(Qt::Key_Return);
    EXPECT_FALSE(list->isVisible());
    EXPECT_EQ(query(QStringLiteral("SELECT TypeNum FROM pelkor WHERE id=2")), QStringLiteral("7"));
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join(QLatin1Char('\n')).toStdString();
}

} // namespace
} // namespace pelkor::testing
