// frmConvert: the conversion of one file of the merged bank report,
// "המרת מטבעות".
//
// Three options, optNone "ללא המרה", optMult "מוכפל ב:" with txtMult and
// optDiv "מחולק ב:" with txtDiv, and cmdOK, cmdCancel. The dialog opens on
// the file's rate (0 none, a positive multiplier, a divisor stored
// negative), shown to four decimals, a divisor as a positive number.
// Choosing an option moves the focus to its box; typing in a box chooses
// its option. cmdOK refuses an empty box ("יש למלא מספר"), a text that is
// no number ("יש למלא מספר"), a number that is not positive ("יש למלא מספר
// חיובי") and an absurd rate, each in a box titled "שגיאה", and otherwise
// closes with the new rate.
#pragma once

#include "seams/ui/Dialog.h"

namespace pelkor::ui { class Ui; }

namespace pelkor::reports {

class frmConvert : public ui::Dialog {
public:
    frmConvert(ui::Ui& ui, double rate);
    QString name() const override { return QStringLiteral("frmConvert"); }

    // The rate cmdOK accepted: 0, the multiplier or the negated divisor.
    double rate() const { return rate_; }

protected:
    void onClick(const QString& name) override;
    void onChange(const QString& name) override;

private:
    ui::Ui& ui_;
    double rate_;
};

} // namespace pelkor::reports
