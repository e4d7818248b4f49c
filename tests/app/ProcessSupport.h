// What the process tests share: the real program run headless (offscreen,
// scripted dialogs, a transcript, a data directory of its own), the
// transcript's records, the trace a run wrote, and a ledger made from SQL.
//
// A run is waited for with the event loop running, so boxes this test
// process owns (a parent's txtMessage, a host's text boxes) answer the
// program's synchronous sends meanwhile.
#pragma once

#include "file/Schema.h"
#include "seams/bus/Published.h"
#include "seams/platform/ProfileFile.h"
#include "seams/store/Connection.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "seams/bus/BusTestSupport.h"
#include "TestSupport.h"

namespace pelkor::proctest {

using bus::bustest::RuntimeFolder;
using bus::bustest::spinUntil;

// One line of a transcript.
struct Record {
    qint64 pid = 0;
    QString kind, title, text, answer;
    // "kind|title|text|answer", as the tests compare them.
    QString joined() const { return QStringList{kind, title, text, answer}.join(QLatin1Char('|')); }
};

inline QList<Record> recordsOf(const QString& transcript)
{
    QFile f(transcript);
    QList<Record> out;
    if (!f.open(QIODevice::ReadOnly))
        return out;
    for (const QString& line : QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList p = line.split(QLatin1Char('\t'));
        out.append({p.value(0).toLongLong(), p.value(1), p.value(2), p.value(3), p.value(4)});
    }
    return out;
}

// Every record of the transcript as "kind|title|text|answer", in order.
inline QStringList promptsOf(const QString& transcript)
{
    QStringList out;
    for (const Record& r : recordsOf(transcript))
        out << r.joined();
    return out;
}

using testing::makeLedger;

// Rows of a query on the file, "a|b" each, joined by ";".
inline QString query(const QString& file, const QString& sql) { return testing::queryRows(file, sql); }

// SQLite's own check of the file: "ok" when every page and index is whole.
inline QString integrityOf(const QString& file)
{
    store::Connection cn;
    cn.open(file, store::Connection::OpenMode::ReadOnly);
    sqlite3_stmt* st = nullptr;
    QString out;
    if (sqlite3_prepare_v2(cn.handle(), "PRAGMA integrity_check", -1, &st, nullptr) == SQLITE_OK)
        while (sqlite3_step(st) == SQLITE_ROW)
            out += QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
    sqlite3_finalize(st);
    return out;
}

// The program run headless in dir: data directory dir/home, rules in
// dir/rules, transcript dir/transcript.tsv (when transcript is not cleared).
class Program {
public:
    explicit Program(const QString& dir)
        : dir_(dir), transcript(dir + QStringLiteral("/transcript.tsv"))
    {
        bus::bustest::ensureApplication();
    }
    ~Program()
    {
        if (process.state() != QProcess::NotRunning) {
            process.kill();
            process.waitForFinished(10000);
        }
    }

    QString home() const { return dir_ + QStringLiteral("/home"); }

    // The scripted dialogs' rules, one a line.
    bool setRules(const QString& rules) const
    {
        QFile f(dir_ + QStringLiteral("/rules"));
        return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(rules.toUtf8()) >= 0;
    }

    // [misc] debug=1 in the data directory's pelkor.ini: the run traces.
    bool traceOn() const
    {
        QDir().mkpath(home());
        return platform::ProfileFile(home() + QStringLiteral("/pelkor.ini"))
            .writeString(QStringLiteral("misc"), QStringLiteral("debug"), QStringLiteral("1"));
    }

    // false: the questions come up as real windows (on the display), for a
    // test that answers them by keys.
    bool scripted = true;

    // display: an X display to show the window on (the xcb platform);
    // empty: offscreen.
    bool start(const QStringList& args, const QString& display = {})
    {
        auto env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("PELKOR_HOME"), home());
        if (scripted) {
            env.insert(QStringLiteral("PELKOR_DIALOGS"), dir_ + QStringLiteral("/rules"));
            if (!transcript.isEmpty())
                env.insert(QStringLiteral("PELKOR_TRANSCRIPT"), transcript);
        } else {
            env.remove(QStringLiteral("PELKOR_DIALOGS"));
            env.remove(QStringLiteral("PELKOR_TRANSCRIPT"));
        }
        if (display.isEmpty()) {
            env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        } else {
            env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
            env.insert(QStringLiteral("DISPLAY"), display);
            env.remove(QStringLiteral("WAYLAND_DISPLAY"));
        }
        process.setProcessEnvironment(env);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(QStringLiteral(PELKOR_BINARY_DIR "/prjPelkor"), args);
        if (!process.waitForStarted(30000))
            return false;
        pid_ = process.processId();
        return true;
    }

    // Waits for the end with the event loop running. The exit code, or -1
    // when the run did not end by itself in time (or crashed).
    int finish(int ms = 120000)
    {
        if (!spinUntil([&] { return process.state() == QProcess::NotRunning; }, ms))
            return -1;
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    // The process id, kept after the process ended.
    qint64 pid() const { return pid_; }

    QList<Record> records() const { return recordsOf(transcript); }
    QStringList prompts() const { return promptsOf(transcript); }

    // Waits (event loop running) for a record that pred accepts.
    bool waitForRecord(const std::function<bool(const Record&)>& pred, int ms = 60000) const
    {
        return spinUntil(
            [&] {
                for (const Record& r : records())
                    if (pred(r))
                        return true;
                return false;
            },
            ms);
    }
    // Waits for a window of this mode ("mode 1", "mode 4 type 3") to be ready.
    bool waitForWindow(const QString& mode, int ms = 60000) const
    {
        return waitForRecord([&](const Record& r) { return r.kind == QLatin1String("window") && r.text.contains(mode); },
                             ms);
    }

    // The trace that process pid wrote in the data directory.
    QString traceOf(qint64 pid) const
    {
        const QDir logs(home() + QStringLiteral("/PelkorLogs"));
        const QStringList names = logs.entryList({QStringLiteral("PelkorLog_*_%1.txt").arg(pid)}, QDir::Files);
        if (names.size() != 1)
            return {};
        QFile f(logs.filePath(names.first()));
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }
    QString trace() const { return traceOf(pid()); }

    QProcess process;

private:
    QString dir_;
    qint64 pid_ = 0;

public:
    QString transcript;
};

// A working run started with args, traced, with the rules, ready for
// texts: its txtMessage, or 0 when it did not get that far.
inline quint32 startWorkingRun(Program& run, const QStringList& args, const QString& rules = {})
{
    if (!run.traceOn() || !run.setRules(rules) || !run.start(args))
        return 0;
    if (!run.waitForWindow(QStringLiteral("mode 1")))
        return 0;
    return bus::findPublished(run.pid(), QStringLiteral("txtMessage"));
}

// The texts a trace shows txtMessage taking, each with the lines its
// handling traced between its start and its end (the text's own line
// left out), in order: {"refresh", ["*** cmdRefresh_Click: <<<< starting", ...]}.
struct Handled {
    QString text;
    QStringList lines;
};
inline QList<Handled> textsHandled(const QString& trace)
{
    const QString start = QStringLiteral("*** txtMessage_Change: <<<< starting");
    const QString end = QStringLiteral("*** txtMessage_Change: >>>> finished");
    QList<Handled> out;
    const QStringList lines = trace.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (lines[i] != start || i + 1 >= lines.size())
            continue;
        Handled h;
        h.text = lines[i + 1].mid(QStringLiteral("*** txtMessage_Change: ").size());
        for (i += 2; i < lines.size() && lines[i] != end; ++i)
            h.lines << lines[i];
        out << h;
    }
    return out;
}

} // namespace pelkor::proctest
