// ChartPaint: the drawing resources the charts share: colours from the
// program's 0xBBGGRR numbers, the pens, and the three fonts.
//
// The fonts are Arial by name (the desktop substitutes its metric twin
// where Arial is missing) in pixel sizes, so a surface draws the same on
// any screen: 11, 8 and 9 points at 96 dots an inch.
#pragma once

#include <QColor>
#include <QFont>
#include <QPen>

#include <cstdint>

namespace pelkor::charts::paint {

inline QColor color(std::uint32_t bgr)
{
    return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF));
}

inline QPen pen(std::uint32_t bgr, qreal width)
{
    QPen p(color(bgr), width);
    // Round ends, so that the stretches of a line cut at a crossing join
    // without a notch.
    p.setCapStyle(Qt::RoundCap);
    p.setJoinStyle(Qt::RoundJoin);
    return p;
}

// The colour with d taken off each channel, held at 0.
inline std::uint32_t darker(std::uint32_t bgr, int d)
{
    const auto ch = [&](int shift) {
        const int v = int((bgr >> shift) & 0xFF) - d;
        return std::uint32_t(v < 0 ? 0 : v > 255 ? 255 : v) << shift;
    };
    return ch(0) | ch(8) | ch(16);
}

inline QFont font(int pixels, bool bold)
{
    QFont f(QStringLiteral("Arial"));
    f.setStyleHint(QFont::SansSerif);
    f.setPixelSize(pixels);
    f.setBold(bold);
    return f;
}
inline QFont captionFont() { return font(15, true); }   // 11 points, bold
inline QFont xLabelFont() { return font(11, false); }   // 8 points, drawn at 45 degrees
inline QFont yLabelFont() { return font(12, false); }   // 9 points

} // namespace pelkor::charts::paint
