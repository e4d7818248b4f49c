#include "seams/grid/GridModel.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace pelkor::grid {

namespace {

// The longest text a cell holds, in bytes (lengths are 16-bit). A cell of
// the ledger is a line's description at most; anything longer is cut at
// a character boundary.
constexpr std::size_t maxCellBytes = 0xFFFE;
// Sets (on) or clears the bits [from, to) of a bit per row.
void setBits(std::vector<std::uint64_t>& bits, std::size_t from, std::size_t to, bool on)
{
    while (from < to) {
        const std::size_t word = from >> 6, first = from & 63;
        const std::size_t count = std::min<std::size_t>(64 - first, to - from);
        const std::uint64_t mask = (count == 64 ? ~std::uint64_t(0) : ((std::uint64_t(1) << count) - 1)) << first;
        bits[word] = on ? bits[word] | mask : bits[word] & ~mask;
        from += count;
    }
}

// An arena is compacted when at least this much of it, and at least half
// of it, is no longer used: small arenas are not worth the pass.
constexpr std::size_t minGarbageToCompact = 1 << 20;

std::uint32_t hashBytes(const char* p, std::size_t n)
{
    // FNV-1a: short texts, a cache index only.
    std::uint32_t h = 2166136261u;
    for (std::size_t i = 0; i < n; ++i)
        h = (h ^ std::uint8_t(p[i])) * 16777619u;
    return h;
}

// Appends the UTF-8 of s to out; unpaired surrogates become U+FFFD.
void appendUtf8(std::string& out, QStringView s)
{
    const char16_t* p = s.utf16();
    const char16_t* e = p + s.size();
    const std::size_t start = out.size();
    out.resize(start + std::size_t(s.size()) * 3);   // the most a UTF-16 unit takes
    char* o = out.data() + start;
    while (p < e) {
        char32_t c = *p++;
        if (c < 0x80) {
            *o++ = char(c);
            continue;
        }
        if (c >= 0xD800 && c < 0xDC00 && p < e && *p >= 0xDC00 && *p < 0xE000)
            c = 0x10000 + ((c - 0xD800) << 10) + (char32_t(*p++) - 0xDC00);
        else if (c >= 0xD800 && c < 0xE000)
            c = 0xFFFD;
        if (c < 0x800) {
            *o++ = char(0xC0 | (c >> 6));
        } else if (c < 0x10000) {
            *o++ = char(0xE0 | (c >> 12));
            *o++ = char(0x80 | ((c >> 6) & 0x3F));
        } else {
            *o++ = char(0xF0 | (c >> 18));
            *o++ = char(0x80 | ((c >> 12) & 0x3F));
            *o++ = char(0x80 | ((c >> 6) & 0x3F));
        }
        *o++ = char(0x80 | (c & 0x3F));
    }
    out.resize(std::size_t(o - out.data()));
}

int clampTo(int v, int lo, int hi) { return hi < lo ? lo : std::clamp(v, lo, hi); }

} // namespace

// ---- GridChange -----------------------------------------------------------

void GridChange::addCells(int r0, int r1, int c0, int c1)
{
    if (r1 < r0 || c1 < c0)
        return;
    if (!has(Cells)) {
        row0 = r0, row1 = r1, col0 = c0, col1 = c1;
        what |= Cells;
        return;
    }
    row0 = std::min(row0, r0), row1 = std::max(row1, r1);
    col0 = std::min(col0, c0), col1 = std::max(col1, c1);
}

void GridChange::merge(const GridChange& o)
{
    if (o.has(Cells))
        addCells(o.row0, o.row1, o.col0, o.col1);
    what |= o.what;
}

// ---- construction and listeners -----------------------------------------

GridModel::GridModel(int rows, int cols, int fixedRows, int fixedCols)
{
    palette_ = {defaultStyle, defaultFixedStyle};
    forgetRecentStyles();
    paletteIndex_[styleKey(defaultStyle)] = 0;
    paletteIndex_[styleKey(defaultFixedStyle)] = 1;
    fixedRows_ = std::max(0, fixedRows);
    fixedCols_ = std::max(0, fixedCols);
    setCols(cols);
    setRows(rows);
    row_ = rowSel_ = topRow_ = fixedRows_;
    col_ = colSel_ = fixedCols_;
    holdCursor();
    pending_ = {};
}

void GridModel::addListener(GridListener* l)
{
    if (l && std::find(listeners_.begin(), listeners_.end(), l) == listeners_.end())
        listeners_.push_back(l);
}

void GridModel::removeListener(GridListener* l)
{
    listeners_.erase(std::remove(listeners_.begin(), listeners_.end(), l), listeners_.end());
}

void GridModel::changed(const GridChange& c)
{
    if (!redraw_) {
        pending_.merge(c);
        return;
    }
    // A listener may remove itself while being told.
    const auto listeners = listeners_;
    for (GridListener* l : listeners)
        l->gridChanged(*this, c);
}

void GridModel::cellsChanged(int r0, int r1, int c0, int c1)
{
    GridChange c;
    c.addCells(r0, r1, c0, c1);
    changed(c);
}

void GridModel::flagChanged(GridChange::What w)
{
    GridChange c;
    c.what = w;
    changed(c);
}

void GridModel::setRedraw(bool on)
{
    if (on == redraw_)
        return;
    redraw_ = on;
    if (!on)
        return;
    GridChange c = pending_;
    pending_ = {};
    c.what |= GridChange::RedrawOn;
    changed(c);
}

void GridModel::refresh()
{
    cellsChanged(0, rows_ - 1, 0, Cols() - 1);
}

// ---- shape ---------------------------------------------------------------

void GridModel::resizeColumn(Column& col, int c, int rows)
{
    const int old = int(col.styles.size());
    if (rows < old) {
        for (int r = rows; r < old; ++r)
            col.garbage += col.length(size_t(r));
        col.empty(size_t(rows), size_t(old));
    }
    col.resize(size_t(rows));
    col.styles.resize(size_t(rows), 0);
    for (int r = old; r < rows; ++r)
        col.styles[size_t(r)] = defaultIndexFor(r, c);
    if (rows == 0) {
        col.arena.clear();
        col.garbage = 0;
        col.clearCache();
    }
}

void GridModel::setRows(int n)
{
    n = std::max(0, n);
    if (n == rows_)
        return;
    for (int c = 0; c < Cols(); ++c)
        resizeColumn(cols_[size_t(c)], c, n);
    if (!heights_.empty())
        heights_.resize(size_t(n), std::uint16_t(defaultRowHeight));
    rows_ = n;
    holdCursor();
    flagChanged(GridChange::Shape);
}

void GridModel::setCols(int n)
{
    n = std::max(0, n);
    if (n == Cols())
        return;
    const int old = Cols();
    cols_.resize(size_t(n));
    for (int c = old; c < n; ++c)
        resizeColumn(cols_[size_t(c)], c, rows_);
    holdCursor();
    flagChanged(GridChange::Shape);
}

void GridModel::restyleFixed(int oldFixedRows, int oldFixedCols)
{
    // Cells that still wear the default of the side they were on take the
    // default of the side they are on now; a colour set on purpose stays.
    for (int c = 0; c < Cols(); ++c) {
        Column& col = cols_[size_t(c)];
        for (int r = 0; r < rows_; ++r) {
            const bool was = r < oldFixedRows || c < oldFixedCols;
            const bool is = isFixed(r, c);
            std::uint16_t& s = col.styles[size_t(r)];
            if (was != is && s == (was ? 1 : 0))
                s = is ? 1 : 0;
        }
    }
}

void GridModel::setFixedRows(int n)
{
    n = std::max(0, n);
    if (n == fixedRows_)
        return;
    const int old = fixedRows_;
    fixedRows_ = n;
    restyleFixed(old, fixedCols_);
    holdCursor();
    flagChanged(GridChange::Shape);
}

void GridModel::setFixedCols(int n)
{
    n = std::max(0, n);
    if (n == fixedCols_)
        return;
    const int old = fixedCols_;
    fixedCols_ = n;
    restyleFixed(fixedRows_, old);
    holdCursor();
    flagChanged(GridChange::Shape);
}

int GridModel::addRow()
{
    setRows(rows_ + 1);
    return rows_ - 1;
}

void GridModel::removeRow(int r)
{
    if (r < 0 || r >= rows_)
        return;
    for (Column& col : cols_) {
        col.garbage += col.length(size_t(r));
        for (size_t i = size_t(r); i + 1 < size_t(rows_); ++i) {
            if (col.isDeferred(i + 1))
                col.defer(i);
            else
                col.put(i, col.offset(i + 1), col.length(i + 1));
        }
        col.empty(size_t(rows_) - 1, size_t(rows_));
        col.resize(size_t(rows_) - 1);
        col.styles.erase(col.styles.begin() + r);
    }
    if (!heights_.empty())
        heights_.erase(heights_.begin() + r);
    --rows_;
    // A body row that moved up into the fixed rows takes the fixed look.
    if (r < fixedRows_ && rows_ >= fixedRows_) {
        const int moved = fixedRows_ - 1;
        for (int c = 0; c < Cols(); ++c) {
            std::uint16_t& s = cols_[size_t(c)].styles[size_t(moved)];
            if (s == 0)
                s = 1;
        }
    }
    holdCursor();
    flagChanged(GridChange::Shape);
}

void GridModel::clear()
{
    for (int c = 0; c < Cols(); ++c) {
        Column& col = cols_[size_t(c)];
        col.empty(0, size_t(rows_));
        for (int r = 0; r < rows_; ++r)
            col.styles[size_t(r)] = defaultIndexFor(r, c);
        col.arena.clear();
        col.arena.shrink_to_fit();
        col.garbage = 0;
        col.clearCache();
        col.width = -1;
        col.align = Align::General;
        col.live = {};
        col.made.clear();
    }
    heights_.clear();
    heights_.shrink_to_fit();
    source_ = nullptr;
    // Every cell is back on the two defaults: the palette starts over.
    palette_.resize(2);
    paletteIndex_.clear();
    forgetRecentStyles();
    paletteIndex_[styleKey(defaultStyle)] = 0;
    paletteIndex_[styleKey(defaultFixedStyle)] = 1;
    flagChanged(GridChange::Shape);
}

// ---- cursor --------------------------------------------------------------

void GridModel::holdCursor()
{
    const int lastRow = rows_ - 1, lastCol = Cols() - 1;
    row_ = clampTo(row_, 0, lastRow);
    rowSel_ = clampTo(rowSel_, 0, lastRow);
    col_ = clampTo(col_, 0, lastCol);
    colSel_ = clampTo(colSel_, 0, lastCol);
    topRow_ = clampTo(topRow_, fixedRows_, lastRow);
}

void GridModel::setRow(int r)
{
    r = clampTo(r, 0, rows_ - 1);
    if (r == row_ && rowSel_ == r)
        return;
    row_ = rowSel_ = r;
    colSel_ = col_;
    flagChanged(GridChange::Cursor);
}

void GridModel::setCol(int c)
{
    c = clampTo(c, 0, Cols() - 1);
    if (c == col_ && colSel_ == c)
        return;
    col_ = colSel_ = c;
    rowSel_ = row_;
    flagChanged(GridChange::Cursor);
}

void GridModel::setRowSel(int r)
{
    r = clampTo(r, 0, rows_ - 1);
    if (r == rowSel_)
        return;
    rowSel_ = r;
    flagChanged(GridChange::Cursor);
}

void GridModel::setColSel(int c)
{
    c = clampTo(c, 0, Cols() - 1);
    if (c == colSel_)
        return;
    colSel_ = c;
    flagChanged(GridChange::Cursor);
}

void GridModel::setTopRow(int r)
{
    r = clampTo(r, fixedRows_, rows_ - 1);
    if (r == topRow_)
        return;
    topRow_ = r;
    flagChanged(GridChange::Top);
}

void GridModel::setVisibleRows(int n)
{
    visibleRows_ = std::max(0, n);
}

int GridModel::lastVisibleRow() const
{
    int shown = 0;
    int last = topRow_ - 1;
    for (int r = topRow_; r < rows_ && shown < visibleRows_; ++r) {
        if (isRowHidden(r))
            continue;
        ++shown;
        last = r;
    }
    return last;
}

bool GridModel::RowIsVisible(int r) const
{
    if (r < 0 || r >= rows_ || isRowHidden(r))
        return false;
    if (r < fixedRows_)
        return true;
    return r >= topRow_ && r <= lastVisibleRow();
}

// ---- texts ---------------------------------------------------------------

void GridModel::Column::clearCache()
{
    std::fill(std::begin(cacheOffset), std::end(cacheOffset), 0);
    std::fill(std::begin(cacheLength), std::end(cacheLength), 0);
}

void GridModel::Column::put(std::size_t r, std::uint32_t off, std::uint16_t n)
{
    deferred[r >> 6] &= ~(std::uint64_t(1) << (r & 63));
    std::unique_ptr<TextPage>& p = pages[r >> pageShift];
    if (!p) {
        if (n == 0)
            return;
        p = std::make_unique<TextPage>();
    }
    p->offsets[r & (pageRows - 1)] = off;
    p->lengths[r & (pageRows - 1)] = n;
}

void GridModel::Column::defer(std::size_t r)
{
    deferred[r >> 6] |= std::uint64_t(1) << (r & 63);
    if (TextPage* p = pages[r >> pageShift].get()) {
        p->offsets[r & (pageRows - 1)] = 0;
        p->lengths[r & (pageRows - 1)] = 0;
    }
}

void GridModel::Column::empty(std::size_t from, std::size_t to)
{
    setBits(deferred, from, to, false);
    while (from < to) {
        const std::size_t page = from >> pageShift;
        const std::size_t pageEnd = std::min(to, (page + 1) << pageShift);
        if (from == page << pageShift && pageEnd == (page + 1) << pageShift) {
            pages[page].reset();   // the whole page
        } else if (TextPage* p = pages[page].get()) {
            for (std::size_t r = from; r < pageEnd; ++r) {
                p->offsets[r & (pageRows - 1)] = 0;
                p->lengths[r & (pageRows - 1)] = 0;
            }
        }
        from = pageEnd;
    }
}

void GridModel::Column::resize(std::size_t rows)
{
    // Rows beyond the new end were emptied (or never held anything): a
    // grown column's new rows are empty.
    pages.resize((rows + pageRows - 1) >> pageShift);
    deferred.resize((rows + 63) >> 6, 0);
}

std::string_view GridModel::textUtf8(int r, int c) const
{
    if (!inRange(r, c))
        return {};
    if (cols_[size_t(c)].isDeferred(size_t(r))) {
        if (isLiveColumn(c)) {
            // Made anew at every read, into the column's one scratch text.
            std::string& made = cols_[size_t(c)].made;
            made.clear();
            if (source_)
                appendUtf8(made, source_(r, c));
            return made;
        }
        makeDeferred(r, c);
    }
    const Column& col = cols_[size_t(c)];
    const std::uint16_t n = col.length(size_t(r));
    return n == 0 ? std::string_view() : std::string_view(col.arena.data() + col.offset(size_t(r)), n);
}

void GridModel::makeDeferred(int r, int c) const
{
    auto* self = const_cast<GridModel*>(this);
    Column& col = self->cols_[size_t(c)];
    if (!source_) {
        col.put(size_t(r), 0, 0);
        return;
    }
    const QString s = source_(r, c);
    const std::size_t before = col.arena.size();
    appendUtf8(col.arena, s);
    self->commitAppended(col, r, col.arena.size() - before);
}

void GridModel::setTextSource(TextSource source)
{
    source_ = std::move(source);
}

void GridModel::deferTexts(int r0, int r1, int c0, int c1)
{
    r0 = std::max(r0, 0);
    c0 = std::max(c0, 0);
    r1 = std::min(r1, rows_ - 1);
    c1 = std::min(c1, Cols() - 1);
    if (r0 > r1 || c0 > c1)
        return;
    for (int c = c0; c <= c1; ++c) {
        Column& col = cols_[size_t(c)];
        // Only the pages that hold texts are visited; those wholly in the
        // range are let go.
        for (size_t page = size_t(r0) >> pageShift; page <= size_t(r1) >> pageShift; ++page) {
            if (const TextPage* p = col.pages[page].get()) {
                const size_t from = std::max(size_t(r0), page << pageShift);
                const size_t to = std::min(size_t(r1) + 1, (page + 1) << pageShift);
                for (size_t r = from; r < to; ++r)
                    col.garbage += p->lengths[r & (pageRows - 1)];
            }
        }
        col.empty(size_t(r0), size_t(r1) + 1);
        setBits(col.deferred, size_t(r0), size_t(r1) + 1, true);
    }
    cellsChanged(r0, r1, c0, c1);
}

bool GridModel::isTextDeferred(int r, int c) const
{
    return inRange(r, c) && cols_[size_t(c)].isDeferred(size_t(r));
}

QString GridModel::peekText(int r, int c) const
{
    if (source_ && isTextDeferred(r, c))
        return source_(r, c);
    return text(r, c);
}

QString GridModel::text(int r, int c) const
{
    if (isLiveColumn(c) && isTextDeferred(r, c))
        return source_ ? source_(r, c) : QString();
    const std::string_view s = textUtf8(r, c);
    return s.empty() ? QString() : QString::fromUtf8(s.data(), qsizetype(s.size()));
}

void GridModel::commitAppended(Column& col, int r, std::size_t n)
{
    const std::size_t start = col.arena.size() - n;
    if (n > maxCellBytes) {
        n = maxCellBytes;
        while (n > 0 && (std::uint8_t(col.arena[start + n]) & 0xC0) == 0x80)
            --n;   // do not cut a character in two
        col.arena.resize(start + n);
    }
    col.garbage += col.length(size_t(r));
    if (n == 0) {
        col.put(size_t(r), 0, 0);
        return;
    }
    const char* bytes = col.arena.data() + start;
    const int slot = int(hashBytes(bytes, n) % Column::cacheSize);
    const std::uint32_t cOff = col.cacheOffset[slot];
    const std::uint16_t cLen = col.cacheLength[slot];
    if (cLen == n && std::memcmp(col.arena.data() + cOff, bytes, n) == 0) {
        col.arena.resize(start);   // the same text is there already
        col.put(size_t(r), cOff, cLen);
    } else {
        if (start + n > std::size_t(UINT32_MAX))
            throw std::length_error("grid column text exceeds 4 GB");
        col.put(size_t(r), std::uint32_t(start), std::uint16_t(n));
        col.cacheOffset[slot] = std::uint32_t(start);
        col.cacheLength[slot] = std::uint16_t(n);
    }
    if (col.garbage >= minGarbageToCompact && col.garbage * 2 >= col.arena.size())
        compactArena(col);
}

void GridModel::compactArena(Column& col)
{
    // Rewrites the live texts into a new arena, sharing equal neighbours
    // again. garbage counts a shared text once per cell that dropped it,
    // so it may overstate; the pass sets it right.
    std::string fresh;
    fresh.reserve(col.arena.size() - std::min(col.garbage, col.arena.size()) + 64);
    col.clearCache();
    for (const std::unique_ptr<TextPage>& page : col.pages) {
        if (!page)
            continue;
        for (std::size_t k = 0; k < pageRows; ++k) {
            const std::uint16_t n = page->lengths[k];
            if (n == 0)
                continue;
            const char* bytes = col.arena.data() + page->offsets[k];
            const int slot = int(hashBytes(bytes, n) % Column::cacheSize);
            if (col.cacheLength[slot] == n && std::memcmp(fresh.data() + col.cacheOffset[slot], bytes, n) == 0) {
                page->offsets[k] = col.cacheOffset[slot];
                continue;
            }
            const auto start = std::uint32_t(fresh.size());
            fresh.append(bytes, n);
            page->offsets[k] = start;
            col.cacheOffset[slot] = start;
            col.cacheLength[slot] = n;
        }
    }
    col.arena.swap(fresh);
    col.garbage = 0;
}

void GridModel::setText(int r, int c, QStringView s)
{
    if (!inRange(r, c))
        return;
    Column& col = cols_[size_t(c)];
    const std::size_t before = col.arena.size();
    appendUtf8(col.arena, s);
    commitAppended(col, r, col.arena.size() - before);
    cellsChanged(r, r, c, c);
}

void GridModel::setTextUtf8(int r, int c, std::string_view utf8)
{
    if (!inRange(r, c))
        return;
    Column& col = cols_[size_t(c)];
    col.arena.append(utf8.data(), utf8.size());
    commitAppended(col, r, utf8.size());
    cellsChanged(r, r, c, c);
}

// ---- rows and columns ----------------------------------------------------

int GridModel::RowHeight(int r) const
{
    if (r < 0 || r >= rows_)
        return 0;
    return heights_.empty() ? defaultRowHeight : heights_[size_t(r)];
}

void GridModel::setRowHeight(int r, int twips)
{
    if (r < 0 || r >= rows_)
        return;
    const auto h = std::uint16_t(std::clamp(twips, 0, 0xFFFF));
    if (heights_.empty()) {
        if (h == defaultRowHeight)
            return;
        heights_.assign(size_t(rows_), std::uint16_t(defaultRowHeight));
    }
    if (heights_[size_t(r)] == h)
        return;
    heights_[size_t(r)] = h;
    flagChanged(GridChange::Heights);
}

int GridModel::ColWidth(int c) const
{
    return c >= 0 && c < Cols() ? cols_[size_t(c)].width : -1;
}

void GridModel::setColWidth(int c, int twips)
{
    if (c < 0 || c >= Cols() || cols_[size_t(c)].width == twips)
        return;
    cols_[size_t(c)].width = twips;
    flagChanged(GridChange::Widths);
}

Align GridModel::ColAlignment(int c) const
{
    return c >= 0 && c < Cols() ? cols_[size_t(c)].align : Align::General;
}

void GridModel::setColAlignment(int c, Align a)
{
    if (c < 0 || c >= Cols() || cols_[size_t(c)].align == a)
        return;
    cols_[size_t(c)].align = a;
    flagChanged(GridChange::Widths);
}

std::size_t GridModel::memoryUsage() const
{
    std::size_t n = sizeof(*this);
    for (const Column& col : cols_) {
        n += sizeof(Column);
        n += col.pages.capacity() * sizeof(col.pages[0]);
        for (const std::unique_ptr<TextPage>& page : col.pages)
            n += page ? sizeof(TextPage) : 0;
        n += col.deferred.capacity() * sizeof(std::uint64_t);
        n += col.styles.capacity() * sizeof(std::uint16_t);
        n += col.arena.capacity();
    }
    n += heights_.capacity() * sizeof(std::uint16_t);
    n += palette_.capacity() * sizeof(CellStyle);
    // A node per palette entry and the bucket array.
    n += paletteIndex_.size() * (sizeof(std::uint64_t) + sizeof(std::uint16_t) + 2 * sizeof(void*))
        + paletteIndex_.bucket_count() * sizeof(void*);
    return n;
}

// ---- the wheel -----------------------------------------------------------

int wheelTopRow(int rows, int fixedRows, int topRow, int pageRows, int rotation)
{
    // Every body row fits on one page: nothing to scroll.
    if (pageRows <= 0 || pageRows >= rows - fixedRows)
        return topRow;
    const int top = rotation < 1 ? topRow + pageRows : topRow - pageRows;
    return clampTo(top, fixedRows, rows - 1);
}

void wheelScroll(GridModel& g, int rotation)
{
    g.setTopRow(wheelTopRow(g.Rows(), g.FixedRows(), g.TopRow(), g.visibleRows(), rotation));
}

} // namespace pelkor::grid
