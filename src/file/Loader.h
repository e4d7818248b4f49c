// Loader: openDB, the one road from a data file to the screen.
//
// It reads the kinds, the types, the settings and the lines of the open
// ledger's connection into the open ledger, and repairs the file on the
// way: lines without a valid kind are announced and deleted, empty
// references become one blank, the "newline" prefix of memo goes (and the
// cursor lands on that line), a missing zeroing mark is made with the
// user's help, the mark moves to the last line of its date, and lines
// without a valid date or sum are handed to a new-line child. Each repair
// is one statement or one transaction: a crash in the middle of a load
// leaves a file that the next load reads and repairs again.
//
// Not here: how the grid draws the lines (file/Display) and what the
// window does around a load (frmMain, reached through WindowCalls).
#pragma once

#include <QString>

namespace pelkor {

namespace ui { class Ui; }
class Trace;
class WindowCalls;
struct Instance;
struct MainGrid;
struct OpenLedger;
struct Shown;

enum class LoadResult {
    Loaded,      // lines and the zeroing state are filled, the grid drawn
    HandedOver,  // bad lines went to a new-line child; the load goes on when it answers
    NoLines,     // nothing to show; handleZeroLines ran
    Ended,       // the user gave no zeroing date; the instance is ending
};

// The parts a load works on.
struct LoadParts {
    OpenLedger& ledger;
    Instance& instance;    // a new-line child's type may turn to bad lines
    MainGrid& grid;
    Shown& shown;
    ui::Ui& ui;
    WindowCalls& window;
};

LoadResult openDB(LoadParts& p, bool reasonIsRefresh);

// The file's kinds (in kind order) and types (by group and name) into the
// ledger's catalogue; readTypeList is false when the file has no type.
void readCategories(OpenLedger& ledger);
bool readTypeList(OpenLedger& ledger);

// The statement that reads the lines of this load, by mode.
QString linesStatement(const OpenLedger& ledger, const Instance& instance);
// The bad-line test: lines with a valid kind but no valid date or sum.
QString badLinesStatement(const QString& table);
// The line order, with the table's name before the last id.
QString orderBy(const QString& table);

} // namespace pelkor
