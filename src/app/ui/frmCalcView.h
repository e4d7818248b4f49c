// frmCalcView: the calculator's window: the display, the memory mark and
// the buttons of a desk calculator, in the calculator's pale yellow. The
// keyboard works it as it would a desk calculator (the keypad too); every
// press goes to the logic, which the window then shows.
#pragma once

#include "ledger/frmCalc.h"

#include <QDialog>

namespace pelkor { class AmountLabel; }

namespace pelkor::ui {

class frmCalcView : public QDialog {
public:
    explicit frmCalcView(frmCalc& logic, QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* e) override;
    void reject() override;

private:
    void press(const QString& name);
    void mirror();

    frmCalc& logic_;
    AmountLabel* txtNum_ = nullptr;
    AmountLabel* txtMem_ = nullptr;
};

} // namespace pelkor::ui
