#include "file/Display.h"

#include "file/Lines.h"
#include "base/Modes.h"
#include "base/Instance.h"
#include "file/OpenLedger.h"
#include "seams/grid/GridModel.h"
#include "seams/store/TextForms.h"

#include <array>

namespace pelkor {

using grid::CellStyle;
using grid::GridModel;

namespace {

bool isRelated(const Line& L) { return L.relate == 99 || L.relate == -1; }

// The credit test: a balance below theCredit is over the credit line. It
// judges the same double the cell prints, so a balance that prints with
// its sign behind ("0.00-" against a credit of 0) is red, and one that
// prints without it is black.
bool isOverCredit(double balance, double credit) { return balance - credit < 0; }

QString dateText(const QDate& d) { return d == nullDate() ? QString() : formatDate224(d); }

// The number a cell shows, read back from FormatSum's form; 0 for an
// empty cell or text that is no number.
double cellNumber(const GridModel& g, int r, int c)
{
    const std::string_view s = g.textUtf8(r, c);
    double v = 0;
    return store::text::parseNumber(s.data(), s.data() + s.size(), v) ? v : 0;
}

// The row's colour: the balancing line's, else getRowBackColor.
std::uint32_t rowColor(const OpenLedger& led, const Instance& inst, int i, const QString& balancingId)
{
    if (!balancingId.isEmpty() && led.lines[size_t(i)].Id == balancingId)
        return colors::balancingLine;
    return getRowBackColor(led, inst, i);
}

QString lineIdText(long long id) { return id == -1 ? QString() : QString::number(id); }

CellStyle memoStyle(const Line& L, std::uint32_t back)
{
    const int n = getColorNum(L.Memo);
    // The last word is "no colour": plain black text.
    return CellStyle{back, colorValues()[size_t(n)], n != int(colorWords().size()) - 1};
}

CellStyle sumStyle(const Line& L, double sum, std::uint32_t back)
{
    const bool forecast = sum != 0 && L.isTzefi;
    return CellStyle{back, forecast ? colors::forecastSum : colors::text, forecast};
}

// The colours a cell of line i has by the rules, with back the row's
// colour. Marked lines show the mark's colour, except the kind cell of a
// related line, which keeps its own.
CellStyle cellStyle(const OpenLedger& led, int i, int col, std::uint32_t back)
{
    const Line& L = led.lines[size_t(i)];
    const std::uint32_t painted = !L.isConfirmed ? colors::markCell : L.isLit ? colors::confirmedLit : colors::confirmed;
    const std::uint32_t body = L.isPainted ? painted : back;
    switch (col) {
    case colMark: return CellStyle{L.isPainted && L.isConfirmed ? painted : colors::markCell, colors::text, false};
    case colKind: return CellStyle{isRelated(L) ? colors::relateKind : body, colors::text, false};
    case colDate:
    case colConfirm:
    case colDetail: return memoStyle(L, body);
    case colIn: return sumStyle(L, L.In, body);
    case colOut: return sumStyle(L, L.out, body);
    case colBalance: {
        const bool over = isOverCredit(led.balances[size_t(i)], led.theCredit);
        const std::uint8_t alt = size_t(i) < led.alternatingIndexes.size() ? led.alternatingIndexes[size_t(i)] : 0;
        return CellStyle{colors::balanceBack[alt & 1], over ? colors::overCredit : colors::text, over};
    }
    default: return CellStyle{body, colors::text, false};
    }
}

// The balance cell's look on a background, with the credit test: a
// balance over the credit line is red and bold.
CellStyle balanceStyle(const OpenLedger& led, double balance, std::uint32_t back)
{
    const bool over = isOverCredit(balance, led.theCredit);
    return CellStyle{back, over ? colors::overCredit : colors::text, over};
}

// What cell c of line i shows.
QString lineCellText(const OpenLedger& led, int i, int c)
{
    if (i < 0 || i >= int(led.lines.size()))
        return {};
    const Line& L = led.lines[size_t(i)];
    switch (c) {
    case colKind: return FormatKind(L.kind);
    case colDate: return dateText(L.Date);
    case colConfirm: return L.confirm;
    case colDetail: return L.detail;
    case colIn: return FormatSum(L.In);
    case colOut: return FormatSum(L.out);
    case colType: return L.Type;
    case colBalance: return FormatSum(led.balances[size_t(i)]);
    default: return {};
    }
}

// Redraw off for the life of the object, then back as it was.
class RedrawOff {
public:
    explicit RedrawOff(GridModel& g) : g_(g), was_(g.Redraw()) { g_.setRedraw(false); }
    ~RedrawOff() { g_.setRedraw(was_); }
    RedrawOff(const RedrawOff&) = delete;
    RedrawOff& operator=(const RedrawOff&) = delete;

private:
    GridModel& g_;
    bool was_;
};

} // namespace

bool hasBalanceColumn(const Instance& inst)
{
    return !inst.hasNoBalance();
}

int mainGridCols(const Instance& inst)
{
    return hasBalanceColumn(inst) ? colBalance + 1 : colBalance;
}

void initMainGrid(const Instance& inst, GridModel& g)
{
    static const std::array<QString, colBalance + 1> captions{
        QString(), QString(), QStringLiteral("סיווג"), QStringLiteral("תאריך"), QStringLiteral("אסמכתא"),
        QStringLiteral("פירוט"), QStringLiteral("הכנסה"), QStringLiteral("הוצאה"), QStringLiteral("סוג"),
        QStringLiteral("יתרה")};
    const int last = std::min(g.Cols(), mainGridCols(inst)) - 1;
    for (int c = 0; c <= last; ++c)
        g.setText(0, c, captions[size_t(c)]);
    g.setStyle(0, g.FixedCols(), g.Cols() - 1, CellStyle{colors::header, colors::headerText, false});
    // Sums read left to right, so they stand at the left of their cells.
    for (int c : {colIn, colOut, colBalance})
        g.setColAlignment(c, grid::Align::Left);
}

bool isLineConverted(const OpenLedger& led, const Instance& inst, int i)
{
    if (!inst.isMerged)
        return inst.detail.conv != 0;
    if (i < 0 || size_t(i) >= led.mergedBankIndexes.size())
        return false;
    const int bank = led.mergedBankIndexes[size_t(i)];
    return bank >= 0 && size_t(bank) < led.convs.size() && led.convs[size_t(bank)] != 0;
}

std::uint32_t getRowBackColor(const OpenLedger& led, const Instance& inst, int i)
{
    if (isLineConverted(led, inst, i))
        return colors::converted;
    if (inst.progMode == modeSplitScreen)
        return colors::rowBack[0];
    const std::uint8_t alt = i >= 0 && size_t(i) < led.alternatingIndexes.size() ? led.alternatingIndexes[size_t(i)] : 0;
    return colors::rowBack[alt & 1];
}

int drawLoad(OpenLedger& led, const Instance& inst, GridModel& g, long long balancingLineID, const PaintedIDs* painted)
{
    RedrawOff off(g);
    const int n = int(led.lines.size());
    g.clear();
    g.setFixedRows(1);
    g.setFixedCols(1);
    g.setCols(mainGridCols(inst));
    g.setRows(n + 1);
    initMainGrid(inst, g);

    const bool withBalance = hasBalanceColumn(inst);
    const QString balancingId = lineIdText(balancingLineID);
    const int lastPainted = g.Cols() - 2;   // the marked colour stops short of the last column
    led.alternatingIndexes.assign(size_t(n), 0);
    led.balances.clear();
    std::uint8_t alternate = 0;
    int converted = 0;
    for (int i = 0; i < n; ++i) {
        Line& L = led.lines[size_t(i)];
        const int r = clipRowNum(i + 1, g.Rows());
        // The fixed cell and colMark stay empty, as clear() left them.
        if (i > 0 && L.Date != led.lines[size_t(i) - 1].Date)
            alternate ^= 1;
        led.alternatingIndexes[size_t(i)] = alternate;
        if (isLineConverted(led, inst, i))
            ++converted;
        L.isPainted = L.isConfirmed = L.isLit = false;   // the mark's colour comes last, below
        const std::uint32_t back = rowColor(led, inst, i, balancingId);

        // Styles now, texts when a row is first read (below).
        g.setStyle(r, colMark, cellStyle(led, i, colMark, back));
        g.setStyle(r, colKind, cellStyle(led, i, colKind, back));
        g.setStyle(r, colDate, colDetail, cellStyle(led, i, colDate, back));
        g.setStyle(r, colIn, cellStyle(led, i, colIn, back));
        g.setStyle(r, colOut, cellStyle(led, i, colOut, back));
        g.setStyle(r, colType, cellStyle(led, i, colType, back));
        // The balance cell's back colour; its text and look are live (below).
        if (withBalance)
            g.setStyle(r, colBalance, CellStyle{colors::balanceBack[alternate], colors::text, false});
        if (painted && painted->contains(L.Id)) {
            L.isPainted = true;
            for (int c = colKind; c <= lastPainted; ++c)
                g.setBackColor(r, c, colors::markCell);
        }
    }
    // The texts of a line's cells, made from the line when a cell is read.
    const OpenLedger* ledger = &led;
    g.setTextSource([ledger](int r, int c) { return lineCellText(*ledger, r - 1, c); });
    g.deferTexts(1, n, colKind, g.Cols() - 1);
    // The balances move with every edited sum: their texts and their side
    // of the credit line are read from balances[] whenever a cell is read.
    if (withBalance) {
        grid::GridModel::LiveLook look;
        look.test = [ledger](int r) {
            const size_t i = size_t(r) - 1;
            return i < ledger->balances.size() && isOverCredit(ledger->balances[i], ledger->theCredit);
        };
        look.onFore = colors::overCredit;
        look.onBold = true;
        look.offFore = colors::text;
        g.setLiveColumn(colBalance, std::move(look));
    }
    return converted;
}

void restyleLineRow(const OpenLedger& led, const Instance& inst, GridModel& g, int i, long long balancingLineID)
{
    if (i < 0 || i >= int(led.lines.size()) || i + 1 >= g.Rows())
        return;
    const std::uint32_t back = rowColor(led, inst, i, lineIdText(balancingLineID));
    const int r = i + 1;
    for (int c = colMark; c <= colType && c < g.Cols(); ++c)
        g.setStyle(r, c, cellStyle(led, i, c, back));
}

void CalcBalances(OpenLedger& led, const Instance& inst, GridModel& g, int startRow, bool keepRedrawOff)
{
    if (inst.hasNoBalance())
        return;
    g.setRedraw(false);
    if (startRow < 1)
        startRow = 1;
    // The balances from the row on are worked out again when read, from the
    // balance above, as a load adds them.
    led.balances.staleFrom(size_t(startRow) - 1);
    // A text written into a balance cell would hide the new balance.
    const int lastRow = std::min(g.Rows() - 1, int(led.lines.size()));
    g.deferTexts(startRow, lastRow, colBalance, colBalance);
    g.refresh();
    if (!keepRedrawOff)
        g.setRedraw(true);
}

void sumsChanged(OpenLedger& led, const Instance& inst, GridModel& g, int row)
{
    if (inst.hasNoBalance())
        return;
    // The live column shows the new balances when next read: no cell is
    // written, none of the rows below is visited.
    g.setRedraw(false);
    led.balances.staleFrom(size_t(std::max(row, 1)) - 1);
    g.refresh();
    g.setRedraw(true);
}

Totals calcTotals(const OpenLedger& led)
{
    double in = 0, out = 0;
    for (const Line& L : led.lines) {
        in += L.In;
        out += L.out;
    }
    return Totals{FormatSum(in), FormatSum(out)};
}

SummaryLabels refreshMainSummaryLabels(const OpenLedger& led, const GridModel& g, const PaintedIDs* painted)
{
    if (!painted || painted->isEmpty())
        return {};
    double in = 0, out = 0;
    int count = 0;
    const int n = std::min(int(led.lines.size()), g.Rows() - 1);
    for (int i = 0; i < n; ++i) {
        if (!painted->contains(led.lines[size_t(i)].Id))
            continue;
        ++count;
        in += cellNumber(g, i + 1, colIn);
        out += cellNumber(g, i + 1, colOut);
    }
    if (count == 0)
        return {};
    return SummaryLabels{FormatSum(in), FormatSum(out),
                         count == 1 ? QStringLiteral("שורה אחת מסומנת")
                                    : QString::number(count) + QStringLiteral(" שורות מסומנות")};
}

void updateCursorCells(const OpenLedger& led, const Instance& inst, GridModel& g, CursorMarks& marks, long long balancingLineID)
{
    const int row = g.Row(), col = g.Col();
    const int nLines = int(led.lines.size());
    const bool wasOn = g.Redraw();
    g.setRedraw(false);
    if (row != marks.lastRow) {
        if (marks.lastRow >= g.FixedRows() && marks.lastRow < g.Rows())
            g.setText(marks.lastRow, 0, QString());
        if (row >= g.FixedRows())
            g.setText(row, 0, QStringLiteral("o"));
        marks.lastRow = row;
    }
    // The cell that showed the cursor goes back to its colours; at most one
    // cell shows them at any time.
    if (marks.litRow >= 1 && marks.litRow <= nLines && marks.litRow < g.Rows() && marks.litCol >= colKind
        && marks.litCol < g.Cols() && (marks.litRow != row || marks.litCol != col)) {
        const int i = marks.litRow - 1;
        g.setStyle(marks.litRow, marks.litCol, cellStyle(led, i, marks.litCol, rowColor(led, inst, i, lineIdText(balancingLineID))));
        marks.litRow = marks.litCol = -99;
    }
    if (row >= 1 && row <= nLines && col >= g.FixedCols() && col != colMark && col != colBalance) {
        CellStyle s = g.style(row, col);
        s.back = colors::currentBack;
        s.fore = colors::currentText;
        g.setStyle(row, col, s);
        marks.litRow = row;
        marks.litCol = col;
    }
    g.setRedraw(wasOn);
}

void restoreCellStyle(const OpenLedger& led, const Instance& inst, GridModel& g, int row, int col, long long balancingLineID)
{
    const int i = row - 1;
    if (i < 0 || i >= int(led.lines.size()) || row >= g.Rows() || col < colMark || col >= g.Cols())
        return;
    if (col == colBalance) {
        const std::uint8_t alt = size_t(i) < led.alternatingIndexes.size() ? led.alternatingIndexes[size_t(i)] : 0;
        g.setStyle(row, col, balanceStyle(led, led.balances[size_t(i)], colors::balanceBack[alt & 1]));
        return;
    }
    g.setStyle(row, col, cellStyle(led, i, col, rowColor(led, inst, i, lineIdText(balancingLineID))));
}

RedLinePlace maybeDrawLine(int iRowAboveRed, int topRow, int visibleRows, int progMode, bool isMerged)
{
    if (progMode == modeDetail || progMode == modeNewLines || isMerged || iRowAboveRed < 1)
        return {};
    if (iRowAboveRed < topRow || iRowAboveRed >= topRow + visibleRows)
        return {};
    return RedLinePlace{true, iRowAboveRed - topRow};
}

int redLineRow(const OpenLedger& led, const Instance& inst)
{
    return inst.hasNoBalance() || inst.isMerged || led.iRowAboveRed < 1 ? -1 : led.iRowAboveRed;
}

RedLinePlace maybeDrawLine(const OpenLedger& led, const Instance& inst, const GridModel& g)
{
    if (inst.hasNoBalance() || inst.isMerged || !g.RowIsVisible(led.iRowAboveRed) || led.iRowAboveRed < g.TopRow())
        return {};
    int k = 0;
    for (int r = g.TopRow(); r < led.iRowAboveRed; ++r)
        k += g.isRowHidden(r) ? 0 : 1;
    return RedLinePlace{true, k};
}

} // namespace pelkor
