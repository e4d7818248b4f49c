// The surface, its resources, the frame, the shared parts of both charts
// (caption, grid, axis) and the hover texts. The balance chart's line is in
// BalanceChart.cpp, the bars in BarChart.cpp.
#include "charts/clsBackBuffer.h"

#include "base/Format.h"
#include "charts/ChartPaint.h"

#include <QFontMetrics>
#include <QPainter>

#include <cmath>

namespace pelkor::charts {

namespace {
// The fixed colours of the surface.
constexpr std::uint32_t outerColor = rgb(229, 229, 255);
constexpr std::uint32_t plotColor = rgb(233, 248, 255);
// The frame image's corners are this many pixels square.
constexpr int frameCorner = 10;
} // namespace

clsBackBuffer::clsBackBuffer(QObject* parent) : QObject(parent)
{
    // Ten ticks of 50 ms: the bars rise in half a second.
    timer_.setInterval(50);
    connect(&timer_, &QTimer::timeout, this, [this] { elapsed(); });
}

clsBackBuffer::~clsBackBuffer() = default;

bool clsBackBuffer::Create(int inWidth, int inHeight, std::uint32_t periodAColor, std::uint32_t periodBColor,
                           const QString& frameImage)
{
    Destroy();
    if (inWidth <= 0 || inHeight <= 0)
        return false;
    image_ = QImage(inWidth, inHeight, QImage::Format_ARGB32_Premultiplied);
    image_.fill(Qt::white);
    periodA_ = periodAColor;
    periodB_ = periodBColor;
    outerBrush_ = outerColor;
    plotBrush_ = plotColor;
    frame_ = QImage();
    if (!frameImage.isEmpty() && frame_.load(frameImage)) {
        // Black is the transparent colour of the frame's picture.
        frame_ = frame_.convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < frame_.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(frame_.scanLine(y));
            for (int x = 0; x < frame_.width(); ++x)
                if ((line[x] & 0xFFFFFF) == 0)
                    line[x] = 0;
        }
        if (frame_.width() < 2 * frameCorner + 1 || frame_.height() < 2 * frameCorner + 1)
            frame_ = QImage();
    }
    return true;
}

void clsBackBuffer::Destroy()
{
    timer_.stop();
    image_ = QImage();
    points_.clear();
    pairs_.clear();
}

void clsBackBuffer::addBalanceColor(std::uint32_t color)
{
    balancePens_.push_back({color, paint::darker(color, 45), paint::darker(color, 95)});
}

void clsBackBuffer::Draw(QPainter& inDC, int x, int y, int width, int height, int inSrcX, int inSrcY) const
{
    if (image_.isNull())
        return;
    if (width == 0 || height == 0) {
        width = image_.width();
        height = image_.height();
    }
    inDC.drawImage(QPoint(x, y), image_, QRect(inSrcX, inSrcY, width, height));
}

int clsBackBuffer::getPntX(int i) const
{
    return i >= 0 && i < pointCount() ? int(std::lround(points_[size_t(i)].x())) : 0;
}

int clsBackBuffer::getPntY(int i) const
{
    return i >= 0 && i < pointCount() ? int(std::lround(points_[size_t(i)].y())) : 0;
}

void clsBackBuffer::drawFrame(QPainter& p) const
{
    const int w = image_.width(), h = image_.height();
    if (frame_.isNull()) {
        p.fillRect(QRect(0, 0, w, h), paint::color(outerBrush_));
        p.setPen(paint::pen(rgb(160, 160, 200), 1));
        p.drawRect(QRectF(0.5, 0.5, w - 1, h - 1));
        return;
    }
    // The nine-slice: corners as they are, edges and centre stretched.
    const int c = frameCorner, fw = frame_.width(), fh = frame_.height();
    const int cw = std::min(c, w / 2), ch = std::min(c, h / 2);
    const QRect src[3][3] = {
        {QRect(0, 0, c, c), QRect(c, 0, fw - 2 * c, c), QRect(fw - c, 0, c, c)},
        {QRect(0, c, c, fh - 2 * c), QRect(c, c, fw - 2 * c, fh - 2 * c), QRect(fw - c, c, c, fh - 2 * c)},
        {QRect(0, fh - c, c, c), QRect(c, fh - c, fw - 2 * c, c), QRect(fw - c, fh - c, c, c)},
    };
    const int xs[4] = {0, cw, w - cw, w};
    const int ys[4] = {0, ch, h - ch, h};
    for (int r = 0; r < 3; ++r)
        for (int k = 0; k < 3; ++k)
            if (xs[k + 1] > xs[k] && ys[r + 1] > ys[r])
                p.drawImage(QRect(xs[k], ys[r], xs[k + 1] - xs[k], ys[r + 1] - ys[r]), frame_, src[r][k]);
}

void clsBackBuffer::drawCaption(QPainter& p, int right, const QString& caption) const
{
    // Centred over the plot, its top at row 5.
    p.setFont(paint::captionFont());
    p.setPen(Qt::black);
    const int centre = (right - left_) / 2 + left_;
    p.drawText(QRect(centre - 400, 5, 800, 40), Qt::AlignHCenter | Qt::AlignTop | Qt::TextDontClip, caption);
}

void clsBackBuffer::drawGrid(QPainter& p, int top, int right, int bottom, int labelRight, bool alignRight) const
{
    p.setFont(paint::yLabelFont());
    const QFontMetrics fm(p.font());
    for (int i = 0; i <= 8; ++i) {
        const int row = bottom - (bottom - top) * i / 8;
        if (i > 0) {
            p.setPen(paint::pen(rgb(0, 0, 0), 1));
            p.setRenderHint(QPainter::Antialiasing, false);
            p.drawLine(left_, row, right, row);
            p.setRenderHint(QPainter::Antialiasing, true);
        }
        // The value centred on its line: its top 7 rows above it.
        const QString text = FormatChartSum(i * axis_.g + axis_.yMin, 0);
        p.setPen(Qt::black);
        const QRect box = alignRight ? QRect(labelRight - 300, row - 7, 300, fm.height())
                                     : QRect(labelRight, row - 7, 300, fm.height());
        p.drawText(box, (alignRight ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignTop | Qt::TextDontClip, text);
    }
}

void clsBackBuffer::drawAxis(QPainter& p, int top, int right, int bottom) const
{
    p.setRenderHint(QPainter::Antialiasing, false);
    p.setPen(paint::pen(rgb(0, 0, 0), 1));
    p.drawLine(right, bottom, left_, bottom);
    p.drawLine(left_, bottom, left_, top);
    p.setRenderHint(QPainter::Antialiasing, true);
}

int clsBackBuffer::hoverHeight() const
{
    return QFontMetrics(paint::yLabelFont()).height() + 2;
}

void clsBackBuffer::writeHover(const QStringList& pieces, int x, int y)
{
    QPainter p(&image_);
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setRenderHint(QPainter::TextAntialiasing, true);
    p.setFont(paint::yLabelFont());
    // Right to left: the ": " after a date stands on the date's left.
    p.setLayoutDirection(Qt::RightToLeft);
    const QFontMetrics fm(p.font());
    int total = 0;
    for (const QString& s : pieces)
        total += fm.horizontalAdvance(s);
    const QRect box(x, y, total, hoverHeight());
    p.fillRect(box, Qt::white);
    p.setPen(paint::pen(rgb(0, 0, 0), 1));
    p.drawRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5));
    // The pieces follow each other from the right, as Hebrew reads; each is
    // shaped on its own, so an amount never trades places with its sign.
    int at = x + total;
    for (const QString& s : pieces) {
        const int w = fm.horizontalAdvance(s);
        at -= w;
        p.drawText(QRect(at, y, w, box.height()), Qt::AlignCenter | Qt::TextDontClip, s);
    }
}

void clsBackBuffer::showBalanceHover(const QString& sBank, const QString& sDate, const QString& sSum, int xCenter, int y)
{
    if (image_.isNull())
        return;
    const QStringList pieces{QLatin1Char(' ') + sBank + QLatin1Char(' '), sDate + QStringLiteral(": "),
                             QLatin1Char(' ') + sSum + QLatin1Char(' ')};
    const QFontMetrics fm(paint::yLabelFont());
    int total = 0;
    for (const QString& s : pieces)
        total += fm.horizontalAdvance(s);
    const int x = std::max(3, std::min(xCenter - total / 2, image_.width() - total));
    writeHover(pieces, x, y);
}

void clsBackBuffer::showComparisonHover(const QString& label, const QString& sum, int x, int y)
{
    if (image_.isNull())
        return;
    const QString text = QLatin1Char(' ') + label + QLatin1Char(' ') + sum + QLatin1Char(' ');
    const int w = QFontMetrics(paint::yLabelFont()).horizontalAdvance(text);
    x = std::min(x, image_.width() - w - 3);
    writeHover(QStringList{text}, std::max(0, x), y);
}

} // namespace pelkor::charts
