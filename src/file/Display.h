// Display: how the main grid shows the lines of a load.
//
// Grid row i+1 holds lines[i]. This file fixes the columns and their
// captions, the colours of every cell, the running balance and the credit
// test, the cursor's cell colours and its "o" mark, the place of the red
// line under the last line that agrees with the bank, and the totals
// under the grid. It writes only to a grid::GridModel and to the balance
// and alternation fields of the open ledger's lines; the view paints the model.
//
// The running balance is the open ledger's balances (file/RunningBalances):
// one double per line that the balance cell's text, its colour and the
// credit test all read, added up in display order as a load adds them, so
// a balance after any number of edits is what a fresh load shows.
//
// Not here: reading the lines (file/Loader), what the cursor's move does
// to the ledger besides the cells (editing), and the widgets.
#pragma once

#include "file/Lines.h"
#include "file/RunningBalances.h"
#include "base/Format.h"

#include <QSet>
#include <QString>

#include <cstdint>

namespace pelkor {

struct Instance;
struct OpenLedger;
namespace grid { class GridModel; }

// ---- columns of the main grid -------------------------------------------
// Column 0 is fixed (the "o" of the current row); row 0 is the header.
inline constexpr int colMark = 1;      // "v" on a confirmed row
inline constexpr int colKind = 2;
inline constexpr int colDate = 3;
inline constexpr int colConfirm = 4;
inline constexpr int colDetail = 5;
inline constexpr int colIn = 6;
inline constexpr int colOut = 7;
inline constexpr int colType = 8;
inline constexpr int colBalance = 9;   // not in progMode 3 and 4

// ---- colours (lowest byte red) --------------------------------------------
namespace colors {
inline constexpr std::uint32_t header = rgb(128, 128, 192);
inline constexpr std::uint32_t headerText = rgb(255, 255, 255);
inline constexpr std::uint32_t rowBack[2] = {rgb(255, 255, 255), rgb(227, 227, 255)};
inline constexpr std::uint32_t balanceBack[2] = {rgb(255, 255, 153), rgb(255, 255, 79)};
inline constexpr std::uint32_t converted = rgb(255, 128, 255);
inline constexpr std::uint32_t markCell = rgb(244, 208, 230);
// A line paired with the bank, and the lines of the pair under the cursor.
inline constexpr std::uint32_t confirmed = rgb(220, 255, 220);
inline constexpr std::uint32_t confirmedLit = rgb(110, 255, 110);
// The balancing line's row, and the kind cell of a line with relate 99 or -1.
inline constexpr std::uint32_t balancingLine = rgb(255, 255, 153);
inline constexpr std::uint32_t relateKind = rgb(255, 255, 153);
inline constexpr std::uint32_t forecastSum = rgb(0, 128, 255);
inline constexpr std::uint32_t overCredit = rgb(255, 0, 0);
inline constexpr std::uint32_t text = rgb(0, 0, 0);
inline constexpr std::uint32_t currentBack = rgb(1, 0, 0);
inline constexpr std::uint32_t currentText = rgb(255, 255, 255);
} // namespace colors

// The line ids marked in the grid (paintedIDs); null: none are set.
using PaintedIDs = QSet<QString>;

// Whether the grid has the balance column: not in progMode 3 and 4.
bool hasBalanceColumn(const Instance& inst);
// 10 columns, or 9 without the balance.
int mainGridCols(const Instance& inst);

// Writes the header row: the captions, the balance caption only where the
// grid has that column, and the header colours on every header cell from
// the first non-fixed column on. The sum columns align left.
void initMainGrid(const Instance& inst, grid::GridModel& g);

// Line i is converted: its file's conv (or, merged, the conv of its bank
// file) is not 0.
bool isLineConverted(const OpenLedger& led, const Instance& inst, int i);
// Pink for a converted line; white in progMode 0; else by
// alternatingIndexes[i].
std::uint32_t getRowBackColor(const OpenLedger& led, const Instance& inst, int i);

// Draws a load into g: shape (a header row, a fixed column, a row per
// line), header, and every cell. Sets lines[i].isPainted and
// alternatingIndexes; every balance is worked out anew when read.
// balancingLineID is the id of progMode 4's balancing line, -1 for none;
// painted the marked ids, null for none.
// Redraw is off while it runs and comes back as the caller had it.
// Returns how many lines are converted.
int drawLoad(OpenLedger& led, const Instance& inst, grid::GridModel& g, long long balancingLineID = -1, const PaintedIDs* painted = nullptr);

// After the sums of the line of grid row startRow changed (or the lines
// from it on): the balances from that row on are worked out again from
// the balance above it when next read. The balance column is live
// (drawLoad made it so): its cells show balances[] and the credit test's
// look whenever they are read, so nothing is written into them and the
// texts of rows that do not show are never made; a text written into one
// of them is dropped. Nothing in progMode 3 and 4. Redraw is turned on at
// the end unless keepRedrawOff; the model tells its listeners of one
// change.
void CalcBalances(OpenLedger& led, const Instance& inst, grid::GridModel& g, int startRow, bool keepRedrawOff = false);
// The same after an edit of the sums of the line of grid row row, where no
// text was written into a balance cell: no cell is visited, so the cost is
// the same at any size.
void sumsChanged(OpenLedger& led, const Instance& inst, grid::GridModel& g, int row);

// ---- totals under the grid ------------------------------------------------
struct Totals {
    QString lblTotalIncome;
    QString lblTotalExpense;
};
// The sums of all In and all out of the lines (the load shows them in
// progMode 3).
Totals calcTotals(const OpenLedger& led);

struct SummaryLabels {
    QString lblMainTotalIn;
    QString lblMainTotalOut;
    QString lblMainLinesSelected;
};
// The sums of the colIn and colOut cells of the marked lines and their
// count; all empty when none is marked or painted is null.
SummaryLabels refreshMainSummaryLabels(const OpenLedger& led, const grid::GridModel& g, const PaintedIDs* painted);

// Row i+1's cells from colMark through colType take their look anew from
// the line (its row's background, marked or confirmed, related kind, colour
// word), as after a change of the line's reconciliation look.
void restyleLineRow(const OpenLedger& led, const Instance& inst, grid::GridModel& g, int i, long long balancingLineID = -1);

// ---- the cursor -------------------------------------------------------------
// What the grid shows of the cursor, between two moves. A load resets it.
struct CursorMarks {
    int lastRow = -99;   // the row that holds the "o"
    int litRow = -99;    // the cell in the current-cell colours
    int litCol = -99;
};
// After the cursor moved (g.Row(), g.Col()): the "o" moves to the new row;
// the cell that had the current-cell colours gets its own colours back,
// and the current cell takes them, except in colMark, colBalance and the
// fixed column, which never show them.
void updateCursorCells(const OpenLedger& led, const Instance& inst, grid::GridModel& g, CursorMarks& marks, long long balancingLineID = -1);

// Gives cell (row, col) of line row-1 the colours the rules give it (the
// row's colour, the mark's colour, forecast sums, the credit test), as a
// load drew it; nothing outside the lines' rows and editable columns.
void restoreCellStyle(const OpenLedger& led, const Instance& inst, grid::GridModel& g, int row, int col,
                      long long balancingLineID = -1);

// ---- the red line ------------------------------------------------------------
struct RedLinePlace {
    bool visible = false;
    int underVisibleRow = -1;   // 0 is the first body row shown
};
// Where the red line lies: under row iRowAboveRed when that row shows
// between topRow and the visibleRows rows from it; never in progMode 3 and
// 4 or in a merged file.
RedLinePlace maybeDrawLine(int iRowAboveRed, int topRow, int visibleRows, int progMode, bool isMerged);
// The same on the open ledger's state and the grid's top row and page, counting
// hidden rows out.
RedLinePlace maybeDrawLine(const OpenLedger& led, const Instance& inst, const grid::GridModel& g);
// The grid row a view draws the red line under, wherever it scrolls
// (hiding it while that row is out of view); -1 where there is none.
int redLineRow(const OpenLedger& led, const Instance& inst);

} // namespace pelkor
