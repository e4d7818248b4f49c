// frmMain: the main window's logic and the owner of the state the system
// shares.
//
// It starts the instance (Form_Load, initializeForm, the branch on the
// command line), opens and closes the connections (OpenCon, reopenCon,
// closeCn), runs the repair run (Timer2, showOpenFileDialog, Timer3) and
// ends the instance in order (Form_QueryUnload, exitProg). The load itself
// is file/Loader's (openDB); the settings files, the trace and the
// formatters are frame's. frmMain never touches a widget: its view
// (frmMainView) reads the state below and listens to changed().
//
// Everything the platform gives is passed in (Environment), so a test can
// run a whole start on a temporary folder with scripted dialogs.
#pragma once

#include "file/Display.h"
#include "file/Lines.h"
#include "seams/grid/GridModel.h"
#include "frame/CommandLine.h"
#include "frame/ExecuteSql.h"
#include "frame/Trace.h"
#include "seams/platform/Paths.h"
#include "seams/store/Connection.h"

#include <QDate>
#include <QObject>
#include <QRect>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace pelkor::ui { class Ui; }

namespace pelkor {

class Messages;
class Children;
class Bus;

class frmMain : public QObject {
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
        // Ends the process (after exitProg, or at once). The program quits
        // its event loop; a test records the code.
        std::function<void(int code)> endProcess;
    };

    explicit frmMain(Environment env, QObject* parent = nullptr);
    ~frmMain() override;

    // ---- start and end ------------------------------------------------
    // Form_Load and initializeForm: reads the settings, branches on the
    // command line. The empty line starts Timer2; a working run opens its
    // file at once.
    void Form_Load();
    // Asks to close: false when the window refuses (a load is running).
    bool Form_QueryUnload();
    void exitProg();
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
    // The message checker's tick (400 ms while a new-line child works).
    void timerCoordinationMessageChecker_Timer();
    // Starts a new-line child of type t on this file (verb line "new<t> ...").
    void openNewDialog(int type);
    void handleZeroLines();

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

    // ---- the shared state ---------------------------------------------
    Environment env;
    ui::Ui& ui;
    Trace trace;
    store::Connection cn;
    SqlRunner sql{cn, trace};

    QString theCommand;
    StartCommand command;
    int progMode = 2;
    int newLineDialogType = -1;
    QString userPassword;
    bool isFromKelvanto = false;
    bool isMerged = false;
    QString filePath;
    QString tempPath;
    QString logDirectory;
    int nDigitsForConfirmComparison = 4;
    int maxDayDiffForMatch = 30;
    QDate targetDate;
    bool isAutomatic = false;
    QString linesTable = QStringLiteral("pelkor");
    bool isCnOpen = false;
    bool simulateVisible = false;    // chkSimulate shows when core67890 lies beside the program
    QString feedPath;                // the bank feed file, once one is read

    // From the command line of a child.
    int detailKind = -1;
    QDate fromDate, toDate;
    double conv = 0;
    QString detailKindText;
    int detailTypeIndex = -1;
    std::uint32_t txtMessageId = 0;   // this window's own txtMessage
    std::uint32_t parentTxtMessage = 0, parentMessagesWindow = 0, hostTextBox1 = 0, hostTextBox2 = 0;

    // What a load fills (file/Loader).
    Catalogue catalogue;
    std::vector<Line> lines;
    std::vector<std::uint8_t> alternatingIndexes;
    std::vector<int> mergedBankIndexes;
    QStringList bankFileNames;
    std::vector<double> convs;
    QDate ipusDate;
    QString ipusID;
    int iRowAboveRed = -1;
    int iBankRowAboveRed = -1;
    QString theID;
    int theOffset = 0;
    double theCredit = 0;
    int nDays = 90;
    QString theInvoiceCategs;
    int iBank = -1;
    QString accountNum = QStringLiteral("(none)");
    bool isSimulate = false;
    bool openDBisBusy = false;
    bool zeeFound = false;
    QString IDWithFoundZee;

    // The main grid and what the cursor left behind in it.
    grid::GridModel msfgMain;
    CursorMarks msfgMainMarks;
    long long balancingLineID = -1;
    QString lblTotalIncome, lblTotalExpense;

    // What the window shows (the view mirrors these).
    QString caption;                 // the window's title
    QString lblStatus;
    QString lblFileName;
    QString lblNewLines;
    bool visible = false;
    bool enabled = true;
    bool gridVisible = true;
    bool frameButtonsEnabled = true;
    bool mnuCreateLogFileChecked = false;
    bool mnuAutomaticBankCoordinationChecked = false;
    bool mnuMoveDatesVisible = false;
    int row = 1;                     // msfgMain.Row
    int topRow = 1;                  // msfgMain.TopRow
    int visibleRows = 20;            // how many rows the view shows (set by the view)
    QRect ltrb;                      // where the outer host placed the window; null: not placed
    int rows() const { return int(lines.size()) + 1; }

    bool ended() const { return ended_; }
    int exitCode() const { return exitCode_; }

signals:
    // Any of the shown state changed (labels, title, visibility, enabled).
    void changed();
    // A load has filled lines anew.
    void loaded();

private:
    void initializeForm();
    void readIni();
    void writeIni();
    void endProcess(int code);
    void setStatus(const QString& s);

    std::unique_ptr<Messages> ownMessages_;
    Messages* messages_ = nullptr;
    QTimer timer2_, timer3_, checker_;
    bool ended_ = false;
    bool exiting_ = false;
    int exitCode_ = 0;
};

} // namespace pelkor
