// Writing one whole line: the insert that the grid's new line, the add-line
// dialog and every other road that brings a line into a file share.
//
// The line is written with its memo prefixed "newline ", so the next load
// of any window on the file lands on it (and cuts the prefix). The key the
// store gave the row is read back on the same connection: another process
// writing the same file at the same moment cannot make the record address
// someone else's row.
#pragma once

#include <QString>

namespace pelkor {

struct Catalogue;
struct Instance;
struct Line;
struct OpenLedger;

// A non-zero sum put on one side of a line that is not yet written (a
// dialog's record): the other side becomes 0, the kind takes the side's
// sign ("+0"/"-0" when empty) and a type of the other side gives way to
// the side's default type.
void turnToSide(Line& L, bool isIncome, const Catalogue& catalogue);

// A sum as a statement writes it: plain digits, no thousands separators.
QString sqlSum(double v);

// The insert of line L into table, TypeNum typeNum. confirm and detail go
// as one blank when empty; an empty Memo as "ללא צבע".
QString newLineInsert(const QString& table, const Line& L, int typeNum);

// Writes L (TypeNum typeNum) into ledger.linesTable and moves the zeroing
// mark, in one transaction; then L.Id is the written row's key. A failure
// leaves the file and the zeroing state as they were.
void writeLine(OpenLedger& ledger, const Instance& instance, Line& L, int typeNum, const QString& proc);

// addOneLine: writes L (its Type looked up in the ledger's catalogue) into
// ledger.linesTable at once, then moves the zeroing mark. L.Id becomes the
// written row's key. The grid is not touched: the caller reloads.
void addOneLine(OpenLedger& ledger, const Instance& instance, Line& L);

} // namespace pelkor
