#include "app/AmountLabel.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace pelkor {

namespace {

// A static text whose name is the label's accessible name and whose value
// is its text.
class AccessibleAmount : public QAccessibleWidget {
public:
    explicit AccessibleAmount(QWidget* w) : QAccessibleWidget(w, QAccessible::StaticText) {}

    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Value)
            return static_cast<const QLabel*>(widget())->text();
        return QAccessibleWidget::text(t);
    }
};

QAccessibleInterface* amountFactory(const QString& className, QObject* object)
{
    if (className == QLatin1String("pelkor::AmountLabel") && object && object->isWidgetType())
        return new AccessibleAmount(static_cast<QWidget*>(object));
    return nullptr;
}

} // namespace

AmountLabel::AmountLabel(const QString& name, const QString& spoken, QWidget* parent) : QLabel(parent)
{
    static const bool installed = [] {
        QAccessible::installFactory(amountFactory);
        return true;
    }();
    (void)installed;
    setObjectName(name);
    setAccessibleName(spoken);
}

void AmountLabel::setAmount(const QString& text)
{
    if (text == QLabel::text())
        return;
    setText(text);
    QAccessibleValueChangeEvent e(this, text);
    QAccessible::updateAccessibility(&e);
}

} // namespace pelkor
