// The add-line window as a user meets it: the fields in the grid's order,
// right to left, Enter walking them, a refusal keeping the focus, OK
// writing the line. Saved as <build>/screenshots/frmAddLine.png.
#include "app/ui/frmAddLineView.h"

#include "file/LoadFixture.h"
#include "views/ViewWait.h"

#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

class AddLineView : public LoadTest {};

// Keys as the keyboard gives them: press and release, through the event
// filters on the way.
void keyClick(QWidget* w, int key, const QString& text = {})
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(w, &press);
    QApplication::sendEvent(w, &release);
}
void keyClicks(QWidget* w, const QString& text)
{
    for (QChar c : text)
        keyClick(w, c.isDigit() ? Qt::Key_0 + c.digitValue() : Qt::Key_A, QString(c));
}

} // namespace

TEST_F(AddLineView, EnterWalksTheFieldsAndOkWritesTheLine)
{
    makeLedger(QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
                              "(1,'+1','2025-03-01','1','פתיחה',10,0,1,'ZZZZZZZZZZ','ללא צבע');"));
    start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    QStringList told;
    frmAddLine logic(m->ledger(), m->instance(), file, m->ui(), QDate(2025, 6, 1), [&](const QString& t) { told << t; });
    ASSERT_TRUE(logic.Form_Load());
    ui::frmAddLineView view(logic);
    view.show();
    QApplication::setActiveWindow(&view);
    QCoreApplication::processEvents();
    const auto field = [&](const char* name) { return view.findChild<QLineEdit*>(QLatin1String(name)); };
    for (const QString& name : frmAddLine::fields())
        ASSERT_NE(view.findChild<QLineEdit*>(name), nullptr) << name.toStdString();
    // The kind stands on the right, where a Hebrew reader starts.
    EXPECT_GT(field("txtKind")->mapTo(&view, QPoint()).x(), field("txtMyType")->mapTo(&view, QPoint()).x());

    field("txtKind")->setFocus();
    keyClicks(field("txtKind"), QStringLiteral("1"));
    keyClick(field("txtKind"), Qt::Key_Return);
    EXPECT_TRUE(field("txtDate")->hasFocus());
    // A date that is none keeps the focus.
    keyClicks(field("txtDate"), QStringLiteral("40/40/2025"));
    keyClick(field("txtDate"), Qt::Key_Return);
    EXPECT_TRUE(field("txtDate")->hasFocus());
    EXPECT_EQ(prompts().value(0), QStringLiteral("msgbox|שגיאה|התאריך אינו חוקי|OK"));
    field("txtDate")->clear();
    keyClicks(field("txtDate"), QStringLiteral("10/06/2025"));
    keyClick(field("txtDate"), Qt::Key_Return);
    keyClick(field("txtConfirm"), Qt::Key_Return);
    keyClicks(field("txtDetails"), QStringLiteral("מכירה בדוכן"));
    keyClick(field("txtDetails"), Qt::Key_Return);
    keyClicks(field("txtIn"), QStringLiteral("250"));
    keyClick(field("txtIn"), Qt::Key_Return);
    EXPECT_TRUE(field("txtOut")->hasFocus());
    EXPECT_EQ(field("txtIn")->text(), QStringLiteral("250.00"));

    view.grab().save(shot(QStringLiteral("frmAddLine.png")));

    view.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    EXPECT_TRUE(logic.isClosed());
    EXPECT_EQ(query(QStringLiteral("SELECT kind, date, detail, [in], out, TypeNum FROM pelkor WHERE id=2")),
              QStringLiteral("+1|10/06/2025|מכירה בדוכן|250|0|1"));
    EXPECT_EQ(told, QStringList{QStringLiteral("closed")});
}
