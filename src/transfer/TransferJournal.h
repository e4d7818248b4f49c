// TransferJournal: the two lines of a transfer between accounts, written
// so that no failure and no crash leaves one without the other.
//
// The lines go into two files, and no transaction spans two files. So the
// pair is written in three transactions, each whole:
//
//   1. the first file: its line, and a note (transferJournal) naming the
//      run's token, the second file, the process and the line's id;
//   2. the second file: its line, and the token's row in movedLines (the
//      same marker a move leaves), so the second file itself says that the
//      run's insert took place;
//   3. the first file: the note cleared.
//
// When the second file refuses (busy past the wait, read-only, gone), the
// first line and its note are deleted at once, in one transaction. A
// process killed between the steps leaves a note behind; whoever next
// opens the first file (finishPendingTransfers) looks the token up in the
// second: found, both lines stand and the note goes; not found, the first
// line is deleted with its note. The second file is never in doubt: its
// line is written, marker and all, after the first one is safe. A note
// whose process still runs is left to it; a note whose second file cannot
// be read is kept for a later open.
#pragma once

#include "seams/store/Connection.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace pelkor::transfer {

// How writeTransferPair ended.
struct PairWrite {
    bool done = false;
    // Which file refused: 0 the first, 1 the second, -1 none. When the
    // second refused, the first file's line was taken out again (or, if
    // even that failed, is left to the next open of the first file).
    int refused = -1;
    bool firstUndone = false;   // the first line was taken out at once
    QString why;                // the engine's words, for the trace
};

// Writes the pair: insertFirst on first, then insertSecond on the
// connection openSecond gives (opened only once the first line is safe, so
// a second file that vanished meanwhile is found). secondPath is what the
// note names. Each insert is one statement of the dialect on the table
// "pelkor". Throws nothing: a refusal is in the result.
PairWrite writeTransferPair(store::Connection& first, const QString& insertFirst,
                            const std::function<void(store::Connection&)>& openSecond, const QString& secondPath,
                            const QString& insertSecond);

// What finishPendingTransfers did.
struct PendingTransfers {
    int kept = 0;         // pairs found whole: the note went
    int undone = 0;       // pairs whose second line never came: the first went
    int left = 0;         // pairs left for later (second unreadable, process alive)
    QStringList problems; // the second files that could not be read
};
// Settles the pairs a killed process left in this (first) file.
PendingTransfers finishPendingTransfers(store::Connection& cn, const QString& linesTable);

} // namespace pelkor::transfer
