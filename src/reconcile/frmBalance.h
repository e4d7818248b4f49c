// frmBalance: the opening proof failed; the ways to make it hold.
//
// Two labels read as one sentence, a third (lblParting) names the day on
// which the file and the bank part, when one was found. Four options:
// optDoNothing (always; on at opening), optBalancingLine and optPrevDay
// (only when a bank row on the zeroing date disagrees, proof result 2),
// optNewPelkor (only for a file of its opening line alone). A click on an
// option enables cmdOK; cmdOK closes and the caller reads choice(). Closing
// the window any other way leaves optDoNothing's meaning: nothing is done.
#pragma once

#include "seams/ui/Dialog.h"

namespace pelkor::reconcile {

class frmBalance : public ui::Dialog {
public:
    // bcr: the opening proof's result; partingHint: empty when none.
    frmBalance(int bcr, bool isNewPelkor, const QString& partingHint = {});

    QString name() const override { return QStringLiteral("frmBalance"); }
    // The option on when cmdOK was pressed; "optDoNothing" otherwise.
    QString choice() const;

protected:
    void onClick(const QString& name) override;
};

} // namespace pelkor::reconcile
