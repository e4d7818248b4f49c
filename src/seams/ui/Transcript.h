// Transcript: the record of a scripted run, in the file named by
// PELKOR_TRANSCRIPT.
//
// One line per prompt, five fields separated by tabs:
//   <process id> <kind> <title> <text> <answer>
// kind is msgbox, input, open, save, window, a dialog's name (frmNoIpus),
// start (the text is the process's command line) or exit (the text is the
// exit code). In every field a line break (CR LF, LF or CR) is written as
// the two characters "\n" and a tab as a blank, so a line is always one
// record; nothing else is escaped.
//
// Each line is appended with one unbuffered write to a file opened for
// appending, so several processes (a parent and its child instances) can
// share one transcript without their lines mixing. The file is opened for
// each line: a test may remove it between runs.
#pragma once

#include <QString>
#include <QStringList>

namespace pelkor::ui {

class Transcript {
public:
    // An empty path writes nothing.
    explicit Transcript(QString path = {});

    const QString& path() const { return path_; }
    bool isEnabled() const { return !path_.isEmpty(); }

    // Appends one record of this process. Returns false when the file could
    // not be written (the run goes on; a transcript is no reason to stop).
    bool append(const QString& kind, const QString& title, const QString& text,
                const QString& answer) const;

    static QString escape(const QString& field);
    // The whole line, newline included.
    static QString format(qint64 pid, const QString& kind, const QString& title,
                          const QString& text, const QString& answer);
    // Arguments joined by blanks; an argument that is empty or holds a blank
    // is put in double quotes.
    static QString commandLine(const QStringList& arguments);

private:
    QString path_;
};

} // namespace pelkor::ui
