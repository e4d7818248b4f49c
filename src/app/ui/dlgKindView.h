// dlgKindView: the window of the kind dialog, right to left: the income
// kinds and the expense kinds in two lists side by side; a click on a row
// chooses it, Esc closes with no choice.
#pragma once

#include "ledger/dlgKind.h"

#include <QDialog>

namespace pelkor::ui {

class dlgKindView : public QDialog {
public:
    explicit dlgKindView(dlgKind& logic, QWidget* parent = nullptr);
    void reject() override;

private:
    dlgKind& logic_;
};

} // namespace pelkor::ui
