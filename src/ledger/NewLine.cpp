// The new line at the end of the grid: opened by cmdAdd_Click, edited with
// the commit's rules (which change its record and cells only), written
// whole by maybeWriteNewLineToDB when the cursor leaves it or the window
// is about to reload or close, and removed unwritten by Esc.
//
// Its record's Id is a forecast (MAX(id)+1) while it is unwritten; the
// write reads the real key back, so later commits address the row the
// write made even when another instance wrote the file in between.
#include "ledger/LedgerEditor.h"

#include "base/Titles.h"
#include "base/Format.h"
#include "base/Instance.h"
#include "base/Modes.h"
#include "base/WindowCalls.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "ledger/AddOneLine.h"
#include "ledger/Guards.h"
#include "ledger/Zeroing.h"
#include "seams/grid/GridModel.h"
#include "seams/store/TextForms.h"
#include "seams/ui/Ui.h"
#include "seams/ui/dialogs/TypedDate.h"

namespace pelkor {

using ui::Answer;
using ui::Buttons;
using ui::Icon;

namespace {


double cellSum(const QString& text)
{
    double v = 0;
    return store::text::parseNumber(text.trimmed(), v) ? v : 0;
}

// The kind with its sign set by the line's direction.
QString withSign(const QString& kind, bool income)
{
    const QChar sign = income ? QLatin1Char('+') : QLatin1Char('-');
    if (kind.startsWith(QLatin1Char('+')) || kind.startsWith(QLatin1Char('-')))
        return sign + kind.mid(1);
    return sign + kind;
}

} // namespace

bool LedgerEditor::isOnNewLine() const
{
    return p_.edit.isThereNewLine && g().Row() == g().Rows() - 1;
}

// ---- opening -------------------------------------------------------------------

void LedgerEditor::cmdAdd_Click()
{
    OpenLedger& led = p_.ledger;
    EditState& e = p_.edit;
    if (!e.loaded || led.openDBisBusy)
        return;
    // The open cell is committed first; a refused value keeps the cursor.
    if (e.editorOpen())
        msfgMain_GotFocus();
    msfgMainLeaveCell();
    if (e.mustGoBack) {
        msfgMain_EnterCell();
        return;
    }
    if (e.isThereNewLine && !maybeWriteNewLineToDB())
        return;

    // The forecast key: what the store will most likely give the row.
    auto rs = led.cn.execute(QStringLiteral("SELECT MAX(id) FROM %1").arg(led.linesTable));
    const long long maxId = rs.eof() ? 0 : rs.field(0).toInt();
    Line L;
    L.Id = QString::number(maxId + 1);
    L.Date = newLineNoDate();
    L.confirm = QStringLiteral(" ");
    L.detail = QStringLiteral(" ");
    L.Memo = colorWords().last();
    const std::uint8_t alternate = led.alternatingIndexes.empty() ? 0 : led.alternatingIndexes.back() ^ 1;
    led.lines.push_back(L);
    led.balances.staleFrom(led.lines.size() - 1);
    led.alternatingIndexes.push_back(alternate);
    e.isThereNewLine = true;

    grid::GridModel& grid = g();
    {
        NoRedraw noRedraw(grid);
        const int row = grid.addRow();
        grid.setRowHeight(row, grid::GridModel::defaultRowHeight);
        for (int col = colMark; col < grid.Cols(); ++col)
            restoreCellStyle(led, p_.instance, grid, row, col, p_.grid.balancingLineID);
        grid.setText(row, colKind, QString());
        grid.setText(row, colDate, QString());
        grid.setText(row, colConfirm, L.confirm);
        grid.setText(row, colDetail, L.detail);
        grid.setText(row, colIn, FormatSum(0));
        grid.setText(row, colOut, FormatSum(0));
        grid.setText(row, colType, QString());
        // The balance repeats the row above: the line has no sums yet.
        if (hasBalanceColumn(p_.instance))
            grid.deferTexts(row, row, colBalance, colBalance);
        const int page = std::max(1, grid.visibleRows());
        grid.setTopRow(std::max(grid.FixedRows(), row - page + 1));
        grid.setRow(row);
        grid.setCol(colKind);
        msfgMain_EnterCell();
    }
    e.hasSetAnySumInCurNewLine = false;
    p_.window.shownChanged();
}

void LedgerEditor::removeNewLine()
{
    OpenLedger& led = p_.ledger;
    EditState& e = p_.edit;
    if (!e.isThereNewLine)
        return;
    closeEditors();
    grid::GridModel& grid = g();
    {
        Suspend enter(e.suspendEnterAndLeaveCell);
        NoRedraw noRedraw(grid);
        grid.removeRow(grid.Rows() - 1);
        led.lines.pop_back();
        led.balances.staleFrom(led.lines.size());
        if (!led.alternatingIndexes.empty())
            led.alternatingIndexes.pop_back();
        e.isThereNewLine = false;
        grid.setRow(std::min(grid.Row(), grid.Rows() - 1));
        grid.setCol(colKind);
    }
    e.prevRow = grid.Row();
    e.prevCol = grid.Col();
    p_.grid.msfgMainMarks = CursorMarks{};
    msfgMain_EnterCell();
    p_.window.shownChanged();
}

// ---- writing -------------------------------------------------------------------

bool LedgerEditor::maybeWriteNewLineToDB()
{
    EditState& e = p_.edit;
    // Showing a message moves the focus, which comes back here: one write
    // at a time.
    if (e.suspendMaybeWriteNewLineToDB)
        return true;
    if (!e.isThereNewLine)
        return true;
    Suspend writing(e.suspendMaybeWriteNewLineToDB);
    OpenLedger& led = p_.ledger;
    const Catalogue& cat = led.catalogue;
    grid::GridModel& grid = g();
    const int last = grid.Rows() - 1;
    const int row0 = grid.Row();
    const int col0 = grid.Col();
    Line& L = led.lines.back();
    const auto cellText = [&](int col) { return grid.text(last, col); };

    // What became of the line: written, dropped at the user's word, kept
    // pending on its date (no date and the user keeps it, or a date that
    // is none) or refused for its kind.
    enum class Outcome { Written, Dropped, StayOnDate, Refused } outcome = Outcome::Written;
    QString message;
    {
        Suspend enter(e.suspendEnterAndLeaveCell);
        NoRedraw noRedraw(grid);
        grid.setRow(last);

        // The direction: from the sums once one was set (or with no kind),
        // else from the kind's sign.
        const QString kindCell = cellText(colKind).trimmed();
        const bool isIncome = (e.hasSetAnySumInCurNewLine || kindCell.isEmpty())
            ? cellText(colOut) == FormatSum(0)
            : FormatKind(kindCell).startsWith(QLatin1Char('+'));

        // The type: the default of the direction when empty; a type that
        // contradicts the recorded kind's sign gives way to the default.
        QString type = cellText(colType).trimmed();
        if (type.isEmpty())
            type = isIncome ? cat.typeName1 : cat.typeName2;
        else if (L.kind.startsWith(QLatin1Char('-')) && L.out == 0)
            type = cat.typeName1;
        else if (L.kind.startsWith(QLatin1Char('+')) && L.out != 0)
            type = cat.typeName2;

        // The kind: "+0"/"-0" when empty, else its sign by the sums.
        const QString kind = kindCell.isEmpty() ? (isIncome ? QStringLiteral("+0") : QStringLiteral("-0"))
                                                : withSign(FormatKind(kindCell), L.out == 0);
        const QString dateCell = cellText(colDate).trimmed();
        const std::optional<QDate> date = ui::readTypedDate(dateCell);
        if (kind.startsWith(QLatin1Char('+')) && L.out != 0) {
            outcome = Outcome::Refused;
            message = QStringLiteral("סיווג חיובי אינו יכול להשתייך להוצאה");
        } else if (kind.startsWith(QLatin1Char('-')) && L.out == 0) {
            outcome = Outcome::Refused;
            message = QStringLiteral("סיווג שלילי אינו יכול להשתייך להכנסה");
        } else if (!cat.isCategory(kind)) {
            outcome = Outcome::Refused;
            message = QStringLiteral("הערך בסיווג אינו תואם את הרשימה");
        } else if (dateCell.isEmpty()) {
            const Answer a = p_.ui.msgBox(QStringLiteral("בשורה החדשה אין תאריך. האם ברצונך לבטל את הוספת השורה?"),
                                          QStringLiteral("הוספת שורה"), Buttons::YesNo, Icon::Question);
            outcome = a == Answer::Yes ? Outcome::Dropped : Outcome::StayOnDate;
        } else if (!date) {
            outcome = Outcome::StayOnDate;
            message = QStringLiteral("התאריך אינו חוקי");
        } else {
            Line w = L;
            w.kind = kind;
            w.Date = *date;
            w.confirm = fixString(cellText(colConfirm));
            w.detail = fixString(cellText(colDetail));
            w.In = cellSum(cellText(colIn));
            w.out = cellSum(cellText(colOut));
            w.Type = type;
            if (w.Memo.isEmpty())
                w.Memo = colorWords().last();
            w.TypeNum = GetTypeBigIndex(type);
            writeLine(led, p_.instance, w, w.TypeNum, QStringLiteral("maybeWriteNewLineToDB"));
            L = w;
            led.balances.staleFrom(led.lines.size() - 1);
            e.isThereNewLine = false;
            grid.setText(last, colKind, FormatKind(kind));
            grid.setText(last, colDate, formatDate224(L.Date));
            grid.setText(last, colType, type);
            grid.setRow(std::clamp(row0, grid.FixedRows(), grid.Rows() - 1));
            grid.setCol(col0);
        }
    }

    switch (outcome) {
    case Outcome::Written:
        p_.window.shownChanged();
        if (p_.instance.progMode == modeDailySummarySplit)
            p_.window.refresh();
        return true;
    case Outcome::Dropped:
        // The line goes unwritten, and the caller goes on where it was going.
        removeNewLine();
        if (row0 < g().Rows() && row0 != g().Row()) {
            g().setRow(row0);
            msfgMain_EnterCell();
        }
        return true;
    case Outcome::StayOnDate:
        if (!message.isEmpty())
            p_.ui.msgBox(message, errorTitle, Buttons::OK, Icon::Exclamation);
        grid.setCol(colDate);
        break;
    case Outcome::Refused:
        // The cursor sits in the new line's kind, which shows the record's
        // kind again.
        grid.setCol(0);
        grid.setCol(colKind);
        p_.ui.msgBox(message, errorTitle, Buttons::OK, Icon::Exclamation);
        grid.setText(last, colKind, FormatKind(L.kind));
        break;
    }
    // The cursor stays on the pending line.
    e.prevRow = last;
    e.prevCol = grid.Col();
    updateDisplay();
    return false;
}

bool LedgerEditor::commitAll()
{
    msfgMain_GotFocus();
    msfgMainLeaveCell();
    return maybeWriteNewLineToDB();
}

void LedgerEditor::msfgMain_LostFocus()
{
    if (p_.edit.isThereNewLine && g().Row() != g().Rows() - 1)
        maybeWriteNewLineToDB();
}

} // namespace pelkor
