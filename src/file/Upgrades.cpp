#include "file/Upgrades.h"

#include "base/Format.h"
#include "base/Trace.h"
#include "file/OpenLedger.h"

namespace pelkor {

using store::StoreError;

void handleAuto(OpenLedger& m)
{
    TraceScope t(m.trace, QStringLiteral("handleAuto"));
    try {
        auto rs = m.cn.execute(QStringLiteral("SELECT isAuto FROM Defaults"));
        m.isAutomatic = !rs.eof() && RemoveSumNull(rs.field(0)) == 1;
    } catch (const StoreError& e) {
        t.line(QStringLiteral("upgrading: ") + e.message());
        store::Transaction tx(m.cn);
        m.sql.executeSQL(t.proc(), QStringLiteral("ALTER TABLE Defaults ADD isAuto INTEGER"));
        m.sql.executeSQL(t.proc(), QStringLiteral("UPDATE Defaults SET isAuto=1"));
        tx.commit();
        m.isAutomatic = true;
    }
}

void readInvoiceCategs(OpenLedger& m)
{
    TraceScope t(m.trace, QStringLiteral("readInvoiceCategs"));
    try {
        auto rs = m.cn.execute(QStringLiteral("SELECT * FROM invoiceCategs"));
        m.theInvoiceCategs = rs.eof() ? QString() : RemoveNull(rs.field(QStringLiteral("detail"))).trimmed();
        return;
    } catch (const StoreError& e) {
        t.line(QStringLiteral("upgrading: ") + e.message());
    }
    store::Transaction tx(m.cn);
    auto rs = m.cn.execute(QStringLiteral("SELECT MAX(id) FROM ") + m.linesTable);
    const QString maxID = rs.eof() ? QString() : RemoveNull(rs.field(0));
    // A file without lines still gets the table, with no row yet.
    m.sql.executeSQL(t.proc(), QStringLiteral("SELECT * INTO invoiceCategs from pelkor WHERE [id]=%1")
                                   .arg(maxID.isEmpty() ? QStringLiteral("0") : maxID));
    m.sql.executeSQL(t.proc(), QStringLiteral("UPDATE invoiceCategs set detail=' '"));
    tx.commit();
    m.theInvoiceCategs.clear();
}

void handleBankInfo(OpenLedger& m)
{
    TraceScope t(m.trace, QStringLiteral("handleBankInfo"));
    m.iBank = -1;
    m.accountNum = QStringLiteral("(none)");
    m.isSimulate = false;
    try {
        auto rs = m.cn.execute(QStringLiteral("SELECT iBank,AccountNum FROM Defaults"));
        if (rs.eof())
            return;
        m.iBank = int(RemoveSumNull(rs.field(0))) - 1;
        const QString acc = RemoveNull(rs.field(1));
        m.accountNum = acc.isEmpty() ? QStringLiteral("(none)") : acc;
        m.isSimulate = m.iBank == 98;
    } catch (const StoreError& e) {
        t.line(QStringLiteral("not bound: ") + e.message());
    }
}

void resetBankInfo(OpenLedger& m)
{
    TraceScope t(m.trace, QStringLiteral("resetBankInfo"));
    try {
        m.sql.executeSQL(t.proc(), QStringLiteral("UPDATE Defaults SET iBank=0"));
        m.sql.executeSQL(t.proc(), QStringLiteral("UPDATE Defaults SET accountNum='(none)'"));
    } catch (const StoreError& e) {
        t.line(e.message());
    }
}

std::optional<bool> checkBankNum(OpenLedger& m)
{
    try {
        auto rs = m.cn.execute(QStringLiteral("SELECT iBank FROM Defaults"));
        return !rs.eof() && RemoveSumNull(rs.field(0)) == 99;
    } catch (const StoreError&) {
        return std::nullopt;
    }
}

} // namespace pelkor
