#include "app/ui/frmAddLineView.h"

#include "app/Named.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace pelkor::ui {

frmAddLineView::frmAddLineView(frmAddLine& logic, QWidget* parent)
    : QDialog(parent), logic_(logic), binder_(logic, *this)
{
    setObjectName(QStringLiteral("frmAddLine"));
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption() + (logic.text().isEmpty() ? QString() : QStringLiteral(" - ") + logic.text()));
    auto* outer = new QVBoxLayout(this);
    auto* row = new QGridLayout;
    const QStringList& names = frmAddLine::fields();
    // Widths in characters, as the grid's columns are.
    const int widths[] = {6, 10, 8, 22, 11, 11, 14};
    for (int i = 0; i < names.size(); ++i) {
        const QString& name = names[i];
        auto* label = new QLabel(logic.label(name), this);
        auto* edit = named(new QLineEdit(this), name);
        label->setBuddy(edit);
        edit->setMinimumWidth(fontMetrics().averageCharWidth() * widths[i] + 12);
        // Sums and references read left to right, at the left of the box.
        if (name == QLatin1String("txtIn") || name == QLatin1String("txtOut") || name == QLatin1String("txtConfirm")) {
            edit->setLayoutDirection(Qt::LeftToRight);
            edit->setAlignment(Qt::AlignLeft);
        }
        edit->installEventFilter(this);
        row->addWidget(label, 0, i);
        row->addWidget(edit, 1, i);
        row->setColumnStretch(i, widths[i]);
        binder_.bindText(name, edit);
        fields_.insert(name, edit);
    }
    auto* types = new QCompleter(logic.typeNames(), this);
    types->setCaseSensitivity(Qt::CaseInsensitive);
    types->setFilterMode(Qt::MatchContains);
    fields_.value(QStringLiteral("txtMyType"))->setCompleter(types);
    outer->addLayout(row);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (const QString name : {QStringLiteral("cmdOK"), QStringLiteral("cmdCancel")}) {
        auto* b = named(new QPushButton(logic.label(name), this), name);
        b->setAutoDefault(false);
        binder_.bindButton(name, b);
        buttons->addWidget(b);
    }
    outer->addLayout(buttons);
    binder_.sync();
    if (QLineEdit* first = fields_.value(logic.focus()))
        first->setFocus();
}

void frmAddLineView::follow()
{
    binder_.sync();
    if (QLineEdit* w = fields_.value(logic_.focus()); w && !w->hasFocus())
        w->setFocus();
}

bool frmAddLineView::eventFilter(QObject* watched, QEvent* event)
{
    auto* edit = qobject_cast<QLineEdit*>(watched);
    const QString name = edit ? edit->objectName() : QString();
    if (!edit || !fields_.contains(name))
        return QDialog::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::FocusIn:
        // A click or Tab into another field: the field left commits, and a
        // refusal brings the focus back (after Qt has finished moving it).
        if (logic_.focus() != name && !logic_.isClosed() && !logic_.moveFocus(name))
            QTimer::singleShot(0, this, [this] { follow(); });
        else
            binder_.sync();
        break;
    case QEvent::KeyPress: {
        auto* k = static_cast<QKeyEvent*>(event);
        if (k->key() == Qt::Key_Escape)
            break;
        // An open completion list takes its own keys.
        if (edit->completer() && edit->completer()->popup()->isVisible())
            break;
        if (logic_.keyDown(name, k->key(), k->modifiers(), edit->cursorPosition(), int(edit->text().size()))) {
            follow();
            return true;
        }
        break;
    }
    case QEvent::MouseButtonDblClick:
        logic_.dblClick(name);
        follow();
        return true;
    default:
        break;
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace pelkor::ui
