// frmMain: the main window's logic; it owns the parts the rooms share and
// wires them together.
//
// It starts the instance (Form_Load, initializeForm, the branch on the
// command line), opens and closes the connection (OpenCon, reopenCon,
// closeCn), runs the repair run (Timer2, showOpenFileDialog, Timer3), hears
// other processes (txtMessage, the new-line child's answer) and ends the
// instance in order (Form_QueryUnload, exitProg). The load is file/'s
// (openDB); the rooms get the parts they need (the open ledger, the
// instance, the main grid, the shown state) and ask the window for the
// rest through WindowCalls, which frmMain implements. frmMain never
// touches a widget: its view (frmMainView) reads the parts and listens to
// changed().
//
// Everything the platform gives is passed in (Environment), so a test can
// run a whole start on a temporary folder with scripted dialogs.
#pragma once

#include "base/BusyFile.h"
#include "base/Instance.h"
#include "base/KbLayout.h"
#include "base/Shown.h"
#include "base/Trace.h"
#include "base/WindowCalls.h"
#include "charts/DailySummary.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "ledger/EditState.h"
#include "ledger/ConstantTransactionsDialog.h"
#include "ledger/LedgerEditor.h"
#include "ledger/Find.h"
#include "ledger/Tzefi.h"
#include "reconcile/Session.h"
#include "seams/platform/KeyboardLayouts.h"
#include "seams/platform/Paths.h"

#include <QDate>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>

namespace pelkor::ui { class Ui; }
namespace pelkor::reports {
struct ReportParts;
struct BankReportParts;
}
namespace pelkor::web { class WebView; }

namespace pelkor {

class Messages;
class Children;
class Bus;
struct LoadParts;

class frmMain : public QObject, public WindowCalls {
    Q_OBJECT
public:
    struct Environment {
        ui::Ui* ui = nullptr;
        platform::Paths paths;
        QDate today;
        QStringList arguments;            // the command line, program name excluded
        Messages* messages = nullptr;     // frmMessages; a local one when null
        Children* children = nullptr;     // child instances; none can start when null
        Bus* bus = nullptr;               // texts to other processes; none go when null
        // The desktop's keyboard layouts; none are switched when null.
        platform::KeyboardLayouts* layouts = nullptr;
        // Ends the process (after exitProg, or at once). The program quits
        // its event loop; a test records the code.
        std::function<void(int code)> endProcess;
        // Starts another main instance of the program with these arguments,
        // maximised; false when it could not start. None can start when null.
        std::function<bool(const QStringList& arguments)> startInstance;
        // The statement importer a reconciliation starts; none when null
        // (the bank menu page and the demonstration feed still serve).
        reconcile::Importer* importer = nullptr;
    };

    explicit frmMain(Environment env, QObject* parent = nullptr);
    ~frmMain() override;

    // ---- the parts ----------------------------------------------------
    Instance& instance() { return instance_; }
    const QString& programDir() const { return env_.paths.programDir; }
    const Instance& instance() const { return instance_; }
    OpenLedger& ledger() { return ledger_; }
    const OpenLedger& ledger() const { return ledger_; }
    MainGrid& mainGrid() { return grid_; }
    const MainGrid& mainGrid() const { return grid_; }
    Shown& shown() { return shown_; }
    const Shown& shown() const { return shown_; }
    ui::Ui& ui() { return ui_; }
    Trace& trace() { return trace_; }
    EditState& editState() { return edit_; }
    LedgerEditor& editor() { return editor_; }
    Finder& finder() { return finder_; }
    FindState& findState() { return find_; }
    charts::DailySummary& daily() { return daily_; }
    reconcile::Session& session() { return *session_; }
    Tzefi& tzefi() { return tzefi_; }

    // ---- start and end ------------------------------------------------
    // Form_Load and initializeForm: reads the settings, branches on the
    // command line. The empty line starts Timer2; a working run opens its
    // file at once.
    void Form_Load();
    // Asks to close: false when the window refuses (a load is running).
    bool Form_QueryUnload();
    void exitProg() override;
    void cmdClose_Click();
    // F5 and the refresh button: reload through openDB, landing on the same line.
    void cmdRefresh_Click();

    // ---- connections ---------------------------------------------------
    // Sets filePath by mode, the title and lblFileName, and opens cn.
    // False (with the user told) when the file cannot be opened as a ledger.
    bool OpenCon();
    bool reopenCon();
    void closeCn();

    // The repair run's steps, public so a view or a test can drive them.
    void showOpenFileDialog();
    void Timer3_Timer();
    // The message checker's tick while a new-line child works.
    void timerCoordinationMessageChecker_Timer();
    // Starts a new-line child of type t on this file (verb line "new<t> ...").
    void openNewDialog(NewLineDialogType type) override;
    void handleZeroLines() override;

    // ---- the grid and the frame's menu entries -------------------------
    // The cursor entered a cell of the main grid (the grid model's Row and
    // Col are already there).
    void msfgMain_EnterCell();
    void mnuCreateLogFile_Click();
    // The daily summary beside the main grid (progMode 6).
    void mnuDailySummary_Click() { daily_.createDailySummary(false); }
    void mnuResetBankData_Click();
    void mnuAddLineToFile_Click();
    // The recurring-transaction dialog; a written series reloads the file.
    void mnuAddConstantTransactions_Click();
    // New lines, deleting lines and the zeroing line: the ledger room's (LedgerEditor),
    // reached from the buttons, the menus and the texts of other processes.
    void cmdAdd_Click() { editor_.cmdAdd_Click(); }
    void cmdDel_Click() { editor_.cmdDel_Click(); }
    void cmdDelAll_Click() { editor_.cmdDelAll_Click(); }
    void cmdIpus_Click() { editor_.cmdIpus_Click(); }
    void cmdGoToIpusLine_Click() { editor_.cmdGoToIpusLine_Click(); }
    // Forecast lines (frmMainForecast.cpp): the forecast dialog and the
    // subtraction from a forecast, on the current line.
    void cmdTzefi_Click();
    void cmdSubtractFromTzefi_Click();
    // The Delete key's release on the grid (key code 46, no shift).
    void msfgMain_KeyUp() { editor_.delNow(false); }

    // ---- a new-line child's buttons ----------------------------------
    // OK: every line needs a date; bad sums of a bad-lines child become 0;
    // the parent hears "pelkor OK". Cancel: the parent hears "pelkor CLOSED".
    void cmdOK_Click();
    void cmdCancel_Click();

    // ---- texts from other processes -------------------------------------
    // What txtMessage does with a text another process (or the outer host)
    // put into it. Returns false for a text that means nothing here, and for
    // one whose handler this version does not have yet (traced).
    bool txtMessage_Change(const QString& text);
    // The name of the handler a text runs ("cmdRefresh_Click", "setLTRB"),
    // whether this version has it or not; empty for a text that runs none.
    static QString txtMessageHandler(const QString& text);
    // The outer host places the window: "L T R B" in pixels.
    void setLTRB(const QString& ltrb);
    // A control of this window clicked by name (scripted runs, the host).
    // False when the window has no such control in this mode.
    bool clickControl(const QString& name);
    // Tells the scripted dialogs (or nobody) that the window is ready, as
    // "<caption> | mode <progMode>", then " type <t>" for a new-line child
    // and " | <lblFileName>" (the selection) for a detail child.
    void announceReady();
    // The text a child sends its parent, and to the outer host.
    void sendToParent(const QString& text);
    void sendToExcel(const QString& text);

    // Runs fn; a failure nobody expected is told to the user in Hebrew and
    // traced, and the program stays up. Every entry from the event loop
    // (start, timers, the view's handlers) goes through here.
    void guarded(const QString& proc, const std::function<void()>& fn);

    // Runs the event loop until pred is false or the process has ended.
    void waitWhile(const std::function<bool()>& pred);

    // Reads a value of PelkorParams.mdb in the data directory ("" when
    // the file or key is missing).
    QString readParameter(const QString& key);

    // ---- reconciliation (frmMainReconcile.cpp) ----------------------------
    // The bank button and its menu entry: a session starts, or finishes.
    void cmdBankCoordination_Click();
    void cmdCoordinate_Click();
    void cmdExitCoordination_Click();
    void cmdSetTargetDate_Click();
    void cmdGoToAutomaticCoordination_Click();
    void chkShowCoordinatedRows_Click(bool show);
    void mnuAutomaticBankCoordination_Click();
    // A click in the mark column of either grid, the row being current.
    void msfgMainMarkClicked();
    void msfgBankMarkClicked();
    void msfgBank_EnterCell();
    // The search for a partner: the current cell's text in the other grid,
    // in the same column, below its red line, skipping paired rows; then
    // the next and the previous hit.
    void cmdSpecialFind_Click();
    void cmdNext_Click();
    void cmdPrev_Click();
    // Which grid has the cursor, as the view saw the focus go.
    void setBankGridActive(bool active) { bankGridActive_ = active; }
    // The page the bank menu shows in beside the grid (wbMain); until a
    // view gives one, a page host without a window serves.
    void setBankPage(web::WebView* page) { bankPage_ = page; }
    // The page of proposed pairs (frmMatches' view), given by the view.
    void setMatchesPage(web::WebView* page) { matchesPage_ = page; }
    // "מצא התאמות": the proposed pairs in frmMatches; its buttons.
    void mnuFindMatches_Click();
    void frmMatches_cmdOK_Click();
    void frmMatches_cmdCancel_Click();
    void frmMatches_chkShowAll_Click(bool on);
    void frmMatches_cmdRefreshMatches_Click();
    // The invitation to let the pairs be found: cmdGo searches, cmdClose
    // only folds the invitation away.
    void frmButton_cmdGo_Click();
    void frmButton_cmdClose_Click();
    // The match finder's settings.
    void mnuMaxDayDiffForMatch_Click();
    void mnuNDigitsForConfirmComparison_Click();
    // ---- the File menu and the start's choice (frmMainFiles.cpp) ------
    // Open: a ledger chosen in the open dialog, or a new one made under a
    // name typed there. New: a new ledger named in a save dialog. Recent:
    // the file at place n (from 1) of recentFiles(). Each starts a working
    // run on its file, as a start on it does, and this window closes.
    void mnuOpen_Click();
    void mnuNew_Click();
    void mnuRecent_Click(int n);
    // The files working runs opened, the last first (at most maxRecentFiles),
    // kept in the program's own settings (recentFilesIni()).
    QStringList recentFiles() const;
    static constexpr int maxRecentFiles = 4;
    QString recentFilesIni() const;

    // Another process wrote the file: an idle working run reloads, its
    // cursor kept on its line (timerWatchFile, every half second). A run
    // with an editor open or a new line pending reloads once that is over;
    // one that waits for its child or holds a reconciliation reads the
    // changes at its own points.
    void timerWatchFile_Timer();

    // ---- period reports (frmMainReports.cpp) ---------------------------
    // makePeriodReport: the main window disabled, a report window of the
    // period type ("m", "w", "d") asked of the view.
    void makePeriodReport(const QString& sPeriod);
    // A merged instance's report, of the period its verb names.
    void openMergedReport();
    // The instance is a report alone (a merged one): its main window is
    // never shown.
    bool isReportOnly() const { return instance_.command.verb == StartCommand::Verb::Merged; }
    // The parts a report window works on: this file, the ui, the children.
    reports::ReportParts reportParts();
    // A report window closed: the main window enabled and refreshed, or the run ended.
    void periodReportClosed();
    // mnuCompare: progMode modeCompare and the comparison window asked of
    // the view, modal; compareParts are the parts it works on, and
    // compareClosed gives the main window back.
    void mnuCompare_Click();
    reports::ReportParts compareParts();
    void compareClosed();
    // mnuOpenBankReport (cmdReport_Click): the merged bank report window
    // asked of the view, beside this one; bankReportParts are its parts.
    void mnuOpenBankReport_Click();
    reports::BankReportParts bankReportParts();

    // ---- moving lines and dates, invoice kinds (frmMainTransfer.cpp) ----
    // cmdMove: frmMoveOrCopy over the grid's selection, then the grid's focus.
    void cmdMove_Click();
    // mnuMoveDates: the demonstration file and its feed moved by months.
    void mnuMoveDates_Click();
    // mnuInvoiceKinds: frmInvoiceKinds; a changed list is written to the file.
    void mnuInvoiceKinds_Click();
    // Finishes or undoes a move of lines, or a transfer's pair of lines, a
    // killed process left in this file (the note it keeps), before the
    // file is read.
    void finishPendingMoves();
    // openTransfer: frmTransfer, modal, with this file offered as the
    // start; a line written into this file reloads it. The merged report's
    // cmdTransferMoney and mnuTransferMoney call it.
    void openTransfer();
    void mnuTransferMoney_Click() { openTransfer(); }

    // WindowCalls.
    void shownChanged() override { emit changed(); }
    void linesLoaded() override;
    void refresh() override { cmdRefresh_Click(); }
    void keyboardLanguage(bool hebrew) override;
    void showFind() override;

    bool ended() const { return ended_; }
    int exitCode() const { return exitCode_; }

signals:
    // Any of the shown state changed (labels, title, visibility, enabled).
    void changed();
    // A load has filled lines anew.
    void loaded();
    // The find window is to show over the grid (its state is findState()).
    void findRequested();
    // A period report window is to open (makePeriodReport).
    void periodReportRequested(const QString& sPeriod);
    // The comparison window is to open (mnuCompare_Click).
    void compareRequested();
    // The merged bank report window is to open (mnuOpenBankReport_Click).
    void bankReportRequested();

private:
    ProgMode modeBeforeCompare_ = modeOpenedFile;
    void initializeForm();
    // The start of a working run with no current file: a ledger chosen in
    // the open dialog or made under a name typed there; empty when the
    // user cancelled (frmMainFiles.cpp).
    QString chooseLedger();
    // A new ledger at path, after the user said yes; false (told) otherwise.
    bool makeLedgerAt(const QString& path, bool ask);
    // A working run on file in a new instance, and this one closes.
    void switchToFile(const QString& file);
    void rememberRecent(const QString& file);
    // Baseline of the file's data version on the connection now open.
    void watchFileAgain();
    void takeCommand();
    void openAndLoad(bool fromDialog);
    void readIni();
    void writeIni();
    void endProcess(int code);
    void setStatus(const QString& s);
    LoadParts loadParts();
    // The parts the ledger room works on.
    EditParts editParts()
    {
        return EditParts{ledger_, instance_, grid_, shown_, ui_, *this, edit_, env_.today,
                         [this] { reloadLanding(); }, [this] { cmdOK_Click(); }};
    }
    charts::DailySummaryParts dailyParts();
    reconcile::SessionParts sessionParts();
    // A partner search ends once the cursor of its grid leaves the hit.
    void endPartnerSearchAway(const grid::GridModel& g, bool isMain);
    // A new-line child of the reconciliation answered (types 0 to 2).
    bool coordinationDialogAnswered(bool ok);
    // In the daily summary of a run not started for it: back to the full
    // grid (true), where a close would otherwise end the run.
    bool leftDailySummary();
    // Waits the given milliseconds with the event loop running.
    void pause(int ms);
    // A child whose parent has gone closes itself: its work is in the file
    // already (every edit is written at once).
    void watchParent();
    // Reloads through openDB without closing the connection, landing where
    // grid_.theID and grid_.theOffset say (the editing room's reload).
    void reloadLanding();

    Environment env_;
    ui::Ui& ui_;
    Trace trace_;
    Instance instance_;
    OpenLedger ledger_{trace_};
    MainGrid grid_;
    Shown shown_;
    BusyFile busy_{ui_, shown_, *this, trace_};
    EditState edit_;
    LedgerEditor editor_{editParts()};
    FindState find_;
    ConstantLasts constantLasts_;
    Finder finder_{editParts(), editor_, find_};
    Tzefi tzefi_{editParts(), editor_, [this] {
                     closeCn();
                     reopenCon();
                 }};
    charts::DailySummary daily_{dailyParts()};
    web::WebView* bankPage_ = nullptr;
    web::WebView* matchesPage_ = nullptr;
    bool bankGridActive_ = false;
    std::unique_ptr<web::WebView> noBankPage_;
    std::unique_ptr<reconcile::Session> session_;

    std::unique_ptr<platform::KeyboardLayouts> noLayouts_;
    std::unique_ptr<KbLayout> kb_;
    std::unique_ptr<Messages> ownMessages_;
    Messages* messages_ = nullptr;
    QTimer timer2_, timer3_, checker_, parentWatch_, watchFile_;
    long long seenDataVersion_ = -1;
    bool fileChangedOutside_ = false;
    int handlerDepth_ = 0;   // handlers running (a modal wait inside one runs the loop)
    bool ended_ = false;
    bool exiting_ = false;
    int exitCode_ = 0;
};

} // namespace pelkor
