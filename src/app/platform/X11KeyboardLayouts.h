// X11KeyboardLayouts: the keyboard layouts of an X11 desktop, through XKB
// on the display connection Qt opened.
//
// The layouts are the keyboard's groups as the root window's
// _XKB_RULES_NAMES property lists them (what setxkbmap and the desktops'
// keyboard settings write), or where it is missing as the keymap's symbols
// name lists them, read again on every call so a change in the desktop's
// settings is seen. The active layout is the locked group
// (XkbGetState); activating one locks its group (XkbLockGroup), the same
// as the desktop's own layout switch. A layout present in two groups is
// reached at the first.
//
// desktopKeyboardLayouts() is what the program uses: this one on the xcb
// platform when a Hebrew and an English group are both configured, else
// the one that does nothing.
#pragma once

#include "seams/platform/KeyboardLayouts.h"

#include <QStringList>

#include <memory>

typedef struct _XDisplay Display;

namespace pelkor {

class X11KeyboardLayouts final : public platform::KeyboardLayouts {
public:
    // The display stays Qt's; it must outlive this object.
    explicit X11KeyboardLayouts(Display* display) : display_(display) {}

    QString active() override;
    bool activate(const QString& id) override;

    // The id of each group's layout, group 0 first ("" for a layout
    // without an id).
    QStringList groups() const;

private:
    Display* display_;
};

// The keyboard layouts of the desktop the program runs on.
std::unique_ptr<platform::KeyboardLayouts> desktopKeyboardLayouts();

} // namespace pelkor
