// GridModel's cell styles: a small palette of the styles in use, each cell
// holding its index, and the writes that keep the palette small.
#include "seams/grid/GridModel.h"

#include <vector>

namespace pelkor::grid {

std::uint64_t GridModel::styleKey(const CellStyle& s)
{
    return std::uint64_t(s.back & 0xFFFFFF) | (std::uint64_t(s.fore & 0xFFFFFF) << 24)
        | (std::uint64_t(s.bold ? 1 : 0) << 48);
}

std::uint16_t GridModel::intern(const CellStyle& s)
{
    const std::uint64_t key = styleKey(s);
    // A load writes a handful of styles over and over: the recent ones
    // are found without the map.
    const std::size_t slot = (key ^ (key >> 24)) % recentStyles;
    if (recentKeys_[slot] == key)
        return recentIndexes_[slot];
    if (auto it = paletteIndex_.find(key); it != paletteIndex_.end()) {
        recentKeys_[slot] = key;
        recentIndexes_[slot] = it->second;
        return it->second;
    }
    if (palette_.size() > 0xFFFF)
        compactPalette();
    if (palette_.size() > 0xFFFF)
        throw std::length_error("grid holds more than 65,536 cell styles");
    const auto i = std::uint16_t(palette_.size());
    palette_.push_back(CellStyle{s.back & 0xFFFFFF, s.fore & 0xFFFFFF, s.bold});
    paletteIndex_.emplace(key, i);
    return i;
}

void GridModel::compactPalette()
{
    // Keeps the styles some cell still uses, the two defaults first.
    std::vector<std::int32_t> remap(palette_.size(), -1);
    remap[0] = 0;
    remap[1] = 1;
    std::vector<CellStyle> kept{palette_[0], palette_[1]};
    for (Column& col : cols_)
        for (std::uint16_t& s : col.styles) {
            if (remap[s] < 0) {
                remap[s] = std::int32_t(kept.size());
                kept.push_back(palette_[s]);
            }
            s = std::uint16_t(remap[s]);
        }
    palette_.swap(kept);
    paletteIndex_.clear();
    forgetRecentStyles();
    for (std::size_t i = 0; i < palette_.size(); ++i)
        paletteIndex_[styleKey(palette_[i])] = std::uint16_t(i);
}

CellStyle GridModel::style(int r, int c) const
{
    if (!inRange(r, c))
        return defaultStyle;
    const Column& col = cols_[size_t(c)];
    CellStyle s = palette_[col.styles[size_t(r)]];
    if (col.live.test && !isFixed(r, c)) {
        const bool on = col.live.test(r);
        s.fore = (on ? col.live.onFore : col.live.offFore) & 0xFFFFFF;
        s.bold = on ? col.live.onBold : col.live.offBold;
    }
    return s;
}

void GridModel::forgetRecentStyles()
{
    std::fill(std::begin(recentKeys_), std::end(recentKeys_), ~std::uint64_t(0));
}

void GridModel::setStyle(int r, int c, const CellStyle& s)
{
    if (!inRange(r, c))
        return;
    const std::uint16_t i = intern(s);
    std::uint16_t& cur = cols_[size_t(c)].styles[size_t(r)];
    if (cur == i)
        return;
    cur = i;
    cellsChanged(r, r, c, c);
}

void GridModel::setStyle(int r, int c0, int c1, const CellStyle& s)
{
    if (r < 0 || r >= rows_)
        return;
    c0 = std::max(c0, 0);
    c1 = std::min(c1, Cols() - 1);
    if (c1 < c0)
        return;
    const std::uint16_t i = intern(s);
    for (int c = c0; c <= c1; ++c)
        cols_[size_t(c)].styles[size_t(r)] = i;
    cellsChanged(r, r, c0, c1);
}

void GridModel::setLiveColumn(int c, LiveLook look)
{
    if (c < 0 || c >= Cols())
        return;
    cols_[size_t(c)].live = std::move(look);
    cellsChanged(fixedRows_, rows_ - 1, c, c);
}

void GridModel::setBackColor(int r, int c, std::uint32_t color)
{
    CellStyle s = style(r, c);
    s.back = color & 0xFFFFFF;
    setStyle(r, c, s);
}

void GridModel::setForeColor(int r, int c, std::uint32_t color)
{
    CellStyle s = style(r, c);
    s.fore = color & 0xFFFFFF;
    setStyle(r, c, s);
}

void GridModel::setBold(int r, int c, bool b)
{
    CellStyle s = style(r, c);
    s.bold = b;
    setStyle(r, c, s);
}

} // namespace pelkor::grid
