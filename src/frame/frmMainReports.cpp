// frmMain: the period report windows it opens (the menu entries and the
// button), and the parts it lends them. The report's logic is the reports
// room's (frmMonthReportMain); the window is the view's.
#include "frame/frmMain.h"

#include "ledger/frmAddLine.h"
#include "reports/frmBankReportMain.h"
#include "reports/frmMonthReportMain.h"
#include "seams/ui/Ui.h"

namespace pelkor {

void frmMain::makePeriodReport(const QString& sPeriod)
{
    // The report window works on this window's file; meanwhile the grid is
    // not edited.
    shown_.enabled = false;
    emit changed();
    emit periodReportRequested(sPeriod);
}

void frmMain::openMergedReport()
{
    // The verb of the merged report's line: month, week or day.
    const QString& verb = instance_.command.mergedVerb;
    makePeriodReport(verb == QLatin1String("ktrpw") ? QStringLiteral("w")
                     : verb == QLatin1String("ktrpd") ? QStringLiteral("d")
                                                       : QStringLiteral("m"));
}

reports::ReportParts frmMain::reportParts()
{
    reports::ReportParts p{ledger_, instance_, ui_};
    p.children = env_.children;
    p.settingsFile = env_.paths.iniFile();
    p.today = env_.today;
    p.openAddLine = [this](std::function<void(const QString&)> tellOpener) {
        frmAddLine dlg(ledger_, instance_, ledger_.filePath, ui_, env_.today, std::move(tellOpener));
        if (dlg.Form_Load())
            ui_.runDialog(dlg);
    };
    p.closed = [this] { periodReportClosed(); };
    return p;
}

void frmMain::periodReportClosed()
{
    if (!shown_.visible)
        return exitProg();
    shown_.enabled = true;
    emit changed();
    cmdRefresh_Click();
}

} // namespace pelkor

namespace pelkor {

// ---- the comparison of two files ---------------------------------------

void frmMain::mnuCompare_Click()
{
    if (instance_.progMode != modeCompare)
        modeBeforeCompare_ = instance_.progMode;
    instance_.progMode = modeCompare;
    emit compareRequested();
}

reports::ReportParts frmMain::compareParts()
{
    reports::ReportParts p = reportParts();
    p.closed = [this] { compareClosed(); };
    // A child's "refresh" or "closed" may have changed this file too.
    p.refreshMain = [this] {
        if (!shown_.visible)
            return;
        shown_.enabled = true;
        emit changed();
        cmdRefresh_Click();
    };
    return p;
}

void frmMain::compareClosed()
{
    if (instance_.progMode == modeCompare)
        instance_.progMode = modeBeforeCompare_;
    if (!shown_.visible)
        return exitProg();
    shown_.enabled = true;
    emit changed();
}

} // namespace pelkor

namespace pelkor {

// ---- the merged bank report --------------------------------------------

void frmMain::mnuOpenBankReport_Click()
{
    // The merged file is made by this very report: a run on it opens none,
    // or each summary would open another report.
    if (instance_.isMerged)
        return;
    // cmdReport_Click: Hebrew typing, the grid's focus, then the window.
    keyboardLanguage(true);
    emit bankReportRequested();
}

reports::BankReportParts frmMain::bankReportParts()
{
    reports::BankReportParts p{reportParts()};
    p.report.openAddLine = nullptr;
    p.mergeIniPath = env_.paths.mergeIniFile();
    p.templatePath = env_.paths.programDir + QStringLiteral("/merge.pkr");
    p.initialPagePath = env_.paths.programDir + QStringLiteral("/bankReportInitial.htm");
    p.openDirectory = readParameter(QStringLiteral("directory"));
    p.transferMoney = [this] { openTransfer(); };
    p.openAddLine = [this](const QString& file, std::function<void(const QString&)> tellOpener) {
        frmAddLine dlg(ledger_, instance_, file, ui_, env_.today, std::move(tellOpener));
        if (dlg.Form_Load())
            ui_.runDialog(dlg);
    };
    // Closing: this window takes the changes a child made (or the run ends
    // when it is not shown).
    p.report.closed = [this] {
        if (!shown_.visible)
            return exitProg();
        cmdRefresh_Click();
    };
    p.report.refreshMain = nullptr;
    return p;
}

} // namespace pelkor
