// The period report's figures:
//   report  the monthly report by kind and by type over the whole range of
//           the file, from the statements to the four pages written (the
//           kinds, the date span, the opening balance, the sums by kind and
//           by type grouped in the store, the totals and balance chain, the
//           lists and the two report pages built and written in
//           windows-1255; nothing rendered), against the plain SQLite
//           aggregate "SELECT strftime('%Y-%m',date), kind, sum(in),
//           sum(out) FROM pelkor GROUP BY 1,2" stepped to its end. Target 3.
//   render  the written kind report shown by the web seam up to a page
//           ready for a click (complete, notifier attached), against a bare
//           QWebEngineView from setUrl to loadFinished; in a process of its
//           own on the offscreen platform, as the page figure is.
#include "BenchSupport.h"
#include "reports/PeriodSums.h"
#include "reports/ReportPages.h"
#include "base/Format.h"
#include "seams/store/Connection.h"
#include "seams/web/Html.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <sqlite3.h>

#include <algorithm>
#include <cstdio>

#ifdef PELKOR_BENCH_WEB
#include "app/web/QtWebView.h"
#include <QApplication>
#include <QUrl>
#include <QWebEngineView>
#endif

using namespace pelkor;
using namespace pelkor::reports;

namespace {

// The report as the window builds it, with no window: the same functions
// createReports runs, in its order. Returns the milliseconds; the kind
// report's path in kindPage.
double reportPages(const QString& path, const QString& outDir, QString* kindPage = nullptr)
{
    QElapsedTimer t;
    t.start();
    store::Connection cn;
    cn.open(path);
    KindNames names;
    auto cats = cn.execute(QStringLiteral("SELECT * FROM category ORDER BY Left(id,1) DESC, Len(Mid(id,2)), Mid(id,2)"));
    for (long r = 0; r < cats.recordCount(); ++r) {
        names.ids << cats.at(r, 0).toString();
        names.descs << fixString(RemoveNull(cats.at(r, 1)));
    }
    const DateSpan span = readDateSpan(cn);
    // The whole range of the file, month by month.
    const DateRange range{QDate(span.min.year(), span.min.month(), 1),
                          QDate(span.max.year(), span.max.month(), span.max.daysInMonth())};
    const Periods periods = Periods::make(PeriodType::Month, range.fromDate, range.toDate);
    const MergedRates plain;
    const double opening = readOpeningBalance(cn, range.fromDate, plain);

    SumSet kinds;
    kinds.periodBalance.assign(1, opening);
    TypeTotals types;
    readTypeCatalogue(cn, types);
    types.sums.periodBalance.assign(1, opening);
    readPeriodSums(cn, periods, names.nCategories(), plain, kinds, &types);
    kinds.sumTotalsAndTick();
    calcKindTotals(kinds);
    types.sums.sumTotalsAndTick();
    calcTypeTotals(types, {});
    types.categChecked.assign(types.categories.size(), 0);
    for (size_t c = 0; c < types.categories.size(); ++c)
        types.categChecked[c] = types.categTotals[c] != 0;

    int widest = 0;
    web::writePage(outDir, QStringLiteral("kindList.htm"), kindListPage(names, kinds, estimatedTextWidth, widest));
    web::writePage(outDir, QStringLiteral("typeList.htm"), typeListPage(types, estimatedTextWidth, widest));
    const ReportHead head{QStringLiteral("bench"), sPeriodicOf(PeriodType::Month), -5000, widest + 10};
    const QString kp = web::writePage(outDir, QStringLiteral("kindReport.htm"), kindReportPage(head, periods, names, kinds));
    web::writePage(outDir, QStringLiteral("typeReport.htm"), typeReportPage(head, periods, types, typeRowsOf(types)));
    const double ms = double(t.nsecsElapsed()) / 1e6;
    if (kindPage)
        *kindPage = kp;
    return ms;
}

// The baseline: SQLite's own monthly aggregate by kind.
double bareAggregate(const QString& path)
{
    QElapsedTimer t;
    t.start();
    sqlite3* db = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db, "SELECT strftime('%Y-%m',date), kind, sum(\"in\"), sum(out) FROM pelkor GROUP BY 1,2", -1, &st, nullptr);
    double total = 0;
    while (sqlite3_step(st) == SQLITE_ROW)
        total += sqlite3_column_double(st, 2) - sqlite3_column_double(st, 3);
    sqlite3_finalize(st);
    sqlite3_close(db);
    const double ms = double(t.nsecsElapsed()) / 1e6;
    if (total == 0)
        std::fprintf(stderr, "report: the aggregate summed nothing\n");
    return ms;
}

} // namespace

// Prints the report figure for the file of n lines; kindPage takes the
// written kind report, for the render figure.
int reportsFigure(const QString& path, long n, int runs, QString* kindPage, const QString& outDir)
{
    reportPages(path, outDir);
    bareAggregate(path);
    const auto [mine, base] = bench::bestOf(
        std::max(runs, 3), [&] { return reportPages(path, outDir, kindPage); }, [&] { return bareAggregate(path); }, false);
    bench::printFigure(QStringLiteral("report %1 lines ms").arg(n), mine, base, "3.00");
    return 0;
}

#ifdef PELKOR_BENCH_WEB
// The render figure's own process: "--report-render <page> <runs>".
int reportRenderProcess(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QString page = app.arguments().value(2);
    const int runs = std::max(1, app.arguments().value(3).toInt());
    web::QtWebView seam;
    seam.resize(1200, 700);
    seam.show();
    QWebEngineView bare;
    bare.resize(1200, 700);
    bare.show();
    const auto waitFor = [](const std::function<bool()>& done) { return bench::waitUntil(done, 120000); };
    const auto mine = [&] {
        seam.navigate(QStringLiteral("about:blank"));
        waitFor([&] { return seam.isComplete(); });
        QElapsedTimer t;
        t.start();
        seam.navigate(page);
        const bool ok = waitFor([&] { return seam.isComplete() && seam.attachNotifier(web::clsForward([] {})); });
        return ok ? double(t.nsecsElapsed()) / 1e6 : -1.0;
    };
    const auto base = [&] {
        bool done = false;
        const auto c = QObject::connect(&bare, &QWebEngineView::loadFinished, [&] { done = true; });
        bare.setUrl(QUrl(QStringLiteral("about:blank")));
        waitFor([&] { return done; });
        done = false;
        QElapsedTimer t;
        t.start();
        bare.setUrl(QUrl::fromLocalFile(page));
        const bool ok = waitFor([&] { return done; });
        QObject::disconnect(c);
        return ok ? double(t.nsecsElapsed()) / 1e6 : -1.0;
    };
    if (base() < 0 || mine() < 0) {
        std::printf("skip WebEngine did not show the page\n");
        return 0;
    }
    const auto [m, b] = bench::bestOf(runs, mine, base, false);
    std::printf("render %.1f %.1f\n", m, b);
    return 0;
}

// Runs the render figure's process on the written page and prints its line.
void reportRenderFigure(const QString& program, const QString& page, long n, int runs)
{
    bench::childFigure(program, {QStringLiteral("--report-render"), page, QString::number(runs)}, QStringLiteral("render"),
                       QStringLiteral("render report %1 lines ms").arg(n), "-", 600000);
}
#endif
