// GridView: a table view that paints a GridModel, right to left.
//
// It shows the grid through GridTableModel (the fixed row as the column
// headers, the fixed column as the row headers) and keeps the two in step
// both ways:
//   grid -> view: hidden rows and row heights, column widths, the cursor
//                 and its selection, the top row;
//   view -> grid: the top row after a scroll, the cursor after a click or
//                 a key, and visibleRows after a resize.
// A notch of the wheel scrolls one page (wheelScroll). The red line is
// placed under the row the owner names (setRedLineRow).
//
// Cells are painted by GridDelegate: the model's colours, never the
// style's selection over them, and figures aligned on their decimal
// points. One column may fill the width the others leave (setFillColumn),
// down to a minimum below which the grid scrolls sideways. The other
// columns grow to fit every text they show as it changes, scrolls into
// view or comes with a load (fitShownTexts), so a sum is never cut; they
// shrink only when the owner fits them anew (resizeColumnsToContents).
//
// The view decides nothing about the ledger: it tells its owner that the
// cursor entered a cell (cellEntered) and the owner forwards that to the
// logic. A drag or a shifted click or key stretches RowSel and ColSel
// from the cursor, which stays where it was.
#pragma once

#include "seams/grid/GridModel.h"

#include <QTableView>

#include <functional>
#include <vector>

namespace pelkor::grid {

class GridTableModel;
class RedLine;

class GridView : public QTableView {
    Q_OBJECT
public:
    // Twips in a pixel at the desktop's usual 96 dots an inch.
    static constexpr int twipsPerPixel = 15;

    explicit GridView(GridModel& g, QWidget* parent = nullptr);
    ~GridView() override;

    GridModel& grid() const { return g_; }
    GridTableModel* tableModel() const { return model_; }
    RedLine* redLine() const { return redLine_; }

    // The grid row under which the red line lies; -1: none.
    void setRedLineRow(int gridRow);

    // Whole body rows that fit in the viewport at the default row height.
    int pageRows() const;

    // The owner's keys: a key the handler takes (true) is not the view's;
    // the others move the cursor as a table does.
    void setKeyHandler(std::function<bool(QKeyEvent*)> handler) { keyHandler_ = std::move(handler); }
    // Where cell (row, col) of the grid lies in the viewport.
    QRect cellRect(int row, int col) const;

    // Item column itemCol takes the width the other columns leave in the
    // viewport, never less than minWidth; -1: none. Kept on every resize.
    void setFillColumn(int itemCol, int minWidth);
    void fitFillColumn();

    // Widens every column but the fill column to the widest of its header
    // and of the texts of item rows first..last that show; -1, -1: the rows
    // in the viewport.
    void fitShownTexts(int first = -1, int last = -1);
    // The width item (row, col) needs to show its text whole.
    int widthNeeded(int itemRow, int itemCol) const;
    // The view asks for the width of all its columns (at most maxWidth), so
    // that a layout gives it room to show them side by side; it follows
    // the columns as they widen.
    void askForAllColumns(int maxWidth);
    // The text painted in item (row, col) at its width now: the whole text
    // or what an ellipsis leaves of it.
    QString shownText(int itemRow, int itemCol) const;

signals:
    // The user moved the cursor to (row, col) of the grid (Row and Col of
    // the grid are already set).
    void cellEntered(int row, int col);
    // The top row changed by a scroll of the user.
    void scrolled(int topRow);
    // The cursor is about to leave its cell for another (Row and Col are
    // still the old cell's).
    void cellLeaving();
    // A double click on cell (row, col) (Row and Col are already there).
    void cellDoubleClicked(int row, int col);

protected:
    void wheelEvent(QWheelEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void updateGeometries() override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;

private:
    void applyHeights();
    void applyWidths();
    void applyCursor();
    void applyTopRow();
    void takeTopRow();
    void cellsChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight);

    GridModel& g_;
    GridTableModel* model_ = nullptr;
    RedLine* redLine_ = nullptr;
    int redLineGridRow_ = -1;
    std::vector<int> hiddenRows_;   // item rows this view hid
    int wheelRest_ = 0;             // eighths of a degree not yet a notch
    int fillCol_ = -1;              // item column that fills the width
    int fillMin_ = 0;
    int allColumnsMax_ = 0;         // askForAllColumns' limit; 0: off
    bool fitting_ = false;          // fitFillColumn is under way
    bool syncing_ = false;          // one side moves because the other did
    bool dragging_ = false;         // a drag with the left button is under way
    std::function<bool(QKeyEvent*)> keyHandler_;
};

} // namespace pelkor::grid
