// frmInvoiceKindsView: the window of frmInvoiceKinds: the income kinds'
// page and the expense kinds' page side by side (income on the right),
// over אישור / ביטול. The pages load once the window shows.
#pragma once

#include "app/ui/DialogBinder.h"
#include "reports/frmInvoiceKinds.h"

#include <QDialog>

namespace pelkor::web { class QtWebView; }

namespace pelkor::ui {

class frmInvoiceKindsView : public QDialog {
public:
    explicit frmInvoiceKindsView(reports::frmInvoiceKinds& logic, QWidget* parent = nullptr);
    ~frmInvoiceKindsView() override;

protected:
    void showEvent(QShowEvent* e) override;

private:
    reports::frmInvoiceKinds& logic_;
    DialogBinder binder_;
};

} // namespace pelkor::ui
