// frmMain's part of a reconciliation: the session's parts wired to the
// window, its buttons and menu entries, and the grids' events during it.
#include "frame/frmMain.h"

#include "base/Instances.h"
#include "file/Loader.h"
#include "file/Display.h"
#include "ledger/Zeroing.h"
#include "reconcile/frmMatchSettings.h"
#include "seams/platform/Sound.h"
#include "seams/ui/Ui.h"
#include "seams/web/ScriptedWebView.h"

#include <QCoreApplication>
#include <QDir>

namespace pelkor {

reconcile::SessionParts frmMain::sessionParts()
{
    reconcile::SessionParts p{
        ledger_, instance_, grid_, shown_, ui_, *this,
        [this]() -> web::WebView& { return bankPage_ ? *bankPage_ : *noBankPage_; },
        instance_.tempPath, env_.paths.programDir, env_.today,
        [this] { closeCn(); },
        [this] { reopenCon(); },
        [this] { cmdGoToIpusLine_Click(); },
        [this] { updateIpus(ledger_, instance_); },
        [this](bool) {
            // The view gives the main grid the focus; the logic leaves the
            // cell as the focus change does.
            if (edit_.loaded)
                editor_.commitAll();
        },
        [this](const QString& text) { sendToExcel(text); },
        {},
        env_.importer,
        // The page of proposed pairs is frmMatches' once the window lends
        // it; before that a page host without a window serves.
        [this]() -> web::WebView& { return matchesPage_ ? *matchesPage_ : *noBankPage_; },
        messages_,
        [this](const QString& proc, const std::function<void()>& fn) { guarded(proc, fn); }};
    p.playAgreed = [this] {
        if (!platform::playSound(QDir(env_.paths.programDir).filePath(QStringLiteral("sounds/agreed.wav"))))
            trace_.traceLine(QStringLiteral("playAgreed"), QStringLiteral("no sound player"));
    };
    // A long search of pairs lets the window paint its wait notice; the
    // user's input waits for the end.
    p.letEventsRun = [this] {
        emit changed();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    };
    return p;
}

void frmMain::cmdBankCoordination_Click()
{
    if (ledger_.openDBisBusy || instance_.isMerged || !instance_.isMainMode())
        return;
    // One download at a time: the button waits for the importer's answer.
    if (session_->downloading())
        return;
    // The form of the session follows the menu's check mark.
    if (instance_.progMode != modeSplitScreen)
        ledger_.isAutomatic = shown_.mnuAutomaticBankCoordinationChecked;
    session_->cmdBankCoordination_Click();
    emit changed();
}

void frmMain::mnuAutomaticBankCoordination_Click()
{
    shown_.mnuAutomaticBankCoordinationChecked = !shown_.mnuAutomaticBankCoordinationChecked;
    emit changed();
}

void frmMain::cmdCoordinate_Click()
{
    if (!session_->pairing() || session_->coord.isWaitingForDialog())
        return;
    if (edit_.loaded)
        editor_.commitAll();
    session_->coord.cmdCoordinate_Click();
    emit changed();
}

void frmMain::cmdExitCoordination_Click()
{
    if (!session_->active())
        return;
    session_->cmdExitCoordination_Click();
    emit changed();
}

void frmMain::cmdSetTargetDate_Click()
{
    if (!session_->pairing())
        return;
    session_->cmdSetTargetDate_Click();
    emit changed();
}

void frmMain::cmdGoToAutomaticCoordination_Click()
{
    if (!session_->active())
        return;
    session_->cmdGoToAutomaticCoordination_Click();
    emit changed();
}

void frmMain::chkShowCoordinatedRows_Click(bool show)
{
    session_->chkShowCoordinatedRows_Click(show);
    emit changed();
}

void frmMain::msfgMainMarkClicked()
{
    if (ledger_.openDBisBusy || !session_->pairing())
        return;
    session_->links.msfgMainMarkClicked();
    emit changed();
}

void frmMain::msfgBankMarkClicked()
{
    if (ledger_.openDBisBusy || !session_->pairing())
        return;
    session_->links.msfgBankMarkClicked();
    emit changed();
}

void frmMain::msfgBank_EnterCell()
{
    if (!session_->pairing())
        return;
    session_->links.followCursor(true);
    endPartnerSearchAway(session_->bank.msfgBank, false);
}

void frmMain::endPartnerSearchAway(const grid::GridModel& g, bool isMain)
{
    // The search ends when the cursor leaves its hit.
    if (!session_->shown.cmdNext || find_.findInMainGrid != isMain)
        return;
    if (g.Row() != find_.findRow || g.Col() != find_.findCol) {
        session_->shown.cmdNext = false;
        emit changed();
    }
}

void frmMain::mnuFindMatches_Click()
{
    if (!session_->pairing() || session_->coord.isWaitingForDialog())
        return;
    if (edit_.loaded)
        editor_.commitAll();
    session_->mnuFindMatches_Click();
    emit changed();
}

void frmMain::frmMatches_cmdOK_Click()
{
    session_->finder.cmdOK_Click();
    emit changed();
}

void frmMain::frmMatches_cmdCancel_Click()
{
    session_->finder.cmdCancel_Click();
    emit changed();
}

void frmMain::frmMatches_chkShowAll_Click(bool on)
{
    session_->finder.chkShowAll_Click(on);
    emit changed();
}

void frmMain::frmMatches_cmdRefreshMatches_Click()
{
    session_->finder.refreshMatchesNow();
    emit changed();
}

void frmMain::frmButton_cmdGo_Click()
{
    session_->shown.frmButtonShrunk = true;
    mnuFindMatches_Click();
}

void frmMain::frmButton_cmdClose_Click()
{
    session_->shown.frmButtonShrunk = true;
    emit changed();
}

void frmMain::mnuMaxDayDiffForMatch_Click()
{
    auto dlg = reconcile::frmMatchSetting::maxDayDiff(ledger_.maxDayDiffForMatch, ui_);
    if (ui_.runDialog(dlg))
        ledger_.maxDayDiffForMatch = dlg.value();
}

void frmMain::mnuNDigitsForConfirmComparison_Click()
{
    auto dlg = reconcile::frmMatchSetting::nDigits(ledger_.nDigitsForConfirmComparison, ui_);
    if (ui_.runDialog(dlg))
        ledger_.nDigitsForConfirmComparison = dlg.value();
}

void frmMain::cmdSpecialFind_Click()
{
    if (!session_->pairing())
        return;
    if (session_->shown.cmdNext) {
        cmdNext_Click();
        return;
    }
    const grid::GridModel& from = bankGridActive_ ? session_->bank.msfgBank : grid_.msfgMain;
    const int col = from.Col(), row = from.Row();
    if (col < colKind || col > colType || row < 1)
        return;
    const QString text = from.text(row, col).trimmed();
    if (text.isEmpty())
        return;
    find_.findInMainGrid = bankGridActive_;
    find_.findCol = col;
    find_.findText = text;
    find_.onlyBelowRed = true;
    find_.hasWrapped = false;
    find_.findRow = bankGridActive_ ? ledger_.iRowAboveRed : session_->bank.iBankRowAboveRed;
    session_->shown.cmdNext = finder_.doFind(true, false) == Finder::Outcome::Hit;
    emit changed();
}

void frmMain::cmdNext_Click()
{
    if (!session_->shown.cmdNext)
        return;
    finder_.doFind(true, false);
    emit changed();
}

void frmMain::cmdPrev_Click()
{
    if (!session_->shown.cmdNext)
        return;
    finder_.doFind(false, false);
    emit changed();
}

bool frmMain::coordinationDialogAnswered(bool ok)
{
    if (!session_->coord.isWaitingForDialog())
        return false;
    session_->coord.dialogAnswered(ok);
    emit changed();
    return true;
}

} // namespace pelkor
