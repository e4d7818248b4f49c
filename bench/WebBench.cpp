// The page figure: the forecast pick page of 10,000 rows built by the
// program's own builder (one buffer, every user text through htmlEscape),
// written in windows-1255 to the temporary folder, shown in the web seam's
// view and ready for a click (complete, the notifier's handler attached),
// against a bare QWebEngineView showing the same page from a file written
// beforehand, from setUrl to loadFinished. Target 2.0.
//
// WebEngine needs a GUI application and a platform: the figure runs in a
// process of its own (this program started with --web) on the offscreen
// platform, and says so and skips when the engine does not come up.
#include "BenchSupport.h"
#include "app/web/QtWebView.h"
#include "ledger/TzefiPage.h"
#include "seams/web/Html.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QWebEngineView>

#include <algorithm>
#include <cstdio>

using namespace pelkor;
using bench::waitUntil;

namespace {

constexpr int pageRows = 10000;

// The page: the forecast pick list (tempTzefi.htm) of 10,000 candidates,
// as frmSubtractFromTzefi writes it.
QString buildPage()
{
    static const char* const details[] = {"שכר דירה - משרד ראשי", "ספק \"חומרי דפוס\" & בניו בע\"מ, חשבונית שנתית",
                                          "העברה <מלקוח>", "ארנונה", "חשמל 'מרץ'"};
    std::vector<TzefiCandidate> c;
    c.reserve(pageRows);
    for (int i = 0; i < pageRows; ++i)
        c.push_back(TzefiCandidate{QString::number(i + 1), QStringLiteral("+%1").arg(i % 40 + 1),
                                   QDate(2025, i % 12 + 1, i % 28 + 1), QString::fromUtf8(details[i % 5]), 1000 + i * 7.25, i});
    return tzefiPage(c, QStringLiteral("Arial"));
}

void blank(QWebEngineView& v)
{
    bool loaded = false;
    auto c = QObject::connect(&v, &QWebEngineView::loadFinished, [&] { loaded = true; });
    v.setUrl(QUrl(QStringLiteral("about:blank")));
    waitUntil([&] { return loaded; });
    QObject::disconnect(c);
}

} // namespace

// The figure's own process: prints "web <mine> <base>" in milliseconds, or
// "skip <why>".
int webFigureProcess(int argc, char** argv, int runs)
{
    web::QtWebView::prepareEngine();
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    QTemporaryDir dir;
    const QString basePage = dir.filePath(QStringLiteral("bare.htm"));
    if (web::writePage(dir.path(), QStringLiteral("bare.htm"), buildPage()).isEmpty()) {
        std::printf("skip cannot write the page\n");
        return 0;
    }
    QWebEngineView bare;
    bare.resize(800, 600);
    bare.show();
    web::QtWebView wb;
    wb.resize(800, 600);
    wb.show();
    const auto base = [&] {
        blank(bare);
        bool loaded = false;
        auto c = QObject::connect(&bare, &QWebEngineView::loadFinished, [&] { loaded = true; });
        QElapsedTimer t;
        t.start();
        bare.setUrl(QUrl::fromLocalFile(basePage));
        const bool ok = waitUntil([&] { return loaded; });
        QObject::disconnect(c);
        return ok ? double(t.nsecsElapsed()) / 1e6 : -1.0;
    };
    const auto mine = [&] {
        wb.navigate(QStringLiteral("about:blank"));
        waitUntil([&] { return wb.isComplete(); });
        bool ready = false;
        wb.setDocumentComplete([&](const QString&) { ready = wb.attachNotifier(web::clsForward([] {})); });
        QElapsedTimer t;
        t.start();
        const QString page = web::writePage(dir.path(), QStringLiteral("rows.htm"), buildPage());
        wb.navigate(page);
        const bool ok = waitUntil([&] { return ready; });
        wb.setDocumentComplete({});
        return ok ? double(t.nsecsElapsed()) / 1e6 : -1.0;
    };
    if (base() < 0 || mine() < 0) {
        std::printf("skip WebEngine did not show the page\n");
        return 0;
    }
    const auto [m, b] = bench::bestOf(runs, mine, base, false);
    std::printf("web %.1f %.1f\n", m, b);
    return 0;
}

// Runs the figure's process and prints its line of the table.
void webFigure(const QString& program, int runs)
{
    bench::childFigure(program, {QStringLiteral("--web"), QString::number(runs)}, QStringLiteral("web"),
                       QStringLiteral("page 10000 rows ms"), "2.00", 300000);
}
