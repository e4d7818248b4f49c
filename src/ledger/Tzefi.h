// Tzefi: forecast lines in the main grid.
//
// A forecast line (isTzefi, column IndTzefi) counts in the balance like any
// line until the real movement comes; then the real line's sum is taken
// from it and the forecast stays for the rest, never below 0, also when it
// reaches 0. relate says how a line takes part in the synchronisation with
// movements imported from outside: 0 not at all, -1 taken into account (F4
// on a line that is no forecast), 99 a forecast the import takes movements
// down from (frmTzefi). A line whose relate is not 0 has the yellow kind
// cell; the non-zero sum of a forecast line is blue and bold (file/Display
// paints both from the record, and the cursor's cell keeps its own colours).
//
// On the unsaved new line the statements are not run: its record carries
// the change until the line is written.
//
// Not here: the pick page (TzefiPage) and the dialogs (TzefiDialogs).
#pragma once

#include "ledger/LedgerEditor.h"
#include "ledger/TzefiPage.h"

#include <functional>
#include <vector>

namespace pelkor {

// F4 on the grid (no editor open): relate -1 becomes 0 and 0 becomes -1 on
// a line that is no forecast, each with its message under "פלקור"; a
// forecast line and relate 99 stay as they are, silently. onNewLine: the
// cursor is on the unsaved new line (no statement runs; the message comes).
void toggleRelate(EditParts& parts, bool onNewLine);

class Tzefi {
public:
    // reconnect closes and reopens the window's connection (closeCn,
    // reopenCon), so that a child sees what other processes wrote.
    Tzefi(EditParts parts, LedgerEditor& editor, std::function<void()> reconnect)
        : p_(parts), editor_(editor), reconnect_(std::move(reconnect))
    {
    }

    // The forecast dialog on the current line; nothing on row 0.
    void cmdTzefi_Click();
    // Takes the current line's sum from a forecast line the user picks.
    void cmdSubtractFromTzefi_Click();

    // The candidates for a line of this direction: forecast lines dated
    // after the zeroing date, at most 1001. From lines, in their order; in
    // a child of type 1 (whose grid holds other lines), from the file.
    std::vector<TzefiCandidate> collectTzefiLines(bool isIncome);

    // The grid's font, named in the pick page (set by the window's view).
    QString gridFontName = QStringLiteral("Arial");

    // The last dialogs' answers, as the window keeps them.
    bool wasTzefiChecked = false;
    bool wasHashavshevetChecked = false;
    bool didCancelTzefi = false;
    int rwIndex = -1;

private:
    bool isTypeOneChild() const;
    void exec(const QString& proc, const QString& sql, bool onNewLine);
    // Takes sumToSubtract from candidate t: the grid's cell too when t is a
    // line of the grid.
    void subtractFrom(const TzefiCandidate& t, bool isIncome, double sumToSubtract);

    EditParts p_;
    LedgerEditor& editor_;
    std::function<void()> reconnect_;
};

} // namespace pelkor
