// frmTransferView: the window of frmTransfer: the two files with their
// browse buttons, the grid msfg of the two lines with an editor laid over
// the current cell (the type column completing from the row's file), and
// אישור / ביטול. Every key, text and click goes to the logic.
#pragma once

#include "app/ui/DialogBinder.h"
#include "transfer/frmTransfer.h"

#include <QDialog>

class QCompleter;
class QLineEdit;

namespace pelkor {
namespace grid { class GridView; }

namespace ui {

class frmTransferView : public QDialog {
public:
    explicit frmTransferView(transfer::frmTransfer& logic, QWidget* parent = nullptr);

    grid::GridView* grid() const { return table_; }
    QLineEdit* editor() const { return editor_; }

protected:
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    // Shows the logic's editor (place, text, completion) and the buttons.
    void sync();
    void openEditor(QChar first);

    transfer::frmTransfer& logic_;
    DialogBinder binder_;
    grid::GridView* table_ = nullptr;
    QLineEdit* editor_ = nullptr;
    QCompleter* completer_ = nullptr;
    int backRow_ = -1, backCol_ = -1;   // a refused commit: where the cursor returns
};

} // namespace ui
} // namespace pelkor
