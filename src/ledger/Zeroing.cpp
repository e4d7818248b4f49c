#include "ledger/Zeroing.h"

#include "base/Format.h"
#include "base/Instance.h"
#include "base/Modes.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "file/Schema.h"
#include "ledger/LedgerEditor.h"
#include "seams/grid/GridModel.h"

namespace pelkor {

void moveIpusMark(OpenLedger& led, const Instance& inst)
{
    // A child works on lines that have no mark.
    if (inst.progMode == modeNewLines || !led.ipusDate.isValid())
        return;
    const QString proc = QStringLiteral("updateIpus");
    const QString& tb = led.linesTable;
    const QString mark = QString::fromLatin1(schema::ipusMark);
    if (!led.ipusID.isEmpty())
        led.sql.executeSQL(proc, QStringLiteral("UPDATE %1 set zee = ' ' WHERE id = %2").arg(tb, led.ipusID));
    for (int pass = 0; pass < 2; ++pass) {
        // The last line on or before the date in the file's order is among
        // the lines of the latest such date: only those are sorted.
        auto rs = led.cn.execute(QStringLiteral("SELECT id FROM %1 WHERE date = (SELECT max(date) FROM %1 WHERE date <= %2) "
                                                "ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, "
                                                "[in], out, id")
                                     .arg(tb, formatDateForSQL(led.ipusDate)));
        if (!rs.eof()) {
            rs.moveLast();
            led.ipusID = RemoveNull(rs.field(0));
            led.sql.executeSQL(proc, QStringLiteral("UPDATE %1 set zee = '%2' WHERE id = %3").arg(tb, mark, led.ipusID));
            break;
        }
        // No line on or before the date: the date moves to the first line's.
        auto min = led.cn.execute(QStringLiteral("SELECT min(date) FROM %1").arg(tb));
        const QDate first = min.eof() ? QDate() : min.field(0).toDate();
        if (!first.isValid())
            break;   // no line has a date: no line can bear the mark
        led.ipusDate = first;
    }
}

void updateIpus(OpenLedger& led, const Instance& inst)
{
    if (inst.progMode == modeNewLines || !led.ipusDate.isValid())
        return;
    store::Transaction tx(led.cn);
    moveIpusMark(led, inst);
    tx.commit();
}

int rowAboveRed(const OpenLedger& led)
{
    // The lines are in the file's order, so those on or before the date
    // come first.
    int row = 0;
    while (row < int(led.lines.size()) && led.lines[size_t(row)].Date.isValid()
           && led.lines[size_t(row)].Date <= led.ipusDate)
        ++row;
    return std::max(row, 1);
}

void LedgerEditor::cmdIpus_Click()
{
    OpenLedger& led = p_.ledger;
    EditState& e = p_.edit;
    // The mark is the whole file's: a child or a merged file has none, and
    // while a reconciliation works on its copy of the lines the mark moves
    // only at its close.
    if (led.openDBisBusy || led.lines.empty() || !p_.instance.isMainMode()
        || led.linesTable != QLatin1String("pelkor"))
        return;
    msfgMainLeaveCell();
    if (e.mustGoBack) {
        msfgMain_EnterCell();
        return;
    }
    // A pending new line is written first; one that stays pending stops
    // here, and the cursor is on it.
    if (!maybeWriteNewLineToDB())
        return;
    const int row = g().Row();
    if (row < g().FixedRows() || row > int(led.lines.size()))
        return;
    const QDate date = led.lines[size_t(row - 1)].Date;
    if (!date.isValid() || date == nullDate())
        return;
    p_.grid.theID = led.lines[size_t(row - 1)].Id;
    p_.grid.theOffset = row - g().TopRow();
    led.ipusDate = date;
    updateIpus(led, p_.instance);
    // The reload draws the red line under the new zeroing line (iRowAboveRed).
    reloadAfterChange();
}

void LedgerEditor::cmdGoToIpusLine_Click()
{
    OpenLedger& led = p_.ledger;
    if (led.openDBisBusy || led.lines.empty() || !led.ipusDate.isValid())
        return;
    msfgMainLeaveCell();
    if (p_.edit.mustGoBack) {
        msfgMain_EnterCell();
        return;
    }
    led.iRowAboveRed = rowAboveRed(led);
    const int row = clipRowNum(led.iRowAboveRed, g().Rows());
    g().setRow(row);
    g().setCol(colKind);
    g().setTopRow(row);
    msfgMain_EnterCell();
}

} // namespace pelkor
