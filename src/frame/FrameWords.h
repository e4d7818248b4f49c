// The words the main window shows or sends in more than one place.
#pragma once

#include "base/Titles.h"

#include <QString>

namespace pelkor::frameWords {

inline const QString& title = pelkorTitle;
// A new-line child's answers to its parent, and the parent's caption
// while it waits for one.
inline const QString okWord = QStringLiteral("pelkor OK");
inline const QString closedWord = QStringLiteral("pelkor CLOSED");
inline const QString waitingWord = QStringLiteral("pelkor messages");

} // namespace pelkor::frameWords
