// frmMainView: the main window as the user sees it.
//
// It draws what frmMain holds (title, status and file labels, the lines)
// and forwards the user's acts (refresh, close) to it. Nothing here decides
// anything about the ledger.
#pragma once

#include <QMainWindow>

class QLabel;

namespace pelkor::grid { class GridView; }

namespace pelkor {

class frmMain;

class frmMainView : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMainView(frmMain& logic, QWidget* parent = nullptr);

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void mirror();
    void reload();

    frmMain& m_;
    QLabel* status_ = nullptr;
    QLabel* fileName_ = nullptr;
    QLabel* newLines_ = nullptr;
    grid::GridView* table_ = nullptr;
    QRect placed_;   // the last place the outer host gave
};

} // namespace pelkor
