// Placement: where a window first shows.
//
// A window opens centred on its owner, the window it was opened from, and
// whole on the owner's screen; without an owner that shows, centred on
// the screen. A desktop without a window manager (or one that leaves
// placing to the program) would otherwise put it at the screen's corner.
#pragma once

class QWidget;

namespace pelkor {

// Moves w (not yet shown, or shown) so that its centre is its owner's.
void centreOn(QWidget& w, const QWidget* owner);

// A report window's first showing: width by height, or at most nine tenths
// of its owner's screen, centred on its owner, then shown.
void showSized(QWidget& w, int width, int height);

} // namespace pelkor
