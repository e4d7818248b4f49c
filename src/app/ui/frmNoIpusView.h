// frmNoIpusView: the window of frmNoIpus, right to left: the text, the two
// options, the date box beside "תאריך", and אישור.
#pragma once

#include "app/ui/DialogBinder.h"
#include "seams/ui/dialogs/frmNoIpus.h"

#include <QDialog>

namespace pelkor::ui {

class frmNoIpusView : public QDialog {
public:
    explicit frmNoIpusView(frmNoIpus& logic, QWidget* parent = nullptr);

private:
    DialogBinder binder_;
};

} // namespace pelkor::ui
