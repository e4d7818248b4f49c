#include "BenchSupport.h"

#include "gen/LedgerGenerator.h"
#include "seams/store/Connection.h"

#include <QFileInfo>
#include <sqlite3.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>

#include <cstdio>

namespace pelkor::bench {

void printFigure(const QString& figure, double mine, double base, const char* target, int decimals)
{
    std::printf("%-28s %12.*f %12.*f %8.2f %8s\n", figure.toUtf8().constData(), decimals, mine, decimals, base, mine / base,
                target);
    std::fflush(stdout);
}

bool waitUntil(const std::function<bool()>& done, int timeoutMs)
{
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < timeoutMs)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return done();
}

void childFigure(const QString& program, const QStringList& args, const QString& tag, const QString& figure,
                 const char* target, int timeoutMs)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    p.setProcessEnvironment(env);
    p.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    p.start(program, args);
    const bool finished = p.waitForFinished(timeoutMs);
    const QStringList words = QString::fromUtf8(p.readAllStandardOutput()).trimmed().split(QLatin1Char(' '));
    if (!finished || words.value(0) != tag) {
        std::printf("%-28s skipped: %s\n", figure.toUtf8().constData(),
                    finished ? qPrintable(words.mid(1).join(QLatin1Char(' '))) : "WebEngine did not answer");
        std::fflush(stdout);
        return;
    }
    printFigure(figure, words.value(1).toDouble(), words.value(2).toDouble(), target);
}

double bareGroupedSum(const QString& path, const char* sql, const QDate& from, const QDate& to)
{
    double total = 0;
    sqlite3* db = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db, sql, -1, &st, nullptr);
    const QByteArray f = from.toString(Qt::ISODate).toUtf8(), l = to.toString(Qt::ISODate).toUtf8();
    sqlite3_bind_text(st, 1, f.constData(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(st, 2, l.constData(), -1, SQLITE_TRANSIENT);
    while (sqlite3_step(st) == SQLITE_ROW)
        total += sqlite3_column_double(st, 1) - sqlite3_column_double(st, 2);
    sqlite3_finalize(st);
    sqlite3_close(db);
    return total;
}

long countLines(const QString& path)
{
    if (!QFileInfo::exists(path))
        return -1;
    try {
        store::Connection cn;
        cn.open(path);
        return long(cn.execute(QStringLiteral("SELECT COUNT(id) FROM pelkor")).at(0, 0).toInt());
    } catch (const store::StoreError&) {
        return -1;
    }
}

void yearLedger(const QString& path, long lines, const QDate& last, unsigned seed, const QString& what)
{
    if (countLines(path) == lines)
        return;
    std::fprintf(stderr, "generating %ld lines of %s...\n", lines, qPrintable(what));
    generator::GeneratorOptions o;
    o.lines = lines;
    o.lastDate = last;
    o.years = 1;
    o.seed = seed;
    generator::generateLedger(path, o);
}

} // namespace pelkor::bench
