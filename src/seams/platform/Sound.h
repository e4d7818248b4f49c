// Sound: a short sound file played by the desktop's own player, without
// waiting for it. The player is the first of pw-play, paplay and aplay on
// the PATH; where there is none the sound is not heard, and nothing else
// changes.
#pragma once

#include <QString>

namespace pelkor::platform {

// False when the file is missing or no player could be started.
bool playSound(const QString& path);

} // namespace pelkor::platform
