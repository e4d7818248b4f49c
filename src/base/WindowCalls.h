// WindowCalls: what a room may ask of the main window.
//
// A room works on the parts it is given (the open ledger, the grid, the
// shown state). What only the window can do, it asks through this narrow
// interface, which frmMain implements: tell the view that the shown state
// changed, start a new-line child, end the instance. A test implements it
// with a recorder.
#pragma once

#include "base/Modes.h"

namespace pelkor {

class WindowCalls {
public:
    virtual ~WindowCalls() = default;
    // The shown state (labels, title, enabled, visible) changed.
    virtual void shownChanged() = 0;
    // A load filled the lines and the grid anew.
    virtual void linesLoaded() = 0;
    // Starts a new-line child of this type on the file; its answer comes
    // later, through the window's message checker.
    virtual void openNewDialog(NewLineDialogType type) = 0;
    // A load found nothing to show: tell the user where the mode asks it,
    // and end the instance.
    virtual void handleZeroLines() = 0;
    // Ends the instance in order (temporary tables, parent, settings, host).
    virtual void exitProg() = 0;
    // Reloads the file, landing on the same line (F5, the refresh button).
    virtual void refresh() = 0;
    // The keyboard follows the column: Hebrew for text, English for kinds
    // and sums. Where the desktop cannot switch, nothing happens.
    virtual void keyboardLanguage(bool hebrew) = 0;
    // Ctrl+F: the find window over the current column.
    virtual void showFind() {}
};

} // namespace pelkor
