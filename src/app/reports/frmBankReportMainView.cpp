#include "app/reports/frmBankReportMainView.h"

#include "app/charts/uctlTaskpaneButton.h"
#include "app/Named.h"
#include "app/Placement.h"
#include "app/charts/ChartView.h"
#include "app/reports/ReportPrint.h"
#include "app/web/QtWebView.h"
#include "base/Format.h"
#include "charts/clsBackBuffer.h"
#include "seams/bus/Mailbox.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPrintPreviewDialog>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include <cmath>

namespace pelkor {

namespace {

// The hidden charts of an export and a print: a page's width.
constexpr int printedChartWidth = 960, printedChartHeight = 360;
constexpr int taskPaneWidth = 230;
constexpr int hoverGap = 16;   // the hover's box stands this far above its point

} // namespace

QAbstractButton* taskButton(QWidget* parent, const char* objectName, const QString& caption, bool check,
                            const QString& downCaption)
{
    auto* b = new charts::uctlTaskpaneButton(parent);
    b->setObjectName(QLatin1String(objectName));
    b->setText(caption);
    b->setCheckable(check);
    if (check && !downCaption.isEmpty())
        b->setDownCaption(downCaption);
    return b;
}

frmBankReportMainView::frmBankReportMainView(reports::BankReportParts parts, QWidget* parent) : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("frmBankReportMain"));
    setAttribute(Qt::WA_DeleteOnClose);
    setLayoutDirection(Qt::RightToLeft);
    frameImage_ = QCoreApplication::applicationDirPath() + QStringLiteral("/images/groupBorder.png");
    auto* row = new QHBoxLayout(this);

    // The task pane.
    frameTaskPane_ = named(new QWidget(this), QStringLiteral("frameTaskPane"));
    frameTaskPane_->setFixedWidth(taskPaneWidth);
    auto* pane = new QVBoxLayout(frameTaskPane_);
    pane->setContentsMargins(0, 0, 0, 0);
    pane->addWidget(new QLabel(QStringLiteral("קבצים בדוח:"), frameTaskPane_));
    lstFiles_ = named(new QListWidget(frameTaskPane_), QStringLiteral("lstFiles"), QStringLiteral("קבצים בדוח"));
    lstFiles_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    pane->addWidget(lstFiles_, 1);
    auto* listButtons = new QHBoxLayout();
    auto* cmdAdd = taskButton(frameTaskPane_, "cmdAdd", QStringLiteral("הוסף"), false);
    cmdRemove_ = taskButton(frameTaskPane_, "cmdRemove", QStringLiteral("הסר"), false);
    auto* cmdSaveInIni = taskButton(frameTaskPane_, "cmdSaveInIni", QStringLiteral("שמור רשימה"), false);
    // Add and remove side by side; the list's saving, whose caption is
    // longer, under them at the pane's width.
    for (QAbstractButton* b : {cmdAdd, cmdRemove_})
        listButtons->addWidget(b);
    pane->addLayout(listButtons);
    pane->addWidget(cmdSaveInIni);
    auto* range = new QHBoxLayout();
    range->addWidget(new QLabel(QStringLiteral("מתאריך:"), frameTaskPane_));
    txtFrom_ = named(new QLineEdit(frameTaskPane_), QStringLiteral("txtFrom"), QStringLiteral("מתאריך"));
    range->addWidget(txtFrom_);
    pane->addLayout(range);
    range = new QHBoxLayout();
    range->addWidget(new QLabel(QStringLiteral(" עד תאריך:"), frameTaskPane_));
    txtTo_ = named(new QLineEdit(frameTaskPane_), QStringLiteral("txtTo"), QStringLiteral("עד תאריך"));
    range->addWidget(txtTo_);
    pane->addLayout(range);
    for (QLineEdit* t : {txtFrom_, txtTo_}) {
        t->setLayoutDirection(Qt::LeftToRight);
        t->setFixedWidth(t->fontMetrics().horizontalAdvance(QStringLiteral("00/00/00000")) + 12);
    }
    cmdShow_ = taskButton(frameTaskPane_, "cmdShow", QStringLiteral("הצג"), false);
    pane->addWidget(cmdShow_);
    pane->addSpacing(8);
    auto* cmdMonth = taskButton(frameTaskPane_, "cmdMonthReport", QStringLiteral("סיכום חודשי"), false);
    auto* cmdWeek = taskButton(frameTaskPane_, "cmdWeekReport", QStringLiteral("סיכום שבועי"), false);
    auto* cmdDay = taskButton(frameTaskPane_, "cmdDayReport", QStringLiteral("סיכום יומי"), false);
    chkShowIncomeAndExpenseCols_ = taskButton(frameTaskPane_, "chkShowIncomeAndExpenseCols", QStringLiteral("הצג טורי הכנסה והוצאה"),
                                              true, QStringLiteral("הסתר טורי הכנסה והוצאה"));
    chkShowGraphs_ = taskButton(frameTaskPane_, "chkShowGraphs", QStringLiteral("הצג תרשימי יתרה"), true,
                                QStringLiteral("הסתר תרשימי יתרה"));
    auto* cmdTransfer = taskButton(frameTaskPane_, "cmdTransferMoney", QStringLiteral("העבר מחשבון לחשבון"), false);
    auto* cmdExport = taskButton(frameTaskPane_, "cmdExport", QStringLiteral("יצא לקובץ"), false);
    auto* cmdPrint = taskButton(frameTaskPane_, "cmdPrintPreview", QStringLiteral("הדפס"), false);
    auto* cmdClose = taskButton(frameTaskPane_, "cmdClose", QStringLiteral("יציאה"), false);
    for (QAbstractButton* b : {cmdMonth, cmdWeek, cmdDay, chkShowIncomeAndExpenseCols_, chkShowGraphs_, cmdTransfer, cmdExport, cmdPrint})
        pane->addWidget(b);
    pane->addStretch(1);
    pane->addWidget(cmdClose);
    reportCommands_ = {cmdMonth, cmdWeek, cmdDay, cmdTransfer, cmdExport, cmdPrint};
    row->addWidget(frameTaskPane_);

    // The page over the charts.
    auto* split = new QSplitter(Qt::Vertical, this);
    wb_ = named(new web::QtWebView(split), QStringLiteral("wb"));
    wb_->setSpokenName(QStringLiteral("דו\"ח איחוד בנקים"));
    frameGraphpane_ = named(new QWidget(split), QStringLiteral("frameGraphpane"));
    auto* chartRow = new QHBoxLayout(frameGraphpane_);
    chartRow->setContentsMargins(0, 0, 0, 0);
    total_ = std::make_unique<charts::clsBackBuffer>();
    separate_ = std::make_unique<charts::clsBackBuffer>();
    totalForFile_ = std::make_unique<charts::clsBackBuffer>();
    separateForFile_ = std::make_unique<charts::clsBackBuffer>();
    const auto handlers = [this](bool separate) {
        ChartView::Handlers h;
        h.resized = [this](int, int) {
            if (logic_)
                drawCharts();
        };
        h.mouseMove = [this, separate](int x, int y) { chartMouseMove(separate, x, y); };
        return h;
    };
    picSeparateGraphs_ = named(new ChartView(*separate_, handlers(true), frameGraphpane_), QStringLiteral("picSeparateGraphs"),
                               QStringLiteral("גרף יתרות נפרדות"));
    picTotalGraph_ = named(new ChartView(*total_, handlers(false), frameGraphpane_), QStringLiteral("picTotalGraph"),
                           QStringLiteral("גרף יתרה כוללת"));
    chartRow->addWidget(picTotalGraph_, 1);
    chartRow->addWidget(picSeparateGraphs_, 1);
    split->addWidget(wb_);
    split->addWidget(frameGraphpane_);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    split->setChildrenCollapsible(false);
    wb_->setMinimumHeight(160);
    frameGraphpane_->setMinimumHeight(140);
    split->setSizes({440, 280});
    row->addWidget(split, 1);
    timerHover_.setInterval(250);
    connect(&timerHover_, &QTimer::timeout, this, [this] { timerHover_Timer(); });

    logic_ = std::make_unique<reports::frmBankReportMain>(std::move(parts), *wb_, *this);
    txtMessage_ = std::make_unique<bus::Mailbox>();
    logic_->setTxtMessageId(txtMessage_->id());
    txtMessage_->setHandler([this](const QString& text) {
        if (text.isEmpty())
            return;
        logic_->guarded(QStringLiteral("txtMessage_Change"), [&] { logic_->txtMessage_Change(text); });
        txtMessage_->setText(QString());
    });

    const auto click = [this](QAbstractButton* b, const QString& name) {
        connect(b, &QAbstractButton::clicked, this, [this, name] {
            if (!syncing_)
                logic_->clickControl(name);
        });
    };
    for (QAbstractButton* b : frameTaskPane_->findChildren<QAbstractButton*>())
        click(b, b->objectName());
    connect(lstFiles_, &QListWidget::itemSelectionChanged, this, [this] {
        if (syncing_)
            return;
        QList<int> rows;
        for (const QModelIndex& i : lstFiles_->selectionModel()->selectedRows())
            rows << i.row();
        logic_->lstFiles_Click(rows);
    });
    connect(txtFrom_, &QLineEdit::textEdited, this, [this](const QString& t) { logic_->txtFrom_Change(t); });
    connect(txtTo_, &QLineEdit::textEdited, this, [this](const QString& t) { logic_->txtTo_Change(t); });
    connect(txtTo_, &QLineEdit::returnPressed, this, [this] { logic_->clickControl(QStringLiteral("cmdShow")); });

    showSized(*this, 1200, 760);
    logic_->guarded(QStringLiteral("Form_Load"), [this] { logic_->Form_Load(); });
}

frmBankReportMainView::~frmBankReportMainView() = default;

void frmBankReportMainView::shownChanged()
{
    const reports::BankShown& s = logic_->shown();
    syncing_ = true;
    setWindowTitle(s.caption);
    QStringList items;
    for (int i = 0; i < lstFiles_->count(); ++i)
        items << lstFiles_->item(i)->text();
    if (items != s.lstFiles) {
        lstFiles_->clear();
        lstFiles_->addItems(s.lstFiles);
    }
    if (txtFrom_->text() != s.txtFrom)
        txtFrom_->setText(s.txtFrom);
    if (txtTo_->text() != s.txtTo)
        txtTo_->setText(s.txtTo);
    frameTaskPane_->setEnabled(s.taskPaneEnabled);
    cmdShow_->setEnabled(s.cmdShowEnabled);
    cmdRemove_->setEnabled(s.cmdRemoveEnabled);
    for (QAbstractButton* b : reportCommands_)
        b->setEnabled(s.reportCommandsEnabled);
    chkShowIncomeAndExpenseCols_->setEnabled(s.reportCommandsEnabled);
    chkShowIncomeAndExpenseCols_->setChecked(s.showIncomeAndExpenseCols);
    chkShowGraphs_->setChecked(s.showGraphs);
    frameGraphpane_->setVisible(s.showGraphs);
    if (s.busy)
        setCursor(Qt::WaitCursor);
    else
        unsetCursor();
    syncing_ = false;
}

void frmBankReportMainView::drawChart(charts::clsBackBuffer& b, bool separate, int width, int height)
{
    if (b.Width() != width || b.Height() != height)
        b.Create(std::max(width, 1), std::max(height, 1), rgb(0, 0, 255), rgb(255, 0, 0), frameImage_);
    const reports::BankChartData c = logic_->chartData();
    if (c.labels.isEmpty()) {
        b.updateBalanceGraph({}, {}, separate ? QStringLiteral("גרף יתרות נפרדות") : QStringLiteral("גרף יתרה כוללת"));
        return;
    }
    if (separate) {
        b.updateBalanceGraph(c.labels, c.separate, QStringLiteral("גרף יתרות נפרדות"), c.nGraphs, true);
    } else {
        b.crdt = c.totalCredit;
        b.updateBalanceGraph(c.labels, c.totals, QStringLiteral("גרף יתרה כוללת"), 1, false);
    }
}

void frmBankReportMainView::drawCharts()
{
    // SeparateGraphs: each surface holds a colour per file.
    const int n = logic_->days().nIncluded;
    for (; coloursAdded_ < n; ++coloursAdded_)
        for (charts::clsBackBuffer* b : {total_.get(), separate_.get(), totalForFile_.get(), separateForFile_.get()})
            b->addBalanceColor(reports::fileColor(coloursAdded_));
    if (!logic_->shown().showGraphs && !isVisible())
        return;
    drawChart(*total_, false, picTotalGraph_->width(), picTotalGraph_->height());
    drawChart(*separate_, true, picSeparateGraphs_->width(), picSeparateGraphs_->height());
    picTotalGraph_->update();
    picSeparateGraphs_->update();
    hoverShowing_ = false;
}

bool frmBankReportMainView::saveGraphs(const QString& folder)
{
    drawCharts();
    drawChart(*totalForFile_, false, printedChartWidth, printedChartHeight);
    drawChart(*separateForFile_, true, printedChartWidth, printedChartHeight);
    QDir().mkpath(folder);
    return separateForFile_->hDC().save(folder + QStringLiteral("/separateGraphs.bmp"), "BMP")
        && totalForFile_->hDC().save(folder + QStringLiteral("/totalGraph.bmp"), "BMP");
}

QString frmBankReportMainView::exportHtml(web::WebView& view, const QString& imageFolder)
{
    if (&view != static_cast<web::WebView*>(wb_))
        return {};
    QString folder = imageFolder;
    folder.replace(QLatin1Char('\\'), QStringLiteral("\\\\")).replace(QLatin1Char('\''), QStringLiteral("\\'"));
    return wb_->evaluate(QStringLiteral(
                             "(function(F){var b=document.body,t=document.getElementById('tblGraphImages'),"
                             "s=document.getElementById('imgSep'),o=document.getElementById('imgTot');"
                             "var ss=s.getAttribute('src'),os=o.getAttribute('src'),td=t.style.display,bo=b.style.overflow;"
                             "s.setAttribute('src',F+'/separateGraphs.bmp');o.setAttribute('src',F+'/totalGraph.bmp');"
                             "b.style.overflow='';b.style.overflowY='scroll';t.style.display='table';"
                             "var h=document.documentElement.outerHTML;"
                             "t.style.display=td;b.style.overflowY='';b.style.overflow=bo;"
                             "s.setAttribute('src',ss);o.setAttribute('src',os);return h;})('%1')")
                             .arg(folder))
        .toString();
}

void frmBankReportMainView::chartMouseMove(bool separate, int x, int y)
{
    if (hoverShowing_)
        drawCharts();
    hoverSeparate_ = separate;
    hoverX_ = x;
    hoverY_ = y;
    timerHover_.start();
}

void frmBankReportMainView::timerHover_Timer()
{
    charts::clsBackBuffer& b = hoverSeparate_ ? *separate_ : *total_;
    const int i = b.getBalanceHoverIndex(hoverX_, hoverY_);
    if (i < 0)
        return;
    timerHover_.stop();
    const reports::BankChartData c = logic_->chartData();
    const int perSeries = int(c.labels.size());
    if (perSeries == 0)
        return;
    const double sum = hoverSeparate_ ? c.separate[size_t(i)] : c.totals[size_t(i)];
    const QString bank = hoverSeparate_ ? logic_->includedNames().value(i / perSeries) : QString();
    const QString date = formatTheDate(logic_->days().fromDate.addDays(i % perSeries));
    const int y = std::max(0, b.getPntY(i) - b.hoverHeight() - hoverGap);
    b.showBalanceHover(bank, date, QLocale().toString(std::round(sum), 'f', 0), b.getPntX(i), y);
    (hoverSeparate_ ? picSeparateGraphs_ : picTotalGraph_)->update();
    hoverShowing_ = true;
}

void frmBankReportMainView::bringToTop()
{
    showNormal();
    raise();
    activateWindow();
}

void frmBankReportMainView::setFocus(const QString& name)
{
    QLineEdit* box = name == QLatin1String("txtTo") ? txtTo_ : txtFrom_;
    box->setFocus();
    box->selectAll();
}

void frmBankReportMainView::printPreview(web::WebView& view, bool backgroundColors)
{
    if (&view != static_cast<web::WebView*>(wb_))
        return;
    showReportPreview(this, wb_->engineView(), backgroundColors,
                      [this] { return logic_->proposedExportName() + QStringLiteral(".pdf"); }, preview_, previewModeless_);
}

void frmBankReportMainView::closeEvent(QCloseEvent* e)
{
    if (!closing_) {
        closing_ = true;
        timerHover_.stop();
        logic_->guarded(QStringLiteral("Form_Unload"), [this] { logic_->Form_Unload(); });
    }
    e->accept();
}

} // namespace pelkor
