// The comparison's figure:
//   compare  both pages of a comparison of two files of 100,000 lines, a
//            year each: the two connections, the kinds and types of both
//            files chosen, each period's credit, range, opening balance and
//            sums by kind and by type over its whole year, the totals, and
//            the kind and type pages written in windows-1255 (nothing
//            rendered), against the bare SQLite grouped sum by kind of the
//            same two ranges stepped to its end. Target 3.
#include "BenchSupport.h"
#include "gen/LedgerGenerator.h"
#include "reports/CompareReport.h"
#include "base/Format.h"
#include "seams/store/Connection.h"
#include "seams/web/Html.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <sqlite3.h>

#include <array>
#include <cstdio>

using namespace pelkor;
using namespace pelkor::reports;

namespace {

constexpr long compareLines = 100000;

long lineCount(const QString& path)
{
    if (!QFile::exists(path))
        return -1;
    try {
        store::Connection cn;
        cn.open(path);
        return long(cn.execute(QStringLiteral("SELECT COUNT(id) FROM pelkor")).at(0, 0).toInt());
    } catch (const std::exception&) {
        return -1;
    }
}

double comparePages(const std::array<QString, 2>& paths, const std::array<DateRange, 2>& ranges, const QString& outDir)
{
    QElapsedTimer t;
    t.start();
    std::array<store::Connection, 2> cn;
    for (int i = 0; i < 2; ++i)
        cn[size_t(i)].open(paths[size_t(i)]);
    CompareSums s;
    const KindNames first = readKindNames(cn[0]);
    const KindNames second = readKindNames(cn[1]);
    s.names = chooseKinds(first, &second).names;
    std::array<TypeTotals, 2> cat;
    readTypeCatalogue(cn[0], cat[0]);
    readTypeCatalogue(cn[1], cat[1]);
    s.typesIncluded = typesAgree(cat[0], cat[1]);
    s.types = cat[0];
    for (int i = 0; i < 2; ++i) {
        auto credit = cn[size_t(i)].execute(QStringLiteral("SELECT Credit FROM Defaults"));
        s.credit[size_t(i)] = credit.recordCount() ? RemoveSumNull(credit.at(0, 0)) : 0.0;
        DateRange r = ranges[size_t(i)];
        const DateSpan span = readDateSpan(cn[size_t(i)]);
        adjustCompareRange(i, r, span.min, span.max);
        readComparePeriod(cn[size_t(i)], i, r, s.typesIncluded ? &cat[size_t(i)] : nullptr, s);
    }
    calcCompareTotals(s, true);
    CompareHead head;
    head.shortFileName = {QStringLiteral("a"), QStringLiteral("b")};
    head.range = ranges;
    web::writePage(outDir, QStringLiteral("kindReport.htm"), compareKindPage(head, s));
    if (s.typesIncluded)
        web::writePage(outDir, QStringLiteral("typeReport.htm"), compareTypePage(head, s, typeRowsOf(s.types)));
    const double ms = double(t.nsecsElapsed()) / 1e6;
    if (!s.typesIncluded || s.kinds.totalExpenses == 0)
        std::fprintf(stderr, "compare: the comparison summed nothing by type or kind\n");
    return ms;
}

double bareGroupedSums(const std::array<QString, 2>& paths, const std::array<DateRange, 2>& ranges)
{
    QElapsedTimer t;
    t.start();
    double total = 0;
    for (int i = 0; i < 2; ++i) {
        sqlite3* db = nullptr;
        sqlite3_open_v2(paths[size_t(i)].toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
        sqlite3_stmt* st = nullptr;
        sqlite3_prepare_v2(db, "SELECT kind, sum(\"in\"), sum(out) FROM pelkor WHERE date>=?1 AND date<=?2 GROUP BY kind", -1, &st,
                           nullptr);
        const QByteArray from = ranges[size_t(i)].fromDate.toString(Qt::ISODate).toUtf8();
        const QByteArray to = ranges[size_t(i)].toDate.toString(Qt::ISODate).toUtf8();
        sqlite3_bind_text(st, 1, from.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(st, 2, to.constData(), -1, SQLITE_TRANSIENT);
        while (sqlite3_step(st) == SQLITE_ROW)
            total += sqlite3_column_double(st, 1) - sqlite3_column_double(st, 2);
        sqlite3_finalize(st);
        sqlite3_close(db);
    }
    const double ms = double(t.nsecsElapsed()) / 1e6;
    if (total == 0)
        std::fprintf(stderr, "compare: the bare sums summed nothing\n");
    return ms;
}

} // namespace

int compareFigure(const QString& dataDir, int runs, const QString& outDir)
{
    std::array<QString, 2> paths;
    std::array<DateRange, 2> ranges;
    for (int i = 0; i < 2; ++i) {
        const QDate last(2025 - i, 12, 31);
        paths[size_t(i)] = QStringLiteral("%1/compare-%2-%3.pkr").arg(dataDir).arg(compareLines).arg(last.year());
        ranges[size_t(i)] = DateRange{QDate(last.year(), 1, 1), last};
        if (lineCount(paths[size_t(i)]) != compareLines) {
            std::fprintf(stderr, "generating %ld lines of %d...\n", compareLines, last.year());
            generator::GeneratorOptions o;
            o.lines = compareLines;
            o.lastDate = last;
            o.years = 1;
            o.seed = 20261125u + unsigned(i);
            generator::generateLedger(paths[size_t(i)], o);
        }
    }
    comparePages(paths, ranges, outDir);
    bareGroupedSums(paths, ranges);
    const auto [mine, base] = bench::bestOf(
        std::max(runs, 3), [&] { return comparePages(paths, ranges, outDir); }, [&] { return bareGroupedSums(paths, ranges); }, false);
    bench::printFigure(QStringLiteral("compare 2x%1 lines ms").arg(compareLines), mine, base, "3.00");
    return 0;
}
