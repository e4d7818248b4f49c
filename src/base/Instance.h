// Instance: what this run of the program is, fixed by its command line.
//
// The mode, the new-line child's type, a detail child's selection, whether
// the file is a merged one, the mailbox ids of the parent and of the outer
// host, and the folders this run writes to. It is filled once at start-up
// (frmMain's initializeForm) and only read afterwards; every room reads the
// mode from here, never from the window.
//
// Not here: anything about the open file (file/OpenLedger) or what the
// window shows (base/Shown).
#pragma once

#include "base/CommandLine.h"
#include "base/Modes.h"

#include <QDate>
#include <QString>
#include <cstdint>

namespace pelkor {

// A detail child's selection: which lines of its parent's file it shows.
struct DetailSelection {
    DetailKind kind = detailNone;
    QDate fromDate, toDate;       // one day for kinds 0..2
    double conv = 0;              // kinds 0..2: the parent's conversion (0 none, <0 divide)
    QString kindText;             // detailOfKind: the kind
    int typeIndex = -1;           // detailOfType: the type number
};

struct Instance {
    QString theCommand;           // the arguments joined by blanks
    StartCommand command;         // theCommand read
    ProgMode progMode = modeOpenedFile;
    NewLineDialogType newLineDialogType = lineDialogNone;
    bool isMerged = false;        // the file is a merged file of several banks
    bool isFromKelvanto = false;  // started by the outer host (its boxes are known)
    DetailSelection detail;

    std::uint32_t txtMessageId = 0;          // this window's own txtMessage
    std::uint32_t parentTxtMessage = 0;      // a detail or merged child's parent
    std::uint32_t parentMessagesWindow = 0;  // a new-line child's parent frmMessages
    std::uint32_t hostTextBox1 = 0, hostTextBox2 = 0;

    QString tempPath;             // with a trailing "/"
    QString logDirectory;
    bool simulateVisible = false; // chkSimulate shows when core67890 lies beside the program

    // The main modes show the whole file with balances and the zeroing
    // line; children and merged files show a part of it.
    bool isMainMode() const { return progMode != modeDetail && progMode != modeNewLines && !isMerged; }
    bool isBadLinesChild() const { return progMode == modeNewLines && newLineDialogType == lineDialogBadLines; }
    // The mode's grid has no balance column: a detail or new-line child.
    bool hasNoBalance() const { return progMode == modeDetail || progMode == modeNewLines; }
};

} // namespace pelkor
