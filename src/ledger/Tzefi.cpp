#include "ledger/Tzefi.h"

#include "base/Titles.h"
#include "base/Format.h"
#include "base/Instance.h"
#include "base/Modes.h"
#include "base/Trace.h"
#include "base/WindowCalls.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "ledger/AddOneLine.h"
#include "ledger/TzefiDialogs.h"
#include "seams/grid/GridModel.h"
#include "seams/ui/Ui.h"

#include <algorithm>

namespace pelkor {

using ui::Buttons;
using ui::Icon;

namespace {


// tzefiLines holds the indexes 0 to 1000.
constexpr size_t maxTzefiLines = 1001;

bool hasDate(const QDate& d) { return d.isValid() && d != nullDate() && d != newLineNoDate(); }

// Cell (row, col) takes the colours the rules give its line's record; the
// cell that holds the cursor keeps the cursor's colours over them.
void paintCell(EditParts& p, int row, int col)
{
    grid::GridModel& g = p.grid.msfgMain;
    restoreCellStyle(p.ledger, p.instance, g, row, col, p.grid.balancingLineID);
    const CursorMarks& m = p.grid.msfgMainMarks;
    if (m.litRow == row && m.litCol == col) {
        grid::CellStyle s = g.style(row, col);
        s.back = colors::currentBack;
        s.fore = colors::currentText;
        g.setStyle(row, col, s);
    }
}

void runUnlessNewLine(EditParts& p, const QString& proc, const QString& sql, bool onNewLine)
{
    if (!onNewLine)
        p.ledger.sql.executeSQL(proc, sql);
}

} // namespace

// ---- F4 --------------------------------------------------------------------------

void toggleRelate(EditParts& p, bool onNewLine)
{
    grid::GridModel& g = p.grid.msfgMain;
    const int row = g.Row();
    if (row < 1 || row > int(p.ledger.lines.size()))
        return;
    Line& L = p.ledger.lines[size_t(row - 1)];
    int to = 0;
    QString message;
    if (L.relate == -1) {
        to = 0;
        message = QStringLiteral("שורה זו לא תלקח בחשבון בסינכרון הפלקור מול תנועות יבוא חיצוני");
    } else if (L.relate == 0 && !L.isTzefi) {
        to = -1;
        message = QStringLiteral("שורה זו תלקח בחשבון בסינכרון הפלקור מול תנועות יבוא חיצוני");
    } else {
        return;
    }
    L.relate = to;
    paintCell(p, row, colKind);
    runUnlessNewLine(p, QStringLiteral("toggleRelate"),
                     QStringLiteral("UPDATE %1 set [relate]=%2 WHERE id = %3").arg(p.ledger.linesTable).arg(to).arg(L.Id),
                     onNewLine);
    p.window.shownChanged();
    p.ui.msgBox(message, QStringLiteral("פלקור"), Buttons::OK, Icon::Information);
}

// ---- the forecast dialog ------------------------------------------------------------

void Tzefi::exec(const QString& proc, const QString& sql, bool onNewLine) { runUnlessNewLine(p_, proc, sql, onNewLine); }

void Tzefi::cmdTzefi_Click()
{
    OpenLedger& led = p_.ledger;
    grid::GridModel& g = p_.grid.msfgMain;
    const int row = g.Row();
    if (!p_.edit.loaded || led.openDBisBusy || row < 1 || row > int(led.lines.size()))
        return;
    const QString proc = QStringLiteral("cmdTzefi_Click");
    const bool onNewLine = editor_.isOnNewLine();
    Line& L = led.lines[size_t(row - 1)];

    frmTzefi dlg(L.isTzefi, L.relate);
    p_.ui.runDialog(dlg);
    wasTzefiChecked = dlg.wasTzefiChecked();
    wasHashavshevetChecked = dlg.wasHashavshevetChecked();
    didCancelTzefi = dlg.didCancelTzefi();
    if (didCancelTzefi)
        return;

    const QString table = led.linesTable;
    if (wasTzefiChecked) {
        if (!L.isTzefi) {
            L.isTzefi = true;
            paintCell(p_, row, colIn);
            paintCell(p_, row, colOut);
            exec(proc, QStringLiteral("UPDATE %1 set IndTzefi = true WHERE id = %2").arg(table, L.Id), onNewLine);
        }
        if (wasHashavshevetChecked && L.relate != 99) {
            L.relate = 99;
            paintCell(p_, row, colKind);
            exec(proc, QStringLiteral("UPDATE %1 set [relate] = 99 WHERE id = %2").arg(table, L.Id), onNewLine);
        } else if (!wasHashavshevetChecked && L.relate == 99) {
            L.relate = 0;
            paintCell(p_, row, colKind);
            exec(proc, QStringLiteral("UPDATE %1 set [relate] = 0 WHERE id = %2").arg(table, L.Id), onNewLine);
        }
    } else if (L.isTzefi) {
        L.isTzefi = false;
        L.relate = 0;
        paintCell(p_, row, colIn);
        paintCell(p_, row, colOut);
        paintCell(p_, row, colKind);
        exec(proc, QStringLiteral("UPDATE %1 set IndTzefi = false, [relate] = 0 WHERE id = %2").arg(table, L.Id), onNewLine);
    }
    p_.window.shownChanged();
}

// ---- the subtraction -------------------------------------------------------------

bool Tzefi::isTypeOneChild() const
{
    return p_.instance.progMode == modeNewLines && p_.instance.newLineDialogType == lineDialogUnconfirmedBank;
}

std::vector<TzefiCandidate> Tzefi::collectTzefiLines(bool isIncome)
{
    OpenLedger& led = p_.ledger;
    std::vector<TzefiCandidate> out;
    const QDate ipus = led.ipusDate;
    if (!isTypeOneChild()) {
        for (int i = 0; i < int(led.lines.size()) && out.size() < maxTzefiLines; ++i) {
            const Line& L = led.lines[size_t(i)];
            if (!L.isTzefi || (L.out == 0) != isIncome || !hasDate(L.Date) || (hasDate(ipus) && L.Date <= ipus))
                continue;
            out.push_back(TzefiCandidate{L.Id, L.kind, L.Date, L.detail, isIncome ? L.In : L.out, i});
        }
        return out;
    }
    // A type-1 child's grid holds bank rows: the forecasts are read from
    // the file, anew, since other processes may have written it.
    if (reconnect_)
        reconnect_();
    // With no zeroing line every dated forecast is after it.
    const QDate after = hasDate(ipus) ? ipus : nullDate();
    auto rs = led.cn.execute(
        QStringLiteral("SELECT id, kind, date, detail, [in], out, IndTzefi FROM %1 WHERE IndTzefi=true AND %2 AND [date]>%3 "
                       "ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id")
            .arg(led.linesTable, isIncome ? QStringLiteral("out=0") : QStringLiteral("out<>0"), formatDateForSQL(after)));
    for (; !rs.eof() && out.size() < maxTzefiLines; rs.moveNext()) {
        out.push_back(TzefiCandidate{RemoveNull(rs.field(QStringLiteral("id"))), RemoveNull(rs.field(QStringLiteral("kind"))),
                                     rs.field(QStringLiteral("date")).toDate(), RemoveNull(rs.field(QStringLiteral("detail"))),
                                     RemoveSumNull(rs.field(isIncome ? QStringLiteral("in") : QStringLiteral("out"))), -1});
    }
    return out;
}

void Tzefi::cmdSubtractFromTzefi_Click()
{
    OpenLedger& led = p_.ledger;
    EditState& e = p_.edit;
    grid::GridModel& g = p_.grid.msfgMain;
    if (!e.loaded || led.openDBisBusy || led.lines.empty())
        return;
    // The open cell is committed first; a refused value keeps the cursor.
    if (e.editorOpen())
        editor_.msfgMain_GotFocus();
    editor_.msfgMainLeaveCell();
    if (e.mustGoBack) {
        editor_.msfgMain_EnterCell();
        return;
    }
    const int row = g.Row();
    if (row < 1 || row > int(led.lines.size()))
        return;
    const Line& L = led.lines[size_t(row - 1)];
    if (L.isTzefi) {
        p_.ui.msgBox(QStringLiteral("אי-אפשר להוריד שורת צפי משורת צפי"), errorTitle, Buttons::OK, Icon::Exclamation);
        return;
    }
    // On the unsaved new line these are what its record holds.
    const bool isIncome = L.out == 0;
    const double sumToSubtract = isIncome ? L.In : L.out;

    const std::vector<TzefiCandidate> tzefiLines = collectTzefiLines(isIncome);
    if (tzefiLines.empty()) {
        p_.ui.msgBox(QStringLiteral("אין שורות צפי ") + (isIncome ? QStringLiteral("הכנסה") : QStringLiteral("הוצאה")),
                     errorTitle, Buttons::OK, Icon::Exclamation);
        return;
    }
    frmSubtractFromTzefi dlg(tzefiLines, tzefiPage(tzefiLines, gridFontName), p_.instance.tempPath);
    rwIndex = -1;
    if (!dlg.Form_Load()) {
        led.trace.traceLine(QStringLiteral("cmdSubtractFromTzefi_Click"), QStringLiteral("cannot write ") + dlg.pageName());
        return;
    }
    p_.ui.runDialog(dlg);
    rwIndex = dlg.rwIndex();
    if (rwIndex < 0 || rwIndex >= int(tzefiLines.size()))
        return;
    subtractFrom(tzefiLines[size_t(rwIndex)], isIncome, sumToSubtract);
    p_.window.shownChanged();
    // A reload would write the unsaved new line the user is still on (or
    // drop it); the grid has the change in place already.
    if (!e.isThereNewLine)
        p_.window.refresh();
}

void Tzefi::subtractFrom(const TzefiCandidate& t, bool isIncome, double sumToSubtract)
{
    OpenLedger& led = p_.ledger;
    grid::GridModel& g = p_.grid.msfgMain;
    const double result = std::max(0.0, t.sum - sumToSubtract);
    const QString sql = QStringLiteral("UPDATE %1 set %2 = '%3' WHERE id = %4")
                            .arg(led.linesTable, isIncome ? QStringLiteral("[in]") : QStringLiteral("[out]"), sqlSum(result), t.id);
    const QString proc = QStringLiteral("cmdSubtractFromTzefi_Click");
    if (t.lineIndex < 0) {
        // From the file: there is no grid row to change.
        led.sql.executeSQL(proc, sql);
        return;
    }
    const int row = t.lineIndex + 1;
    const int col = isIncome ? colIn : colOut;
    Line& T = led.lines[size_t(t.lineIndex)];
    (isIncome ? T.In : T.out) = result;
    g.setText(row, col, FormatSum(result));
    // At 0 the cell loses the forecast look (the rules give it).
    paintCell(p_, row, col);
    exec(proc, sql, p_.edit.isThereNewLine && row == g.Rows() - 1);
    CalcBalances(led, p_.instance, g, row);
    if (p_.instance.progMode == modeDetail) {
        const Totals totals = calcTotals(led);
        p_.grid.lblTotalIncome = totals.lblTotalIncome;
        p_.grid.lblTotalExpense = totals.lblTotalExpense;
    }
}

} // namespace pelkor
