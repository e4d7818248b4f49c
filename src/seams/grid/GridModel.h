// GridModel: the grid as the logic drives it.
//
// A plain model of a table control with fixed rows and columns: the shape
// (Rows, Cols, FixedRows, FixedCols), the cursor and its selection (Row,
// Col, RowSel, ColSel), the first row shown (TopRow), and per cell a text,
// a back colour, a fore colour and bold; per row a height (0 hides the
// row), per column a width and an alignment. The logic writes here and
// reads back what it wrote; a view paints it and tells how many rows it
// shows (visibleRows). Nothing here draws or knows a widget.
//
// Storage is by column and compact, so that a ledger of a million lines
// stays cheap to hold: each column keeps its texts as UTF-8 in one byte
// arena (a cell is an offset and a length; equal texts written close to
// each other share their bytes), and a 16-bit index per cell into a
// palette of (back, fore, bold) combinations. No cell owns a heap object.
// The offsets and lengths are kept by pages of rows, a page made when a
// cell of it first holds a text: the many cells that hold none (empty, or
// deferred, below) cost a bit each.
//
// A text may also be deferred: the cell is marked, and its text is made by
// the grid's text source the first time anybody reads it (a view paints
// it, the logic reads it back). A ledger of many lines then pays for the
// texts of the rows that show, not for all of them at load. The source
// answers from what the row holds now; writing a cell ends its deferral.
//
// Listeners hear of every change. While redraw is off the changes gather
// into one notification that goes out when redraw is turned on again.
//
// Colours are numbers whose lowest byte is red (0xBBGGRR), as rgb() of
// base/Format.h makes them.
#pragma once

#include <QString>
#include <QStringView>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace pelkor::grid {

// What a cell looks like besides its text.
struct CellStyle {
    std::uint32_t back = 0xFFFFFF;
    std::uint32_t fore = 0x000000;
    bool bold = false;
    friend bool operator==(const CellStyle&, const CellStyle&) = default;
};

enum class Align : std::uint8_t { General, Left, Center, Right };

// One notification: what changed since the last one. With Shape set the
// listener reads everything anew and the rest may be left out.
struct GridChange {
    enum What : unsigned {
        Cells = 1,      // texts or styles in [row0, row1] x [col0, col1]
        Shape = 2,      // Rows, Cols, FixedRows or FixedCols, or a clear
        Heights = 4,    // some row heights
        Widths = 8,     // some column widths or alignments
        Cursor = 16,    // Row, Col, RowSel or ColSel
        Top = 32,       // TopRow
        RedrawOn = 64,  // redraw was turned back on (this is the batch)
    };
    unsigned what = 0;
    int row0 = 0, row1 = -1, col0 = 0, col1 = -1;

    bool has(What w) const { return (what & w) != 0; }
    // Adds the cells [r0, r1] x [c0, c1] to the changed rectangle.
    void addCells(int r0, int r1, int c0, int c1);
    void merge(const GridChange& o);
};

class GridModel;

class GridListener {
public:
    virtual ~GridListener() = default;
    virtual void gridChanged(const GridModel& g, const GridChange& change) = 0;
};

class GridModel {
public:
    // The style of a cell of the body when nothing was set, and of a fixed
    // cell (the old control's grey button face).
    static constexpr CellStyle defaultStyle{0xFFFFFF, 0x000000, false};
    static constexpr CellStyle defaultFixedStyle{0xF0F0F0, 0x000000, false};
    // Row heights are in twips, as the logic has always written them: a
    // new row is 270 high (18 pixels at the desktop's 15 twips a pixel).
    static constexpr int defaultRowHeight = 270;

    GridModel(int rows = 2, int cols = 2, int fixedRows = 1, int fixedCols = 1);
    GridModel(const GridModel&) = delete;
    GridModel& operator=(const GridModel&) = delete;

    void addListener(GridListener* l);
    void removeListener(GridListener* l);

    // ---- shape ---------------------------------------------------------
    // Growing adds empty cells (fixed cells get defaultFixedStyle), rows of
    // the default height; shrinking drops the last rows or columns. The
    // cursor and TopRow are held within the new shape.
    int Rows() const { return rows_; }
    void setRows(int n);
    int Cols() const { return int(cols_.size()); }
    void setCols(int n);
    int FixedRows() const { return fixedRows_; }
    void setFixedRows(int n);
    int FixedCols() const { return fixedCols_; }
    void setFixedCols(int n);
    // Appends one row (Rows grows by one); returns its number.
    int addRow();
    // Removes row r; the rows below move up one.
    void removeRow(int r);
    // Every cell empty and of the default style, heights and widths back
    // to their defaults; the shape stays.
    void clear();

    // ---- cursor ----------------------------------------------------------
    // Setting Row or Col collapses the selection onto the cursor, as the
    // old control did; RowSel and ColSel then stretch it. Values are held
    // within the grid.
    int Row() const { return row_; }
    void setRow(int r);
    int Col() const { return col_; }
    void setCol(int c);
    int RowSel() const { return rowSel_; }
    void setRowSel(int r);
    int ColSel() const { return colSel_; }
    void setColSel(int c);
    // The first body row shown; held within FixedRows and Rows-1, so the
    // last row can be the top one.
    int TopRow() const { return topRow_; }
    void setTopRow(int r);

    // How many body rows the view shows, whole ones; set by the view.
    int visibleRows() const { return visibleRows_; }
    void setVisibleRows(int n);
    // The last row that shows, counting from TopRow over rows that are not
    // hidden.
    int lastVisibleRow() const;
    bool RowIsVisible(int r) const;

    // ---- cells -----------------------------------------------------------
    QString text(int r, int c) const;
    // The text a cell shows, made by the source without being kept when the
    // cell is deferred: for a reader that walks a whole column once (a
    // search) and must not make every text of it.
    QString peekText(int r, int c) const;
    // The UTF-8 bytes of a cell, without a copy. Valid until the column
    // next changes or makes another of its deferred texts.
    std::string_view textUtf8(int r, int c) const;
    void setText(int r, int c, QStringView s);
    void setText(int r, int c, const QString& s) { setText(r, c, QStringView(s)); }
    void setText(int r, int c, const char* latin1) = delete; // say which: QStringLiteral or setTextUtf8
    void setTextUtf8(int r, int c, std::string_view utf8);

    // The texts of deferred cells: source(r, c) when first read.
    using TextSource = std::function<QString(int r, int c)>;
    void setTextSource(TextSource source);
    // Defers the texts of [r0, r1] x [c0, c1] to the source; what the
    // cells held is dropped.
    void deferTexts(int r0, int r1, int c0, int c1);
    bool isTextDeferred(int r, int c) const;

    CellStyle style(int r, int c) const;
    void setStyle(int r, int c, const CellStyle& s);
    // The same style on the cells [c0, c1] of row r.
    void setStyle(int r, int c0, int c1, const CellStyle& s);
    // ---- live columns ----------------------------------------------------
    // A live column shows values that move together and often (a running
    // balance, where one edit moves every row below it). Its deferred
    // texts are made by the source at every read and never kept, and the
    // fore colour and bold of its body cells follow a test of the row,
    // asked at every read; the back colour is the one written. Moving
    // every value of such a column then costs the model nothing but a
    // notification (refresh). A text written into a live cell is kept as
    // in any column, until the cell is deferred again.
    struct LiveLook {
        std::function<bool(int r)> test;
        std::uint32_t onFore = 0;
        bool onBold = false;
        std::uint32_t offFore = 0;
        bool offBold = false;
    };
    // Makes column c live with that look; a look without a test makes it
    // an ordinary column again. clear() ends every live column.
    void setLiveColumn(int c, LiveLook look);
    bool isLiveColumn(int c) const { return c >= 0 && c < Cols() && bool(cols_[size_t(c)].live.test); }

    std::uint32_t backColor(int r, int c) const { return style(r, c).back; }
    std::uint32_t foreColor(int r, int c) const { return style(r, c).fore; }
    bool bold(int r, int c) const { return style(r, c).bold; }
    void setBackColor(int r, int c, std::uint32_t color);
    void setForeColor(int r, int c, std::uint32_t color);
    void setBold(int r, int c, bool b);

    // ---- rows and columns ------------------------------------------------
    int RowHeight(int r) const;
    void setRowHeight(int r, int twips);
    bool isRowHidden(int r) const { return RowHeight(r) == 0; }
    // -1: the view decides.
    int ColWidth(int c) const;
    void setColWidth(int c, int twips);
    Align ColAlignment(int c) const;
    void setColAlignment(int c, Align a);

    // ---- redraw ----------------------------------------------------------
    bool Redraw() const { return redraw_; }
    // Off: changes gather. On (from off): one notification with all of
    // them and RedrawOn.
    void setRedraw(bool on);
    // Tells the listeners that every cell may have changed.
    void refresh();

    // Bytes held, counted by capacity: what the grid costs in memory.
    std::size_t memoryUsage() const;
    // How many distinct styles the palette holds.
    int paletteSize() const { return int(palette_.size()); }

private:
    // Where the texts of pageRows consecutive rows of a column lie in its arena.
    static constexpr int pageShift = 8;
    static constexpr std::size_t pageRows = std::size_t(1) << pageShift;
    struct TextPage {
        std::uint32_t offsets[pageRows] = {};
        std::uint16_t lengths[pageRows] = {};
    };
    struct Column {
        // Per page of rows: null while no cell of the page holds a text.
        std::vector<std::unique_ptr<TextPage>> pages;
        std::vector<std::uint64_t> deferred;  // per row a bit: the text is the source's
        std::vector<std::uint16_t> styles;    // per row: palette index
        std::string arena;                    // UTF-8 of the texts
        std::size_t garbage = 0;              // bytes no cell uses any more (at most)
        // Recently written texts by hash, so equal texts share their bytes.
        static constexpr int cacheSize = 64;
        std::uint32_t cacheOffset[cacheSize] = {};
        std::uint16_t cacheLength[cacheSize] = {};
        Align align = Align::General;
        int width = -1;
        LiveLook live;                        // a test: the column is live
        mutable std::string made;             // a live column's last made text (a read makes it)
        void clearCache();

        bool isDeferred(std::size_t r) const { return (deferred[r >> 6] >> (r & 63)) & 1; }
        // Bytes of the cell's text in the arena; 0 for an empty or deferred cell.
        std::uint16_t length(std::size_t r) const
        {
            const TextPage* p = pages[r >> pageShift].get();
            return p ? p->lengths[r & (pageRows - 1)] : 0;
        }
        std::uint32_t offset(std::size_t r) const
        {
            const TextPage* p = pages[r >> pageShift].get();
            return p ? p->offsets[r & (pageRows - 1)] : 0;
        }
        // The cell holds the n bytes at off (n may be 0); it is deferred no more.
        void put(std::size_t r, std::uint32_t off, std::uint16_t n);
        // The cell's text is the source's from now on.
        void defer(std::size_t r);
        // Rows [from, to) hold nothing: no text, not deferred.
        void empty(std::size_t from, std::size_t to);
        void resize(std::size_t rows);
    };

    bool inRange(int r, int c) const { return r >= 0 && r < rows_ && c >= 0 && c < int(cols_.size()); }
    bool isFixed(int r, int c) const { return r < fixedRows_ || c < fixedCols_; }
    std::uint16_t defaultIndexFor(int r, int c) const { return isFixed(r, c) ? 1 : 0; }
    std::uint16_t intern(const CellStyle& s);
    // A style as one number: the palette's lookup key.
    static std::uint64_t styleKey(const CellStyle& s);
    void forgetRecentStyles();
    void compactPalette();
    // Stores the bytes [arena.size() - n, arena.size()) that the caller
    // just appended as the text of cell (r, col).
    void commitAppended(Column& col, int r, std::size_t n);
    void compactArena(Column& col);
    // Makes the deferred text of a cell from the source; a const read may
    // call it, since the text the cell shows does not change.
    void makeDeferred(int r, int c) const;
    void resizeColumn(Column& col, int c, int rows);
    void restyleFixed(int oldFixedRows, int oldFixedCols);
    void holdCursor();
    void changed(const GridChange& c);
    void cellsChanged(int r0, int r1, int c0, int c1);
    void flagChanged(GridChange::What w);

    int rows_ = 0;
    int fixedRows_ = 0;
    int fixedCols_ = 0;
    std::vector<Column> cols_;
    std::vector<std::uint16_t> heights_;   // empty until a row differs from the default
    std::vector<CellStyle> palette_;
    std::unordered_map<std::uint64_t, std::uint16_t> paletteIndex_;
    static constexpr int recentStyles = 16;
    std::uint64_t recentKeys_[recentStyles];   // no key has all bits set: an empty slot
    std::uint16_t recentIndexes_[recentStyles] = {};
    int row_ = 0, col_ = 0, rowSel_ = 0, colSel_ = 0, topRow_ = 0;
    int visibleRows_ = 20;
    bool redraw_ = true;
    GridChange pending_;
    std::vector<GridListener*> listeners_;
    TextSource source_;
};

// The new TopRow after one notch of the wheel over a grid: a page of
// pageRows rows down for a rotation below 1, else up; held between
// fixedRows and rows-1. A grid whose rows fit on one page does not move.
int wheelTopRow(int rows, int fixedRows, int topRow, int pageRows, int rotation);
// The same on a grid, paging by its visibleRows; sets TopRow.
void wheelScroll(GridModel& g, int rotation);

} // namespace pelkor::grid
