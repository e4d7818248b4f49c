#include "app/frmMainView.h"

#include "app/AmountLabel.h"
#include "app/CellEditorsView.h"
#include "app/charts/DailySummaryView.h"
#include "app/reconcile/ReconcileView.h"
#include "app/Named.h"
#include "app/frmFindView.h"
#include "app/reports/frmBankReportMainView.h"
#include "app/reports/frmCompareView.h"
#include "app/reports/frmMonthReportMainView.h"
#include "app/web/frmWaitMessageView.h"
#include "app/grid/GridView.h"
#include "file/Display.h"
#include "frame/Controls.h"
#include "base/Format.h"
#include "base/Instances.h"
#include "base/Modes.h"
#include "seams/grid/GridTableModel.h"
#include "frame/frmMain.h"

#include <QAbstractTableModel>
#include <QAbstractButton>
#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileInfo>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QCoreApplication>
#include <QScreen>
#include <QStyle>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <type_traits>

namespace pelkor {

namespace {

// A label is read by its text, which Qt tells the accessibility tree anew
// with each change.
void setLabel(QLabel* l, const QString& text)
{
    if (l->text() != text)
        l->setText(text);
}

} // namespace

frmMainView::frmMainView(frmMain& logic, QWidget* parent) : QMainWindow(parent), m_(logic)
{
    setLayoutDirection(Qt::RightToLeft);
    auto* central = new QWidget(this);
    auto* col = new QVBoxLayout(central);
    auto* top = new QHBoxLayout();
    fileName_ = named(new QLabel(central), QStringLiteral("lblFileName"));
    status_ = named(new QLabel(central), QStringLiteral("lblStatus"));
    auto* refresh = named(new QPushButton(QStringLiteral("רענן"), central), QStringLiteral("cmdRefresh"));
    refresh->setShortcut(QKeySequence(Qt::Key_F5));
    top->addWidget(fileName_);
    top->addStretch(1);
    // While the statement importer works; the points grow with the wait.
    lblWait_ = named(new QLabel(QStringLiteral("מעדכן נתונים"), central), QStringLiteral("lblWait"));
    lblPoints_ = named(new QLabel(central), QStringLiteral("lblPoints"), QStringLiteral("המתנה"));
    lblWait_->setVisible(false);
    lblPoints_->setVisible(false);
    top->addWidget(lblWait_);
    top->addWidget(lblPoints_);
    top->addWidget(status_);
    top->addWidget(refresh);
    col->addLayout(top);
    newLines_ = named(new QLabel(central), QStringLiteral("lblNewLines"));
    newLines_->setWordWrap(true);
    col->addWidget(newLines_);
    table_ = named(new grid::GridView(m_.mainGrid().msfgMain, central), QStringLiteral("msfgMain"),
                   QStringLiteral("שורות הקובץ"));
    table_->tableModel()->setFigureColumns({colIn, colOut, colBalance});
    // The daily summary stands beside the grid (to its left, right to left).
    auto* middle = new QHBoxLayout();
    middle->addWidget(table_, 3);
    daily_ = new DailySummaryView(m_, [this] { table_->setFocus(); }, central);
    middle->addWidget(daily_, 2);
    // A reconciliation's bank rows stand beside the grid too.
    reconcile_ = new ReconcileView(m_, [this] { table_->setFocus(); }, central);
    middle->addWidget(reconcile_, 3);
    col->addLayout(middle, 1);
    col->addWidget(reconcile_->mainMarksBar());

    // A detail child's totals, under the grid. The sums read left to right.
    totals_ = new QWidget(central);
    auto* sums = new QHBoxLayout(totals_);
    sums->setContentsMargins(0, 0, 0, 0);
    const auto sum = [&](const QString& caption, const QString& name) {
        // Read as the caption says, without its colon, the sum as its value.
        auto* value = new AmountLabel(name, caption.chopped(1), totals_);
        value->setLayoutDirection(Qt::LeftToRight);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        sums->addWidget(new QLabel(caption, totals_));
        sums->addWidget(value);
        sums->addSpacing(3 * value->fontMetrics().averageCharWidth());
        return value;
    };
    lblTotalIncome_ = sum(QStringLiteral("סה\"כ הכנסות:"), QStringLiteral("lblTotalIncome"));
    lblTotalExpense_ = sum(QStringLiteral("סה\"כ הוצאות:"), QStringLiteral("lblTotalExpense"));
    sums->addStretch(1);
    totals_->setVisible(false);
    col->addWidget(totals_);
    setCentralWidget(central);
    cmbColors_ = named(new QComboBox(central), QStringLiteral("cmbColors"), QStringLiteral("צבע השורה"));
    cmbColors_->addItems(colorWords());
    cmbColors_->setFocusPolicy(Qt::NoFocus);
    top->insertWidget(1, cmbColors_);
    wireEditing();
    fileName_->installEventFilter(this);

    // The buttons of a new-line child.
    cmdOK_ = named(new QPushButton(QStringLiteral("אישור"), central), QStringLiteral("cmdOK"));
    cmdCancel_ = named(new QPushButton(QStringLiteral("ביטול"), central), QStringLiteral("cmdCancel"));
    // Deleting and the zeroing line: the grid takes the focus first, as a
    // click on the button gives it back to the grid.
    const auto ledgerButton = [&](const QString& name, void (frmMain::*click)()) {
        auto* b = named(new QPushButton(controlCaption(name), central), name);
        b->setFocusPolicy(Qt::NoFocus);
        connect(b, &QPushButton::clicked, this, [this, name, click] {
            table_->setFocus();
            m_.guarded(name + QStringLiteral("_Click"), [this, click] { (m_.*click)(); });
            afterEdit();
        });
        return b;
    };
    cmdAdd_ = ledgerButton(QStringLiteral("cmdAdd"), &frmMain::cmdAdd_Click);
    cmdDel_ = ledgerButton(QStringLiteral("cmdDel"), &frmMain::cmdDel_Click);
    cmdDelAll_ = ledgerButton(QStringLiteral("cmdDelAll"), &frmMain::cmdDelAll_Click);
    cmdIpus_ = ledgerButton(QStringLiteral("cmdIpus"), &frmMain::cmdIpus_Click);
    cmdGoToIpusLine_ = ledgerButton(QStringLiteral("cmdGoToIpusLine"), &frmMain::cmdGoToIpusLine_Click);
    cmdTzefi_ = ledgerButton(QStringLiteral("cmdTzefi"), &frmMain::cmdTzefi_Click);
    cmdSubtractFromTzefi_ = ledgerButton(QStringLiteral("cmdSubtractFromTzefi"), &frmMain::cmdSubtractFromTzefi_Click);
    cmdMove_ = ledgerButton(QStringLiteral("cmdMove"), &frmMain::cmdMove_Click);
    // The pick page names the grid's font.
    m_.tzefi().gridFontName = table_->font().family();
    auto* buttons = new QHBoxLayout();
    buttons->addWidget(cmdIpus_);
    buttons->addWidget(cmdGoToIpusLine_);
    buttons->addWidget(cmdAdd_);
    buttons->addWidget(cmdDel_);
    buttons->addWidget(cmdDelAll_);
    buttons->addWidget(cmdTzefi_);
    buttons->addWidget(cmdSubtractFromTzefi_);
    buttons->addWidget(cmdMove_);
    cmdMonthReport_ = named(new QPushButton(controlCaption(QStringLiteral("cmdMonthReport")), central), QStringLiteral("cmdMonthReport"));
    cmdMonthReport_->setFocusPolicy(Qt::NoFocus);
    connect(cmdMonthReport_, &QPushButton::clicked, this, [this] {
        m_.guarded(QStringLiteral("cmdMonthReport_Click"), [this] { m_.makePeriodReport(QStringLiteral("m")); });
    });
    buttons->addWidget(cmdMonthReport_);
    cmdBankCoordination_ = named(new QPushButton(QStringLiteral("התאמת בנק"), central), QStringLiteral("cmdBankCoordination"));
    cmdBankCoordination_->setFocusPolicy(Qt::NoFocus);
    connect(cmdBankCoordination_, &QPushButton::clicked, this, [this] {
        table_->setFocus();
        m_.guarded(QStringLiteral("cmdBankCoordination_Click"), [this] { m_.cmdBankCoordination_Click(); });
    });
    buttons->addWidget(cmdBankCoordination_);
    buttons->addStretch(1);
    buttons->addWidget(cmdOK_);
    buttons->addWidget(cmdCancel_);
    // The buttons never hold the window wide: a narrow window keeps those
    // that fit, from the right, and the grid scrolls sideways instead.
    auto* buttonBar = new QWidget(central);
    buttonBar->setLayout(buttons);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttonBar->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    col->addWidget(buttonBar);
    connect(cmdOK_, &QPushButton::clicked, this, [this] { m_.clickControl(QStringLiteral("cmdOK")); });
    connect(cmdCancel_, &QPushButton::clicked, this, [this] { m_.clickControl(QStringLiteral("cmdCancel")); });
    connect(refresh, &QPushButton::clicked, this, [this] {
        m_.guarded(QStringLiteral("cmdRefresh_Click"), [this] { m_.cmdRefresh_Click(); });
    });

    // The menus. An entry is made only for what works; which of them show
    // follows the instance (frame/Controls).
    mnuFile_ = menuBar()->addMenu(QStringLiteral("קובץ"));
    // Open, new and the files last opened: each starts a working run on
    // its file in place of this one.
    const auto fileAction = [&](const QString& name, const QString& caption, QKeySequence key, void (frmMain::*click)()) {
        QAction* a = mnuFile_->addAction(caption);
        a->setObjectName(name);
        a->setShortcut(key);
        connect(a, &QAction::triggered, this, [this, name, click] { m_.guarded(name + QStringLiteral("_Click"), [this, click] { (m_.*click)(); }); });
        fileActions_ << a;
    };
    fileAction(QStringLiteral("mnuOpen"), QStringLiteral("פתח..."), QKeySequence::Open, &frmMain::mnuOpen_Click);
    fileAction(QStringLiteral("mnuNew"), QStringLiteral("קובץ חדש..."), QKeySequence::New, &frmMain::mnuNew_Click);
    mnuRecent_ = mnuFile_->addMenu(QStringLiteral("קבצים אחרונים"));
    mnuRecent_->setObjectName(QStringLiteral("mnuRecent"));
    fileActions_ << mnuRecent_->menuAction();
    connect(mnuFile_, &QMenu::aboutToShow, this, &frmMainView::fillRecent);
    connect(&m_, &frmMain::loaded, this, &frmMainView::fillRecent);
    mnuFile_->addSeparator();
    mnuOpenAnotherPelkor_ = mnuFile_->addAction(QStringLiteral("פתח פלקור נוסף"));
    connect(mnuOpenAnotherPelkor_, &QAction::triggered, this, [this] {
        m_.guarded(QStringLiteral("mnuOpenAnotherPelkor_Click"), [] {
            startAnotherInstance(QCoreApplication::applicationFilePath());
        });
    });
    mnuCreateLogFile_ = mnuFile_->addAction(QStringLiteral("צור קובץ מעקב"));
    mnuCreateLogFile_->setCheckable(true);
    connect(mnuCreateLogFile_, &QAction::triggered, this, [this] {
        m_.guarded(QStringLiteral("mnuCreateLogFile_Click"), [this] { m_.mnuCreateLogFile_Click(); });
    });
    mnuFile_->addSeparator();
    mnuClose_ = mnuFile_->addAction(QStringLiteral("יציאה"));
    connect(mnuClose_, &QAction::triggered, this, [this] {
        m_.guarded(QStringLiteral("mnuClose_Click"), [this] { m_.cmdClose_Click(); });
    });
    mnuActions_ = menuBar()->addMenu(QStringLiteral("פעולות"));
    mnuActions_->setObjectName(QStringLiteral("mnuActions"));
    mnuSetIpusLine_ = mnuActions_->addAction(controlCaption(QStringLiteral("mnuSetIpusLine")));
    mnuSetIpusLine_->setObjectName(QStringLiteral("mnuSetIpusLine"));
    connect(mnuSetIpusLine_, &QAction::triggered, this, [this] {
        table_->setFocus();
        m_.guarded(QStringLiteral("mnuSetIpusLine_Click"), [this] { m_.cmdIpus_Click(); });
        afterEdit();
    });
    mnuAddNewLine_ = mnuActions_->addAction(controlCaption(QStringLiteral("mnuAddNewLine")));
    mnuAddNewLine_->setObjectName(QStringLiteral("mnuAddNewLine"));
    mnuAddNewLine_->setShortcut(QKeySequence(Qt::Key_Insert));
    mnuAddNewLine_->setShortcutContext(Qt::WidgetShortcut);   // the grid's own key does it there
    connect(mnuAddNewLine_, &QAction::triggered, this, [this] {
        table_->setFocus();
        m_.guarded(QStringLiteral("mnuAddNewLine_Click"), [this] { m_.cmdAdd_Click(); });
        afterEdit();
    });
    mnuPerformBankCoordination_ = mnuActions_->addAction(QStringLiteral("התאמת בנק"));
    mnuPerformBankCoordination_->setObjectName(QStringLiteral("mnuPerformBankCoordination"));
    connect(mnuPerformBankCoordination_, &QAction::triggered, this, [this] {
        table_->setFocus();
        m_.guarded(QStringLiteral("mnuPerformBankCoordination_Click"), [this] { m_.cmdBankCoordination_Click(); });
    });
    mnuFindMatches_ = mnuActions_->addAction(QStringLiteral("מצא התאמות"));
    mnuFindMatches_->setObjectName(QStringLiteral("mnuFindMatches"));
    connect(mnuFindMatches_, &QAction::triggered, this, [this] {
        table_->setFocus();
        m_.guarded(QStringLiteral("mnuFindMatches_Click"), [this] { m_.mnuFindMatches_Click(); });
    });
    mnuAddLineToFile_ = mnuActions_->addAction(controlCaption(QStringLiteral("mnuAddLineToFile")));
    mnuAddLineToFile_->setObjectName(QStringLiteral("mnuAddLineToFile"));
    connect(mnuAddLineToFile_, &QAction::triggered, this, [this] {
        m_.guarded(QStringLiteral("mnuAddLineToFile_Click"), [this] { m_.mnuAddLineToFile_Click(); });
        afterEdit();
        table_->setFocus();
    });
    mnuAddConstantTransactions_ = mnuActions_->addAction(controlCaption(QStringLiteral("mnuAddConstantTransactions")));
    mnuAddConstantTransactions_->setObjectName(QStringLiteral("mnuAddConstantTransactions"));
    connect(mnuAddConstantTransactions_, &QAction::triggered, this, [this] {
        m_.guarded(QStringLiteral("mnuAddConstantTransactions_Click"), [this] { m_.mnuAddConstantTransactions_Click(); });
        table_->setFocus();
    });
    // Moving dates and invoice kinds: entries whose work is the frame's.
    const auto frameAction = [this](QMenu* menu, const QString& name) {
        QAction* a = menu->addAction(controlCaption(name));
        a->setObjectName(name);
        connect(a, &QAction::triggered, this, [this, name] {
            m_.clickControl(name);
            table_->setFocus();
        });
        return a;
    };
    mnuMoveDates_ = frameAction(mnuActions_, QStringLiteral("mnuMoveDates"));
    mnuTransferMoney_ = frameAction(mnuActions_, QStringLiteral("mnuTransferMoney"));
    mnuReports_ = menuBar()->addMenu(QStringLiteral("דוחות"));
    mnuReports_->setObjectName(QStringLiteral("mnuReports"));
    mnuDailySummary_ = mnuReports_->addAction(QStringLiteral("סיכום יומי"));
    mnuDailySummary_->setObjectName(QStringLiteral("mnuDailySummary"));
    connect(mnuDailySummary_, &QAction::triggered, this, [this] {
        table_->setFocus();
        m_.clickControl(QStringLiteral("mnuDailySummary"));
    });
    // The period reports by kind and type, each in a window of its own.
    for (const char* name : {"mnuOpenMonthKindReport", "mnuOpenWeekKindReport", "mnuOpenDayKindReport"}) {
        const QString n = QString::fromLatin1(name);
        QAction* a = mnuReports_->addAction(controlCaption(n));
        a->setObjectName(n);
        reportActions_.append(a);
        connect(a, &QAction::triggered, this, [this, n] {
            m_.guarded(n + QStringLiteral("_Click"), [this, n] { m_.makePeriodReport(periodOfControl(n)); });
        });
    }
    connect(&m_, &frmMain::periodReportRequested, this, [this](const QString& sPeriod) {
        new frmMonthReportMainView(m_.reportParts(), reports::periodTypeOf(sPeriod), this);
    });
    // The comparison of two periods, modal over this window.
    QAction* mnuCompare = mnuReports_->addAction(controlCaption(QStringLiteral("mnuCompare")));
    mnuCompare->setObjectName(QStringLiteral("mnuCompare"));
    reportActions_.append(mnuCompare);
    connect(mnuCompare, &QAction::triggered, this, [this] { m_.clickControl(QStringLiteral("mnuCompare")); });
    connect(&m_, &frmMain::compareRequested, this, [this] { new frmCompareView(m_.compareParts(), this); });
    // The merged bank report, a window beside this one.
    QAction* mnuOpenBankReport = mnuReports_->addAction(controlCaption(QStringLiteral("mnuOpenBankReport")));
    mnuOpenBankReport->setObjectName(QStringLiteral("mnuOpenBankReport"));
    reportActions_.append(mnuOpenBankReport);
    connect(mnuOpenBankReport, &QAction::triggered, this, [this] {
        table_->setFocus();
        m_.clickControl(QStringLiteral("mnuOpenBankReport"));
    });
    connect(&m_, &frmMain::bankReportRequested, this, [this] { new frmBankReportMainView(m_.bankReportParts(), this); });
    mnuDefs_ = menuBar()->addMenu(QStringLiteral("הגדרות"));
    mnuAutomaticBankCoordination_ = mnuDefs_->addAction(QStringLiteral("&משיכת נתונים אוטומטית"));
    mnuAutomaticBankCoordination_->setObjectName(QStringLiteral("mnuAutomaticBankCoordination"));
    mnuAutomaticBankCoordination_->setCheckable(true);
    connect(mnuAutomaticBankCoordination_, &QAction::triggered, this, [this] {
        m_.guarded(QStringLiteral("mnuAutomaticBankCoordination_Click"), [this] { m_.mnuAutomaticBankCoordination_Click(); });
    });
    mnuResetBankData_ = mnuDefs_->addAction(QStringLiteral("אפס נתוני חשבון"));
    connect(mnuResetBankData_, &QAction::triggered, this, [this] {
        m_.guarded(QStringLiteral("mnuResetBankData_Click"), [this] { m_.mnuResetBankData_Click(); });
    });
    mnuInvoiceKinds_ = frameAction(mnuDefs_, QStringLiteral("mnuInvoiceKinds"));
    frameAction(mnuDefs_, QStringLiteral("mnuMaxDayDiffForMatch"));
    frameAction(mnuDefs_, QStringLiteral("mnuNDigitsForConfirmComparison"));

    connect(&m_, &frmMain::changed, this, &frmMainView::mirror);
    connect(&m_, &frmMain::loaded, this, &frmMainView::reload);
    resize(1100, 700);
    mirror();
}

void frmMainView::mirror()
{
    setWindowTitle(m_.shown().caption.isEmpty() ? QStringLiteral("פלקור") : m_.shown().caption);
    setLabel(fileName_, m_.shown().lblFileName);
    setLabel(newLines_, m_.shown().lblNewLines);
    newLines_->setVisible(!m_.shown().lblNewLines.isEmpty());
    table_->setVisible(m_.shown().gridVisible);
    setEnabled(m_.shown().enabled);
    mnuCreateLogFile_->setChecked(m_.shown().mnuCreateLogFileChecked);
    if (m_.instance().progMode != shownMode_ || m_.shown().visible)
        showControls();
    if (!m_.shown().ltrb.isNull() && m_.shown().ltrb != placed_) {
        placed_ = m_.shown().ltrb;
        setGeometry(placed_);
    }
    showSession();
    showTotals();
    if (status_->text() != m_.shown().lblStatus) {
        setLabel(status_, m_.shown().lblStatus);
        // A load runs without returning to the event loop: paint the stage now.
        if (isVisible())
            status_->repaint();
    }
}

void frmMainView::showControls()
{
    shownMode_ = m_.instance().progMode;
    const ShownControls s = shownControls(m_.instance());
    mnuFile_->menuAction()->setVisible(s.mnuFile);
    mnuOpenAnotherPelkor_->setVisible(s.mnuOpenAnotherPelkor);
    for (QAction* a : fileActions_)
        a->setVisible(s.mnuOpen);
    if (!s.mnuCloseCaption.isEmpty())
        mnuClose_->setText(s.mnuCloseCaption);
    mnuDefs_->menuAction()->setVisible(s.mnuDefs && s.mnuResetBankData);
    mnuResetBankData_->setVisible(s.mnuResetBankData);
    cmdOK_->setVisible(s.cmdOK);
    cmdCancel_->setVisible(s.cmdCancel);
    cmdAdd_->setVisible(s.cmdAdd);
    cmdDel_->setVisible(s.cmdDel);
    cmdDelAll_->setVisible(s.cmdDelAll);
    cmdIpus_->setVisible(s.cmdIpus);
    cmdGoToIpusLine_->setVisible(s.cmdGoToIpusLine);
    cmdTzefi_->setVisible(s.cmdTzefi);
    cmdSubtractFromTzefi_->setVisible(s.cmdSubtractFromTzefi);
    // Beside the daily summary they wait, as the reports do.
    cmdTzefi_->setEnabled(m_.instance().progMode != modeDailySummarySplit);
    cmdSubtractFromTzefi_->setEnabled(m_.instance().progMode != modeDailySummarySplit);
    mnuSetIpusLine_->setVisible(s.mnuSetIpusLine);
    mnuAddNewLine_->setVisible(s.mnuAddNewLine);
    mnuAddLineToFile_->setVisible(s.mnuAddLineToFile);
    mnuAddConstantTransactions_->setVisible(s.mnuAddConstantTransactions);
    mnuMoveDates_->setVisible(s.mnuMoveDates && m_.shown().mnuMoveDatesVisible);
    mnuTransferMoney_->setVisible(s.mnuTransferMoney);
    mnuInvoiceKinds_->setVisible(s.mnuInvoiceKinds);
    cmdMove_->setVisible(s.cmdMove);
    cmdMove_->setEnabled(m_.instance().progMode != modeDailySummarySplit);
    mnuActions_->menuAction()->setVisible(s.mnuActions);
    // The summary is one of the reports; beside it they wait.
    mnuReports_->menuAction()->setVisible(s.mnuReports);
    for (QAction* a : reportActions_)
        a->setVisible(s.mnuOpenMonthKindReport);
    cmdMonthReport_->setVisible(s.cmdMonthReport);
    mnuReports_->setEnabled(m_.instance().progMode != modeDailySummarySplit);
    menuBar()->setVisible(s.mnuFile || s.mnuDefs || s.mnuActions || s.mnuReports);
    if (s.childWindow && m_.shown().visible && !childPlaced_)
        placeChildWindow();
}

void frmMainView::showSession()
{
    // A reconciliation takes some of the ledger's controls away while it runs.
    const ShownControls c = shownControls(m_.instance());
    const reconcile::SessionShown& s = m_.session().shown;
    reconcile_->mirror();
    mnuAutomaticBankCoordination_->setChecked(m_.shown().mnuAutomaticBankCoordinationChecked);
    mnuAutomaticBankCoordination_->setEnabled(!s.split);
    cmdBankCoordination_->setVisible(c.cmdBankCoordination);
    cmdBankCoordination_->setEnabled(s.cmdBankCoordinationEnabled);
    cmdBankCoordination_->setText(s.cmdBankCoordinationCaption.isEmpty() ? s.mnuPerformBankCoordinationCaption
                                                                         : s.cmdBankCoordinationCaption);
    mnuPerformBankCoordination_->setVisible(c.mnuPerformBankCoordination);
    mnuPerformBankCoordination_->setText(s.mnuPerformBankCoordinationCaption);
    mnuOpenAnotherPelkor_->setEnabled(s.mnuOpenAnotherPelkorEnabled);
    mnuPerformBankCoordination_->setEnabled(s.cmdBankCoordinationEnabled);
    lblWait_->setVisible(s.lblWait);
    lblPoints_->setVisible(s.lblWait);
    setLabel(lblPoints_, s.lblPoints);
    mnuFindMatches_->setVisible(s.split && s.mnuFindMatches);
    const reconcile::MatchFinder& finder = m_.session().finder;
    mnuFindMatches_->setEnabled(!finder.searching);
    // A search takes the window's input until it ends; a long one says so.
    centralWidget()->setEnabled(!finder.searching);
    menuBar()->setEnabled(!finder.searching);
    if (finder.waitNotice && !waitNotice_) {
        waitNotice_ = new web::frmWaitMessageView(m_.programDir(), this);
        waitNotice_->logic().showMessage(QStringLiteral("מחפש התאמות"));
    } else if (!finder.waitNotice && waitNotice_) {
        waitNotice_->logic().close();
        waitNotice_->deleteLater();
        waitNotice_ = nullptr;
    }
    if (!s.split)
        return;
    // In a session the actions menu holds what a session allows.
    if (s.mnuFindMatches)
        mnuActions_->menuAction()->setVisible(true);
    for (QWidget* w : std::initializer_list<QWidget*>{cmdIpus_, cmdSubtractFromTzefi_, cmdTzefi_})
        if (s.ledgerButtonsHidden)
            w->setVisible(false);
    // Lines leave for another file only from the table of lines itself.
    cmdMove_->setVisible(false);
    mnuSetIpusLine_->setEnabled(!s.ledgerButtonsHidden);
    mnuClose_->setEnabled(!s.ledgerButtonsHidden);
    if (s.reportsHidden) {
        cmdMonthReport_->setVisible(false);
        mnuReports_->menuAction()->setVisible(false);
    }
}

void frmMainView::fillRecent()
{
    mnuRecent_->clear();
    const QStringList files = m_.recentFiles();
    for (int i = 0; i < files.size(); ++i) {
        QAction* a = mnuRecent_->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(QFileInfo(files[i]).fileName()));
        a->setObjectName(QStringLiteral("mnuRecent%1").arg(i + 1));
        a->setStatusTip(files[i]);
        a->setToolTip(files[i]);
        connect(a, &QAction::triggered, this, [this, i] {
            m_.guarded(QStringLiteral("mnuRecent_Click"), [this, i] { m_.mnuRecent_Click(i + 1); });
        });
    }
    mnuRecent_->setEnabled(!files.isEmpty());
}

void frmMainView::placeChildWindow()
{
    childPlaced_ = true;
    QScreen* screen = this->screen();
    const QRect area = screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
    const int w = std::min(width(), area.width());
    setGeometry(QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, QSize(w, childWindowHeight), area));
    table_->setFocus();
}

void frmMainView::showTotals()
{
    // Only a detail child has them; the logic fills them at the end of its load.
    totals_->setVisible(m_.instance().progMode == modeDetail && m_.shown().gridVisible);
    lblTotalIncome_->setAmount(m_.mainGrid().lblTotalIncome);
    lblTotalExpense_->setAmount(m_.mainGrid().lblTotalExpense);
}

void frmMainView::reload()
{
    table_->setRedLineRow(redLineRow(m_.ledger(), m_.instance()));
    table_->resizeColumnsToContents();
    // The description takes what the window has beyond the other columns,
    // but keeps room for a few words: a narrower window scrolls sideways.
    table_->setFillColumn(colDetail - 1, 25 * table_->fontMetrics().averageCharWidth());
    showTotals();
    afterEdit();
}

void frmMainView::wireEditing()
{
    editors_ = new CellEditorsView(m_, *table_, this);
    // The commit runs before the cursor leaves its cell; the grid model holds
    // the new cell when it has entered it.
    connect(table_, &grid::GridView::cellLeaving, this, [this] {
        m_.guarded(QStringLiteral("msfgMainLeaveCell"), [this] { m_.editor().msfgMainLeaveCell(); });
    });
    // In a reconciliation a click in the pink mark cell marks the line.
    connect(table_, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
        if (table_->tableModel()->gridCol(index.column()) == colMark && m_.session().pairing())
            m_.guarded(QStringLiteral("msfgMain_MouseUp"), [this] { m_.msfgMainMarkClicked(); });
    });
    connect(table_, &grid::GridView::cellEntered, this, [this](int, int) {
        m_.guarded(QStringLiteral("msfgMain_EnterCell"), [this] { m_.msfgMain_EnterCell(); });
        afterEdit();
    });
    connect(table_, &grid::GridView::cellDoubleClicked, this, [this](int, int) {
        m_.guarded(QStringLiteral("msfgMain_DblClick"), [this] { m_.editor().msfgMain_DblClick(); });
        afterEdit();
    });
    table_->setKeyHandler([this](QKeyEvent* k) {
        bool taken = false;
        m_.guarded(QStringLiteral("msfgMain_KeyDown"), [&] {
            taken = m_.editor().msfgMain_KeyDown(k->key(), k->modifiers());
            const QString text = k->text();
            if (!taken && text.size() == 1 && text[0].unicode() >= 32 && !(k->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
                m_.editor().msfgMain_KeyPress(text[0]);
                taken = true;
            }
        });
        afterEdit();
        return taken;
    });
    connect(&m_, &frmMain::findRequested, this, [this] {
        if (!find_)
            find_ = new frmFindView(m_, *table_, this);
        find_->prepare();
    });
    connect(cmbColors_, &QComboBox::activated, this, [this](int index) {
        m_.guarded(QStringLiteral("cmbColors_Click"), [&] { m_.editor().cmbColors_Click(cmbColors_->itemText(index)); });
        afterEdit();
        table_->setFocus();
    });
}

void frmMainView::afterEdit()
{
    editors_->sync();
    // The colour box shows the current line's colour.
    const auto& lines = m_.ledger().lines;
    const int row = m_.mainGrid().msfgMain.Row();
    if (row >= 1 && row <= int(lines.size())) {
        const QSignalBlocker block(cmbColors_);
        cmbColors_->setCurrentIndex(getColorNum(lines[size_t(row - 1)].Memo));
    }
}

void frmMainView::changeEvent(QEvent* e)
{
    QMainWindow::changeEvent(e);
    if (e->type() == QEvent::ActivationChange && isActiveWindow() && !m_.editState().editorOpen()
        && table_->isVisible())
        table_->setFocus();
}

bool frmMainView::eventFilter(QObject* watched, QEvent* e)
{
    if (watched == fileName_ && e->type() == QEvent::MouseButtonPress && table_->isVisible())
        table_->setFocus();
    return QMainWindow::eventFilter(watched, e);
}

void frmMainView::closeEvent(QCloseEvent* e)
{
    if (m_.ended()) {
        e->accept();
        return;
    }
    bool ok = false;
    m_.guarded(QStringLiteral("Form_QueryUnload"), [&] { ok = m_.Form_QueryUnload(); });
    if (ok)
        e->accept();
    else
        e->ignore();
}

} // namespace pelkor
