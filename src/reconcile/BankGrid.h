// BankGrid: the bank's rows beside the main grid during a reconciliation.
//
// One header row, then one row for each row of the bound account, none
// left out: a row later than the reconciliation's target date stands greyed
// (and cannot be marked). The columns are those of the main grid; the kind
// and type columns stay empty. Each row's transactionID is kept by grid
// row, and so is whether the row is marked or confirmed. The balance of the
// last row of each day is yellow: that is the balance the bank printed for
// the day.
//
// The grid is filled once per session; rows are held by their row number
// from then on, since nothing sorts or refills it while the session runs.
//
// Not here: reading the feed (AccountBinding), marking and linking rows.
#pragma once

#include "seams/grid/GridModel.h"
#include "seams/store/Recordset.h"

#include <QDate>
#include <QString>
#include <cstdint>
#include <vector>

namespace pelkor::reconcile {

namespace bankColors {
inline constexpr std::uint32_t mark = 0xE6D0F4;        // pink 244, 208, 230
inline constexpr std::uint32_t late = 0xC0C0C0;        // grey 192, 192, 192
inline constexpr std::uint32_t white = 0xFFFFFF;
inline constexpr std::uint32_t markText = 0x000001;    // 1, 0, 0
inline constexpr std::uint32_t dayBalance = 0x99FFFF;  // yellow 255, 255, 153
} // namespace bankColors

// What a bank row holds, as the feed gave it.
struct BankRow {
    QDate date;
    double in = 0, out = 0, balance = 0;
};

struct BankGrid {
    grid::GridModel msfgBank{2, 10, 1, 1};
    std::vector<long long> bankTransactionIDs;  // grid row r holds [r - 1]
    std::vector<BankRow> bankRows;              // grid row r holds [r - 1]
    std::vector<char> bankRowPainted;           // by grid row; [0] unused
    int iBankRowAboveRed = -1;                  // last row on or before the zeroing date
    bool isBankGridBusy = false;
    int fills = 0;                              // how many times the grid was filled
    QString lblBankTotalIn, lblBankTotalOut, lblBankLinesSelected;

    int lastRow() const { return msfgBank.Rows() - 1; }
    // The values of grid row r; a null date and zeros for the header or a
    // row beyond the grid.
    const BankRow& row(int r) const;
    QDate rowDate(int r) const { return row(r).date; }
};

// Fills the grid from the account's rows (rsNew, at its first row; read to
// its end). Texts of screen-ordered banks are turned for the right-to-left
// display. The cursor is left on row 1, the date column.
void fillBankGrid(BankGrid& b, store::Recordset& rsNew, const QDate& targetDate, int iBank, bool isSimulate);

} // namespace pelkor::reconcile
