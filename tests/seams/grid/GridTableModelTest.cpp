// The grid as Qt's views read it: headers from the fixed row and column,
// colours and bold through the roles, and the grid's batches as Qt's
// change signals.
#include "seams/grid/GridTableModel.h"

#include "file/LoadFixture.h"

#include <QColor>
#include <QFont>
#include <gtest/gtest.h>

#include "QtPrinters.h"

namespace pelkor::grid {
namespace {

class GridTableModelTest : public ::testing::Test {
protected:
    void SetUp() override { pelkor::testing::ensureApplication(); }
};

TEST_F(GridTableModelTest, FixedRowAndColumnAreHeadersAndCellsMapPastThem)
{
    GridModel g(4, 5, 1, 1);
    GridTableModel m(g);
    EXPECT_EQ(m.rowCount(), 3);
    EXPECT_EQ(m.columnCount(), 4);

    g.setText(0, 2, QStringLiteral("סיווג"));
    g.setStyle(0, 1, 4, CellStyle{0xC08080, 0xFFFFFF, false});   // 128,128,192 with white text
    g.setText(2, 0, QStringLiteral("o"));
    g.setText(2, 3, QStringLiteral("50.00-"));
    g.setStyle(2, 3, CellStyle{0x99FFFF, 0x0000FF, true});

    EXPECT_EQ(m.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("סיווג"));
    EXPECT_EQ(m.headerData(1, Qt::Horizontal, Qt::BackgroundRole).value<QColor>(), QColor(128, 128, 192));
    EXPECT_EQ(m.headerData(1, Qt::Horizontal, Qt::ForegroundRole).value<QColor>(), QColor(255, 255, 255));
    EXPECT_EQ(m.headerData(1, Qt::Vertical, Qt::DisplayRole).toString(), QStringLiteral("o"));
    EXPECT_TRUE(m.headerData(0, Qt::Vertical, Qt::DisplayRole).toString().isEmpty());

    const QModelIndex i = m.index(1, 2);
    EXPECT_EQ(m.indexOf(2, 3), i);
    EXPECT_EQ(m.data(i, Qt::DisplayRole).toString(), QStringLiteral("50.00-"));
    EXPECT_EQ(m.data(i, Qt::BackgroundRole).value<QColor>(), QColor(255, 255, 153));
    EXPECT_EQ(m.data(i, Qt::ForegroundRole).value<QColor>(), QColor(255, 0, 0));
    EXPECT_TRUE(m.data(i, Qt::FontRole).value<QFont>().bold());
    EXPECT_FALSE(m.data(m.index(0, 0), Qt::FontRole).isValid());   // not bold: the view's own font
    EXPECT_FALSE(m.indexOf(0, 3).isValid());
}

TEST_F(GridTableModelTest, ABatchArrivesAsOneSignalAndFixedCellsAsHeaderChanges)
{
    GridModel g(50, 10, 1, 1);
    GridTableModel m(g);
    std::vector<std::pair<QModelIndex, QModelIndex>> data;
    std::vector<std::tuple<Qt::Orientation, int, int>> headers;
    int resets = 0, tops = 0, heights = 0, redrawn = 0;
    QObject::connect(&m, &QAbstractItemModel::dataChanged, [&](const QModelIndex& a, const QModelIndex& b) { data.emplace_back(a, b); });
    QObject::connect(&m, &QAbstractItemModel::headerDataChanged, [&](Qt::Orientation o, int a, int b) { headers.emplace_back(o, a, b); });
    QObject::connect(&m, &QAbstractItemModel::modelReset, [&] { ++resets; });
    QObject::connect(&m, &GridTableModel::topRowChanged, [&] { ++tops; });
    QObject::connect(&m, &GridTableModel::rowHeightsChanged, [&] { ++heights; });
    QObject::connect(&m, &GridTableModel::redrawn, [&] { ++redrawn; });

    g.setRedraw(false);
    for (int r = 5; r <= 9; ++r)
        g.setText(r, 4, QStringLiteral("x"));
    g.setBackColor(12, 6, 0xFF);
    g.setTopRow(8);
    g.setRowHeight(3, 0);
    EXPECT_TRUE(data.empty());
    g.setRedraw(true);
    ASSERT_EQ(data.size(), 1u);
    EXPECT_EQ(data[0].first, m.index(4, 3));    // grid (5, 4)
    EXPECT_EQ(data[0].second, m.index(11, 5));  // grid (12, 6)
    EXPECT_TRUE(headers.empty());
    EXPECT_EQ(tops, 1);
    EXPECT_EQ(heights, 1);
    EXPECT_EQ(redrawn, 1);
    EXPECT_EQ(resets, 0);

    // The "o" of the fixed column and a caption are header changes only.
    data.clear();
    g.setText(7, 0, QStringLiteral("o"));
    g.setText(0, 9, QStringLiteral("יתרה"));
    EXPECT_TRUE(data.empty());
    ASSERT_EQ(headers.size(), 2u);
    EXPECT_EQ(headers[0], std::make_tuple(Qt::Vertical, 6, 6));
    EXPECT_EQ(headers[1], std::make_tuple(Qt::Horizontal, 8, 8));
}

TEST_F(GridTableModelTest, AShapeChangeWhileRedrawIsOffIsOneResetAtTheEnd)
{
    GridModel g(10, 10, 1, 1);
    GridTableModel m(g);
    int resets = 0;
    QObject::connect(&m, &QAbstractItemModel::modelReset, [&] { ++resets; });
    g.setRedraw(false);
    g.clear();
    g.setRows(1001);
    g.setCols(9);
    // A view that paints meanwhile still sees the shape it was told of.
    EXPECT_EQ(m.rowCount(), 9);
    EXPECT_EQ(m.columnCount(), 9);
    EXPECT_EQ(resets, 0);
    g.setRedraw(true);
    EXPECT_EQ(resets, 1);
    EXPECT_EQ(m.rowCount(), 1000);
    EXPECT_EQ(m.columnCount(), 8);
}

TEST_F(GridTableModelTest, FigureColumnsAlignOnTheNumbersEdgeAndKeepTheirBold)
{
    GridModel g(4, 5, 1, 1);
    g.setColAlignment(3, Align::Left);   // how the logic aligns its sums
    GridTableModel m(g);
    std::vector<QModelIndex> changed;
    QObject::connect(&m, &QAbstractItemModel::dataChanged, [&](const QModelIndex& a, const QModelIndex& b) {
        changed.push_back(a);
        changed.push_back(b);
    });
    m.setFigureColumns({3, 4});
    // Views repaint what they had drawn with the old alignment.
    ASSERT_EQ(changed.size(), 2u);
    EXPECT_EQ(changed[1], m.index(2, 3));

    g.setText(2, 3, QStringLiteral("50.00-"));
    g.setStyle(2, 3, CellStyle{0x0000FF, 0x0000FF, true});   // over the credit: red and bold
    const QModelIndex sum = m.indexOf(2, 3);
    EXPECT_TRUE(m.data(sum, GridTableModel::FigureRole).toBool());
    EXPECT_EQ(m.data(sum, Qt::TextAlignmentRole).toInt(), int(Qt::AlignAbsolute | Qt::AlignRight | Qt::AlignVCenter));
    EXPECT_TRUE(m.data(sum, Qt::FontRole).value<QFont>().bold());
    EXPECT_FALSE(m.data(m.indexOf(1, 4), Qt::FontRole).value<QFont>().bold());

    // Other columns keep the grid's alignment; the header row is no figure.
    EXPECT_FALSE(m.data(m.indexOf(2, 2), GridTableModel::FigureRole).toBool());
    EXPECT_FALSE(m.data(m.indexOf(2, 2), Qt::TextAlignmentRole).isValid());
    EXPECT_FALSE(m.headerData(2, Qt::Horizontal, Qt::TextAlignmentRole).isValid());
}

} // namespace
} // namespace pelkor::grid
