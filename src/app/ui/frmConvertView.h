// frmConvertView: the window of frmConvert, right to left: the three
// options, each rate's box beside its option, and אישור and ביטול.
#pragma once

#include "app/ui/DialogBinder.h"
#include "reports/frmConvert.h"

#include <QDialog>

namespace pelkor::ui {

class frmConvertView : public QDialog {
public:
    explicit frmConvertView(reports::frmConvert& logic, QWidget* parent = nullptr);

private:
    DialogBinder binder_;
};

} // namespace pelkor::ui
