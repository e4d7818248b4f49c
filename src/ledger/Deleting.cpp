// Deleting lines: the question (delNow) and the deletion (deleteRows).
//
// A confirmed line ("v", agreed with the bank) is never deleted: it is
// counted and kept, and the others of the range go. The range's deletes
// and the zeroing mark's move are one transaction, so a process that dies
// between them leaves the file as it was. One line must stay in a file;
// only a child may be emptied, and then it ends.
#include "ledger/LedgerEditor.h"

#include "base/Titles.h"
#include "base/Format.h"
#include "base/Instance.h"
#include "base/Modes.h"
#include "base/WindowCalls.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "ledger/Guards.h"
#include "ledger/Zeroing.h"
#include "seams/grid/GridModel.h"
#include "seams/ui/Ui.h"

namespace pelkor {

using ui::Answer;
using ui::Buttons;
using ui::Icon;

namespace {


bool isConfirmed(const grid::GridModel& g, int row) { return g.text(row, colMark) == QLatin1String("v"); }

// Whole rows: the selection runs from the first column after the fixed
// ones to the last column; a grid with no balance column (a child) may
// stop one short of it.
bool wholeRowsSelected(const grid::GridModel& g, const Instance& inst)
{
    const int left = std::min(g.Col(), g.ColSel());
    const int right = std::max(g.Col(), g.ColSel());
    const int last = g.Cols() - 1;
    return left == g.FixedCols() && (right == last || (inst.progMode == modeNewLines && right == last - 1));
}

// The question's text for n rows. Only the line where the selection began
// (Row) is weighed against the zeroing date.
QString deleteQuestion(int n, bool whole, bool history)
{
    QString text = QStringLiteral("?האם אתה בטוח שברצונך למחוק את ");
    if (n == 1) {
        text += QStringLiteral("השורה");
        if (whole)
            text += QStringLiteral(" המסומנת");
        if (history)
            text += QStringLiteral(" למרות שהיא מעל שורת האיפוס");
    } else {
        text += QString::number(n);
        text += history ? QStringLiteral(" השורות המסומנות למרות שלפחות אחת מהן היא מעל שורת האיפוס")
                        : QStringLiteral(" השורות המסומנות");
    }
    return text;
}

} // namespace

void LedgerEditor::emptyCurrentCell()
{
    const Instance& inst = p_.instance;
    const int col = g().Col();
    if (col < colKind || col > colType)
        return;
    // The cells a key may not open are not emptied either.
    const bool lockedRow = isConfirmedRow(g().Row())
        || (inst.progMode == modeNewLines && inst.newLineDialogType != lineDialogUnconfirmedPelkor
            && inst.newLineDialogType != lineDialogBadLines);
    if ((col == colDate || col == colIn || col == colOut) && lockedRow)
        return;
    setCell(col, QString());
}

void LedgerEditor::delNow(bool isFromButton)
{
    const OpenLedger& led = p_.ledger;
    const Instance& inst = p_.instance;
    grid::GridModel& grid = g();
    if (led.openDBisBusy || grid.Row() < 1 || led.lines.empty())
        return;
    if (inst.progMode == modeNewLines && inst.newLineDialogType != lineDialogUnconfirmedPelkor
        && inst.newLineDialogType != lineDialogBadLines)
        return;
    const int fromRow = std::min(grid.Row(), grid.RowSel());
    const int toRow = std::max(grid.Row(), grid.RowSel());
    const bool whole = wholeRowsSelected(grid, inst);
    if (!isFromButton && !whole) {
        emptyCurrentCell();
        return;
    }
    const QDate date = led.lines[size_t(currentLine())].Date;
    const bool history = !inst.isBadLinesChild() && led.ipusDate.isValid() && date.isValid() && date <= led.ipusDate;
    const QString text = deleteQuestion(toRow - fromRow + 1, whole, history);
    if (p_.ui.msgBox(text, QStringLiteral("מחיקה"), Buttons::YesNo, Icon::Question) == Answer::Yes)
        deleteRows(fromRow, toRow, false);
}

int LedgerEditor::deleteRows(int fromRow, int toRow, bool isSilent)
{
    OpenLedger& led = p_.ledger;
    const Instance& inst = p_.instance;
    grid::GridModel& grid = g();
    const int lastRow = grid.Rows() - 1;
    fromRow = std::max(fromRow, 1);
    toRow = std::min(toRow, lastRow);
    if (led.lines.empty() || fromRow > toRow)
        return -1;

    // The reload lands on the line above the range (the first line when the
    // range starts there), as far from the top as the cursor was.
    p_.grid.theID = led.lines[size_t(std::max(fromRow - 1, 1) - 1)].Id;
    p_.grid.theOffset = grid.Row() - grid.TopRow();

    const bool allRows = fromRow == 1 && toRow == lastRow;
    if (allRows && !(inst.progMode == modeDetail
                     || (inst.progMode == modeNewLines
                         && (inst.newLineDialogType == lineDialogUnconfirmedPelkor
                             || inst.newLineDialogType == lineDialogBadLines)))) {
        p_.ui.msgBox(QStringLiteral("יש להשאיר לפחות שורה אחת בפלקור"), QStringLiteral("שגיאה"));
        return -1;
    }
    const int row0 = grid.Row();
    const int col0 = grid.Col();
    // The unsaved new line (the last row) is no statement's target.
    if (p_.edit.isThereNewLine && toRow == lastRow)
        --toRow;
    const int n = toRow - fromRow + 1;

    int forbidden = 0;
    {
        NoRedraw noRedraw(grid);
        const QDate ipusDate = led.ipusDate;
        const QString ipusID = led.ipusID;
        try {
            store::Transaction tx(led.cn);
            bool markDeleted = led.ipusID.isEmpty();
            for (int r = fromRow; r <= toRow; ++r) {
                if (isConfirmed(grid, r)) {
                    ++forbidden;
                    continue;
                }
                // The bank grid's painted lines belong to a reconciliation
                // session; while one runs its lines are deleted here too.
                const QString& id = led.lines[size_t(r - 1)].Id;
                markDeleted = markDeleted || id == led.ipusID;
                led.sql.executeSQL(QStringLiteral("deleteRows"),
                                   QStringLiteral("DELETE * from %1 WHERE id = %2").arg(led.linesTable, id));
            }
            // The mark is on the last line on or before the zeroing date:
            // deleting other lines leaves that one the last, so the mark
            // moves only when its own line went.
            if (!isSilent && markDeleted)
                moveIpusMark(led, inst);
            tx.commit();
        } catch (...) {
            // Nothing was written: the zeroing state is as the file holds it.
            led.ipusDate = ipusDate;
            led.ipusID = ipusID;
            throw;
        }
        if (isSilent)
            return forbidden;
        if (allRows && forbidden == 0) {
            if (inst.progMode == modeNewLines) {
                led.lines.clear();
                led.balances.clear();
                grid.setRows(1);
                if (p_.finishChild)
                    p_.finishChild();
            } else {
                p_.window.exitProg();
            }
            return 0;
        }
    }

    if (n > 0 && forbidden == n) {
        p_.ui.msgBox(n == 1 ? QStringLiteral("השורה לא נמחקה מכיוון שהיא מותאמת")
                            : QStringLiteral("השורות לא נמחקו מכיוון שהן מותאמות"),
                     pelkorTitle, Buttons::OK, Icon::Exclamation);
    } else {
        if (forbidden == 1)
            p_.ui.msgBox(QStringLiteral("אחת השורות לא נמחקה מכיוון שהיא מותאמת"), pelkorTitle, Buttons::OK,
                         Icon::Exclamation);
        else if (forbidden > 1)
            p_.ui.msgBox(QString::number(forbidden) + QStringLiteral(" מהשורות לא נמחקו מכיוון שהן מותאמות"),
                         pelkorTitle, Buttons::OK, Icon::Exclamation);
        reloadAfterChange();
    }
    if (grid.Rows() > 1) {
        grid.setRow(clipRowNum(row0, grid.Rows()));
        grid.setCol(col0);
        msfgMain_EnterCell();
    }
    return forbidden;
}

void LedgerEditor::reloadAfterChange()
{
    // Beside the daily summary the window's refresh reloads both; it lands
    // on the line of the window's row, so that row names the landing line.
    if (p_.instance.progMode == modeDailySummarySplit) {
        for (size_t i = 0; i < p_.ledger.lines.size(); ++i)
            if (p_.ledger.lines[i].Id == p_.grid.theID)
                p_.grid.row = int(i) + 1;
        p_.grid.topRow = p_.grid.row - p_.grid.theOffset;
        p_.window.refresh();
        return;
    }
    if (p_.reload)
        p_.reload();
}

void LedgerEditor::cmdDel_Click()
{
    msfgMain_GotFocus();
    delNow(true);
}

void LedgerEditor::cmdDelAll_Click()
{
    msfgMain_GotFocus();
    msfgMainLeaveCell();
    grid::GridModel& grid = g();
    if (p_.ledger.lines.empty() || grid.Rows() < 2)
        return;
    grid.setRow(1);
    grid.setCol(grid.FixedCols());
    grid.setRowSel(grid.Rows() - 1);
    grid.setColSel(grid.Cols() - 1);
    delNow(true);
}

} // namespace pelkor
