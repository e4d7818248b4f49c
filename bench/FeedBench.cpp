// The importer's figure: a generated bank statement of 100,000 rows (CSV,
// Hebrew header, windows-1255, credit and debit columns and a running
// balance, as this country's banks export them) read, planned and written
// into a feed by runIt's code, against the sqlite3 shell's ".import" of the
// same file into a table of the same columns. Target 2.0.
//
// The shell side is a process of its own and pays for its start (a few
// milliseconds); the figure is about hundreds of milliseconds, so that cost
// barely moves it.
#include "BenchSupport.h"

#include "Banks.h"
#include "FeedRows.h"
#include "FeedWriter.h"
#include "Statement.h"
#include "TextInput.h"

#include <QDate>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <cstdio>

using namespace pelkor;

namespace {

// The statement: rows on working days back from a fixed date, most days a
// few rows, every amount in agorot so the balance column is exact.
QString generateStatement(const QString& path, long rows)
{
    QString text = QStringLiteral("בנק הפועלים - פירוט תנועות בחשבון\r\nמספר חשבון: 12-345-678901\r\n"
                                  "תאריך,תאריך ערך,תיאור,אסמכתא,זכות,חובה,יתרה בש\"ח\r\n");
    static const char* const words[] = {"העברה מלקוח", "שיק", "כרטיס אשראי", "עמלת פעולה", "משכורת", "הוראת קבע חשמל",
                                        "ארנונה", "הפקדת מזומן", "ספק חומרי דפוס", "מע\"מ"};
    QDate d(2015, 1, 1);
    qint64 balance = 5000000;  // agorot
    for (long i = 0; i < rows; ++i) {
        if (i % 4 == 0)
            d = d.addDays(1);
        const qint64 cents = 1000 + (i * 7919) % 900000;
        const bool credit = i % 3 == 0;
        balance += credit ? cents : -cents;
        const QString sum = QString::number(double(cents) / 100.0, 'f', 2);
        text += QStringLiteral("%1,%1,%2 %3,%4,%5,%6,%7\r\n")
                    .arg(d.toString(QStringLiteral("dd/MM/yyyy")), QString::fromUtf8(words[i % 10]))
                    .arg(i)
                    .arg(100000 + i)
                    .arg(credit ? sum : QString(), credit ? QString() : sum)
                    .arg(QString::number(double(balance) / 100.0, 'f', 2));
    }
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(feed::toWindows1255(text)) < 0)
        return QStringLiteral("cannot write ") + path;
    return {};
}

double importOnce(const QString& csv, const QString& feedPath, long rows)
{
    QElapsedTimer t;
    t.start();
    const feed::ReadResult r = feed::readStatementFile(csv);
    const feed::FeedPlan p = feed::planFeed({r}, 0, {});
    const QString failed = p.ok() ? feed::writeFeed(feedPath, feed::bankAt(0).feedTable, p.rows) : p.error;
    const double ms = double(t.nsecsElapsed()) / 1e6;
    if (!r.ok() || !failed.isEmpty() || p.rows.size() != rows) {
        std::fprintf(stderr, "feed import failed: %s %s\n", r.error.toUtf8().constData(), failed.toUtf8().constData());
        return 1e300;
    }
    return ms;
}

// The shell's import of the same bytes into a table of the statement's
// seven columns (the three lines above the rows skipped).
double shellImportOnce(const QString& csv, const QString& db)
{
    QFile::remove(db);
    QElapsedTimer t;
    t.start();
    QProcess p;
    p.start(QStringLiteral("sqlite3"),
            {db, QStringLiteral("CREATE TABLE t(a,b,c,d,e,f,g)"), QStringLiteral(".import --csv --skip 3 %1 t").arg(csv)});
    if (!p.waitForFinished(600000) || p.exitCode() != 0) {
        std::fprintf(stderr, "sqlite3 .import failed: %s\n", p.readAllStandardError().constData());
        return 1e300;
    }
    return double(t.nsecsElapsed()) / 1e6;
}

} // namespace

// Prints the figure; runs rounds of each side taking turns. 0: by size.
int feedFigure(const QString& dataDir, int runs)
{
    const long rows = 100000;
    const QString csv = dataDir + QStringLiteral("/statement-100000.csv");
    if (!QFileInfo::exists(csv)) {
        std::fprintf(stderr, "generating a statement of %ld rows...\n", rows);
        if (const QString e = generateStatement(csv, rows); !e.isEmpty()) {
            std::fprintf(stderr, "%s\n", e.toUtf8().constData());
            return 1;
        }
    }
    const QString feedPath = dataDir + QStringLiteral("/atl613o0.dll");
    const QString shellDb = dataDir + QStringLiteral("/shell-import.db");
    const auto [mine, base] = bench::bestOf(
        runs > 0 ? runs : 5, [&] { return importOnce(csv, feedPath, rows); }, [&] { return shellImportOnce(csv, shellDb); },
        false);
    bench::printFigure(QStringLiteral("feed import 100000 rows ms"), mine, base, "2.00");
    return 0;
}
