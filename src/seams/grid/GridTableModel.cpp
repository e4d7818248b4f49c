#include "seams/grid/GridTableModel.h"

#include <QColor>
#include <QFontDatabase>
#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace pelkor::grid {

QColor toQColor(std::uint32_t c)
{
    return QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF));
}

namespace {

// Whether the ten digits of f are all as wide as each other.
bool hasTabularDigits(const QFont& f)
{
    const QFontMetricsF fm(f);
    const qreal zero = fm.horizontalAdvance(QLatin1Char('0'));
    for (char d = '1'; d <= '9'; ++d)
        if (std::abs(fm.horizontalAdvance(QLatin1Char(d)) - zero) > 0.01)
            return false;
    return true;
}

QFont boldOf(QFont f)
{
    f.setBold(true);
    return f;
}

} // namespace

GridTableModel::GridTableModel(GridModel& g, QObject* parent) : QAbstractTableModel(parent), g_(g)
{
    bold_.setBold(true);
    figures_ = base_;
    boldFigures_ = bold_;
    rows_ = bodyRows();
    cols_ = bodyCols();
    g_.addListener(this);
}

GridTableModel::~GridTableModel()
{
    g_.removeListener(this);
}

void GridTableModel::setBaseFont(const QFont& f)
{
    base_ = f;
    bold_ = boldOf(f);
    figures_ = f;
    if (!hasTabularDigits(f)) {
        figures_ = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        if (f.pointSizeF() > 0)
            figures_.setPointSizeF(f.pointSizeF());
        else
            figures_.setPixelSize(f.pixelSize());
    }
    boldFigures_ = boldOf(figures_);
}

void GridTableModel::setFigureColumns(std::vector<int> gridCols)
{
    figureCols_ = std::move(gridCols);
    if (rows_ > 0 && cols_ > 0)
        emit dataChanged(index(0, 0), index(rows_ - 1, cols_ - 1), {Qt::TextAlignmentRole, Qt::FontRole, FigureRole});
}

bool GridTableModel::isFigureColumn(int gridCol) const
{
    return std::find(figureCols_.begin(), figureCols_.end(), gridCol) != figureCols_.end();
}

int GridTableModel::bodyRows() const
{
    return std::max(0, g_.Rows() - g_.FixedRows());
}

int GridTableModel::bodyCols() const
{
    return std::max(0, g_.Cols() - g_.FixedCols());
}

int GridTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rows_;
}

int GridTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : cols_;
}

QModelIndex GridTableModel::indexOf(int r, int c) const
{
    return index(r - g_.FixedRows(), c - g_.FixedCols());
}

Qt::ItemFlags GridTableModel::flags(const QModelIndex& index) const
{
    // Editing goes through the logic (the cell's text box), never through
    // the model.
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

QVariant GridTableModel::cellData(int r, int c, int role) const
{
    // The header row keeps the column's alignment and the view's font.
    const bool figure = r >= g_.FixedRows() && isFigureColumn(c);
    switch (role) {
    case Qt::DisplayRole:
        return g_.text(r, c);
    case Qt::BackgroundRole:
        return toQColor(g_.backColor(r, c));
    case Qt::ForegroundRole:
        return toQColor(g_.foreColor(r, c));
    case Qt::FontRole:
        if (figure)
            return g_.bold(r, c) ? boldFigures_ : figures_;
        return g_.bold(r, c) ? QVariant(bold_) : QVariant();
    case FigureRole:
        return figure;
    case Qt::TextAlignmentRole:
        if (figure)
            return int(Qt::AlignAbsolute | Qt::AlignRight | Qt::AlignVCenter);
        switch (g_.ColAlignment(c)) {
        // Left and right as the user sees them, whatever the direction.
        case Align::Left: return int(Qt::AlignAbsolute | Qt::AlignLeft | Qt::AlignVCenter);
        case Align::Right: return int(Qt::AlignAbsolute | Qt::AlignRight | Qt::AlignVCenter);
        case Align::Center: return int(Qt::AlignCenter);
        case Align::General: return {};
        }
        return {};
    default:
        return {};
    }
}

QVariant GridTableModel::data(const QModelIndex& index, int role) const
{
    // While redraw is off the grid may already have another shape than
    // the one the view was told of.
    if (!index.isValid() || index.row() >= bodyRows() || index.column() >= bodyCols())
        return {};
    return cellData(gridRow(index.row()), gridCol(index.column()), role);
}

QVariant GridTableModel::headerData(int section, Qt::Orientation o, int role) const
{
    // A screen reader hears a row's number, and whether the cursor is on
    // it, rather than the mark ("o") drawn there.
    if (role == Qt::AccessibleTextRole && o == Qt::Vertical && section >= 0 && section < std::min(rows_, bodyRows())) {
        const bool marked = g_.FixedCols() > 0 && !cellData(gridRow(section), 0, Qt::DisplayRole).toString().isEmpty();
        return QStringLiteral("שורה %1%2").arg(section + 1).arg(marked ? QStringLiteral(", השורה הנוכחית") : QString());
    }
    if (role != Qt::DisplayRole && role != Qt::BackgroundRole && role != Qt::ForegroundRole && role != Qt::FontRole)
        return {};
    if (o == Qt::Horizontal) {
        if (g_.FixedRows() < 1 || section < 0 || section >= std::min(cols_, bodyCols()))
            return {};
        return cellData(0, gridCol(section), role);
    }
    if (g_.FixedCols() < 1 || section < 0 || section >= std::min(rows_, bodyRows()))
        return {};
    return cellData(gridRow(section), 0, role);
}

void GridTableModel::gridChanged(const GridModel&, const GridChange& c)
{
    if (c.has(GridChange::Shape) || rows_ != bodyRows() || cols_ != bodyCols()) {
        beginResetModel();
        rows_ = bodyRows();
        cols_ = bodyCols();
        endResetModel();
        emit rowHeightsChanged();
        emit columnWidthsChanged();
        emit cursorChanged();
        emit topRowChanged();
        if (c.has(GridChange::RedrawOn))
            emit redrawn();
        return;
    }
    if (c.has(GridChange::Cells)) {
        const int fr = g_.FixedRows(), fc = g_.FixedCols();
        // The fixed parts of the rectangle are headers.
        if (c.row0 < fr && cols_ > 0) {
            const int a = std::max(c.col0, fc) - fc, b = std::min(c.col1 - fc, cols_ - 1);
            if (a <= b)
                emit headerDataChanged(Qt::Horizontal, a, b);
        }
        if (c.col0 < fc && rows_ > 0) {
            const int a = std::max(c.row0, fr) - fr, b = std::min(c.row1 - fr, rows_ - 1);
            if (a <= b)
                emit headerDataChanged(Qt::Vertical, a, b);
        }
        const int r0 = std::max(c.row0, fr) - fr, r1 = std::min(c.row1 - fr, rows_ - 1);
        const int c0 = std::max(c.col0, fc) - fc, c1 = std::min(c.col1 - fc, cols_ - 1);
        if (r0 <= r1 && c0 <= c1)
            emit dataChanged(index(r0, c0), index(r1, c1));
    }
    if (c.has(GridChange::Heights))
        emit rowHeightsChanged();
    if (c.has(GridChange::Widths))
        emit columnWidthsChanged();
    if (c.has(GridChange::Cursor))
        emit cursorChanged();
    if (c.has(GridChange::Top))
        emit topRowChanged();
    if (c.has(GridChange::RedrawOn))
        emit redrawn();
}

} // namespace pelkor::grid
