// MoveJournal: a move of lines between two files that no crash can split.
//
// A move writes lines into the target and deletes them from the source;
// no single transaction spans two files. So it runs in three, each whole:
//
//   1. the source: an intent note (moveJournal) naming the run's token,
//      the target and the ids of the lines to delete;
//   2. the target: the lines, and a row of movedLines with the token, so
//      the target itself says that the run's insert took place;
//   3. the source: the listed lines deleted, and the note cleared.
//
// A process killed between them leaves a note behind. Whoever next opens
// the source (finishPendingMoves) looks the token up in the target: found,
// the insert stands and the delete is done now; not found, the insert
// never happened and the note is dropped, leaving the lines where they
// were. Either way each line is in exactly one of the two files. A note
// whose process still runs (its pid lives) is left to it; a note whose
// target cannot be opened is kept for a later open.
//
// A copy needs none of this: its one transaction is in the target.
#pragma once

#include "seams/store/Connection.h"

#include <QString>
#include <QStringList>

namespace pelkor::transfer {

// A fresh token for one run: the process, the time and a random part.
QString newMoveToken();

// Whether the process that wrote a note still runs (never this one's
// own: a run finishes its notes itself).
bool writerLives(qint64 pid);

// Step 1: the note, in one transaction on the source.
void writeMoveIntent(store::Connection& source, const QString& token, const QString& destPath,
                     const QStringList& idsToDelete);
// Step 2's marker, inside the caller's transaction on the target.
void markMoveInTarget(store::Connection& target, const QString& token);
// Step 3: the listed lines deleted and the note cleared, in one
// transaction on the source.
void completeMove(store::Connection& source, const QString& linesTable, const QString& token);

// What finishPendingMoves did.
struct PendingMoves {
    int finished = 0;     // runs whose delete was done now
    int undone = 0;       // runs whose insert never happened
    int left = 0;         // runs left for later (target unreadable, process alive)
    QStringList problems; // the targets that could not be read
};
// Finishes or undoes the moves a killed process left in the source.
PendingMoves finishPendingMoves(store::Connection& source, const QString& linesTable);

} // namespace pelkor::transfer
