// GridDelegate: how GridView paints one cell.
//
// The model's colours are the cell's colours. The current cell shows what
// the logic gave it (the current-cell colours, where the logic paints
// them), never the style's selection colour; the other cells of a
// stretched selection (RowSel, ColSel) keep their own colours mixed with a
// little of the selection colour, so the rectangle shows without hiding a
// row's mark or a balance's red.
//
// A figure (GridTableModel::FigureRole) is left-to-right text set against
// the cell's right edge; every figure but a negative one leaves the width
// of the trailing minus free at that edge, so the decimal points of a
// column stand in one line. A figure wider than its cell loses its left
// digits to an ellipsis, never its cents.
#pragma once

#include <QStyledItemDelegate>

class QAbstractItemView;

namespace pelkor::grid {

class GridDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    // How much of the selection colour a selected cell other than the
    // current one takes, from 0 to 1.
    static constexpr double selectionShare = 0.3;

    explicit GridDelegate(QAbstractItemView* view);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    // The text paint draws for the cell: its whole text, or the part an
    // ellipsis leaves when the cell is too narrow for it.
    QString shownText(const QStyleOptionViewItem& option, const QModelIndex& index) const;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    void drawFigure(QPainter* painter, const QStyleOptionViewItem& opt, const QString& text) const;
    // Where a figure's text stands in a cell laid out as opt.
    QRect figureRect(const QStyleOptionViewItem& opt, const QString& text) const;

    QAbstractItemView* view_;
};

} // namespace pelkor::grid
