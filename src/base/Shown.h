// Shown: what the main window shows besides its grid.
//
// The title, the labels, the menu checks and whether the window, its grid
// and its buttons are shown and enabled. The logic writes these and then
// tells the window (WindowCalls::shownChanged); the view mirrors them and
// decides nothing. A room changes only the fields of its own concern.
#pragma once

#include <QRect>
#include <QString>

namespace pelkor {

struct Shown {
    QString caption;                 // the window's title
    QString lblStatus;
    QString lblFileName;             // the file's short name, or a detail child's selection
    QString lblNewLines;             // what a new-line child asks of its user
    bool visible = false;
    bool enabled = true;
    bool gridVisible = true;
    bool frameButtonsEnabled = true;
    bool mnuCreateLogFileChecked = false;
    bool mnuAutomaticBankCoordinationChecked = false;
    bool mnuMoveDatesVisible = false;
    QRect ltrb;                      // where the outer host placed the window; null: not placed
};

} // namespace pelkor
