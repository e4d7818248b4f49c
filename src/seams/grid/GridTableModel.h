// GridTableModel: a GridModel as Qt's item views read it.
//
// The fixed rows and columns are not items: the first fixed row gives the
// horizontal header (captions and their colours), the first fixed column
// the vertical header (the current row's "o"). Item (r, c) is the grid's
// cell (r + FixedRows, c + FixedCols). data() reads the grid on every
// call and copies nothing, so a view that paints only what shows costs
// only what shows.
//
// The model listens to the grid and turns its notifications into Qt's:
// cells into dataChanged (or headerDataChanged for fixed cells), a shape
// change into a reset, and the rest (heights, widths, cursor, top row)
// into the signals below, which the view (app/grid/GridView) follows.
//
// Figure columns hold sums. A sum is left-to-right text even in this
// right-to-left grid, and its right end is the number's edge: the cells of a
// figure column align right whatever the grid's own alignment of the column
// says, so that sums with two decimals stand with their decimal points in
// one line, and they use a font whose digits are all as wide as each other.
// The view reads FigureRole to lay the text out left to right and to leave
// room for the trailing minus of a negative sum on the others.
//
// It uses Qt Core and Gui only, so the logic's tests can read it.
#pragma once

#include "seams/grid/GridModel.h"

#include <QAbstractTableModel>
#include <QFont>

#include <vector>

namespace pelkor::grid {

// A colour number of the grid (lowest byte red) as Qt's colour.
QColor toQColor(std::uint32_t c);

class GridTableModel : public QAbstractTableModel, private GridListener {
    Q_OBJECT
public:
    // true for a body cell of a figure column.
    static constexpr int FigureRole = Qt::UserRole + 1;

    explicit GridTableModel(GridModel& g, QObject* parent = nullptr);
    ~GridTableModel() override;

    GridModel& grid() const { return g_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    // Grid row and column of an item, and back (an invalid index for a
    // fixed cell).
    int gridRow(int itemRow) const { return itemRow + g_.FixedRows(); }
    int gridCol(int itemCol) const { return itemCol + g_.FixedCols(); }
    QModelIndex indexOf(int gridRow, int gridCol) const;

    // The font bold cells use; the plain one is the view's.
    void setBaseFont(const QFont& f);
    // The view's font, and the font of the figures: the same where its ten
    // digits have one width, else the system's fixed-pitch font in its size.
    QFont baseFont() const { return base_; }
    QFont figureFont() const { return figures_; }

    // The grid columns that hold sums (see above).
    void setFigureColumns(std::vector<int> gridCols);
    bool isFigureColumn(int gridCol) const;

signals:
    void rowHeightsChanged();
    void columnWidthsChanged();
    void cursorChanged();
    void topRowChanged();
    // Redraw came back on after a batch (already reported as the above).
    void redrawn();

private:
    void gridChanged(const GridModel& g, const GridChange& change) override;
    QVariant cellData(int r, int c, int role) const;
    int bodyRows() const;
    int bodyCols() const;

    GridModel& g_;
    QFont base_, bold_, figures_, boldFigures_;
    std::vector<int> figureCols_;
    // The shape Qt knows (rowCount, columnCount); a change of the grid's
    // shape is reported as a reset, never piecewise.
    int rows_ = 0, cols_ = 0;
};

} // namespace pelkor::grid
