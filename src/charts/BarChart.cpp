// The bar chart of clsBackBuffer: pairs of bars from the zero row, rising
// over ten ticks, with their labels under them; and the hover's test of
// which bar lies under the mouse.
#include "charts/clsBackBuffer.h"

#include "base/Format.h"
#include "charts/ChartPaint.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace pelkor::charts {

namespace {
// cos 45 degrees: how far a label drawn at 45 degrees reaches each way.
constexpr double diagonal = 0.7071067812;
// A bar at the plot's bottom is lifted so that it still shows.
constexpr int minimumBar = 2;
} // namespace

void clsBackBuffer::updateComparisonChart(const QStringList& the_xs, const std::vector<double>& the_ys,
                                          const std::vector<double>& the_ybs, const QString& theCaption,
                                          std::uint32_t outerBGColor, std::uint32_t innerBGColor, bool mustAnimate)
{
    if (image_.isNull())
        return;
    timer_.stop();
    const int right = image_.width() - balanceRightMargin;
    const int bottom = image_.height() - barsBottomMargin;
    const int top = barsTop;
    left_ = plotLeft;
    outerBrush_ = outerBGColor;
    plotBrush_ = innerBGColor;
    QPainter p(&image_);
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setRenderHint(QPainter::TextAntialiasing, true);

    // Phase 1: the grounds. No labels: an empty chart.
    p.fillRect(image_.rect(), paint::color(outerBrush_));
    p.fillRect(QRect(QPoint(plotLeft, top), QPoint(right, bottom)), paint::color(plotBrush_));
    points_.clear();
    pairs_.clear();
    if (the_xs.isEmpty()) {
        xs_.clear();
        ys_.clear();
        ybs_.clear();
        emit frameReady();
        return;
    }

    // Phase 2: the data; the scale from 0 (or below) to the largest value.
    xs_ = the_xs;
    const int n = int(the_xs.size());
    ys_.assign(size_t(n), 0);
    ybs_.assign(size_t(n), 0);
    for (int i = 0; i < n; ++i) {
        ys_[size_t(i)] = at(the_ys, i);
        ybs_[size_t(i)] = at(the_ybs, i);
    }
    double mn = 0, mx = ys_[0];
    for (int i = 0; i < n; ++i)
        for (double v : {ys_[size_t(i)], ybs_[size_t(i)]}) {
            mn = std::min(mn, v);
            mx = std::max(mx, v);
        }
    axis_ = axisScale(mn, mx);

    // Phase 3: the pairs. A gap of one bar's width before each pair and
    // after the last.
    const double w = double(right - plotLeft) / (3 * n + 1);
    const auto rowOf = [&](double v) {
        const int r = int(std::lround(axis_.row(v, top, bottom)));
        return r == bottom ? bottom - minimumBar : r;
    };
    pairs_.reserve(size_t(n));
    for (int i = 0; i < n; ++i) {
        Pair pr;
        pr.XL = int(std::lround((3 * i + 1) * w + plotLeft));
        pr.XM = int(std::lround((3 * i + 2) * w + plotLeft));
        pr.XR = int(std::lround((3 * i + 3) * w + plotLeft));
        pr.YA = rowOf(ys_[size_t(i)]);
        pr.YB = rowOf(ybs_[size_t(i)]);
        pairs_.push_back(pr);
    }

    // Phase 4: caption, grid (values at the left edge), zero line, axis.
    drawCaption(p, right, theCaption);
    drawGrid(p, top, right, bottom, 5, false);
    zeroY_ = int(std::lround(axis_.row(0, top, bottom)));
    creditRow_ = -1;
    if (axis_.yMin <= 0 && axis_.yMax >= 0) {
        p.setPen(paint::pen(rgb(0, 0, 0), 3));
        p.drawLine(plotLeft, zeroY_, right, zeroY_);
    }
    drawAxis(p, top, right, bottom);

    // Phase 5: the labels at 45 degrees, each ending under its pair.
    p.setFont(paint::xLabelFont());
    p.setPen(Qt::black);
    const QFontMetrics fm(p.font());
    for (int i = 0; i < n; ++i) {
        const int t = fm.horizontalAdvance(xs_[i]);
        p.save();
        p.translate(pairs_[size_t(i)].XM - diagonal * t - 7, bottom + 3 + diagonal * t);
        p.rotate(-45);
        p.drawText(QPointF(0, fm.ascent()), xs_[i]);
        p.restore();
    }
    p.end();

    // Phase 6: the bars rise with the timer.
    fraction_ = mustAnimate ? 0.1 : 1;
    timer_.start();
}

void clsBackBuffer::elapsed()
{
    if (image_.isNull()) {
        timer_.stop();
        return;
    }
    // A sum of tenths falls a hair short of 1: that is the whole bar.
    const double f = fraction_ >= 1 - 1e-9 ? 1.0 : fraction_;
    QPainter p(&image_);
    // Bars stay inside the plot, whatever the zero row is.
    const int right = image_.width() - balanceRightMargin;
    const int bottom = image_.height() - barsBottomMargin;
    p.setClipRect(QRect(QPoint(plotLeft, barsTop), QPoint(right, bottom)));
    const auto bar = [&](int x0, int x1, int y, std::uint32_t color) {
        const double end = zeroY_ + (y - zeroY_) * f;
        p.fillRect(QRectF(QPointF(x0, std::min<double>(zeroY_, end)), QPointF(x1, std::max<double>(zeroY_, end))),
                   paint::color(color));
    };
    for (const Pair& pr : pairs_) {
        bar(pr.XL, pr.XM, pr.YA, periodA_);
        bar(pr.XM, pr.XR, pr.YB, periodB_);
    }
    p.end();
    emit frameReady();
    if (f >= 1) {
        timer_.stop();
        return;
    }
    fraction_ += 0.1;
}

int clsBackBuffer::getComparisonHoverIndex(int x, int y) const
{
    const auto between = [](int v, int a, int b) { return v >= std::min(a, b) && v <= std::max(a, b); };
    for (int i = 0; i < pairCount(); ++i) {
        const Pair& pr = pairs_[size_t(i)];
        if (pr.XL <= x && x < pr.XM && between(y, pr.YA, zeroY_))
            return i;
        if (pr.XM <= x && x < pr.XR && between(y, pr.YB, zeroY_))
            return i + 10000;
    }
    return -1;
}

} // namespace pelkor::charts
