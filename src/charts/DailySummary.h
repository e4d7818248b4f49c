// DailySummary: the main window's daily summary mode (progMode 6), the
// main grid beside a grid of days and a balance chart of the days round
// the selected one.
//
// It enters the mode (createDailySummary), folds the lines into days after
// every load (the refresh step), keeps the day grid and the main grid on
// the same date, and draws the chart window of 2 * chartHalf + 1 days
// round the selected day, only when that window moves. The chart's mouse
// (hover, a click that slides the window to a day, the wheel) and its
// scroll bar are here too. What it shows besides the grids and the chart
// is in ChartShown; the view mirrors it.
//
// Not here: the folding itself and the day grid's cells (DailySums), the
// surface (clsBackBuffer), and the widgets.
#pragma once

#include "charts/DailySums.h"
#include "charts/clsBackBuffer.h"
#include "seams/grid/GridModel.h"

#include <QObject>
#include <QPoint>
#include <QTimer>

#include <deque>
#include <functional>

namespace pelkor {

struct Instance;
struct MainGrid;
struct OpenLedger;
struct Shown;
class WindowCalls;

namespace charts {

// What the summary shows besides its grid and chart.
struct ChartShown {
    bool visible = false;            // msfgBank, picChart, lblChart, HScrollChart, lblMin, lblMax
    QString lblTitle;                // "   סיכום יומי"
    QString lblChart;
    QString cmdCloseCaption;         // "יציאה"
    int HScrollChartValue = 60;
    static constexpr int HScrollChartMin = 15, HScrollChartMax = 365;
    static constexpr int HScrollChartSmallChange = 5, HScrollChartLargeChange = 10;
};

struct DailySummaryParts {
    OpenLedger& ledger;
    Instance& instance;
    MainGrid& grid;
    Shown& shown;
    WindowCalls& window;
    QString frameImage;              // the chart's frame picture
    // Moves the main grid's cursor to a row as a user's move would (the
    // cell left, the row taken, the cell entered).
    std::function<void(int row)> moveMainRow;
    // Starts a child instance with a verb line (a day's detail); null: none.
    std::function<bool(const QString& theCommand)> startChild;
};

class DailySummary : public QObject {
    Q_OBJECT
public:
    explicit DailySummary(DailySummaryParts parts, QObject* parent = nullptr);

    // ---- the mode ---------------------------------------------------------
    // Enters the mode: from the menu (isFromFlag false: reloads first) or
    // alone for the outer host (true).
    void createDailySummary(bool isFromFlag);
    // Leaves the mode for the full main grid (the close button of a run
    // that was not started for the summary alone).
    void leaveDailySummary();
    bool active() const { return shown_.visible; }
    // After a load in the mode: the days afresh, the grid refilled, the
    // chart redrawn round the same day.
    void refreshStep();

    // ---- the grids -----------------------------------------------------------
    // The day grid's cursor entered a row (the view moved it).
    void msfgBank_EnterCell();
    // A double click on a day: the lines of that day in a detail child,
    // which tells this window when it refreshed or closed.
    void msfgBank_DblClick();
    // The main grid's cursor is on a new row: the day grid follows.
    void matchBankRowToMainRow();
    // The row the day grid's red line stands above (the zeroing date's
    // day); -1 none.
    int iBankRowAboveRed() const { return iBankRowAboveRed_; }

    // ---- the chart ----------------------------------------------------------
    void scrollChart(int center, bool focusOnMain) { reallyScrollChart(center, focusOnMain); }
    // Draws the window of days round center unless it is the one drawn.
    void reallyScrollChart(int center, bool focusOnMain);
    void HScrollChart_Change(int value);
    // The picture's new size: a new surface, drawn at once.
    void picChart_Resize(int width, int height);
    void picChart_MouseMove(int x, int y);
    void picChart_MouseUp();
    // The wheel over the chart: a notch (rotation 120) narrows by five days.
    void picChart_MouseWheel(int rotation);
    void timerChartHover_Timer();
    static QString chartCaption(int nDays);

    // ---- what the view reads -----------------------------------------------------
    grid::GridModel msfgBank{2, dayGridCols, 1, 1};
    clsBackBuffer picChart;
    const ChartShown& shown() const { return shown_; }
    const DaySums& days() const { return days_; }
    int chartCenter() const { return chartCenter_; }
    int chartFirst() const { return chartFirst_; }
    int chartHalf() const { return chartHalf_; }
    bool chartBusy() const { return chartBusy_; }
    bool chartHoverShown() const { return chartHoverShown_; }
    bool sliding() const { return !slide_.empty(); }

signals:
    void changed();                  // ChartShown changed
    void chartDrawn();               // the surface holds a new picture
    void focusWanted(bool mainGrid); // the grid that should take the focus
    void pointerTo(QPoint picPoint); // the mouse pointer goes onto this pixel of the picture

private:
    // Puts the day grid on a row (clipped), its top row so the row stands
    // mid-page, and enters the cell.
    void bankGoTo(int row, bool centre);
    void slideStep();

    DailySummaryParts p_;
    ChartShown shown_;
    DaySums days_;
    int iBankRowAboveRed_ = -1;
    int chartCenter_ = -1, chartFirst_ = 0, chartHalf_ = 30, chartHalfDrawn_ = -1;
    bool chartForce_ = false, chartBusy_ = false, chartHoverShown_ = false;
    bool building_ = false;
    bool following_ = false;         // one grid is following the other: no echo
    int chartWidth_ = 600, chartHeight_ = 300;
    QPoint hoverAt_;
    std::deque<int> slide_;          // the centres a click still slides through
    int slideTarget_ = -1;
    QTimer timerInitialScrollChart_, timerReleaseScrollChart_, timerChartHover_, timerSlide_;
};

} // namespace charts
} // namespace pelkor
