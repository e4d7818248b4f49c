// Paths: where the program finds what it reads and writes.
//
// The data directory is writable and holds pelkor.ini, merge.ini,
// PelkorParams.mdb and the trace logs (PelkorLogs). It is $PELKOR_HOME when
// that is set, else "pelkor" in the user's data folder. The program
// directory holds read-only resources beside the executable (share/). The
// temporary folder is where pages and working files go.
//
// A Paths value is made once at start and passed to whoever needs it, so a
// test can point everything at a temporary folder.
#pragma once

#include <QString>

namespace pelkor::platform {

struct Paths {
    QString dataDir;     // no trailing separator
    QString programDir;  // read-only resources
    QString tempDir;

    // From the environment: PELKOR_HOME, the user's data folder, the
    // executable's folder, the system's temporary folder.
    static Paths fromEnvironment(const QString& programDir);
    // Everything under one root, for tests.
    static Paths under(const QString& root);

    QString iniFile() const { return dataDir + QStringLiteral("/pelkor.ini"); }
    QString mergeIniFile() const { return dataDir + QStringLiteral("/merge.ini"); }
    QString paramsFile() const { return dataDir + QStringLiteral("/PelkorParams.mdb"); }
    QString logDirectory() const { return dataDir + QStringLiteral("/PelkorLogs"); }
};

} // namespace pelkor::platform
