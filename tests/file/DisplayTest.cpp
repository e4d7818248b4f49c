// The display model against figures worked out by hand: what a load draws,
// the running balance and its recomputation, the cursor, the red line.
#include "file/Display.h"

#include "base/Instance.h"
#include "base/Trace.h"
#include "file/OpenLedger.h"
#include "base/Modes.h"
#include "seams/grid/GridModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "QtPrinters.h"
#include "seams/grid/GridPrinters.h"

namespace pelkor {
namespace {

using grid::CellStyle;
using grid::GridModel;

constexpr std::uint32_t white = rgb(255, 255, 255);
constexpr std::uint32_t black = rgb(0, 0, 0);
constexpr std::uint32_t red = rgb(255, 0, 0);

// A ledger's lines and an instance's mode, drawn into a grid: no window.
class DisplayTest : public ::testing::Test {
protected:
    void SetUp() override { inst.progMode = modeFullScreen; }

    // Adds a line of the given day of March 2025 (0: the null date).
    Line& add(int day, double in, double out)
    {
        Line L;
        L.Id = QString::number(led.lines.size() + 1);
        L.kind = out != 0 ? QStringLiteral("-1") : QStringLiteral("+1");
        L.Date = day == 0 ? nullDate() : QDate(2025, 3, day);
        L.confirm = QStringLiteral(" ");
        L.detail = QStringLiteral("שורה %1").arg(led.lines.size() + 1);
        L.In = in;
        L.out = out;
        L.Type = QStringLiteral("מזומן");
        L.Memo = colorWords().back();
        led.lines.push_back(L);
        return led.lines.back();
    }

    QString cell(int r, int c) const { return g.text(r, c); }
    CellStyle style(int r, int c) const { return g.style(r, c); }

    Trace trace{QString(), QString()};
    OpenLedger led{trace};
    Instance inst;
    GridModel g;
};

TEST_F(DisplayTest, TheCreditLineTurnsBalancesBelowItRedAndBold)
{
    add(1, 100, 0);
    add(2, 0, 150);
    led.theCredit = 0;
    drawLoad(led, inst, g);
    EXPECT_EQ(cell(1, colBalance), QStringLiteral("100.00"));
    EXPECT_EQ(cell(2, colBalance), QStringLiteral("50.00-"));
    EXPECT_EQ(style(1, colBalance).fore, black);
    EXPECT_FALSE(style(1, colBalance).bold);
    EXPECT_EQ(style(2, colBalance).fore, red);
    EXPECT_TRUE(style(2, colBalance).bold);
    EXPECT_EQ(led.balances[1], -50.0);

    // A credit line of 100 (stored negative) covers the -50.
    led.theCredit = -100;
    drawLoad(led, inst, g);
    EXPECT_EQ(style(2, colBalance), (CellStyle{colors::balanceBack[1], black, false}));

    // Exactly on the limit is not over it; a hair below it is, as the
    // text's sign says: -50 + 0.30 - 0.10 - 0.20 + 50 leaves -7.1e-15,
    // which prints "0.00-".
    led.theCredit = -50;
    drawLoad(led, inst, g);
    EXPECT_EQ(style(2, colBalance).fore, black);
    add(3, 0.3, 0);
    add(4, 0, 0.1);
    add(5, 0, 0.2);
    add(6, 50, 0);
    led.theCredit = 0;
    drawLoad(led, inst, g);
    ASSERT_LT(led.balances[5], 0.0);
    EXPECT_EQ(cell(6, colBalance), QStringLiteral("0.00-"));
    EXPECT_EQ(style(6, colBalance).fore, red);
    EXPECT_TRUE(style(6, colBalance).bold);
    led.theCredit = -50;
    drawLoad(led, inst, g);
    EXPECT_EQ(cell(5, colBalance), QStringLiteral("50.00-"));
    EXPECT_EQ(style(5, colBalance).fore, red);      // -50.00000000000001
    EXPECT_EQ(style(6, colBalance).fore, black);
}

TEST_F(DisplayTest, BackgroundsAlternateAtEachNewDate)
{
    add(1, 10, 0);
    add(1, 0, 5);
    add(4, 7, 0);
    drawLoad(led, inst, g);
    EXPECT_EQ(led.alternatingIndexes, (std::vector<std::uint8_t>{0, 0, 1}));
    EXPECT_EQ(g.backColor(2, colDetail), white);
    EXPECT_EQ(g.backColor(3, colDetail), colors::rowBack[1]);
    EXPECT_EQ(g.backColor(2, colBalance), colors::balanceBack[0]);
    EXPECT_EQ(g.backColor(3, colBalance), colors::balanceBack[1]);

    // The split screen shows every row white; the balance still alternates.
    inst.progMode = modeSplitScreen;
    drawLoad(led, inst, g);
    EXPECT_EQ(g.backColor(3, colDetail), white);
    EXPECT_EQ(g.backColor(3, colBalance), rgb(255, 255, 79));
}

TEST_F(DisplayTest, ConvertedLinesArePinkAndCounted)
{
    add(1, 10, 0);
    add(2, 20, 0);
    add(3, 30, 0);
    inst.detail.conv = 3.5;
    EXPECT_EQ(drawLoad(led, inst, g), 3);
    for (int r = 1; r <= 3; ++r)
        EXPECT_EQ(g.backColor(r, colDetail), rgb(255, 128, 255)) << r;
    EXPECT_NE(g.backColor(1, colBalance), rgb(255, 128, 255));

    // Merged: by the conv of each line's bank file.
    inst.detail.conv = 0;
    inst.isMerged = true;
    led.convs = {0, -3};
    led.mergedBankIndexes = {0, 1, 0};
    EXPECT_EQ(drawLoad(led, inst, g), 1);
    EXPECT_FALSE(isLineConverted(led, inst, 0));
    EXPECT_TRUE(isLineConverted(led, inst, 1));
    EXPECT_EQ(g.backColor(1, colDetail), white);
    EXPECT_EQ(g.backColor(2, colDetail), rgb(255, 128, 255));
}

TEST_F(DisplayTest, CellTextsHeaderMemoColoursAndRelatedKinds)
{
    Line& a = add(5, 1234.5, 0);
    a.Memo = QStringLiteral("אדום");
    a.relate = 99;
    a.confirm = QStringLiteral("777");
    Line& b = add(0, 0, 3);   // null date
    b.Memo = QStringLiteral("מילה אחרת");
    b.relate = -1;
    Line& c = add(6, 0, 1);
    c.Memo = QStringLiteral("ירוק");
    c.kind = QStringLiteral("-12");
    c.Type.clear();
    drawLoad(led, inst, g);

    EXPECT_EQ(g.Cols(), 10);
    EXPECT_EQ(cell(1, colKind), QStringLiteral("1+"));
    EXPECT_EQ(cell(1, colDate), QStringLiteral("05/03/2025"));
    EXPECT_EQ(cell(1, colConfirm), QStringLiteral("777"));
    EXPECT_EQ(cell(1, colIn), QStringLiteral("1,234.50"));
    EXPECT_TRUE(cell(2, colDate).isEmpty());
    EXPECT_EQ(cell(3, colKind), QStringLiteral("12-"));
    EXPECT_TRUE(cell(3, colType).isEmpty());
    EXPECT_EQ(cell(3, colBalance), QStringLiteral("1,230.50"));

    // A colour word colours date, reference and detail, in bold; a word
    // not in the table reads as no colour.
    for (int col : {colDate, colConfirm, colDetail}) {
        EXPECT_EQ(style(1, col), (CellStyle{white, rgb(255, 0, 0), true})) << col;
        EXPECT_EQ(style(2, col), (CellStyle{rgb(227, 227, 255), black, false})) << col;
        EXPECT_EQ(style(3, col), (CellStyle{white, rgb(0, 192, 0), true})) << col;
    }
    EXPECT_EQ(style(1, colType), (CellStyle{white, black, false}));
    // relate 99 and -1 colour the kind cell only.
    EXPECT_EQ(g.backColor(1, colKind), rgb(255, 255, 153));
    EXPECT_EQ(g.backColor(2, colKind), rgb(255, 255, 153));
    EXPECT_EQ(g.backColor(3, colKind), white);

    // Without the balance column in a detail child.
    inst.progMode = modeDetail;
    drawLoad(led, inst, g);
    EXPECT_EQ(g.Cols(), 9);
    EXPECT_EQ(cell(0, colType), QStringLiteral("סוג"));
}

TEST_F(DisplayTest, BalancingLineAndMarkedLines)
{
    add(1, 10, 0);
    add(1, 0, 4);
    add(2, 6, 0);
    inst.progMode = modeNewLines;
    drawLoad(led, inst, g, 2);
    EXPECT_EQ(g.backColor(2, colDetail), rgb(255, 255, 153));
    EXPECT_EQ(g.backColor(1, colDetail), white);
    EXPECT_EQ(g.backColor(2, colMark), rgb(244, 208, 230));

    inst.progMode = modeFullScreen;
    const PaintedIDs painted{QStringLiteral("1"), QStringLiteral("3")};
    drawLoad(led, inst, g, -1, &painted);
    EXPECT_TRUE(led.lines[0].isPainted);
    EXPECT_FALSE(led.lines[1].isPainted);
    for (int col = colKind; col <= colType; ++col) {
        EXPECT_EQ(g.backColor(1, col), rgb(244, 208, 230)) << col;
        EXPECT_EQ(g.backColor(2, col), white) << col;
    }
    EXPECT_EQ(g.backColor(1, colBalance), rgb(255, 255, 153));

    const SummaryLabels two = refreshMainSummaryLabels(led, g, &painted);
    EXPECT_EQ(two.lblMainTotalIn, QStringLiteral("16.00"));
    EXPECT_EQ(two.lblMainTotalOut, QStringLiteral("0.00"));
    EXPECT_EQ(two.lblMainLinesSelected, QStringLiteral("2 שורות מסומנות"));
    // The sums are the cells' figures, grouping and sign included.
    g.setText(2, colOut, QStringLiteral("1,500.25"));
    const PaintedIDs one{QStringLiteral("2")};
    const SummaryLabels single = refreshMainSummaryLabels(led, g, &one);
    EXPECT_EQ(single.lblMainTotalOut, QStringLiteral("1,500.25"));
    EXPECT_EQ(single.lblMainLinesSelected, QStringLiteral("שורה אחת מסומנת"));
    const PaintedIDs none;
    EXPECT_TRUE(refreshMainSummaryLabels(led, g, &none).lblMainLinesSelected.isEmpty());
    EXPECT_TRUE(refreshMainSummaryLabels(led, g, nullptr).lblMainTotalIn.isEmpty());

    const Totals t = calcTotals(led);
    EXPECT_EQ(t.lblTotalIncome, QStringLiteral("16.00"));
    EXPECT_EQ(t.lblTotalExpense, QStringLiteral("4.00"));
}

TEST_F(DisplayTest, RecomputingFromAMiddleRowStartsFromTheBalanceAbove)
{
    add(1, 1000, 0);
    add(2, 0, 300);
    add(3, 0, 500);
    add(4, 50, 0);
    drawLoad(led, inst, g);
    g.setVisibleRows(20);
    led.lines[2].out = 1500;

    // Not from the text of the cell above, whatever it holds.
    g.setText(2, colBalance, QStringLiteral("12,345.67-"));
    g.setText(4, colBalance, QStringLiteral("kept?"));
    CalcBalances(led, inst, g, 3, true);
    EXPECT_EQ(cell(3, colBalance), QStringLiteral("800.00-"));
    EXPECT_EQ(cell(4, colBalance), QStringLiteral("750.00-"));
    EXPECT_TRUE(g.isTextDeferred(4, colBalance));
    EXPECT_EQ(cell(2, colBalance), QStringLiteral("12,345.67-"));   // above the row: untouched
    EXPECT_FALSE(g.Redraw());   // the caller keeps it off
    g.setRedraw(true);

    // A detail child has no balance: nothing is recomputed.
    inst.progMode = modeDetail;
    led.lines[0].In = 2000;
    CalcBalances(led, inst, g, 1);
    EXPECT_EQ(cell(4, colBalance), QStringLiteral("750.00-"));
}

// Edits, new lines at the end and deleted lines, thousands of them at
// random on a ledger of sums that are no whole agorot (thirds, tenths,
// converted amounts): after each, every balance, its text and its look are
// those of a fresh load of the same lines. With a credit line of 0 the
// look also agrees with the text: red exactly where the sign shows.
TEST_F(DisplayTest, AfterEveryEditTheBalancesAreAFreshLoads)
{
    std::mt19937 rnd(20250601);
    const auto sum = [&]() -> double {
        switch (rnd() % 5) {
        case 0: return double(rnd() % 100000) / 100.0;
        case 1: return double(rnd() % 3000) / 3.0;
        case 2: return 0.1 * double(rnd() % 10);
        case 3: return double(rnd() % 100000) / 1000.0 * 0.97;
        default: return 0;
        }
    };
    for (int i = 0; i < 120; ++i)
        rnd() % 2 ? add(1 + i / 10, sum(), 0) : add(1 + i / 10, 0, sum());
    led.theCredit = 0;
    drawLoad(led, inst, g);
    g.setVisibleRows(30);

    int reds = 0, blacks = 0;
    const auto expectAFreshLoad = [&](int step) {
        Trace freshTrace{QString(), QString()};
        OpenLedger fresh{freshTrace};
        fresh.lines = led.lines;
        fresh.theCredit = led.theCredit;
        GridModel fg;
        drawLoad(fresh, inst, fg);
        ASSERT_EQ(g.Rows(), fg.Rows()) << step;
        for (int r = 1; r < g.Rows(); ++r) {
            const size_t i = size_t(r) - 1;
            ASSERT_EQ(led.balances[i], fresh.balances[i]) << step << " row " << r;
            const QString text = cell(r, colBalance);
            ASSERT_EQ(text, fg.text(r, colBalance)) << step << " row " << r;
            const CellStyle look = style(r, colBalance);
            ASSERT_EQ(look.fore, fg.style(r, colBalance).fore) << step << " row " << r;
            ASSERT_EQ(look.bold, fg.style(r, colBalance).bold) << step << " row " << r;
            ASSERT_EQ(look.fore == red, text.endsWith(QLatin1Char('-'))) << step << " row " << r;
            (look.fore == red ? reds : blacks) += 1;
        }
    };
    for (int step = 0; step < 3000; ++step) {
        const int op = int(rnd() % 10);
        const int n = int(led.lines.size());
        if (op < 6 || n < 20) {
            // An edit: the line's sums change, the balances from its row on.
            const int r = 1 + int(rnd() % unsigned(n));
            Line& L = led.lines[size_t(r) - 1];
            if (rnd() % 2) {
                L.In = sum();
                L.out = 0;
            } else {
                L.In = 0;
                L.out = sum();
            }
            sumsChanged(led, inst, g, r);
        } else if (op < 8) {
            // A line at the end, as a new line comes.
            add(1 + int(rnd() % 28), 0, 0);
            led.alternatingIndexes.push_back(0);
            const int r = g.addRow();
            led.balances.staleFrom(led.lines.size() - 1);
            CalcBalances(led, inst, g, r);
            if (rnd() % 2) {
                led.lines.back().out = sum();
                sumsChanged(led, inst, g, r);
            }
        } else {
            // A deleted line: the rows below move up.
            const int r = 1 + int(rnd() % unsigned(n));
            led.lines.erase(led.lines.begin() + (r - 1));
            led.alternatingIndexes.erase(led.alternatingIndexes.begin() + (r - 1));
            g.removeRow(r);
            CalcBalances(led, inst, g, r);
        }
        // The view reads the rows that show, somewhere in the ledger.
        g.setTopRow(1 + int(rnd() % unsigned(g.Rows() - 1)));
        for (int r = g.TopRow(); r <= g.lastVisibleRow(); ++r)
            cell(r, colBalance);
        expectAFreshLoad(step);
        if (::testing::Test::HasFatalFailure())
            return;
    }
    EXPECT_GT(reds, 1000);
    EXPECT_GT(blacks, 1000);
}

TEST_F(DisplayTest, TheCursorCarriesTheMarkAndItsColoursAndGivesThemBack)
{
    Line& a = add(1, 10, 0);
    a.Memo = QStringLiteral("סגול");
    Line& b = add(2, 0, 5);
    b.relate = 99;
    add(3, 0, 1);
    drawLoad(led, inst, g);
    CursorMarks marks;

    g.setRow(1);
    g.setCol(colDetail);
    updateCursorCells(led, inst, g, marks);
    EXPECT_EQ(cell(1, 0), QStringLiteral("o"));
    EXPECT_EQ(style(1, colDetail).back, rgb(1, 0, 0));
    EXPECT_EQ(style(1, colDetail).fore, white);

    // To another row: the mark moves, the purple bold detail comes back.
    g.setRow(2);
    g.setCol(colKind);
    updateCursorCells(led, inst, g, marks);
    EXPECT_TRUE(cell(1, 0).isEmpty());
    EXPECT_EQ(cell(2, 0), QStringLiteral("o"));
    EXPECT_EQ(style(1, colDetail), (CellStyle{white, rgb(192, 0, 192), true}));
    EXPECT_EQ(style(2, colKind).back, rgb(1, 0, 0));

    // The related kind cell gets its yellow back; the balance and the mark
    // cells never take the cursor's colours.
    g.setCol(colBalance);
    updateCursorCells(led, inst, g, marks);
    EXPECT_EQ(style(2, colKind), (CellStyle{rgb(255, 255, 153), black, false}));
    EXPECT_EQ(style(2, colBalance).back, rgb(255, 255, 79));
    g.setCol(colMark);
    updateCursorCells(led, inst, g, marks);
    EXPECT_EQ(style(2, colMark), (CellStyle{rgb(244, 208, 230), black, false}));

    // A marked line's cell goes back to the mark's colour.
    led.lines[2].isPainted = true;
    g.setRow(3);
    g.setCol(colIn);
    updateCursorCells(led, inst, g, marks);
    g.setCol(colOut);
    updateCursorCells(led, inst, g, marks);
    EXPECT_EQ(style(3, colIn), (CellStyle{rgb(244, 208, 230), black, false}));
    EXPECT_EQ(style(3, colOut).back, rgb(1, 0, 0));
}

TEST_F(DisplayTest, TheRedLineLiesUnderItsRowOnlyWhileThatRowShows)
{
    // Row 30 of the grid, 20 rows on a page.
    EXPECT_EQ(maybeDrawLine(30, 1, 20, modeFullScreen, false).visible, false);
    const RedLinePlace under = maybeDrawLine(30, 25, 20, modeFullScreen, false);
    EXPECT_TRUE(under.visible);
    EXPECT_EQ(under.underVisibleRow, 5);
    EXPECT_EQ(maybeDrawLine(30, 11, 20, modeFullScreen, false).underVisibleRow, 19);   // the last row shown
    EXPECT_FALSE(maybeDrawLine(30, 31, 20, modeFullScreen, false).visible);            // scrolled past
    EXPECT_TRUE(maybeDrawLine(30, 30, 20, modeSplitScreen, false).visible);
    EXPECT_FALSE(maybeDrawLine(30, 25, 20, modeDetail, false).visible);
    EXPECT_FALSE(maybeDrawLine(30, 25, 20, modeNewLines, false).visible);
    EXPECT_FALSE(maybeDrawLine(30, 25, 20, modeFullScreen, true).visible);
    EXPECT_FALSE(maybeDrawLine(-1, 1, 20, modeFullScreen, false).visible);

    // On the grid: hidden rows above it do not count as shown rows.
    for (int i = 0; i < 60; ++i)
        add(1 + i / 10, 1, 0);
    drawLoad(led, inst, g);
    led.iRowAboveRed = 30;
    g.setVisibleRows(20);
    g.setTopRow(25);
    EXPECT_EQ(maybeDrawLine(led, inst, g).underVisibleRow, 5);
    g.setRowHeight(26, 0);
    g.setRowHeight(27, 0);
    EXPECT_EQ(maybeDrawLine(led, inst, g).underVisibleRow, 3);
    g.setTopRow(12);   // rows 12..33 show, two of them hidden
    EXPECT_TRUE(maybeDrawLine(led, inst, g).visible);
    g.setTopRow(5);    // rows 5..24 show
    EXPECT_FALSE(maybeDrawLine(led, inst, g).visible);
    EXPECT_EQ(redLineRow(led, inst), 30);   // the view keeps it and hides it itself
    inst.isMerged = true;
    EXPECT_EQ(redLineRow(led, inst), -1);
}

TEST_F(DisplayTest, AHundredThousandLinesHoldLittleMemory)
{
    for (int i = 0; i < 100000; ++i) {
        Line& L = i % 3 ? add(1 + (i / 4000), 0, 10 + i % 997) : add(1 + (i / 4000), 2500 + i % 13, 0);
        L.detail = QStringLiteral("תשלום לספק מספר %1").arg(i % 1500);
        L.confirm = QString::number(10000 + i);
        L.Memo = colorWords()[size_t(i % 4)];
    }
    drawLoad(led, inst, g);
    EXPECT_LT(double(g.memoryUsage()) / (1024.0 * 1024.0), 20.0);
    EXPECT_EQ(g.Rows(), 100001);
    EXPECT_EQ(cell(100000, colBalance), FormatSum(led.balances.back()));
}

} // namespace
} // namespace pelkor
