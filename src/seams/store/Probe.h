// Probe: what a file is, found out without writing anything, not even
// beside it.
//
// A ledger is opened for work only after the probe says it is one. The
// probe reads the file as it stands on disk (no locks, no journal files
// made beside it), so a refused file is left exactly as it was found, and
// a file another process holds is probed without waiting for it. It looks
// as far as is cheap: the file's length against its header, the schema,
// and every page of every table walked; damage inside a row is met by the
// statement that reads it.
//
// salvage() copies what can still be read of a damaged database into a
// new file: SQLite's own recovery where the sqlite3 shell is at hand, else
// row by row, table by table, up to the damage and back from the end.
#pragma once

#include <QString>
#include <QStringList>

namespace pelkor::store {

enum class FileKind {
    Missing,       // no such file, or not a plain file
    NotDatabase,   // empty, or not an SQLite database at all
    Damaged,       // an SQLite database whose pages do not all read
    Database,      // a whole database
};

struct ProbeResult {
    FileKind kind = FileKind::Missing;
    QStringList tables;   // Database: its tables
    QString detail;       // what the engine said, for the trace
};

ProbeResult probe(const QString& path);

// Why the file cannot be written, or "" when it can: a read-only file
// system, a folder this user may not write in (the engine keeps its
// journal beside the file), a read-only file.
enum class WriteBlock { None, FileSystem, Folder, File };
WriteBlock writeBlock(const QString& path);

// Copies what can be read of the database at from into a new database at
// to (which must not exist). The copy is made under a temporary name and
// renamed into place at the end: a failure leaves no half-made file.
// Returns how many rows were saved, or -1 (with why) when nothing could be.
struct SalvageResult {
    long rows = -1;
    QString why;
};
SalvageResult salvage(const QString& from, const QString& to);

} // namespace pelkor::store
