#include "app/reconcile/ReconcileView.h"

#include "app/reconcile/MatchesWindow.h"
#include "app/AmountLabel.h"
#include "app/Named.h"
#include "app/grid/GridView.h"
#include "app/web/QtWebView.h"
#include "file/Display.h"
#include "frame/frmMain.h"
#include "seams/grid/GridTableModel.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <QWebEngineNewWindowRequest>
#include <QWebEnginePage>
#include <QWebEngineView>

namespace pelkor {

namespace {

// A row of marked sums: how many, then income and expense.
QWidget* marksRow(QWidget* parent, AmountLabel*& in, AmountLabel*& out, QLabel*& count, const QString& prefix,
                  const QString& whose)
{
    auto* bar = new QWidget(parent);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    count = named(new QLabel(bar), prefix + QStringLiteral("LinesSelected"));
    in = new AmountLabel(prefix + QStringLiteral("TotalIn"), QStringLiteral("הכנסות מסומנות ") + whose, bar);
    out = new AmountLabel(prefix + QStringLiteral("TotalOut"), QStringLiteral("הוצאות מסומנות ") + whose, bar);
    for (AmountLabel* l : {in, out})
        l->setLayoutDirection(Qt::LeftToRight);
    row->addWidget(count);
    row->addSpacing(12);
    row->addWidget(new QLabel(QStringLiteral("הכנסה:"), bar));
    row->addWidget(in);
    row->addSpacing(12);
    row->addWidget(new QLabel(QStringLiteral("הוצאה:"), bar));
    row->addWidget(out);
    row->addStretch(1);
    return bar;
}

} // namespace

ReconcileView::ReconcileView(frmMain& logic, std::function<void()> focusMain, QWidget* parent)
    : QWidget(parent), m_(logic), focusMain_(std::move(focusMain))
{
    reconcile::Session& s = m_.session();
    setLayoutDirection(Qt::RightToLeft);
    auto* col = new QVBoxLayout(this);
    col->setContentsMargins(0, 0, 0, 0);

    lblBankInfo_ = named(new QLabel(this), QStringLiteral("lblBankInfo"));
    QFont bold = lblBankInfo_->font();
    bold.setBold(true);
    lblBankInfo_->setFont(bold);
    col->addWidget(lblBankInfo_);
    frmButton_ = new frmButtonView(m_, this);
    col->addWidget(frmButton_);
    // Where the file and the bank part, while they disagree.
    lblParting_ = named(new QLabel(this), QStringLiteral("lblParting"));
    lblParting_->setWordWrap(true);
    lblParting_->setStyleSheet(QStringLiteral("color: #a00000"));
    col->addWidget(lblParting_);

    // The bank menu: a bank's site opens in the user's own browser.
    wbMain_ = named(new web::QtWebView(this), QStringLiteral("wbMain"));
    wbMain_->setSpokenName(QStringLiteral("רשימת הבנקים"));
    lblBrowser_ = named(new QLabel(this), QStringLiteral("lblBrowser"));
    lblBrowser_->setWordWrap(true);
    connect(wbMain_->engineView()->page(), &QWebEnginePage::newWindowRequested, this,
            [this](QWebEngineNewWindowRequest& request) {
                const QUrl url = request.requestedUrl();
                QDesktopServices::openUrl(url);
                lblBrowser_->setText(QStringLiteral("אתר הבנק נפתח בדפדפן שלך: ") + url.host());
            });
    col->addWidget(wbMain_, 3);
    col->addWidget(lblBrowser_);

    bank_ = named(new grid::GridView(s.bank.msfgBank, this), QStringLiteral("msfgBank"), QStringLiteral("שורות הבנק"));
    bank_->tableModel()->setFigureColumns({colIn, colOut, colBalance});
    // The bank's rows have no kind and no type: those columns stay out of
    // sight, and the description takes the room the others leave.
    col->addWidget(bank_, 3);
    bankMarks_ = marksRow(this, lblBankTotalIn_, lblBankTotalOut_, lblBankLinesSelected_, QStringLiteral("lblBank"),
                          QStringLiteral("בבנק"));
    col->addWidget(bankMarks_);
    mainMarks_ = marksRow(parent, lblMainTotalIn_, lblMainTotalOut_, lblMainLinesSelected_, QStringLiteral("lblMain"),
                          QStringLiteral("בפלקור"));

    auto* buttons = new QHBoxLayout();
    const auto button = [&](const QString& name, const QString& caption) {
        auto* b = named(new QPushButton(caption, this), name);
        b->setFocusPolicy(Qt::NoFocus);
        buttons->addWidget(b);
        return b;
    };
    cmdCoordinate_ = button(QStringLiteral("cmdCoordinate"), QStringLiteral("ה ת א ם"));
    cmdSetTargetDate_ = button(QStringLiteral("cmdSetTargetDate"), QStringLiteral("תאריך התאמה"));
    cmdGoToAutomaticCoordination_ = button(QStringLiteral("cmdGoToAutomaticCoordination"), QStringLiteral("עבור להתאמה אוטומטית"));
    cmdSpecialFind_ = button(QStringLiteral("cmdSpecialFind"), QStringLiteral("חפש התאמה"));
    cmdPrev_ = button(QStringLiteral("cmdPrev"), QStringLiteral("הקודם"));
    cmdNext_ = button(QStringLiteral("cmdNext"), QStringLiteral("הבא"));
    chkShowCoordinatedRows_ = named(new QCheckBox(QStringLiteral("הצג מותאמות"), this), QStringLiteral("chkShowCoordinatedRows"));
    chkShowCoordinatedRows_->setFocusPolicy(Qt::NoFocus);
    buttons->addWidget(chkShowCoordinatedRows_);
    buttons->addStretch(1);
    cmdExitCoordination_ = button(QStringLiteral("cmdExitCoordination"), QStringLiteral("יציאה"));
    col->addLayout(buttons);

    connect(cmdCoordinate_, &QPushButton::clicked, this,
            [this] { click(QStringLiteral("cmdCoordinate_Click"), [this] { m_.cmdCoordinate_Click(); }); });
    connect(cmdSetTargetDate_, &QPushButton::clicked, this,
            [this] { click(QStringLiteral("cmdSetTargetDate_Click"), [this] { m_.cmdSetTargetDate_Click(); }); });
    connect(cmdGoToAutomaticCoordination_, &QPushButton::clicked, this, [this] {
        click(QStringLiteral("cmdGoToAutomaticCoordination_Click"), [this] { m_.cmdGoToAutomaticCoordination_Click(); });
    });
    // The partner search starts from the grid that has the cursor.
    connect(cmdSpecialFind_, &QPushButton::clicked, this,
            [this] { m_.guarded(QStringLiteral("cmdSpecialFind_Click"), [this] { m_.cmdSpecialFind_Click(); }); });
    connect(cmdNext_, &QPushButton::clicked, this,
            [this] { m_.guarded(QStringLiteral("cmdNext_Click"), [this] { m_.cmdNext_Click(); }); });
    connect(cmdPrev_, &QPushButton::clicked, this,
            [this] { m_.guarded(QStringLiteral("cmdPrev_Click"), [this] { m_.cmdPrev_Click(); }); });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now == bank_)
            m_.setBankGridActive(true);
        else if (now && now->objectName() == QLatin1String("msfgMain"))
            m_.setBankGridActive(false);
    });
    connect(cmdExitCoordination_, &QPushButton::clicked, this,
            [this] { click(QStringLiteral("cmdExitCoordination_Click"), [this] { m_.cmdExitCoordination_Click(); }); });
    connect(chkShowCoordinatedRows_, &QCheckBox::toggled, this, [this](bool on) {
        click(QStringLiteral("chkShowCoordinatedRows_Click"), [this, on] { m_.chkShowCoordinatedRows_Click(on); });
    });
    // A click in the pink mark cell marks the row or clears its mark.
    connect(bank_, &grid::GridView::cellEntered, this, [this](int, int) {
        m_.guarded(QStringLiteral("msfgBank_EnterCell"), [this] { m_.msfgBank_EnterCell(); });
    });
    connect(bank_, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
        if (bank_->tableModel()->gridCol(index.column()) == colMark)
            m_.guarded(QStringLiteral("msfgBank_MouseDown"), [this] { m_.msfgBankMarkClicked(); });
    });
    m_.setBankPage(wbMain_);
    makeMatchesWindow();
    mirror();
}

void ReconcileView::makeMatchesWindow()
{
    frmMatches_ = new frmMatchesView(m_, this);
    m_.setMatchesPage(frmMatches_->page());
}

void ReconcileView::click(const QString& name, const std::function<void()>& act)
{
    if (focusMain_)
        focusMain_();
    m_.guarded(name, act);
}

void ReconcileView::mirror()
{
    const reconcile::SessionShown& s = m_.session().shown;
    setVisible(s.split);
    mainMarks_->setVisible(s.split && s.bankGridVisible);
    lblBankInfo_->setText(s.lblBankInfo);
    lblBankInfo_->setVisible(s.lblBankInfoVisible || !s.lblBankInfo.isEmpty());
    lblParting_->setText(s.lblParting);
    lblParting_->setVisible(s.cmdGoToAutomaticCoordination && !s.lblParting.isEmpty());
    wbMain_->setVisible(s.wbMainVisible);
    lblBrowser_->setVisible(s.wbMainVisible && !lblBrowser_->text().isEmpty());
    bank_->setVisible(s.bankGridVisible);
    bankMarks_->setVisible(s.bankGridVisible);
    // A refill of the grid: its columns fit their texts anew.
    if (m_.session().bank.fills != fills_) {
        fills_ = m_.session().bank.fills;
        for (int c : {colKind, colType})
            bank_->setColumnHidden(c - 1, true);
        bank_->resizeColumnsToContents();
        bank_->setFillColumn(colDetail - 1, 15 * bank_->fontMetrics().averageCharWidth());
    }
    // The grid's first row shown, once the grid can show it.
    const int top = m_.session().bank.msfgBank.TopRow();
    if (s.bankGridVisible && top >= 1 && bank_->rowAt(0) != bank_->tableModel()->indexOf(top, colDate).row())
        bank_->scrollTo(bank_->tableModel()->indexOf(top, colDate), QAbstractItemView::PositionAtTop);
    bank_->setRedLineRow(m_.session().bank.iBankRowAboveRed);
    cmdCoordinate_->setVisible(s.cmdCoordinate);
    cmdSetTargetDate_->setVisible(s.cmdSetTargetDate);
    cmdExitCoordination_->setVisible(s.split);
    cmdGoToAutomaticCoordination_->setVisible(s.cmdGoToAutomaticCoordination);
    cmdSpecialFind_->setVisible(s.cmdSpecialFind && !s.cmdNext);
    cmdNext_->setVisible(s.cmdSpecialFind && s.cmdNext);
    cmdPrev_->setVisible(s.cmdSpecialFind && s.cmdNext);
    chkShowCoordinatedRows_->setVisible(s.chkShowCoordinatedRows);
    {
        const QSignalBlocker block(chkShowCoordinatedRows_);
        chkShowCoordinatedRows_->setChecked(s.chkShowCoordinatedRowsValue);
    }
    frmButton_->mirror();
    frmMatches_->mirror();
    lblBankTotalIn_->setAmount(s.bankMarks.totalIn);
    lblBankTotalOut_->setAmount(s.bankMarks.totalOut);
    lblBankLinesSelected_->setText(s.bankMarks.linesSelected);
    lblMainTotalIn_->setAmount(s.mainMarks.totalIn);
    lblMainTotalOut_->setAmount(s.mainMarks.totalOut);
    lblMainLinesSelected_->setText(s.mainMarks.linesSelected);
}

} // namespace pelkor
