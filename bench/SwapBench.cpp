// The swap figure: the closing swap of a reconciliation on a file of
// 100,000 lines (the old backup dropped, the table of lines kept as the
// backup, the working table made the table of lines, the working table
// dropped, in one transaction) against the same SQLite statements run bare
// in one transaction on a connection of its own, in the same journal mode.
// Each run works on a fresh copy of the file. Target 2.
#include "BenchSupport.h"

#include "base/Trace.h"
#include "file/OpenLedger.h"
#include "gen/LedgerGenerator.h"
#include "reconcile/Session.h"
#include "seams/store/Connection.h"

#include <QDate>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <sqlite3.h>

using namespace pelkor;

namespace {

QString freshCopy(const QString& master, const QString& run)
{
    for (const char* suffix : {"", "-wal", "-shm"})
        QFile::remove(run + QLatin1String(suffix));
    QFile::copy(master, run);
    return run;
}

// The table of lines' own definition, under another name.
QByteArray definition(sqlite3* db, const char* table)
{
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db, "SELECT sql FROM sqlite_master WHERE name='pelkor'", -1, &st, nullptr);
    QByteArray sql;
    if (sqlite3_step(st) == SQLITE_ROW)
        sql = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
    sqlite3_finalize(st);
    const qsizetype open = sql.indexOf('(');
    return QByteArray("CREATE TABLE ") + table + ' ' + sql.mid(open);
}

double bareSwap(const QString& file)
{
    sqlite3* db = nullptr;
    sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_exec(db, "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=1;", nullptr, nullptr, nullptr);
    const QByteArray script = "BEGIN; DROP TABLE bckpPelkor; " + definition(db, "bckpPelkor") +
        "; INSERT INTO bckpPelkor SELECT * FROM pelkor; DROP TABLE pelkor; " + definition(db, "pelkor") +
        "; INSERT INTO pelkor SELECT * FROM tempPelkor; DROP TABLE tempPelkor; COMMIT;";
    QElapsedTimer t;
    t.start();
    const int rc = sqlite3_exec(db, script.constData(), nullptr, nullptr, nullptr);
    const double ms = double(t.nsecsElapsed()) / 1e6;
    sqlite3_close(db);
    return rc == SQLITE_OK ? ms : 1e300;
}

} // namespace

int swapFigure(const QString& dataDir, int runs)
{
    const QString folder = dataDir + QStringLiteral("/swap/");
    QDir().mkpath(folder);
    const QString master = folder + QStringLiteral("master.pkr");
    const QString run = folder + QStringLiteral("run.pkr");
    generator::GeneratorOptions options;
    options.lines = 100000;
    options.lastDate = QDate(2025, 11, 20);
    generator::generateLedger(master, options);
    Trace trace{QString(), QString()};
    {
        // A session at its end: a backup of an earlier one, and the working
        // table with its mark moved.
        OpenLedger led(trace);
        led.cn.open(master);
        led.cn.execute(QStringLiteral("SELECT * INTO bckpPelkor from pelkor"));
        led.cn.execute(QStringLiteral("SELECT * INTO tempPelkor from pelkor"));
        led.cn.execute(QStringLiteral("UPDATE tempPelkor SET zee=' ' WHERE zee='ZZZZZZZZZZ'"));
        led.cn.execute(QStringLiteral("UPDATE tempPelkor SET zee='ZZZZZZZZZZ' WHERE id=90000"));
    }
    const auto mine = [&] {
        OpenLedger led(trace);
        led.cn.open(freshCopy(master, run));
        QElapsedTimer t;
        t.start();
        reconcile::swapWorkingTable(led);
        const double ms = double(t.nsecsElapsed()) / 1e6;
        return led.cn.tableExists(QStringLiteral("tempPelkor")) ? 1e300 : ms;
    };
    const auto [m, b] = bench::bestOf(runs > 0 ? runs : 5, mine, [&] { return bareSwap(freshCopy(master, run)); });
    bench::printFigure(QStringLiteral("swap 100000 lines ms"), m, b, "2");
    return m < 1e299 ? 0 : 1;
}
