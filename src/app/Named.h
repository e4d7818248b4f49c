// Named: a widget given its control's name as its object name, so that
// scripts and tests find it by the name the logic uses.
//
// What a screen reader says is what the user sees, never that name: a
// button, a check box and a label are read by their caption or text (Qt's
// own accessible name for them), and a control without one is given a
// Hebrew name that says what it is (spoken(), or spokenAmount() for a
// label that shows a sum).
#pragma once

#include <QString>
#include <QWidget>

namespace pelkor {

template <class W>
W* named(W* w, const QString& name)
{
    w->setObjectName(name);
    return w;
}

// named(), with the Hebrew a screen reader says for a control that shows
// no caption of its own (a grid, an edit box, a picture).
template <class W>
W* named(W* w, const QString& name, const QString& spoken)
{
    w->setObjectName(name);
    w->setAccessibleName(spoken);
    return w;
}

} // namespace pelkor
