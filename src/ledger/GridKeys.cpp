// The keys of the main grid and of its editors. Every key that moves the
// cursor commits first; the grid then moves, and msfgMain_EnterCell puts
// the cursor back when the commit failed.
#include "ledger/LedgerEditor.h"

#include "base/Format.h"
#include "base/Instance.h"
#include "base/Modes.h"
#include "base/WindowCalls.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "ledger/Tzefi.h"
#include "seams/grid/GridModel.h"

namespace pelkor {

namespace {
// The columns a user types in, in index order (the next column is on the
// left of the screen).
constexpr int firstEditable = colKind;
constexpr int lastEditable = colType;
} // namespace

void LedgerEditor::commitAndMove(int dRow, int dCol)
{
    grid::GridModel& grid = g();
    int row = grid.Row() + dRow;
    int col = grid.Col() + dCol;
    row = std::clamp(row, grid.FixedRows(), std::max(grid.FixedRows(), grid.Rows() - 1));
    col = std::clamp(col, firstEditable, lastEditable);
    msfgMainLeaveCell();
    afterMoveTo(row, col);
}

void LedgerEditor::afterMoveTo(int row, int col)
{
    grid::GridModel& grid = g();
    grid.setRow(row);
    grid.setCol(col);
    // Keep the cursor on the page.
    if (row < grid.TopRow())
        grid.setTopRow(row);
    else if (!grid.RowIsVisible(row) || row >= grid.TopRow() + std::max(1, grid.visibleRows()))
        grid.setTopRow(std::max(grid.FixedRows(), row - std::max(1, grid.visibleRows()) + 1));
    msfgMain_EnterCell();
}

void LedgerEditor::nextCell(bool forward)
{
    grid::GridModel& grid = g();
    int row = grid.Row();
    int col = grid.Col() + (forward ? 1 : -1);
    if (col > lastEditable) {
        if (row < grid.Rows() - 1) {
            ++row;
            col = firstEditable;
        } else {
            col = lastEditable;
        }
    } else if (col < firstEditable) {
        if (row > grid.FixedRows()) {
            --row;
            col = lastEditable;
        } else {
            col = firstEditable;
        }
    }
    msfgMainLeaveCell();
    afterMoveTo(row, col);
}

void LedgerEditor::F2(bool inEditor)
{
    EditState& e = p_.edit;
    const int col = g().Col();
    if (inEditor) {
        if (e.lastValues[size_t(col)] != QLatin1String("?")) {
            e.txtCell.text = e.lastValues[size_t(col)];
            e.txtCell.caretAtEnd();
        }
        return;
    }
    const Instance& inst = p_.instance;
    if (col == colType) {
        const QString& last = p_.ledger.lines[size_t(currentLine())].out != 0 ? e.lastOutType : e.lastInType;
        if (last != QLatin1String("?"))
            setCell(colType, last);
        return;
    }
    if ((col == colDate || col == colIn || col == colOut)
        && (isConfirmedRow(g().Row()) || (inst.progMode == modeNewLines && inst.newLineDialogType != lineDialogUnconfirmedPelkor)))
        return;
    if (col >= firstEditable && col <= lastEditable && e.lastValues[size_t(col)] != QLatin1String("?"))
        setCell(col, e.lastValues[size_t(col)]);
}

void LedgerEditor::F8()
{
    const Instance& inst = p_.instance;
    const Line& L = p_.ledger.lines[size_t(currentLine())];
    if (!L.Date.isValid() || L.Date == nullDate() || L.Date == newLineNoDate() || isConfirmedRow(g().Row())
        || (inst.progMode == modeNewLines && inst.newLineDialogType != lineDialogUnconfirmedPelkor))
        return;
    const int col = g().Col();
    g().setCol(colDate);
    setCell(colDate, formatDate224(L.Date.addDays(1)));
    msfgMainLeaveCell();
    g().setCol(col);
    // Repeated presses walk a run of lines forward by a day each.
    if (g().Row() < g().Rows() - 1)
        afterMoveTo(g().Row() + 1, col);
    else
        msfgMain_EnterCell();
}

bool LedgerEditor::msfgMain_KeyDown(int key, Qt::KeyboardModifiers mods)
{
    if (p_.ledger.openDBisBusy || p_.ledger.lines.empty())
        return false;
    if (sidewaysKey(key, mods))
        return true;
    const int page = std::max(1, g().visibleRows() - 1);
    switch (key) {
    case Qt::Key_Down:
        commitAndMove(1, 0);
        return true;
    case Qt::Key_Up:
        commitAndMove(-1, 0);
        return true;
    case Qt::Key_PageDown:
        commitAndMove(page, 0);
        return true;
    case Qt::Key_PageUp:
        commitAndMove(-page, 0);
        return true;
    case Qt::Key_Home:
        if (mods & Qt::ControlModifier)
            commitAndMove(-g().Rows(), 0);
        return true;
    case Qt::Key_End:
        if (mods & Qt::ControlModifier)
            commitAndMove(g().Rows(), 0);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        msfgMain_KeyPress(QLatin1Char('\r'));
        return true;
    case Qt::Key_Space:
        // Shift+Space marks the cursor's rows whole, as a click on the row
        // header does: Delete then deletes them.
        if (!(mods & Qt::ShiftModifier))
            return false;
        msfgMainLeaveCell();
        {
            const int rowSel = g().RowSel();
            g().setCol(g().FixedCols());
            g().setRowSel(rowSel);
            g().setColSel(g().Cols() - 1);
        }
        return true;
    case Qt::Key_F2:
        F2(false);
        return true;
    case Qt::Key_F5:
        p_.window.refresh();
        return true;
    case Qt::Key_F:
        if (!(mods & Qt::ControlModifier))
            return false;
        if (g().Col() >= colKind && g().Col() <= colType)
            p_.window.showFind();
        return true;
    case Qt::Key_F8:
        F8();
        return true;
    case Qt::Key_Delete:
        delNow(false);
        return true;
    case Qt::Key_F6:
        cmdIpus_Click();
        return true;
    case Qt::Key_Escape:
        removeNewLine();
        return true;
    case Qt::Key_Insert:
        cmdAdd_Click();
        return true;
    case Qt::Key_F4:
        toggleRelate(p_, isOnNewLine());
        return true;
    case Qt::Key_F1:
    case Qt::Key_F3:
    case Qt::Key_F7:
    case Qt::Key_F9:
        // Their features (help, reconciliation) are not in
        // this grid: the key does nothing.
        return true;
    default:
        return false;
    }
}

void LedgerEditor::msfgMain_KeyPress(QChar ch)
{
    if (p_.ledger.openDBisBusy || p_.ledger.lines.empty() || ch == QLatin1Char('\x1b') || ch == QLatin1Char('\t'))
        return;
    const int col = g().Col();
    const Instance& inst = p_.instance;
    const bool lockedRow = isConfirmedRow(g().Row())
        || (inst.progMode == modeNewLines && inst.newLineDialogType != lineDialogUnconfirmedPelkor
            && inst.newLineDialogType != lineDialogBadLines);
    if ((col == colDate || col == colIn || col == colOut) && lockedRow)
        return;
    if (ch == QLatin1Char('\r') || ch.unicode() > 32)
        GridEdit(ch);
}

// Tab, Shift+Tab, Left and Right, on the grid and in the editors alike:
// commit, then the next column (on the left of the screen) or the previous
// one, wrapping at the row's ends.
bool LedgerEditor::sidewaysKey(int key, Qt::KeyboardModifiers mods)
{
    switch (key) {
    case Qt::Key_Left:
        nextCell(true);
        return true;
    case Qt::Key_Tab:
        nextCell(!(mods & Qt::ShiftModifier));
        return true;
    case Qt::Key_Backtab:
    case Qt::Key_Right:
        nextCell(false);
        return true;
    default:
        return false;
    }
}

// The keys both editors share: each that moves commits first.
bool LedgerEditor::editorKeyDown(int key, Qt::KeyboardModifiers mods)
{
    if (sidewaysKey(key, mods))
        return true;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        nextCell(true);
        return true;
    case Qt::Key_Escape:
        // No commit: the cell keeps its text.
        closeEditors();
        return true;
    case Qt::Key_Insert:
        msfgMainLeaveCell();
        if (!p_.edit.mustGoBack)
            cmdAdd_Click();
        else
            msfgMain_EnterCell();
        return true;
    case Qt::Key_F6:
        msfgMainLeaveCell();
        cmdIpus_Click();
        return true;
    case Qt::Key_F5:
        msfgMainLeaveCell();
        if (!p_.edit.mustGoBack)
            p_.window.refresh();
        else
            msfgMain_EnterCell();
        return true;
    default:
        return false;
    }
}

bool LedgerEditor::txtCell_KeyDown(int key, Qt::KeyboardModifiers mods)
{
    switch (key) {
    case Qt::Key_Down:
        commitAndMove(1, 0);
        return true;
    case Qt::Key_Up:
        commitAndMove(-1, 0);
        return true;
    case Qt::Key_F2:
        F2(true);
        return true;
    default:
        return editorKeyDown(key, mods);
    }
}

bool LedgerEditor::cmbTypes_KeyDown(int key, Qt::KeyboardModifiers mods)
{
    EditState& e = p_.edit;
    switch (key) {
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        // Deleting a completion must not bring it back.
        if (e.txtCombo.selLength > 0)
            e.suspendCompletion = true;
        return false;
    case Qt::Key_Down:
    case Qt::Key_Up: {
        // Up and Down walk the list, not the grid.
        if (e.cmbTypesRows.isEmpty())
            return true;
        const int next = std::clamp(e.cmbTypesIndex + (key == Qt::Key_Down ? 1 : -1), 0, int(e.cmbTypesRows.size()) - 1);
        e.suspend_cmbTypes_Click = true;
        e.cmbTypesIndex = next;
        e.suspend_cmbTypes_Click = false;
        e.txtCombo.text = TrimType(e.cmbTypesRows[next]);
        e.txtCombo.selectAll();
        p_.window.keyboardLanguage(true);
        return true;
    }
    case Qt::Key_F2: {
        closeEditors();
        const QString& last = p_.ledger.lines[size_t(currentLine())].out != 0 ? e.lastOutType : e.lastInType;
        setCell(colType, last);
        return true;
    }
    default:
        return editorKeyDown(key, mods);
    }
}

} // namespace pelkor
