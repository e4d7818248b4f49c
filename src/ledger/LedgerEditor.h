// LedgerEditor: the user changes the ledger in the main grid.
//
// Nothing is written while the user types. The write happens in one place,
// msfgMainLeaveCell, which runs whenever the cursor leaves a cell: it
// compares the cell's text with the line's record, validates, asks about
// history above the red line, writes one statement per changed value on
// the table linesTable names, updates the record and recalculates. Every
// other route (the editors, F2, F8, the kind dialog) only puts text into
// the cell and lets this commit run.
//
// The editors are state here (EditState): the view lays txtCell or the
// type pair over the cell and reports what the user typed. Keys come from
// the view as Qt key codes; the handlers move the grid model's cursor and
// call the commit and msfgMain_EnterCell as the grid's events would.
//
// Split over files: LedgerEditor.cpp (the commit and the return to a
// failed cell), CellEditors.cpp (opening the editors, the type list and its
// completion, the kind dialog, the colour), GridKeys.cpp (the keys),
// NewLine.cpp (the new line at the end of the grid), Deleting.cpp
// (deleting lines), Zeroing.cpp (setting and finding the
// zeroing line).
#pragma once

#include "ledger/EditState.h"

#include <QDate>
#include <QString>
#include <Qt>

#include <functional>

namespace pelkor {

namespace ui { class Ui; }
class WindowCalls;
struct Instance;
struct Line;
struct MainGrid;
struct OpenLedger;
struct Shown;
namespace grid { class GridModel; }

// The parts the editing works on.
struct EditParts {
    OpenLedger& ledger;
    const Instance& instance;
    MainGrid& grid;
    Shown& shown;
    ui::Ui& ui;
    WindowCalls& window;
    EditState& edit;
    QDate today;
    // The window's reload through openDB, landing on the line grid.theID
    // at grid.theOffset rows from the top (after a delete, after the
    // zeroing line moved). Nothing is reloaded when it is empty.
    std::function<void()> reload = {};
    // A new-line child's OK (frmMain::cmdOK_Click), after every one of
    // its lines was deleted.
    std::function<void()> finishChild = {};
};

class LedgerEditor {
public:
    explicit LedgerEditor(EditParts parts) : p_(parts) {}

    // ---- the commit and the cursor ----------------------------------------
    void msfgMainLeaveCell();
    void msfgMain_EnterCell();
    // True when the user declined to touch history above the red line.
    bool canceledBecauseAboveRed(bool isDateCol);
    // The first load is done: the commit and the cursor events may run.
    void setLoaded();

    // ---- the editors --------------------------------------------------------
    // Opens the editor on the current cell: "^" (or a double click) and
    // Enter open it with the cell's text and the caret at the end; another
    // key above blank opens it with that character alone.
    void GridEdit(QChar keyAscii);
    // The view reports the editors' text and selection as the user edits.
    void txtCell_Change(const QString& text, int selStart, int selLength);
    void txtCombo_Change(const QString& text, int selStart, int selLength);
    // A click on a row of the type list.
    void cmbTypes_Click(int index);
    // Completes theTxt from the type list (txtCombo over cmbTypes).
    void doSearch();
    // A double click on a cell.
    void msfgMain_DblClick();
    // The kind dialog on the current line; the choice goes into the cell
    // and is committed.
    void doKindDlg(const QString& currentKind);
    // A colour chosen for the current line.
    void cmbColors_Click(const QString& colorName);
    // Takes an open editor's text into the cell and closes it (the grid
    // got the focus back).
    void msfgMain_GotFocus();

    // ---- keys ---------------------------------------------------------------
    // A key on the grid with no editor open; true when it was taken.
    bool msfgMain_KeyDown(int key, Qt::KeyboardModifiers mods);
    // A character typed on the grid: opens the editor with it.
    void msfgMain_KeyPress(QChar ch);
    // A key in txtCell, txtCombo or the type list; true when it was taken
    // (the editor does not handle it itself).
    bool txtCell_KeyDown(int key, Qt::KeyboardModifiers mods);
    bool cmbTypes_KeyDown(int key, Qt::KeyboardModifiers mods);

    // ---- new lines (NewLine.cpp) --------------------------------------------
    // Insert, the menu, "add": commits the open cell (a refused value keeps
    // the cursor), writes a pending new line first (a refusal stops here),
    // then opens an empty line at the end of the grid, cursor in its kind.
    // Nothing is written until the line is left.
    void cmdAdd_Click();
    // Writes the pending new line from its cells, if there is one. True
    // when the caller may go on: written, none pending, or dropped at the
    // user's word (no date). False, with the user told, when it stays
    // pending; the cursor is then on it.
    bool maybeWriteNewLineToDB();
    // Before a reload or closing: an open editor's text is taken, the cell
    // committed and a pending new line written. False when the new line
    // stays pending (the user kept it).
    bool commitAll();
    // Esc on the grid: the new line goes, unwritten, with no question.
    void removeNewLine();
    // The grid lost the focus to another control of the window.
    void msfgMain_LostFocus();
    // The cursor is on the unsaved new line.
    bool isOnNewLine() const;

    // ---- deleting lines (Deleting.cpp) --------------------------------------
    // The Delete key on the grid (isFromButton false) and cmdDel: asks, then
    // deletes the selected rows. The key over less than whole rows only
    // empties the current cell; the commit runs when the cursor leaves it.
    void delNow(bool isFromButton);
    // Deletes grid rows fromRow..toRow, except confirmed rows ("v"), which
    // are counted and kept; one transaction with the zeroing mark's move.
    // isSilent: no mark move, no messages, no reload (the caller reloads).
    // Returns how many rows were kept as confirmed; -1 when nothing was
    // tried (the last line of the file must stay).
    int deleteRows(int fromRow, int toRow, bool isSilent);
    void cmdDel_Click();
    // A bad-lines child: every row selected, then the question.
    void cmdDelAll_Click();

    // ---- the zeroing line (Zeroing.cpp) --------------------------------------
    // F6, cmdIpus, the menu, "setipus"/"gotoipus": the zeroing date becomes
    // the current line's date; the mark goes to that date's last line, the
    // file reloads on the same line and the red line follows.
    void cmdIpus_Click();
    // Brings the zeroing line to the top of the grid with the cursor on it.
    void cmdGoToIpusLine_Click();

    // ---- lookups on the catalogue -------------------------------------------
    // +k for the k-th income type in list order, -k for the k-th expense
    // type, 999 for a name not in the list.
    int getTypeIndex(const QString& name) const;
    // The type's own number; 999 if none.
    int GetTypeBigIndex(const QString& name) const;
    // The name of a type list row: the text before the first "(", trimmed.
    static QString TrimType(const QString& row);
    // A kind as the user may type it ("+12", "12+" as the grid shows it, or
    // "12", taken as income) in its stored form, sign in front; other text
    // stays as it is.
    static QString storedKind(const QString& typed);

    // Which column the keyboard language follows and the window's state
    // around the cursor (called after each settled move).
    void updateDisplay();

private:
    // Column rules of the commit.
    void commitKind(int iLine, bool onNewLine);
    void commitDate(int iLine, bool onNewLine);
    void commitText(int iLine, bool onNewLine, bool isDetail);
    void commitIn(int iLine, bool onNewLine);
    void commitOut(int iLine, bool onNewLine);
    void commitType(int iLine, bool onNewLine);
    void sumTail(bool executed);
    // A sum that turns the line's side gives it the default type of that
    // side: the record, the type's number and the cell of row.
    void setType(int row, const QString& name);
    // ", TypeNum = <n>" for the statement that stores the line's side with
    // its type; empty when the type has no number.
    QString typeNumSet(const Line& L) const;
    // Runs a statement unless the row is the unsaved new line.
    bool exec(const QString& sql, bool onNewLine);
    void refuse(const QString& message, const QString& recordText);
    void keep(const QString& recordText);
    QString cell(int col) const;
    void setCell(int col, const QString& text);
    void setCellAt(int row, int col, const QString& text);
    int currentLine() const;
    bool isConfirmedRow(int row) const;
    bool sumsLocked() const;
    QString recordDateText(int iLine) const;

    // Editors.
    void openTypeList(QChar keyAscii);
    void closeEditors();
    // The cursor moves as the keys of the grid and the editors move it.
    void commitAndMove(int dRow, int dCol);
    void nextCell(bool forward);
    void afterMoveTo(int row, int col);
    void F2(bool inEditor);
    bool editorKeyDown(int key, Qt::KeyboardModifiers mods);
    bool sidewaysKey(int key, Qt::KeyboardModifiers mods);
    void F8();
    void takeEditorText(bool throughFixString);
    // The Delete key over part of a row: the current cell is emptied.
    void emptyCurrentCell();
    // After a delete: the reload, landing as grid.theID/theOffset say.
    void reloadAfterChange();

    grid::GridModel& g() const;

    EditParts p_;
};

} // namespace pelkor
