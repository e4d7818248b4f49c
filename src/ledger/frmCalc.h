// frmCalc: the small calculator a double click opens on a sum cell.
//
// It starts from the cell's value and gives its result back. Multiplication
// and division bind tighter than addition and subtraction, with two levels
// of running value (sum for the additive level, term for the
// multiplicative one) rather than a stack. A division by zero is refused on
// every road (an operator after it, or =) and leaves the state as it was;
// OK on a result no line can hold (base/Format isSumTooLarge) is refused
// and the calculator stays open.
// The display holds at most 12 characters.
//
// Controls: the buttons cmdDigit0..cmdDigit9, cmdPoint, cmdPlusMinus,
// cmdAdd, cmdSubt, cmdMult, cmdDiv, cmdEquals, cmdClear, cmdClearEntry,
// cmdBackspace, cmdMemClear, cmdMemRead, cmdMemStore, cmdMemAdd, cmdOK,
// cmdCancel; the display txtNum and the memory mark txtMem (labels).
// keyPress() takes the keys of a desk calculator.
#pragma once

#include "seams/ui/Dialog.h"

namespace pelkor {

namespace ui { class Ui; }

class frmCalc : public ui::Dialog {
public:
    // ui tells the refusal of a division by zero.
    frmCalc(double calcValue, ui::Ui& ui);

    QString name() const override { return QStringLiteral("frmCalc"); }

    // The result (the display's number after =) once OK closed it.
    double calcValue() const { return calcValue_; }
    bool didCancelCalc() const { return !accepted(); }

    // A key as the form takes it: digits (also the keypad's), ".", "+",
    // "-", "*", "/", "x" (plus-minus), Enter (=), Escape (clear).
    void keyPress(QChar c);

    // The number a value shows as in the display.
    static QString displayText(double v);

protected:
    void onClick(const QString& name) override;

private:
    enum { opNone = 0, opAdd = 1, opSubt = 2, opMult = 3, opDiv = 4 };
    void digit(int d);
    void point();
    void plusMinus();
    void backspace();
    // False (with the user told) on a division by zero: nothing changed.
    bool finishMultiplicative();
    bool cmdAdd();
    bool cmdMult();
    void cmdEquals();
    void show(double v) { setValue(QStringLiteral("txtNum"), displayText(v)); }
    QString display() const { return control(QStringLiteral("txtNum")); }
    double displayNumber() const;

    ui::Ui& ui_;
    double calcValue_ = 0;
    double sum_ = 0;
    double term_ = 0;
    double memory_ = 0;
    int addOp_ = opNone;
    int mulOp_ = opNone;
    bool isTyping_ = false;
    bool hasPoint_ = false;
    bool isFreshValue_ = false;
};

} // namespace pelkor
