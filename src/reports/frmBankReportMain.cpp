#include "reports/frmBankReportMain.h"

#include "base/CommandLine.h"
#include "base/Format.h"
#include "base/Instance.h"
#include "base/Instances.h"
#include "base/Trace.h"
#include "file/OpenLedger.h"
#include "reports/frmConvert.h"
#include "seams/store/Connection.h"
#include "seams/store/StoreError.h"
#include "seams/ui/Ui.h"
#include "seams/ui/dialogs/TypedDate.h"
#include "seams/ui/dialogs/frmPassword.h"
#include "seams/web/Html.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <exception>

namespace pelkor::reports {

namespace {

const QString pageFile = QStringLiteral("bankReport.htm");
const QString chartFolder = QStringLiteral("bankReport_files");
const QString warningTitle = QStringLiteral("אזהרה");
constexpr int timer1Ms = 100, timerNewMs = 100, timer6Ms = 500;

} // namespace

frmBankReportMain::frmBankReportMain(BankReportParts parts, web::WebView& wb, BankWindowCalls& window)
    : parts_(std::move(parts)), wb_(wb), window_(window)
{
    for (QTimer* t : {&timer1_, &timerNew_, &timer6_})
        t->setSingleShot(true);
    QObject::connect(&timer1_, &QTimer::timeout, [this] { guarded(QStringLiteral("makeReport"), [this] { makeReport(); }); });
    QObject::connect(&timerNew_, &QTimer::timeout, [this] { guarded(QStringLiteral("timerNew_Timer"), [this] { timerNew_Timer(); }); });
    QObject::connect(&timer6_, &QTimer::timeout, [this] { guarded(QStringLiteral("Timer6_Timer"), [this] { Timer6_Timer(); }); });
}

frmBankReportMain::~frmBankReportMain() = default;

void frmBankReportMain::guarded(const QString& proc, const std::function<void()>& fn)
{
    try {
        fn();
    } catch (const std::exception& e) {
        parts_.report.ledger.trace.traceLine(proc, QString::fromUtf8(e.what()));
        parts_.report.ui.msgBox(QStringLiteral("אירעה שגיאה בהכנת הדוח:\n") + QString::fromUtf8(e.what()), shown_.caption);
        building_ = false;
        shown_.busy = false;
        changed();
    }
}

void frmBankReportMain::changed() { window_.shownChanged(); }

void frmBankReportMain::startTimer(QTimer& t, int ms, void (frmBankReportMain::*step)())
{
    if (immediate_)
        return (this->*step)();
    t.start(ms);
}

QString frmBankReportMain::pagePath() const { return parts_.report.instance.tempPath + pageFile; }

void frmBankReportMain::setTaskPane(bool on)
{
    shown_.taskPaneEnabled = on;
    changed();
}

// ---- the list ----------------------------------------------------------------

void frmBankReportMain::refreshList()
{
    shown_.lstFiles.clear();
    for (qsizetype i = 0; i < fileList_.size(); ++i) {
        QString item = getShortFileName(fileList_[i]);
        if (!reasons_.value(i).isEmpty())
            item += QStringLiteral(" (לא נכלל: ") + reasons_[i] + QLatin1Char(')');
        shown_.lstFiles << item;
    }
    shown_.selected.clear();
    shown_.cmdRemoveEnabled = false;
    shown_.cmdShowEnabled = !fileList_.isEmpty();
    changed();
}

bool frmBankReportMain::addFile(const QString& path)
{
    const QString canonical = QFileInfo(path).absoluteFilePath();
    for (const QString& f : fileList_)
        if (QFileInfo(f).absoluteFilePath() == canonical) {
            parts_.report.ui.msgBox(QStringLiteral("הקובץ ") + isolated(getShortFileName(path)) + QStringLiteral(" כבר נמצא ברשימה"),
                                    shown_.caption);
            return false;
        }
    fileList_ << path;
    fileConvs_.push_back(0);
    isIncluded_.push_back(1);
    reasons_ << QString();
    return true;
}

void frmBankReportMain::lstFiles_Click(const QList<int>& selected)
{
    shown_.selected = selected;
    shown_.cmdRemoveEnabled = !selected.isEmpty();
    changed();
}

void frmBankReportMain::cmdSaveInIni_Click()
{
    if (!writeMergeIni(parts_.mergeIniPath, fileList_))
        parts_.report.ui.msgBox(QStringLiteral("לא ניתן לשמור את הרשימה בקובץ ") + isolated(parts_.mergeIniPath), shown_.caption);
}

// ---- building ----------------------------------------------------------------

void frmBankReportMain::Form_Load()
{
    const QDate today = parts_.report.today.isValid() ? parts_.report.today : QDate::currentDate();
    shown_.txtFrom = formatTheDate(today.addDays(-3));
    shown_.txtTo = formatTheDate(today.addDays(60));
    days_.fromDate = today.addDays(-3);
    days_.toDate = today.addDays(60);
    changed();
    startTimer(timer1_, timer1Ms, &frmBankReportMain::makeReport);
}

void frmBankReportMain::makeReport()
{
    fileList_.clear();
    fileConvs_.clear();
    isIncluded_.clear();
    reasons_.clear();
    for (const QString& path : readMergeIni(parts_.mergeIniPath)) {
        if (!QFileInfo::exists(path)) {
            parts_.report.ui.msgBox(QStringLiteral("קובץ זה מופיע בקובץ התצורה אולם אינו קיים:\n") + path
                                        + QStringLiteral("\nהקובץ יימחק מקובץ התצורה"),
                                    warningTitle);
            continue;
        }
        // The same file twice in the ini counts once.
        if (fileList_.contains(path))
            continue;
        fileList_ << path;
        fileConvs_.push_back(0);
        isIncluded_.push_back(1);
        reasons_ << QString();
    }
    cmdSaveInIni_Click();
    refreshList();
    if (fileList_.isEmpty())
        return showInitialPage();
    doReport(true);
}

void frmBankReportMain::showInitialPage()
{
    shown_.cmdShowEnabled = false;
    shown_.reportCommandsEnabled = false;
    shown_.initialPage = true;
    shown_.visible = true;
    shown_.busy = false;
    building_ = false;
    BankDays none;
    none.fromDate = days_.fromDate;
    none.toDate = days_.toDate;
    days_ = none;
    changed();
    window_.drawCharts();
    wb_.navigate(parts_.initialPagePath);
    // timerSetInitialPageClickHandler: the page's notifier adds files.
    const auto attach = [this] {
        if (!shown_.initialPage)
            return;
        wb_.attachNotifier(web::clsForward([this] { guarded(QStringLiteral("initialEventHandler"), [this] { initialEventHandler(); }); }));
    };
    if (wb_.isComplete())
        attach();
    else
        wb_.setDocumentComplete([this, attach](const QString&) { attach(); });
}

void frmBankReportMain::doReport(bool isFirstTime)
{
    TraceScope trace(parts_.report.ledger.trace, QStringLiteral("doReport"));
    if (!isFirstTime && wb_.isComplete() && !shown_.initialPage)
        savedScroll_ = wb_.value(QStringLiteral("sumsScroll"));
    building_ = true;
    shown_.busy = true;
    shown_.initialPage = false;
    changed();

    std::vector<BankFileSums> sums;
    std::vector<double> rates;
    includedPositions_.clear();
    includedFiles_.clear();
    includedNames_.clear();
    leftOut_.clear();
    isIncluded_.resize(size_t(fileList_.size()), 1);
    while (reasons_.size() < fileList_.size())
        reasons_ << QString();
    for (qsizetype i = 0; i < fileList_.size(); ++i) {
        const QString& path = fileList_[i];
        const QString name = getShortFileName(path);
        QString reason;
        if (!isFirstTime && !isIncluded_[size_t(i)]) {
            reason = reasons_[i];
        } else if (!QFileInfo::exists(path)) {
            reason = missingFileReason();
        } else {
            try {
                store::Connection cn;
                cn.open(path);
                if (isFirstTime) {
                    auto pw = cn.execute(QStringLiteral("SELECT Password FROM Defaults"));
                    const QString stored = pw.recordCount() ? RemoveNull(pw.at(0, 0)) : QString();
                    if (!ui::getPassword(parts_.report.ui, stored, name))
                        reason = noPasswordReason();
                }
                if (reason.isEmpty())
                    sums.push_back(readBankFile(cn, days_.fromDate, days_.toDate));
            } catch (const store::StoreError& e) {
                trace.line(path + QStringLiteral(": ") + e.fullText());
                reason = leftOutReason(e);
            }
        }
        reasons_[i] = reason;
        if (isFirstTime)
            isIncluded_[size_t(i)] = reason.isEmpty();
        if (!reason.isEmpty()) {
            leftOut_ << name + QStringLiteral(": ") + reason;
            continue;
        }
        includedPositions_.push_back(int(i));
        includedFiles_ << path;
        includedNames_ << name;
        rates.push_back(fileConvs_[size_t(i)]);
    }
    refreshList();
    if (includedFiles_.isEmpty()) {
        building_ = false;
        shown_.busy = false;
        changed();
        QString text = QStringLiteral("הדוח לא יוצג מכיוון שלא כללת בו אף בנק");
        if (!leftOut_.isEmpty())
            text += QLatin1Char('\n') + leftOut_.join(QLatin1Char('\n'));
        parts_.report.ui.msgBox(text, QStringLiteral("פלקור"));
        window_.closeWindow();
        return;
    }
    reportTitle_ = bankReportTitle(includedNames_);
    days_ = calcBankDays(sums, rates, days_.fromDate, days_.toDate);
    BankPageHead head{includedNames_, shown_.showIncomeAndExpenseCols, leftOut_};
    QDir().mkpath(parts_.report.instance.tempPath);
    if (web::writePage(parts_.report.instance.tempPath, pageFile, bankReportPage(days_, head)).isEmpty())
        throw std::runtime_error("the report page could not be written");
    window_.drawCharts();
    startTimer(timerNew_, timerNewMs, &frmBankReportMain::timerNew_Timer);
}

void frmBankReportMain::timerNew_Timer()
{
    wb_.navigate(pagePath());
    shown_.reportCommandsEnabled = true;
    changed();
    startTimer(timer6_, timer6Ms, &frmBankReportMain::Timer6_Timer);
}

void frmBankReportMain::Timer6_Timer()
{
    if (!wb_.isComplete()) {
        if (!immediate_)
            timer6_.start(timer6Ms);
        return;
    }
    wb_.attachNotifier(web::clsForward([this] { guarded(QStringLiteral("cellEventHandler"), [this] { cellEventHandler(); }); }));
    if (!savedScroll_.isEmpty()) {
        wb_.setValue(QStringLiteral("sumsScroll"), savedScroll_);
        wb_.execScript(QStringLiteral("handle_restore()"));
        savedScroll_.clear();
    }
    building_ = false;
    shown_.busy = false;
    shown_.visible = true;
    changed();
    parts_.report.ui.windowReady(QStringLiteral("frmBankReportMain"), shown_.caption + QStringLiteral(" | ") + reportTitle_,
                                 [this](const QString& c) { clickControl(c); });
}

// ---- the page's events -----------------------------------------------------------

void frmBankReportMain::cellEventHandler()
{
    if (building_)
        return;
    const BankEvent e = parseBankEvent(wb_.value(QStringLiteral("theID")));
    if (e.kind == BankEvent::Kind::WrongFieldCount) {
        parts_.report.ui.msgBox(QStringLiteral("error in split"), shown_.caption);
        return;
    }
    if (e.kind == BankEvent::Kind::Conversion) {
        if (e.f >= 0 && e.f < days_.nIncluded)
            showConversionDialog(e.f);
        return;
    }
    if (e.kind != BankEvent::Kind::Cell || e.f < 0 || e.f >= days_.nIncluded || e.d < 0 || e.d >= days_.nReportDays)
        return;
    const QString file = includedFiles_[e.f];
    if (!e.nonZero) {
        // An empty amount: a new line in that file.
        if (parts_.openAddLine)
            parts_.openAddLine(file, [this](const QString& text) { txtMessage_Change(text); });
        return;
    }
    lastChildCommand_ = QStringLiteral("detail ") + idText(txtMessageId_) + QLatin1Char(' ') + QString::number(e.t) + QLatin1Char(' ')
        + formatDate224(days_.fromDate.addDays(e.d)) + QLatin1Char(' ') + QString::number(days_.rates[size_t(e.f)], 'f', 4)
        + QLatin1Char(' ') + file;
    parts_.report.ledger.trace.traceLine(QStringLiteral("cellEventHandler"), lastChildCommand_);
    setTaskPane(false);
    if (!parts_.report.children || !parts_.report.children->start(lastChildCommand_)) {
        setTaskPane(true);
        parts_.report.ui.msgBox(QStringLiteral("לא ניתן לפתוח את פירוט התנועות"), shown_.caption);
    }
}

void frmBankReportMain::showConversionDialog(int f)
{
    const int i = includedPositions_[size_t(f)];
    frmConvert dlg(parts_.report.ui, fileConvs_[size_t(i)]);
    if (parts_.report.ui.runDialog(dlg))
        setConversion(f, dlg.rate());
}

void frmBankReportMain::setConversion(int f, double rate)
{
    if (f < 0 || size_t(f) >= includedPositions_.size())
        return;
    fileConvs_[size_t(includedPositions_[size_t(f)])] = rate;
    doReport(false);
}

bool frmBankReportMain::txtMessage_Change(const QString& text)
{
    const bool rebuild = text == QLatin1String("refresh") || text == QLatin1String("closed");
    if (!rebuild && text != QLatin1String("nochange"))
        return false;
    setTaskPane(true);
    if (rebuild && !includedFiles_.isEmpty())
        doReport(false);
    window_.bringToTop();
    return true;
}

// ---- the controls --------------------------------------------------------------

void frmBankReportMain::cmdAdd_Click()
{
    ui::FileDialogOptions spec;
    spec.title = QStringLiteral("בחר קובץ/קבצים לדו\"ח האיחוד");
    spec.filter = QStringLiteral("פלקור (*.pkr)|*.pkr");
    spec.defaultExt = QStringLiteral("pkr");
    spec.startDir = parts_.openDirectory;
    spec.fileMustExist = true;
    spec.multiSelect = true;
    bool added = false;
    for (const QString& path : parts_.report.ui.openFileDialog(spec))
        if (!path.isEmpty() && addFile(path))
            added = true;
    if (!added)
        return;
    refreshList();
    cmdShow_Click();
}

void frmBankReportMain::cmdRemove_Click()
{
    QList<int> selected = shown_.selected;
    std::sort(selected.begin(), selected.end());
    for (auto it = selected.rbegin(); it != selected.rend(); ++it) {
        const int i = *it;
        if (i < 0 || i >= fileList_.size())
            continue;
        fileList_.removeAt(i);
        fileConvs_.erase(fileConvs_.begin() + i);
        isIncluded_.erase(isIncluded_.begin() + i);
        reasons_.removeAt(i);
    }
    refreshList();
    if (fileList_.isEmpty())
        return showInitialPage();
    cmdShow_Click();
}

void frmBankReportMain::cmdShow_Click()
{
    const auto from = ui::readTypedDate(shown_.txtFrom);
    if (!from) {
        parts_.report.ui.msgBox(QStringLiteral("התאריך אינו חוקי"), QStringLiteral("שגיאה"));
        return window_.setFocus(QStringLiteral("txtFrom"));
    }
    const auto to = ui::readTypedDate(shown_.txtTo);
    if (!to) {
        parts_.report.ui.msgBox(QStringLiteral("התאריך אינו חוקי"), QStringLiteral("שגיאה"));
        return window_.setFocus(QStringLiteral("txtTo"));
    }
    if (*to < *from) {
        parts_.report.ui.msgBox(QStringLiteral("תאריך הסיום מאוחר מתאריך ההתחלה"), QStringLiteral("שגיאה"));
        return window_.setFocus(QStringLiteral("txtTo"));
    }
    days_.fromDate = *from;
    days_.toDate = *to;
    shown_.txtFrom = formatTheDate(*from);
    shown_.txtTo = formatTheDate(*to);
    if (fileList_.isEmpty())
        return showInitialPage();
    doReport(true);
}

std::vector<MergedMember> frmBankReportMain::members() const
{
    std::vector<MergedMember> m;
    for (qsizetype f = 0; f < includedFiles_.size(); ++f)
        m.push_back(MergedMember{includedFiles_[f], includedNames_[f], days_.rates[size_t(f)]});
    return m;
}

void frmBankReportMain::openPeriodReport(const QString& verb)
{
    if (includedFiles_.isEmpty())
        return;
    TraceScope trace(parts_.report.ledger.trace, QStringLiteral("openPeriodReport"));
    const std::vector<MergedMember> m = members();
    mergedFile_ = buildMergedFile(parts_.templatePath, parts_.report.instance.tempPath, reportTitle_, m);
    updateMergedBanksData(mergedFile_, m, true, [this](const QString& w) { parts_.report.ui.msgBox(w, warningTitle); });
    lastChildCommand_ = QStringLiteral("merged ") + verb + QLatin1Char(' ') + formatDate224(days_.fromDate) + QLatin1Char(' ')
        + formatDate224(days_.toDate) + QLatin1Char(' ') + idText(txtMessageId_) + QLatin1Char(' ') + mergedFile_;
    trace.line(lastChildCommand_);
    setTaskPane(false);
    if (!parts_.report.children || !parts_.report.children->start(lastChildCommand_)) {
        setTaskPane(true);
        parts_.report.ui.msgBox(QStringLiteral("לא ניתן לפתוח את הסיכום"), shown_.caption);
    }
}

void frmBankReportMain::chkShowIncomeAndExpenseCols_Click(bool show)
{
    shown_.showIncomeAndExpenseCols = show;
    changed();
    if (shown_.initialPage || !wb_.isComplete())
        return;
    wb_.setText(QStringLiteral("stl"), incExpStyle(show));
    wb_.execScript(QStringLiteral("completeIt()"));
}

void frmBankReportMain::chkShowGraphs_Click(bool show)
{
    shown_.showGraphs = show;
    changed();
}

void frmBankReportMain::cmdTransferMoney_Click()
{
    if (!parts_.transferMoney) {
        parts_.report.ui.msgBox(QStringLiteral("העברה בין חשבונות אינה זמינה כאן"), shown_.caption);
        return;
    }
    parts_.transferMoney();
    doReport(false);
}

void frmBankReportMain::cmdExport_Click()
{
    ui::FileDialogOptions spec;
    spec.title = QStringLiteral("בחר שם לשמירה");
    spec.filter = QStringLiteral("HTML (*.htm)|*.htm");
    spec.defaultExt = QStringLiteral("htm");
    spec.fileName = proposedExportName();
    const QString path = parts_.report.ui.saveFileDialog(spec);
    if (path.isEmpty())
        return;
    const QFileInfo info(path);
    const QString folderName = info.completeBaseName() + QStringLiteral("_files");
    const QString folder = info.absoluteDir().filePath(folderName);
    QDir().mkpath(folder);
    window_.saveGraphs(folder);
    QString html = window_.exportHtml(wb_, folderName);
    QByteArray bytes;
    if (!html.isEmpty()) {
        bytes = web::pageBytes(html);
    } else {
        QFile written(pagePath());
        if (written.open(QIODevice::ReadOnly))
            bytes = written.readAll();
        bytes.replace("bankReport_files/", (folderName + QLatin1Char('/')).toUtf8());
    }
    // Written beside and renamed: an export never stands half-written.
    const QString part = path + QStringLiteral(".part");
    QFile out(part);
    const bool ok = out.open(QIODevice::WriteOnly | QIODevice::Truncate) && out.write(bytes) == bytes.size() && out.flush();
    out.close();
    if (!ok || (QFile::exists(path) && !QFile::remove(path)) || !QFile::rename(part, path)) {
        QFile::remove(part);
        parts_.report.ui.msgBox(QStringLiteral("לא ניתן לשמור את הקובץ ") + isolated(path), shown_.caption);
    }
}

void frmBankReportMain::cmdPrintPreview_Click()
{
    const QString folder = parts_.report.instance.tempPath + chartFolder;
    QDir().mkpath(folder);
    window_.saveGraphs(folder);
    window_.printPreview(wb_, true);
}

bool frmBankReportMain::clickControl(const QString& name)
{
    using Click = std::function<void()>;
    const std::pair<const char*, Click> clicks[] = {
        {"cmdAdd", [this] { cmdAdd_Click(); }},
        {"cmdRemove", [this] { cmdRemove_Click(); }},
        {"cmdSaveInIni", [this] { cmdSaveInIni_Click(); }},
        {"cmdShow", [this] { cmdShow_Click(); }},
        {"cmdMonthReport", [this] { openPeriodReport(QStringLiteral("ktrep")); }},
        {"cmdWeekReport", [this] { openPeriodReport(QStringLiteral("ktrpw")); }},
        {"cmdDayReport", [this] { openPeriodReport(QStringLiteral("ktrpd")); }},
        {"chkShowIncomeAndExpenseCols", [this] { chkShowIncomeAndExpenseCols_Click(!shown_.showIncomeAndExpenseCols); }},
        {"chkShowGraphs", [this] { chkShowGraphs_Click(!shown_.showGraphs); }},
        {"cmdTransferMoney", [this] { cmdTransferMoney_Click(); }},
        {"cmdExport", [this] { cmdExport_Click(); }},
        {"cmdPrintPreview", [this] { cmdPrintPreview_Click(); }},
        {"cmdClose", [this] { window_.closeWindow(); }},
    };
    for (const auto& [control, click] : clicks)
        if (name == QLatin1String(control)) {
            guarded(name + QStringLiteral("_Click"), click);
            return true;
        }
    return false;
}

void frmBankReportMain::Form_Unload()
{
    for (QTimer* t : {&timer1_, &timerNew_, &timer6_})
        t->stop();
    if (!mergedFile_.isEmpty())
        QFile::remove(mergedFile_);
    QFile::remove(pagePath());
    for (const char* bmp : {"separateGraphs.bmp", "totalGraph.bmp"})
        QFile::remove(parts_.report.instance.tempPath + chartFolder + QLatin1Char('/') + QLatin1String(bmp));
    if (parts_.report.closed)
        parts_.report.closed();
}

} // namespace pelkor::reports
