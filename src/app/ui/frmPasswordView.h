// frmPasswordView: the window of frmPassword, right to left: the prompt, the
// hidden password box, אישור and ביטול.
#pragma once

#include "app/ui/DialogBinder.h"
#include "seams/ui/dialogs/frmPassword.h"

#include <QDialog>

namespace pelkor::ui {

class frmPasswordView : public QDialog {
public:
    explicit frmPasswordView(frmPassword& logic, QWidget* parent = nullptr);

private:
    DialogBinder binder_;
};

} // namespace pelkor::ui
