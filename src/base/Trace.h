// Trace: the log of what the program does, for support and for the user who
// turns it on.
//
// Lines read "*** <proc>: <text>". The trace is off unless the key "debug"
// of section "misc" in pelkor.ini holds a value other than "0"; the menu can
// turn it on and off while the program runs. The file is
// <logDirectory>/PelkorLog_<first four characters of the command line>_<n>.txt
// with n the process id, so instances side by side never share a file. It
// is opened when the trace turns on and closed when it turns off and at
// exit; each line is flushed as it is written so a crash loses nothing.
//
// Also here: DBMsgBox, which traces a line and hands it to the debug panel
// when the window has one turned on.
#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace pelkor::platform { class ProfileFile; }

namespace pelkor {

class Trace {
public:
    // Nothing is opened until setOn(true).
    Trace(QString logDirectory, QString commandLine);
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    // True when pelkor.ini asks for the trace ([misc] debug other than "0").
    static bool wantedBy(const platform::ProfileFile& ini);

    bool noTrace() const { return !on_; }
    // Turns the trace on (opening the file, creating its folder) or off
    // (closing it). A file that cannot be opened leaves the trace off.
    void setOn(bool on);
    QString filePath() const;

    // Copies name into the caller's local and into curProc, then traces
    // "<<<< starting".
    void traceEnter(QString& procLocal, const QString& name);
    // Traces ">>>> finished".
    void traceLeave(const QString& procLocal);
    // One line "*** <proc>: <text>" when the trace is on; nothing when off.
    void traceLine(const QString& proc, const QString& text);
    const QString& curProc() const { return curProc_; }

    // The debug panel of a window: shown text with font size and colours.
    // The window sets it while its check box is on, and clears it after.
    using Panel = std::function<void(const QString& text, int fontSize, const QString& colour,
                                     const QString& backColour)>;
    void setDebugPanel(Panel p) { panel_ = std::move(p); }
    void DBMsgBox(const QString& proc, const QString& text, int fontSize = 14,
                  const QString& colour = QStringLiteral("Black"),
                  const QString& backColour = QStringLiteral("White"));

private:
    struct File;
    QString dir_;
    QString commandLine_;
    QString curProc_;
    bool on_ = false;
    std::unique_ptr<File> file_;
    Panel panel_;
};

// traceEnter at construction and traceLeave at destruction, so an early
// return still writes the closing line.
class TraceScope {
public:
    TraceScope(Trace& t, const QString& name) : t_(t) { t_.traceEnter(proc_, name); }
    ~TraceScope() { t_.traceLeave(proc_); }
    const QString& proc() const { return proc_; }
    void line(const QString& text) { t_.traceLine(proc_, text); }
    TraceScope(const TraceScope&) = delete;
    TraceScope& operator=(const TraceScope&) = delete;
private:
    Trace& t_;
    QString proc_;
};

} // namespace pelkor
