// frmConstantTransactionsView: the window of the recurring-transaction
// dialog, right to left: the line's fields, the period and the step, the
// percent and the three boxes, OK and Cancel. The type, colour and jump
// fields carry an arrow and a list that drops under them. Every focus
// change, key and click goes to the logic first; the window mirrors the
// logic's values, lists, selection and focus after each.
#pragma once

#include "app/ui/DialogBinder.h"
#include "ledger/ConstantTransactionsDialog.h"

#include <QDialog>
#include <QHash>

class QLineEdit;
class QListWidget;
class QToolButton;

namespace pelkor::ui {

class frmConstantTransactionsView : public QDialog {
public:
    explicit frmConstantTransactionsView(frmConstantTransactions& logic, QWidget* parent = nullptr);
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;

private:
    QLineEdit* field(const QString& name, const QString& placeholder = {});
    // After every act: the values, the lists, the completion's selection
    // and the focus as the logic holds them.
    void mirror();

    frmConstantTransactions& logic_;
    DialogBinder binder_;
    QHash<QString, QWidget*> widgets_;        // by control name
    QHash<QString, QListWidget*> lists_;      // by field name
    bool mirroring_ = false;
};

} // namespace pelkor::ui
