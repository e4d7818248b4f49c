// A demonstration ledger and its feed for sessions run through the whole
// window (frmMain): the files, and the program's folder they are read from.
#pragma once

#include "ledger/GridFixture.h"

#include "file/Schema.h"
#include "seams/store/Connection.h"

#include <QDir>
#include <QFile>

namespace pelkor::testing {

// The zeroing line, then forty lines a day apart; the bank has them all
// with their balances.
inline void makeFiles(const QString& file, const QString& feedPath)
{
    QString sql = QStringLiteral("BEGIN;");
    QString feed = QStringLiteral("BEGIN;");
    double balance = 0;
    for (int i = 1; i <= 41; ++i) {
        const bool in = i % 3 != 0;
        const double sum = 100 + i;
        balance += in ? sum : -sum;
        const QString date = QDate(2025, 3, 1).addDays(i).toString(Qt::ISODate);
        sql += QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
                              "(%1,'%2','%3','%1','line %1',%4,%5,%6,'%7','ללא צבע');")
                   .arg(i)
                   .arg(in ? QStringLiteral("+1") : QStringLiteral("-1"), date)
                   .arg(in ? sum : 0)
                   .arg(in ? 0 : sum)
                   .arg(in ? 1 : 2)
                   .arg(i == 1 ? QStringLiteral("ZZZZZZZZZZ") : QStringLiteral(" "));
        feed += QStringLiteral("INSERT INTO demoOsh VALUES ('7', %1, '%2', '%1', 'bank %1', %3, %4, %5, 0);")
                    .arg(i)
                    .arg(date)
                    .arg(in ? sum : 0)
                    .arg(in ? 0 : sum)
                    .arg(balance);
    }
    makeLedger(file, sql + QStringLiteral("COMMIT;UPDATE Defaults SET isAuto=1, iBank=99;"), false, {-5000, 60, " "});
    store::Connection cn;
    cn.open(feedPath, store::Connection::OpenMode::ReadWriteCreate);
    cn.executeRaw(schema::feedScript({QStringLiteral("demoOsh")}) + feed + QStringLiteral("COMMIT;"));
}

// The bank menu page and the demonstration feed where the program looks.
inline void placeProgramFiles(const QString& program, const QString& feed)
{
    QDir().mkpath(program);
    QFile::copy(QStringLiteral(PELKOR_SOURCE_DIR "/share/BankMenu.html"), program + QStringLiteral("/BankMenu.html"));
    QFile::copy(feed, program + QStringLiteral("/demo.mdb"));
}

} // namespace pelkor::testing
