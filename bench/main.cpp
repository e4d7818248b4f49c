// pelkor_bench: the speed figures of the project, each printed as a ratio to
// a baseline measured in the same run on the same file, so the figures mean
// the same on a fast or a slow machine.
//
//   pelkor_bench [--sizes 10000,100000,1000000] [--data DIR] [--runs N]
//                [--only store|bare|open|edit|delete|move|feed|bank|swap|match|web|charts|reports|compare|merged]
//
// Figures:
//   read    all lines in the ledger's order through the store (translation,
//           registered functions, collation, Values) against the same read
//           through the bare SQLite API copying each value out. Target 1.2.
//   open    a working run on the file (the main window's logic started with
//           "open <file>") up to a filled grid model, against the same bare
//           read. Target 1.3.
//   memory  what the working run holds after the load, per 100,000 lines,
//           against the bare read's rows held in memory; each side measured
//           in a fresh process of its own. Target 1.2.
//   find    a search with no hit over the description column of a working
//           run (to the end, the wrap, and round again), the texts made
//           from the lines as the grid defers them, against a plain loop
//           testing as many texts with QString::contains. Target 2.
//   days, chart  the daily summary's folding and one balance chart, on the
//           largest file (ChartsBench.cpp).
//   edit    in a working run opened on the file, one edited expense near the
//           top of the ledger committed: from the text put into the cell to
//           the end of msfgMainLeaveCell (the question about history answered
//           yes by the scripted ui, the statement, the balances of nearly
//           every row, the model's notices), against the bare SQLite
//           "BEGIN; UPDATE ... SET out ...; COMMIT;" of the same row on a
//           connection of its own to the same file, kept as the store
//           keeps it (WAL mode, each commit checkpointed into the file). Both sides write a changed value each time. The
//           median of blocks of runs, as the file is written and again
//           with the disk's flush off on both sides. Target 2.0.
//   page    a pick-list page of 10,000 rows written and shown by the web
//           seam, ready for a click, against a bare WebEngine view showing
//           the same page from a file (bench/WebBench.cpp). Target 2.0.
//   report, render  the monthly report by kind and type of the whole file
//           written, against SQLite's monthly aggregate; its page shown by
//           the web seam (bench/ReportsBench.cpp). Target 3.
//   compare  both pages of a comparison of two files of 100,000 lines, a
//           year each, against SQLite's grouped sum by kind of the same
//           ranges (bench/CompareBench.cpp). Target 3.
//   merged  the merged bank report of five files of 100,000 lines over a
//           year, against SQLite's sum by day of the same files
//           (bench/MergedBench.cpp). Target 3.
//
// Each figure is the best of several runs of each side, the two sides taking
// turns and each going first in half of the rounds, so that a busy machine
// (a build, another test) slows a run without deciding the ratio; the edit
// figures are medians, as said above. Without
// --runs the count follows the size: many runs of a small file, which take
// milliseconds and are easily disturbed, and a few of a big one. --only runs
// one figure (store and bare one side alone, for a profiler; open with its
// memory figure).
//
// Generated files are kept in DIR (default bench-data beside the binary) and
// reused while their line count is right.
#include "BenchSupport.h"
#include "gen/LedgerGenerator.h"

#include "file/Display.h"
#include "file/Schema.h"
#include "frame/frmMain.h"
#include "seams/store/Connection.h"
#include "seams/ui/ScriptedUi.h"
#include "seams/grid/GridModel.h"
#include "transfer/MoveOrCopy.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

using namespace pelkor;
using bench::bestOf;
using bench::countLines;
using bench::medianOfBlocks;
using bench::printFigure;

namespace {

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
// own substr/length in the order and every value copied into a row. kept,
// when given, receives the rows.
double bareRead(const QString& path, long expected, std::vector<BareRow>* kept = nullptr)
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
    if (kept)
        *kept = std::move(rows);
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

// A working run on the file, as "prjPelkor open <file>" starts one, with
// no dialogs and the data directory in a temporary folder.
class WorkingRun {
public:
    explicit WorkingRun(const QString& path)
        : ui_(QString(), QString())
    {
        frmMain::Environment env;
        env.ui = &ui_;
        env.paths = platform::Paths::under(home_.path());
        env.today = QDate::currentDate();
        env.arguments = QStringList{QStringLiteral("open"), path};
        env.endProcess = [](int) {};
        m_ = std::make_unique<frmMain>(env);
        m_->Form_Load();
    }
    const frmMain& logic() const { return *m_; }
    frmMain& logic() { return *m_; }

private:
    QTemporaryDir home_;
    ui::ScriptedUi ui_;
    std::unique_ptr<frmMain> m_;
};

double openRun(const QString& path, long expected)
{
    QElapsedTimer t;
    t.start();
    WorkingRun run(path);
    const double ms = double(t.nsecsElapsed()) / 1e6;
    if (run.logic().mainGrid().msfgMain.Rows() != expected + 1)
        std::fprintf(stderr, "open filled %d grid rows, expected %ld\n", run.logic().mainGrid().msfgMain.Rows(), expected + 1);
    return ms;
}

// The edit figure's two sides on one file: a working run kept open with its
// cursor on the expense of an expense line near the top, and a connection
// of the bare API to the same file. Each call writes a value that differs
// from the one before, so that every commit really changes the row.
class EditSides {
public:
    explicit EditSides(const QString& path)
        : run_(path)
    {
        frmMain& m = run_.logic();
        const auto& lines = m.ledger().lines;
        // From the second line on, so the balance starts from a cell above.
        for (size_t i = 1; i < std::min<size_t>(lines.size(), 1000) && line_ < 0; ++i)
            if (lines[i].out != 0 && lines[i].In == 0)
                line_ = int(i);
        if (line_ < 0) {
            std::fprintf(stderr, "edit: no expense line near the top\n");
            return;
        }
        id_ = lines[size_t(line_)].Id.toLongLong();
        grid::GridModel& g = m.mainGrid().msfgMain;
        // Where a click on the cell leaves the grid: the row shows.
        g.setTopRow(line_ + 1);
        m.editor().msfgMainLeaveCell();
        g.setRow(line_ + 1);
        g.setCol(colOut);
        m.editor().msfgMain_EnterCell();
        sqlite3_open_v2(path.toUtf8().constData(), &db_, SQLITE_OPEN_READWRITE, nullptr);
        sqlite3_exec(db_, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
        sqlite3_wal_autocheckpoint(db_, 1);
    }
    ~EditSides() { sqlite3_close(db_); }
    // Both sides stop waiting for the disk at each commit.
    void noFlush()
    {
        sqlite3_exec(db_, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
        run_.logic().ledger().cn.executeRaw(QStringLiteral("PRAGMA synchronous=OFF"));
    }
    EditSides(const EditSides&) = delete;
    EditSides& operator=(const EditSides&) = delete;

    bool ready() const { return line_ >= 0 && db_; }

    double mine()
    {
        frmMain& m = run_.logic();
        const double v = next(m.ledger().lines[size_t(line_)].out);
        const QString text = FormatSum(v);
        QElapsedTimer t;
        t.start();
        m.mainGrid().msfgMain.setText(line_ + 1, colOut, text);
        m.editor().msfgMainLeaveCell();
        const double ms = double(t.nsecsElapsed()) / 1e6;
        if (m.ledger().lines[size_t(line_)].out != v)
            std::fprintf(stderr, "edit: the line holds %.2f, expected %.2f\n", m.ledger().lines[size_t(line_)].out, v);
        return ms;
    }

    double bare()
    {
        bareOut_ = next(bareOut_);
        const std::string sql = "BEGIN; UPDATE pelkor SET out = " + std::to_string(bareOut_)
            + " WHERE id = " + std::to_string(id_) + "; COMMIT;";
        QElapsedTimer t;
        t.start();
        char* error = nullptr;
        if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
            std::fprintf(stderr, "edit: the bare update failed: %s\n", error ? error : "?");
            sqlite3_free(error);
        }
        return double(t.nsecsElapsed()) / 1e6;
    }

private:
    // Two sums taken in turn.
    static double next(double was) { return was == 123.45 ? 234.56 : 123.45; }

    WorkingRun run_;
    int line_ = -1;
    long long id_ = 0;
    sqlite3* db_ = nullptr;
    double bareOut_ = 0;
};

// The edit figures: the median of blocks of runs (see medianOfBlocks: a
// commit waits for the disk's flush, whose time varies more than the
// work), first as the file is written, then with the flush off on both
// sides, which leaves the work itself. False if the file has no line to
// edit.
bool editFigures(const QString& path, long n, int count)
{
    EditSides sides(path);
    if (!sides.ready())
        return false;
    const auto mine = [&] { return sides.mine(); };
    const auto bare = [&] { return sides.bare(); };
    const auto [editMs, updateMs] = medianOfBlocks(count, mine, bare);
    printFigure(QStringLiteral("edit %1 lines ms").arg(n), editMs, updateMs, "2.00", 3);
    sides.noFlush();
    const auto [workMs, bareWorkMs] = medianOfBlocks(count, mine, bare);
    printFigure(QStringLiteral("edit %1, no flush ms").arg(n), workMs, bareWorkMs, "2.00", 3);
    return true;
}

// The find figure's two sides: a search with no hit over the description
// column of a working run (both passes: the end, the wrap, and the second
// pass to the report), the column's texts deferred again before each
// search so that every text is made from its line; against a plain loop
// testing as many texts with QString::contains.
class FindSides {
public:
    explicit FindSides(const QString& path) : run_(path) {}

    double mine()
    {
        frmMain& m = run_.logic();
        grid::GridModel& g = m.mainGrid().msfgMain;
        g.deferTexts(1, g.Rows() - 1, colDetail, colDetail);
        FindState& s = m.findState();
        s.findCol = colDetail;
        s.findRow = 0;
        s.findText = QStringLiteral("אין טקסט כזה בשום שורה");
        s.onlyBelowRed = false;
        s.hasWrapped = false;
        QElapsedTimer t;
        t.start();
        const Finder::Outcome o = m.finder().doFind(true, true);
        const double ms = double(t.nsecsElapsed()) / 1e6;
        if (o != Finder::Outcome::NotFound)
            std::fprintf(stderr, "find: a search with no hit ended otherwise\n");
        return ms;
    }

    double bare()
    {
        const auto& lines = run_.logic().ledger().lines;
        const QString sought = QStringLiteral("אין טקסט כזה בשום שורה");
        QElapsedTimer t;
        t.start();
        long hits = 0;
        for (int pass = 0; pass < 2; ++pass)
            for (const Line& L : lines)
                hits += L.detail.contains(sought, Qt::CaseInsensitive) ? 1 : 0;
        const double ms = double(t.nsecsElapsed()) / 1e6;
        if (hits != 0)
            std::fprintf(stderr, "find: the plain loop found something\n");
        return ms;
    }

private:
    WorkingRun run_;
};

// The resident set of this process, in bytes.
double residentBytes()
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() * 1024.0;
    return 0;
}

// In a fresh process: loads the file by side ("open" or "bare"), keeps
// what the load made, and prints the growth of the resident set in bytes.
int measureMemory(const QString& side, const QString& path, long expected)
{
    // The libraries and the store's first use are paid before the count starts.
    {
        store::Connection cn;
        cn.open(path);
        cn.execute(QStringLiteral("SELECT COUNT(id) FROM pelkor"));
    }
    const double before = residentBytes();
    double after = 0;
    if (side == QLatin1String("open")) {
        WorkingRun run(path);
        after = residentBytes();
    } else {
        std::vector<BareRow> rows;
        bareRead(path, expected, &rows);
        after = residentBytes();
    }
    std::printf("%.0f\n", after - before);
    return 0;
}

// Megabytes per 100,000 lines of a side, measured in a child process.
double memoryPer100k(const QString& side, const QString& path, long n)
{
    QProcess p;
    p.start(QCoreApplication::applicationFilePath(),
            {QStringLiteral("--memory"), side, path, QString::number(n)});
    if (!p.waitForFinished(-1) || p.exitCode() != 0) {
        std::fprintf(stderr, "memory of %s: the measuring process failed\n", qPrintable(side));
        return 0;
    }
    const double bytes = QString::fromLatin1(p.readAllStandardOutput()).trimmed().toDouble();
    return bytes / (1024.0 * 1024.0) / (double(n) / 100000.0);
}

// Runs of each side for a file of n lines: some three seconds of reading
// per side, at least 5 runs and at most 50.
// Deleting a range of 1,000 lines from the middle of the file, the reload
// included, on a fresh copy each round: the window's delete (its
// statements, the zeroing mark, the reload through openDB) against a bare
// DELETE of the same ids in a transaction and the bare sorted read.
class DeleteSides {
public:
    explicit DeleteSides(const QString& path) : path_(path)
    {
        copy_ = dir_.filePath(QStringLiteral("delete.pkr"));
    }

    double mine()
    {
        fresh();
        WorkingRun run(copy_);
        frmMain& m = run.logic();
        const int from = int(m.ledger().lines.size()) / 2;
        QElapsedTimer t;
        t.start();
        m.editor().deleteRows(from, from + count - 1, false);
        const double ms = double(t.nsecsElapsed()) / 1e6;
        if (m.ledger().lines.size() != size_t(expected_ - count))
            std::fprintf(stderr, "delete: %zu lines after, expected %ld\n", m.ledger().lines.size(), expected_ - count);
        return ms;
    }

    double bare()
    {
        fresh();
        // The same lines: the middle thousand in the file's order.
        std::vector<BareRow> rows;
        bareRead(copy_, expected_, &rows);
        const size_t from = rows.size() / 2 - 1;
        std::string ids;
        for (size_t i = from; i < from + count; ++i)
            ids += (ids.empty() ? "" : ",") + std::to_string(rows[i].id);
        const std::string sql = "BEGIN; DELETE FROM pelkor WHERE id IN (" + ids + "); COMMIT;";
        sqlite3* db = nullptr;
        QElapsedTimer t;
        t.start();
        sqlite3_open_v2(copy_.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
        sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
        sqlite3_close(db);
        bareRead(copy_, expected_ - count);
        return double(t.nsecsElapsed()) / 1e6;
    }

    void setExpected(long n) { expected_ = n; }
    static constexpr int count = 1000;

private:
    void fresh()
    {
        QFile::remove(copy_);
        QFile::remove(copy_ + QStringLiteral("-wal"));
        QFile::remove(copy_ + QStringLiteral("-shm"));
        QFile::copy(path_, copy_);
    }
    QString path_;
    QTemporaryDir dir_;
    QString copy_;
    long expected_ = 0;
};

// The move figure: 1,000 lines of a working run sent by moveOrCopyRows to
// another ledger of the same size (the run's own reload of the source
// included), against the bare SQLite insert of those rows into the target
// and their delete from the source, each one transaction, then the bare
// read of the source the reload stands for. Both sides start from fresh
// copies of the same two files.
class MoveSides {
public:
    explicit MoveSides(const QString& path) : path_(path)
    {
        source_ = dir_.filePath(QStringLiteral("move-source.pkr"));
        target_ = dir_.filePath(QStringLiteral("move-target.pkr"));
    }

    double mine()
    {
        fresh();
        WorkingRun run(source_);
        frmMain& m = run.logic();
        grid::GridModel& g = m.mainGrid().msfgMain;
        // The last thousand lines: past both files' zeroing dates.
        g.setRow(g.Rows() - count);
        g.setRowSel(g.Rows() - 1);
        transfer::MoveParts parts{m.ledger(), m.instance(), g, m.ui()};
        parts.reload = [&m] { m.cmdRefresh_Click(); };
        QElapsedTimer t;
        t.start();
        const transfer::MoveReport r = transfer::moveOrCopyRows(parts, target_, true);
        const double ms = double(t.nsecsElapsed()) / 1e6;
        moved_ = r.deleted;
        if (r.written != count || m.ledger().lines.size() != size_t(expected_ - r.deleted))
            std::fprintf(stderr, "move: %d written, %d deleted, %zu lines after\n", r.written, r.deleted,
                         m.ledger().lines.size());
        return ms;
    }

    double bare()
    {
        fresh();
        std::vector<BareRow> rows;
        bareRead(source_, expected_, &rows);
        const size_t from = rows.size() - count;
        QElapsedTimer t;
        t.start();
        sqlite3* src = nullptr;
        sqlite3* dst = nullptr;
        sqlite3_open_v2(source_.toUtf8().constData(), &src, SQLITE_OPEN_READWRITE, nullptr);
        sqlite3_open_v2(target_.toUtf8().constData(), &dst, SQLITE_OPEN_READWRITE, nullptr);
        sqlite3_exec(dst, "BEGIN", nullptr, nullptr, nullptr);
        sqlite3_stmt* ins = nullptr;
        sqlite3_prepare_v2(dst, "INSERT INTO pelkor (kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) "
                                "VALUES (?,?,?,?,?,?,?,' ',?)", -1, &ins, nullptr);
        std::string ids;
        for (size_t i = from; i < rows.size(); ++i) {
            const BareRow& r = rows[i];
            sqlite3_bind_text(ins, 1, r.kind.c_str(), -1, SQLITE_STATIC);
            sqlite3_bind_text(ins, 2, r.date.c_str(), -1, SQLITE_STATIC);
            sqlite3_bind_text(ins, 3, r.confirm.c_str(), -1, SQLITE_STATIC);
            sqlite3_bind_text(ins, 4, r.detail.c_str(), -1, SQLITE_STATIC);
            sqlite3_bind_double(ins, 5, r.in);
            sqlite3_bind_double(ins, 6, r.out);
            sqlite3_bind_int64(ins, 7, r.type);
            sqlite3_bind_text(ins, 8, r.memo.c_str(), -1, SQLITE_STATIC);
            sqlite3_step(ins);
            sqlite3_reset(ins);
            ids += (ids.empty() ? "" : ",") + std::to_string(r.id);
        }
        sqlite3_finalize(ins);
        sqlite3_exec(dst, "COMMIT", nullptr, nullptr, nullptr);
        const std::string del = "BEGIN; DELETE FROM pelkor WHERE id IN (" + ids + "); COMMIT;";
        sqlite3_exec(src, del.c_str(), nullptr, nullptr, nullptr);
        sqlite3_close(dst);
        sqlite3_close(src);
        bareRead(source_, expected_ - count);
        return double(t.nsecsElapsed()) / 1e6;
    }

    void setExpected(long n) { expected_ = n; }
    static constexpr int count = 1000;

private:
    void fresh()
    {
        for (const QString& f : {source_, target_}) {
            QFile::remove(f);
            QFile::remove(f + QStringLiteral("-wal"));
            QFile::remove(f + QStringLiteral("-shm"));
            QFile::copy(path_, f);
            // The zeroing line 1,200 lines from the end in both files, so
            // the last thousand are all past it and every one moves.
            sqlite3* db = nullptr;
            sqlite3_open_v2(f.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
            const std::string mark = "BEGIN; UPDATE pelkor SET zee=' ' WHERE zee='ZZZZZZZZZZ';"
                                     " UPDATE pelkor SET zee='ZZZZZZZZZZ' WHERE id = (SELECT id FROM pelkor"
                                     " ORDER BY date DESC, id DESC LIMIT 1 OFFSET 1200); COMMIT;";
            sqlite3_exec(db, mark.c_str(), nullptr, nullptr, nullptr);
            sqlite3_close(db);
        }
    }
    QString path_;
    QTemporaryDir dir_;
    QString source_, target_;
    long expected_ = 0;
    int moved_ = 0;
};

int runsFor(long n)
{
    return int(std::clamp(3000000L / std::max(n, 1L), 5L, 50L));
}

} // namespace

int feedFigure(const QString& dataDir, int runs);  // FeedBench.cpp
int bankFigure(const QString& dataDir, int runs);  // BankBench.cpp
int swapFigure(const QString& dataDir, int runs);  // SwapBench.cpp
int matchFigure(int runs);  // MatchBench.cpp
#ifdef PELKOR_BENCH_WEB
int webFigureProcess(int argc, char** argv, int runs);  // WebBench.cpp
void webFigure(const QString& program, int runs);
#endif
int chartsFigure(std::vector<Line>& lines, int runs); // ChartsBench.cpp
int compareFigure(const QString& dataDir, int runs, const QString& outDir); // CompareBench.cpp
int mergedFigure(const QString& dataDir, int runs, const QString& outDir);  // MergedBench.cpp
int reportsFigure(const QString& path, long n, int runs, QString* kindPage, const QString& outDir); // ReportsBench.cpp
#ifdef PELKOR_BENCH_WEB
int reportRenderProcess(int argc, char** argv);
void reportRenderFigure(const QString& program, const QString& page, long n, int runs);
#endif

int main(int argc, char** argv)
{
#ifdef PELKOR_BENCH_WEB
    // The page figure's own process, with a GUI application of its own.
    if (argc == 3 && std::string(argv[1]) == "--web")
        return webFigureProcess(argc, argv, std::max(1, std::atoi(argv[2])));
    if (argc == 4 && std::string(argv[1]) == "--report-render")
        return reportRenderProcess(argc, argv);
#endif
    // The memory figure's measuring process stays a plain one, as it was.
    if (argc == 5 && std::string(argv[1]) == "--memory") {
        QCoreApplication app(argc, argv);
        const QStringList args = app.arguments();
        return measureMemory(args[2], args[3], args[4].toLong());
    }
    // A GUI application (offscreen unless told otherwise): the chart figure
    // draws text.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = app.arguments();
    QList<long> sizes{10000, 100000, 1000000};
    QString dataDir = QCoreApplication::applicationDirPath() + QStringLiteral("/bench-data");
    int runs = 0;  // 0: by size, see runsFor
    QString only;
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
    std::printf("%-28s %12s %12s %8s %8s\n", "figure", "pelkor", "baseline", "ratio", "target");
#ifdef PELKOR_BENCH_WEB
    if (only.isEmpty() || only == QLatin1String("web")) {
        webFigure(QCoreApplication::applicationFilePath(), runs > 0 ? runs : 5);
        if (!only.isEmpty())
            return 0;
    }
#endif
    if (only.isEmpty() || only == QLatin1String("match")) {
        const int matchCode = matchFigure(runs);
        if (!only.isEmpty())
            return matchCode;
    }
    if (only.isEmpty() || only == QLatin1String("feed")) {
        const int feedCode = feedFigure(dataDir, runs);
        if (!only.isEmpty())
            return feedCode;
    }
    if (only.isEmpty() || only == QLatin1String("bank")) {
        const int bankCode = bankFigure(dataDir, runs);
        if (!only.isEmpty())
            return bankCode;
    }
    if (only.isEmpty() || only == QLatin1String("swap")) {
        const int swapCode = swapFigure(dataDir, runs);
        if (!only.isEmpty())
            return swapCode;
    }
    if (only.isEmpty() || only == QLatin1String("compare")) {
        QTemporaryDir pages;
        compareFigure(dataDir, runs > 0 ? runs : 5, pages.path());
        if (!only.isEmpty())
            return 0;
    }
    if (only.isEmpty() || only == QLatin1String("merged")) {
        QTemporaryDir pages;
        mergedFigure(dataDir, runs > 0 ? runs : 5, pages.path());
        if (!only.isEmpty())
            return 0;
    }
    for (long n : sizes) {
        const QString path = QStringLiteral("%1/ledger-%2.pkr").arg(dataDir).arg(n);
        if (countLines(path) != n) {
            std::fprintf(stderr, "generating %ld lines...\n", n);
            generator::GeneratorOptions o;
            o.lines = n;
            generator::generateLedger(path, o);
        }
        const int count = runs > 0 ? runs : runsFor(n);
        const auto bare = [&] { return bareRead(path, n); };
        const auto read = [&] { return storeRead(path, n); };
        const auto open = [&] { return openRun(path, n); };
        // An edit takes milliseconds: as many rounds as a small file's read.
        const int editCount = std::max(count, 100);
        if (only == QLatin1String("delete")) {
            DeleteSides deletes(path);
            deletes.setExpected(n);
            const auto [delMs, bareDelMs] = bestOf(count, [&] { return deletes.mine(); }, [&] { return deletes.bare(); });
            printFigure(QStringLiteral("delete 1000 of %1 ms").arg(n), delMs, bareDelMs, "1.50");
            continue;
        }
        if ((only.isEmpty() && n == 100000) || only == QLatin1String("move")) {
            MoveSides moves(path);
            moves.setExpected(n);
            const auto [moveMs, bareMoveMs] = bestOf(5, [&] { return moves.mine(); }, [&] { return moves.bare(); });
            printFigure(QStringLiteral("move 1000 of %1 ms").arg(n), moveMs, bareMoveMs, "2.00");
            if (!only.isEmpty())
                continue;
        }
        if (only == QLatin1String("edit")) {
            if (!editFigures(path, n, editCount))
                return 1;
            continue;
        }
        if (only.isEmpty() || only == QLatin1String("reports")) {
            QTemporaryDir pages;
            QString kindPage;
            reportsFigure(path, n, std::max(3, count / 3), &kindPage, pages.path());
#ifdef PELKOR_BENCH_WEB
            reportRenderFigure(QCoreApplication::applicationFilePath(), kindPage, n, 3);
#endif
            if (!only.isEmpty())
                continue;
        }
        if (only == QLatin1String("charts") || (only.isEmpty() && n == sizes.last())) {
            WorkingRun run(path);
            chartsFigure(run.logic().ledger().lines, count);
            if (!only.isEmpty())
                continue;
        }
        if (only == QLatin1String("open")) {
            // The open and the memory after it, each against its baseline.
            const auto [openMs, bareOpenMs] = bestOf(std::max(3, count / 3), open, bare);
            printFigure(QStringLiteral("open %1 lines ms").arg(n), openMs, bareOpenMs, "1.30");
            const double mine = memoryPer100k(QStringLiteral("open"), path, n);
            const double base = memoryPer100k(QStringLiteral("bare"), path, n);
            printFigure(QStringLiteral("memory %1 lines MB/100k").arg(n), mine, base, "1.20");
            continue;
        }
        if (!only.isEmpty()) {
            double best = 1e300;
            for (int r = 0; r < count; ++r)
                best = std::min(best, only == QLatin1String("bare") ? bare() : only == QLatin1String("open") ? open() : read());
            std::printf("%-28s %12.1f\n", QStringLiteral("%1 %2 lines ms").arg(only).arg(n).toUtf8().constData(), best);
            continue;
        }
        const auto [readMs, bareMs] = bestOf(count, read, bare);
        printFigure(QStringLiteral("read %1 lines ms").arg(n), readMs, bareMs, "1.20");
        // A working run costs several reads: fewer rounds of it.
        const auto [openMs, bareMs2] = bestOf(std::max(3, count / 3), open, bare);
        printFigure(QStringLiteral("open %1 lines ms").arg(n), openMs, bareMs2, "1.30");
        const double mine = memoryPer100k(QStringLiteral("open"), path, n);
        const double base = memoryPer100k(QStringLiteral("bare"), path, n);
        printFigure(QStringLiteral("memory %1 lines MB/100k").arg(n), mine, base, "1.20");
        editFigures(path, n, editCount);
        if (n == 100000) {
            DeleteSides deletes(path);
            deletes.setExpected(n);
            const auto [delMs, bareDelMs] = bestOf(5, [&] { return deletes.mine(); }, [&] { return deletes.bare(); });
            printFigure(QStringLiteral("delete 1000 of %1 ms").arg(n), delMs, bareDelMs, "1.50");
        }
        FindSides finds(path);
        const auto [findMs, loopMs] = bestOf(std::max(3, count / 3), [&] { return finds.mine(); }, [&] { return finds.bare(); });
        printFigure(QStringLiteral("find %1 lines ms").arg(n), findMs, loopMs, "2.00", 2);
    }
    return 0;
}
