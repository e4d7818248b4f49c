// The main grid as painted: sums lined up on their decimal points, the
// current cell in the colours the logic gave it, and the description's
// width in a narrow window. Read from the pixels the view paints.
#include "ViewFixture.h"

#include "file/Display.h"
#include "seams/grid/GridTableModel.h"

#include <QFontMetricsF>
#include <QHeaderView>
#include <QScrollBar>

using namespace pelkor;
using namespace pelkor::testing;
using pelkor::grid::toQColor;

namespace {

class GridPaintTest : public DemoWindowTest {
protected:
    grid::GridModel& g() { return m->mainGrid().msfgMain; }
    grid::GridTableModel& model() { return *static_cast<grid::GridTableModel*>(table->model()); }
    // The cell of grid row r, column c, less its borders.
    QRect cell(int r, int c) { return table->visualRect(model().indexOf(r, c)).adjusted(2, 2, -2, -2); }
};

} // namespace

TEST_F(GridPaintTest, SumsAndBalancesAreFiguresOthersAreNot)
{
    for (int c : {colIn, colOut, colBalance}) {
        const QModelIndex i = model().indexOf(2, c);
        EXPECT_TRUE(i.data(grid::GridTableModel::FigureRole).toBool()) << c;
        EXPECT_EQ(i.data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignAbsolute | Qt::AlignRight | Qt::AlignVCenter)) << c;
    }
    for (int c : {colKind, colDate, colDetail, colType})
        EXPECT_FALSE(model().indexOf(2, c).data(grid::GridTableModel::FigureRole).toBool()) << c;
    // The caption above the sums is no figure.
    EXPECT_FALSE(model().headerData(colIn - 1, Qt::Horizontal, Qt::TextAlignmentRole).isValid());

    // Whatever font the view has, the figures' digits are all of one width.
    const QFontMetricsF fm(model().figureFont());
    for (char d = '1'; d <= '9'; ++d)
        EXPECT_DOUBLE_EQ(fm.horizontalAdvance(QLatin1Char(d)), fm.horizontalAdvance(QLatin1Char('0'))) << d;
}

TEST_F(GridPaintTest, SumsOfAColumnStandOnOneDecimalPoint)
{
    g().setTopRow(1);
    g().setText(2, colIn, QStringLiteral("1,234.50"));
    g().setText(3, colIn, QStringLiteral("1,234.50-"));
    g().setText(4, colIn, QStringLiteral("34.50"));
    QCoreApplication::processEvents();
    const QImage img = painted(table);
    const auto [positiveLeft, positiveRight] = inkColumns(img, cell(2, colIn));
    const auto [negativeLeft, negativeRight] = inkColumns(img, cell(3, colIn));
    const auto [shortLeft, shortRight] = inkColumns(img, cell(4, colIn));
    ASSERT_GE(positiveLeft, 0);
    // Right ends on one edge, however many digits.
    EXPECT_EQ(shortRight, positiveRight);
    EXPECT_GT(shortLeft, positiveLeft);
    // A negative's minus stands out to the right; its digits stay in line.
    EXPECT_EQ(negativeLeft, positiveLeft);
    EXPECT_GT(negativeRight, positiveRight + 1);
    // Left to right: the minus is the last thing painted, at the cell's edge.
    EXPECT_GT(negativeRight, cell(3, colIn).right() - 6);
}

TEST_F(GridPaintTest, TheCurrentCellShowsTheLogicsColoursNotTheSelection)
{
    g().setTopRow(1);
    QCoreApplication::processEvents();
    // The user clicks the income of line 4: the view selects it, the logic colours it.
    table->setFocus();
    table->setCurrentIndex(model().indexOf(5, colIn));
    QCoreApplication::processEvents();
    ASSERT_EQ(g().Row(), 5);
    ASSERT_EQ(g().Col(), colIn);
    ASSERT_TRUE(table->selectionModel()->isSelected(model().indexOf(5, colIn)));
    ASSERT_EQ(toQColor(g().backColor(5, colIn)), QColor(1, 0, 0));

    const QImage img = painted(table);
    // Left of the sum, clear of its text and of the focus frame.
    const QRect current = cell(5, colIn);
    EXPECT_EQ(QColor(img.pixel(current.left() + 4, current.center().y())), QColor(1, 0, 0));
    // Its text in white.
    int white = 0;
    for (int x = current.left(); x <= current.right(); ++x)
        white += qGray(img.pixel(x, current.center().y())) > 200;
    EXPECT_GT(white, 3);
    // The cell beside it keeps the row's colour.
    const QRect next = cell(5, colOut);
    EXPECT_EQ(QColor(img.pixel(next.left() + 4, next.center().y())), toQColor(g().backColor(5, colOut)));

    // A selection stretched a row down: the cell below shows it, tinted but
    // still in its own colour's neighbourhood; the cursor's cell is unchanged.
    g().setRowSel(6);
    QCoreApplication::processEvents();
    const QImage stretched = painted(table);
    const QRect below = cell(6, colIn);
    const QColor own = toQColor(g().backColor(6, colIn));
    const QColor shown(stretched.pixel(below.left() + 4, below.center().y()));
    EXPECT_NE(shown, own);
    EXPECT_NE(shown, table->palette().color(QPalette::Active, QPalette::Highlight));
    EXPECT_LT(std::abs(shown.lightness() - own.lightness()), 80);
    EXPECT_EQ(QColor(stretched.pixel(current.left() + 4, current.center().y())), QColor(1, 0, 0));
}

TEST_F(GridPaintTest, ANarrowWindowScrollsSidewaysAndKeepsTheDescriptionReadable)
{
    const int detail = colDetail - 1, type = colType - 1;
    // Wide: the description fills what the others leave, nothing to scroll.
    EXPECT_EQ(table->horizontalHeader()->length(), table->viewport()->width());
    EXPECT_EQ(table->horizontalScrollBar()->maximum(), 0);
    const int typeWidth = table->columnWidth(type);
    const int wide = table->columnWidth(detail);

    view->resize(480, 600);
    QCoreApplication::processEvents();
    const int narrow = table->columnWidth(detail);
    EXPECT_LT(narrow, wide);
    EXPECT_GE(narrow, 20 * table->fontMetrics().averageCharWidth());
    EXPECT_EQ(table->columnWidth(type), typeWidth);
    EXPECT_GT(table->horizontalScrollBar()->maximum(), 0);

    view->resize(1000, 600);
    QCoreApplication::processEvents();
    EXPECT_EQ(table->columnWidth(detail), wide);
    EXPECT_EQ(table->horizontalScrollBar()->maximum(), 0);
}
