// frmTzefiView: the window of frmTzefi, right to left: "שורת צפי", under it
// the import's box while the line is a forecast, and אישור / ביטול.
#pragma once

#include "app/ui/DialogBinder.h"
#include "ledger/TzefiDialogs.h"

#include <QDialog>

namespace pelkor::ui {

class frmTzefiView : public QDialog {
public:
    explicit frmTzefiView(frmTzefi& logic, QWidget* parent = nullptr);

private:
    DialogBinder binder_;
};

} // namespace pelkor::ui
