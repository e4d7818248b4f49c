// OpenLedger: the data file this instance has open, and what a load read
// of it.
//
// The connection and its runner (the one road of every change), the file's
// path, the table of lines, the kinds and types, the lines in display
// order, the zeroing state (the line the bank last agreed with and the row
// above the red line), the file's settings (credit, days of statement,
// invoice kinds, automatic reconciliation) and its binding to a bank. The
// load (file/Loader) fills it; the editing rooms keep it current. It knows
// nothing of windows.
#pragma once

#include "base/SqlRunner.h"
#include "file/Lines.h"
#include "file/RunningBalances.h"
#include "seams/store/Connection.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

namespace pelkor {

class Trace;

struct OpenLedger {
    explicit OpenLedger(Trace& t) : trace(t), sql(cn, t) {}
    OpenLedger(const OpenLedger&) = delete;
    OpenLedger& operator=(const OpenLedger&) = delete;

    Trace& trace;
    store::Connection cn;
    SqlRunner sql;                         // executeSQL: marks the file changed
    QString filePath;
    bool isCnOpen = false;
    QString linesTable = QStringLiteral("pelkor");
    bool openDBisBusy = false;             // a load is running: the window refuses to close

    // What a load reads.
    Catalogue catalogue;
    std::vector<Line> lines;               // display order; grid row i+1 holds lines[i]
    // The running balance after lines[i], worked out from the lines when
    // read; an edited sum marks the balances from its line on stale.
    RunningBalances balances{lines};
    std::vector<std::uint8_t> alternatingIndexes;   // per line: the date band's background (0/1)
    std::vector<int> mergedBankIndexes;    // merged file: the bank file of each line
    QStringList bankFileNames;             // merged file: its banks' files
    std::vector<double> convs;             // merged file: each bank's conversion

    // The zeroing line: the last line the bank agreed with.
    QDate ipusDate;
    QString ipusID;
    int iRowAboveRed = -1;                 // grid row above the red line; -1 none
    bool zeeFound = false;                 // a load met the mark
    QString IDWithFoundZee;                // the line that bore it when read

    // The file's settings (Defaults, invoiceCategs).
    double theCredit = 0;
    int nDays = 90;                        // days of statement lines to read
    QString theInvoiceCategs;
    bool isAutomatic = false;

    // The binding to a bank, and reconciliation settings of this machine.
    int iBank = -1;                        // by place in bankNames(); -1 unbound
    QString accountNum = QStringLiteral("(none)");
    bool isSimulate = false;               // bound to the simulated feed (iBank 98)
    QString feedPath;                      // the bank feed file, once one is read
    QDate targetDate;
    int nDigitsForConfirmComparison = 4;
    int maxDayDiffForMatch = 30;

    // Grid rows: the header and a row per line.
    int rows() const { return int(lines.size()) + 1; }
};

} // namespace pelkor
