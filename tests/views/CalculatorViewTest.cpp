// The calculator's window worked from the keyboard, as on a desk
// calculator: the display follows, Enter is =, and OK gives the result.
#include "app/ui/frmCalcView.h"

#include "seams/ui/DialogRules.h"
#include "seams/ui/ScriptedUi.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace pelkor {
namespace {

void key(QWidget* w, int k, const QString& text = {})
{
    QKeyEvent down(QEvent::KeyPress, k, Qt::NoModifier, text);
    QApplication::sendEvent(w, &down);
}

TEST(CalculatorView, KeysWorkItAndOKGivesTheResult)
{
    QTemporaryDir dir;
    ui::ScriptedUi ui{ui::DialogRules{}, dir.filePath(QStringLiteral("t.tsv")), QStringList{}};
    frmCalc calc(12.5, ui);
    ui::frmCalcView view(calc);
    auto* display = view.findChild<QLabel*>(QStringLiteral("txtNum"));
    ASSERT_NE(display, nullptr);
    EXPECT_EQ(display->text(), QStringLiteral("12.5"));
    for (const char* k : {"2", "+", "3", "*", "4"})
        key(&view, 0, QString::fromLatin1(k));
    key(&view, Qt::Key_Return);
    EXPECT_EQ(display->text(), QStringLiteral("14"));
    // The keypad's Enter is = too, and Backspace takes a typed digit back.
    key(&view, 0, QStringLiteral("7"));
    key(&view, 0, QStringLiteral("5"));
    key(&view, Qt::Key_Backspace);
    EXPECT_EQ(display->text(), QStringLiteral("7"));
    view.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    EXPECT_TRUE(calc.isClosed());
    EXPECT_FALSE(calc.didCancelCalc());
    EXPECT_EQ(calc.calcValue(), 7.0);
}

} // namespace
} // namespace pelkor
