// frmMonthReportMain: the building chain, the range boxes, the clicks on
// amounts, saving, printing and the window's texts. The lists' ticks and
// the in-place updates are in ReportTicks.cpp.
#include "reports/frmMonthReportMain.h"

#include "base/CommandLine.h"
#include "base/Format.h"
#include "base/Instance.h"
#include "base/Instances.h"
#include "base/Trace.h"
#include "file/OpenLedger.h"
#include "seams/platform/ProfileFile.h"
#include "seams/store/StoreError.h"
#include "seams/ui/Ui.h"
#include "seams/ui/dialogs/TypedDate.h"
#include "seams/web/Html.h"

#include <QDir>
#include <QFile>

#include <exception>

namespace pelkor::reports {

namespace {

const QString kindListFile = QStringLiteral("kindList.htm");
const QString typeListFile = QStringLiteral("typeList.htm");
const QString kindReportFile = QStringLiteral("kindReport.htm");
const QString typeReportFile = QStringLiteral("typeReport.htm");
const QString printSection = QStringLiteral("print");
const QString printKey = QStringLiteral("backgroundColors");

// The building chain's intervals, in milliseconds: enough for a list to
// load before the sums are read, and for the pages' engine between steps.
constexpr int timerListMs = 200, timer1Ms = 500, timerNewMs = 100, timer5Ms = 200, timer6Ms = 500;

} // namespace

frmMonthReportMain::frmMonthReportMain(ReportParts parts, ReportViews views, ReportWindowCalls& window, PeriodType type)
    : parts_(std::move(parts)), views_(views), window_(window), type_(type)
{
    for (QTimer* t : {&timerList_, &timer1_, &timerNew_, &timer5_, &timer6_})
        t->setSingleShot(true);
    QObject::connect(&timerList_, &QTimer::timeout, [this] { guarded(QStringLiteral("timerList"), [this] { timerList_Timer(); }); });
    QObject::connect(&timer1_, &QTimer::timeout, [this] { guarded(QStringLiteral("Timer1"), [this] { Timer1_Timer(); }); });
    QObject::connect(&timerNew_, &QTimer::timeout, [this] { guarded(QStringLiteral("timerNew"), [this] { timerNew_Timer(); }); });
    QObject::connect(&timer5_, &QTimer::timeout, [this] { guarded(QStringLiteral("Timer5"), [this] { Timer5_Timer(); }); });
    QObject::connect(&timer6_, &QTimer::timeout, [this] { guarded(QStringLiteral("Timer6"), [this] { Timer6_Timer(); }); });
}

frmMonthReportMain::~frmMonthReportMain() = default;

void frmMonthReportMain::guarded(const QString& proc, const std::function<void()>& fn)
{
    try {
        fn();
    } catch (const std::exception& e) {
        parts_.ledger.trace.traceLine(proc, QString::fromUtf8(e.what()));
        parts_.ui.msgBox(QStringLiteral("אירעה שגיאה בהכנת הדוח:\n") + QString::fromUtf8(e.what()), shown_.caption);
        suspendCheckHandler_ = false;
        shown_.busy = false;
        changed();
    }
}

void frmMonthReportMain::changed() { window_.shownChanged(); }

void frmMonthReportMain::startTimer(QTimer& t, int ms, void (frmMonthReportMain::*step)())
{
    if (immediate_)
        return (this->*step)();
    t.start(ms);
}

QString frmMonthReportMain::pagePath(const QString& fileName) const
{
    return parts_.instance.tempPath + fileName;
}

ReportHead frmMonthReportMain::head(int nameWidth) const
{
    return ReportHead{getShortFileName(parts_.ledger.filePath), sPeriodicOf(type_), parts_.ledger.theCredit, nameWidth};
}

// ---- building ----------------------------------------------------------

void frmMonthReportMain::Form_Load()
{
    shown_.caption = reportCaption(type_);
    shown_.chkPrintBGColors = platform::ProfileFile(parts_.settingsFile).readString(printSection, printKey, QStringLiteral("yes"))
        != QLatin1String("no");
    suspendCheckHandler_ = true;
    shown_.busy = true;
    // The kinds of the file as the load read them.
    names_.ids = parts_.ledger.catalogue.categories;
    names_.descs = parts_.ledger.catalogue.categoryDescs;
    rates_.isMerged = parts_.instance.isMerged;
    rates_.convs = parts_.ledger.convs;
    if (parts_.instance.isMerged) {
        range_ = DateRange{parts_.instance.detail.fromDate, parts_.instance.detail.toDate};
        isTypeReportIncluded_ = parts_.ledger.cn.execute(QStringLiteral("SELECT * FROM TypesCategories")).recordCount() > 0;
    } else {
        range_ = initialRange(type_, parts_.ledger.ipusDate.isValid() ? parts_.ledger.ipusDate : parts_.today);
        isTypeReportIncluded_ = true;
    }
    isTypeReportIncluded_ = isTypeReportIncluded_ && views_.wbReport[0] && views_.wbList[0];
    shown_.typesEnabled = isTypeReportIncluded_;
    shown_.txtFrom = formatTheDate(range_.fromDate);
    shown_.txtTo = formatTheDate(range_.toDate);
    if (isTypeReportIncluded_)
        readTypeCatalogue(parts_.ledger.cn, types_);
    // The lists before any sum is known: every box ticked.
    kinds_.checked.assign(size_t(names_.nCategories()), 1);
    kinds_.nRows = names_.nCategories();
    types_.sums.checked.assign(types_.types.size(), 1);
    types_.sums.nRows = int(types_.types.size());
    types_.categChecked.assign(types_.categories.size(), 1);
    writeLists();
    changed();
    startTimer(timerList_, timerListMs, &frmMonthReportMain::timerList_Timer);
}

void frmMonthReportMain::writeLists()
{
    QDir().mkpath(parts_.instance.tempPath);
    int widest = 0;
    web::writePage(parts_.instance.tempPath, kindListFile, kindListPage(names_, kinds_, parts_.measure, widest));
    kindNameWidth_ = widest + 10;
    if (isTypeReportIncluded_) {
        widest = 0;
        web::writePage(parts_.instance.tempPath, typeListFile, typeListPage(types_, parts_.measure, widest));
        typeNameWidth_ = widest + 10;
    }
}

void frmMonthReportMain::timerList_Timer()
{
    views_.wbList[1]->navigate(pagePath(kindListFile));
    if (isTypeReportIncluded_)
        views_.wbList[0]->navigate(pagePath(typeListFile));
    startTimer(timer1_, timer1Ms, &frmMonthReportMain::Timer1_Timer);
}

void frmMonthReportMain::Timer1_Timer()
{
    createReports(true, false);
    // The first report is built: the window is ready for its user.
    QString text = shown_.caption + QStringLiteral(" | ") + shown_.txtFrom + QStringLiteral(" - ") + shown_.txtTo;
    if (parts_.instance.isMerged)
        text += QStringLiteral(" | merged");
    // From the event loop, so a scripted click never runs inside the build.
    QTimer::singleShot(0, &timer1_, [this, text] {
        parts_.ui.windowReady(QStringLiteral("frmMonthReportMain"), text, [this](const QString& c) { clickControl(c); });
    });
}

bool frmMonthReportMain::clickControl(const QString& name)
{
    using Click = void (frmMonthReportMain::*)();
    static const std::pair<const char*, Click> clicks[] = {
        {"cmdShow", &frmMonthReportMain::cmdShow_Click},
        {"cmdSave", &frmMonthReportMain::cmdSave_Click},
        {"cmdPrintPreview", &frmMonthReportMain::cmdPrintPreview_Click},
        {"cmdToggleTaskpane", &frmMonthReportMain::cmdToggleTaskpane_Click},
    };
    for (const auto& [control, click] : clicks)
        if (name == QLatin1String(control)) {
            guarded(name + QStringLiteral("_Click"), [this, click] { (this->*click)(); });
            return true;
        }
    if (name == QLatin1String("optKindsOrTypes0") || name == QLatin1String("optKindsOrTypes1")) {
        const int index = name.endsWith(QLatin1Char('1')) ? 1 : 0;
        guarded(QStringLiteral("optKindsOrTypes_Click"), [this, index] { optKindsOrTypes_Click(index); });
        return true;
    }
    if (name == QLatin1String("cmdClose")) {
        window_.closeWindow();
        return true;
    }
    return false;
}

void frmMonthReportMain::createReports(bool isFirstTime, bool isFromCmdShow)
{
    TraceScope trace(parts_.ledger.trace, QStringLiteral("createReports"));
    suspendCheckHandler_ = true;
    shown_.busy = true;
    changed();
    // Another instance may have written the file since: a new connection
    // sees its writes.
    parts_.ledger.cn.close();
    parts_.ledger.cn.open(parts_.ledger.filePath);
    saveScroll(isFirstTime, isFromCmdShow);

    const DateSpan span = readDateSpan(parts_.ledger.cn);
    if (!span.isEmpty()) {
        const QStringList warnings = adjustRange(type_, range_, span.min, span.max);
        if (!isFirstTime)
            for (const QString& w : warnings)
                parts_.ui.msgBox(w, QStringLiteral("אזהרה"));
    }
    shown_.txtFrom = formatTheDate(range_.fromDate);
    shown_.txtTo = formatTheDate(range_.toDate);
    periods_ = Periods::make(type_, range_.fromDate, range_.toDate);

    const double opening = readOpeningBalance(parts_.ledger.cn, range_.fromDate, rates_);
    kinds_.periodBalance.assign(1, opening);
    types_.sums.periodBalance.assign(1, opening);
    if (isFirstTime) {
        kinds_.checked.assign(size_t(names_.nCategories()), 1);
        kinds_.showIncomesTotal = kinds_.showExpensesTotal = true;
        types_.sums.showIncomesTotal = types_.sums.showExpensesTotal = true;
    }
    const int skipped = readPeriodSums(parts_.ledger.cn, periods_, names_.nCategories(), rates_, kinds_,
                                       isTypeReportIncluded_ ? &types_ : nullptr);
    if (skipped)
        trace.line(QStringLiteral("%1 groups of lines with no kind of the file left out").arg(skipped));
    createKindReport(isFirstTime);
    if (isTypeReportIncluded_)
        createTypeReport(isFirstTime);
    writeReports();
    changed();
    startTimer(timerNew_, timerNewMs, &frmMonthReportMain::timerNew_Timer);
}

void frmMonthReportMain::createKindReport(bool)
{
    kinds_.sumTotalsAndTick();
    calcKindTotals(kinds_);
    kinds_.showIncomesTotal = kinds_.totalIncomes != 0;
    kinds_.showExpensesTotal = kinds_.totalExpenses != 0;
}

void frmMonthReportMain::createTypeReport(bool)
{
    types_.sums.sumTotalsAndTick();
    wrongCategoryTold_ = false;
    calcTypeTotals(types_, [this] {
        if (!wrongCategoryTold_)
            parts_.ui.msgBox(QStringLiteral("wrong category name"), shown_.caption);
        wrongCategoryTold_ = true;
    });
    types_.categChecked.assign(types_.categories.size(), 0);
    for (size_t c = 0; c < types_.categories.size(); ++c)
        types_.categChecked[c] = types_.categTotals[c] != 0;
    types_.sums.showIncomesTotal = types_.sums.totalIncomes != 0;
    types_.sums.showExpensesTotal = types_.sums.totalExpenses != 0;
}

void frmMonthReportMain::writeReports()
{
    typeRows_ = typeRowsOf(types_);
    web::writePage(parts_.instance.tempPath, kindReportFile, kindReportPage(head(kindNameWidth_), periods_, names_, kinds_));
    if (isTypeReportIncluded_)
        web::writePage(parts_.instance.tempPath, typeReportFile, typeReportPage(head(typeNameWidth_), periods_, types_, typeRows_));
}

void frmMonthReportMain::timerNew_Timer()
{
    views_.wbReport[1]->navigate(pagePath(kindReportFile));
    if (isTypeReportIncluded_)
        views_.wbReport[0]->navigate(pagePath(typeReportFile));
    startTimer(timer5_, timer5Ms, &frmMonthReportMain::Timer5_Timer);
}

void frmMonthReportMain::Timer5_Timer()
{
    startTimer(timer6_, timer6Ms, &frmMonthReportMain::Timer6_Timer);
}

void frmMonthReportMain::Timer6_Timer()
{
    const auto complete = [](web::WebView* v) { return !v || v->isComplete(); };
    const bool ready = complete(views_.wbReport[1]) && complete(views_.wbList[1])
        && (!isTypeReportIncluded_ || (complete(views_.wbReport[0]) && complete(views_.wbList[0])));
    if (!ready) {
        // Not yet: look again (a test in immediate mode calls again itself).
        if (!immediate_)
            timer6_.start(timer6Ms);
        return;
    }
    for (int which : {1, 0}) {
        if (which == 0 && !isTypeReportIncluded_)
            continue;
        views_.wbList[which]->attachNotifier(web::clsForward([this, which] {
            guarded(QStringLiteral("listEventHandler"), [this, which] { listEventHandler(which); });
        }));
        views_.wbReport[which]->attachNotifier(web::clsForward([this, which] {
            guarded(QStringLiteral("reportEventHandler"), [this, which] { reportEventHandler(which); });
        }));
    }
    syncListBoxes();
    restoreScroll();
    shown_.visible = true;
    shown_.busy = false;
    suspendCheckHandler_ = false;
    changed();
}

// ---- scroll ------------------------------------------------------------

void frmMonthReportMain::saveScroll(bool isFirstTime, bool isFromCmdShow)
{
    if (isFromCmdShow) {
        // A new range starts at its first period, the page's own start.
        hScroll_[0] = hScroll_[1] = vScroll_[0] = vScroll_[1] = QString();
        return;
    }
    if (isFirstTime)
        return;
    for (int which : {1, 0}) {
        web::WebView* v = views_.wbReport[which];
        if (!v || !v->isComplete() || (which == 0 && !isTypeReportIncluded_))
            continue;
        const QStringList pos = v->value(QStringLiteral("sumsScroll")).split(QLatin1Char(' '));
        hScroll_[which] = pos.value(0);
        vScroll_[which] = pos.value(1);
    }
}

void frmMonthReportMain::restoreScroll()
{
    for (int which : {1, 0}) {
        web::WebView* v = views_.wbReport[which];
        if (!v || hScroll_[which].isEmpty() || (which == 0 && !isTypeReportIncluded_))
            continue;
        v->setValue(QStringLiteral("sumsScroll"), hScroll_[which] + QLatin1Char(' ') + vScroll_[which]);
        v->execScript(QStringLiteral("handle_restore()"));
    }
}

// ---- clicks on amounts -------------------------------------------------

void frmMonthReportMain::reportEventHandler(int which)
{
    if (suspendCheckHandler_ || !views_.wbReport[which])
        return;
    const QString s = views_.wbReport[which]->value(QStringLiteral("theID"));
    if (s.isEmpty())
        return;
    const QStringList fields = s.split(QLatin1Char(' '));
    if (fields.size() != 4) {
        parts_.ui.msgBox(QStringLiteral("error in split"), shown_.caption);
        return;
    }
    if (fields[3] == QLatin1String("0")) {
        if (parts_.openAddLine)
            parts_.openAddLine([this](const QString& text) { txtMessage_Change(text); });
        return;
    }
    detailFor(fields);
}

void frmMonthReportMain::detailFor(const QStringList& f)
{
    bool ok = false;
    const int p = f[2].toInt(&ok);
    if (!ok || p < 0 || p >= periods_.nPeriods)
        return;
    // A type's cell carries its place in the list; the child selects by the
    // type's number.
    QString id = f[1];
    if (f[0] == QLatin1String("4")) {
        const int i = id.toInt(&ok);
        if (!ok || i < 0 || size_t(i) >= types_.types.size())
            return;
        id = QString::number(types_.types[size_t(i)].TypeNum);
    }
    lastChildCommand_ = (parts_.instance.isMerged ? QStringLiteral("mrg ") : QString()) + QStringLiteral("detail ")
        + idText(txtMessageId_) + QLatin1Char(' ') + f[0] + QLatin1Char(' ') + formatTheDate(periods_.startOf(p)) + QLatin1Char(' ')
        + formatTheDate(periods_.endOf(p)) + QLatin1Char(' ') + id + QLatin1Char(' ') + parts_.ledger.filePath;
    parts_.ledger.trace.traceLine(QStringLiteral("reportEventHandler"), lastChildCommand_);
    setEnabled(false);
    if (!parts_.children || !parts_.children->start(lastChildCommand_)) {
        setEnabled(true);
        parts_.ui.msgBox(QStringLiteral("לא ניתן לפתוח את פירוט התנועות"), shown_.caption);
    }
}

void frmMonthReportMain::setEnabled(bool on)
{
    shown_.enabled = on;
    changed();
}

bool frmMonthReportMain::txtMessage_Change(const QString& text)
{
    if (text == QLatin1String("refresh")) {
        createReports(false, false);
    } else if (text == QLatin1String("closed")) {
        setEnabled(true);
        window_.bringToTop();
        createReports(false, false);
    } else if (text == QLatin1String("nochange")) {
        setEnabled(true);
        window_.bringToTop();
    } else {
        return false;
    }
    return true;
}

// ---- the controls ------------------------------------------------------

void frmMonthReportMain::optKindsOrTypes_Click(int index)
{
    if (index == 0 && !isTypeReportIncluded_)
        return;
    shown_.optKindsOrTypes = index;
    changed();
}

void frmMonthReportMain::cmdShow_Click()
{
    const auto from = ui::readTypedDate(shown_.txtFrom);
    if (!from) {
        parts_.ui.msgBox(QStringLiteral("התאריך אינו חוקי"), QStringLiteral("שגיאה"));
        return window_.setFocus(QStringLiteral("txtFrom"));
    }
    const auto to = ui::readTypedDate(shown_.txtTo);
    if (!to) {
        parts_.ui.msgBox(QStringLiteral("התאריך אינו חוקי"), QStringLiteral("שגיאה"));
        return window_.setFocus(QStringLiteral("txtTo"));
    }
    if (*to < *from) {
        parts_.ui.msgBox(QStringLiteral("תאריך הסיום מאוחר מתאריך ההתחלה"), QStringLiteral("שגיאה"));
        return window_.setFocus(QStringLiteral("txtTo"));
    }
    range_ = DateRange{*from, *to};
    createReports(false, true);
}

void frmMonthReportMain::dateBoxLostFocus(QString& box, const QString& refusal)
{
    if (const auto d = ui::readTypedDate(box))
        box = formatTheDate(*d);
    else if (!box.trimmed().isEmpty())
        parts_.ui.msgBox(refusal, shown_.caption);
    changed();
}

void frmMonthReportMain::txtFrom_LostFocus() { dateBoxLostFocus(shown_.txtFrom, QStringLiteral("תאריך ההתחלה אינו חוקי")); }
void frmMonthReportMain::txtTo_LostFocus() { dateBoxLostFocus(shown_.txtTo, QStringLiteral("תאריך הסיום אינו חוקי")); }

void frmMonthReportMain::txtFrom_Enter() { window_.setFocus(QStringLiteral("txtTo")); }

void frmMonthReportMain::txtTo_Enter()
{
    if (const auto d = ui::readTypedDate(shown_.txtTo)) {
        shown_.txtTo = formatTheDate(*d);
        changed();
        cmdShow_Click();
    } else {
        window_.setFocus(QStringLiteral("txtFrom"));
    }
}

QString frmMonthReportMain::proposedSaveName() const
{
    QString from = formatTheDate(range_.fromDate), to = formatTheDate(range_.toDate);
    from.replace(QLatin1Char('/'), QLatin1Char('.'));
    to.replace(QLatin1Char('/'), QLatin1Char('.'));
    return getShortFileName(parts_.ledger.filePath) + QStringLiteral(" - סיכום ") + sPeriodicOf(type_) + QStringLiteral(" לפי ")
        + (shown_.optKindsOrTypes == 1 ? QStringLiteral("סיווגים") : QStringLiteral("סוגים")) + QStringLiteral(" מ- ") + from
        + QStringLiteral(" עד ") + to;
}

void saveReportPage(ui::Ui& ui, const std::function<QString()>& livePage, const QString& writtenPath,
                    const QString& proposedName, const QString& caption)
{
    ui::FileDialogOptions spec;
    spec.title = QStringLiteral("בחר שם לשמירה");
    spec.filter = QStringLiteral("HTML (*.htm)|*.htm");
    spec.defaultExt = QStringLiteral("htm");
    spec.fileName = proposedName;
    const QString path = ui.saveFileDialog(spec);
    if (path.isEmpty())
        return;
    QByteArray bytes;
    const QString live = livePage();
    if (!live.isEmpty()) {
        bytes = web::pageBytes(live);
    } else {
        QFile written(writtenPath);
        if (written.open(QIODevice::ReadOnly))
            bytes = written.readAll();
    }
    QFile out(path);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate) || out.write(bytes) != bytes.size())
        ui.msgBox(QStringLiteral("לא ניתן לשמור את הקובץ ") + isolated(path), caption);
}

void frmMonthReportMain::cmdSave_Click()
{
    web::WebView* v = activeReport();
    if (!v)
        return;
    saveReportPage(parts_.ui, [this, v] { return window_.pageHtml(*v); },
                   pagePath(shown_.optKindsOrTypes == 1 ? kindReportFile : typeReportFile), proposedSaveName(), shown_.caption);
}

void frmMonthReportMain::cmdPrintPreview_Click()
{
    if (web::WebView* v = activeReport())
        window_.printPreview(*v, shown_.chkPrintBGColors);
}

void frmMonthReportMain::chkPrintBGColors_Click(bool checked)
{
    shown_.chkPrintBGColors = checked;
    platform::ProfileFile(parts_.settingsFile).writeString(printSection, printKey, checked ? QStringLiteral("yes") : QStringLiteral("no"));
    changed();
}

void frmMonthReportMain::cmdToggleTaskpane_Click()
{
    shown_.taskpaneShown = !shown_.taskpaneShown;
    shown_.cmdToggleTaskpaneCaption = shown_.taskpaneShown ? QStringLiteral("הסתר\n>>") : QStringLiteral("הצג\n<<");
    changed();
}

void frmMonthReportMain::Form_Unload()
{
    for (const QString& f : {kindListFile, typeListFile, kindReportFile, typeReportFile})
        QFile::remove(pagePath(f));
    if (parts_.closed)
        parts_.closed();
}

} // namespace pelkor::reports
