// DialogBinder: forwarding widget events to the dialog logic and back.
#include "app/ui/DialogBinder.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>

namespace pelkor::ui {

DialogBinder::DialogBinder(Dialog& logic, QDialog& window) : logic_(logic), window_(window)
{
    QObject::connect(&window_, &QDialog::rejected, &window_, [this] {
        if (!logic_.isClosed())
            logic_.dismiss();
    });
}

void DialogBinder::bindButton(const QString& name, QAbstractButton* button)
{
    widgets_.insert(name, button);
    QObject::connect(button, &QAbstractButton::clicked, &window_, [this, name] {
        logic_.click(name);
        sync();
    });
}

void DialogBinder::bindOption(const QString& name, QRadioButton* option)
{
    widgets_.insert(name, option);
    // The logic keeps the options of a group exclusive; Qt's own exclusivity
    // would turn the others off behind its back.
    option->setAutoExclusive(false);
    QObject::connect(option, &QRadioButton::toggled, &window_, [this, name](bool on) {
        if (syncing_)
            return;
        if (on)
            logic_.click(name);
        sync();  // an option cannot be turned off by clicking it: put it back
    });
}

void DialogBinder::bindCheck(const QString& name, QCheckBox* check)
{
    widgets_.insert(name, check);
    QObject::connect(check, &QCheckBox::toggled, &window_, [this, name](bool on) {
        if (syncing_)
            return;
        logic_.setControl(name, on ? QStringLiteral("1") : QStringLiteral("0"));
        sync();
    });
}

void DialogBinder::bindText(const QString& name, QLineEdit* edit)
{
    widgets_.insert(name, edit);
    QObject::connect(edit, &QLineEdit::textChanged, &window_, [this, name](const QString& text) {
        if (syncing_)
            return;
        logic_.setControl(name, text);
        sync();
    });
}

void DialogBinder::sync()
{
    if (syncing_)
        return;
    syncing_ = true;
    for (auto it = widgets_.cbegin(); it != widgets_.cend(); ++it) {
        QWidget* w = it.value();
        const QString value = logic_.control(it.key());
        w->setEnabled(logic_.isEnabled(it.key()));
        if (auto* edit = qobject_cast<QLineEdit*>(w)) {
            if (edit->text() != value)
                edit->setText(value);
        } else if (auto* button = qobject_cast<QAbstractButton*>(w); button && button->isCheckable()) {
            button->setChecked(Dialog::isOn(value));
        }
    }
    if (logic_.focus() != lastFocus_) {
        lastFocus_ = logic_.focus();
        if (QWidget* w = widgets_.value(lastFocus_))
            w->setFocus();
    }
    syncing_ = false;
    if (logic_.isClosed() && window_.isVisible())
        window_.done(logic_.accepted() ? QDialog::Accepted : QDialog::Rejected);
}

} // namespace pelkor::ui
