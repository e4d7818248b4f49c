// BankReport: the merged bank report on numbers: the list of files and
// merge.ini, the conversions, what each file gives the report, the day
// arrays, the page's events, the series colours and the charts' values.
//
// Several ledgers side by side, one row a day over a range and one group
// of columns a file, then the total: each day's income and expense of the
// file, its running balance and its excess over the credit line. A file
// kept in another currency has a rate: 0 none, a positive multiplier, or a
// divisor stored as its negative (reallyConvNum). The rate reaches the
// day's sums, the balance and the file's own credit (so its excess is in
// the converted unit); the total credit line of the chart adds the credits
// as they are stored.
//
// A file is read with a few grouped statements (the day's sums, the sums
// before the range, the credit, the zeroing line's date), never line by
// line, so five files of 100,000 lines cost about what SQLite takes to sum
// them by day.
//
// Not here: the page's text (BankReportPage.cpp), the merged file for the
// period reports (MergedFile), the window (frmBankReportMain).
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace pelkor::store {
class Connection;
class StoreError;
}

namespace pelkor::reports {

inline constexpr int maxMergeKeys = 999;
inline const QString mergeSection = QStringLiteral("files");

// file1 .. file999 of [files], stopping at the first key that is missing or
// empty.
QStringList readMergeIni(const QString& iniPath);
// file1 .. fileN, then file<N+1> empty, which ends the list (later keys
// stay, unread). False when the file cannot be written.
bool writeMergeIni(const QString& iniPath, const QStringList& files);

// The colour of series i (0xBBGGRR): fifteen fixed colours, each later one
// the one fifteen before it, as a number, times 0.7.
std::uint32_t fileColor(int i);

// "ללא המרה", "מוכפל ב: 3.5", "מחולק ב: 4" (the rate to four decimals at most).
QString conversionText(double rate);
// A rate's text as the conversion dialog's boxes hold it: a positive
// number of digits with "." or "," (no exponent), at most maxRate.
// Returns the number, or sets message ("יש למלא מספר", "יש למלא מספר
// חיובי", or the one for a rate beyond maxRate).
inline constexpr double maxRate = 1e6;
bool parseRate(const QString& text, double& rate, QString& message);

// What one included file gives the report, unconverted.
struct BankFileSums {
    double credit = 0;                  // Defaults.Credit as stored
    double opening = 0;                 // in less out of every line before the range
    int ipusDayPlus1 = 0;               // the zeroing line's day in the range + 1; 0 none
    int nKinds = 0;                     // rows of Category
    std::vector<double> dayIns, dayOuts;
};
// Reads an open ledger's sums over the days from..to. Lines whose date is
// no date are in no day. Throws store::StoreError.
BankFileSums readBankFile(store::Connection& cn, const QDate& from, const QDate& to);

// Why a file is left out of the report, in Hebrew, from the failure of
// opening or reading it.
QString leftOutReason(const store::StoreError& e);
QString missingFileReason();
QString noPasswordReason();

// The day arrays, d * nIncluded + f, all converted.
struct BankDays {
    QDate fromDate, toDate;
    int nReportDays = 0;
    int nIncluded = 0;
    std::vector<double> rates;          // per included file
    std::vector<double> fileCredits;    // unconverted
    double totalCredit = 0;             // unconverted
    std::vector<int> ipusDayPlus1;
    std::vector<double> ins, outs, balances, excesses;
    std::vector<double> dayTotalIns, dayTotalOuts, dayTotalBalances, dayTotalExcesses;
    std::vector<double> fileBalances;   // each file's balance at the range's end

    size_t at(int d, int f) const { return size_t(d) * size_t(nIncluded) + size_t(f); }
    double in(int d, int f) const { return ins[at(d, f)]; }
    double out(int d, int f) const { return outs[at(d, f)]; }
    double balance(int d, int f) const { return balances[at(d, f)]; }
    double excess(int d, int f) const { return excesses[at(d, f)]; }
    double convertedCredit(int f) const;
};
BankDays calcBankDays(const std::vector<BankFileSums>& files, const std::vector<double>& rates, const QDate& from,
                      const QDate& to);

// A page event read from theID: "cnv <f>" or "<t> <d> <f> <nz>".
struct BankEvent {
    enum class Kind { None, Conversion, Cell, WrongFieldCount, Invalid };
    Kind kind = Kind::None;
    int t = 0, d = 0, f = 0;            // t: 0 income, 1 expense, 2 balance or excess
    bool nonZero = false;
};
BankEvent parseBankEvent(const QString& theID);

// The charts: the labels (d/m/yy) of every day, the total balance per day,
// and each file's balances, one file after another.
struct BankChartData {
    QStringList labels;
    std::vector<double> totals;
    std::vector<double> separate;
    double totalCredit = 0;
    int nGraphs = 0;
};
BankChartData bankChartData(const BankDays& days);

// What heads the page beside the numbers.
struct BankPageHead {
    QStringList shortNames;             // per included file
    bool showIncomeAndExpense = true;
    QStringList leftOut;                // "name: reason" of each file left out
};
// The style sheet text of stl.
QString incExpStyle(bool show);
inline constexpr int groupsPerPrintedPage = 4;
// bankReport.htm: the screen copy (divscr) and the printed copies (divprn).
QString bankReportPage(const BankDays& days, const BankPageHead& head);

// The report's title: the short names joined by ",", cut to 130 characters.
QString bankReportTitle(const QStringList& shortNames);
// The name an export proposes.
QString bankExportName(const QString& reportTitle, const QDate& from, const QDate& to);

} // namespace pelkor::reports
