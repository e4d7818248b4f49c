// frmFindView: the find window, modeless over the main window.
//
// The text to find (txtWhat), the column (cmbCols, the grid's headers from
// the kind to the type), "only below the red line" (chkOnlyBelowRed), and
// the two searches (cmdNext, cmdPrev; F3 and Shift+F3), which are enabled
// while there is text. Esc closes it. After a hit it moves off the cell it
// found, so it never covers it. The search itself is the ledger's Finder.
#pragma once

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

namespace pelkor {

namespace grid { class GridView; }
class frmMain;

class frmFindView : public QDialog {
    Q_OBJECT
public:
    frmFindView(frmMain& logic, grid::GridView& table, QWidget* owner);

    // Shows the window for the search the logic prepared.
    void prepare();

protected:
    void keyPressEvent(QKeyEvent* e) override;

private:
    void find(bool forward);
    void moveFindOffCell();

    frmMain& m_;
    grid::GridView& table_;
    QLineEdit* txtWhat_ = nullptr;
    QComboBox* cmbCols_ = nullptr;
    QCheckBox* chkOnlyBelowRed_ = nullptr;
    QPushButton* cmdNext_ = nullptr;
    QPushButton* cmdPrev_ = nullptr;
};

} // namespace pelkor
