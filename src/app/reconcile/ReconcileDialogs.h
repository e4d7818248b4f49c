// The reconciliation's own dialogs on screen: frmSelectAccount (the list of
// the feed's accounts), frmSetTargetDate (the end of the period) and
// frmBalance (the ways out of a disagreement), right to left, bound to
// their logic.
#pragma once

#include "app/ui/DialogBinder.h"
#include "reconcile/frmBalance.h"
#include "reconcile/frmSelectAccount.h"
#include "reconcile/frmMatchSettings.h"
#include "reconcile/frmSetTargetDate.h"

#include <QDialog>

namespace pelkor::ui {

class frmSelectAccountView : public QDialog {
public:
    explicit frmSelectAccountView(reconcile::frmSelectAccount& logic, QWidget* parent = nullptr);

private:
    DialogBinder binder_;
};

class frmSetTargetDateView : public QDialog {
public:
    explicit frmSetTargetDateView(reconcile::frmSetTargetDate& logic, QWidget* parent = nullptr);

private:
    DialogBinder binder_;
};

// Either of the match finder's settings: one number, selected on focus.
class frmMatchSettingView : public QDialog {
public:
    explicit frmMatchSettingView(reconcile::frmMatchSetting& logic, QWidget* parent = nullptr);

private:
    DialogBinder binder_;
};

class frmBalanceView : public QDialog {
public:
    explicit frmBalanceView(reconcile::frmBalance& logic, QWidget* parent = nullptr);

private:
    DialogBinder binder_;
};

} // namespace pelkor::ui
