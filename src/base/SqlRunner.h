// executeSQL: the one road by which a window's change reaches the data file.
//
// It marks the file changed (a child instance tells its parent so at exit),
// traces the statement and runs it on the window's connection. A failure
// reaches the caller as a StoreError, as every caller expects.
#pragma once

#include "seams/store/Recordset.h"

#include <QString>

namespace pelkor::store { class Connection; }

namespace pelkor {

class Trace;

class SqlRunner {
public:
    SqlRunner(store::Connection& cn, Trace& trace) : cn_(cn), trace_(trace) {}

    store::Recordset executeSQL(const QString& proc, const QString& sql);

    bool fileChanged = false;

private:
    store::Connection& cn_;
    Trace& trace_;
};

} // namespace pelkor
