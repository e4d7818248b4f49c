#include "reconcile/Session.h"

#include "base/Format.h"
#include "base/Instance.h"
#include "base/Shown.h"
#include "base/Titles.h"
#include "base/Trace.h"
#include "base/WindowCalls.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "file/Schema.h"
#include "file/Upgrades.h"
#include "reconcile/frmBalance.h"
#include "reconcile/frmSetTargetDate.h"
#include "seams/store/StoreError.h"
#include "seams/ui/Ui.h"
#include "seams/web/WebView.h"

#include <QLockFile>

#include <algorithm>
#include <cmath>

namespace pelkor::reconcile {

namespace {

const QString exitWord = QStringLiteral("יציאה");
const QString bankWord = QStringLiteral("התאמת בנק");
const QString saveAndFinish = QStringLiteral("?האם ברצונך לשמור שינויים ולהשלים את ההתאמה");

void call(const std::function<void()>& f)
{
    if (f)
        f();
}

} // namespace

Session::Session(SessionParts parts)
    : links(LinkParts{parts.ledger, parts.instance, parts.main, bank, parts.ui}),
      coord(CoordinationParts{LinkParts{parts.ledger, parts.instance, parts.main, bank, parts.ui}, links, parts.window,
                              parts.closeCn, parts.reopenCon,
                              [this](bool enabled) {
                                  p_.shown.enabled = enabled;
                                  changed();
                              },
                              [this] { compareFinalBalances(); }, parts.focusGrid}),
      finder(MatchParts{parts.ledger, parts.main, bank, links, coord, parts.ui, parts.wbMatches, parts.tempPath,
                        parts.instance.logDirectory.isEmpty() ? parts.tempPath : parts.instance.logDirectory + QLatin1Char('/'),
                        parts.letEventsRun}),
      p_(std::move(parts))
{
    links.summariesChanged = [this] { refreshSummaries(); };
    // The importer's answer is read every second; its window is looked for
    // every second and a half until it is brought forward.
    timerMessageChecker_.setInterval(1000);
    QObject::connect(&timerMessageChecker_, &QTimer::timeout, [this] {
        runGuarded(QStringLiteral("timerMessageChecker"), [this] { timerMessageChecker_Timer(); });
    });
    timerWindowFinder_.setInterval(1500);
    QObject::connect(&timerWindowFinder_, &QTimer::timeout, [this] {
        runGuarded(QStringLiteral("timerBankDataDownloaderWindowFinder"), [this] { timerBankDataDownloaderWindowFinder_Timer(); });
    });
}

Session::~Session() = default;

void Session::changed()
{
    if (shownChanged)
        shownChanged();
}

void Session::refreshSummaries()
{
    shown.mainMarks = links.mainSummary();
    shown.bankMarks = links.bankSummary();
    changed();
}

// ---- starting and leaving ----------------------------------------------------------

void Session::cmdBankCoordination_Click()
{
    if (p_.focusGrid)
        p_.focusGrid(true);
    if (p_.instance.progMode == modeFullScreen || p_.instance.progMode == modeOpenedFile)
        switchToSplitScreen();
    else
        switchToFullScreen();
}

void Session::navigateBankMenu(bool automatic)
{
    const QString page = p_.programDir + (automatic ? QStringLiteral("/BankMenu.html") : QStringLiteral("/bankMenu.html"));
    // The page answers through its notifier once it is complete; a click
    // before that reaches nobody.
    if (automatic) {
        p_.wbMain().setDocumentComplete([this](const QString&) {
            p_.wbMain().attachNotifier(web::clsForward([this] { clickEventHandler(); }));
        });
        p_.wbMain().navigate(page + QStringLiteral("?auto=true"));
    } else {
        p_.wbMain().setDocumentComplete({});
        p_.wbMain().navigate(page);
    }
    shown.wbMainVisible = true;
}

void Session::switchToSplitScreen()
{
    OpenLedger& led = p_.ledger;
    TraceScope t(led.trace, QStringLiteral("switchToSplitScreen"));
    shown.reportsHidden = true;
    if (led.isAutomatic) {
        shown.ledgerButtonsHidden = true;
        call(p_.closeCn);
        call(p_.reopenCon);
        handleBankInfo(led);
        if (!led.isSimulate)
            shown.lblBankInfo = bankInfoCaption(led.iBank, led.accountNum);
        shown.mnuMoveDatesEnabled = false;
        if (!led.isSimulate && chkSimulate) {
            led.iBank = 10;
            processDownloadedData();
            return;
        }
        if (!led.isSimulate && led.iBank != -1 && p_.importer) {
            // The split comes when the importer has answered.
            shown.wbMainVisible = false;
            changed();
            callDataDownloader();
            return;
        }
        // A file of no bank yet, or the demonstration file: the user picks
        // the bank on the menu page.
        navigateBankMenu(true);
    } else {
        shown.bankGridVisible = false;
        navigateBankMenu(false);
    }
    doSplitScreen();
}

void Session::doSplitScreen()
{
    // The form of this session, as it was chosen: the reload reads the
    // file's setting again, which a fall-back to the visual form overrides.
    const bool automatic = p_.ledger.isAutomatic;
    shown.mnuMoveDatesEnabled = false;
    p_.instance.progMode = modeSplitScreen;
    shown.split = true;
    p_.window.refresh();
    links.paintedIDs.clear();
    shown.mainMarks = shown.bankMarks = {};
    shown.mnuPerformBankCoordinationCaption = automatic ? QStringLiteral("השלם התאמה") : exitWord;
    shown.cmdBankCoordinationCaption = automatic ? QString() : exitWord;
    shown.endCoordinationPicture = automatic;
    shown.mnuOpenAnotherPelkorEnabled = false;
    if (p_.focusGrid)
        p_.focusGrid(true);
    changed();
}

void Session::switchToFullScreen()
{
    shown.mnuMoveDatesEnabled = true;
    if (shown.bankGridVisible && !shown.cmdGoToAutomaticCoordination && balancesMatch) {
        coord.checkForUnconfirmedBankRows();
        return;
    }
    switchReallyToFullScreen();
}

void Session::switchReallyToFullScreen()
{
    p_.instance.progMode = modeFullScreen;
    balancesMatch = false;
    const bool keepCheck = shown.chkShowCoordinatedRowsValue;
    shown = SessionShown{};
    shown.chkShowCoordinatedRowsValue = keepCheck;
    links.reset();
    p_.ledger.linesTable = QStringLiteral("pelkor");
    if (p_.focusGrid)
        p_.focusGrid(true);
    p_.window.refresh();
    call(p_.goToIpusLine);
    changed();
}

void Session::cmdExitCoordination_Click()
{
    if (p_.focusGrid)
        p_.focusGrid(true);
    const bool bankLeft = bank.iBankRowAboveRed != bank.lastRow();
    if (shown.cmdGoToAutomaticCoordination && bankLeft &&
        p_.ui.msgBox(QStringLiteral("?האם אתה בטוח שברצונך לצאת ממסך ההתאמה"), exitWord, ui::Buttons::OKCancel) != ui::Answer::OK)
        return;
    if (shown.cmdCoordinate && bankLeft) {
        const ui::Answer a = p_.ui.msgBox(saveAndFinish, exitWord, ui::Buttons::YesNoCancel);
        if (a == ui::Answer::Cancel)
            return;
        chkShowCoordinatedRows_Click(true);
        if (a == ui::Answer::Yes) {
            cmdBankCoordination_Click();
            return;
        }
    }
    switchReallyToFullScreen();
}

bool Session::Form_QueryUnload()
{
    if (!shown.cmdCoordinate)
        return true;
    const ui::Answer a = p_.ui.msgBox(saveAndFinish, exitWord, ui::Buttons::YesNoCancel);
    if (a == ui::Answer::Cancel)
        return false;
    if (a == ui::Answer::Yes) {
        mustExitAfterCompletingCoordination = true;
        cmdBankCoordination_Click();
        return false;
    }
    return true;
}

void Session::chkShowCoordinatedRows_Click(bool show)
{
    shown.chkShowCoordinatedRowsValue = show;
    links.toggleCoordinatedRowsVisibility(show);
    changed();
}

void Session::cmdGoToAutomaticCoordination_Click()
{
    if (p_.focusGrid)
        p_.focusGrid(true);
    compareBalances();
}

void Session::clickEventHandler()
{
    OpenLedger& led = p_.ledger;
    cmdBankCoordination_Click();
    bool ok = false;
    const int chosen = p_.wbMain().value(QStringLiteral("theID")).trimmed().toInt(&ok);
    if (!ok)
        return;
    led.iBank = chosen;
    if (led.isSimulate)
        processDownloadedData();
    else if (p_.importer)
        callDataDownloader();
    if (p_.instance.progMode == modeSplitScreen) {
        shown.reportsHidden = true;
        changed();
    }
}

// ---- the target date ------------------------------------------------------------------

void Session::cmdSetTargetDate_Click()
{
    OpenLedger& led = p_.ledger;
    frmSetTargetDate dlg(links.targetDate, led.ipusDate, p_.startDay, p_.ui);
    p_.ui.runDialog(dlg);
    const QDate oldDate = links.targetDate;
    if (!dlg.chosen().isValid() || dlg.chosen() == oldDate)
        return;
    const QDate date = dlg.chosen();

    // Pairs with a bank row after the new date are undone, after one question.
    std::vector<int> cancelled;
    for (size_t k = 0; k < links.rowLinks.size(); ++k)
        for (int r : links.rowLinks[k].bankRows)
            if (bank.rowDate(r) > date) {
                cancelled.push_back(int(k));
                break;
            }
    if (!cancelled.empty()) {
        const ui::Answer a = p_.ui.msgBox(QStringLiteral("אם תשנה את תאריך ההתאמה לתאריך שמלאת, ") +
                                              QStringLiteral("יבוטלו ההתאמה/ות שביצעת עם שורה/ות בבנק עם תאריך מאוחר יותר."),
                                          QStringLiteral("אזהרה"), ui::Buttons::OKCancel);
        if (a != ui::Answer::OK)
            return;
    }
    links.targetDate = led.targetDate = date;
    links.isChangingTargetDate = true;
    links.alreadyAsked = true;
    for (auto it = cancelled.rbegin(); it != cancelled.rend(); ++it)
        links.cancelRowLink(*it);
    auto& g = bank.msfgBank;
    for (int r : std::vector<int>(links.paintedBankRows.items()))
        if (bank.rowDate(r) > date) {
            g.setRow(r);
            links.toggleBankPaint(true);
        }
    links.alreadyAsked = false;
    links.isChangingTargetDate = false;

    // Rows after the date grey; rows that were grey and are not any more,
    // white with their mark cell.
    const grid::CellStyle late{bankColors::late, colors::text, false};
    const grid::CellStyle white{bankColors::white, colors::text, false};
    const grid::CellStyle mark{bankColors::mark, bankColors::markText, false};
    for (int r = bank.lastRow(); r >= 1; --r) {
        if (bank.rowDate(r) > date) {
            g.setStyle(r, colMark, colType, late);
            continue;
        }
        if (g.style(r, colDetail).back != bankColors::late)
            break;
        g.setStyle(r, colMark + 1, colType, white);
        g.setStyle(r, colMark, mark);
    }
    links.refreshMainSummaryLabels();
    links.refreshBankSummaryLabels();
    if (p_.focusGrid)
        p_.focusGrid(true);
}

// ---- the bank's rows ---------------------------------------------------------------------

void Session::processDownloadedData()
{
    OpenLedger& led = p_.ledger;
    TraceScope t(led.trace, QStringLiteral("processDownloadedData"));
    if (p_.instance.isFromKelvanto) {
        if (p_.sendToExcel)
            p_.sendToExcel(QStringLiteral("unload"));
        p_.window.exitProg();
        return;
    }
    balancesMatch = false;
    bank.iBankRowAboveRed = -1;
    coord.balancingLineID = -1;
    BindingParts bp{led, feed, p_.ui, p_.tempPath, p_.programDir, p_.shown.lblFileName};
    auto rows = readBoundAccount(bp);
    if (!rows) {
        switchReallyToFullScreen();
        return;
    }
    links.reset();
    links.targetDate = led.targetDate;
    fillBankGrid(bank, *rows, led.targetDate, led.iBank, led.isSimulate);
    shown.lblBankInfoVisible = true;
    shown.bankGridVisible = true;
    shown.wbMainVisible = false;
    shown.lblBankInfo = bankInfoCaption(led.iBank, led.accountNum);
    doSplitScreen();
    compareBalances();
}

bool Session::rereadFeedIntoGrid()
{
    OpenLedger& led = p_.ledger;
    try {
        if (!feed.isOpen())
            feed.openCnNew(led.feedPath);
        auto rows = feed.cnNew.execute(accountRowsQuery(led.iBank, led.isSimulate, fixString(led.accountNum)));
        // A feed emptied by an earlier proof, or read under another name,
        // leaves the rows the grid has.
        if (rows.recordCount() == 0 && bank.lastRow() > 0)
            return false;
        fillBankGrid(bank, rows, links.targetDate, led.iBank, led.isSimulate);
        return true;
    } catch (const store::StoreError& e) {
        led.trace.traceLine(QStringLiteral("rereadFeedIntoGrid"), e.message());
        return false;
    }
}

void Session::positionBankGrid(int row)
{
    auto& g = bank.msfgBank;
    const int r = std::clamp(row, std::min(1, g.Rows() - 1), g.Rows() - 1);
    g.setTopRow(r);
    g.setRow(r);
    g.setCol(colKind);
}

void Session::compareBalances()
{
    // The dialog comes again until the proof holds or the user leaves the
    // disagreement screen standing to mend the file by hand.
    for (;;) {
        const int bcr = reallyCompareBalances(p_.ledger.ipusDate);
        if (bcr == 1 || bcr == 5)
            break;
        frmBalance dlg(bcr, isNewPelkorFile(), shown.lblParting);
        p_.ui.runDialog(dlg);
        const QString choice = dlg.choice();
        if (choice == QLatin1String("optBalancingLine"))
            optBalancingLine();
        else if (choice == QLatin1String("optNewPelkor"))
            optNewPelkor();
        else if (choice == QLatin1String("optPrevDay"))
            optPrevDay();
        else
            break;
    }
    if (feed.isOpen())
        feed.closeCnNew();
}

int Session::reallyCompareBalances(const QDate& tempIpusDate)
{
    OpenLedger& led = p_.ledger;
    TraceScope t(led.trace, QStringLiteral("reallyCompareBalances"));
    balancesMatch = true;
    int iFirstRow = -1, iLastRow = -1;
    for (int r = 1; r <= bank.lastRow() && iFirstRow < 0; ++r) {
        if (bank.rowDate(r) > tempIpusDate)
            iFirstRow = r;
        else
            iLastRow = r;
    }
    int bcr = 1;
    if (iLastRow < 0) {
        bcr = 3;
    } else if (bank.rowDate(iLastRow) < tempIpusDate) {
        bcr = 4;
        iBankRowOnIpus = iLastRow;
    } else {
        const double bankBalance = bank.row(iLastRow).balance;
        const int above = led.iRowAboveRed;
        const double mainBalance = above >= 1 && size_t(above) <= led.balances.size() ? led.balances[size_t(above) - 1] : 0;
        balanceDiff = bankBalance - mainBalance;
        if (!sumsAgree(bankBalance, mainBalance)) {
            bcr = 2;
            iBankRowOnIpus = iLastRow;
        }
    }
    t.line(QStringLiteral("bcr=%1").arg(bcr));
    if (bcr != 1) {
        balancesMatch = false;
        showDisagreement(iLastRow);
        return bcr;
    }
    openPairing(iLastRow);
    if (iLastRow == bank.lastRow()) {
        p_.ui.msgBox(QStringLiteral("אין תנועות חדשות בבנק. תאריך האיפוס הוא ") + formatDate224(led.ipusDate),
                     QStringLiteral("התאמה"));
        writeOkFile(p_.tempPath);
        cmdExitCoordination_Click();
        return 5;
    }
    createTempTable();
    return 1;
}

void Session::showDisagreement(int lastRow)
{
    shown.cmdGoToAutomaticCoordination = true;
    shown.ledgerButtonsHidden = false;
    shown.lblParting = partingHint(lastRow);
    rereadFeedIntoGrid();
    shown.cmdBankCoordinationCaption = exitWord;
    shown.endCoordinationPicture = false;
    feed.closeCnNew();
    if (p_.sendToExcel)
        p_.sendToExcel(QStringLiteral("balancesdontmatch"));
    bank.iBankRowAboveRed = lastRow;
    if (lastRow > 0)
        positionBankGrid(lastRow);
    call(p_.goToIpusLine);
    changed();
}

void Session::openPairing(int lastRow)
{
    OpenLedger& led = p_.ledger;
    call(p_.playAgreed);
    shown.cmdGoToAutomaticCoordination = false;
    shown.lblParting.clear();
    shown.frmButton = true;
    shown.frmButtonShrunk = false;
    shown.mnuFindMatches = shown.cmdCoordinate = shown.chkShowCoordinatedRows = true;
    shown.cmdSpecialFind = shown.cmdSetTargetDate = shown.cmdExitCoordination = true;
    shown.reportsHidden = shown.ledgerButtonsHidden = true;
    shown.cmdBankCoordinationCaption.clear();
    shown.endCoordinationPicture = true;
    if (p_.sendToExcel)
        p_.sendToExcel(QStringLiteral("auto"));

    // All history is confirmed: the bank's rows up to the zeroing date and
    // the file's rows above the red line.
    bank.iBankRowAboveRed = lastRow;
    links.forcePaint = links.suppressSummary = links.alreadyAsked = true;
    bank.isBankGridBusy = links.isMainGridBusy = true;
    for (int r = 1; r <= lastRow; ++r) {
        bank.msfgBank.setRow(r);
        links.toggleBankPaint(true);
    }
    positionBankGrid(lastRow);
    auto& g = p_.main.msfgMain;
    for (int r = 1; r <= led.iRowAboveRed && r < g.Rows(); ++r) {
        g.setRow(r);
        links.togglePaint(true);
    }
    links.forcePaint = links.suppressSummary = links.alreadyAsked = false;
    bank.isBankGridBusy = links.isMainGridBusy = false;
    g.setRedraw(true);
    bank.msfgBank.setRedraw(true);
    links.paintedIDs.clear();
    links.paintedBankRows.clear();
    links.refreshMainSummaryLabels();
    links.refreshBankSummaryLabels();

    // The feed is emptied once its rows are read and the proof has held:
    // the bank grid alone holds them from now on.
    if (!chkSimulate && !led.isSimulate && feed.isOpen()) {
        try {
            feed.cnNew.execute(QStringLiteral("DELETE FROM ") + feedTable(led.iBank, led.isSimulate));
        } catch (const store::StoreError& e) {
            led.trace.traceLine(QStringLiteral("reallyCompareBalances"), e.message());
        }
    }
    call(p_.goToIpusLine);
    changed();
}

void Session::createTempTable()
{
    OpenLedger& led = p_.ledger;
    TraceScope t(led.trace, QStringLiteral("createTempTable"));
    {
        store::Transaction tx(led.cn);
        if (led.cn.tableExists(QStringLiteral("tempPelkor")))
            led.sql.executeSQL(t.proc(), QStringLiteral("DROP TABLE tempPelkor"));
        led.sql.executeSQL(t.proc(), QStringLiteral("SELECT * INTO tempPelkor from pelkor"));
        tx.commit();
    }
    holdSessionLock();
    led.linesTable = QStringLiteral("tempPelkor");
    p_.window.refresh();
}

void Session::afterLoad(bool isRefresh)
{
    if (!shown.split)
        return;
    p_.main.msfgMain.setCol(colKind);
    if (balancesMatch)
        links.restoreLooksAfterLoad(isRefresh);
}

// ---- the end ----------------------------------------------------------------------------------

void swapWorkingTable(OpenLedger& led)
{
    TraceScope t(led.trace, QStringLiteral("finalSwap"));
    // One transaction: a crash at any point leaves the old table of lines
    // whole, or the new one. The working table goes with it, so a working
    // table found at a start is always that of a session that did not end.
    store::Transaction tx(led.cn);
    if (led.cn.tableExists(QStringLiteral("bckpPelkor")))
        led.sql.executeSQL(t.proc(), QStringLiteral("DROP TABLE bckpPelkor"));
    led.sql.executeSQL(t.proc(), QStringLiteral("SELECT * INTO bckpPelkor from pelkor"));
    led.sql.executeSQL(t.proc(), QStringLiteral("DROP TABLE pelkor"));
    led.sql.executeSQL(t.proc(), QStringLiteral("SELECT * INTO pelkor from tempPelkor"));
    led.sql.executeSQL(t.proc(), QStringLiteral("DROP TABLE tempPelkor"));
    tx.commit();
}

void Session::finalSwap()
{
    swapWorkingTable(p_.ledger);
}

void Session::compareFinalBalances()
{
    OpenLedger& led = p_.ledger;
    TraceScope t(led.trace, QStringLiteral("compareFinalBalances"));
    p_.window.refresh();
    const QDate target = links.targetDate;

    double bankBalance = 0;
    QDate bankDate;
    for (int r = bank.lastRow(); r >= 1; --r)
        if (bank.rowDate(r) <= target) {
            bankBalance = bank.row(r).balance;
            bankDate = bank.rowDate(r);
            break;
        }
    if (!bankDate.isValid()) {
        p_.ui.msgBox(QStringLiteral("bank problem in compareFinalBalances"), pelkorTitle);
        if (p_.sendToExcel)
            p_.sendToExcel(QStringLiteral("bankproblem"));
    }

    const auto& g = p_.main.msfgMain;
    int found = -1;
    for (int i = std::min(int(led.lines.size()), g.Rows() - 1) - 1; i >= 0 && found < 0; --i)
        if (!g.isRowHidden(i + 1) && led.lines[size_t(i)].Date <= target)
            found = i;
    if (found < 0) {
        p_.ui.msgBox(QStringLiteral("pelkor problem in compareFinalBalances"), pelkorTitle);
        if (p_.sendToExcel)
            p_.sendToExcel(QStringLiteral("problem"));
    } else {
        balanceDiff = bankBalance - led.balances[size_t(found)];
        const double diff = std::fabs(balanceDiff);
        // Both bounds are an agora with a margin for sums of doubles.
        if (diff > 0.01000001) {
            balancesMatch = false;
            p_.ui.msgBox(QStringLiteral("ההתאמה האוטומטית נכשלה. הינך מועבר להתאמה ידנית"), QStringLiteral("תקלה"),
                         ui::Buttons::OK, ui::Icon::Critical);
            if (p_.sendToExcel)
                p_.sendToExcel(QStringLiteral("finalbalancesdontmatch"));
            shown.cmdExitCoordination = shown.cmdCoordinate = shown.chkShowCoordinatedRows = false;
            shown.cmdSpecialFind = shown.cmdSetTargetDate = shown.frmButton = shown.mnuFindMatches = false;
            shown.cmdGoToAutomaticCoordination = true;
            shown.ledgerButtonsHidden = false;
            rereadFeedIntoGrid();
            shown.cmdBankCoordinationCaption = exitWord;
            shown.endCoordinationPicture = false;
            led.linesTable = QStringLiteral("pelkor");
            links.reset();
            p_.window.refresh();
            call(p_.goToIpusLine);
            changed();
            return;
        }
        if (diff > 0.00999999) {
            const QString values = balanceDiff > 0
                ? QStringLiteral("Values('+0',%1,' ','עיגול אגורות מול היתרה בבנק',0.01,0,1,' ','ללא צבע')")
                : QStringLiteral("Values('-0',%1,' ','עיגול אגורות מול היתרה בבנק',0,0.01,2,' ','ללא צבע')");
            led.sql.executeSQL(t.proc(), QStringLiteral("INSERT into tempPelkor ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) ") +
                                             values.arg(formatDateForSQL(bankDate)));
            led.ipusDate = bankDate;
            call(p_.updateIpus);
        } else {
            store::Transaction tx(led.cn);
            led.sql.executeSQL(t.proc(), QStringLiteral("UPDATE tempPelkor SET zee=' ' WHERE zee='%1'").arg(QString::fromLatin1(schema::ipusMark)));
            led.sql.executeSQL(t.proc(), QStringLiteral("UPDATE tempPelkor SET zee='%1' WHERE id=%2")
                                             .arg(QString::fromLatin1(schema::ipusMark), led.lines[size_t(found)].Id));
            tx.commit();
        }
    }
    finalSwap();
    led.linesTable = QStringLiteral("pelkor");
    call(p_.closeCn);
    call(p_.reopenCon);
    if (found >= 0) {
        p_.ui.msgBox(QStringLiteral("ההתאמה האוטומטית הסתיימה בהצלחה. תאריך האיפוס החדש הוא ") + formatDate224(bankDate),
                     QStringLiteral("התאמה"));
        if (p_.sendToExcel)
            p_.sendToExcel(QStringLiteral("ok"));
        writeOkFile(p_.tempPath);
    }
    shown.bankGridVisible = false;
    switchReallyToFullScreen();
    if (mustExitAfterCompletingCoordination || p_.instance.isFromKelvanto) {
        p_.window.exitProg();
        return;
    }
    mustExitAfterCompletingCoordination = false;
}

} // namespace pelkor::reconcile
