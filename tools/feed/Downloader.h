// Downloader: what runIt does, apart from its window.
//
// runIt is started twice by a reconciliation (each line as the ledger
// writes it):
//   runIt f<n>                       prepare; nothing visible
//   runIt c +<n> <box> <nDays>       the window "עידכון נתונים" for bank n
// and for tests and scripts, with the same answers but no window:
//   runIt c +<n> <box> <nDays> --from <file> [--from <file> ...]
//
// The user picks one or more statement files; each is read (Statement.h),
// refused files are reported and left out; the usable ones are planned into
// feed rows (FeedRows.h) and shown; on confirm the feed atl613o<n>.dll in
// the temporary folder is replaced (FeedWriter.h) and box <box> is set to
// "pelkor OK". Closing, cancelling, an unusable file under --from, or a
// failed write set it to "pelkor CLOSED". The feed is touched only by a
// whole, successful write.
//
// This class holds no widget: the window (RunItWindow) is a view over it,
// and every question goes through the ui seam, so scripted runs answer by
// rule.
#pragma once

#include "FeedRows.h"
#include "Statement.h"

#include "seams/platform/Paths.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace pelkor::ui { class Ui; }

namespace pelkor::feed {

// How runIt ends; the process's exit code.
enum class ExitCode : int {
    Written = 0,      // the feed was written; "pelkor OK"
    BadCommand = 1,   // the command line is not one of runIt's
    Unusable = 2,     // a file was refused, or nothing usable was read
    Closed = 3,       // the user closed or cancelled, or gave no balance
    WriteFailed = 4,  // the feed could not be written; the old one stands
};

struct Command {
    enum class Kind { Prepare, Download } kind = Kind::Download;
    int bank = -1;
    QString box;        // the mailbox id as written
    int nDays = 90;
    QStringList from;   // --from files: run without a window
};

// The command or why it is refused (in Hebrew).
struct ParsedCommand {
    std::optional<Command> command;
    QString error;
};
ParsedCommand parseCommand(const QStringList& args);

// The title of runIt's window, by which the ledger finds it.
QString windowTitle();

class Downloader {
public:
    Downloader(ui::Ui& ui, const platform::Paths& paths, const Command& command);

    const Command& command() const { return command_; }
    // "עידכון נתונים - מזרחי".
    QString bankLine() const;
    QString feedPath() const;

    struct Loaded {
        QString path;
        ReadResult result;
    };
    // Reads the files and adds the usable ones; returns the refusals'
    // messages (empty when every file was usable). A file already loaded is
    // read again in its place.
    QStringList addFiles(const QStringList& paths);
    // Asks for files through the ui's file dialog; false when cancelled.
    bool pickFiles();
    const QList<Loaded>& files() const { return files_; }
    void clearFiles();

    // The plan of the files loaded so far; asks for a missing closing
    // balance through the ui (once per statement and pick).
    const FeedPlan& plan();
    // What the window shows: per file its format and details, per account
    // its rows, dates, sums and closing balance, then every problem.
    QString summary();

    // Writes the feed and answers "pelkor OK"; on failure answers
    // "pelkor CLOSED". Returns how runIt ends.
    ExitCode confirm(QString* error = nullptr);
    // Answers "pelkor CLOSED" (once) and returns Closed.
    ExitCode close();
    bool answered() const { return answered_; }

    // The --from run: read, plan, write, answer. Messages go to stderr.
    ExitCode runHeadless();

private:
    void answer(const QString& text);

    ui::Ui& ui_;
    platform::Paths paths_;
    Command command_;
    QList<Loaded> files_;
    std::optional<FeedPlan> plan_;
    bool answered_ = false;
};

// The first start: makes sure the temporary folder exists and clears
// half-written feeds that an interrupted run left there.
ExitCode prepare(const platform::Paths& paths, int bank);

} // namespace pelkor::feed
