// The commit of an edited cell and the cursor's return to a failed cell.
#include "ledger/LedgerEditor.h"

#include "base/Titles.h"
#include "base/Format.h"
#include "base/StoredKind.h"
#include "base/Instance.h"
#include "base/Modes.h"
#include "base/WindowCalls.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "ledger/Guards.h"
#include "ledger/Zeroing.h"
#include "seams/grid/GridModel.h"
#include "seams/store/Connection.h"
#include "seams/store/TextForms.h"
#include "seams/ui/Ui.h"
#include "seams/ui/dialogs/TypedDate.h"

#include <optional>

namespace pelkor {

using ui::Answer;
using ui::Buttons;
using ui::Icon;

namespace {

const QString proc = QStringLiteral("msfgMainLeaveCell");

bool hasNoDate(const QDate& d) { return !d.isValid() || d == nullDate() || d == newLineNoDate(); }

bool parseSum(const QString& text, double& v) { return store::text::parseNumber(text.trimmed(), v); }

} // namespace

grid::GridModel& LedgerEditor::g() const { return p_.grid.msfgMain; }

int LedgerEditor::currentLine() const
{
    const int n = int(p_.ledger.lines.size());
    return std::clamp(g().Row() - 1, 0, std::max(0, n - 1));
}

QString LedgerEditor::cell(int col) const { return g().text(g().Row(), col); }
void LedgerEditor::setCell(int col, const QString& text) { g().setText(g().Row(), col, text); }
void LedgerEditor::setCellAt(int row, int col, const QString& text) { g().setText(row, col, text); }

QString LedgerEditor::recordDateText(int iLine) const
{
    const QDate d = p_.ledger.lines[size_t(iLine)].Date;
    return hasNoDate(d) ? QString() : formatDate224(d);
}

bool LedgerEditor::exec(const QString& sql, bool onNewLine)
{
    // On the unsaved new line the statement is built but not run: the row
    // is written in one piece when the cursor leaves it.
    if (onNewLine)
        return false;
    p_.ledger.sql.executeSQL(proc, sql);
    return true;
}

void LedgerEditor::refuse(const QString& message, const QString& recordText)
{
    p_.ui.msgBox(message, errorTitle, Buttons::OK, Icon::Exclamation);
    setCell(g().Col(), recordText);
    p_.edit.mustGoBack = true;
}

void LedgerEditor::keep(const QString& recordText) { setCell(g().Col(), recordText); }

void LedgerEditor::setLoaded() { p_.edit.loaded = true; }

void LedgerEditor::takeEditorText(bool throughFixString)
{
    EditState& e = p_.edit;
    const int col = g().Col();
    if (e.txtCombo.visible || e.cmbTypesVisible) {
        QString t = e.txtCombo.text;
        if (throughFixString)
            t = fixString(t);
        setCell(col, t);
        if (col == colType && !p_.ledger.lines.empty()) {
            if (p_.ledger.lines[size_t(currentLine())].out == 0)
                e.lastInType = t;
            else
                e.lastOutType = t;
        }
        e.lastValues[size_t(col)] = t;
    } else if (e.txtCell.visible) {
        QString t = e.txtCell.text;
        if (col == colKind)
            t = FormatKind(storedKind(t));
        else if (throughFixString)
            t = fixString(t);
        setCell(col, t);
        e.lastValues[size_t(col)] = t;
    }
    closeEditors();
}

// ---- the commit -------------------------------------------------------------

void LedgerEditor::msfgMainLeaveCell()
{
    OpenLedger& led = p_.ledger;
    EditState& e = p_.edit;
    if (!e.loaded || led.lines.empty() || e.suspendEnterAndLeaveCell || g().Col() == colMark || led.openDBisBusy)
        return;
    Suspend guard(e.suspendEnterAndLeaveCell);
    const int iLine = currentLine();
    // The cell gets its own colours back; the cursor lights its next cell.
    restoreCellStyle(led, p_.instance, g(), g().Row(), g().Col(), p_.grid.balancingLineID);
    if (p_.grid.msfgMainMarks.litRow == g().Row() && p_.grid.msfgMainMarks.litCol == g().Col())
        p_.grid.msfgMainMarks.litRow = p_.grid.msfgMainMarks.litCol = -99;
    if (g().Col() < g().FixedCols())
        return;
    const bool onNewLine = g().Row() == g().Rows() - 1 && e.isThereNewLine;
    takeEditorText(false);
    switch (g().Col()) {
    case colKind: commitKind(iLine, onNewLine); break;
    case colDate: commitDate(iLine, onNewLine); break;
    case colConfirm: commitText(iLine, onNewLine, false); break;
    case colDetail: commitText(iLine, onNewLine, true); break;
    case colIn: commitIn(iLine, onNewLine); break;
    case colOut: commitOut(iLine, onNewLine); break;
    case colType: commitType(iLine, onNewLine); break;
    default: break;
    }
}

void LedgerEditor::commitKind(int iLine, bool onNewLine)
{
    Line& L = p_.ledger.lines[size_t(iLine)];
    QString kind = storedKind(cell(colKind));
    if (kind.isEmpty() && !(onNewLine && L.kind.isEmpty())) {
        // An emptied kind falls back to the line's direction, and is
        // stored as any other kind is.
        kind = L.out == 0 ? QStringLiteral("+0") : QStringLiteral("-0");
        setCell(colKind, FormatKind(kind));
    }
    if (kind == L.kind) {
        setCell(colKind, FormatKind(kind));
        return;
    }
    if (canceledBecauseAboveRed(false))
        return keep(FormatKind(L.kind));
    if (kind.startsWith(QLatin1Char('+')) && L.out != 0)
        return refuse(QStringLiteral("סיווג חיובי אינו יכול להשתייך להוצאה"), FormatKind(L.kind));
    if (kind.startsWith(QLatin1Char('-')) && L.out == 0 && (!onNewLine || p_.edit.hasSetAnySumInCurNewLine))
        return refuse(QStringLiteral("סיווג שלילי אינו יכול להשתייך להכנסה"), FormatKind(L.kind));
    if (p_.ledger.catalogue.isCategory(kind)) {
        exec(QStringLiteral("UPDATE %1 set kind = '%2' WHERE id = %3").arg(p_.ledger.linesTable, fixString(kind), L.Id),
             onNewLine);
        L.kind = kind;
        setCell(colKind, FormatKind(kind));
        return;
    }
    if (!(kind.isEmpty() && onNewLine))
        refuse(QStringLiteral("הערך בסיווג אינו תואם את הרשימה"), FormatKind(L.kind));
}

void LedgerEditor::commitDate(int iLine, bool onNewLine)
{
    Line& L = p_.ledger.lines[size_t(iLine)];
    const Instance& inst = p_.instance;
    QString text = cell(colDate).trimmed();
    if (text.isEmpty()) {
        const bool badLinesLine = !onNewLine && inst.isBadLinesChild();
        if (onNewLine || badLinesLine) {
            if (L.Date == (onNewLine ? newLineNoDate() : nullDate()))
                return;
            setCell(colDate, formatDate224(p_.today));
            L.Date = p_.today;
            return;
        }
        text = formatDate224(p_.today);
        setCell(colDate, text);
    }
    const std::optional<QDate> typed = ui::readTypedDate(text);
    if (!typed)
        return refuse(QStringLiteral("התאריך אינו חוקי"), recordDateText(iLine));
    const QDate d = *typed;
    if (d == L.Date)
        return;
    if (inst.progMode == modeNewLines && inst.newLineDialogType == lineDialogUnconfirmedPelkor
        && d <= p_.ledger.targetDate) {
        p_.ui.msgBox(QStringLiteral("ניתן לשנות את התאריך רק לתאריך מאוחר מתאריך ההתאמה, שהוא ")
                         + formatDate224(p_.ledger.targetDate),
                     errorTitle, Buttons::OK, Icon::Exclamation);
        return keep(recordDateText(iLine));
    }
    setCell(colDate, formatDate224(d));
    if (canceledBecauseAboveRed(true))
        return keep(recordDateText(iLine));
    exec(QStringLiteral("UPDATE %1 set [date] = %2 WHERE id = %3").arg(p_.ledger.linesTable, formatDateForSQL(d), L.Id),
         onNewLine);
    updateIpus(p_.ledger, p_.instance);
    L.Date = d;
    // A date edit neither moves the line nor recomputes the balances: the
    // next load sorts afresh. Only the daily summary beside the grid
    // reloads at once.
    if (inst.progMode == modeDailySummarySplit && !onNewLine)
        p_.window.refresh();
}

void LedgerEditor::commitText(int iLine, bool onNewLine, bool isDetail)
{
    Line& L = p_.ledger.lines[size_t(iLine)];
    const int col = isDetail ? colDetail : colConfirm;
    // Reference and description as the file holds them: 50 and 100
    // characters.
    const int limit = isDetail ? 100 : 50;
    QString& record = isDetail ? L.detail : L.confirm;
    QString text = fixString(cell(col));
    setCell(col, text);
    if (text == record)
        return;
    if (canceledBecauseAboveRed(false))
        return keep(record);
    if (text.size() > limit) {
        p_.ui.msgBox((isDetail ? QStringLiteral("הערך בטור הפירוט ארוך מדי. האורך המירבי המותר הוא ")
                               : QStringLiteral("הערך בטור האסמכתא ארוך מדי. האורך המירבי המותר הוא "))
                         + QString::number(limit) + QStringLiteral(" אותיות. הערך יקוצר"),
                     errorTitle, Buttons::OK, Icon::Exclamation);
        text = text.left(limit);
        setCell(col, text);
    }
    const QString stored = text.isEmpty() ? QStringLiteral(" ") : text;
    exec(QStringLiteral("UPDATE %1 set %2 = '%3' WHERE id = %4")
             .arg(p_.ledger.linesTable, isDetail ? QStringLiteral("detail") : QStringLiteral("confirm"), stored, L.Id),
         onNewLine);
    record = stored;
}

void LedgerEditor::commitIn(int iLine, bool onNewLine)
{
    OpenLedger& led = p_.ledger;
    Line& L = led.lines[size_t(iLine)];
    QString text = cell(colIn).trimmed();
    if (text.isEmpty()) {
        text = FormatSum(0);
        setCell(colIn, text);
    }
    double v = 0;
    if (!parseSum(text, v))
        return refuse(QStringLiteral("הערך בטור ההכנסה אינו מספר"), FormatSum(L.In));
    if (FormatSum(L.In) == text)
        return;
    // A sum no agora of which a double holds is refused (one the file held
    // already may stay as it is).
    if (isSumTooLarge(v))
        return refuse(sumTooLargeMessage(), FormatSum(L.In));
    if (canceledBecauseAboveRed(false))
        return keep(FormatSum(L.In));
    text = FormatSum(v);
    setCell(colIn, text);
    // The record holds what the file holds: the sum in agorot, as written.
    parseSum(text, v);
    // The line's statements are one change.
    std::optional<store::Transaction> tx;
    if (!onNewLine)
        tx.emplace(led.cn);
    bool executed = exec(QStringLiteral("UPDATE %1 set [in] = '%2' WHERE id = %3").arg(led.linesTable, text, L.Id), onNewLine);
    p_.edit.hasSetAnySumInCurNewLine = true;
    L.In = v;
    const int row = g().Row();
    restoreCellStyle(led, p_.instance, g(), row, colIn, p_.grid.balancingLineID);
    if (L.In == 0 || (L.out == 0 && !onNewLine)) {
        if (tx)
            tx->commit();
        return sumTail(executed);
    }
    // The line turns into income.
    L.out = 0;
    setCellAt(row, colOut, FormatSum(0));
    restoreCellStyle(led, p_.instance, g(), row, colOut, p_.grid.balancingLineID);
    if (!(onNewLine && L.kind.isEmpty())) {
        L.kind = QStringLiteral("+") + L.kind.mid(1);
        setCellAt(row, colKind, FormatKind(L.kind));
    }
    QString typeSet;
    if (getTypeIndex(L.Type) < 0) {
        setType(row, led.catalogue.typeName1);
        typeSet = typeNumSet(L);
    }
    executed = exec(QStringLiteral("UPDATE %1 set out = 0, kind='%2'%3 WHERE id = %4")
                        .arg(led.linesTable, fixString(L.kind), typeSet, L.Id),
                    onNewLine) || executed;
    if (tx)
        tx->commit();
    sumTail(executed);
}

void LedgerEditor::commitOut(int iLine, bool onNewLine)
{
    OpenLedger& led = p_.ledger;
    Line& L = led.lines[size_t(iLine)];
    QString text = cell(colOut).trimmed();
    if (text.isEmpty()) {
        text = FormatSum(0);
        setCell(colOut, text);
    }
    double v = 0;
    if (!parseSum(text, v))
        return refuse(QStringLiteral("הערך בטור ההוצאה אינו מספר"), FormatSum(L.out));
    if (FormatSum(L.out) == text)
        return;
    // A sum no agora of which a double holds is refused (one the file held
    // already may stay as it is).
    if (isSumTooLarge(v))
        return refuse(sumTooLargeMessage(), FormatSum(L.out));
    if (canceledBecauseAboveRed(false))
        return keep(FormatSum(L.out));
    text = FormatSum(v);
    setCell(colOut, text);
    // The record holds what the file holds: the sum in agorot, as written.
    parseSum(text, v);
    std::optional<store::Transaction> tx;
    if (!onNewLine)
        tx.emplace(led.cn);
    bool executed = exec(QStringLiteral("UPDATE %1 set out = '%2' WHERE id = %3").arg(led.linesTable, text, L.Id), onNewLine);
    p_.edit.hasSetAnySumInCurNewLine = true;
    const double oldOut = L.out;
    L.out = v;
    const int row = g().Row();
    restoreCellStyle(led, p_.instance, g(), row, colOut, p_.grid.balancingLineID);
    if (L.out != 0 && !(oldOut != 0 && L.In == 0)) {
        // The line turns into expense.
        L.In = 0;
        setCellAt(row, colIn, FormatSum(0));
        restoreCellStyle(led, p_.instance, g(), row, colIn, p_.grid.balancingLineID);
        if (!(onNewLine && L.kind.isEmpty())) {
            L.kind = QStringLiteral("-") + L.kind.mid(1);
            setCellAt(row, colKind, FormatKind(L.kind));
        }
        QString typeSet;
        if (!L.Type.isEmpty() && getTypeIndex(L.Type) > 0) {
            setType(row, led.catalogue.typeName2);
            typeSet = typeNumSet(L);
        }
        executed = exec(QStringLiteral("UPDATE %1 set [in] = 0, kind='%2'%3 WHERE id = %4")
                            .arg(led.linesTable, fixString(L.kind), typeSet, L.Id),
                        onNewLine) || executed;
    }
    if (L.In == 0 && L.out == 0) {
        // A line with no amounts counts as income.
        if (!(onNewLine && L.kind.isEmpty())) {
            L.kind = QStringLiteral("+") + L.kind.mid(1);
            setCellAt(row, colKind, FormatKind(L.kind));
        }
        setType(row, led.catalogue.typeName1);
        executed = exec(QStringLiteral("UPDATE %1 set kind='%2'%3 WHERE id = %4")
                            .arg(led.linesTable, fixString(L.kind), typeNumSet(L), L.Id),
                        onNewLine) || executed;
    }
    if (tx)
        tx->commit();
    sumTail(executed);
}

// After a sum changed: the balances from this row on, the totals of a
// detail child, and the marked lines' summary.
void LedgerEditor::sumTail(bool executed)
{
    if (executed && p_.instance.progMode == modeDailySummarySplit) {
        // The daily summary beside the grid reloads with the lines.
        p_.window.refresh();
        return;
    }
    // The balances from this row on, as a load adds them.
    sumsChanged(p_.ledger, p_.instance, g(), g().Row());
    if (p_.instance.progMode == modeDetail) {
        const Totals t = calcTotals(p_.ledger);
        p_.grid.lblTotalIncome = t.lblTotalIncome;
        p_.grid.lblTotalExpense = t.lblTotalExpense;
        p_.window.shownChanged();
    }
}

void LedgerEditor::setType(int row, const QString& name)
{
    Line& L = p_.ledger.lines[size_t(row) - 1];
    L.Type = name;
    L.TypeNum = GetTypeBigIndex(name);
    setCellAt(row, colType, name);
}

QString LedgerEditor::typeNumSet(const Line& L) const
{
    // A file without the default type keeps the number it has.
    if (L.TypeNum < 0 || L.TypeNum == 999)
        return QString();
    return QStringLiteral(", TypeNum = %1").arg(L.TypeNum);
}

void LedgerEditor::commitType(int iLine, bool onNewLine)
{
    const OpenLedger& led = p_.ledger;
    Line& L = p_.ledger.lines[size_t(iLine)];
    QString text = cell(colType);
    if (text == L.Type)
        return;
    if (text.trimmed().isEmpty()) {
        text = L.out == 0 ? led.catalogue.typeName1 : led.catalogue.typeName2;
        setCell(colType, text);
    }
    if (canceledBecauseAboveRed(false))
        return keep(L.Type);
    const int num = GetTypeBigIndex(text);
    if (num == 999)
        return refuse(QStringLiteral("הסוג שמילאת אינו חוקי"), L.Type);
    exec(QStringLiteral("UPDATE %1 set TypeNum = %2 WHERE id = %3").arg(led.linesTable).arg(num).arg(L.Id), onNewLine);
    if (!onNewLine) {
        // The new line's type lives in its cell until the row is written.
        L.Type = text;
        L.TypeNum = num;
    }
}

bool LedgerEditor::canceledBecauseAboveRed(bool isDateCol)
{
    const OpenLedger& led = p_.ledger;
    const Instance& inst = p_.instance;
    const bool onNewLine = g().Row() == g().Rows() - 1 && p_.edit.isThereNewLine;
    const QDate old = led.lines[size_t(currentLine())].Date;
    const QDate ipus = led.ipusDate;
    const auto onOrBefore = [&](const QDate& d) { return d.isValid() && ipus.isValid() && d <= ipus; };
    const QString history = QStringLiteral(".הינך מעדכן נתון הנמצא לפני שורת האיפוס. עדכון זה עלול לעדכן נתוני היסטוריה");
    QString question;
    const bool badLinesChild = inst.progMode == modeNewLines && inst.newLineDialogType == lineDialogBadLines;
    if (!isDateCol) {
        if (!onNewLine && onOrBefore(old))
            question = history;
    } else {
        const QDate typed = ui::readTypedDate(cell(colDate)).value_or(QDate());
        if (!onNewLine && !badLinesChild) {
            if (onOrBefore(old))
                question = history;
            else if (onOrBefore(typed))
                question = QStringLiteral(".שורה זו תעבור להיות לפני שורת האיפוס. עדכון זה עלול לעדכן נתוני היסטוריה");
        } else if (onOrBefore(typed)) {
            question = QStringLiteral(".השורה ") + (onNewLine ? QStringLiteral(" החדשה") : QString())
                + QStringLiteral("תהיה לפני שורת האיפוס. עדכון זה עלול לעדכן נתוני היסטוריה");
        }
    }
    if (question.isEmpty())
        return false;
    return p_.ui.msgBox(question, QStringLiteral("אזהרה"), Buttons::YesNo, Icon::Question) == Answer::No;
}

// ---- the cursor ----------------------------------------------------------------

void LedgerEditor::msfgMain_EnterCell()
{
    EditState& e = p_.edit;
    if (!e.loaded || g().Col() == colMark || p_.ledger.openDBisBusy)
        return;
    Suspend guard(e.suspendEnterAndLeaveCell);
    if (e.mustGoBack) {
        e.mustGoBack = false;
        g().setRow(e.prevRow);
        g().setCol(e.prevCol);
        e.suspendEnterAndLeaveCell = guard.was();
        msfgMain_EnterCell();
        return;
    }
    const int row = g().Row();
    if (row != e.prevRow && e.prevRow != -99 && !guard.was() && e.prevRow < g().Rows()) {
        const bool leftNewLine = e.isThereNewLine && e.prevRow == g().Rows() - 1;
        if (!leftNewLine && !p_.instance.isBadLinesChild() && g().text(e.prevRow, colDate).trimmed().isEmpty()) {
            p_.ui.msgBox(QStringLiteral("יש למלא תאריך"), errorTitle, Buttons::OK, Icon::Exclamation);
            g().setRow(e.prevRow);
            g().setCol(colDate);
            updateDisplay();
            return;
        }
    }
    e.prevRow = std::min(row, g().Rows() - 1);
    e.prevCol = g().Col();
    updateDisplay();
}

void LedgerEditor::updateDisplay()
{
    // The cursor left the pending new line: it is written now (or the
    // cursor comes back to it).
    if (p_.edit.isThereNewLine && g().Row() != g().Rows() - 1)
        maybeWriteNewLineToDB();
    MainGrid& mg = p_.grid;
    mg.row = g().Row();
    mg.topRow = g().TopRow();
    updateCursorCells(p_.ledger, p_.instance, g(), mg.msfgMainMarks, mg.balancingLineID);
    switch (g().Col()) {
    case colType:
    case colDate:
    case colDetail:
    case colConfirm:
        p_.window.keyboardLanguage(true);
        break;
    case colKind:
    case colIn:
    case colOut:
        p_.window.keyboardLanguage(false);
        break;
    default:
        break;
    }
}

// ---- lookups ---------------------------------------------------------------------

int LedgerEditor::getTypeIndex(const QString& name) const
{
    int in = 0, out = 0;
    for (const TypeRec& t : p_.ledger.catalogue.types) {
        const int k = t.isIncome ? ++in : -(++out);
        if (t.TypeName == name)
            return k;
    }
    return 999;
}

int LedgerEditor::GetTypeBigIndex(const QString& name) const { return p_.ledger.catalogue.typeNumOf(name); }

// A kind as the user may type it: "+12", "12+" (as the grid shows it) or
// "12" (taken as income): its stored form, sign in front. Other text
// stays as it is, and is then no kind of the list.
QString LedgerEditor::storedKind(const QString& typed) { return pelkor::storedKind(typed); }

QString LedgerEditor::TrimType(const QString& row)
{
    const qsizetype bracket = row.indexOf(QLatin1Char('('));
    return (bracket < 0 ? row : row.left(bracket)).trimmed();
}

} // namespace pelkor
