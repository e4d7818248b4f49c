#include "seams/platform/Sound.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace pelkor::platform {

bool playSound(const QString& path)
{
    if (!QFileInfo(path).isFile())
        return false;
    for (const char* player : {"pw-play", "paplay", "aplay"}) {
        const QString exe = QStandardPaths::findExecutable(QString::fromLatin1(player));
        if (exe.isEmpty())
            continue;
        QStringList args;
        if (QLatin1String(player) == QLatin1String("aplay"))
            args << QStringLiteral("-q");
        args << path;
        return QProcess::startDetached(exe, args);
    }
    return false;
}

} // namespace pelkor::platform
