#include "app/CellEditorsView.h"

#include "app/grid/GridView.h"
#include "frame/frmMain.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>

namespace pelkor {

namespace {

QLineEdit* makeEditor(QWidget* parent, const QString& name)
{
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setAccessibleName(QStringLiteral("עריכת התא"));
    e->setFrame(false);
    e->setLayoutDirection(Qt::RightToLeft);
    e->hide();
    return e;
}

void showText(QLineEdit* edit, const TextBoxState& s)
{
    const QSignalBlocker block(edit);
    if (edit->text() != s.text)
        edit->setText(s.text);
    if (s.selLength > 0)
        edit->setSelection(s.selStart, s.selLength);
    else
        edit->setCursorPosition(s.selStart);
}

} // namespace

CellEditorsView::CellEditorsView(frmMain& logic, grid::GridView& table, QWidget* window)
    : QObject(&table), m_(logic), table_(table), window_(window)
{
    txtCell_ = makeEditor(table.viewport(), QStringLiteral("txtCell"));
    txtCombo_ = makeEditor(table.viewport(), QStringLiteral("txtCombo"));
    cmbTypes_ = new QListWidget(window);
    cmbTypes_->setObjectName(QStringLiteral("cmbTypes"));
    cmbTypes_->setAccessibleName(QStringLiteral("רשימת הסוגים"));
    cmbTypes_->setLayoutDirection(Qt::RightToLeft);
    cmbTypes_->setFocusPolicy(Qt::NoFocus);
    cmbTypes_->hide();
    for (QWidget* w : {static_cast<QWidget*>(txtCell_), static_cast<QWidget*>(txtCombo_)})
        w->installEventFilter(this);
    table.installEventFilter(this);

    connect(txtCell_, &QLineEdit::textEdited, this, [this](const QString& text) {
        m_.editor().txtCell_Change(text, txtCell_->cursorPosition(), 0);
    });
    connect(txtCombo_, &QLineEdit::textEdited, this, [this](const QString& text) {
        run(QStringLiteral("txtCombo_Change"), [&] { m_.editor().txtCombo_Change(text, txtCombo_->cursorPosition(), 0); });
    });
    connect(cmbTypes_, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        run(QStringLiteral("cmbTypes_Click"), [&] { m_.editor().cmbTypes_Click(cmbTypes_->row(item)); });
    });
}

void CellEditorsView::run(const QString& proc, const std::function<void()>& fn)
{
    m_.guarded(proc, fn);
    sync();
}

void CellEditorsView::place(QLineEdit* edit)
{
    const grid::GridModel& g = m_.mainGrid().msfgMain;
    const QRect r = table_.cellRect(g.Row(), g.Col());
    edit->setFont(table_.font());
    // Hebrew words and sums alike start from the cell's right edge, as the
    // grid shows them.
    edit->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
    edit->setGeometry(r);
}

void CellEditorsView::sync()
{
    const EditState& e = m_.editState();
    // The grid takes the focus before an editor that has it hides: hiding
    // a focused child would move the focus on with a Tab of the table's
    // own, which the grid would take as the user's.
    if (!e.editorOpen() && (txtCell_->hasFocus() || txtCombo_->hasFocus()))
        table_.setFocus();
    if (e.txtCell.visible) {
        place(txtCell_);
        showText(txtCell_, e.txtCell);
        txtCell_->show();
        txtCell_->raise();
        txtCell_->setFocus();
    } else {
        txtCell_->hide();
    }
    if (e.txtCombo.visible) {
        place(txtCombo_);
        showText(txtCombo_, e.txtCombo);
        txtCombo_->show();
        txtCombo_->raise();
        txtCombo_->setFocus();
    } else {
        txtCombo_->hide();
    }
    if (e.cmbTypesVisible && e.txtCombo.visible) {
        const QSignalBlocker block(cmbTypes_);
        QStringList shown;
        for (int i = 0; i < cmbTypes_->count(); ++i)
            shown << cmbTypes_->item(i)->text();
        if (shown != e.cmbTypesRows) {
            cmbTypes_->clear();
            cmbTypes_->addItems(e.cmbTypesRows);
        }
        cmbTypes_->setCurrentRow(e.cmbTypesIndex);
        if (e.cmbTypesIndex >= 0)
            cmbTypes_->scrollToItem(cmbTypes_->item(e.cmbTypesIndex));
        // Below the cell, as wide as its longest row, eight rows high.
        const QRect cellRect = txtCombo_->geometry();
        const QPoint below = txtCombo_->parentWidget()->mapTo(window_, cellRect.bottomLeft());
        const int width = std::max(cellRect.width(), cmbTypes_->sizeHintForColumn(0) + 24);
        const int height = std::min(8, std::max(1, cmbTypes_->count())) * std::max(16, cmbTypes_->sizeHintForRow(0)) + 6;
        int x = below.x() + cellRect.width() - width;   // the list's right edge under the cell's
        x = std::clamp(x, 0, std::max(0, window_->width() - width));
        cmbTypes_->setGeometry(x, below.y() + 1, width, height);
        cmbTypes_->show();
        cmbTypes_->raise();
    } else {
        cmbTypes_->hide();
    }
    if (!e.editorOpen() && QApplication::focusWidget() == nullptr)
        table_.setFocus();
}

bool CellEditorsView::eventFilter(QObject* watched, QEvent* ev)
{
    if (watched == &table_) {
        if (ev->type() == QEvent::FocusIn && m_.editState().editorOpen())
            run(QStringLiteral("msfgMain_GotFocus"), [this] { m_.editor().msfgMain_GotFocus(); });
        // The focus gone to another control of the window (not to an editor
        // over the grid, not to another window).
        if (ev->type() == QEvent::FocusOut && !m_.editState().editorOpen()
            && static_cast<QFocusEvent*>(ev)->reason() != Qt::ActiveWindowFocusReason
            && static_cast<QFocusEvent*>(ev)->reason() != Qt::PopupFocusReason)
            run(QStringLiteral("msfgMain_LostFocus"), [this] { m_.editor().msfgMain_LostFocus(); });
        return false;
    }
    if (ev->type() != QEvent::KeyPress)
        return false;
    auto* k = static_cast<QKeyEvent*>(ev);
    bool taken = false;
    if (watched == txtCell_) {
        // The logic reads the text as the user left it.
        m_.editor().txtCell_Change(txtCell_->text(), txtCell_->selectionStart() >= 0 ? txtCell_->selectionStart() : txtCell_->cursorPosition(),
                                   int(txtCell_->selectedText().size()));
        run(QStringLiteral("txtCell_KeyDown"), [&] { taken = m_.editor().txtCell_KeyDown(k->key(), k->modifiers()); });
    } else if (watched == txtCombo_) {
        EditState& e = m_.editState();
        e.txtCombo.text = txtCombo_->text();
        e.txtCombo.selStart = txtCombo_->selectionStart() >= 0 ? txtCombo_->selectionStart() : txtCombo_->cursorPosition();
        e.txtCombo.selLength = int(txtCombo_->selectedText().size());
        run(QStringLiteral("cmbTypes_KeyDown"), [&] { taken = m_.editor().cmbTypes_KeyDown(k->key(), k->modifiers()); });
    }
    return taken;
}

} // namespace pelkor
