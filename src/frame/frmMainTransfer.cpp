// frmMain: moving or copying lines to another file, a transfer of money
// between two files, moving the dates of the demonstration file, and the
// invoice kinds. The work is the transfer
// and reports rooms'; the window lends its parts and the kind dialog, and
// reloads afterwards.
#include "frame/frmMain.h"

#include "base/Format.h"
#include "base/Titles.h"
#include "file/Display.h"
#include "ledger/dlgKind.h"
#include "ledger/frmCalc.h"
#include "reports/frmInvoiceKinds.h"
#include "seams/ui/Ui.h"
#include "transfer/MoveDates.h"
#include "transfer/MoveJournal.h"
#include "transfer/MoveOrCopy.h"
#include "transfer/TransferJournal.h"
#include "transfer/frmTransfer.h"
#include "transfer/frmMoveOrCopy.h"

#include <QDir>
#include <QFileInfo>

namespace pelkor {

void frmMain::cmdMove_Click()
{
    TraceScope t(trace_, QStringLiteral("cmdMove_Click"));
    // A reconciliation works on its own copy of the lines: none leave it.
    if (ledger_.lines.empty() || !ledger_.isCnOpen || session_->active())
        return;
    transfer::MoveParts parts{ledger_, instance_, grid_.msfgMain, ui_};
    parts.isConfirmedRow = [this](int row) { return grid_.msfgMain.text(row, colMark) == QLatin1String("v"); };
    parts.kindDialog = [this](const Catalogue& dest, const QString& text) {
        dlgKind dlg(dest, QString(), text);
        ui_.runDialog(dlg);
        return dlg.choice();
    };
    parts.commitCell = [this] { editor_.msfgMainLeaveCell(); };
    parts.enterCell = [this] { msfgMain_EnterCell(); };
    parts.reload = [this] { cmdRefresh_Click(); };
    parts.hasNewLine = edit_.isThereNewLine;
    transfer::frmMoveOrCopy dlg(ui_, ledger_.filePath, readParameter(QStringLiteral("directory")),
                                [&parts](const QString& dest, bool isMove) {
                                    transfer::moveOrCopyRows(parts, dest, isMove);
                                });
    ui_.runDialog(dlg);
    emit changed();
}

void frmMain::openTransfer()
{
    TraceScope t(trace_, QStringLiteral("openTransfer"));
    // A reconciliation works on its own copy of the lines: none come in.
    if (session_->active())
        return;
    if (ledger_.isCnOpen)
        editor_.commitAll();
    transfer::TransferParts parts{ui_, trace_, env_.today, readParameter(QStringLiteral("directory")),
                                  ledger_.isCnOpen ? ledger_.filePath : QString()};
    parts.kindDialog = [this](const Catalogue& cat, const QString& cellKind) {
        dlgKind dlg(cat, cellKind.trimmed());
        ui_.runDialog(dlg);
        return dlg.choice();
    };
    parts.calculator = [this](double from) -> std::optional<double> {
        frmCalc calc(from, ui_);
        ui_.runDialog(calc);
        if (calc.didCancelCalc())
            return std::nullopt;
        return calc.calcValue();
    };
    parts.refreshMain = [this] {
        if (ledger_.isCnOpen)
            cmdRefresh_Click();
    };
    parts.busy = &busy_;
    transfer::frmTransfer dlg(std::move(parts));
    ui_.runDialog(dlg);
    emit changed();
}

void frmMain::mnuMoveDates_Click()
{
    TraceScope t(trace_, QStringLiteral("mnuMoveDates_Click"));
    if (!ledger_.isCnOpen)
        return;
    transfer::MoveDatesParts parts{ledger_, ui_, QDir(env_.paths.programDir).filePath(QStringLiteral("demo.mdb")),
                                   [this] { cmdRefresh_Click(); }, [this] { return edit_.isThereNewLine; }};
    transfer::mnuMoveDates_Click(parts);
}

void frmMain::mnuInvoiceKinds_Click()
{
    TraceScope t(trace_, QStringLiteral("mnuInvoiceKinds_Click"));
    if (!ledger_.isCnOpen)
        return;
    const QString before = ledger_.theInvoiceCategs;
    reports::frmInvoiceKinds dlg(ledger_.catalogue, before, instance_.tempPath);
    if (!dlg.Form_Load())
        return;
    ui_.runDialog(dlg);
    if (!dlg.accepted() || dlg.invoiceCategs() == before)
        return;
    ledger_.theInvoiceCategs = dlg.invoiceCategs();
    ledger_.sql.executeSQL(QStringLiteral("mnuInvoiceKinds_Click"),
                           QStringLiteral("UPDATE invoiceCategs SET detail='%1'").arg(fixString(ledger_.theInvoiceCategs)));
}

void frmMain::finishPendingMoves()
{
    try {
        const transfer::PendingMoves done = transfer::finishPendingMoves(ledger_.cn, ledger_.linesTable);
        if (done.finished + done.undone > 0)
            trace_.traceLine(QStringLiteral("finishPendingMoves"),
                             QStringLiteral("finished %1, undone %2").arg(done.finished).arg(done.undone));
        const transfer::PendingTransfers pairs = transfer::finishPendingTransfers(ledger_.cn, QStringLiteral("pelkor"));
        if (pairs.kept + pairs.undone > 0)
            trace_.traceLine(QStringLiteral("finishPendingMoves"),
                             QStringLiteral("transfers kept %1, undone %2").arg(pairs.kept).arg(pairs.undone));
        for (const QString& other : pairs.problems)
            ui_.msgBox(QStringLiteral("העברה מחשבון לחשבון אל הקובץ \"%1\" נקטעה ולא ניתן לפתוח אותו כדי לבדוק אם הושלמה. "
                                      "היא תוכרע בפתיחה הבאה של קובץ זה, כשהקובץ השני יהיה זמין.")
                           .arg(isolated(QFileInfo(other).fileName())),
                       pelkorTitle, ui::Buttons::OK, ui::Icon::Exclamation);
        for (const QString& dest : done.problems)
            ui_.msgBox(QStringLiteral("העברת שורות לקובץ \"%1\" נקטעה ולא ניתן לפתוח אותו כדי להשלים אותה. "
                                      "היא תושלם בפתיחה הבאה של קובץ זה, כשקובץ היעד יהיה זמין.")
                           .arg(isolated(QFileInfo(dest).fileName())),
                       pelkorTitle, ui::Buttons::OK, ui::Icon::Exclamation);
    } catch (const store::StoreError& e) {
        // The file is read as it stands; the note waits for the next open.
        trace_.traceLine(QStringLiteral("finishPendingMoves"), e.message());
    }
}

} // namespace pelkor
