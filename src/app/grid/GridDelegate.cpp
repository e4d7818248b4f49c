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

// A figure in width pixels: whole where its advance fits (the advance is
// what sizeHint gives room for), else its left digits give way to an
// ellipsis.
QString figureText(const QFontMetrics& fm, const QString& text, int width)
{
    return fm.horizontalAdvance(text) <= width ? text : fm.elidedText(text, Qt::ElideLeft, width);
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

QRect GridDelegate::figureRect(const QStyleOptionViewItem& opt, const QString& text) const
{
    const QWidget* widget = opt.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, widget) + 1;
    QRect r = style->subElementRect(QStyle::SE_ItemViewItemText, &opt, widget).adjusted(margin, 0, -margin, 0);
    if (!isNegative(text))
        r.setRight(r.right() - QFontMetrics(opt.font).horizontalAdvance(QLatin1Char('-')));
    return r;
}

void GridDelegate::drawFigure(QPainter* painter, const QStyleOptionViewItem& opt, const QString& text) const
{
    const QFontMetrics fm(opt.font);
    const QRect r = figureRect(opt, text);
    const QPalette::ColorGroup group = (opt.state & QStyle::State_Enabled) ? QPalette::Normal : QPalette::Disabled;
    painter->save();
    painter->setFont(opt.font);
    painter->setPen(opt.palette.color(group, QPalette::Text));
    painter->setClipRect(opt.rect);
    // A figure reads left to right with its sign behind it ("1,234.50-"),
    // whatever the direction of the window it stands in.
    painter->setLayoutDirection(Qt::LeftToRight);
    painter->drawText(r, int(Qt::AlignAbsolute | Qt::AlignRight | Qt::AlignVCenter | Qt::TextForceLeftToRight),
                      figureText(fm, text, r.width()));
    painter->restore();
}

QString GridDelegate::shownText(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem opt(option);
    initStyleOption(&opt, index);
    const QFontMetrics fm(opt.font);
    if (isFigure(index))
        return figureText(fm, opt.text, figureRect(opt, opt.text).width());
    // As the style lays a plain cell's text out.
    const QWidget* widget = opt.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, widget) + 1;
    const QRect r = style->subElementRect(QStyle::SE_ItemViewItemText, &opt, widget).adjusted(margin, 0, -margin, 0);
    return fm.elidedText(opt.text, opt.textElideMode, r.width());
}

QSize GridDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QSize s = QStyledItemDelegate::sizeHint(option, index);
    if (!isFigure(index))
        return s;
    // A figure is drawn by drawFigure, not by the style: it needs its
    // text's advance and what figureRect takes off a cell, measured on a
    // cell wide enough, so that a column of this width never elides it
    // (and a pixel for the fraction the advance rounds away).
    QStyleOptionViewItem opt(option);
    initStyleOption(&opt, index);
    constexpr int wide = 10000;
    opt.rect = QRect(0, 0, wide, std::max(1, s.height()));
    const int loss = wide - figureRect(opt, opt.text).width();
    s.setWidth(std::max(s.width(), QFontMetrics(opt.font).horizontalAdvance(opt.text) + loss + 1));
    return s;
}

} // namespace pelkor::grid
