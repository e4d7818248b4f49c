// Coordination: pairing the marked rows of both grids (the button
// "ה ת א ם"), and the dialogs that close a session's loose ends.
//
// One line against one bank row takes the bank's sums and date whatever
// they were. One line against several bank rows of one day becomes their
// sum. Several lines against one bank row keep their sums and take the
// bank's date when the sums agree within an agora; where they do not, a
// balancing line ("(שורת איזון יתרה)") is born on the bank's date and the
// user completes it in a new-line dialog, another instance of the program
// working on the same working table. Lines and bank rows of opposite
// directions are never paired, nor many lines with many bank rows.
//
// At the end of a session, bank rows with no partner become new lines
// (dialog type 1), and lines with no partner move to the day after the
// target date (dialog type 2), before the closing proof.
//
// Everything here writes only the working table (tempPelkor); the table
// of lines is replaced at the session's end, and not here.
//
// Not here: what a mark or a link is (RowLinks), the session's life.
#pragma once

#include "base/Modes.h"
#include "reconcile/RowLinks.h"

#include <QDate>
#include <QString>

#include <functional>
#include <optional>

namespace pelkor {
class WindowCalls;
}

namespace pelkor::reconcile {

// Two sums agree when they differ by at most one agora either way; the
// bound itself agrees (a difference of 0.01 computed in doubles may come out
// a few units of 1e-15 above it).
bool sumsAgree(double a, double b);

// The list of invoice kinds ("+1,+3,") as an IN list ("'+1','+3'"); empty
// for none.
QString invoiceKindsInList(const QString& theInvoiceCategs);

struct CoordinationParts {
    LinkParts links;
    RowLinks& rowLinks;
    WindowCalls& window;                        // openNewDialog, refresh
    std::function<void()> closeCn, reopenCon;   // the window's connection, closed and opened anew
    std::function<void(bool enabled)> enableWindow;
    std::function<void()> compareFinalBalances; // the closing proof
    std::function<void(bool mainGrid)> focusGrid;
};

class Coordination {
public:
    explicit Coordination(CoordinationParts parts) : p_(std::move(parts)) {}

    // The button: pairs what is marked, or says why not.
    void cmdCoordinate_Click();
    // Ends a pairing of several lines with one bank row whose sums agree.
    void completeHandlingMultiplePelkorLines();
    // The first step of finishing: unmarked bank rows become new lines.
    void checkForUnconfirmedBankRows();
    // Then unmarked lines move past the target date; then the proof.
    void checkForUnconfirmedRows();
    // The lines a dialog may change, kept (savedPelkor) so that a cancel
    // brings them back; the connection is reopened so the other instance
    // sees them.
    void saveCopy();

    // A dialog instance is running and its answer has not come.
    bool isWaitingForDialog() const { return pendingType_ != lineDialogNone; }
    NewLineDialogType pendingType() const { return pendingType_; }
    // The dialog's answer: ok for "pelkor OK", else it was closed.
    void dialogAnswered(bool ok);

    long long balancingLineID = -1;             // the balancing line a dialog returned
    QDate coordDate;
    std::optional<Keyed<QString>> copyOfPaintedIDs;
    bool wasMainGridActive = true;
    // Set from the window: which grid had the focus when the button was pressed.
    std::function<bool()> isMainGridActive;

private:
    void oneToOne();
    void oneToMany();
    void manyToOne();
    // A link of the marked rows, every one of them confirmed (each line
    // after beforeLine(its index), when given) and the new pair lit.
    int confirmMarked(const std::function<void(int lineIndex)>& beforeLine);
    void startDialog(NewLineDialogType type);
    void putBackRows();
    void addNewLinesOfDialog(NewLineDialogType type);
    bool refuse(const QString& text);

    CoordinationParts p_;
    NewLineDialogType pendingType_ = lineDialogNone;
    int savedMainRow_ = 1, savedBankRow_ = 1;
};

} // namespace pelkor::reconcile
