// A working run on a ledger made from SQL, and the cursor moved as a click
// moves it: the commit of the cell left, then the cell entered.
#pragma once

#include "file/LoadFixture.h"
#include "ledger/LedgerEditor.h"
#include "seams/grid/GridModel.h"

namespace pelkor::testing {

class GridTest : public LoadTest {
protected:
    frmMain& openOn(const QString& linesSql, const QString& rules)
    {
        makeLedger(linesSql);
        frmMain& f = start({QStringLiteral("open"), file}, rules);
        EXPECT_FALSE(f.ended());
        return f;
    }
    grid::GridModel& g() { return m->mainGrid().msfgMain; }
    LedgerEditor& ed() { return m->editor(); }
    void go(int row, int col)
    {
        ed().msfgMainLeaveCell();
        g().setRow(row);
        g().setCol(col);
        ed().msfgMain_EnterCell();
    }
    // Typing into a cell: the editor opened on it, its text replaced, Enter.
    void type(int row, int col, const QString& text)
    {
        go(row, col);
        ed().GridEdit(QLatin1Char('^'));
        ed().txtCell_Change(text, int(text.size()), 0);
        ed().txtCell_KeyDown(Qt::Key_Return, Qt::NoModifier);
    }
};

} // namespace pelkor::testing
