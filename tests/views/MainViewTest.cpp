// The main window over a loaded ledger: right to left, the lines shown.
#include "app/frmMainView.h"
#include "file/DemoLedger.h"
#include "file/LoadFixture.h"

#include <QAbstractItemModel>
#include <QHeaderView>
#include <QTableView>

using namespace pelkor;
using namespace pelkor::testing;

TEST_F(LoadTest, MainWindowShowsTheLedgerRightToLeft)
{
    generator::generateDemoLedger(file, QDate(2025, 6, 1));
    start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    frmMainView view(*m);
    view.resize(1000, 600);
    view.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(view.windowTitle(), QStringLiteral("פלקור - shop"));
    EXPECT_EQ(view.layoutDirection(), Qt::RightToLeft);
    auto* table = view.findChild<QTableView*>();
    ASSERT_NE(table, nullptr);
    ASSERT_EQ(table->model()->rowCount(), int(m->lines.size()));
    // The first column (the kind) stands at the right edge.
    const int x0 = table->columnViewportPosition(0);
    const int x1 = table->columnViewportPosition(1);
    EXPECT_GT(x0, x1);
    EXPECT_EQ(table->model()->headerData(colKind - 1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("סיווג"));
}
