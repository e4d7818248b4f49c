// GridDelegate: the painting of one cell of GridView (see the header).
#include "app/grid/GridDelegate.h"

#include "seams/grid/GridTableModel.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>

namespace pelkor::grid {

namespace {

bool isFigure(const QModelIndex& index)
{
    return index.data(GridTableModel::FigureRole).toBool();
}

bool isNegative(const QString& figure)
{
    return figure.endsWith(QLatin1Char('-'));
}

QColor mix(const QColor& a, const QColor& b, double shareOfB)
{
    const auto part = [&](int x, int y) { return int(x * (1 - shareOfB) + y * shareOfB + 0.5); };
    return QColor(part(a.red(), b.red()), part(a.green(), b.green()), part(a.blue(), b.blue()));
}

} // namespace

GridDelegate::GridDelegate(QAbstractItemView* view) : QStyledItemDelegate(view), view_(view) {}

void GridDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    // The selection is shown through the model's colours, and the style's
    // focus frame (a wash of the selection colour in some styles) gives way
    // to a plain dotted one (paint).
    option->state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
    if (isFigure(index))
        option->direction = Qt::LeftToRight;
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem opt(option);
    initStyleOption(&opt, index);
    const QWidget* widget = opt.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();

    if ((option.state & QStyle::State_Selected) && index != view_->currentIndex()) {
        const QColor own = opt.backgroundBrush.style() != Qt::NoBrush ? opt.backgroundBrush.color()
                                                                      : opt.palette.color(QPalette::Base);
        opt.backgroundBrush = mix(own, opt.palette.color(QPalette::Active, QPalette::Highlight), selectionShare);
    }

    const QString text = opt.text;
    const bool figure = isFigure(index);
    if (figure)
        opt.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, widget);
    if (figure && !text.isEmpty())
        drawFigure(painter, opt, text);
    // The cursor's frame, in the cell's text colour: it shows on any
    // background, also where the logic gives the current cell no colours.
    if ((option.state & QStyle::State_HasFocus) && index == view_->currentIndex()) {
        painter->save();
        painter->setPen(QPen(opt.palette.color(QPalette::Text), 1, Qt::DotLine));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(opt.rect.adjusted(0, 0, -1, -1));
        painter->restore();
    }
}

void GridDelegate::drawFigure(QPainter* painter, const QStyleOptionViewItem& opt, const QString& text) const
{
    const QWidget* widget = opt.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();

    const QFontMetrics fm(opt.font);
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, widget) + 1;
    QRect r = style->subElementRect(QStyle::SE_ItemViewItemText, &opt, widget).adjusted(margin, 0, -margin, 0);
    if (!isNegative(text))
        r.setRight(r.right() - fm.horizontalAdvance(QLatin1Char('-')));
    const QPalette::ColorGroup group = (opt.state & QStyle::State_Enabled) ? QPalette::Normal : QPalette::Disabled;
    painter->save();
    painter->setFont(opt.font);
    painter->setPen(opt.palette.color(group, QPalette::Text));
    painter->setClipRect(opt.rect);
    painter->drawText(r, int(Qt::AlignAbsolute | Qt::AlignRight | Qt::AlignVCenter | Qt::TextForceLeftToRight),
                      fm.elidedText(text, Qt::ElideLeft, r.width()));
    painter->restore();
}

QSize GridDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QSize s = QStyledItemDelegate::sizeHint(option, index);
    if (isFigure(index) && !isNegative(index.data(Qt::DisplayRole).toString())) {
        QStyleOptionViewItem opt(option);
        initStyleOption(&opt, index);
        s.rwidth() += QFontMetrics(opt.font).horizontalAdvance(QLatin1Char('-'));
    }
    return s;
}

} // namespace pelkor::grid
