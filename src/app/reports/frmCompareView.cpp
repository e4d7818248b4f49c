#include "app/reports/frmCompareView.h"

#include "app/Named.h"
#include "app/Placement.h"
#include "app/charts/ChartView.h"
#include "app/reports/ReportPrint.h"
#include "app/web/QtWebView.h"
#include "charts/clsBackBuffer.h"
#include "seams/bus/Mailbox.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFontMetrics>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPrintPreviewDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace pelkor {

namespace {

constexpr int offScreenLeft = 40000;
constexpr int listWidth = 200;      // the task pane: the 171-pixel list and its margins
constexpr int barWidth = 64;        // the folding bars: room for "הסתר >>"
constexpr int chartsShare = 38;     // percent of the room the charts take beside the table

} // namespace

frmCompareView::frmCompareView(reports::ReportParts parts, QWidget* parent) : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("frmCompare"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::ApplicationModal);
    setLayoutDirection(Qt::RightToLeft);
    auto* col = new QVBoxLayout(this);
    auto* top = new QHBoxLayout();
    col->addLayout(top);
    opt_[1] = named(new QRadioButton(QStringLiteral("סיווגים"), this), QStringLiteral("optKindsOrTypes1"));
    opt_[0] = named(new QRadioButton(QStringLiteral("קטגוריות וסוגים"), this), QStringLiteral("optKindsOrTypes0"));
    opt_[1]->setChecked(true);
    top->addWidget(opt_[1]);
    top->addWidget(opt_[0]);
    top->addSpacing(12);
    auto* cmdShow = named(new QPushButton(QStringLiteral("הצג"), this), QStringLiteral("cmdShow"));
    auto* cmdSave = named(new QPushButton(QStringLiteral("שמור"), this), QStringLiteral("cmdSave"));
    auto* cmdPrint = named(new QPushButton(QStringLiteral("הדפס"), this), QStringLiteral("cmdPrintPreview"));
    chkPrintBGColors_ = named(new QCheckBox(QStringLiteral("הדפס צבעי רקע"), this), QStringLiteral("chkPrintBGColors"));
    auto* cmdClose = named(new QPushButton(QStringLiteral("סגור"), this), QStringLiteral("cmdClose"));
    top->addWidget(cmdShow);
    top->addSpacing(12);
    top->addWidget(cmdSave);
    top->addWidget(cmdPrint);
    top->addWidget(chkPrintBGColors_);
    top->addStretch(1);
    top->addWidget(cmdClose);

    // The two periods' boxes.
    auto* periods = new QHBoxLayout();
    col->addLayout(periods);
    std::array<QPushButton*, 2> browse{}, likeOther{};
    for (int i = 0; i < 2; ++i) {
        const QString n = QString::number(i);
        auto* box = named(new QGroupBox(reports::frameFileCaption(i), this), QStringLiteral("frameFile") + n);
        // Two rows: the file, then the range.
        auto* rows = new QVBoxLayout(box);
        auto* row = new QHBoxLayout();
        rows->addLayout(row);
        row->addWidget(new QLabel(QStringLiteral("שם קובץ:"), box));
        txtFileName_[size_t(i)] = named(new QLineEdit(box), QStringLiteral("txtFileName") + n, QStringLiteral("שם קובץ"));
        txtFileName_[size_t(i)]->setReadOnly(true);
        txtFileName_[size_t(i)]->setMinimumWidth(80);
        row->addWidget(txtFileName_[size_t(i)], 1);
        browse[size_t(i)] = named(new QPushButton(QStringLiteral("עיון..."), box), QStringLiteral("cmdBrowse") + n);
        row->addWidget(browse[size_t(i)]);
        row = new QHBoxLayout();
        rows->addLayout(row);
        row->addWidget(new QLabel(QStringLiteral("מתאריך:"), box));
        txtFrom_[size_t(i)] = named(new QLineEdit(box), QStringLiteral("txtFrom") + n, QStringLiteral("מתאריך"));
        row->addWidget(txtFrom_[size_t(i)]);
        row->addWidget(new QLabel(QStringLiteral(" עד תאריך:"), box));
        txtTo_[size_t(i)] = named(new QLineEdit(box), QStringLiteral("txtTo") + n, QStringLiteral("עד תאריך"));
        row->addWidget(txtTo_[size_t(i)]);
        likeOther[size_t(i)] = named(new QPushButton(i == 0 ? QStringLiteral("כמו ב'") : QStringLiteral("כמו א'"), box),
                                     QStringLiteral("cmdLikeOther") + n);
        row->addWidget(likeOther[size_t(i)]);
        row->addStretch(1);
        for (QLineEdit* t : {txtFrom_[size_t(i)], txtTo_[size_t(i)]}) {
            t->setLayoutDirection(Qt::LeftToRight);
            t->setFixedWidth(t->fontMetrics().horizontalAdvance(QStringLiteral("00/00/00000")) + 12);
        }
        periods->addWidget(box, 1);
    }

    pane_ = new QWidget(this);
    col->addWidget(pane_, 1);
    for (int which : {1, 0}) {
        reports_[which] = named(new web::QtWebView(pane_), which ? QStringLiteral("wbReport1") : QStringLiteral("wbReport0"));
        lists_[which] = named(new web::QtWebView(pane_), which ? QStringLiteral("wbList1") : QStringLiteral("wbList0"));
        reports_[which]->setSpokenName(which ? QStringLiteral("השוואה לפי סיווגים") : QStringLiteral("השוואה לפי סוגים"));
        lists_[which]->setSpokenName(which ? QStringLiteral("רשימת הסיווגים") : QStringLiteral("רשימת הסוגים"));
    }
    // The folding bars.
    frameTableBar_ = named(new QWidget(pane_), QStringLiteral("frameTableBar"));
    auto* tb = new QVBoxLayout(frameTableBar_);
    tb->setContentsMargins(0, 0, 0, 0);
    cmdHideTable_ = named(new QPushButton(QStringLiteral("הסתר >>"), frameTableBar_), QStringLiteral("cmdHideTable"));
    cmdShowTable_ = named(new QPushButton(QStringLiteral("<< הצג"), frameTableBar_), QStringLiteral("cmdShowTable"));
    frameTaskPaneBar_ = named(new QWidget(pane_), QStringLiteral("frameTaskPaneBar"));
    auto* pb = new QVBoxLayout(frameTaskPaneBar_);
    pb->setContentsMargins(0, 0, 0, 0);
    cmdHideTaskPane_ = named(new QPushButton(QStringLiteral("הסתר >>"), frameTaskPaneBar_), QStringLiteral("cmdHideTaskPane"));
    cmdShowTaskPane_ = named(new QPushButton(QStringLiteral("<< הצג"), frameTaskPaneBar_), QStringLiteral("cmdShowTaskPane"));
    for (QPushButton* b : {cmdHideTable_, cmdShowTable_})
        tb->addWidget(b);
    for (QPushButton* b : {cmdHideTaskPane_, cmdShowTaskPane_})
        pb->addWidget(b);
    tb->addStretch(1);
    pb->addStretch(1);
    for (QPushButton* b : {cmdHideTable_, cmdShowTable_, cmdHideTaskPane_, cmdShowTaskPane_})
        b->setFixedWidth(barWidth);

    // The charts: index 1 the kinds' pair, 0 the types'.
    for (int which : {1, 0}) {
        const QString n = QString::number(which);
        out_[size_t(which)] = std::make_unique<charts::clsBackBuffer>();
        in_[size_t(which)] = std::make_unique<charts::clsBackBuffer>();
        const auto handlers = [this, which](int chart) {
            ChartView::Handlers h;
            h.resized = [this, which](int, int) {
                if (logic_ && which == logic_->shown().optKindsOrTypes && logic_->shown().visible)
                    drawCharts(which, false);
            };
            h.mouseMove = [this, chart](int x, int y) { chartMouseMove(chart, x, y); };
            return h;
        };
        picChartOut_[size_t(which)] = named(new ChartView(*out_[size_t(which)], handlers(0), pane_), QStringLiteral("picChartOut") + n,
                                            QStringLiteral("תרשים הוצאות"));
        picChartIn_[size_t(which)] = named(new ChartView(*in_[size_t(which)], handlers(1), pane_), QStringLiteral("picChartIn") + n,
                                           QStringLiteral("תרשים הכנסות"));
    }
    // The hover's measure: never shown themselves.
    auto* frameHover = named(new QWidget(this), QStringLiteral("frameHover"));
    lblHoverXLabel_ = named(new QLabel(frameHover), QStringLiteral("lblHoverXLabel"));
    lblHoverSum_ = named(new QLabel(frameHover), QStringLiteral("lblHoverSum"));
    frameHover->hide();
    timerChartHover_.setInterval(250);
    connect(&timerChartHover_, &QTimer::timeout, this, [this] { timerChartHover_Timer(); });

    parts.measure = [font = QFont(QStringLiteral("Arial"), 10)](const QString& text) { return QFontMetrics(font).horizontalAdvance(text); };
    reports::ReportViews views;
    for (int which : {0, 1}) {
        views.wbReport[which] = reports_[which];
        views.wbList[which] = lists_[which];
    }
    logic_ = std::make_unique<reports::frmCompare>(std::move(parts), views, *this);
    txtMessage_ = std::make_unique<bus::Mailbox>();
    logic_->setTxtMessageId(txtMessage_->id());
    txtMessage_->setHandler([this](const QString& text) {
        if (text.isEmpty())
            return;
        logic_->guarded(QStringLiteral("txtMessage_Change"), [&] { logic_->txtMessage_Change(text); });
        txtMessage_->setText(QString());
    });

    const auto click = [this](QAbstractButton* b, const QString& name) {
        connect(b, &QAbstractButton::clicked, this, [this, name] { logic_->clickControl(name); });
    };
    click(opt_[1], QStringLiteral("optKindsOrTypes1"));
    click(opt_[0], QStringLiteral("optKindsOrTypes0"));
    click(cmdShow, QStringLiteral("cmdShow"));
    click(cmdSave, QStringLiteral("cmdSave"));
    click(cmdPrint, QStringLiteral("cmdPrintPreview"));
    click(cmdHideTable_, QStringLiteral("cmdHideTable"));
    click(cmdShowTable_, QStringLiteral("cmdShowTable"));
    click(cmdHideTaskPane_, QStringLiteral("cmdHideTaskPane"));
    click(cmdShowTaskPane_, QStringLiteral("cmdShowTaskPane"));
    for (int i = 0; i < 2; ++i) {
        click(browse[size_t(i)], QStringLiteral("cmdBrowse%1").arg(i));
        click(likeOther[size_t(i)], QStringLiteral("cmdLikeOther%1").arg(i));
        connect(txtFrom_[size_t(i)], &QLineEdit::textEdited, this, [this, i](const QString& t) { logic_->txtFrom_Change(i, t); });
        connect(txtTo_[size_t(i)], &QLineEdit::textEdited, this, [this, i](const QString& t) { logic_->txtTo_Change(i, t); });
        connect(txtTo_[size_t(i)], &QLineEdit::returnPressed, this, [this] { logic_->clickControl(QStringLiteral("cmdShow")); });
    }
    connect(chkPrintBGColors_, &QCheckBox::clicked, this, [this](bool on) {
        logic_->guarded(QStringLiteral("chkPrintBGColors_Click"), [&] { logic_->chkPrintBGColors_Click(on); });
    });
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);

    showSized(*this, 1200, 720);
    logic_->guarded(QStringLiteral("Form_Load"), [this] { logic_->Form_Load(); });
}

frmCompareView::~frmCompareView() = default;

void frmCompareView::shownChanged()
{
    const reports::CompareShown& s = logic_->shown();
    setWindowTitle(s.caption);
    setEnabled(s.enabled);
    for (int i = 0; i < 2; ++i) {
        const auto put = [](QLineEdit* box, const QString& text) {
            if (box->text() != text)
                box->setText(text);
        };
        put(txtFileName_[size_t(i)], s.txtFileName[size_t(i)]);
        put(txtFrom_[size_t(i)], s.txtFrom[size_t(i)]);
        put(txtTo_[size_t(i)], s.txtTo[size_t(i)]);
    }
    opt_[0]->setEnabled(s.typesEnabled);
    opt_[s.optKindsOrTypes]->setChecked(true);
    chkPrintBGColors_->setChecked(s.chkPrintBGColors);
    cmdHideTable_->setVisible(s.tableShown);
    cmdShowTable_->setVisible(!s.tableShown);
    cmdHideTaskPane_->setVisible(s.taskPaneShown);
    cmdShowTaskPane_->setVisible(!s.taskPaneShown);
    if (s.busy)
        setCursor(Qt::WaitCursor);
    else
        unsetCursor();
    placePanes();
}

void frmCompareView::placePanes()
{
    const reports::CompareShown& s = logic_->shown();
    const QRect area = pane_->rect();
    // Right to left: the table, its bar, the charts, the pane's bar, the pane.
    const int listW = s.taskPaneShown ? listWidth : 0;
    int right = area.right() + 1;
    const int room = area.width() - listW - 2 * barWidth;
    const int tableW = s.tableShown ? room * (100 - chartsShare) / 100 : 0;
    const int chartsW = room - tableW;
    for (int which : {1, 0}) {
        const bool active = which == s.optKindsOrTypes;
        const int dx = active ? 0 : offScreenLeft;
        reports_[which]->setGeometry(right - tableW + dx, area.y(), std::max(tableW, 1), area.height());
        lists_[which]->setGeometry(area.x() + dx, area.y(), std::max(listW, 1), area.height());
    }
    right -= tableW;
    frameTableBar_->setGeometry(right - barWidth, area.y(), barWidth, area.height());
    right -= barWidth;
    for (int which : {1, 0}) {
        const bool active = which == s.optKindsOrTypes;
        picChartOut_[size_t(which)]->setVisible(active);
        picChartIn_[size_t(which)]->setVisible(active);
        picChartOut_[size_t(which)]->setGeometry(right - chartsW, area.y(), chartsW, area.height() / 2);
        picChartIn_[size_t(which)]->setGeometry(right - chartsW, area.y() + area.height() / 2, chartsW, area.height() - area.height() / 2);
    }
    right -= chartsW;
    frameTaskPaneBar_->setGeometry(right - barWidth, area.y(), barWidth, area.height());
}

void frmCompareView::drawChart(int which, bool expenses, bool mustAnimate)
{
    charts::clsBackBuffer& b = expenses ? *out_[size_t(which)] : *in_[size_t(which)];
    ChartView* pic = expenses ? picChartOut_[size_t(which)] : picChartIn_[size_t(which)];
    if (b.Width() != pic->width() || b.Height() != pic->height())
        b.Create(pic->width(), pic->height(), reports::cmpColors[0], reports::cmpColors[1]);
    const reports::ChartSeries s = which == 1 ? reports::kindChartSeries(logic_->sums(), expenses)
                                              : reports::typeChartSeries(logic_->sums(), expenses);
    // Nothing ticked: the chart stays as it was drawn.
    if (s.labels.isEmpty())
        return;
    b.updateComparisonChart(s.labels, s.a, s.b, expenses ? QStringLiteral("הוצאות") : QStringLiteral("הכנסות"),
                            reports::cmpColors[expenses ? 3 : 5], reports::cmpColors[expenses ? 2 : 4], mustAnimate);
    pic->update();
}

void frmCompareView::drawCharts(int which, bool mustAnimate)
{
    if (which == 0 && !logic_->sums().typesIncluded)
        return;
    placePanes();
    drawChart(which, true, mustAnimate);
    drawChart(which, false, mustAnimate);
    hoverShowing_ = false;
}

void frmCompareView::chartMouseMove(int chart, int x, int y)
{
    if (hoverShowing_)
        drawCharts(logic_->shown().optKindsOrTypes, false);
    hoverX_ = x;
    hoverY_ = y;
    hoverChart_ = chart;
    timerChartHover_.start();
}

void frmCompareView::timerChartHover_Timer()
{
    const int which = logic_->shown().optKindsOrTypes;
    charts::clsBackBuffer& b = hoverChart_ == 0 ? *out_[size_t(which)] : *in_[size_t(which)];
    const int hit = b.getComparisonHoverIndex(hoverX_, hoverY_);
    if (hit == -1)
        return;
    timerChartHover_.stop();
    const int period = hit >= 10000 ? 1 : 0;
    const int i = hit % 10000;
    if (i >= b.pairCount())
        return;
    const double sum = period == 0 ? b.getY(i) : b.getYB(i);
    lblHoverXLabel_->setText(reports::frameFileCaption(period) + QStringLiteral(" - ") + b.getX(i) + QLatin1Char(':'));
    lblHoverSum_->setText(QLocale().toString(sum, 'f', 0));
    lblHoverXLabel_->adjustSize();
    lblHoverSum_->adjustSize();
    const charts::clsBackBuffer::Pair& p = b.pair(i);
    const int w = lblHoverXLabel_->width() + lblHoverSum_->width() + 16;
    const int h = std::max(lblHoverXLabel_->height(), lblHoverSum_->height()) + 4;
    const int mid = period == 0 ? (p.XL + p.XM) / 2 : (p.XM + p.XR) / 2;
    const int barTop = std::min(period == 0 ? p.YA : p.YB, b.zeroY());
    b.showComparisonHover(lblHoverXLabel_->text(), lblHoverSum_->text(), std::max(0, mid - w / 2), std::max(0, barTop - 3 - h));
    (hoverChart_ == 0 ? picChartOut_ : picChartIn_)[size_t(which)]->update();
    hoverShowing_ = true;
}

void frmCompareView::resizeEvent(QResizeEvent* e)
{
    QWidget::resizeEvent(e);
    placePanes();
}

void frmCompareView::bringToTop()
{
    showNormal();
    raise();
    activateWindow();
}

void frmCompareView::setFocus(const QString& name)
{
    const int i = name.endsWith(QLatin1Char('1')) ? 1 : 0;
    QLineEdit* box = name.startsWith(QLatin1String("txtTo")) ? txtTo_[size_t(i)] : txtFrom_[size_t(i)];
    box->setFocus();
    box->selectAll();
}

QString frmCompareView::pageHtml(web::WebView& view)
{
    for (web::QtWebView* v : {reports_[0], reports_[1]})
        if (static_cast<web::WebView*>(v) == &view)
            return v->evaluate(QStringLiteral("(function(){var b=document.body;b.style.overflow='scroll';"
                                              "var h=document.documentElement.outerHTML;b.style.overflow='hidden';return h;})()"))
                .toString();
    return {};
}

void frmCompareView::printPreview(web::WebView& view, bool backgroundColors)
{
    for (web::QtWebView* v : {reports_[0], reports_[1]})
        if (static_cast<web::WebView*>(v) == &view) {
            auto* dlg = makeReportPreview(this, v->engineView(), backgroundColors,
                                          [this] { return logic_->proposedSaveName() + QStringLiteral(".pdf"); });
            dlg->open();
            return;
        }
}

void frmCompareView::closeEvent(QCloseEvent* e)
{
    if (!closing_) {
        closing_ = true;
        timerChartHover_.stop();
        logic_->guarded(QStringLiteral("Form_Unload"), [this] { logic_->Form_Unload(); });
    }
    e->accept();
}

} // namespace pelkor
