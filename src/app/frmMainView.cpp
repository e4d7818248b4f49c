#include "app/frmMainView.h"

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

// The lines of the last load, one row each, read straight from frmMain.
class LinesModel : public QAbstractTableModel {
public:
    explicit LinesModel(const frmMain& m, QObject* parent) : QAbstractTableModel(parent), m_(m) {}
    void reset() { beginResetModel(); endResetModel(); }
    int rowCount(const QModelIndex& = {}) const override { return int(m_.lines.size()); }
    int columnCount(const QModelIndex& = {}) const override { return 8; }
    QVariant headerData(int s, Qt::Orientation o, int role) const override
    {
        static const char* captions[] = {"סיווג", "תאריך", "אסמכתא", "פירוט", "הכנסה", "הוצאה", "סוג", "יתרה"};
        if (role == Qt::DisplayRole && o == Qt::Horizontal && s >= 0 && s < 8)
            return QString::fromUtf8(captions[s]);
        return QAbstractTableModel::headerData(s, o, role);
    }
    QVariant data(const QModelIndex& i, int role) const override
    {
        const Line& L = m_.lines[size_t(i.row())];
        if (role == Qt::TextAlignmentRole && (i.column() == 4 || i.column() == 5 || i.column() == 7))
            return int(Qt::AlignLeft | Qt::AlignVCenter);   // numbers read left to right
        if (role != Qt::DisplayRole)
            return {};
        switch (i.column()) {
        case 0: return FormatKind(L.kind);
        case 1: return L.Date == nullDate() ? QString() : formatDate224(L.Date);
        case 2: return L.confirm;
        case 3: return L.detail;
        case 4: return L.In == 0 ? QString() : FormatSum(L.In);
        case 5: return L.out == 0 ? QString() : FormatSum(L.out);
        case 6: return L.Type;
        case 7: return FormatSum(L.balance);
        }
        return {};
    }

private:
    const frmMain& m_;
};

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
    table_ = new QTableView(central);
    model_ = new LinesModel(m_, table_);
    table_->setModel(model_);
    table_->setLayoutDirection(Qt::RightToLeft);
    table_->verticalHeader()->setDefaultSectionSize(22);
    table_->horizontalHeader()->setStretchLastSection(false);
    table_->setColumnWidth(3, 280);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    col->addWidget(table_, 1);
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
    model_->reset();
    table_->resizeColumnsToContents();
    table_->setColumnWidth(3, std::max(table_->columnWidth(3), 260));
    if (m_.row >= 1 && m_.row <= int(m_.lines.size())) {
        table_->scrollTo(model_->index(m_.topRow - 1, 0), QAbstractItemView::PositionAtTop);
        table_->selectRow(m_.row - 1);
    }
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
