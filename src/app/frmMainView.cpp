#include "app/frmMainView.h"

#include "app/grid/GridView.h"
#include "file/Display.h"
#include "frame/Format.h"
#include "frame/frmMain.h"

#include <QAbstractTableModel>
#include <QAction>
#include <QCloseEvent>
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
    table_ = new grid::GridView(m_.msfgMain, central);
    col->addWidget(table_, 1);
    connect(table_, &grid::GridView::cellEntered, this, [this](int r, int) {
        m_.guarded(QStringLiteral("msfgMain_EnterCell"), [this, r] {
            m_.row = r;
            m_.topRow = m_.msfgMain.TopRow();
            updateCursorCells(m_, m_.msfgMain, m_.msfgMainMarks, m_.balancingLineID);
        });
    });
    setCentralWidget(central);

    auto* file = menuBar()->addMenu(QStringLiteral("קובץ"));
    auto* close = file->addAction(QStringLiteral("יציאה"));
    connect(close, &QAction::triggered, this, [this] { m_.guarded(QStringLiteral("mnuClose_Click"), [this] { m_.cmdClose_Click(); }); });
    connect(refresh, &QPushButton::clicked, this, [this] {
        m_.guarded(QStringLiteral("cmdRefresh_Click"), [this] { m_.cmdRefresh_Click(); });
    });

    connect(&m_, &frmMain::changed, this, &frmMainView::mirror);
    connect(&m_, &frmMain::loaded, this, &frmMainView::reload);
    resize(1100, 700);
    mirror();
}

void frmMainView::mirror()
{
    setWindowTitle(m_.caption.isEmpty() ? QStringLiteral("פלקור") : m_.caption);
    fileName_->setText(m_.lblFileName);
    newLines_->setText(m_.lblNewLines);
    newLines_->setVisible(!m_.lblNewLines.isEmpty());
    table_->setVisible(m_.gridVisible);
    setEnabled(m_.enabled);
    if (!m_.ltrb.isNull() && m_.ltrb != placed_) {
        placed_ = m_.ltrb;
        setGeometry(placed_);
    }
    if (status_->text() != m_.lblStatus) {
        status_->setText(m_.lblStatus);
        // A load runs without returning to the event loop: paint the stage now.
        if (isVisible())
            status_->repaint();
    }
}

void frmMainView::reload()
{
    table_->setRedLineRow(redLineRow(m_));
    table_->resizeColumnsToContents();
    table_->setColumnWidth(colDetail - 1, std::max(table_->columnWidth(colDetail - 1), 260));
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
