// The balance chart of clsBackBuffer: the frame, the plot, the grid, the
// credit and zero lines, the line through the points coloured by zone, and
// the dates under it; and the hover's search for the nearest point.
#include "charts/clsBackBuffer.h"

#include "base/Format.h"
#include "charts/ChartPaint.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace pelkor::charts {

namespace {

constexpr std::uint32_t lineUnderCredit = rgb(255, 0, 0);
constexpr std::uint32_t lineBetween = rgb(0, 0, 0);
constexpr std::uint32_t lineAboveZero = rgb(0, 255, 0);
constexpr std::uint32_t creditLine = rgb(255, 0, 0);
constexpr std::uint32_t zeroLine = rgb(0, 0, 0);
// A credit limit at or above the axis's top is drawn just above the plot.
constexpr int creditAboveRow = 21;

// The zone of a row: above both the credit and the zero rows green, under
// the credit row red, between them black.
std::uint32_t zoneColor(double y, double creditY, double zeroY)
{
    if (y < creditY && y < zeroY)
        return lineAboveZero;
    if (y > creditY)
        return lineUnderCredit;
    return lineBetween;
}

} // namespace

void clsBackBuffer::updateBalanceGraph(const QStringList& the_xs, const std::vector<double>& the_ys,
                                       const QString& theCaption, int nGraphs, bool isSeparateGraphs)
{
    if (image_.isNull())
        return;
    const int right = image_.width() - balanceRightMargin;
    const int bottom = image_.height() - balanceBottomMargin;
    const int top = balanceTop;
    QPainter p(&image_);
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setRenderHint(QPainter::TextAntialiasing, true);

    // Phase 1: the data, and the scale over all of its values.
    xs_ = the_xs;
    ys_ = the_ys;
    ybs_.clear();
    pairs_.clear();
    const int nPoints = int(ys_.size());
    nGraphs = std::max(1, nGraphs);
    const int pointsPerGraph = nPoints / nGraphs;
    points_.clear();
    double mn = 0, mx = 0;
    if (nPoints > 0) {
        mn = mx = ys_[0];
        for (double v : ys_) {
            mn = std::min(mn, v);
            mx = std::max(mx, v);
        }
    }
    axis_ = axisScale(mn, mx);
    zeroY_ = int(std::lround(axis_.row(0, top, bottom)));
    // The scale's values end 2 pixels left of the plot: a wide one moves
    // the plot in rather than lose its first digits at the surface's edge.
    {
        const QFontMetrics fm(paint::yLabelFont());
        int widest = 0;
        for (int i = 0; i <= 8; ++i)
            widest = std::max(widest, fm.horizontalAdvance(FormatChartSum(i * axis_.g + axis_.yMin, 0)));
        left_ = std::max(plotLeft, labelMargin + widest + 2);
    }

    // Phase 2: the frame, then the plot's ground.
    drawFrame(p);
    p.fillRect(QRect(QPoint(left_, top), QPoint(right, bottom)), paint::color(plotBrush_));

    // Phase 3: each point's pixel. A graph of one point stands in the middle.
    const double stepX = pointsPerGraph > 1 ? double(right - left_) / (pointsPerGraph - 1) : 0;
    points_.reserve(size_t(nPoints));
    for (int i = 0; i < nPoints; ++i) {
        const double x = pointsPerGraph > 1 ? (i % pointsPerGraph) * stepX + left_ : (right + left_) / 2.0;
        points_.emplace_back(std::round(x), axis_.row(ys_[size_t(i)], top, bottom));
    }

    // Phase 4: caption and grid.
    drawCaption(p, right, theCaption);
    drawGrid(p, top, right, bottom, left_ - 2, true);

    // Phase 5: the credit line, then the zero line and the axis.
    creditRow_ = -1;
    if (!isSeparateGraphs) {
        if (crdt >= axis_.yMin && crdt < axis_.yMax)
            creditRow_ = int(std::lround(axis_.row(crdt, top, bottom)));
        else if (crdt >= axis_.yMax)
            creditRow_ = creditAboveRow;
        if (creditRow_ >= 0) {
            p.setPen(paint::pen(creditLine, 3));
            p.drawLine(left_, creditRow_, right, creditRow_);
        }
    }
    if (axis_.yMin < 1 && axis_.yMax >= 0) {
        p.setPen(paint::pen(zeroLine, 3));
        p.drawLine(left_, zeroY_, right, zeroY_);
    }
    drawAxis(p, top, right, bottom);

    // Phase 6: the lines.
    dots_ = false;
    if (pointsPerGraph > 0) {
        if (isSeparateGraphs) {
            drawSeparateGraphs(p, pointsPerGraph, nGraphs);
        } else {
            dots_ = stepX >= 5 || pointsPerGraph == 1;
            drawZonedLine(p, pointsPerGraph, axis_.row(crdt, top, bottom), axis_.row(0, top, bottom), dots_);
        }
        // Phase 7: the dates under the plot.
        drawXLabels(p, right, bottom, pointsPerGraph);
    }
}

void clsBackBuffer::drawSeparateGraphs(QPainter& p, int pointsPerGraph, int nGraphs) const
{
    if (balancePens_.empty())
        return;
    // Wide and darkest first, then narrower and lighter over it: each line
    // gets a darker edge.
    for (int pass = 0; pass < 3; ++pass) {
        for (int gi = 0; gi < nGraphs; ++gi) {
            const Pens& pens = balancePens_[size_t(gi) % balancePens_.size()];
            p.setPen(pass == 0 ? paint::pen(pens.wide, 5) : pass == 1 ? paint::pen(pens.mid, 3) : paint::pen(pens.thin, 1));
            QPolygonF line;
            for (int i = 0; i < pointsPerGraph; ++i)
                line << points_[size_t(gi * pointsPerGraph + i)];
            if (line.size() == 1)
                p.drawPoint(line.first());
            else
                p.drawPolyline(line);
        }
    }
}

void clsBackBuffer::drawZonedLine(QPainter& p, int pointsPerGraph, double creditY, double zeroY, bool dots) const
{
    // Each stretch is cut where it crosses the credit row or the zero row,
    // and each piece takes the colour of its zone (judged at its middle, so
    // a piece that ends on a row takes the zone it lies in).
    for (int i = 0; i + 1 < pointsPerGraph; ++i) {
        const QPointF a = points_[size_t(i)], b = points_[size_t(i + 1)];
        // The cuts along the stretch, in order: its start, the crossings
        // (at most two), its end.
        double cuts[4] = {0, 1, 1, 1};
        int n = 1;
        if (a.y() != b.y())
            for (double yT : {creditY, zeroY})
                if ((a.y() - yT) * (b.y() - yT) < 0)
                    cuts[n++] = (yT - a.y()) / (b.y() - a.y());
        if (n == 3 && cuts[1] > cuts[2])
            std::swap(cuts[1], cuts[2]);
        cuts[n++] = 1;
        for (int k = 0; k + 1 < n; ++k) {
            if (cuts[k + 1] <= cuts[k])
                continue;
            const QPointF from = a + (b - a) * cuts[k], to = a + (b - a) * cuts[k + 1];
            p.setPen(paint::pen(zoneColor((from.y() + to.y()) / 2, creditY, zeroY), 3));
            p.drawLine(from, to);
        }
    }
    if (!dots)
        return;
    p.setBrush(Qt::NoBrush);
    for (int i = 0; i < pointsPerGraph; ++i) {
        const QPointF c = points_[size_t(i)];
        p.setPen(paint::pen(zoneColor(c.y(), creditY, zeroY), 3));
        p.drawEllipse(c, 2, 2);
    }
}

void clsBackBuffer::drawXLabels(QPainter& p, int right, int bottom, int pointsPerGraph) const
{
    // Fifteen labels at 45 degrees, each rising from below the plot
    // towards its place on the axis; where the graph has fewer points than
    // labels, a point is named once.
    p.setFont(paint::xLabelFont());
    p.setPen(Qt::black);
    const int ascent = QFontMetrics(p.font()).ascent();
    int last = -1;
    for (int i = 0; i <= 14; ++i) {
        const int index = i == 0 ? 0 : i == 14 ? pointsPerGraph - 1 : i == 7 ? (pointsPerGraph - 1) / 2 : i * (pointsPerGraph - 1) / 14;
        if (index == last)
            continue;
        last = index;
        p.save();
        p.translate((right - left_) * i / 14 + left_ - 18, bottom + 30);
        p.rotate(-45);
        p.drawText(QPointF(0, ascent), getX(index));
        p.restore();
    }
}

int clsBackBuffer::getBalanceHoverIndex(int x, int y) const
{
    int best = -1;
    long long bestD = 0;
    for (int i = 0; i < pointCount(); ++i) {
        const long long dx = getPntX(i) - x, dy = getPntY(i) - y;
        const long long d = dx * dx + dy * dy;
        if (best < 0 || d < bestD) {
            best = i;
            bestD = d;
        }
    }
    return best >= 0 && bestD <= hoverRadius * hoverRadius ? best : -1;
}

} // namespace pelkor::charts
