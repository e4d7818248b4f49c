#include "app/grid/GridView.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include "app/grid/GridDelegate.h"
#include "app/grid/RedLine.h"
#include "seams/grid/GridTableModel.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QStyleOptionViewItem>
#include <QMouseEvent>
#include <QResizeEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

namespace pelkor::grid {

namespace {
// One notch of a wheel, in eighths of a degree (Qt's angleDelta unit).
constexpr int notch = 120;

// Flag held for the life of the object.
struct Hold {
    explicit Hold(bool& b) : b_(b), was_(b) { b_ = true; }
    ~Hold() { b_ = was_; }
    bool& b_;
    bool was_;
};
} // namespace

GridView::GridView(GridModel& g, QWidget* parent) : QTableView(parent), g_(g)
{
    model_ = new GridTableModel(g_, this);
    model_->setBaseFont(font());
    setModel(model_);
    setItemDelegate(new GridDelegate(this));
    setLayoutDirection(Qt::RightToLeft);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::ContiguousSelection);
    setWordWrap(false);
    verticalHeader()->setDefaultAlignment(Qt::AlignCenter);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    redLine_ = new RedLine(this);

    connect(model_, &GridTableModel::rowHeightsChanged, this, &GridView::applyHeights);
    connect(model_, &GridTableModel::columnWidthsChanged, this, &GridView::applyWidths);
    connect(model_, &GridTableModel::cursorChanged, this, &GridView::applyCursor);
    connect(model_, &GridTableModel::topRowChanged, this, &GridView::applyTopRow);
    connect(model_, &QAbstractItemModel::modelReset, this, [this] {
        applyHeights();
        setRedLineRow(redLineGridRow_);
        fitShownTexts();
    });
    connect(model_, &QAbstractItemModel::dataChanged, this, &GridView::cellsChanged);
    connect(model_, &QAbstractItemModel::headerDataChanged, this, [this](Qt::Orientation o) {
        if (o == Qt::Horizontal)
            fitShownTexts();
    });
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
        if (allColumnsMax_ > 0)
            askForAllColumns(allColumnsMax_);
    });
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        takeTopRow();
        fitShownTexts();
    });
    applyHeights();
    applyWidths();
}

GridView::~GridView() = default;

void GridView::setRedLineRow(int gridRow)
{
    redLineGridRow_ = gridRow;
    redLine_->setRow(gridRow < g_.FixedRows() ? -1 : gridRow - g_.FixedRows());
}

int GridView::pageRows() const
{
    const int h = verticalHeader()->defaultSectionSize();
    return h > 0 ? std::max(1, viewport()->height() / h) : 1;
}

void GridView::setFillColumn(int itemCol, int minWidth)
{
    fillCol_ = itemCol;
    fillMin_ = minWidth;
    fitFillColumn();
}

void GridView::fitFillColumn()
{
    if (fitting_ || fillCol_ < 0 || fillCol_ >= model_->columnCount())
        return;
    Hold h(fitting_);
    int others = 0;
    for (int c = 0; c < model_->columnCount(); ++c)
        if (c != fillCol_ && !isColumnHidden(c))
            others += columnWidth(c);
    // A width that brings or takes away a scroll bar changes the viewport:
    // fit again to the new one.
    for (int pass = 0; pass < 3; ++pass) {
        const int width = viewport()->width();
        setColumnWidth(fillCol_, std::max(fillMin_, width - others));
        if (viewport()->width() == width)
            break;
    }
}

void GridView::fitShownTexts(int first, int last)
{
    const int cols = model_->columnCount(), rows = model_->rowCount();
    if (cols == 0)
        return;
    // The rows in the viewport, and one more for a row cut at the bottom.
    const int top = std::max(0, rowAt(0));
    int bottom = rowAt(viewport()->height() - 1);
    bottom = bottom < 0 ? rows - 1 : std::min(rows - 1, bottom + 1);
    first = first < 0 ? top : std::max(first, top);
    last = last < 0 ? bottom : std::min(last, bottom);
    bool widened = false;
    for (int c = 0; c < cols; ++c) {
        if (c == fillCol_ || isColumnHidden(c))
            continue;
        int needed = horizontalHeader()->sectionSizeHint(c);
        for (int r = first; r <= last; ++r)
            if (!isRowHidden(r))
                needed = std::max(needed, widthNeeded(r, c));
        if (needed > columnWidth(c)) {
            setColumnWidth(c, needed);
            widened = true;
        }
    }
    if (widened)
        fitFillColumn();
}

int GridView::widthNeeded(int itemRow, int itemCol) const
{
    const QModelIndex index = model_->index(itemRow, itemCol);
    if (!index.isValid())
        return 0;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    // As QTableView measures a column: the delegate's width and the grid line.
    return itemDelegateForIndex(index)->sizeHint(option, index).width() + (showGrid() ? 1 : 0);
}

void GridView::askForAllColumns(int maxWidth)
{
    allColumnsMax_ = maxWidth;
    int total = verticalHeader()->isVisible() ? verticalHeader()->width() : 0;
    for (int c = 0; c < model_->columnCount(); ++c)
        if (!isColumnHidden(c))
            total += columnWidth(c);
    total += 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
    setMinimumWidth(std::min(total, maxWidth));
}

QString GridView::shownText(int itemRow, int itemCol) const
{
    const QModelIndex index = model_->index(itemRow, itemCol);
    auto* delegate = qobject_cast<GridDelegate*>(itemDelegateForIndex(index));
    if (!index.isValid() || !delegate)
        return {};
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    return delegate->shownText(option, index);
}

void GridView::cellsChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight)
{
    if (!topLeft.isValid() || !bottomRight.isValid())
        return;
    fitShownTexts(topLeft.row(), bottomRight.row());
}

void GridView::applyHeights()
{
    for (int r : hiddenRows_)
        if (r < model_->rowCount())
            setRowHidden(r, false);
    hiddenRows_.clear();
    const int fixed = g_.FixedRows();
    const int n = std::min(model_->rowCount(), g_.Rows() - fixed);
    for (int r = 0; r < n; ++r) {
        const int h = g_.RowHeight(r + fixed);
        if (h == 0) {
            setRowHidden(r, true);
            hiddenRows_.push_back(r);
        } else if (h != GridModel::defaultRowHeight) {
            setRowHeight(r, std::max(1, h / twipsPerPixel));
        }
    }
    redLine_->place();
}

void GridView::applyWidths()
{
    const int fixed = g_.FixedCols();
    for (int c = 0; c < model_->columnCount(); ++c) {
        const int w = g_.ColWidth(c + fixed);
        if (w >= 0)
            setColumnWidth(c, w / twipsPerPixel);
    }
    fitShownTexts();
    fitFillColumn();
}

void GridView::applyCursor()
{
    if (syncing_)
        return;   // the cursor came from the view
    const QModelIndex cur = model_->indexOf(g_.Row(), g_.Col());
    if (!cur.isValid())
        return;
    Hold h(syncing_);
    // Moving the cursor by code does not scroll: TopRow is the logic's to
    // set, as on the old grid.
    const bool scrolls = hasAutoScroll();
    setAutoScroll(false);
    const QModelIndex sel = model_->indexOf(g_.RowSel(), g_.ColSel());
    selectionModel()->setCurrentIndex(cur, QItemSelectionModel::NoUpdate);
    selectionModel()->select(QItemSelection(cur, sel.isValid() ? sel : cur), QItemSelectionModel::ClearAndSelect);
    setAutoScroll(scrolls);
}

void GridView::applyTopRow()
{
    if (syncing_)
        return;   // the view is where the grid's top row came from
    const QModelIndex top = model_->indexOf(g_.TopRow(), std::max(g_.Col(), g_.FixedCols()));
    if (!top.isValid())
        return;
    Hold h(syncing_);
    scrollTo(top, QAbstractItemView::PositionAtTop);
    redLine_->place();
}

void GridView::takeTopRow()
{
    if (syncing_)
        return;
    const int top = rowAt(0);
    if (top < 0)
        return;
    Hold h(syncing_);
    const int before = g_.TopRow();
    g_.setTopRow(top + g_.FixedRows());
    if (g_.TopRow() != before)
        emit scrolled(g_.TopRow());
}

void GridView::wheelEvent(QWheelEvent* e)
{
    const int dy = e->angleDelta().y();
    if (dy == 0) {
        QTableView::wheelEvent(e);
        return;
    }
    // A touchpad sends small steps: a page for every notch they add up to.
    wheelRest_ += dy;
    while (std::abs(wheelRest_) >= notch) {
        const int rotation = wheelRest_ > 0 ? notch : -notch;
        wheelRest_ -= rotation;
        wheelScroll(g_, rotation);
    }
    e->accept();
}

void GridView::resizeEvent(QResizeEvent* e)
{
    QTableView::resizeEvent(e);
    g_.setVisibleRows(pageRows());
    redLine_->place();
    fitShownTexts();
}

void GridView::updateGeometries()
{
    QTableView::updateGeometries();
    // The viewport narrows when the vertical scroll bar comes.
    fitFillColumn();
}

void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTableView::currentChanged(current, previous);
    if (syncing_ || !current.isValid())
        return;
    const int r = model_->gridRow(current.row()), c = model_->gridCol(current.column());
    // A drag or a shifted move stretches the selection from the cursor,
    // which stays, as the old grid did; anything else moves the cursor.
    const bool stretch = dragging_ || (QGuiApplication::keyboardModifiers() & Qt::ShiftModifier);
    if (!stretch && (r != g_.Row() || c != g_.Col()))
        emit cellLeaving();
    Hold h(syncing_);
    if (stretch) {
        g_.setRowSel(r);
        g_.setColSel(c);
        return;
    }
    g_.setRow(r);
    g_.setCol(c);
    emit cellEntered(r, c);
}

QRect GridView::cellRect(int row, int col) const
{
    return visualRect(model_->indexOf(row, col));
}

void GridView::keyPressEvent(QKeyEvent* e)
{
    if (keyHandler_ && keyHandler_(e)) {
        e->accept();
        return;
    }
    QTableView::keyPressEvent(e);
}

void GridView::mouseDoubleClickEvent(QMouseEvent* e)
{
    QTableView::mouseDoubleClickEvent(e);
    const QModelIndex at = indexAt(e->position().toPoint());
    if (at.isValid() && e->button() == Qt::LeftButton)
        emit cellDoubleClicked(model_->gridRow(at.row()), model_->gridCol(at.column()));
}

void GridView::mouseMoveEvent(QMouseEvent* e)
{
    if (!(e->buttons() & Qt::LeftButton)) {
        QTableView::mouseMoveEvent(e);
        return;
    }
    Hold h(dragging_);
    QTableView::mouseMoveEvent(e);
}

} // namespace pelkor::grid
