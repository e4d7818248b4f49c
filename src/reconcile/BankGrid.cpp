#include "reconcile/BankGrid.h"

#include "base/Format.h"
#include "file/Display.h"
#include "reconcile/BankText.h"

namespace pelkor::reconcile {

namespace {

void initBankGrid(grid::GridModel& g)
{
    static const QString captions[] = {
        QString(), QString(), QString(), QStringLiteral("תאריך"), QStringLiteral("אסמכתא"),
        QStringLiteral("פירוט"), QStringLiteral("הכנסה"), QStringLiteral("הוצאה"), QString(),
        QStringLiteral("יתרה")};
    g.setCols(colBalance + 1);
    for (int c = 0; c <= colBalance; ++c)
        g.setText(0, c, captions[c]);
    g.setStyle(0, colMark, colBalance, grid::CellStyle{colors::header, colors::headerText, false});
    for (int c : {colIn, colOut, colBalance})
        g.setColAlignment(c, grid::Align::Left);
    g.setRowHeight(0, grid::GridModel::defaultRowHeight);
}

} // namespace

const BankRow& BankGrid::row(int r) const
{
    static const BankRow none;
    return r >= 1 && size_t(r) <= bankRows.size() ? bankRows[size_t(r) - 1] : none;
}

void fillBankGrid(BankGrid& b, store::Recordset& rsNew, const QDate& targetDate, int iBank, bool isSimulate)
{
    b.isBankGridBusy = true;
    const long n = rsNew.recordCount();
    b.bankTransactionIDs.assign(size_t(n), 0);
    b.bankRowPainted.assign(size_t(n) + 1, 0);
    b.bankRows.assign(size_t(n), BankRow{});

    grid::GridModel& g = b.msfgBank;
    g.setRedraw(false);
    g.setRows(1);
    g.clear();
    initBankGrid(g);
    g.setRows(1 + int(n));

    const int fID = rsNew.fieldIndex(QStringLiteral("transactionID"));
    const int fDate = rsNew.fieldIndex(QStringLiteral("date"));
    const int fConfirm = rsNew.fieldIndex(QStringLiteral("confirm"));
    const int fDesc = rsNew.fieldIndex(QStringLiteral("description"));
    const int fIn = rsNew.fieldIndex(QStringLiteral("in"));
    const int fOut = rsNew.fieldIndex(QStringLiteral("out"));
    const int fBalance = rsNew.fieldIndex(QStringLiteral("balance"));
    auto at = [&](long r, int f) -> store::Value { return f < 0 ? store::Value() : rsNew.at(r, f); };
    auto text = [&](long r, int f) { return formatText(fixString(RemoveNull(at(r, f))), iBank, isSimulate); };

    const grid::CellStyle plain{bankColors::white, colors::text, false};
    const grid::CellStyle markCell{bankColors::mark, bankColors::markText, false};
    const grid::CellStyle late{bankColors::late, colors::text, false};
    QDate remembered;
    for (long i = 0; i < n; ++i) {
        const int row = int(i) + 1;
        b.bankTransactionIDs[size_t(i)] = at(i, fID).toInt();
        BankRow& v = b.bankRows[size_t(i)];
        v = BankRow{at(i, fDate).toDate(), RemoveSumNull(at(i, fIn)), RemoveSumNull(at(i, fOut)),
                    RemoveSumNull(at(i, fBalance))};
        const QDate d = v.date;
        g.setRowHeight(row, grid::GridModel::defaultRowHeight);
        g.setText(row, colDate, formatDate224(d));
        g.setText(row, colConfirm, text(i, fConfirm));
        g.setText(row, colDetail, text(i, fDesc));
        g.setText(row, colIn, FormatSum(v.in));
        g.setText(row, colOut, FormatSum(v.out));
        g.setText(row, colBalance, FormatSum(v.balance));
        if (d.isValid() && targetDate.isValid() && d > targetDate) {
            g.setStyle(row, colMark, colBalance, late);
        } else {
            g.setStyle(row, colMark + 1, colBalance, plain);
            g.setStyle(row, colMark, markCell);
        }
        // The bank's balance of a day is that of its last row. Nothing is
        // remembered before the second row, so the first row's balance is
        // yellow whatever follows it.
        if (i > 0) {
            if (!remembered.isValid() || d > remembered)
                g.setBackColor(row - 1, colBalance, bankColors::dayBalance);
            remembered = d;
        }
    }
    if (n > 0)
        g.setBackColor(int(n), colBalance, bankColors::dayBalance);
    g.setRedraw(true);
    g.setRow(n > 0 ? 1 : 0);
    g.setCol(colKind);
    ++b.fills;
    b.isBankGridBusy = false;
}

} // namespace pelkor::reconcile
