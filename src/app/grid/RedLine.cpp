#include "app/grid/RedLine.h"

#include <QAbstractItemModel>
#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QTableView>
#include <QTimer>

#include <algorithm>

namespace pelkor::grid {

RedLine::RedLine(QTableView* view) : QWidget(view->viewport()), view_(view)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    hide();
    view_->viewport()->installEventFilter(this);
    const auto later = [this] { place(); };
    connect(view_->verticalScrollBar(), &QScrollBar::valueChanged, this, later);
    connect(view_->horizontalScrollBar(), &QScrollBar::valueChanged, this, later);
    connect(view_->verticalHeader(), &QHeaderView::sectionResized, this, later);
    connect(view_->horizontalHeader(), &QHeaderView::sectionResized, this, later);
    connect(view_->verticalHeader(), &QHeaderView::sectionCountChanged, this, later);
    connect(view_->horizontalHeader(), &QHeaderView::sectionCountChanged, this, later);
    connectModel();
}

void RedLine::connectModel()
{
    if (model_)
        disconnect(model_, nullptr, this, nullptr);
    model_ = view_->model();
    if (!model_)
        return;
    auto* m = static_cast<QAbstractItemModel*>(model_.data());
    // After a reset the view lays its rows out on its next pass; place the
    // line after that.
    const auto soon = [this] { QTimer::singleShot(0, this, [this] { place(); }); };
    connect(m, &QAbstractItemModel::modelReset, this, soon);
    connect(m, &QAbstractItemModel::layoutChanged, this, soon);
    connect(m, &QAbstractItemModel::rowsInserted, this, soon);
    connect(m, &QAbstractItemModel::rowsRemoved, this, soon);
}

void RedLine::setRow(int itemRow)
{
    row_ = itemRow;
    place();
}

void RedLine::place()
{
    if (view_->model() != model_.data())
        connectModel();
    const QAbstractItemModel* m = view_->model();
    QWidget* vp = view_->viewport();
    if (!m || row_ < 0 || row_ >= m->rowCount() || view_->isRowHidden(row_) || m->columnCount() == 0) {
        hide();
        return;
    }
    const int y = view_->rowViewportPosition(row_) + view_->rowHeight(row_) - thickness / 2;
    if (view_->rowViewportPosition(row_) < 0 || y < 0 || y + thickness > vp->height()) {
        hide();
        return;
    }
    // Across the columns of the lines, whichever side the first one is on.
    const int last = m->columnCount() - 1;
    const int a = view_->columnViewportPosition(0), b = view_->columnViewportPosition(last);
    int left = std::min(a, b);
    int right = std::max(a + view_->columnWidth(0), b + view_->columnWidth(last));
    left = std::max(left, 0);
    right = std::min(right, vp->width());
    if (right <= left) {
        hide();
        return;
    }
    setGeometry(left, y, right - left, thickness);
    raise();
    show();
}

bool RedLine::eventFilter(QObject* o, QEvent* e)
{
    if (o == view_->viewport() && (e->type() == QEvent::Resize || e->type() == QEvent::Show))
        place();
    return QWidget::eventFilter(o, e);
}

void RedLine::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), Qt::red);
}

} // namespace pelkor::grid
