// frmMain and other processes: a new-line child started and heard, a
// parent told, the outer host's texts (txtMessage), the controls a script
// or the host clicks by name, and the window's readiness announced.
#include "frame/frmMain.h"

#include "base/CommandLine.h"
#include "base/Instances.h"
#include "base/Modes.h"
#include "file/Loader.h"
#include "frame/Controls.h"
#include "frame/FrameWords.h"
#include "frame/TextActions.h"
#include "seams/ui/Ui.h"

#include <QFileInfo>
#include <QTimer>

namespace pelkor {

using namespace frameWords;
using store::StoreError;
using ui::Buttons;
using ui::Icon;

void frmMain::watchParent()
{
    const std::uint32_t parent = instance_.progMode == modeNewLines ? instance_.parentMessagesWindow : instance_.parentTxtMessage;
    if (parent == 0 || !env_.bus)
        return;
    connect(&parentWatch_, &QTimer::timeout, this, [this, parent] {
        guarded(QStringLiteral("parentWatch"), [this, parent] {
            if (ended_ || ledger_.openDBisBusy || env_.bus->alive(parent))
                return;
            parentWatch_.stop();
            trace_.traceLine(QStringLiteral("parentWatch"), QStringLiteral("the parent is gone; closing"));
            exitProg();
        });
    });
    // A parent's end is noticed within two seconds; looking costs one
    // connection to its box.
    parentWatch_.start(2000);
}

void frmMain::openNewDialog(NewLineDialogType type)
{
    TraceScope t(trace_, QStringLiteral("openNewDialog"));
    messages_->setCaption(waitingWord);
    checker_.start();
    const QString line = newLineCommand(type, messages_->id(), instance_.hostTextBox1, instance_.hostTextBox2, ledger_.filePath);
    t.line(line);
    if (!env_.children || !env_.children->start(line)) {
        t.line(QStringLiteral("the child did not start"));
        ui_.msgBox(QStringLiteral("לא ניתן היה לפתוח את חלון השורות החדשות."), title, Buttons::OK, Icon::Critical);
        messages_->setCaption(closedWord);
    }
}

void frmMain::timerCoordinationMessageChecker_Timer()
{
    QString word = messages_->caption();
    if (word != okWord && word != closedWord) {
        if (!env_.children || env_.children->running())
            return;
        // The child ended without a word (a crash, a kill): as if it closed.
        trace_.traceLine(QStringLiteral("timerCoordinationMessageChecker"),
                        QStringLiteral("the child ended without an answer"));
        word = closedWord;
    }
    checker_.stop();
    TraceScope t(trace_, QStringLiteral("timerCoordinationMessageChecker"));
    t.line(word);
    shown_.enabled = true;
    if (coordinationDialogAnswered(word == okWord))
        return;
    if (word == okWord) {
        reopenCon();
        if (instance_.newLineDialogType == lineDialogBadLines) {
            // The child committed before it answered; look until its
            // writes show, for a few seconds at most, then load anyway (a
            // line still bad is handed over again).
            for (int tries = 0; tries < 50 && !ended_; ++tries) {
                closeCn();
                reopenCon();
                try {
                    if (ledger_.cn.execute(badLinesStatement(ledger_.linesTable)).recordCount() == 0)
                        break;
                } catch (const StoreError& e) {
                    t.line(e.message());
                    break;
                }
                pause(100);
            }
            shown_.gridVisible = true;
            emit changed();
            LoadParts parts = loadParts();
            openDB(parts, false);
        }
    } else {
        reopenCon();
        if (instance_.newLineDialogType == lineDialogBadLines) {
            ui_.msgBox(QStringLiteral("השורות שחסר בהן תאריך או סכום נשארו בקובץ כפי שהיו, ולכן הקובץ לא נפתח.\n"
                                      "בפעם הבאה שהקובץ ייפתח הן יוצגו שוב לתיקון."),
                       title, Buttons::OK, Icon::Information);
            exitProg();
        }
    }
}

void frmMain::sendToParent(const QString& text)
{
    const std::uint32_t to = instance_.progMode == modeNewLines ? instance_.parentMessagesWindow : instance_.parentTxtMessage;
    if (to == 0)
        return;
    trace_.traceLine(QStringLiteral("sendToParent"), text);
    if (!env_.bus || !env_.bus->send(to, text))
        trace_.traceLine(QStringLiteral("sendToParent"), QStringLiteral("not delivered to %1").arg(idText(to)));
}

void frmMain::sendToExcel(const QString& text)
{
    if (instance_.hostTextBox1 == 0 || !env_.bus)
        return;
    if (!env_.bus->sendToHost(instance_.hostTextBox1, instance_.hostTextBox2, text))
        trace_.traceLine(QStringLiteral("sendToExcel"), QStringLiteral("not delivered: ") + text);
}

void frmMain::cmdOK_Click()
{
    TraceScope t(trace_, QStringLiteral("cmdOK_Click"));
    if (instance_.progMode != modeNewLines || ledger_.openDBisBusy)
        return;
    for (size_t i = 0; i < ledger_.lines.size(); ++i) {
        if (ledger_.lines[i].Date == nullDate() || !ledger_.lines[i].Date.isValid()) {
            grid_.row = int(i) + 1;
            emit changed();
            ui_.msgBox(QStringLiteral("בשורה זו עדיין חסר תאריך ולכן יש למלא בה תאריך או למחוק אותה"),
                      QStringLiteral("שגיאה"));
            return;
        }
    }
    if (instance_.newLineDialogType == lineDialogBadLines) {
        store::Transaction tx(ledger_.cn);
        ledger_.sql.executeSQL(t.proc(), QStringLiteral("update %1 set [in]=0 where not isnumeric([in])").arg(ledger_.linesTable));
        ledger_.sql.executeSQL(t.proc(), QStringLiteral("update %1 set [out]=0 where not isnumeric([out])").arg(ledger_.linesTable));
        tx.commit();
        closeCn();
        reopenCon();
    }
    sendToParent(okWord);
    exitProg();
}

void frmMain::cmdCancel_Click()
{
    if (instance_.progMode != modeNewLines)
        return;
    sendToParent(closedWord);
    exitProg();
}

QString frmMain::txtMessageHandler(const QString& text)
{
    if (const TextAction* a = actionFor(text))
        return QLatin1String(a->handler);
    return text.startsWith(QLatin1String("ltrb")) ? QStringLiteral("setLTRB") : QString();
}

bool frmMain::txtMessage_Change(const QString& text)
{
    TraceScope t(trace_, QStringLiteral("txtMessage_Change"));
    t.line(text);
    if (const TextAction* a = actionFor(text)) {
        if (!a->run) {
            t.line(QLatin1String(a->handler) + QStringLiteral(": no handler in this version"));
            return false;
        }
        (this->*(a->run))();
        return true;
    }
    if (text.startsWith(QLatin1String("ltrb"))) {
        setLTRB(text.mid(5));
        return true;
    }
    return false;
}

void frmMain::setLTRB(const QString& text)
{
    const QStringList p = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    int v[4] = {0, 0, 0, 0};
    bool ok = p.size() == 4;
    for (int i = 0; ok && i < 4; ++i)
        v[i] = p[i].toInt(&ok);
    trace_.traceLine(QStringLiteral("setLTRB"), text);
    if (!ok || v[2] <= 0 || v[3] <= 0)
        return;
    // Left, top, width and height, as the host writes them.
    shown_.ltrb = QRect(v[0], v[1], v[2], v[3]);
    emit changed();
}

bool frmMain::clickControl(const QString& name)
{
    if (ended_)
        return false;
    // The controls a click by name reaches, and in which instances.
    struct Clickable {
        const char* name;
        bool newLinesOnly;
        void (frmMain::*click)();
    };
    static const Clickable clickables[] = {
        {"cmdOK", true, &frmMain::cmdOK_Click},
        {"cmdCancel", true, &frmMain::cmdCancel_Click},
        {"cmdClose", false, &frmMain::cmdClose_Click},
        {"cmdRefresh", false, &frmMain::cmdRefresh_Click},
        {"cmdDelAll", true, &frmMain::cmdDelAll_Click},
        {"cmdDel", false, &frmMain::cmdDel_Click},
        {"cmdAdd", false, &frmMain::cmdAdd_Click},
        {"mnuAddLineToFile", false, &frmMain::mnuAddLineToFile_Click},
        {"cmdIpus", false, &frmMain::cmdIpus_Click},
        {"cmdGoToIpusLine", false, &frmMain::cmdGoToIpusLine_Click},
        {"mnuAddConstantTransactions", false, &frmMain::mnuAddConstantTransactions_Click},
        {"mnuDailySummary", false, &frmMain::mnuDailySummary_Click},
        {"cmdTzefi", false, &frmMain::cmdTzefi_Click},
        {"cmdSubtractFromTzefi", false, &frmMain::cmdSubtractFromTzefi_Click},
        {"cmdBankCoordination", false, &frmMain::cmdBankCoordination_Click},
        {"mnuPerformBankCoordination", false, &frmMain::cmdBankCoordination_Click},
        {"cmdCoordinate", false, &frmMain::cmdCoordinate_Click},
        {"cmdExitCoordination", false, &frmMain::cmdExitCoordination_Click},
        {"cmdSetTargetDate", false, &frmMain::cmdSetTargetDate_Click},
        {"cmdGoToAutomaticCoordination", false, &frmMain::cmdGoToAutomaticCoordination_Click},
        {"mnuAutomaticBankCoordination", false, &frmMain::mnuAutomaticBankCoordination_Click},
        {"cmdSpecialFind", false, &frmMain::cmdSpecialFind_Click},
        {"mnuFindMatches", false, &frmMain::mnuFindMatches_Click},
        {"mnuMaxDayDiffForMatch", false, &frmMain::mnuMaxDayDiffForMatch_Click},
        {"mnuNDigitsForConfirmComparison", false, &frmMain::mnuNDigitsForConfirmComparison_Click},
        {"cmdNext", false, &frmMain::cmdNext_Click},
        {"cmdPrev", false, &frmMain::cmdPrev_Click},
        {"cmdMove", false, &frmMain::cmdMove_Click},
        {"mnuMoveDates", false, &frmMain::mnuMoveDates_Click},
        {"mnuTransferMoney", false, &frmMain::mnuTransferMoney_Click},
        {"mnuInvoiceKinds", false, &frmMain::mnuInvoiceKinds_Click},
        {"mnuCompare", false, &frmMain::mnuCompare_Click},
        {"mnuOpenBankReport", false, &frmMain::mnuOpenBankReport_Click},
    };
    // The period reports: one handler, by the period the control names.
    if (const QString period = periodOfControl(name); !period.isEmpty() && instance_.progMode != modeNewLines) {
        guarded(name, [this, &period] { makePeriodReport(period); });
        return true;
    }
    for (const Clickable& c : clickables) {
        if (name != QLatin1String(c.name) || (c.newLinesOnly && instance_.progMode != modeNewLines))
            continue;
        guarded(name, [this, &c] { (this->*c.click)(); });
        return true;
    }
    return false;
}

void frmMain::announceReady()
{
    QString text = shown_.caption + QStringLiteral(" | mode %1").arg(instance_.progMode);
    if (instance_.progMode == modeNewLines)
        text += QStringLiteral(" type %1").arg(instance_.newLineDialogType);
    // A detail child's label holds its selection, which its title does not.
    if (instance_.progMode == modeDetail)
        text += QStringLiteral(" | ") + shown_.lblFileName.trimmed();
    // From the event loop, so a scripted click never runs inside the start.
    QTimer::singleShot(0, this, [this, text] {
        if (!ended_)
            ui_.windowReady(QStringLiteral("frmMain"), text, [this](const QString& c) { clickControl(c); });
    });
}

} // namespace pelkor
