// CellEditorsView: the floating editors of the main grid as the user sees
// them.
//
// txtCell, a text box laid exactly over the current cell, and the type
// pair: txtCombo over the cell and the list cmbTypes dropped below it with
// the group of each type. They show what the editing logic holds
// (EditState) and hand it every key and every change the user makes; the
// logic decides what they mean, and sync() shows the outcome. A wheel over
// the open list scrolls the list, not the grid.
#pragma once

#include <QObject>

class QLineEdit;
class QListWidget;

namespace pelkor {

namespace grid { class GridView; }
class frmMain;

class CellEditorsView : public QObject {
    Q_OBJECT
public:
    CellEditorsView(frmMain& logic, grid::GridView& table, QWidget* window);

    // Shows the editors as the logic holds them: place, text, selection,
    // the list's rows; the focus goes to an open editor, else to the grid.
    void sync();
    QLineEdit* txtCell() const { return txtCell_; }
    QLineEdit* txtCombo() const { return txtCombo_; }
    QListWidget* cmbTypes() const { return cmbTypes_; }

protected:
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    void run(const QString& proc, const std::function<void()>& fn);
    void place(QLineEdit* edit);

    frmMain& m_;
    grid::GridView& table_;
    QWidget* window_;
    QLineEdit* txtCell_ = nullptr;
    QLineEdit* txtCombo_ = nullptr;
    QListWidget* cmbTypes_ = nullptr;
};

} // namespace pelkor
