#include "base/SqlRunner.h"

#include "base/Trace.h"
#include "seams/store/Connection.h"

namespace pelkor {

store::Recordset SqlRunner::executeSQL(const QString& proc, const QString& sql)
{
    fileChanged = true;
    trace_.traceLine(proc, sql);
    return cn_.execute(sql);
}

} // namespace pelkor
