// frmAddLineView: the window of frmAddLine, right to left: one row of
// labelled fields in the grid's order (the kind on the right), the type
// field completing from the file's types, OK and Cancel under them. The
// focus moving between fields, the keys and the double clicks go to the
// logic, which commits and may keep the focus where it was.
#pragma once

#include "app/ui/DialogBinder.h"
#include "ledger/frmAddLine.h"

#include <QDialog>
#include <QHash>

class QLineEdit;

namespace pelkor::ui {

class frmAddLineView : public QDialog {
public:
    explicit frmAddLineView(frmAddLine& logic, QWidget* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // After the logic acted: values back on the fields, and the focus where
    // the logic holds it.
    void follow();

    frmAddLine& logic_;
    DialogBinder binder_;
    QHash<QString, QLineEdit*> fields_;
};

} // namespace pelkor::ui
