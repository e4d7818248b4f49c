// frmMoveOrCopyView: the window of frmMoveOrCopy: the two options, the
// target's name with its browse button, and אישור / ביטול.
#pragma once

#include "app/ui/DialogBinder.h"
#include "transfer/frmMoveOrCopy.h"

#include <QDialog>

namespace pelkor::ui {

class frmMoveOrCopyView : public QDialog {
public:
    explicit frmMoveOrCopyView(transfer::frmMoveOrCopy& logic, QWidget* parent = nullptr);

private:
    DialogBinder binder_;
};

} // namespace pelkor::ui
