// frmSelectAccount: the choice of the bank account a file is bound to, when
// the feed holds several accounts or the bound one is not among them.
//
// Controls: Label1 (the question), List1 (the accounts; its value is the
// chosen one, the first at start), cmdOK and cmdCancel. cmdOK, or a double
// click on a row (a click on List1 given "dblclick"), keeps the list's text
// as the account and closes; cmdCancel and the close box keep nothing.
#pragma once

#include "seams/ui/Dialog.h"

namespace pelkor::reconcile {

class frmSelectAccount : public ui::Dialog {
public:
    frmSelectAccount(const QString& label, const QStringList& accounts);

    QString name() const override { return QStringLiteral("frmSelectAccount"); }
    // The account chosen; empty when the dialog closed without a choice.
    const QString& chosen() const { return chosen_; }
    // A double click on the list's selected row.
    void List1_DblClick();

protected:
    void onClick(const QString& name) override;

private:
    QString chosen_;
};

} // namespace pelkor::reconcile
