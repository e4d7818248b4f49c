// The floating editors: the cell editor, the type pair and its typed
// completion, the kind dialog, and the line's colour.
#include "ledger/LedgerEditor.h"

#include "base/Titles.h"
#include "base/Format.h"
#include "base/Instance.h"
#include "base/Modes.h"
#include "base/WindowCalls.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "ledger/dlgKind.h"
#include "ledger/frmCalc.h"
#include "seams/grid/GridModel.h"
#include "seams/store/TextForms.h"
#include "seams/ui/Ui.h"

namespace pelkor {

using ui::Buttons;
using ui::Icon;

namespace {
bool isOpening(QChar k) { return k == QLatin1Char('^') || k == QLatin1Char('\r'); }
} // namespace

void LedgerEditor::closeEditors()
{
    EditState& e = p_.edit;
    e.txtCell.visible = false;
    e.txtCombo.visible = false;
    e.cmbTypesVisible = false;
}

bool LedgerEditor::sumsLocked() const
{
    const Instance& inst = p_.instance;
    return isConfirmedRow(g().Row())
        || (inst.progMode == modeNewLines && inst.newLineDialogType != lineDialogUnconfirmedPelkor
            && inst.newLineDialogType != lineDialogBadLines);
}

bool LedgerEditor::isConfirmedRow(int row) const { return g().text(row, colMark) == QLatin1String("v"); }

void LedgerEditor::GridEdit(QChar keyAscii)
{
    const int col = g().Col();
    if (p_.ledger.lines.empty() || p_.ledger.openDBisBusy)
        return;
    if (p_.instance.detail.conv != 0 && (col == colIn || col == colOut)) {
        p_.ui.msgBox(QStringLiteral("לא ניתן לשנות סכומים במצב המרה"), errorTitle, Buttons::OK, Icon::Exclamation);
        return;
    }
    if (col == colBalance || col <= g().FixedCols())
        return;
    if (col == colType)
        return openTypeList(keyAscii);
    EditState& e = p_.edit;
    e.txtCell.visible = true;
    e.txtCell.text = isOpening(keyAscii) ? cell(col) : QString(keyAscii);
    e.txtCell.caretAtEnd();
}

void LedgerEditor::openTypeList(QChar keyAscii)
{
    EditState& e = p_.edit;
    const Catalogue& c = p_.ledger.catalogue;
    // The direction of the list: the name in the cell, else the line's sums.
    const QString name = cell(colType).trimmed();
    bool income = true;
    int select = 0;
    const bool onNewLine = g().Row() == g().Rows() - 1 && e.isThereNewLine;
    if (!name.isEmpty()) {
        const int idx = getTypeIndex(name);
        income = idx >= 0;
        select = idx == 999 ? 0 : std::abs(idx) - 1;
    } else if (!onNewLine) {
        income = p_.ledger.lines[size_t(currentLine())].out == 0;
    } else if (e.hasSetAnySumInCurNewLine || cell(colKind).trimmed().isEmpty()) {
        income = cell(colOut) == FormatSum(0);
    } else {
        income = FormatKind(cell(colKind)).startsWith(QLatin1Char('+'));
    }
    e.cmbTypesRows.clear();
    e.cmbTypesWidth = 0;
    for (const TypeRec& t : c.types) {
        if (t.isIncome != income)
            continue;
        e.cmbTypesWidth = std::max(e.cmbTypesWidth, int(t.TypeName.size()));
        e.cmbTypesRows << t.TypeName + QStringLiteral("   (") + t.CategoryName + QLatin1Char(')');
    }
    e.suspend_cmbTypes_Click = true;
    e.cmbTypesIndex = e.cmbTypesRows.isEmpty() ? -1 : std::min(select, int(e.cmbTypesRows.size()) - 1);
    e.suspend_cmbTypes_Click = false;
    e.txtCombo.visible = true;
    e.cmbTypesVisible = true;
    if (isOpening(keyAscii)) {
        e.txtCombo.text = cell(colType);
        e.txtCombo.selectAll();
    } else {
        // The typed character starts a search at once.
        e.txtCombo.text = QString(keyAscii);
        e.txtCombo.caretAtEnd();
        doSearch();
    }
}

void LedgerEditor::txtCell_Change(const QString& text, int selStart, int selLength)
{
    TextBoxState& t = p_.edit.txtCell;
    t.text = text;
    t.selStart = selStart;
    t.selLength = selLength;
}

void LedgerEditor::txtCombo_Change(const QString& text, int selStart, int selLength)
{
    EditState& e = p_.edit;
    e.txtCombo.text = text;
    e.txtCombo.selStart = selStart;
    e.txtCombo.selLength = selLength;
    if (!e.txtCombo.visible)
        return;
    e.cmbTypesVisible = true;
    if (!e.suspend_txtCombo_Change)
        doSearch();
    e.suspend_txtCombo_Change = false;
}

void LedgerEditor::doSearch()
{
    EditState& e = p_.edit;
    if (e.suspendCompletion) {
        e.suspendCompletion = false;
        return;
    }
    const QString typed = e.txtCombo.text;
    if (typed.isEmpty())
        return;
    for (int i = 0; i < int(e.cmbTypesRows.size()); ++i) {
        if (e.cmbTypesRows[i].left(typed.size()) != typed)
            continue;
        // The first row in list order whose beginning matches; the rest of
        // its name is shown selected, so the next key replaces it.
        e.cmbTypesIndex = i;
        e.txtCombo.text = TrimType(e.cmbTypesRows[i]);
        e.txtCombo.selStart = int(typed.size());
        e.txtCombo.selLength = std::max(0, int(e.txtCombo.text.size() - typed.size()));
        p_.window.keyboardLanguage(true);
        return;
    }
    // No match: the typed text stays, and the commit refuses it.
    e.cmbTypesIndex = e.cmbTypesRows.isEmpty() ? -1 : 0;
    e.txtCombo.caretAtEnd();
}

void LedgerEditor::cmbTypes_Click(int index)
{
    EditState& e = p_.edit;
    if (e.suspend_cmbTypes_Click || index < 0 || index >= int(e.cmbTypesRows.size()) || p_.ledger.lines.empty())
        return;
    e.cmbTypesIndex = index;
    const QString name = TrimType(e.cmbTypesRows[index]);
    setCell(colType, name);
    if (p_.ledger.lines[size_t(currentLine())].out == 0)
        e.lastInType = name;
    else
        e.lastOutType = name;
    // The commit runs when the cursor leaves the cell.
    closeEditors();
}

void LedgerEditor::msfgMain_GotFocus()
{
    if (p_.edit.editorOpen())
        takeEditorText(true);
}

void LedgerEditor::msfgMain_DblClick()
{
    const int col = g().Col();
    if (p_.ledger.lines.empty() || p_.ledger.openDBisBusy || p_.edit.mustGoBack)
        return;
    const Instance& inst = p_.instance;
    const bool locked = isConfirmedRow(g().Row())
        || (inst.progMode == modeNewLines && inst.newLineDialogType != lineDialogUnconfirmedPelkor
            && inst.newLineDialogType != lineDialogBadLines);
    if (col == colKind) {
        if (p_.edit.txtCell.visible)
            takeEditorText(false);
        return doKindDlg(cell(colKind).trimmed());
    }
    if (col == colIn || col == colOut) {
        // In a new-line child only the lines that did not reach the bank
        // take a sum here; a confirmed line never does.
        if (isConfirmedRow(g().Row())
            || (inst.progMode == modeNewLines && inst.newLineDialogType != lineDialogUnconfirmedPelkor))
            return;
        if (p_.instance.detail.conv != 0) {
            p_.ui.msgBox(QStringLiteral("לא ניתן לשנות סכומים במצב המרה"), errorTitle, Buttons::OK, Icon::Exclamation);
            return;
        }
        if (p_.edit.txtCell.visible)
            takeEditorText(false);
        double v = 0;
        if (!store::text::parseNumber(cell(col).trimmed(), v))
            return;
        setCell(col, FormatSum(v));
        frmCalc calc(v, p_.ui);
        p_.ui.runDialog(calc);
        // The commit runs when the cursor leaves the cell.
        if (!calc.didCancelCalc())
            setCell(col, FormatSum(calc.calcValue()));
        return;
    }
    if (col == colDate && locked)
        return;
    GridEdit(QLatin1Char('^'));
}

void LedgerEditor::doKindDlg(const QString& currentKind)
{
    if (p_.ledger.lines.empty())
        return;
    for (;;) {
        dlgKind dlg(p_.ledger.catalogue, currentKind);
        p_.ui.runDialog(dlg);
        if (!dlg.accepted() || dlg.choice().isEmpty())
            return;   // Esc: nothing changes
        const QString code = dlg.choice().startsWith(QLatin1Char('+')) || dlg.choice().startsWith(QLatin1Char('-'))
            ? dlg.choice()
            : FormatKind(dlg.choice());
        const Line& L = p_.ledger.lines[size_t(currentLine())];
        if (code.startsWith(QLatin1Char('+')) && L.out > 0) {
            p_.ui.msgBox(QStringLiteral("סיווג חיובי אינו יכול להשתייך להוצאה"), errorTitle, Buttons::OK, Icon::Exclamation);
            continue;
        }
        if (code.startsWith(QLatin1Char('-')) && L.In > 0) {
            p_.ui.msgBox(QStringLiteral("סיווג שלילי אינו יכול להשתייך להכנסה"), errorTitle, Buttons::OK, Icon::Exclamation);
            continue;
        }
        g().setCol(colKind);
        setCell(colKind, FormatKind(code));
        msfgMainLeaveCell();
        g().setCol(colDate);
        msfgMain_EnterCell();
        return;
    }
}

void LedgerEditor::cmbColors_Click(const QString& colorName)
{
    OpenLedger& led = p_.ledger;
    const int row = g().Row();
    if (!p_.edit.loaded || row < 1 || row > int(led.lines.size()) || !colorWords().contains(colorName))
        return;
    Line& L = led.lines[size_t(row - 1)];
    if (L.Memo == colorName)
        return;
    L.Memo = colorName;
    for (int col : {colDate, colConfirm, colDetail})
        restoreCellStyle(led, p_.instance, g(), row, col, p_.grid.balancingLineID);
    // The new line carries its colour into its insert.
    const bool onNewLine = row == g().Rows() - 1 && p_.edit.isThereNewLine;
    if (!onNewLine)
        led.sql.executeSQL(QStringLiteral("cmbColors_Click"),
                           QStringLiteral("UPDATE %1 set [memo] = '%2' WHERE id = %3").arg(led.linesTable, colorName, L.Id));
    p_.grid.msfgMainMarks.litRow = p_.grid.msfgMainMarks.litCol = -99;
    updateDisplay();
}

} // namespace pelkor
