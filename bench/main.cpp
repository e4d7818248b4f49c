// pelkor_bench: the speed figures of the project, each printed as a ratio to
// a baseline measured in the same run on the same file, so the figures mean
// the same on a fast or a slow machine.
//
//   pelkor_bench [--sizes 10000,100000,1000000] [--data DIR] [--runs N]
//                [--only store|bare]
//
// Figures:
//   read    all lines in the ledger's order through the store (translation,
//           registered functions, collation, Values) against the same read
//           through the bare SQLite API copying each value out. Target 1.2.
//
// Each figure is the best of several runs of each side, the two sides taking
// turns and each going first in half of the rounds, so that a busy machine
// (a build, another test) slows a run without deciding the ratio. Without
// --runs the count follows the size: many runs of a small file, which take
// milliseconds and are easily disturbed, and a few of a big one. --only runs
// one side alone, for a profiler.
//
// Generated files are kept in DIR (default bench-data beside the binary) and
// reused while their line count is right.
#include "file/LedgerGenerator.h"

#include "file/Schema.h"
#include "seams/store/Connection.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

using namespace pelkor;

namespace {

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

struct BareRow {
    std::int64_t id = 0;
    std::string kind, date, confirm, detail, zee, memo;
    double in = 0, out = 0;
    std::int64_t type = 0, relate = 0, tzefi = 0;
};

std::string text(sqlite3_stmt* st, int c)
{
    const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st, c));
    return p ? std::string(p, size_t(sqlite3_column_bytes(st, c))) : std::string();
}

// The baseline: the ledger's read written straight against SQLite, with its
// own substr/length in the order and every value copied into a row.
double bareRead(const QString& path, long expected)
{
    QElapsedTimer t;
    t.start();
    sqlite3* db = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db,
                       "SELECT pelkor.id, kind, date, confirm, detail, \"in\", out, TypeNum, zee, memo, relate, IndTzefi"
                       " FROM pelkor ORDER BY date, substr(kind,1,1) DESC, length(substr(kind,2)), substr(kind,2),"
                       " detail, \"in\", out, id",
                       -1, &st, nullptr);
    std::vector<BareRow> rows;
    while (sqlite3_step(st) == SQLITE_ROW) {
        BareRow r;
        r.id = sqlite3_column_int64(st, 0);
        r.kind = text(st, 1);
        r.date = text(st, 2);
        r.confirm = text(st, 3);
        r.detail = text(st, 4);
        r.in = sqlite3_column_double(st, 5);
        r.out = sqlite3_column_double(st, 6);
        r.type = sqlite3_column_int64(st, 7);
        r.zee = text(st, 8);
        r.memo = text(st, 9);
        r.relate = sqlite3_column_int64(st, 10);
        r.tzefi = sqlite3_column_int64(st, 11);
        rows.push_back(std::move(r));
    }
    sqlite3_finalize(st);
    sqlite3_close(db);
    const double ms = double(t.nsecsElapsed()) / 1e6;
    if (long(rows.size()) != expected)
        std::fprintf(stderr, "bare read returned %zu rows, expected %ld\n", rows.size(), expected);
    return ms;
}

double storeRead(const QString& path, long expected)
{
    QElapsedTimer t;
    t.start();
    store::Connection cn;
    cn.open(path);
    store::Recordset rs = cn.execute(QStringLiteral("SELECT pelkor.%1 FROM pelkor ORDER BY %2")
                                         .arg(QLatin1String(schema::lineColumns), QLatin1String(schema::lineOrder)));
    const double ms = double(t.nsecsElapsed()) / 1e6;
    if (rs.recordCount() != expected)
        std::fprintf(stderr, "store read returned %ld rows, expected %ld\n", rs.recordCount(), expected);
    return ms;
}

// Runs of each side for a file of n lines: some three seconds of reading
// per side, at least 5 runs and at most 50.
int runsFor(long n)
{
    return int(std::clamp(3000000L / std::max(n, 1L), 5L, 50L));
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QList<long> sizes{10000, 100000, 1000000};
    QString dataDir = QCoreApplication::applicationDirPath() + QStringLiteral("/bench-data");
    int runs = 0;  // 0: by size, see runsFor
    QString only;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); i += 2) {
        if (args[i] == QLatin1String("--sizes")) {
            sizes.clear();
            for (const QString& s : args[i + 1].split(QLatin1Char(',')))
                sizes << s.toLong();
        } else if (args[i] == QLatin1String("--data")) {
            dataDir = args[i + 1];
        } else if (args[i] == QLatin1String("--runs")) {
            runs = std::max(1, args[i + 1].toInt());
        } else if (args[i] == QLatin1String("--only")) {
            only = args[i + 1];
        }
    }
    QDir().mkpath(dataDir);
    std::printf("%-28s %12s %12s %8s %8s\n", "figure", "pelkor ms", "baseline ms", "ratio", "target");
    for (long n : sizes) {
        const QString path = QStringLiteral("%1/ledger-%2.pkr").arg(dataDir).arg(n);
        if (countLines(path) != n) {
            std::fprintf(stderr, "generating %ld lines...\n", n);
            generator::GeneratorOptions o;
            o.lines = n;
            generator::generateLedger(path, o);
        }
        const int count = runs > 0 ? runs : runsFor(n);
        if (!only.isEmpty()) {
            double best = 1e300;
            for (int r = 0; r < count; ++r)
                best = std::min(best, only == QLatin1String("bare") ? bareRead(path, n) : storeRead(path, n));
            std::printf("%-28s %12.1f\n", QStringLiteral("%1 read %2 lines").arg(only).arg(n).toUtf8().constData(),
                        best);
            continue;
        }
        // Warm the page cache once, then take the best of several runs of
        // each, taking turns, so neither side pays for a cold disk or for
        // always going first.
        bareRead(path, n);
        storeRead(path, n);
        double bare = 1e300, mine = 1e300;
        for (int r = 0; r < count; ++r) {
            if (r % 2 == 0) {
                bare = std::min(bare, bareRead(path, n));
                mine = std::min(mine, storeRead(path, n));
            } else {
                mine = std::min(mine, storeRead(path, n));
                bare = std::min(bare, bareRead(path, n));
            }
        }
        std::printf("%-28s %12.1f %12.1f %8.2f %8s\n", QStringLiteral("read %1 lines").arg(n).toUtf8().constData(),
                    mine, bare, mine / bare, "1.20");
        std::fflush(stdout);
    }
    return 0;
}
