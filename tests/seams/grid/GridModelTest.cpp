// The grid model: texts and styles survive the compact storage, the shape
// and the cursor stay consistent, and listeners hear changes once per
// batch.
#include "seams/grid/GridModel.h"

#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "seams/grid/GridPrinters.h"

namespace pelkor::grid {
namespace {

struct Recorder : GridListener {
    std::vector<GridChange> changes;
    void gridChanged(const GridModel&, const GridChange& c) override { changes.push_back(c); }
};

TEST(GridModel, TextsRoundTripAndSharedBytesNeverAlias)
{
    GridModel g(5, 4);
    const QString hebrew = QStringLiteral("משכורת ינואר");
    const QString astral = QStringLiteral("a\U0001F600b");   // a surrogate pair
    g.setText(1, 1, hebrew);
    g.setText(2, 1, hebrew);   // the same text: may share bytes with row 1
    g.setText(3, 1, astral);
    g.setText(4, 1, QStringLiteral("1,234.50-"));
    EXPECT_EQ(g.text(1, 1), hebrew);
    EXPECT_EQ(g.text(2, 1), hebrew);
    EXPECT_EQ(g.text(3, 1), astral);
    EXPECT_EQ(g.textUtf8(4, 1), "1,234.50-");
    EXPECT_TRUE(g.text(0, 0).isEmpty());

    // Changing one of two equal cells leaves the other as it was.
    g.setText(1, 1, QStringLiteral("שכר"));
    EXPECT_EQ(g.text(1, 1), QStringLiteral("שכר"));
    EXPECT_EQ(g.text(2, 1), hebrew);
    g.setText(2, 1, QString());
    EXPECT_TRUE(g.text(2, 1).isEmpty());
    EXPECT_EQ(g.text(1, 1), QStringLiteral("שכר"));

    // An unpaired surrogate becomes the replacement character, not garbage.
    const QChar lone[] = {QChar(u'x'), QChar(char16_t(0xD800))};
    g.setText(3, 2, QStringView(lone, 2));
    EXPECT_EQ(g.text(3, 2), QStringLiteral("x\uFFFD"));

    g.setText(9, 9, hebrew);   // out of range: nothing written
    EXPECT_TRUE(g.text(9, 9).isEmpty());
}

TEST(GridModel, OverwritingManyTimesCompactsAndKeepsEveryText)
{
    // Enough rewrites to pass the compaction threshold several times over,
    // with texts that repeat (so bytes are shared) and texts that don't.
    const int rows = 2000, rounds = 200;
    GridModel g(rows + 1, 3);
    std::size_t written = 0;
    for (int round = 0; round < rounds; ++round)
        for (int r = 1; r <= rows; ++r) {
            const QString a = QStringLiteral("%1.00").arg(r * 7 + round);
            const QString b = r % 3 == 0 ? QStringLiteral("0.00") : QStringLiteral("פירוט %1 סבב %2").arg(r).arg(round);
            g.setText(r, 1, a);
            g.setText(r, 2, b);
            written += size_t(a.toUtf8().size() + b.toUtf8().size());
        }
    for (int r = 1; r <= rows; ++r) {
        ASSERT_EQ(g.text(r, 1), QStringLiteral("%1.00").arg(r * 7 + rounds - 1)) << r;
        ASSERT_EQ(g.text(r, 2), r % 3 == 0 ? QStringLiteral("0.00") : QStringLiteral("פירוט %1 סבב %2").arg(r).arg(rounds - 1)) << r;
    }
    // What is held is about the live texts, not every round of them.
    EXPECT_LT(g.memoryUsage(), written / 2);
}

TEST(GridModel, AVeryLongTextIsCutOnACharacterBoundary)
{
    GridModel g(2, 2);
    const QString longText = QString(40000, QChar(u'א'));   // 80,000 bytes of UTF-8
    g.setText(1, 1, longText);
    const QString back = g.text(1, 1);
    EXPECT_EQ(back.size(), 0xFFFF / 2);
    EXPECT_EQ(back, longText.left(back.size()));
}

TEST(GridModel, DeferredTextsAreMadeOnceWhenReadAndEndWhenWritten)
{
    GridModel g(6, 3);
    std::vector<QString> rowsText{QString(), QStringLiteral("שכר דירה"), QStringLiteral("ספק"),
                                  QStringLiteral("ספק"), QStringLiteral("1,200.00"), QStringLiteral("בנק")};
    int made = 0;
    g.setTextSource([&](int r, int c) {
        ++made;
        return c == 1 ? rowsText[size_t(r)] : QString::number(r);
    });
    g.setText(1, 1, QStringLiteral("before"));
    Recorder rec;
    g.addListener(&rec);
    g.deferTexts(1, 5, 1, 2);
    ASSERT_EQ(rec.changes.size(), 1u);
    EXPECT_EQ(rec.changes[0].row0, 1);
    EXPECT_EQ(rec.changes[0].col1, 2);
    EXPECT_TRUE(g.isTextDeferred(1, 1));
    EXPECT_EQ(made, 0);

    // A read makes the text from what the row holds now, once.
    rowsText[2] = QStringLiteral("ספק חדש");
    EXPECT_EQ(g.text(2, 1), QStringLiteral("ספק חדש"));
    EXPECT_EQ(g.text(2, 1), QStringLiteral("ספק חדש"));
    EXPECT_EQ(made, 1);
    EXPECT_FALSE(g.isTextDeferred(2, 1));
    // Reading is no change a listener hears of.
    EXPECT_EQ(rec.changes.size(), 1u);

    // A write ends the deferral; the source is not asked.
    g.setText(3, 1, QStringLiteral("נכתב"));
    EXPECT_EQ(g.text(3, 1), QStringLiteral("נכתב"));
    EXPECT_EQ(made, 1);

    // Removing a row moves the deferred cells below it up with their rows.
    g.removeRow(1);
    EXPECT_TRUE(g.isTextDeferred(3, 1));
    EXPECT_EQ(g.textUtf8(4, 2), "4");   // the source answers for the row's new place

    // Compacting the arena keeps deferred cells deferred.
    for (int round = 0; round < 40000; ++round)
        g.setText(1, 1, QStringLiteral("סבב %1 של טקסט ארוך למדי כדי למלא את הזירה").arg(round));
    EXPECT_TRUE(g.isTextDeferred(3, 1));
    EXPECT_EQ(g.text(3, 1), QStringLiteral("ספק"));

    // clear() forgets the source: nothing deferred is left.
    g.clear();
    EXPECT_FALSE(g.isTextDeferred(2, 1));
    EXPECT_TRUE(g.text(2, 1).isEmpty());
    g.removeListener(&rec);
}

TEST(GridModel, ALongColumnOfDeferredCellsHoldsNoPlaceForTexts)
{
    // Many rows, as a ledger has: texts written, deferred, read, moved and
    // cut across the places where the column's storage is divided.
    const int rows = 3000;
    GridModel g(rows, 3);
    g.setTextSource([](int r, int c) { return QStringLiteral("%1:%2").arg(r).arg(c); });
    for (int r = 1; r < rows; ++r)
        g.setText(r, 1, QStringLiteral("שורה %1").arg(r));
    const std::size_t written = g.memoryUsage();

    // Deferring the column lets go of where its texts lay (an offset and
    // a length a cell); reading a few cells takes a little of it back.
    g.deferTexts(1, rows - 1, 1, 2);
    EXPECT_LT(g.memoryUsage(), written - size_t(rows) * 5);
    EXPECT_EQ(g.text(700, 2), QStringLiteral("700:2"));
    EXPECT_EQ(g.text(2999, 2), QStringLiteral("2999:2"));
    EXPECT_LT(g.memoryUsage(), written - size_t(rows) * 4);

    // A range deferred in the middle of written rows leaves its neighbours.
    for (int r = 250; r < 270; ++r)
        g.setText(r, 1, QString::number(r));
    g.deferTexts(255, 257, 1, 1);
    EXPECT_EQ(g.text(254, 1), QStringLiteral("254"));
    EXPECT_TRUE(g.isTextDeferred(256, 1));
    EXPECT_EQ(g.text(258, 1), QStringLiteral("258"));

    // Removing a row moves written, deferred and empty cells up one across
    // the storage's divisions.
    g.setText(256, 2, QStringLiteral("נכתב"));
    g.setText(513, 1, QStringLiteral("ב-513"));
    g.setText(512, 1, QString());
    g.removeRow(100);
    EXPECT_EQ(g.text(253, 1), QStringLiteral("254"));
    EXPECT_EQ(g.text(255, 2), QStringLiteral("נכתב"));
    EXPECT_TRUE(g.isTextDeferred(256, 1));
    EXPECT_FALSE(g.isTextDeferred(511, 1));
    EXPECT_TRUE(g.text(511, 1).isEmpty());
    EXPECT_EQ(g.text(512, 1), QStringLiteral("ב-513"));
    EXPECT_EQ(g.text(513, 1), QStringLiteral("513:1"));   // the source answers for the new place
    EXPECT_EQ(g.Rows(), rows - 1);

    // Cut short and grown again: the new rows are empty, not what was there.
    g.setRows(300);
    g.setRows(rows);
    EXPECT_EQ(g.text(253, 1), QStringLiteral("254"));
    EXPECT_FALSE(g.isTextDeferred(1000, 1));
    EXPECT_TRUE(g.text(1000, 1).isEmpty());
    EXPECT_TRUE(g.text(2998, 2).isEmpty());
    EXPECT_TRUE(g.isTextDeferred(299, 1));
    EXPECT_FALSE(g.isTextDeferred(300, 1));
}

TEST(GridModel, StylesAreIndependentPartsAndFixedCellsHaveTheirOwnDefault)
{
    GridModel g(4, 4, 1, 1);
    EXPECT_EQ(g.style(0, 2), GridModel::defaultFixedStyle);
    EXPECT_EQ(g.style(2, 0), GridModel::defaultFixedStyle);
    EXPECT_EQ(g.style(2, 2), GridModel::defaultStyle);

    g.setBackColor(2, 2, 0x99FFFF);
    g.setForeColor(2, 2, 0x0000FF);
    g.setBold(2, 2, true);
    EXPECT_EQ(g.style(2, 2), (CellStyle{0x99FFFF, 0x0000FF, true}));
    g.setBackColor(2, 2, 0xFFFFFF);
    EXPECT_EQ(g.style(2, 2), (CellStyle{0xFFFFFF, 0x0000FF, true}));
    EXPECT_EQ(g.style(2, 3), GridModel::defaultStyle);   // the neighbour untouched

    g.setStyle(3, 0, 3, CellStyle{1, 2, false});
    for (int c = 0; c <= 3; ++c)
        EXPECT_EQ(g.style(3, c), (CellStyle{1, 2, false}));

    // A second fixed row takes the fixed look where no colour was set.
    g.setFixedRows(2);
    EXPECT_EQ(g.style(1, 3), GridModel::defaultFixedStyle);
    EXPECT_EQ(g.style(2, 2), (CellStyle{0xFFFFFF, 0x0000FF, true}));
    g.setFixedRows(1);
    EXPECT_EQ(g.style(1, 3), GridModel::defaultStyle);
}

TEST(GridModel, APaletteFullOfStylesNoCellUsesIsReclaimed)
{
    // 70,000 different colours over time on a few cells: more than the
    // 16-bit index could hold if nothing were ever dropped.
    GridModel g(3, 3);
    for (std::uint32_t i = 0; i < 70000; ++i)
        g.setBackColor(1 + int(i % 2), 1, 0x100000 + i);
    EXPECT_EQ(g.backColor(1, 1), 0x100000u + 69998);
    EXPECT_EQ(g.backColor(2, 1), 0x100000u + 69999);
    EXPECT_EQ(g.style(1, 2), GridModel::defaultStyle);
    EXPECT_LT(g.paletteSize(), 70000);
}

TEST(GridModel, ALiveColumnReadsItsTextsAndLookAnewAndKeepsNothing)
{
    constexpr std::uint32_t yellow = 0x99FFFF, deep = 0x4FFFFF, red = 0x0000FF;
    GridModel g(8, 3);
    std::vector<double> values{0, 5, -3, 7, -1, 2, -8, 4};
    int made = 0;
    g.setTextSource([&](int r, int c) {
        ++made;
        return QStringLiteral("%1:%2").arg(c).arg(values[size_t(r)]);
    });
    for (int r = 1; r < 8; ++r)
        g.setStyle(r, 2, CellStyle{r % 2 ? yellow : deep, 0, false});
    g.setStyle(3, 1, CellStyle{1, 2, true});   // another column: its own look
    g.setText(0, 2, QStringLiteral("head"));
    g.deferTexts(1, 7, 1, 2);
    GridModel::LiveLook look;
    look.test = [&](int r) { return values[size_t(r)] < 0; };
    look.onFore = red;
    look.onBold = true;
    g.setLiveColumn(2, std::move(look));
    ASSERT_TRUE(g.isLiveColumn(2));
    ASSERT_FALSE(g.isLiveColumn(1));

    const auto expectColumn = [&] {
        for (int r = 1; r < 8; ++r) {
            const bool on = values[size_t(r)] < 0;
            EXPECT_EQ(g.style(r, 2), (CellStyle{r % 2 ? yellow : deep, on ? red : 0u, on})) << r;
            const QString want = QStringLiteral("2:%1").arg(values[size_t(r)]);
            EXPECT_EQ(g.text(r, 2), want) << r;
            EXPECT_EQ(QString::fromUtf8(g.textUtf8(r, 2)), want) << r;
            EXPECT_TRUE(g.isTextDeferred(r, 2)) << r;
        }
    };
    expectColumn();
    // Every value moves: the model is told nothing and shows the new ones.
    for (double& v : values)
        v = -v;
    made = 0;
    expectColumn();
    EXPECT_EQ(made, 14);   // twice a row: nothing was kept
    // The header and the other column's look are as written.
    EXPECT_EQ(g.text(0, 2), QStringLiteral("head"));
    EXPECT_EQ(g.style(3, 1), (CellStyle{1, 2, true}));
    // A text written into a live cell stays until the cell is deferred.
    g.setText(5, 2, QStringLiteral("typed"));
    EXPECT_EQ(g.text(5, 2), QStringLiteral("typed"));
    g.deferTexts(5, 5, 2, 2);
    EXPECT_EQ(g.text(5, 2), QStringLiteral("2:-2"));
    // A clear ends the column's life.
    g.clear();
    EXPECT_FALSE(g.isLiveColumn(2));
    EXPECT_EQ(g.style(2, 2), GridModel::defaultStyle);
}

TEST(GridModel, ShapeChangesKeepCellsAndHoldTheCursor)
{
    GridModel g(6, 4);
    for (int r = 1; r < 6; ++r)
        g.setText(r, 1, QString::number(r));
    g.setBackColor(3, 1, 0x123456);
    g.setRow(5);
    g.setCol(3);
    g.setTopRow(4);

    g.removeRow(2);   // rows 3.. move up
    EXPECT_EQ(g.Rows(), 5);
    EXPECT_EQ(g.text(2, 1), QStringLiteral("3"));
    EXPECT_EQ(g.backColor(2, 1), 0x123456u);
    EXPECT_EQ(g.text(4, 1), QStringLiteral("5"));

    g.setRows(3);
    EXPECT_EQ(g.Row(), 2);      // held within the grid
    EXPECT_EQ(g.TopRow(), 2);
    g.setCols(2);
    EXPECT_EQ(g.Col(), 1);

    const int added = g.addRow();
    EXPECT_EQ(added, 3);
    EXPECT_TRUE(g.text(3, 1).isEmpty());
    EXPECT_EQ(g.style(3, 1), GridModel::defaultStyle);
    EXPECT_EQ(g.style(3, 0), GridModel::defaultFixedStyle);
    EXPECT_EQ(g.text(1, 1), QStringLiteral("1"));

    g.clear();
    EXPECT_EQ(g.Rows(), 4);
    EXPECT_TRUE(g.text(1, 1).isEmpty());
    EXPECT_EQ(g.style(2, 1), GridModel::defaultStyle);
}

TEST(GridModel, SettingTheCursorCollapsesTheSelection)
{
    GridModel g(10, 6);
    g.setRow(2);
    g.setCol(2);
    g.setRowSel(5);
    g.setColSel(4);
    EXPECT_EQ(g.RowSel(), 5);
    EXPECT_EQ(g.ColSel(), 4);
    g.setRow(3);
    EXPECT_EQ(g.RowSel(), 3);
    EXPECT_EQ(g.ColSel(), 2);
    g.setRowSel(9);
    g.setCol(1);
    EXPECT_EQ(g.RowSel(), 3);
    EXPECT_EQ(g.ColSel(), 1);
    // The top row is a body row and may be the last one.
    g.setTopRow(0);
    EXPECT_EQ(g.TopRow(), 1);
    g.setTopRow(50);
    EXPECT_EQ(g.TopRow(), 9);
}

TEST(GridModel, ChangesWhileRedrawIsOffArriveAsOneBatch)
{
    GridModel g(100, 10);
    Recorder rec;
    g.addListener(&rec);

    g.setText(5, 3, QStringLiteral("a"));
    ASSERT_EQ(rec.changes.size(), 1u);
    EXPECT_TRUE(rec.changes[0].has(GridChange::Cells));
    EXPECT_EQ(rec.changes[0].row0, 5);
    EXPECT_EQ(rec.changes[0].col1, 3);

    rec.changes.clear();
    g.setRedraw(false);
    g.setText(7, 2, QStringLiteral("b"));
    g.setBold(40, 8, true);
    g.setRowHeight(20, 0);
    g.setTopRow(30);
    g.setRow(31);
    EXPECT_TRUE(rec.changes.empty());
    g.setRedraw(false);   // already off: still nothing
    g.setRedraw(true);
    ASSERT_EQ(rec.changes.size(), 1u);
    const GridChange& c = rec.changes[0];
    EXPECT_TRUE(c.has(GridChange::Cells));
    EXPECT_TRUE(c.has(GridChange::Heights));
    EXPECT_TRUE(c.has(GridChange::Top));
    EXPECT_TRUE(c.has(GridChange::Cursor));
    EXPECT_TRUE(c.has(GridChange::RedrawOn));
    EXPECT_FALSE(c.has(GridChange::Shape));
    EXPECT_EQ(c.row0, 7);
    EXPECT_EQ(c.row1, 40);
    EXPECT_EQ(c.col0, 2);
    EXPECT_EQ(c.col1, 8);

    // Redraw turning on with nothing pending still says so, once.
    rec.changes.clear();
    g.setRedraw(false);
    g.setRedraw(true);
    ASSERT_EQ(rec.changes.size(), 1u);
    EXPECT_EQ(rec.changes[0].what, unsigned(GridChange::RedrawOn));

    // A shape change is reported as such; a style set to what it was is no change.
    rec.changes.clear();
    g.setRows(50);
    ASSERT_EQ(rec.changes.size(), 1u);
    EXPECT_TRUE(rec.changes[0].has(GridChange::Shape));
    g.setBold(40, 8, false);
    rec.changes.clear();
    g.setBold(40, 8, false);
    EXPECT_TRUE(rec.changes.empty());

    g.removeListener(&rec);
    g.setText(1, 1, QStringLiteral("c"));
    EXPECT_TRUE(rec.changes.empty());
}

TEST(GridModel, HiddenRowsAreSkippedWhenCountingWhatShows)
{
    GridModel g(30, 3);
    g.setVisibleRows(5);
    g.setTopRow(10);
    EXPECT_EQ(g.lastVisibleRow(), 14);
    EXPECT_TRUE(g.RowIsVisible(14));
    EXPECT_FALSE(g.RowIsVisible(15));
    EXPECT_FALSE(g.RowIsVisible(9));
    EXPECT_TRUE(g.RowIsVisible(0));   // the header always shows

    g.setRowHeight(11, 0);
    g.setRowHeight(12, 0);
    EXPECT_EQ(g.RowHeight(11), 0);
    EXPECT_EQ(g.RowHeight(13), GridModel::defaultRowHeight);
    EXPECT_EQ(g.lastVisibleRow(), 16);
    EXPECT_FALSE(g.RowIsVisible(11));
    EXPECT_TRUE(g.RowIsVisible(16));

    // Heights follow their rows when a row above goes.
    g.removeRow(5);
    EXPECT_EQ(g.RowHeight(10), 0);
    EXPECT_EQ(g.RowHeight(12), GridModel::defaultRowHeight);
}

TEST(GridModel, OneWheelNotchScrollsOnePage)
{
    // 101 rows (100 lines), 20 on a page, starting at the top.
    EXPECT_EQ(wheelTopRow(101, 1, 1, 20, -120), 21);
    EXPECT_EQ(wheelTopRow(101, 1, 21, 20, 120), 1);
    EXPECT_EQ(wheelTopRow(101, 1, 5, 20, 120), 1);      // held at the first row
    EXPECT_EQ(wheelTopRow(101, 1, 90, 20, -120), 100);  // the last row becomes the top
    EXPECT_EQ(wheelTopRow(21, 1, 1, 20, -120), 1);      // exactly a page: nowhere to go

    GridModel g(101, 10);
    g.setVisibleRows(20);
    wheelScroll(g, -120);
    wheelScroll(g, -120);
    EXPECT_EQ(g.TopRow(), 41);
    wheelScroll(g, 120);
    EXPECT_EQ(g.TopRow(), 21);
}

} // namespace
} // namespace pelkor::grid
