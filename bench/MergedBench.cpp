// The merged bank report's figure:
//   merged  the report of five files of 100,000 lines for a one-year range:
//           each file opened, its credit, kinds, opening balance, sums by
//           day and zeroing line read, the day arrays (balances, excesses,
//           totals) and the page written in windows-1255 (nothing
//           rendered), against the bare SQLite sum of each day's ins and
//           outs of the same files over the same range. Target 3.
#include "BenchSupport.h"
#include "gen/LedgerGenerator.h"
#include "reports/BankReport.h"
#include "seams/store/Connection.h"
#include "seams/web/Html.h"

#include <QElapsedTimer>
#include <QFile>

#include <cstdio>

using namespace pelkor;
using namespace pelkor::reports;

namespace {

constexpr long mergedLines = 100000;
constexpr int mergedFiles = 5;

double mergedReport(const QStringList& paths, const QDate& from, const QDate& to, const QString& outDir)
{
    QElapsedTimer t;
    t.start();
    std::vector<BankFileSums> sums;
    QStringList names;
    for (const QString& p : paths) {
        store::Connection cn;
        cn.open(p);
        cn.execute(QStringLiteral("SELECT Password FROM Defaults"));
        sums.push_back(readBankFile(cn, from, to));
        names << p.section(QLatin1Char('/'), -1);
    }
    const BankDays days = calcBankDays(sums, std::vector<double>(sums.size(), 0.0), from, to);
    web::writePage(outDir, QStringLiteral("bankReport.htm"), bankReportPage(days, BankPageHead{names, true, {}}));
    const double ms = double(t.nsecsElapsed()) / 1e6;
    if (days.dayTotalIns.empty() || days.dayTotalBalances.back() == 0)
        std::fprintf(stderr, "merged: the report summed nothing\n");
    return ms;
}

double bareDaySums(const QStringList& paths, const QDate& from, const QDate& to)
{
    QElapsedTimer t;
    t.start();
    double total = 0;
    for (const QString& p : paths)
        total += bench::bareGroupedSum(p, "SELECT date, sum(\"in\"), sum(out) FROM pelkor WHERE date>=?1 AND date<=?2 GROUP BY date", from,
                                to);
    const double ms = double(t.nsecsElapsed()) / 1e6;
    if (total == 0)
        std::fprintf(stderr, "merged: the bare sums summed nothing\n");
    return ms;
}

} // namespace

int mergedFigure(const QString& dataDir, int runs, const QString& outDir)
{
    QStringList paths;
    const QDate last(2025, 12, 31);
    for (int i = 0; i < mergedFiles; ++i) {
        paths << QStringLiteral("%1/merged-%2-%3.pkr").arg(dataDir).arg(mergedLines).arg(i);
        bench::yearLedger(paths.last(), mergedLines, last, 20261201u + unsigned(i), QStringLiteral("file %1").arg(i + 1));
    }
    const QDate from(2025, 1, 1);
    const auto [mine, base] = bench::bestOf(
        std::max(runs, 3), [&] { return mergedReport(paths, from, last, outDir); }, [&] { return bareDaySums(paths, from, last); });
    bench::printFigure(QStringLiteral("merged %1x%2 lines ms").arg(mergedFiles).arg(mergedLines), mine, base, "3.00");
    return 0;
}
