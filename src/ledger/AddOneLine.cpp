#include "ledger/AddOneLine.h"

#include "base/Format.h"
#include "file/Lines.h"
#include "file/OpenLedger.h"
#include "ledger/Zeroing.h"

namespace pelkor {

namespace {
QString orBlank(const QString& s) { return s.isEmpty() ? QStringLiteral(" ") : s; }
} // namespace

void turnToSide(Line& L, bool isIncome, const Catalogue& c)
{
    (isIncome ? L.out : L.In) = 0;
    const QChar sign = isIncome ? QLatin1Char('+') : QLatin1Char('-');
    L.kind = L.kind.isEmpty() ? QString(sign) + QLatin1Char('0') : sign + L.kind.mid(1);
    if (const TypeRec* t = c.findType(L.Type); t && t->isIncome != isIncome)
        L.Type = isIncome ? c.typeName1 : c.typeName2;
}

QString sqlSum(double v)
{
    // Fifteen digits keep every sum a ledger holds exact and never turn to
    // an exponent below a million billion.
    return QString::number(v, 'g', 15);
}

QString newLineInsert(const QString& table, const Line& L, int typeNum)
{
    const QString memo = L.Memo.isEmpty() ? colorWords().last() : L.Memo;
    return QStringLiteral("INSERT into %1([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) "
                          "Values('%2',%3,'%4','%5',%6,%7,%8,' ','%9')")
        .arg(table, fixString(L.kind), formatDateForSQL(L.Date), fixString(orBlank(L.confirm)), fixString(orBlank(L.detail)),
             sqlSum(L.In), sqlSum(L.out), QString::number(typeNum), QLatin1String(newLinePrefix) + memo);
}

void writeLine(OpenLedger& led, const Instance& inst, Line& L, int typeNum, const QString& proc)
{
    const QDate ipusDate = led.ipusDate;
    const QString ipusID = led.ipusID;
    try {
        store::Transaction tx(led.cn);
        led.sql.executeSQL(proc, newLineInsert(led.linesTable, L, typeNum));
        const QString id = QString::number(led.cn.lastInsertId());
        // A line made a forecast (or related) before it was written keeps
        // it: the insert's columns do not carry it.
        if (L.isTzefi || L.relate != 0)
            led.sql.executeSQL(proc, QStringLiteral("UPDATE %1 set IndTzefi = %2, [relate] = %3 WHERE id = %4")
                                         .arg(led.linesTable, L.isTzefi ? QStringLiteral("true") : QStringLiteral("false"))
                                         .arg(L.relate)
                                         .arg(id));
        // A line after the zeroing date leaves the mark where it is.
        if (!led.ipusDate.isValid() || !L.Date.isValid() || L.Date <= led.ipusDate || led.ipusID.isEmpty())
            moveIpusMark(led, inst);
        tx.commit();
        L.Id = id;
        L.TypeNum = typeNum;
    } catch (...) {
        // Nothing was written: the zeroing state is as the file holds it.
        led.ipusDate = ipusDate;
        led.ipusID = ipusID;
        throw;
    }
}

void addOneLine(OpenLedger& led, const Instance& inst, Line& L)
{
    if (L.Memo.isEmpty())
        L.Memo = colorWords().last();
    writeLine(led, inst, L, led.catalogue.typeNumOf(L.Type), QStringLiteral("addOneLine"));
}

} // namespace pelkor
