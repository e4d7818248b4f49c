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

#include <array>
#include <cstdio>

using namespace pelkor;
using namespace pelkor::reports;

namespace {

constexpr long compareLines = 100000;

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
    for (int i = 0; i < 2; ++i)
        total += bench::bareGroupedSum(paths[size_t(i)],
                                "SELECT kind, sum(\"in\"), sum(out) FROM pelkor WHERE date>=?1 AND date<=?2 GROUP BY kind",
                                ranges[size_t(i)].fromDate, ranges[size_t(i)].toDate);
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
        bench::yearLedger(paths[size_t(i)], compareLines, last, 20261125u + unsigned(i), QString::number(last.year()));
    }
    comparePages(paths, ranges, outDir);
    bareGroupedSums(paths, ranges);
    const auto [mine, base] = bench::bestOf(
        std::max(runs, 3), [&] { return comparePages(paths, ranges, outDir); }, [&] { return bareGroupedSums(paths, ranges); }, false);
    bench::printFigure(QStringLiteral("compare 2x%1 lines ms").arg(compareLines), mine, base, "3.00");
    return 0;
}
