// Find: the search over one column of the main grid.
//
// The search looks at the cells as they stand on the screen, from the row
// it reached last, forward or back, and wraps round once after asking.
// With onlyBelowRed it never looks above the red line, also after a wrap.
// A hit puts the cursor on the cell as a user's move would (the cell left
// is committed first). The same engine serves the reconciliation's search
// for a partner, which skips confirmed rows and compares references by
// their last digits (isTextFind false).
//
// isFindMatch compares without case, and reads numbers in their other
// forms: "1234.5" finds 1,234.50, and "-100" finds 100.00-.
#pragma once

#include "ledger/LedgerEditor.h"

#include <QString>

#include <functional>

namespace pelkor {

struct FindState {
    bool everOpened = false;
    bool findInMainGrid = true;
    int findCol = -1;
    int findRow = 0;
    QString findText;
    bool onlyBelowRed = true;
    bool hasWrapped = false;
};

class Finder {
public:
    Finder(EditParts parts, LedgerEditor& editor, FindState& state);

    // showFind: in the columns from kind to type, the search starts from
    // the current cell; true when the find window should show.
    bool showFind();
    // Searches on; false when the search ended without a hit (told to the
    // user) or was given up at the wrap question (the window closes).
    enum class Outcome { Hit, NotFound, GivenUp };
    Outcome doFind(bool forward, bool isTextFind);

    static bool isFindMatch(const QString& cell, const QString& sought);

    // The other grid a reconciliation's search may look in (findInMainGrid
    // false): its model, the row above its red line, and what a hit there
    // does besides moving its cursor. Null: none.
    struct OtherGrid {
        grid::GridModel* model = nullptr;
        std::function<int()> rowAboveRed;
        std::function<void()> entered;
    };
    void setOtherGrid(OtherGrid other) { other_ = std::move(other); }
    static QString signToFront(const QString& s);

private:
    void reportNotFound(bool isTextFind, const QString& text);

    grid::GridModel& searched();
    EditParts p_;
    LedgerEditor& editor_;
    FindState& s_;
    OtherGrid other_;
};

} // namespace pelkor
