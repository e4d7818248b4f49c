// DailySummaryView: the daily summary beside the main grid: its title, the
// day grid (msfgBank), the balance chart (picChart) with its scroll bar
// (HScrollChart, lblMin, lblMax, lblChart), and the close button.
//
// It mirrors charts::DailySummary and forwards the user's acts to it
// through frmMain's guard; it decides nothing.
#pragma once

#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;
class QScrollBar;

namespace pelkor::grid { class GridView; }

namespace pelkor {

class frmMain;
class ChartView;

class DailySummaryView : public QWidget {
    Q_OBJECT
public:
    // focusMain gives the main grid the focus.
    DailySummaryView(frmMain& logic, std::function<void()> focusMain, QWidget* parent = nullptr);

    grid::GridView* bankGrid() const { return bank_; }
    ChartView* chart() const { return chart_; }

private:
    void mirror();
    void refit();

    frmMain& m_;
    std::function<void()> focusMain_;
    QLabel* title_ = nullptr;
    grid::GridView* bank_ = nullptr;
    ChartView* chart_ = nullptr;
    QScrollBar* scroll_ = nullptr;
    QLabel* lblChart_ = nullptr;
    QPushButton* cmdClose_ = nullptr;
};

} // namespace pelkor
