#include "transfer/MoveDates.h"

#include "base/Format.h"
#include "file/OpenLedger.h"
#include "seams/store/Connection.h"
#include "seams/ui/Ui.h"

#include <cmath>

namespace pelkor::transfer {

QDate moveDate(const QDate& d, int n)
{
    if (!d.isValid())
        return d;
    if (d.addDays(1).month() == d.month())
        return d.addMonths(n);   // Qt cuts to the last day of a shorter month
    // The last day of its month: the first of the month, n + 1 months on,
    // less a day.
    return QDate(d.year(), d.month(), 1).addMonths(n + 1).addDays(-1);
}

MovedDates moveAllDates(OpenLedger& led, int skipLast, const QString& feedPath, int n)
{
    MovedDates moved;
    {
        store::Transaction tx(led.cn);
        const int count = int(led.lines.size()) - std::max(0, skipLast);
        for (int i = 0; i < count; ++i) {
            const Line& l = led.lines[size_t(i)];
            if (!l.Date.isValid() || l.Date == nullDate())
                continue;
            led.sql.executeSQL(QStringLiteral("mnuMoveDates_Click"),
                               QStringLiteral("UPDATE %1 set [date] = %2 WHERE id = %3")
                                   .arg(led.linesTable, formatDateForSQL(moveDate(l.Date, n)), l.Id));
            ++moved.lines;
        }
        tx.commit();
    }
    store::Connection feed;
    feed.open(feedPath);
    store::Transaction tx(feed);
    auto rs = feed.execute(QStringLiteral("SELECT [date],transactionID FROM demoOsh"));
    for (; !rs.eof(); rs.moveNext()) {
        const QDate d = rs.field(0).toDate();
        if (!d.isValid())
            continue;
        feed.execute(QStringLiteral("UPDATE demoOsh set [date] = %1 WHERE transactionID = %2")
                         .arg(formatDateForSQL(moveDate(d, n)), RemoveNull(rs.field(1))));
        ++moved.feedRows;
    }
    tx.commit();
    return moved;
}

void mnuMoveDates_Click(MoveDatesParts& p)
{
    const QString title = QStringLiteral("הזזת תאריכים");
    int n = 0;
    for (;;) {
        const auto answer = p.ui.inputBox(QStringLiteral("מספר חודשים"), title, QStringLiteral("1"));
        if (!answer || answer->trimmed().isEmpty())
            return;
        bool ok = false;
        const double x = answer->trimmed().toDouble(&ok);
        // Past a thousand years no calendar date is left to move to.
        if (!ok || std::abs(x) > 12000) {
            p.ui.msgBox(QStringLiteral("מספר לא חוקי"), QStringLiteral("שגיאה"));
            continue;
        }
        if (x != double(qRound64(x))) {
            p.ui.msgBox(QStringLiteral("מספר לא שלם"), QStringLiteral("שגיאה"));
            continue;
        }
        n = int(x);
        break;
    }
    if (p.refresh)
        p.refresh();
    moveAllDates(p.ledger, p.hasNewLine && p.hasNewLine() ? 1 : 0, p.feedPath, n);
    p.ui.msgBox(QStringLiteral("התאריכים הוזזו בהצלחה"), title);
}

} // namespace pelkor::transfer
