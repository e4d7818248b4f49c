// Controls: which menus and buttons the main window shows in each kind of
// instance, and the handlers of the menu entries that are the frame's own.
//
// The table follows the instance: a working or repair run has the full
// menus; a child (a detail selection, new lines) has none of them and a
// small window; a new-line child has its OK and Cancel; a host-driven run
// keeps its actions and settings to the host. The view builds its menus
// and buttons from this and shows an entry only where its handler exists.
#pragma once

#include <QDate>
#include <QString>

#include <functional>

namespace pelkor {

namespace ui { class Ui; }
class Trace;
class WindowCalls;
struct Instance;
struct OpenLedger;
struct Shown;

struct ShownControls {
    // Menus.
    bool mnuFile = false;
    bool mnuHelp = false;
    bool mnuActions = false;
    bool mnuDefs = false;
    bool mnuReports = false;
    bool mnuOpenAnotherPelkor = false;
    bool mnuOpen = false;                  // with mnuNew and mnuRecent: another ledger in place of this one
    bool mnuResetBankData = false;
    bool mnuPerformBankCoordination = false;
    bool mnuSetIpusLine = false;           // under mnuActions
    bool mnuAddNewLine = false;            // under mnuActions
    bool mnuAddLineToFile = false;         // under mnuActions
    bool mnuAddConstantTransactions = false;  // under mnuActions
    bool mnuMoveDates = false;             // under mnuActions; shown on the demonstration file alone
    bool mnuTransferMoney = false;         // under mnuActions
    bool mnuInvoiceKinds = false;          // under mnuDefs
    bool mnuOpenMonthKindReport = false;   // under mnuReports, the three period reports
    bool mnuOpenWeekKindReport = false;
    bool mnuOpenDayKindReport = false;
    QString mnuCloseCaption;               // "יציאה" in every mode but reconciliation
    QString mnuPerformBankCoordinationCaption;
    // Buttons.
    bool cmdOK = false;
    bool cmdCancel = false;
    bool cmdAdd = false;
    bool cmdDel = false;
    bool cmdDelAll = false;
    bool cmdGoToIpusLine = false;
    bool cmdIpus = false;
    bool cmdReport = false;
    bool cmdMonthReport = false;           // the monthly report by kind and type
    bool cmdTzefi = false;
    bool cmdSubtractFromTzefi = false;
    bool cmdMove = false;                  // the selected lines to another file
    bool cmdBankCoordination = false;
    // Timer4: a child's window is small (225 pixels high) and centred,
    // with the focus in the grid.
    bool childWindow = false;
};

ShownControls shownControls(const Instance& instance);

// The period type ("m", "w", "d") a period report control opens; "" for
// any other control.
QString periodOfControl(const QString& name);

// The captions of the ledger's controls, by control name (cmdAdd, cmdDel,
// cmdDelAll, cmdIpus, cmdGoToIpusLine, mnuSetIpusLine, mnuAddNewLine,
// mnuAddLineToFile, mnuAddConstantTransactions, cmdTzefi,
// cmdSubtractFromTzefi, the period reports' mnuOpenMonthKindReport,
// mnuOpenWeekKindReport, mnuOpenDayKindReport and cmdMonthReport).
QString controlCaption(const QString& name);

// The window height of a child instance, in pixels.
inline constexpr int childWindowHeight = 225;

// mnuCreateLogFile: the trace on or off; the setting is written at exit.
void mnuCreateLogFile_Click(Shown& shown, Trace& trace, WindowCalls& window);
// mnuResetBankData: the file is bound to no bank account any more.
void mnuResetBankData_Click(OpenLedger& ledger, ui::Ui& ui, WindowCalls& window);
// mnuAddLineToFile: a file chosen, frmAddLine adds one line to it;
// tellOpener carries its "closed" to this window's message box.
void mnuAddLineToFile_Click(OpenLedger& ledger, const Instance& instance, ui::Ui& ui, QDate today,
                            const std::function<void(const QString&)>& tellOpener);

} // namespace pelkor
