// ChartScale: the value axis both charts share, and the number form of
// their labels.
//
// An axis always has eight steps of one grid step g, starting on a multiple
// of g at or under the smallest value. g is a "round" number near a seventh
// of the range (1.2, 1.5, 2, 5 or 10 times a power of ten), so the values
// fill most of the eight steps and the labels read easily. Nothing here
// draws.
#pragma once

#include <QString>

namespace pelkor::charts {

struct AxisScale {
    double g = 10000;     // the grid step
    double yMin = 0;      // the value of the bottom row
    double yMax = 80000;  // yMin + 8g
    // The pixel row of value v on a plot from top to bottom (y grows down).
    double row(double v, int top, int bottom) const { return bottom - (v - yMin) / (8 * g) * (bottom - top); }
};

// The scale of values from min to max. Equal values (or values that are
// no numbers) take a step of 10000; a range too wide for doubles keeps a
// finite step.
AxisScale axisScale(double min, double max);

// A value as the labels show it: grouped digits with "," and "." for the
// decimals, a leading "-" for a negative value, no parentheses.
QString FormatChartSum(double value, int decimals);

} // namespace pelkor::charts
