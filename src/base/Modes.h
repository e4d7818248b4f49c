// Modes: what an instance of the program is, and the fixed tables it fills
// at start.
#pragma once

#include <QString>
#include <QStringList>

namespace pelkor {

enum ProgMode {
    modeSplitScreen = 0,       // reconciliation: main grid beside the bank grid
    modeFullScreen = 1,        // the full main grid: the working run
    modeOpenedFile = 2,        // started empty; the file came from the open dialog
    modeDetail = 3,            // child: part of a file, no balance column
    modeNewLines = 4,          // child: lines edited in a dialog
    modeMergedReport = 5,      // child: a merged file
    modeDailySummarySplit = 6, // main grid beside the daily summary
    modeCompare = 7,           // while two files are compared
};

enum NewLineDialogType {
    lineDialogNone = -1,                 // not a new-line child
    lineDialogMultiplePelkorOneBank = 0, // balancing and new lines of one match
    lineDialogUnconfirmedBank = 1,       // bank rows that had no partner
    lineDialogUnconfirmedPelkor = 2,     // lines that did not reach the bank
    lineDialogBadLines = 3,              // valid kind, no valid date or sum
};

// What a detail child shows: one day's income, expenses or all lines
// (with the conversion of its parent), or a period's lines of one kind or
// one type.
enum DetailKind {
    detailNone = -1,
    detailIncome = 0,
    detailExpense = 1,
    detailDay = 2,
    detailOfKind = 3,
    detailOfType = 4,
};

// The twelve banks, by place (iBank in memory, counted from 0): the
// internal names that name their feed tables, and the names users read.
const QStringList& bankNames();
const QStringList& bankDisplayNames();

} // namespace pelkor
