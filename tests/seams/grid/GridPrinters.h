// Readable failure messages for the grid's values.
#pragma once

#include "seams/grid/GridModel.h"

#include <cstdio>
#include <ostream>

namespace pelkor::grid {

// "back/fore[ bold]" with the colours as r,g,b.
inline void PrintTo(const CellStyle& s, std::ostream* os)
{
    const auto rgbText = [](std::uint32_t c) {
        char buf[24];
        std::snprintf(buf, sizeof buf, "(%u,%u,%u)", c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF);
        return std::string(buf);
    };
    *os << rgbText(s.back) << '/' << rgbText(s.fore) << (s.bold ? " bold" : "");
}

} // namespace pelkor::grid
