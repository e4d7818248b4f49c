#include "app/charts/ChartView.h"

#include "charts/clsBackBuffer.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace pelkor {

ChartView::ChartView(charts::clsBackBuffer& surface, Handlers handlers, QWidget* parent)
    : QWidget(parent), surface_(surface), on_(std::move(handlers))
{
    setMouseTracking(true);
    setMinimumSize(200, 150);
    // The surface is drawn in the pixels of the picture, right to left or
    // not: the chart has its own geometry.
    setLayoutDirection(Qt::LeftToRight);
    connect(&surface_, &charts::clsBackBuffer::frameReady, this, qOverload<>(&QWidget::update));
}

void ChartView::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    if (!surface_.isCreated()) {
        p.fillRect(rect(), palette().window());
        return;
    }
    surface_.Draw(p);
}

void ChartView::resizeEvent(QResizeEvent* e)
{
    QWidget::resizeEvent(e);
    if (on_.resized)
        on_.resized(width(), height());
    update();
}

void ChartView::mouseMoveEvent(QMouseEvent* e)
{
    if (on_.mouseMove)
        on_.mouseMove(int(e->position().x()), int(e->position().y()));
}

void ChartView::mouseReleaseEvent(QMouseEvent* e)
{
    if (e->button() == Qt::LeftButton && on_.mouseUp)
        on_.mouseUp();
}

void ChartView::wheelEvent(QWheelEvent* e)
{
    if (e->angleDelta().y() != 0 && on_.wheel)
        on_.wheel(e->angleDelta().y());
    e->accept();
}

} // namespace pelkor
