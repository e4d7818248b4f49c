// The match finder's two settings, each in a small modal dialog named as
// its menu entry: frmMaxDayDiffForMatch (txtMaxDiff, days either side of a
// bank row's date, 0 to 40) and frmNDigitsForConfirmComparison (txtNDigits,
// characters compared at the right end of a reference, 3 to 8). Each shows
// the current value; OK refuses a text that is not a whole number ("יש
// למלא מספר") or one out of range, and the dialog stays open until the
// value is good. Both are kept in the "bank sync" section of the ini.
#pragma once

#include "seams/ui/Dialog.h"

namespace pelkor::ui { class Ui; }

namespace pelkor::reconcile {

class frmMatchSetting : public ui::Dialog {
public:
    // The two dialogs.
    static frmMatchSetting maxDayDiff(int current, ui::Ui& ui);
    static frmMatchSetting nDigits(int current, ui::Ui& ui);

    QString name() const override { return name_; }
    // The name of the value's text box.
    const QString& box() const { return box_; }
    // The value taken; the current one when the dialog was cancelled.
    int value() const { return value_; }

protected:
    void onClick(const QString& name) override;

private:
    frmMatchSetting(QString name, const QString& caption, QString box, int current, int low, int high, ui::Ui& ui);
    QString name_, box_;
    int value_, low_, high_;
    ui::Ui& ui_;
};

} // namespace pelkor::reconcile
