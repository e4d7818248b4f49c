#include "app/frmMainView.h"

#include "app/grid/GridView.h"
#include "file/Display.h"
#include "frame/Controls.h"
#include "base/Format.h"
#include "base/Instances.h"
#include "frame/frmMain.h"

#include <QAbstractTableModel>
#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QScreen>
#include <QStyle>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace pelkor {

frmMainView::frmMainView(frmMain& logic, QWidget* parent) : QMainWindow(parent), m_(logic)
{
    setLayoutDirection(Qt::RightToLeft);
    auto* central = new QWidget(this);
    auto* col = new QVBoxLayout(central);
    auto* top = new QHBoxLayout();
    fileName_ = new QLabel(central);
    status_ = new QLabel(central);
    auto* refresh = new QPushButton(QStringLiteral("רענן"), central);
    refresh->setShortcut(QKeySequence(Qt::Key_F5));
    top->addWidget(fileName_);
    top->addStretch(1);
    top->addWidget(status_);
    top->addWidget(refresh);
    col->addLayout(top);
    newLines_ = new QLabel(central);
    newLines_->setWordWrap(true);
    col->addWidget(newLines_);
    table_ = new grid::GridView(m_.mainGrid().msfgMain, central);
    col->addWidget(table_, 1);
    // The grid model holds the new cell already.
    connect(table_, &grid::GridView::cellEntered, this, [this](int, int) {
        m_.guarded(QStringLiteral("msfgMain_EnterCell"), [this] { m_.msfgMain_EnterCell(); });
    });
    setCentralWidget(central);

    // The buttons of a new-line child.
    cmdOK_ = new QPushButton(QStringLiteral("אישור"), central);
    cmdCancel_ = new QPushButton(QStringLiteral("ביטול"), central);
    auto* buttons = new QHBoxLayout();
    buttons->addStretch(1);
    buttons->addWidget(cmdOK_);
    buttons->addWidget(cmdCancel_);
    col->addLayout(buttons);
    connect(cmdOK_, &QPushButton::clicked, this, [this] { m_.clickControl(QStringLiteral("cmdOK")); });
    connect(cmdCancel_, &QPushButton::clicked, this, [this] { m_.clickControl(QStringLiteral("cmdCancel")); });
    connect(refresh, &QPushButton::clicked, this, [this] {
        m_.guarded(QStringLiteral("cmdRefresh_Click"), [this] { m_.cmdRefresh_Click(); });
    });

    // The menus. An entry is made only for what works; which of them show
    // follows the instance (frame/Controls).
    mnuFile_ = menuBar()->addMenu(QStringLiteral("קובץ"));
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
    mnuDefs_ = menuBar()->addMenu(QStringLiteral("הגדרות"));
    mnuResetBankData_ = mnuDefs_->addAction(QStringLiteral("אפס נתוני חשבון"));
    connect(mnuResetBankData_, &QAction::triggered, this, [this] {
        m_.guarded(QStringLiteral("mnuResetBankData_Click"), [this] { m_.mnuResetBankData_Click(); });
    });

    connect(&m_, &frmMain::changed, this, &frmMainView::mirror);
    connect(&m_, &frmMain::loaded, this, &frmMainView::reload);
    resize(1100, 700);
    mirror();
}

void frmMainView::mirror()
{
    setWindowTitle(m_.shown().caption.isEmpty() ? QStringLiteral("פלקור") : m_.shown().caption);
    fileName_->setText(m_.shown().lblFileName);
    newLines_->setText(m_.shown().lblNewLines);
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
    if (status_->text() != m_.shown().lblStatus) {
        status_->setText(m_.shown().lblStatus);
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
    if (!s.mnuCloseCaption.isEmpty())
        mnuClose_->setText(s.mnuCloseCaption);
    mnuDefs_->menuAction()->setVisible(s.mnuDefs && s.mnuResetBankData);
    mnuResetBankData_->setVisible(s.mnuResetBankData);
    cmdOK_->setVisible(s.cmdOK);
    cmdCancel_->setVisible(s.cmdCancel);
    menuBar()->setVisible(s.mnuFile || s.mnuDefs);
    if (s.childWindow && m_.shown().visible && !childPlaced_)
        placeChildWindow();
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

void frmMainView::reload()
{
    table_->setRedLineRow(redLineRow(m_.ledger(), m_.instance()));
    table_->resizeColumnsToContents();
    // The description takes what the window has beyond the other columns.
    table_->setColumnWidth(colDetail - 1, std::max(table_->columnWidth(colDetail - 1), 260));
    table_->horizontalHeader()->setSectionResizeMode(colDetail - 1, QHeaderView::Stretch);
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
