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
namespace ui { class Ui; }
class Trace;
struct Instance;

// The window's title and the file label of an instance on filePath: the
// file's short name; a detail child names its selection and conversion.
struct OpenTitles {
    QString caption;
    QString lblFileName;
};
OpenTitles openTitles(const Instance& instance, const QString& filePath);

// Whether filePath can be opened for work, found out before anything is
// written: a file that is missing, is no database, holds no ledger, or
// cannot be written is refused with words that say which (problem). A
// damaged ledger is left untouched; the user is offered to save what can
// be read of it into a new file beside it, which is then the file to open
// (path). Asks through ui only for that offer.
struct LedgerFileCheck {
    QString path;       // the file to open: filePath, or the saved copy
    QString problem;    // not empty: refused, and why
};
LedgerFileCheck checkLedgerFile(const QString& filePath, ui::Ui& ui, Trace& trace);

// Where the readable part of a damaged file is saved: beside it, under a
// name that does not exist yet.
QString salvageName(const QString& filePath);

// A value of PelkorParams.mdb in the data directory ("" when the key is
// missing or the file cannot be read). The file is made on the first start
// on a machine, with the data directory as the open dialogs' folder.
QString readParameter(const platform::Paths& paths, const QString& key, Trace& trace);

} // namespace pelkor
