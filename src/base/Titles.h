// The titles the program's message boxes carry.
#pragma once

#include <QString>

namespace pelkor {

inline const QString errorTitle = QStringLiteral("שגיאה");
inline const QString pelkorTitle = QStringLiteral("פלקור");

} // namespace pelkor
