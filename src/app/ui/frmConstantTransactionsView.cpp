#include "app/ui/frmConstantTransactionsView.h"

#include "app/Named.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace pelkor::ui {

namespace {
const char* const arrowOf[][2] = {{"txtMyType", "imgType"}, {"txtColor", "imgColor"}, {"txtJump", "imgJump"}};
} // namespace

QLineEdit* frmConstantTransactionsView::field(const QString& name, const QString& placeholder)
{
    auto* edit = named(new QLineEdit(this), name);
    edit->setPlaceholderText(placeholder);
    edit->installEventFilter(this);
    binder_.bindText(name, edit);
    widgets_.insert(name, edit);
    connect(edit, &QLineEdit::textChanged, this, [this] { mirror(); });
    return edit;
}

frmConstantTransactionsView::frmConstantTransactionsView(frmConstantTransactions& logic, QWidget* parent)
    : QDialog(parent), logic_(logic), binder_(logic, *this)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    setObjectName(logic.name());
    auto* outer = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    outer->addLayout(grid);
    // Label and field pairs, four to a row, in the order Enter walks them.
    struct Cell {
        const char* name;
        int row, col;
        const char* placeholder;
    };
    const Cell cells[] = {
        {"txtKind", 0, 0, ""},          {"txtFromDate", 0, 2, "dd/mm/yyyy"}, {"txtToDate", 0, 4, "dd/mm/yyyy"},
        {"txtJump", 1, 0, ""},          {"txtConfirm", 1, 2, ""},            {"txtDetails", 1, 4, ""},
        {"txtIn", 2, 0, ""},            {"txtOut", 2, 2, ""},                {"txtMyType", 2, 4, ""},
        {"txtColor", 3, 0, ""},         {"txtChangeInPercents", 3, 2, "%"},
    };
    for (const Cell& c : cells) {
        const QString name = QString::fromLatin1(c.name);
        auto* label = new QLabel(logic.label(name), this);
        grid->addWidget(label, c.row, c.col);
        QLineEdit* edit = field(name, QString::fromLatin1(c.placeholder));
        label->setBuddy(edit);   // the box is read by its label
        QString arrow;
        for (const auto& a : arrowOf)
            if (name == QLatin1String(a[0]))
                arrow = QString::fromLatin1(a[1]);
        if (arrow.isEmpty()) {
            grid->addWidget(edit, c.row, c.col + 1);
            continue;
        }
        // A closed text box with its arrow, and the list that drops under it.
        auto* box = new QHBoxLayout;
        box->setSpacing(0);
        box->addWidget(edit);
        auto* img = named(new QToolButton(this), arrow, QStringLiteral("פתח את הרשימה"));
        img->setArrowType(Qt::DownArrow);
        img->setFocusPolicy(Qt::NoFocus);
        connect(img, &QToolButton::clicked, this, [this, name] {
            logic_.arrowClick(name);
            mirror();
        });
        box->addWidget(img);
        grid->addLayout(box, c.row, c.col + 1);
        const QString listName = frmConstantTransactions::listOf(name);
        auto* list = named(new QListWidget(this), listName, logic.label(name));
        list->hide();
        list->setFocusPolicy(Qt::NoFocus);
        connect(list, &QListWidget::itemClicked, this, [this, listName](QListWidgetItem* item) {
            logic_.setControl(listName, item->text());
            binder_.sync();
            mirror();
        });
        lists_.insert(name, list);
    }
    for (const auto& [name, row, col] : {std::tuple{"chkEndOfMonth", 0, 6}, std::tuple{"chkTzefiLine", 3, 4},
                                         std::tuple{"chkSaveInDB", 3, 6}}) {
        const QString n = QString::fromLatin1(name);
        auto* chk = named(new QCheckBox(logic.label(n), this), n);
        chk->installEventFilter(this);
        binder_.bindCheck(n, chk);
        widgets_.insert(n, chk);
        grid->addWidget(chk, row, col, 1, 2);
    }
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (const QString name : {QStringLiteral("cmdOK"), QStringLiteral("cmdCancel")}) {
        auto* b = new QPushButton(logic.label(name), this);
        named(b, name);
        b->setAutoDefault(false);
        binder_.bindButton(name, b);
        buttons->addWidget(b);
    }
    outer->addLayout(buttons);
    binder_.sync();
    if (QWidget* w = widgets_.value(logic.focus()))
        w->setFocus();
    resize(760, 230);
}

void frmConstantTransactionsView::mirror()
{
    if (mirroring_)
        return;
    mirroring_ = true;
    binder_.sync();
    for (auto it = lists_.cbegin(); it != lists_.cend(); ++it) {
        QListWidget* list = it.value();
        const QString listName = frmConstantTransactions::listOf(it.key());
        if (!logic_.isListOpen(it.key())) {
            list->hide();
            continue;
        }
        QStringList rows;
        for (const auto& c : logic_.controls())
            if (c.name == listName)
                rows = c.items;
        if (list->count() != rows.size() || (list->count() && list->item(0)->text() != rows.first())) {
            list->clear();
            list->addItems(rows);
        }
        const auto current = list->findItems(logic_.control(listName), Qt::MatchExactly);
        if (!current.isEmpty())
            list->setCurrentItem(current.first());
        QWidget* edit = widgets_.value(it.key());
        // Under the field, its right edge on the field's (a Hebrew list
        // reads from the right), and kept inside the window.
        const QPoint under = edit->mapTo(this, QPoint(edit->width(), edit->height()));
        const int w = std::max(edit->width(), 200);
        list->setGeometry(std::max(0, under.x() - w), under.y(), w, std::min(6 * 20 + 4, height() - under.y()));
        list->show();
        list->raise();
        auto* line = static_cast<QLineEdit*>(edit);
        const auto [start, length] = logic_.selection(it.key());
        if (length > 0)
            line->setSelection(start, length);
    }
    if (QWidget* w = widgets_.value(logic_.focus()); w && !w->hasFocus() && isVisible())
        w->setFocus();
    mirroring_ = false;
}

bool frmConstantTransactionsView::eventFilter(QObject* watched, QEvent* e)
{
    const QString name = watched->objectName();
    switch (e->type()) {
    case QEvent::FocusIn:
        if (!mirroring_ && logic_.focus() != name) {
            logic_.gotFocus(name);
            // A refused field takes the focus back once this event is over.
            QTimer::singleShot(0, this, [this] { mirror(); });
        }
        break;
    case QEvent::KeyPress: {
        auto* k = static_cast<QKeyEvent*>(e);
        const bool used = logic_.keyDown(name, k->key(), k->modifiers());
        mirror();
        if (logic_.isClosed())
            done(logic_.accepted() ? Accepted : Rejected);
        return used;
    }
    case QEvent::MouseButtonPress:
        if (frmConstantTransactions::listOf(name).isEmpty())
            break;
        logic_.fieldClick(name);
        mirror();
        break;
    case QEvent::MouseButtonDblClick:
        logic_.fieldDoubleClick(name);
        mirror();
        return true;
    default:
        break;
    }
    return QDialog::eventFilter(watched, e);
}

void frmConstantTransactionsView::mousePressEvent(QMouseEvent* e)
{
    logic_.Form_Click();
    mirror();
    QDialog::mousePressEvent(e);
}

void frmConstantTransactionsView::reject()
{
    if (!logic_.isClosed())
        logic_.dismiss();
    QDialog::reject();
}

} // namespace pelkor::ui
