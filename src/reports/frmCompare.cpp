#include "reports/frmCompare.h"

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
const QString warningTitle = QStringLiteral("אזהרה");

constexpr int listsMs = 200, createMs = 500, reportsMs = 100, notifiersMs = 700;

QString boxMarkup(const QString& boxId, bool on, const QString& event)
{
    return QStringLiteral("<input type=checkbox id=%1%2 onclick=\"event_handler('%3')\">")
        .arg(boxId, on ? QStringLiteral(" checked") : QString(), event);
}

} // namespace

frmCompare::frmCompare(ReportParts parts, ReportViews views, CompareWindowCalls& window)
    : parts_(std::move(parts)), views_(views), window_(window)
{
    for (QTimer* t : {&timerLists_, &timerCreate_, &timerReports_, &timerNotifiers_})
        t->setSingleShot(true);
    QObject::connect(&timerLists_, &QTimer::timeout, [this] { guarded(QStringLiteral("timerNavigateToKindList"), [this] { timerNavigateToLists(); }); });
    QObject::connect(&timerCreate_, &QTimer::timeout, [this] { guarded(QStringLiteral("timerCreateReports"), [this] { timerCreateReports(); }); });
    QObject::connect(&timerReports_, &QTimer::timeout, [this] { guarded(QStringLiteral("timerNavigateToReports"), [this] { timerNavigateToReports(); }); });
    QObject::connect(&timerNotifiers_, &QTimer::timeout,
                     [this] { guarded(QStringLiteral("timerSetReportNotifiersAndScrolls"), [this] { timerSetReportNotifiersAndScrolls(); }); });
}

frmCompare::~frmCompare() = default;

void frmCompare::guarded(const QString& proc, const std::function<void()>& fn)
{
    try {
        fn();
    } catch (const std::exception& e) {
        parts_.ledger.trace.traceLine(proc, QString::fromUtf8(e.what()));
        parts_.ui.msgBox(QStringLiteral("אירעה שגיאה בהכנת ההשוואה:\n") + QString::fromUtf8(e.what()), shown_.caption);
        suspendCheckHandler_ = false;
        shown_.busy = false;
        changed();
    }
}

void frmCompare::changed() { window_.shownChanged(); }

void frmCompare::setEnabled(bool on)
{
    shown_.enabled = on;
    changed();
}

void frmCompare::startTimer(QTimer& t, int ms, void (frmCompare::*step)())
{
    if (immediate_)
        return (this->*step)();
    t.start(ms);
}

QString frmCompare::pagePath(const QString& fileName) const { return parts_.instance.tempPath + fileName; }

CompareHead frmCompare::head(int nameWidth) const
{
    CompareHead h;
    for (int i = 0; i < 2; ++i)
        h.shortFileName[size_t(i)] = getShortFileName(fileNames_[size_t(i)]);
    h.range = ranges_;
    h.nameWidth = nameWidth;
    return h;
}

// ---- building ----------------------------------------------------------

void frmCompare::Form_Load()
{
    suspendCheckHandler_ = true;
    shown_.busy = true;
    for (int i = 0; i < 2; ++i) {
        fileNames_[size_t(i)] = parts_.ledger.filePath;
        shown_.txtFileName[size_t(i)] = getShortFileName(fileNames_[size_t(i)]);
    }
    ranges_ = defaultCompareRanges(parts_.today.isValid() ? parts_.today : QDate::currentDate());
    for (int i = 0; i < 2; ++i) {
        shown_.txtFrom[size_t(i)] = formatTheDate(ranges_[size_t(i)].fromDate);
        shown_.txtTo[size_t(i)] = formatTheDate(ranges_[size_t(i)].toDate);
    }
    shown_.chkPrintBGColors = platform::ProfileFile(parts_.settingsFile).readString(printSection, printKey, QStringLiteral("yes"))
        != QLatin1String("no");
    initFile(0);
    initFile(1);
    createKindList();
    createTypeList();
    changed();
    startTimer(timerLists_, listsMs, &frmCompare::timerNavigateToLists);
}

bool frmCompare::initFile(int i)
{
    const QString& path = fileNames_[size_t(i)];
    store::Connection& cn = cn_[size_t(i)];
    try {
        cn.close();
        cn.open(path);
        const DateSpan span = readDateSpan(cn);
        if (!span.isEmpty()) {
            ranges_[size_t(i)] = DateRange{span.min.addDays(1), span.max};
            if (ranges_[size_t(i)].fromDate > span.max)
                ranges_[size_t(i)].fromDate = span.max;
        }
    } catch (const store::StoreError& e) {
        cn.close();
        parts_.ledger.trace.traceLine(QStringLiteral("initFile"), e.fullText());
        parts_.ui.msgBox(QStringLiteral("לא ניתן לקרוא את הקובץ ") + isolated(path) + QStringLiteral(" כקובץ פלקור"), QStringLiteral("שגיאה"));
        return false;
    }
    shown_.txtFrom[size_t(i)] = formatTheDate(ranges_[size_t(i)].fromDate);
    shown_.txtTo[size_t(i)] = formatTheDate(ranges_[size_t(i)].toDate);
    return true;
}

void frmCompare::createKindList()
{
    const KindNames first = cn_[0].isOpen() ? readKindNames(cn_[0]) : KindNames{};
    KindChoice choice{first, {}};
    if (fileNames_[0] != fileNames_[1] && cn_[1].isOpen()) {
        const KindNames second = readKindNames(cn_[1]);
        choice = chooseKinds(first, &second);
    }
    if (!choice.warning.isEmpty())
        parts_.ui.msgBox(choice.warning, warningTitle);
    sums_.names = choice.names;
    // The list as written with every box ticked: the ticks stay when the
    // kinds did.
    SumSet allTicked;
    allTicked.checked.assign(size_t(sums_.names.nCategories()), 1);
    int widest = 0;
    const QString page = kindListPage(sums_.names, allTicked, parts_.measure, widest);
    kindNameWidth_ = widest + 10;
    if (page != lastKindList_) {
        lastKindList_ = page;
        sums_.kinds.reset(sums_.names.nCategories(), 2);
        sums_.kinds.checked.assign(size_t(sums_.names.nCategories()), 1);
        sums_.kinds.showExpensesTotal = sums_.kinds.showIncomesTotal = true;
    }
}

void frmCompare::createTypeList()
{
    for (int i = 0; i < 2; ++i)
        if (cn_[size_t(i)].isOpen() && (i == 0 || fileNames_[1] != fileNames_[0]))
            readTypeCatalogue(cn_[size_t(i)], catalogues_[size_t(i)]);
    if (fileNames_[1] == fileNames_[0])
        catalogues_[1] = catalogues_[0];
    const bool agree = views_.wbReport[0] && views_.wbList[0] && typesAgree(catalogues_[0], catalogues_[1]);
    sums_.typesIncluded = agree;
    shown_.typesEnabled = agree;
    if (!agree) {
        shown_.optKindsOrTypes = 1;
        lastTypeList_ = QStringLiteral("(no list)");
        if (views_.wbReport[0])
            parts_.ui.msgBox(QString::fromUtf8(typesDifferWarning), warningTitle);
        return;
    }
    TypeTotals allTicked = catalogues_[0];
    allTicked.sums.checked.assign(allTicked.types.size(), 1);
    allTicked.categChecked.assign(allTicked.categories.size(), 1);
    int widest = 0;
    const QString page = typeListPage(allTicked, parts_.measure, widest);
    typeNameWidth_ = widest + 10;
    if (page != lastTypeList_) {
        lastTypeList_ = page;
        sums_.types = allTicked;
        sums_.types.sums.reset(int(allTicked.types.size()), 2);
    }
}

void frmCompare::writeLists()
{
    QDir().mkpath(parts_.instance.tempPath);
    int widest = 0;
    web::writePage(parts_.instance.tempPath, kindListFile, kindListPage(sums_.names, sums_.kinds, parts_.measure, widest));
    if (sums_.typesIncluded)
        web::writePage(parts_.instance.tempPath, typeListFile, typeListPage(sums_.types, parts_.measure, widest));
}

void frmCompare::timerNavigateToLists()
{
    writeLists();
    views_.wbList[1]->navigate(pagePath(kindListFile));
    if (sums_.typesIncluded)
        views_.wbList[0]->navigate(pagePath(typeListFile));
    startTimer(timerCreate_, createMs, &frmCompare::timerCreateReports);
}

void frmCompare::timerCreateReports()
{
    createReports(true, false);
    QString text = shown_.caption;
    for (int i = 0; i < 2; ++i)
        text += QStringLiteral(" | ") + shown_.txtFileName[size_t(i)] + QLatin1Char(' ') + shown_.txtFrom[size_t(i)] + QStringLiteral(" - ")
            + shown_.txtTo[size_t(i)];
    QTimer::singleShot(0, &timerCreate_, [this, text] {
        parts_.ui.windowReady(QStringLiteral("frmCompare"), text, [this](const QString& c) { clickControl(c); });
    });
}

void frmCompare::createReports(bool isFirstTime, bool isFromCmdShow)
{
    (void)isFromCmdShow;
    TraceScope trace(parts_.ledger.trace, QStringLiteral("createReports"));
    suspendCheckHandler_ = true;
    shown_.busy = true;
    changed();
    for (int i = 0; i < 2; ++i) {
        store::Connection& cn = cn_[size_t(i)];
        DateRange& r = ranges_[size_t(i)];
        if (!cn.isOpen()) {
            sums_.opening[size_t(i)] = sums_.credit[size_t(i)] = 0;
            continue;
        }
        // A new connection sees what other instances wrote since.
        cn.close();
        cn.open(fileNames_[size_t(i)]);
        auto credit = cn.execute(QStringLiteral("SELECT Credit FROM Defaults"));
        sums_.credit[size_t(i)] = credit.recordCount() ? RemoveSumNull(credit.at(0, 0)) : 0.0;
        const DateSpan span = readDateSpan(cn);
        if (!span.isEmpty()) {
            const QStringList warnings = adjustCompareRange(i, r, span.min, span.max);
            if (!isFirstTime)
                for (const QString& w : warnings)
                    parts_.ui.msgBox(w, warningTitle);
        }
        shown_.txtFrom[size_t(i)] = formatTheDate(r.fromDate);
        shown_.txtTo[size_t(i)] = formatTheDate(r.toDate);
        const int skipped = readComparePeriod(cn, i, r, sums_.typesIncluded ? &catalogues_[size_t(i)] : nullptr, sums_);
        if (skipped)
            trace.line(QStringLiteral("%1 groups of lines with no kind of the list left out").arg(skipped));
    }
    calcCompareTotals(sums_, true);
    writeReports();
    changed();
    startTimer(timerReports_, reportsMs, &frmCompare::timerNavigateToReports);
}

void frmCompare::writeReports()
{
    web::writePage(parts_.instance.tempPath, kindReportFile, compareKindPage(head(kindNameWidth_), sums_));
    if (sums_.typesIncluded)
        web::writePage(parts_.instance.tempPath, typeReportFile, compareTypePage(head(typeNameWidth_), sums_, typeRowsOf(sums_.types)));
}

void frmCompare::timerNavigateToReports()
{
    views_.wbReport[1]->navigate(pagePath(kindReportFile));
    if (sums_.typesIncluded)
        views_.wbReport[0]->navigate(pagePath(typeReportFile));
    startTimer(timerNotifiers_, notifiersMs, &frmCompare::timerSetReportNotifiersAndScrolls);
}

void frmCompare::timerSetReportNotifiersAndScrolls()
{
    const auto complete = [](web::WebView* v) { return !v || v->isComplete(); };
    const bool ready = complete(views_.wbReport[1]) && complete(views_.wbList[1])
        && (!sums_.typesIncluded || (complete(views_.wbReport[0]) && complete(views_.wbList[0])));
    if (!ready) {
        if (!immediate_)
            timerNotifiers_.start(notifiersMs);
        return;
    }
    for (int which : {1, 0}) {
        if (which == 0 && !sums_.typesIncluded)
            continue;
        views_.wbList[which]->attachNotifier(web::clsForward([this, which] {
            guarded(QStringLiteral("listEventHandler"), [this, which] { listEventHandler(which); });
        }));
        views_.wbReport[which]->attachNotifier(web::clsForward([this, which] {
            guarded(QStringLiteral("reportEventHandler"), [this, which] { reportEventHandler(which); });
        }));
        syncListBoxes(which);
    }
    shown_.visible = true;
    shown_.busy = false;
    suspendCheckHandler_ = false;
    changed();
    window_.drawCharts(shown_.optKindsOrTypes, animateNext_);
    animateNext_ = true;
}

// ---- the lists' ticks --------------------------------------------------

void frmCompare::setBox(int which, const QString& cellId, const QString& boxId, bool on, const QString& event, int index)
{
    web::WebView* v = views_.wbList[which];
    if (v && v->isComplete())
        v->setInnerHtml(cellId, boxMarkup(boxId, on, event), index);
}

void frmCompare::syncListBoxes(int which)
{
    const SumSet& s = which == 1 ? sums_.kinds : sums_.types.sums;
    const QString side = which == 1 ? QStringLiteral("k") : QStringLiteral("t");
    setBox(which, QStringLiteral("tdExpenses"), QStringLiteral("chkExpenses"), s.showExpensesTotal, side + QStringLiteral("ex"));
    setBox(which, QStringLiteral("tdIncomes"), QStringLiteral("chkIncomes"), s.showIncomesTotal,
           which == 1 ? QStringLiteral("kin") : QStringLiteral("tin"));
    if (which == 1) {
        const int n = sums_.names.nCategories();
        for (int r = 0; r < n; ++r)
            setBox(1, QStringLiteral("tdKind"), QStringLiteral("chkKind"), s.checked[size_t(kindOfListRow(r, n))],
                   QStringLiteral("knd") + QString::number(r), r);
        return;
    }
    for (size_t c = 0; c < sums_.types.categories.size(); ++c) {
        const QString cs = QString::number(c);
        setBox(0, QStringLiteral("tdCateg") + cs, QStringLiteral("chkCateg") + cs, sums_.types.categChecked[c], QStringLiteral("ctg") + cs);
    }
    for (size_t i = 0; i < sums_.types.types.size(); ++i)
        setBox(0, QStringLiteral("tdType"), QStringLiteral("chkType"), s.checked[i], QStringLiteral("typ") + QString::number(i), int(i));
}

void frmCompare::listEventHandler(int which)
{
    if (suspendCheckHandler_ || !views_.wbList[which])
        return;
    const QString id = views_.wbList[which]->value(QStringLiteral("theID"));
    const QString verb = id.left(3);
    const int arg = id.mid(3).toInt();
    SumSet& kinds = sums_.kinds;
    TypeTotals& t = sums_.types;
    const int n = sums_.names.nCategories();
    const auto sideOf = [&](bool expenses, auto&& each) {
        for (int r = 0; r < (which == 1 ? n : int(t.types.size())); ++r) {
            const bool rowExpense = which == 1 ? r >= n / 2 : !t.types[size_t(r)].isIncome;
            if (rowExpense == expenses)
                each(r);
        }
    };
    if (verb == QLatin1String("knd") && arg >= 0 && arg < n) {
        const int k = kindOfListRow(arg, n);
        kinds.checked[size_t(k)] = !kinds.checked[size_t(k)];
    } else if (verb == QLatin1String("kex") || verb == QLatin1String("kin")) {
        const bool expenses = verb == QLatin1String("kex");
        bool& on = expenses ? kinds.showExpensesTotal : kinds.showIncomesTotal;
        on = !on;
        sideOf(expenses, [&](int k) { kinds.checked[size_t(k)] = on; });
    } else if (verb == QLatin1String("typ") && arg >= 0 && size_t(arg) < t.types.size()) {
        t.sums.checked[size_t(arg)] = !t.sums.checked[size_t(arg)];
        const int c = t.categoryIndexOf(t.types[size_t(arg)].CategoryName);
        if (c >= 0) {
            bool any = false;
            for (size_t i = 0; i < t.types.size(); ++i)
                any = any || (t.types[i].CategoryName == t.categories[size_t(c)].CategoryName && t.sums.checked[i]);
            t.categChecked[size_t(c)] = any;
        }
    } else if (verb == QLatin1String("ctg") && arg >= 0 && size_t(arg) < t.categories.size()) {
        const bool on = !t.categChecked[size_t(arg)];
        t.categChecked[size_t(arg)] = on;
        for (size_t i = 0; i < t.types.size(); ++i)
            if (t.types[i].CategoryName == t.categories[size_t(arg)].CategoryName)
                t.sums.checked[i] = on;
    } else if (verb == QLatin1String("tex") || verb == QLatin1String("tin")) {
        const bool expenses = verb == QLatin1String("tex");
        bool& on = expenses ? t.sums.showExpensesTotal : t.sums.showIncomesTotal;
        on = !on;
        sideOf(expenses, [&](int r) { t.sums.checked[size_t(r)] = on; });
        for (size_t c = 0; c < t.categories.size(); ++c)
            if (t.categories[c].isIncome != expenses)
                t.categChecked[c] = on;
    } else {
        return;
    }
    ticksChanged(which);
}

void frmCompare::ticksChanged(int which)
{
    // A side's total shows while one of its rows is ticked.
    SumSet& s = which == 1 ? sums_.kinds : sums_.types.sums;
    bool anyIn = false, anyOut = false;
    for (int r = 0; r < s.nRows; ++r)
        if (s.checked[size_t(r)])
            (s.isExpenseRow[size_t(r)] ? anyOut : anyIn) = true;
    s.showExpensesTotal = anyOut;
    s.showIncomesTotal = anyIn;
    calcCompareTotals(sums_, false);
    syncListBoxes(which);
    // The page anew: its rows and every total follow the ticks.
    if (which == 1)
        web::writePage(parts_.instance.tempPath, kindReportFile, compareKindPage(head(kindNameWidth_), sums_));
    else
        web::writePage(parts_.instance.tempPath, typeReportFile, compareTypePage(head(typeNameWidth_), sums_, typeRowsOf(sums_.types)));
    if (views_.wbReport[which])
        views_.wbReport[which]->navigate(pagePath(which == 1 ? kindReportFile : typeReportFile));
    suspendCheckHandler_ = true;
    animateNext_ = false;
    window_.drawCharts(which, false);
    startTimer(timerNotifiers_, reportsMs, &frmCompare::timerSetReportNotifiersAndScrolls);
}

// ---- clicks on amounts -------------------------------------------------

void frmCompare::reportEventHandler(int which)
{
    if (suspendCheckHandler_ || !views_.wbReport[which])
        return;
    const QString s = views_.wbReport[which]->value(QStringLiteral("theID"));
    if (s.isEmpty())
        return;
    const QStringList f = s.split(QLatin1Char(' '));
    if (f.size() != 4) {
        parts_.ui.msgBox(QStringLiteral("error in split"), shown_.caption);
        return;
    }
    if (f[3] == QLatin1String("0")) {
        // An empty amount: a new line in the main window's file.
        if (parts_.openAddLine)
            parts_.openAddLine([this](const QString& text) { txtMessage_Change(text); });
        return;
    }
    bool ok = false;
    const int i = f[2].toInt(&ok);
    if (!ok || i < 0 || i > 1)
        return;
    QString id = f[1];
    if (f[0] == QLatin1String("4")) {
        // The type's number in the clicked period's own file.
        const int t = id.toInt(&ok);
        const TypeTotals& cat = catalogues_[size_t(i)];
        if (!ok || t < 0 || size_t(t) >= cat.types.size())
            return;
        id = QString::number(cat.types[size_t(t)].TypeNum);
    }
    lastChildCommand_ = QStringLiteral("detail ") + idText(txtMessageId_) + QLatin1Char(' ') + f[0] + QLatin1Char(' ')
        + formatTheDate(ranges_[size_t(i)].fromDate) + QLatin1Char(' ') + formatTheDate(ranges_[size_t(i)].toDate) + QLatin1Char(' ') + id
        + QLatin1Char(' ') + fileNames_[size_t(i)];
    parts_.ledger.trace.traceLine(QStringLiteral("reportEventHandler"), lastChildCommand_);
    setEnabled(false);
    if (!parts_.children || !parts_.children->start(lastChildCommand_)) {
        setEnabled(true);
        parts_.ui.msgBox(QStringLiteral("לא ניתן לפתוח את פירוט התנועות"), shown_.caption);
    }
}

bool frmCompare::txtMessage_Change(const QString& text)
{
    const bool refresh = text == QLatin1String("refresh");
    const bool closed = text == QLatin1String("closed");
    if (closed || text == QLatin1String("nochange")) {
        setEnabled(true);
        window_.bringToTop();
    } else if (!refresh) {
        return false;
    }
    if (refresh || closed) {
        createReports(false, false);
        if (parts_.refreshMain)
            parts_.refreshMain();
    }
    return true;
}

// ---- the controls ------------------------------------------------------

void frmCompare::cmdBrowse_Click(int i)
{
    ui::FileDialogOptions spec;
    spec.title = QStringLiteral("בחר קובץ ") + periodWord(i);
    spec.defaultExt = QStringLiteral("pkr");
    spec.filter = QStringLiteral("פלקור (*.pkr)|*.pkr");
    spec.fileMustExist = true;
    const QStringList chosen = parts_.ui.openFileDialog(spec);
    if (chosen.isEmpty() || chosen.first().isEmpty())
        return;
    // A file that is no readable ledger leaves the period as it was.
    try {
        store::Connection trial;
        trial.open(chosen.first());
        readDateSpan(trial);
        readKindNames(trial);
    } catch (const store::StoreError& e) {
        parts_.ledger.trace.traceLine(QStringLiteral("cmdBrowse_Click"), e.fullText());
        parts_.ui.msgBox(QStringLiteral("לא ניתן לקרוא את הקובץ ") + isolated(chosen.first()) + QStringLiteral(" כקובץ פלקור"),
                         QStringLiteral("שגיאה"));
        return;
    }
    fileNames_[size_t(i)] = chosen.first();
    shown_.txtFileName[size_t(i)] = getShortFileName(chosen.first());
    initFile(i);
    createKindList();
    createTypeList();
    changed();
    startTimer(timerLists_, listsMs, &frmCompare::timerNavigateToLists);
}

void frmCompare::cmdLikeOther_Click(int i)
{
    shown_.txtFrom[size_t(i)] = shown_.txtFrom[size_t(1 - i)];
    shown_.txtTo[size_t(i)] = shown_.txtTo[size_t(1 - i)];
    changed();
}

void frmCompare::cmdShow_Click()
{
    std::array<DateRange, 2> r;
    for (int i = 0; i < 2; ++i) {
        const auto from = ui::readTypedDate(shown_.txtFrom[size_t(i)]);
        if (!from) {
            parts_.ui.msgBox(QStringLiteral("התאריך אינו חוקי"), QStringLiteral("שגיאה"));
            return window_.setFocus(QStringLiteral("txtFrom%1").arg(i));
        }
        const auto to = ui::readTypedDate(shown_.txtTo[size_t(i)]);
        if (!to) {
            parts_.ui.msgBox(QStringLiteral("התאריך אינו חוקי"), QStringLiteral("שגיאה"));
            return window_.setFocus(QStringLiteral("txtTo%1").arg(i));
        }
        if (*to < *from) {
            parts_.ui.msgBox(QStringLiteral("תאריך הסיום ה") + periodWord(i) + QStringLiteral(" מאוחר מתאריך ההתחלה"), QStringLiteral("שגיאה"));
            return window_.setFocus(QStringLiteral("txtTo%1").arg(i));
        }
        r[size_t(i)] = DateRange{*from, *to};
    }
    ranges_ = r;
    createReports(false, true);
}

void frmCompare::optKindsOrTypes_Click(int index)
{
    if (index == 0 && !sums_.typesIncluded)
        return;
    shown_.optKindsOrTypes = index;
    changed();
    window_.drawCharts(index, true);
}

QString frmCompare::proposedSaveName() const
{
    QString name = compareTitle(head(0), shown_.optKindsOrTypes == 0);
    name.replace(QLatin1Char(':'), QLatin1Char('-'));
    name.replace(QLatin1Char('/'), QLatin1Char('.'));
    name.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return name;
}

void frmCompare::cmdSave_Click()
{
    web::WebView* v = views_.wbReport[shown_.optKindsOrTypes];
    if (!v)
        return;
    saveReportPage(parts_.ui, [this, v] { return window_.pageHtml(*v); },
                   pagePath(shown_.optKindsOrTypes == 1 ? kindReportFile : typeReportFile), proposedSaveName(), shown_.caption);
}

void frmCompare::cmdPrintPreview_Click()
{
    if (web::WebView* v = views_.wbReport[shown_.optKindsOrTypes])
        window_.printPreview(*v, shown_.chkPrintBGColors);
}

void frmCompare::chkPrintBGColors_Click(bool checked)
{
    shown_.chkPrintBGColors = checked;
    platform::ProfileFile(parts_.settingsFile).writeString(printSection, printKey, checked ? QStringLiteral("yes") : QStringLiteral("no"));
    changed();
}

void frmCompare::cmdHideTable_Click(bool hide)
{
    shown_.tableShown = !hide;
    changed();
    window_.drawCharts(shown_.optKindsOrTypes, true);
}

void frmCompare::cmdHideTaskPane_Click(bool hide)
{
    shown_.taskPaneShown = !hide;
    changed();
    window_.drawCharts(shown_.optKindsOrTypes, true);
}

bool frmCompare::clickControl(const QString& name)
{
    using Click = std::function<void()>;
    const std::pair<const char*, Click> clicks[] = {
        {"cmdShow", [this] { cmdShow_Click(); }},
        {"cmdSave", [this] { cmdSave_Click(); }},
        {"cmdPrintPreview", [this] { cmdPrintPreview_Click(); }},
        {"cmdBrowse0", [this] { cmdBrowse_Click(0); }},
        {"cmdBrowse1", [this] { cmdBrowse_Click(1); }},
        {"cmdLikeOther0", [this] { cmdLikeOther_Click(0); }},
        {"cmdLikeOther1", [this] { cmdLikeOther_Click(1); }},
        {"optKindsOrTypes0", [this] { optKindsOrTypes_Click(0); }},
        {"optKindsOrTypes1", [this] { optKindsOrTypes_Click(1); }},
        {"cmdHideTable", [this] { cmdHideTable_Click(true); }},
        {"cmdShowTable", [this] { cmdHideTable_Click(false); }},
        {"cmdHideTaskPane", [this] { cmdHideTaskPane_Click(true); }},
        {"cmdShowTaskPane", [this] { cmdHideTaskPane_Click(false); }},
        {"cmdClose", [this] { window_.closeWindow(); }},
    };
    for (const auto& [control, click] : clicks)
        if (name == QLatin1String(control)) {
            guarded(name + QStringLiteral("_Click"), click);
            return true;
        }
    return false;
}

void frmCompare::Form_Unload()
{
    for (store::Connection& cn : cn_)
        cn.close();
    for (const QString& f : {kindListFile, typeListFile, kindReportFile, typeReportFile})
        QFile::remove(pagePath(f));
    if (parts_.closed)
        parts_.closed();
}

} // namespace pelkor::reports
