#include "frame/frmMain.h"

#include "file/Loader.h"
#include "file/Opening.h"
#include "frame/Controls.h"
#include "frame/FrameWords.h"
#include "frame/TextActions.h"
#include "base/BusyFile.h"
#include "file/Schema.h"
#include "base/Format.h"
#include "base/Instances.h"
#include "base/Modes.h"
#include "seams/platform/ProfileFile.h"
#include "seams/ui/Ui.h"
#include "seams/web/ScriptedWebView.h"

#include <QCoreApplication>
#include <algorithm>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>

namespace pelkor {

using store::StoreError;
using ui::Buttons;
using ui::Icon;

using namespace frameWords;

frmMain::frmMain(Environment e, QObject* parent)
    : QObject(parent), env_(std::move(e)), ui_(*env_.ui),
      trace_(env_.paths.logDirectory(), env_.arguments.join(QLatin1Char(' ')))
{
    ledger_.cn.setBusyPolicy(&busy_);
    // The layout active now is the one given back at exit.
    if (!env_.layouts) {
        noLayouts_ = platform::noKeyboardLayouts();
        env_.layouts = noLayouts_.get();
    }
    kb_ = std::make_unique<KbLayout>(*env_.layouts);
    messages_ = env_.messages;
    if (!messages_) {
        ownMessages_ = std::make_unique<LocalMessages>();
        messages_ = ownMessages_.get();
    }
    // The repair run shows its (empty) window before it asks for a file:
    // half a second lets the desktop paint it first.
    timer2_.setSingleShot(true);
    timer2_.setInterval(500);
    connect(&timer2_, &QTimer::timeout, this, [this] { guarded(QStringLiteral("Timer2"), [this] { showOpenFileDialog(); }); });
    // A finished repair says so once the window has painted its lines.
    timer3_.setSingleShot(true);
    timer3_.setInterval(200);
    connect(&timer3_, &QTimer::timeout, this, [this] { guarded(QStringLiteral("Timer3"), [this] { Timer3_Timer(); }); });
    // A new-line child answers by setting frmMessages' caption, which is
    // read by polling: often enough that the parent seems to wake at once,
    // seldom enough to cost nothing while the child works.
    checker_.setInterval(400);
    connect(&checker_, &QTimer::timeout, this, [this] {
        guarded(QStringLiteral("timerCoordinationMessageChecker"), [this] { timerCoordinationMessageChecker_Timer(); });
    });
    // The session keeps the folders it writes to from its start.
    instance_.tempPath = env_.paths.tempDir + QLatin1Char('/');
    instance_.logDirectory = env_.paths.logDirectory();
    noBankPage_ = std::make_unique<web::ScriptedWebView>();
    session_ = std::make_unique<reconcile::Session>(sessionParts());
    session_->shownChanged = [this] { emit changed(); };
    session_->finder.changed = [this] { emit changed(); };
    finder_.setOtherGrid({&session_->bank.msfgBank, [this] { return session_->bank.iBankRowAboveRed; },
                          [this] { session_->links.followCursor(true); }});
    // Another process's write is noticed within a second. A tick that
    // comes while a handler waits (a question, a dialog) waits too.
    watchFile_.setInterval(500);
    connect(&watchFile_, &QTimer::timeout, this, [this] {
        if (handlerDepth_ == 0)
            guarded(QStringLiteral("timerWatchFile"), [this] { timerWatchFile_Timer(); });
    });
}

frmMain::~frmMain() = default;

charts::DailySummaryParts frmMain::dailyParts()
{
    // The day grid moves the main grid as a user's move would: the cell is
    // left (and committed), then the row entered.
    return charts::DailySummaryParts{ledger_, instance_, grid_, shown_, *this,
                                     env_.paths.programDir + QStringLiteral("/images/groupBorder.png"), [this](int row) {
                                         grid::GridModel& g = grid_.msfgMain;
                                         editor_.msfgMainLeaveCell();
                                         g.setTopRow(clipRowNum(row - g.visibleRows() / 2, g.Rows()));
                                         g.setRow(clipRowNum(row, g.Rows()));
                                         msfgMain_EnterCell();
                                     },
                                     [this](const QString& theCommand) {
                                         return env_.children && env_.children->start(theCommand);
                                     }};
}

LoadParts frmMain::loadParts()
{
    return LoadParts{ledger_, instance_, grid_, shown_, ui_, *this};
}

void frmMain::setStatus(const QString& s)
{
    shown_.lblStatus = s;
    emit changed();
}

void frmMain::readIni()
{
    platform::ProfileFile ini(env_.paths.iniFile());
    shown_.mnuCreateLogFileChecked = Trace::wantedBy(ini);
    ledger_.nDigitsForConfirmComparison = ini.readInt(QStringLiteral("bank sync"), QStringLiteral("nDigitsForConfirmComparison"), 4);
    ledger_.maxDayDiffForMatch = ini.readInt(QStringLiteral("bank sync"), QStringLiteral("maxDayDiffForMatch"), 30);
}

void frmMain::writeIni()
{
    platform::ProfileFile ini(env_.paths.iniFile());
    ini.writeString(QStringLiteral("misc"), QStringLiteral("debug"), trace_.noTrace() ? QStringLiteral("0") : QStringLiteral("1"));
    ini.writeString(QStringLiteral("bank sync"), QStringLiteral("nDigitsForConfirmComparison"),
                    QString::number(ledger_.nDigitsForConfirmComparison));
    ini.writeString(QStringLiteral("bank sync"), QStringLiteral("maxDayDiffForMatch"), QString::number(ledger_.maxDayDiffForMatch));
}

void frmMain::Form_Load()
{
    instance_.tempPath = env_.paths.tempDir + QLatin1Char('/');
    instance_.simulateVisible = QFileInfo::exists(env_.paths.programDir + QStringLiteral("/core67890"));
    instance_.logDirectory = env_.paths.logDirectory();
    readIni();
    ledger_.linesTable = QStringLiteral("pelkor");
    ledger_.targetDate = env_.today.addDays(-1);
    trace_.setOn(shown_.mnuCreateLogFileChecked);
    TraceScope t(trace_, QStringLiteral("Form_Load"));
    t.line(QStringLiteral("command: ") + env_.arguments.join(QLatin1Char(' ')));
    initializeForm();
}

void frmMain::initializeForm()
{
    instance_.detail.conv = 0;
    instance_.theCommand = env_.arguments.join(QLatin1Char(' '));
    instance_.command = parseCommandLine(instance_.theCommand);
    // The outer host's boxes: a new-line child's fixed positions, or the
    // host's prefix in front of a main instance's verb.
    instance_.hostTextBox1 = instance_.command.hostTextBox1;
    instance_.hostTextBox2 = instance_.command.hostTextBox2;
    instance_.isFromKelvanto = instance_.hostTextBox1 != 0;
    using V = StartCommand::Verb;
    switch (instance_.command.verb) {
    case V::Empty:
        instance_.progMode = modeOpenedFile;
        timer2_.start();
        break;
    case V::WrongNewLineType:
        ui_.msgBox(QStringLiteral("wrong newLineDialogType"), title);
        endProcess(1);
        return;
    case V::Wrong:
        trace_.traceLine(QStringLiteral("initializeForm"), instance_.command.reason);
        // The box says only "wrong option"; whoever started us from a shell
        // reads why on the standard error.
        qWarning("pelkor: wrong option: %s", qUtf8Printable(instance_.command.reason));
        ui_.msgBox(QStringLiteral("wrong option"), title);
        exitProg();
        return;
    default: {
        instance_.progMode = instance_.command.progMode;
        instance_.newLineDialogType = instance_.command.newLineDialogType;
        instance_.isMerged = instance_.command.isMerged;
        instance_.detail.kind = instance_.command.detailKind;
        instance_.detail.fromDate = instance_.command.fromDate;
        instance_.detail.toDate = instance_.command.toDate;
        instance_.detail.conv = instance_.command.conv;
        instance_.detail.kindText = instance_.command.detailKindText;
        instance_.detail.typeIndex = instance_.command.detailTypeIndex;
        instance_.parentTxtMessage = instance_.command.parentTxtMessage;
        instance_.parentMessagesWindow = instance_.command.parentMessagesWindow;
        if (instance_.progMode == modeNewLines && instance_.newLineDialogType == lineDialogBadLines) {
            shown_.lblNewLines = QStringLiteral("בתנועות אלה חסר תאריך או סכום ולכן בכל שורה יש למלא תאריך/סכום או למחוק אותה.");
            ledger_.linesTable = QStringLiteral("pelkor");
        } else if (instance_.progMode == modeNewLines) {
            // The dialogs of a reconciliation work on its working table.
            static const QString asks[] = {
                QStringLiteral("השלם את שורת האיזון או תקן את השורות, כך שסכומן יהיה כסכום שורת הבנק."),
                QStringLiteral("שורות הבנק שלא הותאמו יתווספו לפלקור: השלם את הסיווג והסוג של כל שורה."),
                QStringLiteral("שורות הפלקור שלא הותאמו יועברו ליום שאחרי תאריך ההתאמה: שנה את התאריך שלהן לתאריך מאוחר יותר, או מחק אותן."),
            };
            shown_.lblNewLines = asks[std::clamp(int(instance_.newLineDialogType), 0, 2)];
            ledger_.linesTable = QStringLiteral("tempPelkor");
        }
        // A working run with no current file (a start from the desktop's
        // menu): the user picks a ledger, or names a new one.
        if (instance_.command.verb == V::Open && instance_.command.file.isEmpty()) {
            const QString current = readParameter(QStringLiteral("CURRENTFILE"));
            if (current.isEmpty() || !QFileInfo::exists(current)) {
                trace_.traceLine(QStringLiteral("initializeForm"), QStringLiteral("no current file: ") + current);
                instance_.command.file = chooseLedger();
                if (instance_.command.file.isEmpty()) {
                    endProcess(0);
                    return;
                }
            }
        }
        if (!OpenCon())
            return;
        LoadParts parts = loadParts();
        const LoadResult r = openDB(parts, false);
        if (ended_ || r == LoadResult::Ended || r == LoadResult::NoLines)
            return;
        if (!(instance_.progMode == modeNewLines && instance_.newLineDialogType == lineDialogBadLines))
            waitWhile([this] { return checker_.isActive(); });
        if (ended_)
            return;
        shown_.visible = true;
        if (instance_.command.verb == V::DayBalance)
            daily_.createDailySummary(true);
        if (instance_.progMode == modeDetail || instance_.progMode == modeNewLines || instance_.isMerged)
            watchParent();
        if (instance_.command.verb == V::Open || instance_.command.verb == V::Bank || instance_.command.verb == V::DayBalance) {
            rememberRecent(ledger_.filePath);
            // A session of this file killed before it ended is told now.
            session_->noticeInterruptedSession();
            watchFile_.start();
        }
        announceReady();
        if (instance_.command.verb == V::Merged) {
            // A merged instance is its period report: the main window stays
            // hidden, and the report's close ends the run.
            shown_.visible = false;
            QTimer::singleShot(0, this, [this] { guarded(QStringLiteral("openMergedReport"), [this] { openMergedReport(); }); });
        } else if (instance_.command.verb != V::Open && instance_.command.verb != V::Bank
                   && instance_.command.verb != V::DayBalance) {
            // A working run stays open on its lines: no report, no end.
            timer3_.start();
        }
        break;
    }
    }
    shown_.gridVisible = shown_.gridVisible || instance_.progMode == modeOpenedFile;
    // The bad-lines child tells what its buttons do with lines not mended.
    setStatus(instance_.isBadLinesChild() && !ended_
                  ? QStringLiteral("אישור: סכום שאינו מספר יהפוך ל-0. ביטול: השורות יישארו כפי שהן ויוצגו שוב בפתיחה הבאה.")
                  : QStringLiteral("מוכן"));
}

QString frmMain::readParameter(const QString& key)
{
    return pelkor::readParameter(env_.paths, key, trace_);
}

bool frmMain::OpenCon()
{
    TraceScope t(trace_, QStringLiteral("OpenCon"));
    if (instance_.progMode == modeDetail || instance_.isMerged || instance_.progMode == modeNewLines)
        ledger_.filePath = instance_.command.file;
    else if (instance_.progMode != modeOpenedFile)
        ledger_.filePath = instance_.command.file.isEmpty() ? readParameter(QStringLiteral("CURRENTFILE")) : instance_.command.file;
    // Look before writing anything: a file that is no ledger, or cannot be
    // written, is told and left exactly as it was; a damaged one may be
    // saved into a new file, which is then the one opened.
    const LedgerFileCheck check = checkLedgerFile(ledger_.filePath, ui_, trace_);
    ledger_.filePath = check.path;
    const OpenTitles titles = openTitles(instance_, ledger_.filePath);
    shown_.caption = titles.caption;
    shown_.lblFileName = titles.lblFileName;
    emit changed();
    QString problem = check.problem;
    if (problem.isEmpty() && !reopenCon())
        problem = QStringLiteral("לא ניתן לפתוח את הקובץ \"\u2068%1\u2069\" לכתיבה. ייתכן שהוא לקריאה בלבד.").arg(ledger_.filePath);
    if (!problem.isEmpty()) {
        t.line(problem);
        ui_.msgBox(problem, title, Buttons::OK, Icon::Critical);
        endProcess(1);
        return false;
    }
    finishPendingMoves();
    return true;
}

bool frmMain::reopenCon()
{
    try {
        ledger_.cn.open(ledger_.filePath);
        // A file the user may only read opens without complaint; find out now.
        if (!QFileInfo(ledger_.filePath).isWritable())
            throw StoreError(StoreError::Kind::Open, QStringLiteral("read-only file"), ledger_.filePath);
        ledger_.isCnOpen = true;
        // What this connection reads from now on is the file as it is.
        watchFileAgain();
    } catch (const StoreError& e) {
        trace_.traceLine(QStringLiteral("reopenCon"), e.message());
        ledger_.cn.close();
        ledger_.isCnOpen = false;
    }
    return ledger_.isCnOpen;
}

void frmMain::closeCn()
{
    ledger_.cn.close();
    ledger_.isCnOpen = false;
}

void frmMain::showOpenFileDialog()
{
    TraceScope t(trace_, QStringLiteral("showOpenFileDialog"));
    ui::FileDialogOptions spec;
    spec.title = QStringLiteral("בחר קובץ");
    spec.filter = QStringLiteral("פלקור (*.pkr)|*.pkr");
    spec.defaultExt = QStringLiteral("pkr");
    spec.startDir = readParameter(QStringLiteral("directory"));
    spec.fileMustExist = true;
    spec.pathMustExist = true;
    const QStringList chosen = ui_.openFileDialog(spec);
    if (chosen.isEmpty() || chosen.first().isEmpty()) {
        t.line(QStringLiteral("cancelled"));
        endProcess(0);
        return;
    }
    setStatus(QStringLiteral("פותח קשר..."));
    ledger_.filePath = chosen.first();
    if (!OpenCon())
        return;
    LoadParts parts = loadParts();
    const LoadResult r = openDB(parts, false);
    if (ended_ || r == LoadResult::Ended || r == LoadResult::NoLines)
        return;
    waitWhile([this] { return checker_.isActive(); });
    if (ended_)
        return;
    shown_.visible = true;
    emit changed();
    announceReady();
    timer3_.start();
}

void frmMain::Timer3_Timer()
{
    timer3_.stop();
    if (ended_)
        return;
    // The run of a file chosen in the open dialog is a repair: it reports
    // and ends. A child instance stays for its user, who ends it: a detail
    // child on its lines, a new-line child on its lines and buttons.
    if (instance_.progMode != modeOpenedFile)
        return;
    ui_.msgBox(QStringLiteral("תיקון הקובץ הסתיים בהצלחה"), title);
    exitProg();
}

void frmMain::handleZeroLines()
{
    if ((instance_.progMode == modeNewLines && instance_.newLineDialogType == lineDialogUnconfirmedPelkor) || instance_.progMode == modeDetail) {
        exitProg();
        return;
    }
    ui_.msgBox(QStringLiteral("אין תנועות"), QStringLiteral("פלקור מזומנים"));
    exitProg();
}

void frmMain::guarded(const QString& proc, const std::function<void()>& fn)
{
    ++handlerDepth_;
    struct Leave {
        int& depth;
        ~Leave() { --depth; }
    } leave{handlerDepth_};
    QString text;
    bool busy = false;
    try {
        fn();
        return;
    } catch (const StoreError& e) {
        text = e.fullText();
        busy = e.kind() == StoreError::Kind::Busy;
    } catch (const std::exception& e) {
        text = QString::fromLocal8Bit(e.what());
    }
    // The handler's name and the engine's words are for the trace; the user
    // reads what happened to the work and to the file.
    trace_.traceLine(proc, (busy ? QStringLiteral("gave up on a busy file: ") : QStringLiteral("unexpected failure: ")) + text);
    // Whatever the failure interrupted, the window must not stay locked or
    // stay on a stage of a load that is over.
    const bool loadCut = ledger_.openDBisBusy || ledger_.lines.empty();
    ledger_.openDBisBusy = false;
    shown_.frameButtonsEnabled = true;
    shown_.enabled = true;
    shown_.gridVisible = true;
    shown_.lblStatus = loadCut ? QStringLiteral("הקובץ לא נטען עד סופו. לחץ F5 כדי לטעון אותו שוב.") : QStringLiteral("מוכן");
    emit changed();
    const QString file = QFileInfo(ledger_.filePath).fileName();
    if (busy && instance_.progMode == modeOpenedFile) {
        // The repair run has nothing to offer but the repair: it ends.
        ui_.msgBox(QStringLiteral("תיקון הקובץ \"\u2068%1\u2069\" הופסק כי תוכנה אחרת מחזיקה בו. לא נעשה בו שום שינוי.\n"
                                  "אפשר לתקן אותו שוב כשהקובץ יתפנה.").arg(file),
                   title, Buttons::OK, Icon::Exclamation);
        exitProg();
        return;
    }
    if (busy) {
        ui_.msgBox(QStringLiteral("הפעולה בוטלה כי הקובץ \"\u2068%1\u2069\" תפוס בידי תוכנה אחרת. הקובץ נשאר כפי שהיה.").arg(file),
                   title, Buttons::OK, Icon::Exclamation);
        return;
    }
    ui_.msgBox(QStringLiteral("אירעה שגיאה בלתי צפויה, והפעולה לא הושלמה. הנתונים שבקובץ לא נפגעו."), title, Buttons::OK,
               Icon::Critical);
}

void frmMain::pause(int ms)
{
    QElapsedTimer t;
    t.start();
    waitWhile([&] { return t.elapsed() < ms; });
}

void frmMain::msfgMain_EnterCell()
{
    if (!edit_.loaded) {
        // Before the first load is done the cursor only shows where it is.
        grid_.row = grid_.msfgMain.Row();
        grid_.topRow = grid_.msfgMain.TopRow();
        updateCursorCells(ledger_, instance_, grid_.msfgMain, grid_.msfgMainMarks, grid_.balancingLineID);
        return;
    }
    editor_.msfgMain_EnterCell();
    if (instance_.progMode == modeDailySummarySplit)
        daily_.matchBankRowToMainRow();
    else if (session_->pairing()) {
        session_->links.followCursor(false);
        endPartnerSearchAway(grid_.msfgMain, true);
    }
}

void frmMain::linesLoaded()
{
    // A load rebuilt the grid: no editor stays open over it, and the cursor
    // starts afresh where the load put it.
    edit_.loaded = true;
    // A pending new line that a reload did not write is gone with it.
    edit_.isThereNewLine = false;
    edit_.txtCell.visible = edit_.txtCombo.visible = edit_.cmbTypesVisible = false;
    edit_.mustGoBack = false;
    edit_.prevRow = grid_.msfgMain.Row();
    edit_.prevCol = grid_.msfgMain.Col();
    if (instance_.progMode == modeDailySummarySplit && daily_.active())
        daily_.refreshStep();
    else if (instance_.progMode == modeSplitScreen)
        session_->afterLoad(true);
    emit loaded();
}

void frmMain::showFind()
{
    if (finder_.showFind())
        emit findRequested();
}

void frmMain::keyboardLanguage(bool hebrew)
{
    // A failed switch is no failure: the user switches by hand.
    if (hebrew)
        kb_->switchToHebrew();
    else
        kb_->switchToEnglish();
}

void frmMain::mnuCreateLogFile_Click()
{
    pelkor::mnuCreateLogFile_Click(shown_, trace_, *this);
}

void frmMain::mnuResetBankData_Click()
{
    pelkor::mnuResetBankData_Click(ledger_, ui_, *this);
}

void frmMain::mnuAddLineToFile_Click()
{
    // "closed" reaches this window as any other process's text would.
    pelkor::mnuAddLineToFile_Click(ledger_, instance_, ui_, env_.today, [this](const QString& text) {
        if (!env_.bus || instance_.txtMessageId == 0 || !env_.bus->send(instance_.txtMessageId, text))
            txtMessage_Change(text);
    });
}

void frmMain::mnuAddConstantTransactions_Click()
{
    frmConstantTransactions dlg(ConstantParts{ledger_, ui_, edit_, constantLasts_, env_.today,
                                              [this](bool hebrew) { keyboardLanguage(hebrew); }});
    ui_.runDialog(dlg);
    if (dlg.wrote())
        cmdRefresh_Click();
}

void frmMain::waitWhile(const std::function<bool()>& pred)
{
    while (!ended_ && pred()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    }
}

bool frmMain::Form_QueryUnload()
{
    if (ledger_.openDBisBusy)
        return false;
    if (edit_.loaded && !ledger_.lines.empty() && !editor_.commitAll())
        return false;
    if (leftDailySummary())
        return false;
    if (session_->active() && !session_->Form_QueryUnload())
        return false;
    exitProg();
    return true;
}

void frmMain::cmdClose_Click()
{
    if (!leftDailySummary())
        exitProg();
}

bool frmMain::leftDailySummary()
{
    // Beside the summary a close goes back to the full grid, unless the
    // run was started for the summary alone.
    if (instance_.progMode != modeDailySummarySplit || instance_.command.verb == StartCommand::Verb::DayBalance)
        return false;
    daily_.leaveDailySummary();
    return true;
}

void frmMain::cmdRefresh_Click()
{
    TraceScope t(trace_, QStringLiteral("cmdRefresh_Click"));
    if (ledger_.openDBisBusy)
        return;
    // The open cell is committed and a pending new line written first; a
    // new line that stays pending (the user kept it) stops the reload.
    if (edit_.loaded && !ledger_.lines.empty()) {
        const bool hadNewLine = edit_.isThereNewLine;
        if (!editor_.commitAll())
            return;
        if (hadNewLine) {
            grid_.row = grid_.msfgMain.Row();
            grid_.topRow = grid_.msfgMain.TopRow();
        }
    }
    if (!ledger_.lines.empty()) {
        const int r = std::max(grid_.row, 1);
        grid_.theID = ledger_.lines[size_t(std::min<int>(r, int(ledger_.lines.size())) - 1)].Id;
        grid_.theOffset = r - grid_.topRow;
    }
    shown_.frameButtonsEnabled = false;
    closeCn();
    reopenCon();
    LoadParts parts = loadParts();
    openDB(parts, true);
    shown_.frameButtonsEnabled = true;
    emit changed();
    if (instance_.progMode == modeDetail)
        sendToParent(QStringLiteral("refresh"));
}

void frmMain::reloadLanding()
{
    if (ledger_.openDBisBusy)
        return;
    LoadParts parts = loadParts();
    openDB(parts, true);
    emit changed();
}

void frmMain::exitProg()
{
    if (exiting_)
        return;
    exiting_ = true;
    TraceScope t(trace_, QStringLiteral("exitProg"));
    for (const char* name : {"new_versions.txt", "new_c", "matchPage.htm"})
        QFile::remove(instance_.tempPath + QLatin1String(name));
    checker_.stop();
    session_->closeDownloader();
    // Another run's session keeps its working tables.
    if (instance_.progMode != modeNewLines && ledger_.isCnOpen && session_->mayDropWorkingTables()) {
        for (const char* table : {"tempPelkor", "bckpPelkor", "savedPelkor"}) {
            try {
                ledger_.cn.execute(QStringLiteral("DROP TABLE ") + QLatin1String(table));
            } catch (const StoreError&) {
                // Not there: nothing to drop.
            }
        }
    }
    closeCn();
    if ((instance_.progMode == modeDetail || (instance_.progMode == modeMergedReport && instance_.isMerged)) && instance_.parentTxtMessage != 0)
        sendToParent(ledger_.sql.fileChanged ? QStringLiteral("closed") : QStringLiteral("nochange"));
    writeIni();
    // The check mark is the setting: any other stored value (a 5, a Null)
    // becomes its 1 or 0. The file is written only where it holds another
    // value, so closing a file that another process holds seldom waits.
    if (shown_.visible && !ledger_.filePath.isEmpty() && reopenCon()) {
        const int isAuto = shown_.mnuAutomaticBankCoordinationChecked ? 1 : 0;
        try {
            auto rs = ledger_.cn.execute(QStringLiteral("SELECT isAuto FROM Defaults"));
            bool differs = false;
            for (; !rs.eof(); rs.moveNext())
                differs = differs || rs.field(0).isNull() || rs.field(0).toInt() != isAuto;
            if (differs)
                ledger_.cn.execute(QStringLiteral("UPDATE Defaults SET isAuto=%1").arg(isAuto));
        } catch (const StoreError& e) {
            t.line(e.message());
        }
    }
    closeCn();
    if (!ledger_.feedPath.isEmpty() && !instance_.simulateVisible && !ledger_.isSimulate)
        QFile::remove(ledger_.feedPath);
    if (instance_.progMode != modeNewLines)
        sendToExcel(QStringLiteral("unload"));
    kb_->switchToInitialLanguage();
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
    parentWatch_.stop();
    watchFile_.stop();
    trace_.setOn(false);
    if (env_.endProcess)
        env_.endProcess(code);
}

} // namespace pelkor
