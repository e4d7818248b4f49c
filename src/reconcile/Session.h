// Session: a reconciliation's life in the main window.
//
// A session takes the file from its last agreed date (the zeroing date) to
// the target date. It starts from the bank button: the screen splits, the
// bank's rows come from the feed (for the demonstration file, or a file not
// yet bound to a bank, through the bank menu page), the opening proof
// compares the balances at the zeroing date, and when they agree the lines
// are copied to the working table (tempPelkor) on which every editing
// operation then works. The user pairs rows (RowLinks, Coordination); the
// button again finishes: loose ends through dialogs, the closing proof at
// the target date, and then the working table replaces the table of lines
// in one transaction and the zeroing line moves on. Leaving any other way
// leaves the table of lines as it was.
//
// The visual form (the menu's check mark off) shows the bank menu page
// beside the grid and pairs nothing.
//
// What the window shows of a session is in SessionShown; the view mirrors
// it. What only the window can do (reconnect, reload, move to the zeroing
// line, move the zeroing mark, focus a grid, tell the outer host) comes in
// as functions.
//
// Not here: the marks and pairs (RowLinks), pairing (Coordination), the
// feed and binding (BankFeed, AccountBinding).
#pragma once

#include "reconcile/AccountBinding.h"
#include "reconcile/BankFeed.h"
#include "reconcile/BankGrid.h"
#include "reconcile/Coordination.h"
#include "reconcile/Importer.h"
#include "reconcile/MatchFinder.h"
#include "reconcile/RowLinks.h"

#include <QDate>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>

class QLockFile;

namespace pelkor {
class Messages;
struct Instance;
struct MainGrid;
struct OpenLedger;
struct Shown;
class WindowCalls;
namespace ui { class Ui; }
namespace web { class WebView; }
}

namespace pelkor::reconcile {

// What the window shows of a session besides the two grids.
struct SessionShown {
    bool split = false;                   // the bank grid or the bank page beside the main grid
    bool bankGridVisible = false;         // msfgBank
    bool wbMainVisible = false;           // the bank menu page
    bool lblBankInfoVisible = false;
    QString lblBankInfo;
    // The session's own controls.
    bool cmdCoordinate = false;
    bool cmdExitCoordination = false;
    bool chkShowCoordinatedRows = false;
    bool chkShowCoordinatedRowsValue = true;
    bool cmdSetTargetDate = false;
    bool cmdSpecialFind = false;
    bool cmdNext = false;                 // cmdNext and cmdPrev: a partner search has a hit
    bool mnuFindMatches = false;
    bool cmdGoToAutomaticCoordination = false;  // the file and the bank disagree
    bool frmButton = false;
    bool frmButtonShrunk = false;         // cmdClose hidden, the invitation folded
    QString lblParting;                   // the disagreement screen: where the balances part
    // The ledger's controls the session takes away.
    bool ledgerButtonsHidden = false;     // cmdIpus, cmdSubtractFromTzefi, cmdTzefi, cmdClose; mnuSetIpusLine, mnuClose off
    bool reportsHidden = false;           // cmdReport, cmdMonthReport, mnuReports
    bool mnuOpenAnotherPelkorEnabled = true;
    bool mnuMoveDatesEnabled = true;
    bool cmdBankCoordinationEnabled = true;
    // "התאמת בנק"; in a session "השלם התאמה" (automatic) or "יציאה" (visual).
    QString mnuPerformBankCoordinationCaption = QStringLiteral("התאמת בנק");
    QString cmdBankCoordinationCaption = QStringLiteral("התאמת בנק");
    bool endCoordinationPicture = false;
    // While the importer works: "מעדכן נתונים" and its points, which grow
    // with each second of the wait.
    bool lblWait = false;
    QString lblPoints;
    // The sums of the marked rows under each grid.
    MarkSummary mainMarks, bankMarks;
};

struct SessionParts {
    OpenLedger& ledger;
    Instance& instance;
    MainGrid& main;
    Shown& shown;
    ui::Ui& ui;
    WindowCalls& window;
    std::function<web::WebView&()> wbMain;   // the bank menu page beside the grid
    QString tempPath;                     // ends with a separator
    QString programDir;
    QDate startDay;                       // the day the program started
    std::function<void()> closeCn, reopenCon;
    std::function<void()> goToIpusLine;   // cmdGoToIpusLine_Click
    std::function<void()> updateIpus;     // the mark to the last line on or before ipusDate
    std::function<void(bool mainGrid)> focusGrid;
    std::function<void(const QString& text)> sendToExcel;
    std::function<void()> playAgreed;     // the sound of an agreed proof
    // The statement importer; null: none here (the bank menu page serves).
    Importer* importer = nullptr;
    std::function<web::WebView&()> wbMatches;   // the page of proposed pairs
    // frmMessages: the mailbox the importer answers in.
    Messages* messages = nullptr;
    // Runs a timer's work as the window runs every entry from the event
    // loop (a failure told, the program kept up); null: run it plainly.
    std::function<void(const QString& proc, const std::function<void()>& fn)> guarded;
    // Lets pending events run, the user's excepted (a long search).
    std::function<void()> letEventsRun;
};

// The working table replaces the table of lines, the old one kept as
// bckpPelkor, all in one transaction: a crash at any instant leaves the
// old table of lines whole or the new one whole.
void swapWorkingTable(OpenLedger& led);

class Session {
public:
    explicit Session(SessionParts parts);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    SessionShown shown;
    BankFeed feed;
    BankGrid bank;
    RowLinks links;
    Coordination coord;
    MatchFinder finder;
    bool balancesMatch = false;
    bool mustExitAfterCompletingCoordination = false;
    bool chkSimulate = false;             // the feed as it lies, without a download
    double balanceDiff = 0;
    int iBankRowOnIpus = -1;
    // Tells the window that the shown state changed.
    std::function<void()> shownChanged;

    // ---- the life of a session ------------------------------------------
    // The bank button and its menu entry: starts a session, or finishes it.
    void cmdBankCoordination_Click();
    void switchToSplitScreen();
    void doSplitScreen();
    void switchToFullScreen();
    void switchReallyToFullScreen();
    // Leaves without finishing; the table of lines stays as it was.
    void cmdExitCoordination_Click();
    void cmdSetTargetDate_Click();
    void chkShowCoordinatedRows_Click(bool show);
    void cmdGoToAutomaticCoordination_Click();
    // The window is closing during a session: false to keep it open (the
    // user cancelled, or chose to finish first; the run then ends after
    // the swap).
    bool Form_QueryUnload();
    // The bank menu page answered with a bank's index.
    void clickEventHandler();
    // A session is under way (the screen is split).
    bool active() const { return shown.split; }
    bool pairing() const { return balancesMatch; }

    // ---- the bank's rows and the proofs ------------------------------------
    void processDownloadedData();
    // The opening proof, at the zeroing date.
    void compareBalances();
    // 1 agreed and open; 2 differ on the day; 3 no bank row on or before it;
    // 4 the bank's last row before it is earlier; 5 agreed, nothing new.
    int reallyCompareBalances(const QDate& tempIpusDate);
    // The ways out of a disagreement, chosen on the balance dialog.
    // optPrevDay: the zeroing line back to the last day, within ten, on
    // which both balances agreed; false when there was none.
    bool optPrevDay();
    void optBalancingLine();
    void optNewPelkor();
    // The file is its opening line alone ("יתרה התחלתית").
    bool isNewPelkorFile() const;
    // Where the running balances part, up to the bank's row lastRow; empty
    // when they agree or nothing can be compared.
    QString partingHint(int lastRow) const;
    // The closing proof and the swap.
    void compareFinalBalances();
    // A fresh search for pairs, confirmed rows hidden first.
    void mnuFindMatches_Click();
    void createTempTable();

    // After every load of the lines while the screen is split.
    void afterLoad(bool isRefresh);

    // ---- the statement importer (SessionDownload.cpp) ----------------------
    // Starts the importer for the bank chosen and waits for its answer.
    void callDataDownloader();
    // The wait's tick (every second): the answer, the importer's end, the limit.
    void timerMessageChecker_Timer();
    // Brings the importer's window forward, once it is found (every 1.5 s).
    void timerBankDataDownloaderWindowFinder_Timer();
    // The download failed: told, and the session goes on in the visual form;
    // the file's own choice of form is kept. mustCloseDownloader closes the
    // importer's window; reason, when given, says what went wrong.
    void handleUpdateFailure(bool mustCloseDownloader, const QString& reason = {});
    // At exit: the importer's window goes, whether or not a download runs.
    void closeDownloader();
    bool downloading() const { return downloading_; }
    int nSeconds = 0;                     // seconds waited for this download
    int downloadLimitSeconds = 1700;      // then the wait ends as a failure

    // A session of this file that ended without finishing (its process
    // was killed) left its working table: told once at the next start,
    // with how to bring the statement in again, and cleared. Nothing when
    // another run of this file holds a session now.
    void noticeInterruptedSession();
    // The working tables may be dropped (no other run's session holds them).
    bool mayDropWorkingTables();

private:
    void refreshSummaries();
    void changed();
    void showDisagreement(int lastRow);
    void openPairing(int lastRow);
    void positionBankGrid(int row);
    void finalSwap();
    bool rereadFeedIntoGrid();
    void navigateBankMenu(bool automatic);
    void downloadEnded();
    void runGuarded(const QString& proc, const std::function<void()>& fn);
    // The lock that tells other runs of this file that a session holds its
    // working tables; taken when the working table is made.
    QString sessionLockPath() const;
    void holdSessionLock();

    SessionParts p_;
    bool downloading_ = false;
    QTimer timerMessageChecker_, timerWindowFinder_;
    std::unique_ptr<QLockFile> sessionLock_;
};

} // namespace pelkor::reconcile
