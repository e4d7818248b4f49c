#include "frame/Controls.h"

#include "file/Upgrades.h"
#include "base/Modes.h"
#include "base/Instance.h"
#include "base/Shown.h"
#include "base/Trace.h"
#include "base/WindowCalls.h"
#include "file/OpenLedger.h"
#include "ledger/frmAddLine.h"
#include "seams/ui/Ui.h"

#include <QFileInfo>

namespace pelkor {

ShownControls shownControls(const Instance& m)
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
        s.cmdTzefi = mode == modeDetail && (m.detail.kind == detailOfKind || m.detail.kind == detailOfType);
        s.cmdSubtractFromTzefi = false;
        s.cmdOK = s.cmdCancel = mode == modeNewLines;
        s.cmdDelAll = mode == modeNewLines && m.newLineDialogType == lineDialogBadLines;
        s.cmdAdd = mode == modeDetail;
        // A new-line child deletes only unconfirmed or bad lines.
        s.cmdDel = mode == modeDetail
            || (mode == modeNewLines
                && (m.newLineDialogType == lineDialogUnconfirmedPelkor || m.newLineDialogType == lineDialogBadLines));
        s.cmdBankCoordination = s.mnuPerformBankCoordination = false;
        return s;
    }
    s.mnuFile = s.mnuHelp = s.mnuResetBankData = true;
    s.cmdGoToIpusLine = s.cmdIpus = s.cmdDel = s.cmdAdd = true;
    s.cmdTzefi = s.cmdSubtractFromTzefi = true;
    s.mnuReports = s.mnuOpenAnotherPelkor = s.cmdReport = true;
    s.mnuActions = s.mnuDefs = !m.isFromKelvanto;
    // Under the outer host the host chooses the file.
    s.mnuOpen = !m.isFromKelvanto;
    s.mnuSetIpusLine = s.mnuActions && !m.isMerged;
    s.mnuAddNewLine = s.mnuActions;
    s.mnuAddLineToFile = s.mnuActions && !m.isMerged;
    s.mnuAddConstantTransactions = s.mnuActions && !m.isMerged;
    s.mnuPerformBankCoordination = s.cmdBankCoordination = !m.isMerged;
    s.cmdMove = !m.isMerged;
    // Shown only where the file says so (Shown), never while split for a reconciliation.
    s.mnuMoveDates = s.mnuActions && !m.isMerged && mode != modeSplitScreen;
    s.mnuTransferMoney = s.mnuActions && !m.isMerged;
    s.mnuInvoiceKinds = s.mnuDefs && !m.isMerged;
    s.mnuOpenMonthKindReport = s.mnuOpenWeekKindReport = s.mnuOpenDayKindReport = s.mnuReports;
    s.cmdMonthReport = s.cmdReport;
    return s;
}

QString controlCaption(const QString& name)
{
    static const struct {
        const char* name;
        const char* caption;
    } captions[] = {
        {"cmdAdd", "הוסף שורה"},
        {"cmdDel", "מחק שורה"},
        {"cmdDelAll", "מחק הכל"},
        {"cmdIpus", "קבע שורת איפוס"},
        {"cmdGoToIpusLine", "עבור לשורת האיפוס"},
        {"mnuSetIpusLine", "קבע שורת איפוס"},
        {"mnuAddNewLine", "הוסף שורה"},
        {"mnuAddLineToFile", "הוסף שורה לקובץ אחר..."},
        {"mnuAddConstantTransactions", "הכנסת פעולות קבועות"},
        {"cmdTzefi", "צפי"},
        {"cmdSubtractFromTzefi", "הורד מצפי"},
        {"mnuOpenMonthKindReport", "דוח חודשי לפי סיווגים וסוגים"},
        {"mnuOpenWeekKindReport", "דוח שבועי לפי סיווגים וסוגים"},
        {"mnuOpenDayKindReport", "דוח יומי לפי סיווגים וסוגים"},
        {"cmdMonthReport", "דוח חודשי"},
        {"cmdMove", "העבר/העתק"},
        {"mnuMoveDates", "הזזת תאריכים..."},
        {"mnuTransferMoney", "העבר מחשבון לחשבון"},
        {"mnuInvoiceKinds", "סיווגי חשבוניות פתוחות..."},
        {"mnuCompare", "השוואה בין תקופות..."},
        {"mnuMaxDayDiffForMatch", "הבדל ימים מירבי להתאמה"},
        {"mnuNDigitsForConfirmComparison", "מספר ספרות להשוואת אסמכתאות"},
        {"mnuOpenBankReport", "דו\"ח איחוד בנקים..."},
    };
    for (const auto& c : captions)
        if (name == QLatin1String(c.name))
            return QString::fromUtf8(c.caption);
    return QString();
}

QString periodOfControl(const QString& name)
{
    if (name == QLatin1String("mnuOpenMonthKindReport") || name == QLatin1String("cmdMonthReport"))
        return QStringLiteral("m");
    if (name == QLatin1String("mnuOpenWeekKindReport"))
        return QStringLiteral("w");
    if (name == QLatin1String("mnuOpenDayKindReport"))
        return QStringLiteral("d");
    return QString();
}

void mnuCreateLogFile_Click(Shown& shown, Trace& trace, WindowCalls& window)
{
    shown.mnuCreateLogFileChecked = !shown.mnuCreateLogFileChecked;
    trace.setOn(shown.mnuCreateLogFileChecked);
    window.shownChanged();
}

void mnuResetBankData_Click(OpenLedger& ledger, ui::Ui& ui, WindowCalls& window)
{
    ledger.iBank = -1;
    ledger.accountNum = QStringLiteral("(none)");
    resetBankInfo(ledger);
    ui.msgBox(QStringLiteral("נתוני החשבון אופסו"), QStringLiteral("פלקור"));
    window.shownChanged();
}

void mnuAddLineToFile_Click(OpenLedger& ledger, const Instance& instance, ui::Ui& ui, QDate today,
                            const std::function<void(const QString&)>& tellOpener)
{
    ui::FileDialogOptions spec;
    spec.title = QStringLiteral("בחר קובץ");
    spec.filter = QStringLiteral("פלקור (*.pkr)|*.pkr");
    spec.defaultExt = QStringLiteral("pkr");
    spec.startDir = QFileInfo(ledger.filePath).absolutePath();
    spec.fileMustExist = spec.pathMustExist = true;
    const QStringList chosen = ui.openFileDialog(spec);
    if (chosen.isEmpty() || chosen.first().isEmpty())
        return;
    frmAddLine dlg(ledger, instance, chosen.first(), ui, today, tellOpener);
    if (dlg.Form_Load())
        ui.runDialog(dlg);
}

} // namespace pelkor
