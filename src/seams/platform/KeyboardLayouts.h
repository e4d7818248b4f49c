// KeyboardLayouts: the desktop's keyboard layouts, as far as the program
// needs them: which layout is active, and making another one active.
//
// A layout is named by an eight-digit id: "0000040d" Hebrew, "00000409"
// English, and the same form for the few other languages a desktop may
// have besides them (so the layout active at start can be restored).
// active() gives "" for a layout it cannot name; activate() gives false
// where the desktop has no such layout or cannot switch. Neither fails in
// any other way: a layout that will not switch is no error.
//
// The real one lives with the windows (app/platform); noKeyboardLayouts()
// is the one for a desktop that offers nothing (Wayland without a portal, a
// single layout, the offscreen platform). The XKB names below are plain
// text work, here so the core's tests reach them.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <memory>

namespace pelkor::platform {

class KeyboardLayouts {
public:
    virtual ~KeyboardLayouts() = default;
    // The active layout's id, "" when unknown.
    virtual QString active() = 0;
    // Makes the layout `id` active; false when there is none or it failed.
    virtual bool activate(const QString& id) = 0;
};

// Does nothing: active() is "", activate() false.
std::unique_ptr<KeyboardLayouts> noKeyboardLayouts();

// The id of an XKB layout ("il", "us", "gb", "il(phonetic)", "us:1"), ""
// for one not in the table.
QString xkbLayoutId(QStringView xkbLayout);

// The layouts of the keyboard's groups, group 0 first, from the value of
// the root window's _XKB_RULES_NAMES property: rules, model, layouts,
// variants and options, each ended by a NUL; the layouts are a comma list.
QStringList xkbRulesLayouts(const QByteArray& rulesNames);

// The layouts of the groups from a keymap's symbols name, for a server
// without that property: "pc+us+il:2+inet(evdev)" is us in group 0 and il
// in group 1. After the base ("pc"), the first part without a group
// number is group 0's layout; a part with ":n" is group n-1's; the other
// parts (inet, group, ctrl...) are options, not layouts.
QStringList xkbSymbolsLayouts(QStringView symbols);

} // namespace pelkor::platform
