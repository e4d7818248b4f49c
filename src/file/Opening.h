// Opening: what is decided about a data file before a load writes to it.
//
// Which file an instance opens and what its window is called; whether the
// file is a ledger this instance can work on, found out without writing
// anything (a refused file is left exactly as it was); and the values of
// the parameter database (the current file, the folder the open dialogs
// start in).
#pragma once

#include <QString>

namespace pelkor {

namespace platform { struct Paths; }
class Trace;
struct Instance;

// The window's title and the file label of an instance on filePath: the
// file's short name; a detail child names its selection and conversion.
struct OpenTitles {
    QString caption;
    QString lblFileName;
};
OpenTitles openTitles(const Instance& instance, const QString& filePath);

// Why filePath cannot be opened as a ledger, in words for the user; empty
// when it can. Reads only.
QString ledgerFileProblem(const QString& filePath, Trace& trace);

// A value of PelkorParams.mdb in the data directory ("" when the key is
// missing or the file cannot be read). The file is made on the first start
// on a machine, with the data directory as the open dialogs' folder.
QString readParameter(const platform::Paths& paths, const QString& key, Trace& trace);

} // namespace pelkor
