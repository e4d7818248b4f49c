// Importer: the statement importer (runIt) as the reconciliation starts
// and watches it.
//
// A download is two starts of the importer: "f<n>", which prepares and
// ends, then "c +<n> <box> <nDays>", which shows the window "עידכון נתונים",
// leaves the feed and answers in mailbox <box> ("pelkor OK" or "pelkor
// CLOSED"). All the session relies on is those two command lines, that
// window title, the feed and the answer: an importer that reads files the
// user picks and one that downloads from the bank are the same to it.
//
// processImporter runs the real program; tests play one.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace pelkor::reconcile {

class Importer {
public:
    virtual ~Importer() = default;
    // The program being started, for messages.
    virtual QString program() const = 0;
    // The first start: runs the importer and waits for it to end. False
    // when it could not be started or did not end well.
    virtual bool prepare(const QStringList& args) = 0;
    // The second start: the importer's window. False when it could not start.
    virtual bool start(const QStringList& args) = 0;
    // True while the process of the last start runs.
    virtual bool running() const = 0;
    // How the last started process ended, once it has: crashed, or its
    // exit code.
    virtual bool crashed() const = 0;
    virtual int exitCode() const = 0;
    // Brings the top window of that title forward; false when none is found.
    virtual bool bringToFront(const QString& title) = 0;
    // Asks the importer's window to close, and ends the process if it does
    // not go; nothing when none runs.
    virtual void close() = 0;
};

// The importer's program: runIt beside the program, else where the build
// tree keeps it (tools/feed), else the name beside the program (which will
// not start, and says so).
QString importerProgram(const QString& programDir);

// The importer as a process of this user's desktop. raise brings a window
// of the given title forward (null: the desktop places it itself).
std::unique_ptr<Importer> processImporter(QString program, std::function<bool(const QString& title)> raise = {});

} // namespace pelkor::reconcile
