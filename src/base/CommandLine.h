// CommandLine: the verbs an instance is started with.
//
// The program's arguments are joined by blanks into theCommand and read as
// one of these forms (ids are mailbox ids, eight hexadecimal digits; dates
// dd/mm/yyyy):
//
//   (empty)                                  the repair run: pick a file
//   open [<file>]                            a working run on the file, or
//   <file>                                     on "CURRENTFILE" without one
//   new<t> <h1> <h2> <h3> <file>             a new-line child, fixed positions
//   detail <h> <k> <date> <conv> <file>      k 0..2: a day's lines
//   detail <h> <k> <from> <to> <x> <file>    k 3: kind x, k 4: type x
//   mrg detail ...                           the same on a merged file
//   merged <verb> <from> <to> <h> <file>     a merged file's period report
//   dayblnc                                  the daily summary alone
//   bank...                                  open, then start reconciling
//   host <h1> <h2> <any of the main forms>   the same under the outer host
//
// The outer host starts a main instance (a repair run, a working run, the
// daily summary, a reconciliation) with its two text boxes in front of the
// verb, as ids in the order the new-line child's line carries them
// (hostTextBox1, hostTextBox2; zeros for none). A child verb takes no such
// prefix: a new-line child has the host's ids at its fixed positions, and
// a detail or merged child answers its parent only.
//
// A file path is always the rest of the line, so it may hold blanks.
// Anything else is refused with a reason; the caller shows "wrong option"
// (or "wrong newLineDialogType" for a bad new-line digit).
#pragma once

#include "base/Modes.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <cstdint>

namespace pelkor {

struct StartCommand {
    enum class Verb { Empty, Open, New, Detail, Merged, DayBalance, Bank, Wrong, WrongNewLineType };
    Verb verb = Verb::Empty;
    ProgMode progMode = modeOpenedFile;
    NewLineDialogType newLineDialogType = lineDialogNone;
    std::uint32_t parentMessagesWindow = 0;  // new: the parent's frmMessages
    std::uint32_t hostTextBox1 = 0, hostTextBox2 = 0;  // new, or a host prefix
    std::uint32_t parentTxtMessage = 0;       // detail, merged: the sender's txtMessage
    QString file;                             // empty: from the parameters
    DetailKind detailKind = detailNone;
    QDate fromDate, toDate;
    double conv = 0;
    QString detailKindText;                   // kind 3: the kind
    int detailTypeIndex = -1;                 // kind 4: the type number
    bool isMerged = false;
    QString mergedVerb;                       // "ktrep", "ktrpw", "ktrpd"
    QString reason;                           // why a Wrong command was refused
    // A Wrong command keeps the host's ids when its prefix was whole, so
    // the host still hears the instance end.
};

// The version the program reports (--version, the about box).
inline constexpr char programVersion[] = "2003.14.02";

// "--help" (or "-h") and "--version" alone on the line are answered on the
// standard output before any window or display is needed; any other line
// that begins with "-" is a wrong option.
enum class InfoOption { None, Help, Version };
InfoOption infoOption(const QStringList& arguments);
// What --help prints: the forms of the command line, in Hebrew.
QString usageText();

// Reads theCommand (the arguments joined by single blanks).
StartCommand parseCommandLine(const QString& theCommand);

// The new-line child's command line, fixed positions: "new<t> <h1> <h2>
// <h3> <file>" with each id as eight hexadecimal digits.
QString newLineCommand(int type, std::uint32_t messagesWindow, std::uint32_t host1, std::uint32_t host2,
                       const QString& file);

// Eight hexadecimal digits with leading zeros.
QString idText(std::uint32_t id);
// Exactly eight hexadecimal digits; false otherwise.
bool parseIdText(const QString& text, std::uint32_t& id);

} // namespace pelkor
