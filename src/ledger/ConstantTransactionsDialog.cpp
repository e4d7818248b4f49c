// frmConstantTransactions: the fields' commits, the three lists, the keys
// and cmdOK's checks.
#include "ledger/ConstantTransactionsDialog.h"

#include "ledger/AddOneLine.h"
#include "ledger/LedgerEditor.h"

#include "base/Titles.h"
#include "base/Format.h"
#include "file/Display.h"
#include "file/OpenLedger.h"
#include "ledger/EditState.h"
#include "ledger/dlgKind.h"
#include "ledger/frmCalc.h"
#include "seams/store/StoreError.h"
#include "seams/store/TextForms.h"
#include "seams/ui/Ui.h"
#include "seams/ui/dialogs/TypedDate.h"

namespace pelkor {

using ui::Buttons;
using ui::Icon;

namespace {

const QString txtKind = QStringLiteral("txtKind");
const QString txtFromDate = QStringLiteral("txtFromDate");
const QString txtToDate = QStringLiteral("txtToDate");
const QString txtJump = QStringLiteral("txtJump");
const QString txtConfirm = QStringLiteral("txtConfirm");
const QString txtDetails = QStringLiteral("txtDetails");
const QString txtIn = QStringLiteral("txtIn");
const QString txtOut = QStringLiteral("txtOut");
const QString txtMyType = QStringLiteral("txtMyType");
const QString txtColor = QStringLiteral("txtColor");
const QString txtPercent = QStringLiteral("txtChangeInPercents");

bool parseSum(const QString& text, double& v) { return store::text::parseNumber(text.trimmed(), v); }


// The name in a list row: a type's row less its bracketed group.
QString rowName(const QString& row)
{
    const qsizetype bracket = row.indexOf(QLatin1Char('('));
    return (bracket < 0 ? row : row.left(bracket)).trimmed();
}

} // namespace

const QStringList& frmConstantTransactions::enterOrder()
{
    static const QStringList order{txtKind, txtFromDate, txtToDate, QStringLiteral("chkEndOfMonth"), txtJump,
                                   txtConfirm, txtDetails, txtIn, txtOut, txtMyType, txtColor, txtPercent,
                                   QStringLiteral("chkTzefiLine"), QStringLiteral("chkSaveInDB")};
    return order;
}

frmConstantTransactions::frmConstantTransactions(ConstantParts parts)
    : Dialog(QStringLiteral("הכנסת פעולות קבועות"), QString()), p_(std::move(parts))
{
    addControl(txtKind, Kind::TextBox, QStringLiteral("סיווג"));
    addControl(txtFromDate, Kind::TextBox, QStringLiteral("מתאריך"));
    addControl(txtToDate, Kind::TextBox, QStringLiteral("עד תאריך"));
    addControl(QStringLiteral("chkEndOfMonth"), Kind::CheckBox, QStringLiteral("סוף חודש"));
    addControl(txtJump, Kind::TextBox, QStringLiteral("גודל קפיצה"));
    addControl(txtConfirm, Kind::TextBox, QStringLiteral("אסמכתא"));
    addControl(txtDetails, Kind::TextBox, QStringLiteral("פרטים"));
    addControl(txtIn, Kind::TextBox, QStringLiteral("הכנסה"));
    addControl(txtOut, Kind::TextBox, QStringLiteral("הוצאה"));
    addControl(txtMyType, Kind::TextBox, QStringLiteral("סוג"));
    addControl(txtColor, Kind::TextBox, QStringLiteral("צבע"));
    addControl(txtPercent, Kind::TextBox, QStringLiteral("שינוי באחוזים"));
    addControl(QStringLiteral("chkTzefiLine"), Kind::CheckBox, QStringLiteral("שורת צפי"));
    addControl(QStringLiteral("chkSaveInDB"), Kind::CheckBox, QStringLiteral("שמור כפעולה קבועה"));
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    for (const auto& [field, list] : {std::pair{txtMyType, QStringLiteral("cmbTypes")},
                                      std::pair{txtColor, QStringLiteral("cmbColors")},
                                      std::pair{txtJump, QStringLiteral("cmbJumps")}}) {
        addControl(list, Kind::ListBox).visible = false;
        ListField l;
        l.field = field;
        l.list = list;
        lists_.push_back(l);
    }
    setFocus(txtKind);
}

// ---- focus and commits -------------------------------------------------------

frmConstantTransactions::ListField* frmConstantTransactions::listField(const QString& field)
{
    for (ListField& l : lists_)
        if (l.field == field || l.list == field)
            return &l;
    return nullptr;
}

const frmConstantTransactions::ListField* frmConstantTransactions::listField(const QString& field) const
{
    return const_cast<frmConstantTransactions*>(this)->listField(field);
}

QString frmConstantTransactions::listOf(const QString& field)
{
    if (field == txtMyType)
        return QStringLiteral("cmbTypes");
    if (field == txtColor)
        return QStringLiteral("cmbColors");
    return field == txtJump ? QStringLiteral("cmbJumps") : QString();
}

bool frmConstantTransactions::isListOpen(const QString& field) const
{
    const ListField* l = listField(field);
    return l && l->open;
}

std::pair<int, int> frmConstantTransactions::selection(const QString& field) const
{
    const ListField* l = listField(field);
    return l ? std::pair{l->selStart, l->selLength} : std::pair{0, 0};
}

void frmConstantTransactions::show(const QString& field, const QString& text)
{
    setValue(field, text);
    shown_.insert(field, text);
}

bool frmConstantTransactions::refuse(const QString& field, const QString& message)
{
    p_.ui.msgBox(message, errorTitle, Buttons::OK, Icon::Exclamation);
    setFocus(field);
    return false;
}

void frmConstantTransactions::gotFocus(const QString& field)
{
    if (field == focus() || isClosed())
        return;
    moveFocus(field);
}

bool frmConstantTransactions::lostFocus(const QString& field)
{
    if (field != focus() || busy_)
        return true;
    if (ListField* l = listField(field); l && l->open)
        closeList(*l);
    return commit(field);
}

bool frmConstantTransactions::moveFocus(const QString& target)
{
    const QString from = focus();
    if (!from.isEmpty() && from != target) {
        if (ListField* l = listField(from); l && l->open)
            closeList(*l);
        if (kind(from) == Kind::TextBox && !commit(from))
            return false;
    }
    if (kind(target) != Kind::Button)
        setFocus(target);
    if (p_.keyboardLanguage && kind(target) == Kind::TextBox)
        p_.keyboardLanguage(!(target == txtKind || target == txtIn || target == txtOut || target == txtPercent));
    return true;
}

// The field's rule on losing the focus. False, with the user told and the
// focus back on the field, when the text is refused; the record keeps its
// old value then.
bool frmConstantTransactions::commit(const QString& field)
{
    Line& L = rule_.theLine;
    const QString text = control(field).trimmed();
    if (field == txtFromDate || field == txtToDate) {
        QDate& date = field == txtFromDate ? rule_.FDate : rule_.TDate;
        if (text.isEmpty()) {
            // A date once set does not go back to unset: it takes today.
            if (date.isValid()) {
                date = p_.today;
                show(field, formatDate224(date));
            }
            return true;
        }
        const std::optional<QDate> d = ui::readTypedDate(text);
        if (!d)
            return refuse(field, field == txtFromDate ? QStringLiteral("תאריך ההתחלה אינו חוקי")
                                                      : QStringLiteral("תאריך הסיום אינו חוקי"));
        date = *d;
        show(field, formatDate224(date));
        return true;
    }
    if (field == txtKind) {
        if (text.isEmpty()) {
            if (!L.kind.isEmpty()) {
                L.kind = L.In != 0 || L.out == 0 ? QStringLiteral("+0") : QStringLiteral("-0");
                show(field, FormatKind(L.kind));
            }
            return true;
        }
        const QString kind = LedgerEditor::storedKind(text);
        if (!p_.ledger.catalogue.isCategory(kind))
            return refuse(field, QStringLiteral("הערך בסיווג אינו תואם את הרשימה"));
        L.kind = kind;
        show(field, FormatKind(kind));
        return true;
    }
    if (field == txtIn || field == txtOut) {
        if (text.isEmpty())
            return true;
        const bool in = field == txtIn;
        double v = 0;
        if (!parseSum(text, v))
            return refuse(field, in ? QStringLiteral("המספר בשדה ההכנסה אינו חוקי")
                                    : QStringLiteral("המספר בשדה ההוצאה אינו חוקי"));
        if (isSumTooLarge(v))
            return refuse(field, sumTooLargeMessage());
        (in ? L.In : L.out) = v;
        show(field, FormatSum(v));
        if (v != 0) {
            // The line crosses to this side: the other sum goes, the kind's
            // sign follows, and a type of the other side gives way.
            const QString typeBefore = L.Type;
            turnToSide(L, in, p_.ledger.catalogue);
            show(in ? txtOut : txtIn, QString());
            show(txtKind, FormatKind(L.kind));
            if (L.Type != typeBefore)
                show(txtMyType, L.Type);
        }
        return true;
    }
    if (field == txtPercent) {
        if (text.isEmpty())
            return true;
        double v = 0;
        if (!parseSum(text, v))
            return refuse(field, QStringLiteral("המספר בשדה השינוי באחוזים אינו חוקי"));
        rule_.percent = v;
        show(field, FormatSum(v));
        return true;
    }
    if (field == txtMyType) {
        if (!text.isEmpty() && !p_.ledger.catalogue.findType(text))
            return refuse(field, QStringLiteral("הסוג שמילאת אינו חוקי"));
        L.Type = text;
        show(field, text);
        return true;
    }
    if (field == txtColor) {
        if (!text.isEmpty() && !colorWords().contains(text))
            return refuse(field, QStringLiteral("הצבע שמילאת אינו חוקי"));
        L.Memo = text;
        show(field, text);
        return true;
    }
    if (field == txtJump) {
        if (!text.isEmpty() && !jumpWords().contains(text))
            return refuse(field, QStringLiteral("גודל הקפיצה שמילאת אינו חוקי"));
        rule_.jump = text;
        show(field, text);
        return true;
    }
    if (field == txtConfirm)
        L.confirm = control(field);
    else if (field == txtDetails)
        L.detail = control(field);
    shown_.insert(field, control(field));
    return true;
}

void frmConstantTransactions::focusNext(const QString& field)
{
    const QStringList& order = enterOrder();
    const qsizetype i = order.indexOf(field);
    if (i >= 0)
        moveFocus(order[(i + 1) % order.size()]);
}

// ---- the lists ---------------------------------------------------------------

QStringList frmConstantTransactions::typeRows(const QString& currentName) const
{
    // The side of the list: the type in the field, else the line's sums.
    bool income = rule_.theLine.out == 0;
    for (const TypeRec& t : p_.ledger.catalogue.types)
        if (t.TypeName == currentName) {
            income = t.isIncome;
            break;
        }
    QStringList rows;
    for (const TypeRec& t : p_.ledger.catalogue.types)
        if (t.isIncome == income)
            rows << t.TypeName + QStringLiteral("   (") + t.CategoryName + QLatin1Char(')');
    return rows;
}

void frmConstantTransactions::openList(ListField& l, bool keepText)
{
    const QString text = control(l.field).trimmed();
    const QStringList rows = l.field == txtMyType ? typeRows(text)
                           : l.field == txtColor  ? colorWords()
                                                  : jumpWords();
    int select = 0;
    for (int i = 0; i < int(rows.size()); ++i)
        if (rowName(rows[i]) == text)
            select = i;
    setItems(l.list, rows);
    setVisible(l.list, true);
    l.open = true;
    l.index = rows.isEmpty() ? -1 : select;
    setValue(l.list, l.index < 0 ? QString() : rows[l.index]);
    if (!keepText) {
        l.selStart = 0;
        l.selLength = int(control(l.field).size());
    }
}

QStringList frmConstantTransactions::rowsOf(const QString& list) const
{
    for (const Control& c : controls())
        if (c.name == list)
            return c.items;
    return {};
}

void frmConstantTransactions::closeList(ListField& l)
{
    l.open = false;
    setVisible(l.list, false);
}

// doSearch, doSearchColor, doSearchJump: the typed beginning completed from
// the first row in list order that starts with it, the rest selected so the
// next key replaces it. No match leaves the text for the commit to refuse.
void frmConstantTransactions::doSearch(ListField& l)
{
    if (l.suspendCompletion) {
        l.suspendCompletion = false;
        return;
    }
    const QString typed = control(l.field);
    if (typed.isEmpty())
        return;
    const QStringList rows = rowsOf(l.list);
    for (int i = 0; i < int(rows.size()); ++i) {
        if (rows[i].left(typed.size()) != typed)
            continue;
        l.index = i;
        setValue(l.list, rows[i]);
        const QString name = rowName(rows[i]);
        show(l.field, name);
        l.selStart = int(typed.size());
        l.selLength = std::max(0, int(name.size() - typed.size()));
        if (p_.keyboardLanguage)
            p_.keyboardLanguage(true);
        return;
    }
    l.index = rows.isEmpty() ? -1 : 0;
    l.selStart = int(typed.size());
    l.selLength = 0;
}

bool frmConstantTransactions::takeList(ListField& l, bool toNext)
{
    closeList(l);
    if (!commit(l.field))
        return false;
    newSetFocus(l);
    if (toNext)
        focusNext(l.field);
    else
        setFocus(l.field);
    return true;
}

// newSetFocus and its twins: the choice remembered for F2, here and in the
// grid.
void frmConstantTransactions::newSetFocus(ListField& l)
{
    const QString text = control(l.field).trimmed();
    if (text.isEmpty())
        return;
    if (l.field == txtMyType)
        p_.edit.lastValues[colType] = text;   // addLastVal(colType, name)
    else if (l.field == txtColor)
        p_.lasts.lastColor = text;
    else
        p_.lasts.lastJump = text;
}

QString frmConstantTransactions::lastValueOf(const ListField& l) const
{
    if (l.field == txtMyType)
        return rule_.theLine.out == 0 ? p_.edit.lastInType : p_.edit.lastOutType;
    return l.field == txtColor ? p_.lasts.lastColor : p_.lasts.lastJump;
}

// ---- the user's acts -----------------------------------------------------------

bool frmConstantTransactions::keyDown(const QString& field, int key, Qt::KeyboardModifiers)
{
    if (isClosed())
        return false;
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    ListField* l = listField(field);
    if (!l) {
        if (!enter)
            return false;
        focusNext(field);
        return true;
    }
    if (l->open) {
        switch (key) {
        case Qt::Key_Backspace:
        case Qt::Key_Delete:
            if (l->selLength > 0)
                l->suspendCompletion = true;
            return false;
        case Qt::Key_Down:
        case Qt::Key_Up: {
            const QStringList rows = rowsOf(l->list);
            if (rows.isEmpty())
                return true;
            l->index = std::clamp(l->index + (key == Qt::Key_Down ? 1 : -1), 0, int(rows.size()) - 1);
            setValue(l->list, rows[l->index]);
            show(field, rowName(rows[l->index]));
            l->selStart = 0;
            l->selLength = int(control(field).size());
            return true;
        }
        case Qt::Key_Escape:
            closeList(*l);
            show(field, field == txtMyType ? rule_.theLine.Type : field == txtColor ? rule_.theLine.Memo : rule_.jump);
            setFocus(field);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            takeList(*l, true);
            return true;
        case Qt::Key_Tab:
            takeList(*l, false);
            return true;
        case Qt::Key_F2:
            closeList(*l);
            show(field, lastValueOf(*l));
            if (commit(field))
                newSetFocus(*l);
            return true;
        default:
            return false;
        }
    }
    switch (key) {
    case Qt::Key_F2: {
        const QString last = lastValueOf(*l);
        if (field == txtMyType && last == QLatin1String("?"))
            return true;
        show(field, last);
        if (commit(field))
            newSetFocus(*l);
        return true;
    }
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        l->openOnChange = true;
        return false;
    case Qt::Key_Escape:
    case Qt::Key_Tab:
        return false;
    default:
        // Any other key opens the list; a character goes on into the text
        // and is completed there.
        if (!moveFocus(field))
            return true;
        openList(*l, false);
        return enter || key == Qt::Key_Down || key == Qt::Key_Up;
    }
}

void frmConstantTransactions::fieldClick(const QString& field)
{
    if (ListField* l = listField(field); l && !l->open && moveFocus(field))
        openList(*l, false);
}

void frmConstantTransactions::fieldDoubleClick(const QString& field)
{
    if (!moveFocus(field))
        return;
    if (field == txtKind) {
        dlgKind dlg(p_.ledger.catalogue, LedgerEditor::storedKind(control(txtKind)));
        p_.ui.runDialog(dlg);
        if (dlg.accepted() && !dlg.choice().isEmpty())
            show(txtKind, dlg.choice());
        return;
    }
    if (field == txtIn || field == txtOut) {
        double v = 0;
        parseSum(control(field), v);
        frmCalc calc(v, p_.ui);
        p_.ui.runDialog(calc);
        if (!calc.didCancelCalc())
            show(field, FormatSum(calc.calcValue()));
        return;
    }
    fieldClick(field);
}

void frmConstantTransactions::arrowClick(const QString& field)
{
    ListField* l = listField(field);
    if (!l)
        return;
    if (l->open)
        takeList(*l, true);
    else if (moveFocus(field))
        openList(*l, false);
}

void frmConstantTransactions::Form_Click()
{
    for (const QString& field : {txtJump, txtColor, txtMyType})
        if (ListField* l = listField(field); l->open) {
            takeList(*l, true);
            return;
        }
}

void frmConstantTransactions::onChange(const QString& name)
{
    if (busy_ || kind(name) != Kind::TextBox)
        return;
    if (name != focus()) {
        // The user went to the field and typed: the field left commits
        // first (which may rewrite this one), then the typed text stands.
        const QString typed = control(name);
        if (!moveFocus(name)) {
            setValue(name, shown_.value(name));   // the user never got there
            return;
        }
        setValue(name, typed);
    }
    if (ListField* l = listField(name)) {
        if (!l->open)
            openList(*l, true);
        l->openOnChange = false;
        doSearch(*l);
    }
    shown_.insert(name, control(name));
}

void frmConstantTransactions::onClick(const QString& name)
{
    if (busy_)
        return;
    if (name == QLatin1String("cmdCancel"))
        return close(false);
    if (ListField* l = listField(name)) {
        // A row clicked: the field takes it, and the list closes as Enter closes it.
        if (!moveFocus(l->field))
            return;
        show(l->field, rowName(control(name)));
        takeList(*l, true);
        return;
    }
    if (!moveFocus(name)) {
        if (kind(name) == Kind::CheckBox)   // the click never landed
            setValue(name, isOn(control(name)) ? QStringLiteral("0") : QStringLiteral("1"));
        return;
    }
    if (name == QLatin1String("cmdOK"))
        cmdOK_Click();
}

// cmdOK: the checks in their order, each refusal naming the field that takes
// the focus; then addLines. The dialog stays open when the user cancels at
// the zeroing date's warning, a sum of the series grows too large, or the
// file refuses the series.
void frmConstantTransactions::cmdOK_Click()
{
    Line& L = rule_.theLine;
    if (!rule_.FDate.isValid())
        return void(refuse(txtFromDate, QStringLiteral("יש למלא תאריך התחלה")));
    if (!rule_.TDate.isValid())
        return void(refuse(txtToDate, QStringLiteral("יש למלא תאריך סיום")));
    if (rule_.FDate > rule_.TDate)
        return void(refuse(txtFromDate, QStringLiteral("תאריך ההתחלה מאוחר מתאריך הסיום")));
    if (L.kind.startsWith(QLatin1Char('+')) && L.out != 0)
        return void(refuse(txtKind, QStringLiteral("סיווג חיובי אינו יכול להשתייך להוצאה")));
    if (L.kind.startsWith(QLatin1Char('-')) && L.out == 0)
        return void(refuse(txtKind, QStringLiteral("סיווג שלילי אינו יכול להשתייך להכנסה")));
    if (L.kind.isEmpty())
        L.kind = L.out == 0 ? QStringLiteral("+0") : QStringLiteral("-0");
    if (L.Type.isEmpty())
        L.Type = L.out == 0 ? p_.ledger.catalogue.typeName1 : p_.ledger.catalogue.typeName2;
    ListField& colors = *listField(txtColor);
    if (colors.index < 0) {
        // No row chosen: the last, "no colour", as if clicked.
        colors.index = int(colorWords().size()) - 1;
        if (control(txtColor).trimmed().isEmpty()) {
            L.Memo = colorWords().last();
            show(txtColor, L.Memo);
        }
    }
    if (L.Memo.isEmpty())
        return void(refuse(txtColor, QStringLiteral("יש למלא צבע")));
    if (rule_.jump.isEmpty())
        return void(refuse(txtJump, QStringLiteral("יש למלא גודל קפיצה")));
    if (control(txtPercent).trimmed().isEmpty())
        rule_.percent = 0;
    L.isTzefi = isOn(control(QStringLiteral("chkTzefiLine")));
    rule_.endOfMonth = isOn(control(QStringLiteral("chkEndOfMonth")));
    rule_.saveInDB = isOn(control(QStringLiteral("chkSaveInDB")));
    busy_ = true;
    try {
        outcome_ = addLines(p_.ledger, p_.ui, rule_);
    } catch (const store::StoreError& e) {
        // The series was one transaction: nothing of it is in the file.
        busy_ = false;
        p_.ui.msgBox(QStringLiteral("הכנסת הפעולות נכשלה: ") + e.message(), errorTitle, Buttons::OK, Icon::Critical);
        return;
    }
    busy_ = false;
    if (outcome_.closes())
        close(true);
}

} // namespace pelkor
