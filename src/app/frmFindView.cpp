#include "app/frmFindView.h"

#include "app/Named.h"

#include "app/grid/GridView.h"
#include "file/Display.h"
#include "frame/frmMain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace pelkor {

frmFindView::frmFindView(frmMain& logic, grid::GridView& table, QWidget* owner)
    : QDialog(owner, Qt::Tool), m_(logic), table_(table)
{
    setObjectName(QStringLiteral("frmFind"));
    setWindowTitle(QStringLiteral("חיפוש"));
    setLayoutDirection(Qt::RightToLeft);
    setModal(false);
    auto* layout = new QGridLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("חפש:"), this), 0, 0);
    txtWhat_ = named(new QLineEdit(this), QStringLiteral("txtWhat"), QStringLiteral("חפש"));
    layout->addWidget(txtWhat_, 0, 1, 1, 2);
    layout->addWidget(new QLabel(QStringLiteral("בטור:"), this), 1, 0);
    cmbCols_ = named(new QComboBox(this), QStringLiteral("cmbCols"), QStringLiteral("בטור"));
    layout->addWidget(cmbCols_, 1, 1, 1, 2);
    chkOnlyBelowRed_ = named(new QCheckBox(QStringLiteral("רק אחרי שורת האיפוס"), this), QStringLiteral("chkOnlyBelowRed"));
    layout->addWidget(chkOnlyBelowRed_, 2, 0, 1, 3);
    cmdNext_ = named(new QPushButton(QStringLiteral("חפש הבא"), this), QStringLiteral("cmdNext"));
    cmdPrev_ = named(new QPushButton(QStringLiteral("חפש הקודם"), this), QStringLiteral("cmdPrev"));
    cmdNext_->setDefault(true);
    layout->addWidget(cmdNext_, 3, 1);
    layout->addWidget(cmdPrev_, 3, 2);

    connect(txtWhat_, &QLineEdit::textChanged, this, [this](const QString& t) {
        m_.findState().findText = t;
        cmdNext_->setEnabled(!t.isEmpty());
        cmdPrev_->setEnabled(!t.isEmpty());
    });
    connect(cmbCols_, &QComboBox::activated, this, [this](int i) { m_.findState().findCol = colKind + i; });
    connect(chkOnlyBelowRed_, &QCheckBox::toggled, this, [this](bool on) { m_.findState().onlyBelowRed = on; });
    connect(cmdNext_, &QPushButton::clicked, this, [this] { find(true); });
    connect(cmdPrev_, &QPushButton::clicked, this, [this] { find(false); });
}

void frmFindView::prepare()
{
    const FindState& s = m_.findState();
    const grid::GridModel& g = m_.mainGrid().msfgMain;
    cmbCols_->clear();
    for (int c = colKind; c <= colType; ++c)
        cmbCols_->addItem(g.text(0, c));
    cmbCols_->setCurrentIndex(s.findCol - colKind);
    txtWhat_->setText(s.findText);
    txtWhat_->selectAll();
    // Text columns read right to left, numbers and kinds left to right.
    const bool text = s.findCol == colDate || s.findCol == colConfirm || s.findCol == colDetail || s.findCol == colType;
    txtWhat_->setLayoutDirection(text ? Qt::RightToLeft : Qt::LeftToRight);
    chkOnlyBelowRed_->setChecked(s.onlyBelowRed);
    cmdNext_->setEnabled(!s.findText.isEmpty());
    cmdPrev_->setEnabled(!s.findText.isEmpty());
    show();
    raise();
    activateWindow();
    txtWhat_->setFocus();
}

void frmFindView::find(bool forward)
{
    Finder::Outcome outcome = Finder::Outcome::NotFound;
    m_.guarded(QStringLiteral("doFind"), [&] { outcome = m_.finder().doFind(forward, true); });
    if (outcome == Finder::Outcome::GivenUp) {
        close();
        return;
    }
    if (outcome == Finder::Outcome::Hit)
        moveFindOffCell();
}

void frmFindView::moveFindOffCell()
{
    const grid::GridModel& g = m_.mainGrid().msfgMain;
    const QRect cell(table_.viewport()->mapToGlobal(table_.cellRect(g.Row(), g.Col()).topLeft()),
                     table_.cellRect(g.Row(), g.Col()).size());
    QRect mine = frameGeometry();
    if (!mine.intersects(cell))
        return;
    // Below the cell when there is room under it, else above it.
    const QRect screen = this->screen() ? this->screen()->availableGeometry() : QRect(0, 0, 1280, 800);
    if (cell.bottom() + mine.height() + 8 < screen.bottom())
        mine.moveTop(cell.bottom() + 8);
    else
        mine.moveBottom(cell.top() - 8);
    move(mine.topLeft());
}

void frmFindView::keyPressEvent(QKeyEvent* e)
{
    if (e->key() == Qt::Key_F3) {
        const bool back = e->modifiers() & Qt::ShiftModifier;
        if ((back ? cmdPrev_ : cmdNext_)->isEnabled())
            find(!back);
        return;
    }
    if (e->key() == Qt::Key_Escape) {
        close();
        return;
    }
    // Enter searches on; it never closes the window, not even with no text.
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
        if (cmdNext_->isEnabled())
            find(true);
        return;
    }
    QDialog::keyPressEvent(e);
}

} // namespace pelkor
