// Session: the statement importer's start and the wait for its answer,
// and the working tables a killed session left. See Session.h.
#include "reconcile/Session.h"

#include "base/Instance.h"
#include "base/Instances.h"
#include "base/Shown.h"
#include "base/Titles.h"
#include "base/Trace.h"
#include "file/OpenLedger.h"
#include "file/Upgrades.h"
#include "seams/bus/MailboxId.h"
#include "seams/store/StoreError.h"
#include "seams/ui/Ui.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

namespace pelkor::reconcile {

namespace {

const QString answerOK = QStringLiteral("pelkor OK");
const QString answerClosed = QStringLiteral("pelkor CLOSED");
const QString nothingYet = QStringLiteral("pelkor messages");
const QString importerTitle = QStringLiteral("עידכון נתונים");

} // namespace

void Session::runGuarded(const QString& proc, const std::function<void()>& fn)
{
    if (p_.guarded)
        p_.guarded(proc, fn);
    else
        fn();
}

void Session::callDataDownloader()
{
    OpenLedger& led = p_.ledger;
    TraceScope t(led.trace, QStringLiteral("callReallyDataDownloader"));
    if (!p_.importer || !p_.messages)
        return;
    p_.messages->setCaption(nothingYet);
    nSeconds = 0;
    downloading_ = true;
    shown.cmdBankCoordinationEnabled = false;
    shown.lblWait = true;
    shown.lblPoints.clear();
    changed();

    const QString bank = QString::number(led.iBank);
    const QStringList second{QStringLiteral("c"), QStringLiteral("+") + bank, bus::idToText(p_.messages->id()),
                             QString::number(led.nDays)};
    t.line(p_.importer->program() + QLatin1Char(' ') + second.join(QLatin1Char(' ')));
    // The first start prepares the feed's folder and ends; the window comes
    // with the second.
    if (!p_.importer->prepare({QStringLiteral("f") + bank}) || !p_.importer->start(second)) {
        t.line(QStringLiteral("the importer did not start"));
        handleUpdateFailure(false, QStringLiteral("תוכנת קליטת דפי החשבון לא הופעלה (\u2068%1\u2069).")
                                       .arg(QDir::toNativeSeparators(p_.importer->program())));
        return;
    }
    timerMessageChecker_.start();
    timerWindowFinder_.start();
}

void Session::downloadEnded()
{
    downloading_ = false;
    timerMessageChecker_.stop();
    timerWindowFinder_.stop();
    shown.lblWait = false;
    shown.lblPoints.clear();
    shown.cmdBankCoordinationEnabled = true;
    changed();
}

void Session::timerMessageChecker_Timer()
{
    if (!downloading_)
        return;
    // Whether the importer still ran is read before its answer: an answer
    // written just before it ended is then never taken for silence.
    const bool alive = p_.importer->running();
    const QString caption = p_.messages->caption();
    if (caption == answerOK) {
        p_.ledger.trace.traceLine(QStringLiteral("timerMessageChecker"), caption);
        downloadEnded();
        processDownloadedData();
        return;
    }
    if (caption == answerClosed) {
        handleUpdateFailure(false);
        return;
    }
    if (!alive) {
        handleUpdateFailure(false, p_.importer->crashed()
                                       ? QStringLiteral("תוכנת קליטת דפי החשבון קרסה.")
                                       : QStringLiteral("תוכנת קליטת דפי החשבון הסתיימה בלי למסור נתונים (קוד %1).")
                                             .arg(p_.importer->exitCode()));
        return;
    }
    nSeconds += timerMessageChecker_.interval() / 1000;
    if (nSeconds > downloadLimitSeconds) {
        handleUpdateFailure(true, QStringLiteral("לא התקבלו נתונים בתוך %1 דקות.").arg((downloadLimitSeconds + 59) / 60));
        return;
    }
    shown.lblPoints = QString(nSeconds % 4, QLatin1Char('.'));
    changed();
}

void Session::timerBankDataDownloaderWindowFinder_Timer()
{
    if (p_.importer && p_.importer->bringToFront(importerTitle))
        timerWindowFinder_.stop();
}

void Session::handleUpdateFailure(bool mustCloseDownloader, const QString& reason)
{
    OpenLedger& led = p_.ledger;
    TraceScope t(led.trace, QStringLiteral("handleUpdateFailure"));
    if (!reason.isEmpty())
        t.line(reason);
    downloadEnded();
    // What the importer keeps between runs is its own; the name is the one
    // it has always used.
    QFile::remove(p_.tempPath + QStringLiteral("sysrtmgr1.exe"));
    if (mustCloseDownloader && p_.importer)
        p_.importer->close();
    shown.bankGridVisible = false;
    shown.mnuPerformBankCoordinationCaption = shown.cmdBankCoordinationCaption = QStringLiteral("יציאה");
    shown.endCoordinationPicture = false;
    changed();
    QString text = QStringLiteral("עדכון הנתונים עבור '") + p_.shown.lblFileName.trimmed() + QStringLiteral("' נכשל.") + u'\n';
    if (!reason.isEmpty())
        text += reason + u'\n';
    text += QStringLiteral("הינך מועבר להתאמה ויזואלית.");
    p_.ui.msgBox(text, QStringLiteral("שגיאה"), ui::Buttons::OK, ui::Icon::Critical);
    if (p_.sendToExcel)
        p_.sendToExcel(QStringLiteral("visual"));
    // The visual form for this session only: the file's choice stands for
    // the next one.
    led.isAutomatic = false;
    cmdBankCoordination_Click();
    led.isAutomatic = p_.shown.mnuAutomaticBankCoordinationChecked;
}

void Session::closeDownloader()
{
    downloading_ = false;
    timerMessageChecker_.stop();
    timerWindowFinder_.stop();
    if (p_.importer)
        p_.importer->close();
}

// ---- a session that did not end --------------------------------------------------

QString Session::sessionLockPath() const
{
    const QString file = QFileInfo(p_.ledger.filePath).absoluteFilePath();
    const QByteArray key = QCryptographicHash::hash(file.toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    return p_.tempPath + QStringLiteral("pelkor-session-") + QString::fromLatin1(key) + QStringLiteral(".lock");
}

void Session::holdSessionLock()
{
    if (sessionLock_ && sessionLock_->isLocked())
        return;
    QDir().mkpath(p_.tempPath);
    sessionLock_ = std::make_unique<QLockFile>(sessionLockPath());
    // Only a dead owner makes a lock stale, never its age: a session may
    // last all day.
    sessionLock_->setStaleLockTime(0);
    if (!sessionLock_->tryLock(0))
        p_.ledger.trace.traceLine(QStringLiteral("createTempTable"), QStringLiteral("another run holds a session of this file"));
}

bool Session::mayDropWorkingTables()
{
    if (sessionLock_ && sessionLock_->isLocked())
        return true;
    QDir().mkpath(p_.tempPath);
    QLockFile probe(sessionLockPath());
    probe.setStaleLockTime(0);
    if (!probe.tryLock(0))
        return false;
    probe.unlock();
    return true;
}

void Session::noticeInterruptedSession()
{
    OpenLedger& led = p_.ledger;
    // This run's own session, under way or finished, is no stranger's.
    if (active() || downloading_ || (sessionLock_ && sessionLock_->isLocked()))
        return;
    if (!led.isCnOpen || !led.cn.tableExists(QStringLiteral("tempPelkor")) || !mayDropWorkingTables())
        return;
    TraceScope t(led.trace, QStringLiteral("noticeInterruptedSession"));
    handleBankInfo(led);
    QString text = QStringLiteral("התאמת הבנק הקודמת של '") + p_.shown.lblFileName.trimmed() +
                   QStringLiteral("' נקטעה לפני שהושלמה. הקובץ נשאר כפי שהיה לפניה, וההתאמות שנעשו בה לא נשמרו.") + u'\n';
    text += led.isSimulate
        ? QStringLiteral("כדי להתאים שוב לחץ \"התאמת בנק\".")
        : QStringLiteral("כדי להתאים שוב לחץ \"התאמת בנק\" וקלוט שוב את דף החשבון בחלון \"עידכון נתונים\".");
    p_.ui.msgBox(text, QStringLiteral("התאמה"), ui::Buttons::OK, ui::Icon::Information);
    try {
        store::Transaction tx(led.cn);
        for (const char* table : {"tempPelkor", "savedPelkor"})
            if (led.cn.tableExists(QLatin1String(table)))
                led.sql.executeSQL(t.proc(), QStringLiteral("DROP TABLE ") + QLatin1String(table));
        tx.commit();
    } catch (const store::StoreError& e) {
        // Told again at the next start; the table of lines is not touched.
        t.line(e.message());
    }
}

} // namespace pelkor::reconcile
