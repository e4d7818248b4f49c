// clsBackBuffer: an off-screen drawing surface with two charts built in, a
// balance line chart and a paired bar chart.
//
// A window owns one per picture, redraws it when its data change, and
// copies it to the picture in its paint event with Draw; nothing is drawn
// on screen while a chart is built. All coordinates are pixels of the
// surface, y growing downwards. The surface is a QImage drawn with an
// anti-aliasing QPainter; text is shaped by Qt, so Hebrew captions and
// hovers read right to left.
//
// The geometry (the points of the balance line, the pairs of bars, the
// zero row, the axis) is kept after each draw: the hover tests work on it,
// and so do the tests.
//
// Colours are numbers whose lowest byte is red (0xBBGGRR), as rgb() of
// base/Format.h makes them. Not here: where the values come from (the
// daily summary, the reports) and any widget.
#pragma once

#include "charts/ChartScale.h"

#include <QImage>
#include <QObject>
#include <QPointF>
#include <QStringList>
#include <QTimer>

#include <cstdint>
#include <vector>

class QPainter;

namespace pelkor::charts {

class clsBackBuffer : public QObject {
    Q_OBJECT
public:
    // The geometry of one pair of bars.
    struct Pair {
        int XL = 0, XM = 0, XR = 0;   // first bar XL..XM, second XM..XR
        int YA = 0, YB = 0;           // rows of the two values
    };
    // The plot areas of the two charts: fixed margins round the surface.
    // The balance chart moves its plot's left edge further in when a value
    // of its scale is wider than the margin leaves room for (plotLeftEdge).
    static constexpr int plotLeft = 75;
    // The least room between the surface's left edge and a scale's value.
    static constexpr int labelMargin = 6;
    static constexpr int balanceTop = 22, balanceRightMargin = 28, balanceBottomMargin = 45;
    static constexpr int barsTop = 30, barsBottomMargin = 80;
    // A hover hits a point within this distance, in pixels.
    static constexpr int hoverRadius = 5;

    explicit clsBackBuffer(QObject* parent = nullptr);
    ~clsBackBuffer() override;

    // ---- the surface ----------------------------------------------------
    // Builds the surface (inWidth x inHeight, at least 1 x 1) and the fixed
    // resources; frameImage is the frame drawn round a balance chart (a
    // nine-slice of 10-pixel corners, black as the transparent colour), a
    // plain border when the file is missing. A new Create replaces the
    // surface and stops an animation. False for a size of 0 or less.
    bool Create(int inWidth, int inHeight, std::uint32_t periodAColor, std::uint32_t periodBColor,
                const QString& frameImage = {});
    // Frees the surface: the update operations do nothing until the next Create.
    void Destroy();
    bool isCreated() const { return !image_.isNull(); }
    int Width() const { return image_.width(); }
    int Height() const { return image_.height(); }
    // The surface itself (the old device context): what Draw copies.
    const QImage& hDC() const { return image_; }

    // Copies the rectangle (inSrcX, inSrcY, width, height) of the surface to
    // (x, y) of inDC; a width or height of 0 copies the whole surface.
    void Draw(QPainter& inDC, int x = 0, int y = 0, int width = 0, int height = 0, int inSrcX = 0, int inSrcY = 0) const;

    // ---- the balance chart ----------------------------------------------
    double crdt = 0;   // the credit limit; set before each draw
    // Appends a colour of separate graphs, with its three pens.
    void addBalanceColor(std::uint32_t color);
    // Draws the chart of the_ys, nGraphs graphs one after another (the
    // labels the_xs parallel to them). With isSeparateGraphs each graph is
    // a line of its own colour; otherwise one line coloured by zone
    // against the credit and zero rows.
    void updateBalanceGraph(const QStringList& the_xs, const std::vector<double>& the_ys, const QString& theCaption,
                            int nGraphs = 1, bool isSeparateGraphs = false);
    // The point nearest (x, y), or -1 when it lies further than hoverRadius.
    int getBalanceHoverIndex(int x, int y) const;
    // Writes " sBank ", "sDate: " and " sSum " in turn on an opaque ground,
    // centred on xCenter as far as the surface allows, its top at row y.
    void showBalanceHover(const QString& sBank, const QString& sDate, const QString& sSum, int xCenter, int y);
    // The height of a hover's box, for placing it above a point.
    int hoverHeight() const;

    // ---- the bar chart -----------------------------------------------------
    // Draws the pairs (the_ys[i], the_ybs[i]) under the labels the_xs: the
    // grounds at once, the bars as the animation rises (from a tenth, by a
    // tenth each 50 ms tick, or whole at the first tick). Empty labels: an
    // empty chart. Each tick tells frameReady, the old copy to the picture.
    void updateComparisonChart(const QStringList& the_xs, const std::vector<double>& the_ys,
                               const std::vector<double>& the_ybs, const QString& theCaption, std::uint32_t outerBGColor,
                               std::uint32_t innerBGColor, bool mustAnimate);
    // The pair under (x, y): its index on the first bar, index + 10000 on
    // the second, -1 elsewhere.
    int getComparisonHoverIndex(int x, int y) const;
    // Writes " label sum " on an opaque ground from (x, y), moved back to
    // stay 3 pixels inside the right edge.
    void showComparisonHover(const QString& label, const QString& sum, int x, int y);
    // One tick of the rising bars (the timer's; public for tests).
    void elapsed();
    double fraction() const { return fraction_; }
    bool animating() const { return timer_.isActive(); }

    // ---- what the last draw left ---------------------------------------------
    QString getX(int i) const { return i >= 0 && i < xs_.size() ? xs_[i] : QString(); }
    double getY(int i) const { return at(ys_, i); }
    double getYB(int i) const { return at(ybs_, i); }
    int pointCount() const { return int(points_.size()); }
    int getPntX(int i) const;
    int getPntY(int i) const;
    QPointF point(int i) const { return i >= 0 && i < pointCount() ? points_[size_t(i)] : QPointF(); }
    int pairCount() const { return int(pairs_.size()); }
    const Pair& pair(int i) const { return pairs_.at(size_t(i)); }
    int getPairXL(int i) const { return pair(i).XL; }
    int getPairXM(int i) const { return pair(i).XM; }
    int getPairXR(int i) const { return pair(i).XR; }
    int getPairYA(int i) const { return pair(i).YA; }
    int getPairYB(int i) const { return pair(i).YB; }
    int zeroY() const { return zeroY_; }
    const AxisScale& axis() const { return axis_; }
    // The left edge of the last drawing's plot.
    int plotLeftEdge() const { return left_; }
    // The row the credit line was drawn at; -1 when it was not drawn.
    int creditRow() const { return creditRow_; }
    // Whether the last balance chart had dots on its points.
    bool dotsDrawn() const { return dots_; }

signals:
    // The surface changed outside an update call (a tick of the bars): the
    // picture should copy it again.
    void frameReady();

private:
    struct Pens {
        std::uint32_t thin, mid, wide;   // 1, 3 and 5 pixels
    };
    static double at(const std::vector<double>& v, int i) { return i >= 0 && i < int(v.size()) ? v[size_t(i)] : 0; }
    void drawFrame(QPainter& p) const;
    // The nine horizontal lines, their values at x ending at labelRight.
    void drawGrid(QPainter& p, int top, int right, int bottom, int labelRight, bool alignRight) const;
    void drawCaption(QPainter& p, int right, const QString& caption) const;
    void drawAxis(QPainter& p, int top, int right, int bottom) const;
    void drawSeparateGraphs(QPainter& p, int pointsPerGraph, int nGraphs) const;
    void drawZonedLine(QPainter& p, int pointsPerGraph, double creditY, double zeroY, bool dots) const;
    void drawXLabels(QPainter& p, int right, int bottom, int pointsPerGraph) const;
    void writeHover(const QStringList& pieces, int x, int y);

    QImage image_;
    QImage frame_;
    std::uint32_t periodA_ = 0, periodB_ = 0;
    std::uint32_t outerBrush_ = 0, plotBrush_ = 0;
    std::vector<Pens> balancePens_;

    QStringList xs_;
    std::vector<double> ys_, ybs_;
    std::vector<QPointF> points_;
    std::vector<Pair> pairs_;
    AxisScale axis_;
    int left_ = plotLeft;
    int zeroY_ = 0;
    int creditRow_ = -1;
    bool dots_ = false;

    double fraction_ = 1;
    QTimer timer_;
};

// A channel's value held within 0 and 255.
inline int clp255(int v) { return v < 0 ? 0 : v > 255 ? 255 : v; }

} // namespace pelkor::charts
