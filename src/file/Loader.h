// Loader: openDB, the one road from a data file to the screen.
//
// It reads the kinds, the types, the settings and the lines of frmMain's
// connection into frmMain's arrays, and repairs the file on the way: lines
// without a valid kind are announced and deleted, empty references become
// one blank, the "newline" prefix of memo goes (and the cursor lands on
// that line), a missing ipus line is made with the user's help, the ipus
// marker moves to the last line of its date, and lines without a valid
// date or sum are handed to a new-line child. Each repair is one statement
// or one transaction: a crash in the middle of a load leaves a file that
// the next load reads and repairs again.
//
// Not here: how the grid draws the lines (the display model) and what the
// window does around a load (frmMain).
#pragma once

#include <QString>

namespace pelkor {

class frmMain;

enum class LoadResult {
    Loaded,      // lines and the ipus state are filled
    HandedOver,  // bad lines went to a new-line child; the load goes on when it answers
    NoLines,     // nothing to show; handleZeroLines ran
    Ended,       // the user gave no ipus date; the instance is ending
};

LoadResult openDB(frmMain& m, bool reasonIsRefresh);

// The statement that reads the lines of this load, by mode.
QString linesStatement(const frmMain& m);
// The bad-line test: lines with a valid kind but no valid date or sum.
QString badLinesStatement(const QString& table);
// The line order, with the table's name before the last id.
QString orderBy(const QString& table);

} // namespace pelkor
