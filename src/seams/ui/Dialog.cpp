// Dialog: named controls and the dispatch of a user's acts to the handlers.
#include "seams/ui/Dialog.h"

#include <utility>

namespace pelkor::ui {

Dialog::Dialog(QString caption, QString text)
    : caption_(std::move(caption)), text_(std::move(text))
{
}

bool Dialog::isOn(const QString& value)
{
    const QString v = value.trimmed();
    return v == QLatin1String("1") || v == QLatin1String("-1")
        || v.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0
        || v.compare(QLatin1String("yes"), Qt::CaseInsensitive) == 0;
}

Dialog::Control* Dialog::find(const QString& name)
{
    for (Control& c : controls_)
        if (c.name == name)
            return &c;
    return nullptr;
}

const Dialog::Control* Dialog::find(const QString& name) const
{
    return const_cast<Dialog*>(this)->find(name);
}

bool Dialog::usable(const Control* c) const
{
    return c && c->enabled && c->visible && !closed_;
}

bool Dialog::hasControl(const QString& name) const
{
    return find(name) != nullptr;
}

QString Dialog::control(const QString& name) const
{
    const Control* c = find(name);
    return c ? c->value : QString();
}

Dialog::Kind Dialog::kind(const QString& name) const
{
    const Control* c = find(name);
    return c ? c->kind : Kind::Label;
}

QString Dialog::label(const QString& name) const
{
    const Control* c = find(name);
    return c ? c->label : QString();
}

bool Dialog::isEnabled(const QString& name) const
{
    const Control* c = find(name);
    return c && c->enabled;
}

bool Dialog::setControl(const QString& name, const QString& value)
{
    Control* c = find(name);
    if (!usable(c))
        return false;
    switch (c->kind) {
    case Kind::TextBox:
        if (c->value != value) {
            c->value = value;
            onChange(name);
        }
        return true;
    case Kind::Option:
        if (!isOn(value)) {
            // Turning an option off by itself raises no event, as on the old forms.
            c->value = QStringLiteral("0");
            return true;
        }
        return click(name);
    case Kind::CheckBox: {
        const QString v = isOn(value) ? QStringLiteral("1") : QStringLiteral("0");
        if (c->value != v) {
            c->value = v;
            onClick(name);
        }
        return true;
    }
    case Kind::Button:
        return isOn(value) ? click(name) : true;
    case Kind::Label:
        return false;
    case Kind::ListBox:
        for (const QString& item : c->items) {
            if (item == value || item.section(QLatin1Char(' '), 0, 0) == value) {
                c->value = item;
                onClick(name);
                return true;
            }
        }
        return false;
    }
    return false;
}

bool Dialog::click(const QString& name)
{
    Control* c = find(name);
    if (!usable(c) || c->kind == Kind::Label || c->kind == Kind::TextBox)
        return false;
    if (c->kind == Kind::Option) {
        const QString group = c->group;
        for (Control& o : controls_)
            if (o.kind == Kind::Option && o.group == group)
                o.value = QStringLiteral("0");
        c->value = QStringLiteral("1");
    } else if (c->kind == Kind::CheckBox) {
        c->value = isOn(c->value) ? QStringLiteral("0") : QStringLiteral("1");
    }
    onClick(name);
    return true;
}

void Dialog::dismiss()
{
    if (closed_)
        return;
    onDismiss();
    close(false);
}

Dialog::Control& Dialog::addControl(const QString& name, Kind kind, const QString& label,
                                    const QString& value)
{
    Control c;
    c.name = name;
    c.kind = kind;
    c.label = label;
    c.value = value;
    if (value.isEmpty() && (kind == Kind::Option || kind == Kind::CheckBox))
        c.value = QStringLiteral("0");
    controls_.push_back(std::move(c));
    return controls_.back();
}

void Dialog::setEnabled(const QString& name, bool enabled)
{
    if (Control* c = find(name))
        c->enabled = enabled;
}

void Dialog::setVisible(const QString& name, bool visible)
{
    if (Control* c = find(name))
        c->visible = visible;
}

void Dialog::setItems(const QString& name, const QStringList& items)
{
    if (Control* c = find(name))
        c->items = items;
}

void Dialog::setValue(const QString& name, const QString& value)
{
    if (Control* c = find(name))
        c->value = value;
}

void Dialog::close(bool accepted)
{
    closed_ = true;
    accepted_ = accepted;
}

} // namespace pelkor::ui
