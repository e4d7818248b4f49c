#include "seams/platform/Paths.h"

#include <QDir>
#include <QStandardPaths>

namespace pelkor::platform {

Paths Paths::fromEnvironment(const QString& programDir)
{
    Paths p;
    const QString home = qEnvironmentVariable("PELKOR_HOME");
    if (!home.isEmpty()) {
        p.dataDir = QDir::cleanPath(home);
    } else {
        const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        p.dataDir = QDir::cleanPath((base.isEmpty() ? QDir::homePath() + QStringLiteral("/.local/share") : base)
                                    + QStringLiteral("/pelkor"));
    }
    p.programDir = QDir::cleanPath(programDir);
    p.tempDir = QDir::cleanPath(QDir::tempPath());
    return p;
}

Paths Paths::under(const QString& root)
{
    Paths p;
    p.dataDir = QDir::cleanPath(root + QStringLiteral("/data"));
    p.programDir = QDir::cleanPath(root + QStringLiteral("/program"));
    p.tempDir = QDir::cleanPath(root + QStringLiteral("/temp"));
    return p;
}

} // namespace pelkor::platform
