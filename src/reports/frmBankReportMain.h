// frmBankReportMain: the merged bank report window's logic, "דו"ח איחוד
// בנקים".
//
// A list of ledgers (kept in merge.ini), a range, and a page of one row a
// day with a group of columns per file and one for the total (BankReport),
// with a balance chart of the total and one of each file beneath. Each file
// has a conversion rate, set in frmConvert from the link under its name. A
// click on an amount opens that day's lines of that file in a detail child
// (the window's task pane disabled until the child answers in txtMessage),
// a click on an empty income or expense opens the add-line dialog on that
// file. The three summaries open the period report of a merged instance on
// a temporary file holding every file's lines (MergedFile).
//
// A file that can't take part (missing, held by another program, damaged,
// no ledger, its password not given) is left out with the reason in
// Hebrew, in the list and above the page; the others make the report.
//
// Included files keep their place for rebuilds after a conversion or a
// child's answer: the password is asked only by a build from the buttons,
// and a file left out then stays out until the next such build. Rates are
// kept by the file's place in the list.
//
// It builds in a chain of one-shot timers (Timer1 the list, timerNew the
// page, Timer6 once the page is complete), which tests run at once.
#pragma once

#include "reports/BankReport.h"
#include "reports/MergedFile.h"
#include "reports/frmMonthReportMain.h"

#include <QTimer>

#include <functional>

namespace pelkor::reports {

// What the window asks of its view beyond a report window's calls.
class BankWindowCalls : public ReportWindowCalls {
public:
    // The two charts on screen, drawn anew from the logic's chartData().
    virtual void drawCharts() {}
    // The two hidden charts drawn and saved in folder as
    // separateGraphs.bmp and totalGraph.bmp; false when not written.
    virtual bool saveGraphs(const QString& folder) { (void)folder; return false; }
    // The live page for an export: the charts shown and taken from
    // imageFolder (relative to the page), the body scrolling; the page is
    // put back afterwards. Empty: the page as written is saved.
    virtual QString exportHtml(web::WebView& view, const QString& imageFolder) { (void)view; (void)imageFolder; return {}; }
};

struct BankReportParts {
    ReportParts report;                    // the ledger's trace, the instance, the ui, the children, closed
    QString mergeIniPath;
    QString templatePath;                  // merge.pkr beside the program
    QString initialPagePath;               // bankReportInitial.htm beside the program
    QString openDirectory;                 // where the open dialog starts
    // frmAddLine, modal, on the file given; tellOpener carries its answer.
    std::function<void(const QString& file, std::function<void(const QString&)> tellOpener)> openAddLine;
    // frmTransfer; when unset the button says transfers are not available.
    std::function<void()> transferMoney;
};

struct BankShown {
    QString caption = QStringLiteral("דו\"ח איחוד בנקים");
    QStringList lstFiles;                  // short names, a left-out file with its reason
    QList<int> selected;
    QString txtFrom, txtTo;
    bool cmdShowEnabled = false;
    bool cmdRemoveEnabled = false;
    bool reportCommandsEnabled = false;    // the six commands of a built page
    bool taskPaneEnabled = true;
    bool showIncomeAndExpenseCols = true;
    bool showGraphs = true;
    bool busy = false;
    bool visible = false;
    bool initialPage = false;              // no files: the initial page shows
};

class frmBankReportMain {
public:
    frmBankReportMain(BankReportParts parts, web::WebView& wb, BankWindowCalls& window);
    ~frmBankReportMain();

    void guarded(const QString& proc, const std::function<void()>& fn);
    void setImmediate(bool immediate) { immediate_ = immediate; }
    void setTxtMessageId(std::uint32_t id) { txtMessageId_ = id; }

    // ---- building ------------------------------------------------------
    void Form_Load();
    // The list from merge.ini (missing files warned about and dropped),
    // then the page or the initial page.
    void makeReport();
    void doReport(bool isFirstTime);
    void timerNew_Timer();
    void Timer6_Timer();
    bool isBuilding() const { return building_; }

    // ---- the pages' events ---------------------------------------------
    void cellEventHandler();
    void initialEventHandler() { cmdAdd_Click(); }
    void showConversionDialog(int f);
    void setConversion(int f, double rate);

    // ---- the controls ----------------------------------------------------
    void cmdAdd_Click();
    void cmdRemove_Click();
    void lstFiles_Click(const QList<int>& selected);
    void cmdSaveInIni_Click();
    void cmdShow_Click();
    void txtFrom_Change(const QString& text) { shown_.txtFrom = text; }
    void txtTo_Change(const QString& text) { shown_.txtTo = text; }
    // verb: "ktrep" month, "ktrpw" week, "ktrpd" day.
    void openPeriodReport(const QString& verb);
    void chkShowIncomeAndExpenseCols_Click(bool show);
    void chkShowGraphs_Click(bool show);
    void cmdTransferMoney_Click();
    void cmdExport_Click();
    void cmdPrintPreview_Click();
    void Form_Unload();
    // By name: cmdAdd, cmdRemove, cmdSaveInIni, cmdShow, cmdMonthReport,
    // cmdWeekReport, cmdDayReport, chkShowIncomeAndExpenseCols,
    // chkShowGraphs, cmdTransferMoney, cmdExport, cmdPrintPreview, cmdClose.
    bool clickControl(const QString& name);
    // "refresh", "closed", "nochange"; false for any other text.
    bool txtMessage_Change(const QString& text);

    // ---- state ---------------------------------------------------------
    const BankShown& shown() const { return shown_; }
    const QStringList& fileList() const { return fileList_; }
    const std::vector<double>& fileConvs() const { return fileConvs_; }
    const QStringList& includedFiles() const { return includedFiles_; }
    // "name: reason" of each file left out of the last build.
    const QStringList& leftOut() const { return leftOut_; }
    const BankDays& days() const { return days_; }
    BankChartData chartData() const { return bankChartData(days_); }
    // The short names of the included files, for the charts' hovers.
    const QStringList& includedNames() const { return includedNames_; }
    const QString& reportTitle() const { return reportTitle_; }
    const QString& mergedFile() const { return mergedFile_; }
    QString pagePath() const;
    const QString& lastChildCommand() const { return lastChildCommand_; }
    QString proposedExportName() const { return bankExportName(reportTitle_, days_.fromDate, days_.toDate); }

private:
    void startTimer(QTimer& t, int ms, void (frmBankReportMain::*step)());
    void changed();
    void showInitialPage();
    void refreshList();
    void setTaskPane(bool on);
    bool addFile(const QString& path);
    std::vector<MergedMember> members() const;

    BankReportParts parts_;
    web::WebView& wb_;
    BankWindowCalls& window_;
    BankShown shown_;
    bool immediate_ = false;
    bool building_ = false;
    std::uint32_t txtMessageId_ = 0;
    QStringList fileList_;
    std::vector<double> fileConvs_;        // by list position
    std::vector<char> isIncluded_;         // by list position, from the last build from the buttons
    QStringList reasons_;                  // by list position: why it was left out ("" included)
    std::vector<int> includedPositions_;   // list position of each included file
    QStringList includedFiles_, includedNames_, leftOut_;
    BankDays days_;
    QString reportTitle_;
    QString mergedFile_;
    QString savedScroll_;                  // "" = nothing saved
    QString lastChildCommand_;
    QTimer timer1_, timerNew_, timer6_;
};

} // namespace pelkor::reports
