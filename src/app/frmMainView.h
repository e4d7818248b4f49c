// frmMainView: the main window as the user sees it.
//
// It draws what frmMain holds (title, status and file labels, the lines,
// a detail child's totals under the grid) and forwards the user's acts
// (refresh, close) to it. Nothing here decides anything about the ledger.
//
// Every control carries its name from the logic (lblStatus, cmdRefresh,
// msfgMain, ...) as its object name, so a script or a test finds it; a
// screen reader hears the Hebrew the user sees: a button's caption, a
// label's text, a total's caption with its sum as the value.
#pragma once

#include <QList>
#include <QMainWindow>

class QAction;
class QLabel;
class QMenu;
class QPushButton;

namespace pelkor::grid { class GridView; }
namespace pelkor::web { class frmWaitMessageView; }

class QComboBox;

namespace pelkor {

class frmMain;
class AmountLabel;
class CellEditorsView;
class frmFindView;
class DailySummaryView;
class ReconcileView;

class frmMainView : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMainView(frmMain& logic, QWidget* parent = nullptr);

protected:
    void closeEvent(QCloseEvent* e) override;
    // Activating the window gives the grid the focus (unless an editor
    // holds it); so does a click on the file's label.
    void changeEvent(QEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    void mirror();
    void reload();
    void showControls();
    // What a reconciliation shows and takes away.
    void showSession();
    // A child's window: small, centred, the grid with the focus.
    void placeChildWindow();
    // The recent files' entries, from the program's settings.
    void fillRecent();
    void showTotals();
    // The editing: the grid's events and keys to the logic, the editors and
    // the colour box shown as it leaves them.
    void wireEditing();
    void afterEdit();

    frmMain& m_;
    QLabel* status_ = nullptr;
    QLabel* lblWait_ = nullptr;      // "מעדכן נתונים" while the importer works
    QLabel* lblPoints_ = nullptr;
    QLabel* fileName_ = nullptr;
    QLabel* newLines_ = nullptr;
    QWidget* totals_ = nullptr;            // a detail child's totals row
    AmountLabel* lblTotalIncome_ = nullptr;
    AmountLabel* lblTotalExpense_ = nullptr;
    grid::GridView* table_ = nullptr;
    CellEditorsView* editors_ = nullptr;
    frmFindView* find_ = nullptr;
    QComboBox* cmbColors_ = nullptr;
    QRect placed_;   // the last place the outer host gave
    QMenu* mnuFile_ = nullptr;
    QMenu* mnuDefs_ = nullptr;
    QAction* mnuOpenAnotherPelkor_ = nullptr;
    QList<QAction*> fileActions_;          // mnuOpen, mnuNew and the menu mnuRecent
    QMenu* mnuRecent_ = nullptr;           // mnuRecent1.. the files last opened
    QAction* mnuCreateLogFile_ = nullptr;
    QAction* mnuResetBankData_ = nullptr;
    QAction* mnuClose_ = nullptr;
    QMenu* mnuActions_ = nullptr;
    QAction* mnuSetIpusLine_ = nullptr;
    QAction* mnuAddNewLine_ = nullptr;
    QAction* mnuAddLineToFile_ = nullptr;
    QPushButton* cmdAdd_ = nullptr;
    QAction* mnuAddConstantTransactions_ = nullptr;
    QAction* mnuMoveDates_ = nullptr;
    web::frmWaitMessageView* waitNotice_ = nullptr;   // "מחפש התאמות" over a long search
    QAction* mnuTransferMoney_ = nullptr;
    QAction* mnuInvoiceKinds_ = nullptr;
    QMenu* mnuReports_ = nullptr;
    QAction* mnuDailySummary_ = nullptr;
    QList<QAction*> reportActions_;        // the three period reports
    QPushButton* cmdMonthReport_ = nullptr;
    DailySummaryView* daily_ = nullptr;    // beside the grid in progMode 6
    ReconcileView* reconcile_ = nullptr;   // beside the grid in a reconciliation
    QPushButton* cmdBankCoordination_ = nullptr;
    QAction* mnuPerformBankCoordination_ = nullptr;
    QAction* mnuFindMatches_ = nullptr;
    QAction* mnuAutomaticBankCoordination_ = nullptr;
    QPushButton* cmdDel_ = nullptr;
    QPushButton* cmdDelAll_ = nullptr;
    QPushButton* cmdIpus_ = nullptr;
    QPushButton* cmdGoToIpusLine_ = nullptr;
    QPushButton* cmdTzefi_ = nullptr;
    QPushButton* cmdSubtractFromTzefi_ = nullptr;
    QPushButton* cmdMove_ = nullptr;
    QPushButton* cmdOK_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    int shownMode_ = -1;       // the mode the controls were last set for
    bool childPlaced_ = false;
};

} // namespace pelkor
