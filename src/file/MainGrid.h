// MainGrid: the main grid as the logic holds it.
//
// The grid model the view paints, what the cursor left in it, where a
// reload lands, and the totals shown under it. file/Display draws into it;
// the view reports the cursor's moves and reads it.
#pragma once

#include "file/Display.h"
#include "seams/grid/GridModel.h"

#include <QString>

namespace pelkor {

struct MainGrid {
    grid::GridModel msfgMain;
    CursorMarks msfgMainMarks;
    long long balancingLineID = -1;  // a new-line child's balancing line; -1 none
    QString lblTotalIncome, lblTotalExpense;
    int row = 1;                     // msfgMain.Row as the window last saw it
    int topRow = 1;                  // msfgMain.TopRow
    int visibleRows = 20;            // how many rows the view shows (set by the view)
    // Where a reload lands: the line's id and its distance from the top row.
    QString theID;
    int theOffset = 0;
};

} // namespace pelkor
