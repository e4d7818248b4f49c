// The bank's figure: a reconciliation's reading of the feed — the file's
// binding checked, the account's rows queried in the bank's order and the
// bank grid filled — for 10,000 rows of one account among 30,000, against a
// bare SQLite read of the same rows in the same order (every column of
// every row stepped through). Target 1.5.
#include "BenchSupport.h"

#include "base/Trace.h"
#include "file/OpenLedger.h"
#include "file/Schema.h"
#include "reconcile/AccountBinding.h"
#include "reconcile/BankFeed.h"
#include "reconcile/BankGrid.h"
#include "seams/store/Connection.h"
#include "seams/ui/ScriptedUi.h"

#include <QDate>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <sqlite3.h>

#include <cstdio>

using namespace pelkor;

namespace {

const QString account = QStringLiteral("20-633-111");

// Three accounts of 10,000 rows each, interleaved as a bank lists them.
void makeFeed(const QString& path)
{
    QFile::remove(path);
    store::Connection cn;
    cn.open(path, store::Connection::OpenMode::ReadWriteCreate);
    cn.executeRaw(schema::feedScript({QStringLiteral("poalimOsh")}));
    QString sql = QStringLiteral("BEGIN;");
    const QString accounts[] = {account, QStringLiteral("20-633-222"), QStringLiteral("20-633-333")};
    double balance[3] = {0, 0, 0};
    for (int i = 0; i < 30000; ++i) {
        const int a = i % 3;
        const bool credit = (i / 3) % 3 == 0;
        const double sum = double(1000 + (i * 7919) % 900000) / 100.0;
        balance[a] += credit ? sum : -sum;
        sql += QStringLiteral("INSERT INTO poalimOsh VALUES ('%1', %2, '%3', '%4', 'העברה %2', %5, %6, %7, 0);")
                   .arg(accounts[a])
                   .arg(i + 1)
                   .arg(QDate(2024, 1, 1).addDays(i / 30).toString(Qt::ISODate))
                   .arg(100000 + i)
                   .arg(credit ? sum : 0, 0, 'f', 2)
                   .arg(credit ? 0 : sum, 0, 'f', 2)
                   .arg(balance[a], 0, 'f', 2);
    }
    cn.executeRaw(sql + QStringLiteral("COMMIT;"));
}

double bareRead(const QString& feed)
{
    QElapsedTimer t;
    t.start();
    sqlite3* db = nullptr;
    sqlite3_open_v2(feed.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* st = nullptr;
    const QByteArray q = QStringLiteral("SELECT * FROM poalimOsh WHERE trim(accountNum)='%1' ORDER BY [date],transactionID")
                             .arg(account)
                             .toUtf8();
    sqlite3_prepare_v2(db, q.constData(), -1, &st, nullptr);
    long rows = 0;
    double sink = 0;
    while (sqlite3_step(st) == SQLITE_ROW) {
        ++rows;
        for (int c = 0; c < sqlite3_column_count(st); ++c)
            sink += sqlite3_column_type(st, c) == SQLITE_TEXT ? double(sqlite3_column_bytes(st, c)) : sqlite3_column_double(st, c);
    }
    sqlite3_finalize(st);
    sqlite3_close(db);
    const double ms = double(t.nsecsElapsed()) / 1e6;
    return rows == 10000 && sink != 0 ? ms : 1e300;
}

} // namespace

int bankFigure(const QString& dataDir, int runs)
{
    const QString temp = dataDir + QStringLiteral("/bank/");
    QDir().mkpath(temp);
    const QString feed = reconcile::feedFilePath(0, false, temp, dataDir);
    makeFeed(feed);
    const QString ledger = temp + QStringLiteral("bound.pkr");
    QFile::remove(ledger);
    schema::createLedger(ledger, QDate(2024, 1, 1));
    {
        store::Connection cn;
        cn.open(ledger);
        cn.executeRaw(QStringLiteral("UPDATE Defaults SET iBank=1, AccountNum='%1';").arg(account));
    }
    Trace trace{QString(), QString()};
    ui::ScriptedUi ui{QString(), QString()};
    const auto mine = [&] {
        OpenLedger led(trace);
        led.cn.open(ledger);
        led.iBank = 0;
        led.accountNum = account;
        reconcile::BankFeed bankFeed;
        reconcile::BankGrid grid;
        QElapsedTimer t;
        t.start();
        reconcile::BindingParts parts{led, bankFeed, ui, temp, dataDir, QStringLiteral("bound")};
        auto rows = reconcile::readBoundAccount(parts);
        if (rows)
            reconcile::fillBankGrid(grid, *rows, QDate(2025, 1, 1), 0, false);
        const double ms = double(t.nsecsElapsed()) / 1e6;
        return rows && grid.lastRow() == 10000 ? ms : 1e300;
    };
    const auto [m, b] = bench::bestOf(runs > 0 ? runs : 7, mine, [&] { return bareRead(feed); });
    bench::printFigure(QStringLiteral("bank 10000 of 30000 rows ms"), m, b, "1.50");
    return m < 1e299 ? 0 : 1;
}
