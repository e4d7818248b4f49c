#include "frame/Controls.h"

#include "file/Upgrades.h"
#include "frame/Modes.h"
#include "frame/frmMain.h"
#include "seams/ui/Ui.h"

namespace pelkor {

ShownControls shownControls(const frmMain& m)
{
    ShownControls s;
    const int mode = m.progMode;
    const bool child = mode == modeDetail || mode == modeNewLines;
    if (mode == modeSplitScreen) {
        s.mnuPerformBankCoordinationCaption = QStringLiteral("סיים התאמה");
        s.cmdTzefi = s.cmdSubtractFromTzefi = s.cmdBankCoordination = s.cmdReport = true;
    } else {
        s.mnuCloseCaption = QStringLiteral("יציאה");
    }
    if (child) {
        s.childWindow = true;
        s.cmdTzefi = mode == modeDetail && (m.detailKind == 3 || m.detailKind == 4);
        s.cmdSubtractFromTzefi = false;
        s.cmdOK = s.cmdCancel = mode == modeNewLines;
        s.cmdDelAll = mode == modeNewLines && m.newLineDialogType == lineDialogBadLines;
        s.cmdBankCoordination = s.mnuPerformBankCoordination = false;
        return s;
    }
    s.mnuFile = s.mnuHelp = s.mnuResetBankData = true;
    s.cmdGoToIpusLine = s.cmdIpus = true;
    s.mnuReports = s.mnuOpenAnotherPelkor = s.cmdReport = true;
    s.mnuActions = s.mnuDefs = !m.isFromKelvanto;
    s.mnuPerformBankCoordination = s.cmdBankCoordination = !m.isMerged;
    return s;
}

void mnuCreateLogFile_Click(frmMain& m)
{
    m.mnuCreateLogFileChecked = !m.mnuCreateLogFileChecked;
    m.trace.setOn(m.mnuCreateLogFileChecked);
    emit m.changed();
}

void mnuResetBankData_Click(frmMain& m)
{
    m.iBank = -1;
    m.accountNum = QStringLiteral("(none)");
    resetBankInfo(m);
    m.ui.msgBox(QStringLiteral("נתוני החשבון אופסו"), QStringLiteral("פלקור"));
    emit m.changed();
}

} // namespace pelkor
