#include "frame/frmMain.h"

#include "file/Loader.h"
#include "file/Schema.h"
#include "frame/Format.h"
#include "frame/Instances.h"
#include "frame/Modes.h"
#include "seams/platform/ProfileFile.h"
#include "seams/ui/Ui.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QThread>

namespace pelkor {

using store::StoreError;
using ui::Buttons;
using ui::Icon;

namespace {
const QString title = QStringLiteral("פלקור");
const QString okWord = QStringLiteral("pelkor OK");
const QString closedWord = QStringLiteral("pelkor CLOSED");
const QString waitingWord = QStringLiteral("pelkor messages");
} // namespace

frmMain::frmMain(Environment e, QObject* parent)
    : QObject(parent), env(std::move(e)), ui(*env.ui),
      trace(env.paths.logDirectory(), env.arguments.join(QLatin1Char(' ')))
{
    messages_ = env.messages;
    if (!messages_) {
        ownMessages_ = std::make_unique<LocalMessages>();
        messages_ = ownMessages_.get();
    }
    timer2_.setSingleShot(true);
    timer2_.setInterval(500);
    connect(&timer2_, &QTimer::timeout, this, [this] { guarded(QStringLiteral("Timer2"), [this] { showOpenFileDialog(); }); });
    timer3_.setSingleShot(true);
    timer3_.setInterval(200);
    connect(&timer3_, &QTimer::timeout, this, [this] { guarded(QStringLiteral("Timer3"), [this] { Timer3_Timer(); }); });
    checker_.setInterval(400);
    connect(&checker_, &QTimer::timeout, this, [this] {
        guarded(QStringLiteral("timerCoordinationMessageChecker"), [this] { timerCoordinationMessageChecker_Timer(); });
    });
}

frmMain::~frmMain() = default;

void frmMain::setStatus(const QString& s)
{
    lblStatus = s;
    emit changed();
}

void frmMain::readIni()
{
    platform::ProfileFile ini(env.paths.iniFile());
    mnuCreateLogFileChecked = Trace::wantedBy(ini);
    nDigitsForConfirmComparison = ini.readInt(QStringLiteral("bank sync"), QStringLiteral("nDigitsForConfirmComparison"), 4);
    maxDayDiffForMatch = ini.readInt(QStringLiteral("bank sync"), QStringLiteral("maxDayDiffForMatch"), 30);
}

void frmMain::writeIni()
{
    platform::ProfileFile ini(env.paths.iniFile());
    ini.writeString(QStringLiteral("misc"), QStringLiteral("debug"), trace.noTrace() ? QStringLiteral("0") : QStringLiteral("1"));
    ini.writeString(QStringLiteral("bank sync"), QStringLiteral("nDigitsForConfirmComparison"),
                    QString::number(nDigitsForConfirmComparison));
    ini.writeString(QStringLiteral("bank sync"), QStringLiteral("maxDayDiffForMatch"), QString::number(maxDayDiffForMatch));
}

void frmMain::Form_Load()
{
    tempPath = env.paths.tempDir + QLatin1Char('/');
    simulateVisible = QFileInfo::exists(env.paths.programDir + QStringLiteral("/core67890"));
    logDirectory = env.paths.logDirectory();
    readIni();
    linesTable = QStringLiteral("pelkor");
    targetDate = env.today.addDays(-1);
    trace.setOn(mnuCreateLogFileChecked);
    TraceScope t(trace, QStringLiteral("Form_Load"));
    t.line(QStringLiteral("command: ") + env.arguments.join(QLatin1Char(' ')));
    initializeForm();
}

void frmMain::initializeForm()
{
    conv = 0;
    theCommand = env.arguments.join(QLatin1Char(' '));
    command = parseCommandLine(theCommand);
    // The outer host's boxes: a new-line child's fixed positions, or the
    // host's prefix in front of a main instance's verb.
    hostTextBox1 = command.hostTextBox1;
    hostTextBox2 = command.hostTextBox2;
    isFromKelvanto = hostTextBox1 != 0;
    using V = StartCommand::Verb;
    switch (command.verb) {
    case V::Empty:
        progMode = modeOpenedFile;
        timer2_.start();
        break;
    case V::WrongNewLineType:
        ui.msgBox(QStringLiteral("wrong newLineDialogType"), title);
        endProcess(1);
        return;
    case V::Wrong:
        trace.traceLine(QStringLiteral("initializeForm"), command.reason);
        // The box says only "wrong option"; whoever started us from a shell
        // reads why on the standard error.
        qWarning("pelkor: wrong option: %s", qUtf8Printable(command.reason));
        ui.msgBox(QStringLiteral("wrong option"), title);
        exitProg();
        return;
    default: {
        progMode = command.progMode;
        newLineDialogType = command.newLineDialogType;
        isMerged = command.isMerged;
        detailKind = command.detailKind;
        fromDate = command.fromDate;
        toDate = command.toDate;
        conv = command.conv;
        detailKindText = command.detailKindText;
        detailTypeIndex = command.detailTypeIndex;
        parentTxtMessage = command.parentTxtMessage;
        parentMessagesWindow = command.parentMessagesWindow;
        if (progMode == modeNewLines && newLineDialogType == lineDialogBadLines) {
            lblNewLines = QStringLiteral("בתנועות אלה חסר תאריך או סכום ולכן בכל שורה יש למלא תאריך/סכום או למחוק אותה.");
            linesTable = QStringLiteral("pelkor");
        }
        if (!OpenCon())
            return;
        const LoadResult r = openDB(*this, false);
        if (ended_ || r == LoadResult::Ended || r == LoadResult::NoLines)
            return;
        if (!(progMode == modeNewLines && newLineDialogType == lineDialogBadLines))
            waitWhile([this] { return checker_.isActive(); });
        if (ended_)
            return;
        visible = true;
        announceReady();
        // A working run stays open on its lines: no report, no end.
        if (command.verb != V::Open && command.verb != V::Bank)
            timer3_.start();
        break;
    }
    }
    gridVisible = gridVisible || progMode == modeOpenedFile;
    setStatus(QStringLiteral("מוכן"));
}

QString frmMain::readParameter(const QString& key)
{
    const QString path = env.paths.paramsFile();
    try {
        store::Connection cn1;
        if (!QFileInfo::exists(path)) {
            // First start on this machine: the open dialogs start in the
            // data directory, where the demo ledger lies too.
            QDir().mkpath(QFileInfo(path).absolutePath());
            schema::createParams(path, env.paths.dataDir, QString());
        }
        cn1.open(path, store::Connection::OpenMode::ReadOnly);
        auto rs = cn1.execute(QStringLiteral("SELECT T FROM PARAMETER WHERE PARAMETER='%1'").arg(fixString(key)));
        return rs.eof() ? QString() : RemoveNull(rs.field(0));
    } catch (const StoreError& e) {
        trace.traceLine(QStringLiteral("readParameter"), e.message());
        return {};
    }
}

bool frmMain::OpenCon()
{
    TraceScope t(trace, QStringLiteral("OpenCon"));
    if (progMode == modeDetail || isMerged || progMode == modeNewLines)
        filePath = command.file;
    else if (progMode != modeOpenedFile)
        filePath = command.file.isEmpty() ? readParameter(QStringLiteral("CURRENTFILE")) : command.file;
    lblFileName = getShortFileName(QDir::toNativeSeparators(QFileInfo(filePath).absoluteFilePath()).replace(QLatin1Char('\\'), QLatin1Char('/')))
        + QStringLiteral("   ");
    const QString shortName = lblFileName.trimmed();
    if (progMode != modeDetail) {
        caption = QStringLiteral("פלקור - ") + shortName;
    } else {
        QString s = shortName + QStringLiteral(" - ");
        s += detailKind == 0 ? QStringLiteral("הכנסות") : detailKind == 1 ? QStringLiteral("הוצאות") : QStringLiteral("תנועות");
        if (detailKind >= 0 && detailKind <= 2) {
            s += QStringLiteral(" לתאריך ") + formatDate224(fromDate);
            if (conv == 0)
                s += QStringLiteral(" (ללא המרה)");
            else if (conv > 0)
                s += QStringLiteral(" (מוכפל ב: %1)").arg(conv, 0, 'f', 4);
            else
                s += QStringLiteral(" (מחולק ב: %1)").arg(-conv, 0, 'f', 4);
        }
        lblFileName = s;
        caption = QStringLiteral("פירוט תנועות - ") + shortName;
    }
    emit changed();
    // Look before writing anything: a file that is no ledger is told and
    // left exactly as it was.
    QString problem;
    if (filePath.isEmpty() || !QFileInfo(filePath).isFile()) {
        problem = QStringLiteral("הקובץ \"%1\" לא נמצא.").arg(filePath);
    } else {
        try {
            store::Connection look;
            look.open(filePath, store::Connection::OpenMode::ReadOnly);
            if (!look.tableExists(QStringLiteral("pelkor")))
                problem = QStringLiteral("הקובץ \"%1\" אינו קובץ פלקור: אין בו טבלת שורות.").arg(filePath);
        } catch (const StoreError& e) {
            t.line(e.message());
            problem = QStringLiteral("הקובץ \"%1\" אינו קובץ פלקור ולא ניתן לפתוח אותו.").arg(filePath);
        }
    }
    if (problem.isEmpty() && !reopenCon())
        problem = QStringLiteral("לא ניתן לפתוח את הקובץ \"%1\" לכתיבה. ייתכן שהוא לקריאה בלבד.").arg(filePath);
    if (!problem.isEmpty()) {
        t.line(problem);
        ui.msgBox(problem, title, Buttons::OK, Icon::Critical);
        endProcess(1);
        return false;
    }
    return true;
}

bool frmMain::reopenCon()
{
    try {
        cn.open(filePath);
        // A file the user may only read opens without complaint; find out now.
        if (!QFileInfo(filePath).isWritable())
            throw StoreError(StoreError::Kind::Open, QStringLiteral("read-only file"), filePath);
        isCnOpen = true;
    } catch (const StoreError& e) {
        trace.traceLine(QStringLiteral("reopenCon"), e.message());
        cn.close();
        isCnOpen = false;
    }
    return isCnOpen;
}

void frmMain::closeCn()
{
    cn.close();
    isCnOpen = false;
}

void frmMain::showOpenFileDialog()
{
    TraceScope t(trace, QStringLiteral("showOpenFileDialog"));
    ui::FileDialogSpec spec;
    spec.title = QStringLiteral("בחר קובץ");
    spec.filter = QStringLiteral("פלקור (*.pkr)|*.pkr");
    spec.defaultExt = QStringLiteral("pkr");
    spec.startDir = readParameter(QStringLiteral("directory"));
    spec.fileMustExist = true;
    spec.pathMustExist = true;
    const QStringList chosen = ui.openFileDialog(spec);
    if (chosen.isEmpty() || chosen.first().isEmpty()) {
        t.line(QStringLiteral("cancelled"));
        endProcess(0);
        return;
    }
    setStatus(QStringLiteral("פותח קשר..."));
    filePath = chosen.first();
    if (!OpenCon())
        return;
    const LoadResult r = openDB(*this, false);
    if (ended_ || r == LoadResult::Ended || r == LoadResult::NoLines)
        return;
    waitWhile([this] { return checker_.isActive(); });
    if (ended_)
        return;
    visible = true;
    emit changed();
    announceReady();
    timer3_.start();
}

void frmMain::Timer3_Timer()
{
    timer3_.stop();
    if (ended_)
        return;
    if (lines.empty() && progMode == modeDetail)
        return;   // the detail of an empty selection opens on a new line (new lines)
    if (progMode == modeNewLines && newLineDialogType == lineDialogBadLines)
        return;
    ui.msgBox(QStringLiteral("תיקון הקובץ הסתיים בהצלחה"), title);
    exitProg();
}

void frmMain::openNewDialog(int type)
{
    TraceScope t(trace, QStringLiteral("openNewDialog"));
    messages_->setCaption(waitingWord);
    checker_.start();
    const QString line = newLineCommand(type, messages_->id(), hostTextBox1, hostTextBox2, filePath);
    t.line(line);
    if (!env.children || !env.children->start(line)) {
        t.line(QStringLiteral("the child did not start"));
        ui.msgBox(QStringLiteral("לא ניתן היה לפתוח את חלון השורות החדשות."), title, Buttons::OK, Icon::Critical);
        messages_->setCaption(closedWord);
    }
}

void frmMain::timerCoordinationMessageChecker_Timer()
{
    QString word = messages_->caption();
    if (word != okWord && word != closedWord) {
        if (!env.children || env.children->running())
            return;
        // The child ended without a word (a crash, a kill): as if it closed.
        trace.traceLine(QStringLiteral("timerCoordinationMessageChecker"),
                        QStringLiteral("the child ended without an answer"));
        word = closedWord;
    }
    checker_.stop();
    TraceScope t(trace, QStringLiteral("timerCoordinationMessageChecker"));
    t.line(word);
    enabled = true;
    if (word == okWord) {
        reopenCon();
        if (newLineDialogType == lineDialogBadLines) {
            // The child committed before it answered; look until its
            // writes show, for a few seconds at most, then load anyway (a
            // line still bad is handed over again).
            for (int tries = 0; tries < 50 && !ended_; ++tries) {
                closeCn();
                reopenCon();
                try {
                    if (cn.execute(badLinesStatement(linesTable)).recordCount() == 0)
                        break;
                } catch (const StoreError& e) {
                    t.line(e.message());
                    break;
                }
                QThread::msleep(100);
            }
            gridVisible = true;
            emit changed();
            openDB(*this, false);
        }
    } else {
        reopenCon();
        if (newLineDialogType == lineDialogBadLines)
            exitProg();
    }
}

void frmMain::sendToParent(const QString& text)
{
    const std::uint32_t to = progMode == modeNewLines ? parentMessagesWindow : parentTxtMessage;
    if (to == 0)
        return;
    trace.traceLine(QStringLiteral("sendToParent"), text);
    if (!env.bus || !env.bus->send(to, text))
        trace.traceLine(QStringLiteral("sendToParent"), QStringLiteral("not delivered to %1").arg(idText(to)));
}

void frmMain::sendToExcel(const QString& text)
{
    if (hostTextBox1 == 0 || !env.bus)
        return;
    if (!env.bus->sendToHost(hostTextBox1, hostTextBox2, text))
        trace.traceLine(QStringLiteral("sendToExcel"), QStringLiteral("not delivered: ") + text);
}

void frmMain::cmdOK_Click()
{
    TraceScope t(trace, QStringLiteral("cmdOK_Click"));
    if (progMode != modeNewLines || openDBisBusy)
        return;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].Date == nullDate() || !lines[i].Date.isValid()) {
            row = int(i) + 1;
            emit changed();
            ui.msgBox(QStringLiteral("בשורה זו עדיין חסר תאריך ולכן יש למלא בה תאריך או למחוק אותה"),
                      QStringLiteral("שגיאה"));
            return;
        }
    }
    if (newLineDialogType == lineDialogBadLines) {
        store::Transaction tx(cn);
        sql.executeSQL(t.proc(), QStringLiteral("update %1 set [in]=0 where not isnumeric([in])").arg(linesTable));
        sql.executeSQL(t.proc(), QStringLiteral("update %1 set [out]=0 where not isnumeric([out])").arg(linesTable));
        tx.commit();
        closeCn();
        reopenCon();
    }
    sendToParent(okWord);
    exitProg();
}

void frmMain::cmdCancel_Click()
{
    if (progMode != modeNewLines)
        return;
    sendToParent(closedWord);
    exitProg();
}

namespace {

// Every text txtMessage takes, in the order it is compared, with the
// handler it runs; run is null for a handler this version does not have
// yet. A handler that several texts run is one entry, so they cannot drift
// apart: "gotoipus" is cmdIpus_Click like "setipus", not
// cmdGoToIpusLine_Click.
struct TextAction {
    const char* texts[2];
    const char* handler;
    void (frmMain::*run)();
};
const TextAction textActions[] = {
    {{"coordinate", nullptr}, "cmdCoordinate_Click", nullptr},
    {{"add", nullptr}, "cmdAdd_Click", nullptr},
    {{"gotoautomatic", nullptr}, "cmdGoToAutomaticCoordination_Click", nullptr},
    {{"setipus", "gotoipus"}, "cmdIpus_Click", nullptr},
    {{"refresh", "closed"}, "cmdRefresh_Click", &frmMain::cmdRefresh_Click},
    {{"close", nullptr}, "cmdClose_Click", &frmMain::cmdClose_Click},
    {{"bankcoord", nullptr}, "cmdBankCoordination_Click", nullptr},
    {{"delete", nullptr}, "msfgMain_KeyUp", nullptr},   // key code 46, no shift
};

const TextAction* actionFor(const QString& text)
{
    for (const TextAction& a : textActions)
        for (const char* t : a.texts)
            if (t && text == QLatin1String(t))
                return &a;
    return nullptr;
}

} // namespace

QString frmMain::txtMessageHandler(const QString& text)
{
    if (const TextAction* a = actionFor(text))
        return QLatin1String(a->handler);
    return text.startsWith(QLatin1String("ltrb")) ? QStringLiteral("setLTRB") : QString();
}

bool frmMain::txtMessage_Change(const QString& text)
{
    TraceScope t(trace, QStringLiteral("txtMessage_Change"));
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
    trace.traceLine(QStringLiteral("setLTRB"), text);
    if (!ok || v[2] <= 0 || v[3] <= 0)
        return;
    // Left, top, width and height, as the host writes them.
    ltrb = QRect(v[0], v[1], v[2], v[3]);
    emit changed();
}

bool frmMain::clickControl(const QString& name)
{
    if (ended_)
        return false;
    if (progMode == modeNewLines) {
        if (name == QLatin1String("cmdOK")) {
            guarded(name, [this] { cmdOK_Click(); });
            return true;
        }
        if (name == QLatin1String("cmdCancel")) {
            guarded(name, [this] { cmdCancel_Click(); });
            return true;
        }
    }
    if (name == QLatin1String("cmdClose")) {
        guarded(name, [this] { cmdClose_Click(); });
        return true;
    }
    if (name == QLatin1String("cmdRefresh")) {
        guarded(name, [this] { cmdRefresh_Click(); });
        return true;
    }
    return false;
}

void frmMain::announceReady()
{
    QString text = caption + QStringLiteral(" | mode %1").arg(progMode);
    if (progMode == modeNewLines)
        text += QStringLiteral(" type %1").arg(newLineDialogType);
    // A detail child's label holds its selection, which its title does not.
    if (progMode == modeDetail)
        text += QStringLiteral(" | ") + lblFileName.trimmed();
    // From the event loop, so a scripted click never runs inside the start.
    QTimer::singleShot(0, this, [this, text] {
        if (!ended_)
            ui.windowReady(QStringLiteral("frmMain"), text, [this](const QString& c) { clickControl(c); });
    });
}

void frmMain::handleZeroLines()
{
    if ((progMode == modeNewLines && newLineDialogType == lineDialogUnconfirmedPelkor) || progMode == modeDetail) {
        exitProg();
        return;
    }
    ui.msgBox(QStringLiteral("אין תנועות"), QStringLiteral("פלקור מזומנים"));
    exitProg();
}

void frmMain::guarded(const QString& proc, const std::function<void()>& fn)
{
    QString text;
    try {
        fn();
        return;
    } catch (const StoreError& e) {
        text = e.message();
    } catch (const std::exception& e) {
        text = QString::fromLocal8Bit(e.what());
    }
    trace.traceLine(proc, QStringLiteral("unexpected failure: ") + text);
    // Whatever the failure interrupted, the window must not stay locked.
    openDBisBusy = false;
    frameButtonsEnabled = true;
    enabled = true;
    emit changed();
    ui.msgBox(QStringLiteral("אירעה שגיאה בלתי צפויה ב-%1:\n%2\nהפעולה לא הושלמה; הנתונים שבקובץ לא נפגעו.").arg(proc, text),
              title, Buttons::OK, Icon::Critical);
}

void frmMain::waitWhile(const std::function<bool()>& pred)
{
    while (!ended_ && pred()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    }
}

bool frmMain::Form_QueryUnload()
{
    if (openDBisBusy)
        return false;
    exitProg();
    return true;
}

void frmMain::cmdClose_Click()
{
    exitProg();
}

void frmMain::cmdRefresh_Click()
{
    TraceScope t(trace, QStringLiteral("cmdRefresh_Click"));
    if (openDBisBusy)
        return;
    if (!lines.empty()) {
        const int r = std::max(row, 1);
        theID = lines[size_t(std::min<int>(r, int(lines.size())) - 1)].Id;
        theOffset = r - topRow;
    }
    frameButtonsEnabled = false;
    closeCn();
    reopenCon();
    openDB(*this, true);
    frameButtonsEnabled = true;
    emit changed();
    if (progMode == modeDetail)
        sendToParent(QStringLiteral("refresh"));
}

void frmMain::exitProg()
{
    if (exiting_)
        return;
    exiting_ = true;
    TraceScope t(trace, QStringLiteral("exitProg"));
    for (const char* name : {"new_versions.txt", "new_c", "matchPage.htm"})
        QFile::remove(tempPath + QLatin1String(name));
    checker_.stop();
    if (progMode != modeNewLines && isCnOpen) {
        for (const char* table : {"tempPelkor", "bckpPelkor", "savedPelkor"}) {
            try {
                cn.execute(QStringLiteral("DROP TABLE ") + QLatin1String(table));
            } catch (const StoreError&) {
                // Not there: nothing to drop.
            }
        }
    }
    closeCn();
    if ((progMode == modeDetail || (progMode == modeMergedReport && isMerged)) && parentTxtMessage != 0)
        sendToParent(sql.fileChanged ? QStringLiteral("closed") : QStringLiteral("nochange"));
    writeIni();
    if (visible && !filePath.isEmpty() && reopenCon()) {
        try {
            cn.execute(QStringLiteral("UPDATE Defaults SET isAuto=%1").arg(mnuAutomaticBankCoordinationChecked ? 1 : 0));
        } catch (const StoreError& e) {
            t.line(e.message());
        }
    }
    closeCn();
    if (!feedPath.isEmpty() && !simulateVisible && !isSimulate)
        QFile::remove(feedPath);
    if (progMode != modeNewLines)
        sendToExcel(QStringLiteral("unload"));
    endProcess(0);
}

void frmMain::endProcess(int code)
{
    if (ended_)
        return;
    ended_ = true;
    exitCode_ = code;
    timer2_.stop();
    timer3_.stop();
    checker_.stop();
    trace.setOn(false);
    if (env.endProcess)
        env.endProcess(code);
}

} // namespace pelkor
