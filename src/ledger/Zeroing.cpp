#include "ledger/Zeroing.h"

#include "base/Format.h"
#include "base/Instance.h"
#include "file/OpenLedger.h"
#include "file/Schema.h"

namespace pelkor {

void updateIpus(OpenLedger& led, const Instance& inst)
{
    // A child works on lines that have no mark.
    if (inst.progMode == modeNewLines || !led.ipusDate.isValid())
        return;
    const QString proc = QStringLiteral("updateIpus");
    const QString& tb = led.linesTable;
    const QString mark = QString::fromLatin1(schema::ipusMark);
    store::Transaction tx(led.cn);
    if (!led.ipusID.isEmpty())
        led.sql.executeSQL(proc, QStringLiteral("UPDATE %1 set zee = ' ' WHERE id = %2").arg(tb, led.ipusID));
    for (int pass = 0; pass < 2; ++pass) {
        auto rs = led.cn.execute(QStringLiteral("SELECT id FROM %1 WHERE date <= %2 ORDER BY date, Left(kind,1) DESC, "
                                                "Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id")
                                     .arg(tb, formatDateForSQL(led.ipusDate)));
        if (!rs.eof()) {
            rs.moveLast();
            led.ipusID = RemoveNull(rs.field(0));
            led.sql.executeSQL(proc, QStringLiteral("UPDATE %1 set zee = '%2' WHERE id = %3").arg(tb, mark, led.ipusID));
            break;
        }
        // No line on or before the date: the date moves to the first line's.
        auto min = led.cn.execute(QStringLiteral("SELECT min(date) FROM %1").arg(tb));
        const QDate first = min.eof() ? QDate() : min.field(0).toDate();
        if (!first.isValid())
            break;   // no line has a date: no line can bear the mark
        led.ipusDate = first;
    }
    tx.commit();
}

} // namespace pelkor
