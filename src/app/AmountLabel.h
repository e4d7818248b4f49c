// AmountLabel: a label that shows a sum, such as a total under the grid.
//
// A screen reader hears what the sum is (its accessible name, in Hebrew:
// "סה\"כ הכנסות") and the sum itself as the value, which follows the text
// as it changes (a value-changed notice goes out with each new text).
#pragma once

#include <QLabel>

namespace pelkor {

class AmountLabel : public QLabel {
    Q_OBJECT
public:
    AmountLabel(const QString& name, const QString& spoken, QWidget* parent = nullptr);

    // Shows text and tells the accessibility tree its new value.
    void setAmount(const QString& text);
};

} // namespace pelkor
