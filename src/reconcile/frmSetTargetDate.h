// frmSetTargetDate: the end of the period a reconciliation covers.
//
// Controls: txtDate (the date, day first), cmdOK (enabled while txtDate is
// a date), cmdCancel. OK takes a date later than the zeroing date and
// earlier than the day the program started; any other is refused with its
// reason and the dialog stays open.
#pragma once

#include "seams/ui/Dialog.h"

#include <QDate>

namespace pelkor::ui { class Ui; }

namespace pelkor::reconcile {

class frmSetTargetDate : public ui::Dialog {
public:
    frmSetTargetDate(const QDate& targetDate, const QDate& ipusDate, const QDate& startDay, ui::Ui& ui);

    QString name() const override { return QStringLiteral("frmSetTargetDate"); }
    // The date taken; null when the dialog was cancelled.
    const QDate& chosen() const { return chosen_; }

protected:
    void onClick(const QString& name) override;
    void onChange(const QString& name) override;

private:
    QDate ipusDate_, startDay_, chosen_;
    ui::Ui& ui_;
};

} // namespace pelkor::reconcile
