#include "app/reports/frmMonthReportMainView.h"

#include "app/reports/ReportPrint.h"

#include "app/Named.h"
#include "app/Placement.h"
#include "app/ui/QtUi.h"
#include "app/web/QtWebView.h"
#include "seams/bus/Mailbox.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QEventLoop>
#include <QFont>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPageLayout>
#include <QPageSize>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QToolBar>
#include <QVBoxLayout>
#include <QWebEnginePage>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace pelkor {

namespace {

// The pair not shown stands this far to the side: loaded and seen by the
// engine, out of the window's sight.
constexpr int offScreenLeft = 40000;
// The lists' pane: the 171-pixel table and its margins.
constexpr int listWidth = 200;

} // namespace

frmMonthReportMainView::frmMonthReportMainView(reports::ReportParts parts, reports::PeriodType type, QWidget* parent)
    : QWidget(parent, Qt::Window)
{
    // A screen reader names the window by its title.
    setObjectName(QStringLiteral("frmMonthReportMain"));
    setAttribute(Qt::WA_DeleteOnClose);
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
    top->addWidget(named(new QLabel(QStringLiteral("מתאריך:"), this), QStringLiteral("lblFrom")));
    txtFrom_ = named(new QLineEdit(this), QStringLiteral("txtFrom"), QStringLiteral("מתאריך"));
    top->addWidget(txtFrom_);
    top->addWidget(named(new QLabel(QStringLiteral(" עד תאריך:"), this), QStringLiteral("lblTo")));
    txtTo_ = named(new QLineEdit(this), QStringLiteral("txtTo"), QStringLiteral("עד תאריך"));
    top->addWidget(txtTo_);
    for (QLineEdit* t : {txtFrom_, txtTo_}) {
        t->setLayoutDirection(Qt::LeftToRight);
        t->setFixedWidth(t->fontMetrics().horizontalAdvance(QStringLiteral("00/00/00000")) + 12);
        t->installEventFilter(this);
    }
    auto* cmdShow = named(new QPushButton(QStringLiteral("הצג"), this), QStringLiteral("cmdShow"));
    auto* cmdSave = named(new QPushButton(QStringLiteral("שמור"), this), QStringLiteral("cmdSave"));
    auto* cmdPrint = named(new QPushButton(QStringLiteral("הדפס"), this), QStringLiteral("cmdPrintPreview"));
    chkPrintBGColors_ = named(new QCheckBox(QStringLiteral("הדפס צבעי רקע"), this), QStringLiteral("chkPrintBGColors"));
    cmdToggleTaskpane_ = named(new QPushButton(this), QStringLiteral("cmdToggleTaskpane"));
    auto* cmdClose = named(new QPushButton(QStringLiteral("סגור"), this), QStringLiteral("cmdClose"));
    top->addWidget(cmdShow);
    top->addSpacing(12);
    top->addWidget(cmdSave);
    top->addWidget(cmdPrint);
    top->addWidget(chkPrintBGColors_);
    top->addStretch(1);
    top->addWidget(cmdToggleTaskpane_);
    top->addWidget(cmdClose);

    pane_ = new QWidget(this);
    col->addWidget(pane_, 1);
    for (int which : {1, 0}) {
        reports_[which] = named(new web::QtWebView(pane_), which ? QStringLiteral("wbReport1") : QStringLiteral("wbReport0"));
        lists_[which] = named(new web::QtWebView(pane_), which ? QStringLiteral("wbList1") : QStringLiteral("wbList0"));
        reports_[which]->setSpokenName(which ? QStringLiteral("דוח לפי סיווגים") : QStringLiteral("דוח לפי סוגים"));
        lists_[which]->setSpokenName(which ? QStringLiteral("רשימת הסיווגים") : QStringLiteral("רשימת הסוגים"));
    }

    // The logic, on these views; the type pair only where the file has types
    // (the logic decides, and leaves the pair empty otherwise).
    parts.measure = [font = QFont(QStringLiteral("Arial"), 10)](const QString& text) {
        return QFontMetrics(font).horizontalAdvance(text);
    };
    reports::ReportViews views;
    for (int which : {0, 1}) {
        views.wbReport[which] = reports_[which];
        views.wbList[which] = lists_[which];
    }
    logic_ = std::make_unique<reports::frmMonthReportMain>(std::move(parts), views, *this, type);
    txtMessage_ = std::make_unique<bus::Mailbox>();
    logic_->setTxtMessageId(txtMessage_->id());
    txtMessage_->setHandler([this](const QString& text) {
        if (text.isEmpty())
            return;
        logic_->guarded(QStringLiteral("txtMessage_Change"), [&] { logic_->txtMessage_Change(text); });
        // Any message leaves the box empty again.
        txtMessage_->setText(QString());
    });

    const auto act = [this](const QString& proc, std::function<void()> fn) {
        return [this, proc, fn = std::move(fn)] { logic_->guarded(proc, fn); };
    };
    connect(opt_[1], &QRadioButton::clicked, this, act(QStringLiteral("optKindsOrTypes_Click"), [this] { logic_->optKindsOrTypes_Click(1); }));
    connect(opt_[0], &QRadioButton::clicked, this, act(QStringLiteral("optKindsOrTypes_Click"), [this] { logic_->optKindsOrTypes_Click(0); }));
    connect(cmdShow, &QPushButton::clicked, this, act(QStringLiteral("cmdShow_Click"), [this] { logic_->cmdShow_Click(); }));
    connect(cmdSave, &QPushButton::clicked, this, act(QStringLiteral("cmdSave_Click"), [this] { logic_->cmdSave_Click(); }));
    connect(cmdPrint, &QPushButton::clicked, this, act(QStringLiteral("cmdPrintPreview_Click"), [this] { logic_->cmdPrintPreview_Click(); }));
    connect(chkPrintBGColors_, &QCheckBox::clicked, this, [this](bool on) {
        logic_->guarded(QStringLiteral("chkPrintBGColors_Click"), [&] { logic_->chkPrintBGColors_Click(on); });
    });
    connect(cmdToggleTaskpane_, &QPushButton::clicked, this, act(QStringLiteral("cmdToggleTaskpane_Click"), [this] { logic_->cmdToggleTaskpane_Click(); }));
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
    connect(txtFrom_, &QLineEdit::textEdited, this, [this](const QString& t) { logic_->txtFrom_Change(t); });
    connect(txtTo_, &QLineEdit::textEdited, this, [this](const QString& t) { logic_->txtTo_Change(t); });

    // Seen from the start: the pages load in a window the engine knows is
    // shown, and the pointer waits until the logic has built them.
    showSized(*this, 1100, 640);
    logic_->guarded(QStringLiteral("Form_Load"), [this] { logic_->Form_Load(); });
}

frmMonthReportMainView::~frmMonthReportMainView() = default;

void frmMonthReportMainView::shownChanged()
{
    const reports::ReportShown& s = logic_->shown();
    setWindowTitle(s.caption);
    setEnabled(s.enabled);
    if (txtFrom_->text() != s.txtFrom)
        txtFrom_->setText(s.txtFrom);
    if (txtTo_->text() != s.txtTo)
        txtTo_->setText(s.txtTo);
    opt_[0]->setEnabled(s.typesEnabled);
    opt_[s.optKindsOrTypes]->setChecked(true);
    chkPrintBGColors_->setChecked(s.chkPrintBGColors);
    cmdToggleTaskpane_->setText(s.cmdToggleTaskpaneCaption);
    if (s.busy)
        setCursor(Qt::WaitCursor);
    else
        unsetCursor();
    placePairs();
}

void frmMonthReportMainView::placePairs()
{
    const reports::ReportShown& s = logic_->shown();
    const QRect area = pane_->rect();
    const int listW = s.taskpaneShown ? listWidth : 0;
    for (int which : {1, 0}) {
        const bool active = which == s.optKindsOrTypes;
        const int dx = active ? 0 : offScreenLeft;
        // Right to left: the report on the right, its list on the left.
        reports_[which]->setGeometry(area.x() + listW + dx, area.y(), area.width() - listW, area.height());
        lists_[which]->setGeometry(area.x() + dx, area.y(), std::max(listW, 1), area.height());
        lists_[which]->setVisible(true);
    }
}

void frmMonthReportMainView::resizeEvent(QResizeEvent* e)
{
    QWidget::resizeEvent(e);
    placePairs();
}

void frmMonthReportMainView::bringToTop()
{
    showNormal();
    raise();
    activateWindow();
}

void frmMonthReportMainView::setFocus(const QString& name)
{
    QLineEdit* box = name == QLatin1String("txtTo") ? txtTo_ : txtFrom_;
    box->setFocus();
    box->selectAll();
}

bool frmMonthReportMainView::eventFilter(QObject* watched, QEvent* e)
{
    auto* box = qobject_cast<QLineEdit*>(watched);
    if (box && (box == txtFrom_ || box == txtTo_)) {
        const bool from = box == txtFrom_;
        if (e->type() == QEvent::FocusIn) {
            QMetaObject::invokeMethod(box, &QLineEdit::selectAll, Qt::QueuedConnection);
        } else if (e->type() == QEvent::FocusOut) {
            logic_->guarded(QStringLiteral("txt_LostFocus"), [&] { from ? logic_->txtFrom_LostFocus() : logic_->txtTo_LostFocus(); });
        } else if (e->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(e)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                logic_->guarded(QStringLiteral("txt_KeyPress"), [&] { from ? logic_->txtFrom_Enter() : logic_->txtTo_Enter(); });
                return true;
            }
        }
    }
    return QWidget::eventFilter(watched, e);
}

web::QtWebView* frmMonthReportMainView::viewOf(web::WebView& view) const
{
    for (web::QtWebView* v : {reports_[0], reports_[1]})
        if (static_cast<web::WebView*>(v) == &view)
            return v;
    return nullptr;
}

QString frmMonthReportMainView::pageHtml(web::WebView& view)
{
    web::QtWebView* v = viewOf(view);
    if (!v)
        return {};
    return v->evaluate(QStringLiteral(
                           "(function(){var b=document.body;b.style.overflow='scroll';"
                           "var h=document.documentElement.outerHTML;b.style.overflow='hidden';return h;})()"))
        .toString();
}

void frmMonthReportMainView::printPreview(web::WebView& view, bool backgroundColors)
{
    web::QtWebView* v = viewOf(view);
    if (!v)
        return;
    showReportPreview(this, v->engineView(), backgroundColors,
                      [this] { return logic_->proposedSaveName() + QStringLiteral(".pdf"); }, preview_, previewModeless_);
}

void frmMonthReportMainView::closeEvent(QCloseEvent* e)
{
    if (!closing_) {
        closing_ = true;
        logic_->guarded(QStringLiteral("Form_Unload"), [this] { logic_->Form_Unload(); });
    }
    e->accept();
}

} // namespace pelkor
