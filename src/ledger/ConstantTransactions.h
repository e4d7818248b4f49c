// ConstantTransactions: a recurring transaction written out as lines.
//
// The user gives one line's values, a first and a last date, a step (the
// jump words of file/Lines: day, week, month, two months, quarter), an
// optional change of the sums in percent at each step, "end of month", and
// whether the rule itself is kept in ConstantLines. addLines then writes an
// ordinary line per step straight into linesTable; nothing recomputes them
// later.
//
// The whole series, the ConstantLines row included, is one transaction: a
// process killed in the middle leaves no half series behind.
//
// Not here: the dialog that fills the rule (frmConstantTransactions) and
// the reload that shows the new lines (the caller's).
#pragma once

#include "file/Lines.h"

#include <QDate>
#include <QString>

namespace pelkor {

namespace ui { class Ui; }
struct OpenLedger;

struct ConstantRule {
    // kind (stored form), confirm, detail, In, out, Type, Memo, isTzefi.
    Line theLine;
    QDate FDate;          // invalid until filled
    QDate TDate;          // invalid until filled
    QString jump;         // one of jumpWords()
    double percent = 0;   // change of the sums at each step
    bool endOfMonth = false;
    bool saveInDB = false;
};

enum class AddLinesResult {
    NothingToWrite,   // both sums 0: the dialog closes, nothing written
    Cancelled,        // the start lies before the zeroing date and the user said Cancel
    Written,          // the series is in the file (possibly no line: dates past TDate)
    WrongJump,        // a step the generation does not know: the lines before it are written
    SumTooLarge,      // a sum of the series is more than a line holds: the user told, nothing written
};

struct AddLinesOutcome {
    AddLinesResult result = AddLinesResult::NothingToWrite;
    int linesWritten = 0;
    int ruleNumber = -1;   // the ConstantLines row, when saved
    // True when the dialog is to close and the file to be reloaded.
    bool closes() const { return result != AddLinesResult::Cancelled && result != AddLinesResult::SumTooLarge; }
};

// The date a step of jump takes from d; an invalid date for a jump word
// the generation does not know. Calendar steps keep a day that a short
// month cut: 31 January, 28 February, 28 March.
QDate stepDate(const QDate& d, const QString& jump);

// addLines: writes the series of rule into ledger.linesTable (and the rule
// into ConstantLines when saveInDB), asking through ui about a start before
// the zeroing date. Each line: lineDate is curDate, or with endOfMonth the
// first of the month after it; the series ends when lineDate passes TDate;
// a curDate on a Saturday moves its line to the Sunday (the test is on
// curDate, so such a line may fall a day past TDate); the sums are
// multiplied by 1 + percent/100 at each step, never rounded. A series
// whose sums grow past what a line holds is refused whole, before any
// question. A store failure rolls the whole series back and reaches the
// caller.
AddLinesOutcome addLines(OpenLedger& ledger, ui::Ui& ui, const ConstantRule& rule);

} // namespace pelkor
