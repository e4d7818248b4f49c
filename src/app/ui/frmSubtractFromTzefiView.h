// frmSubtractFromTzefiView: the window of frmSubtractFromTzefi: the pick
// page in a web view over אישור / ביטול, and the arrow that shows and hides
// the list. The page is navigated to once the window shows (the engine
// runs no script in a page nobody can see); a row's click reaches the
// logic through the page's notifier, and the view then mirrors cmdOK.
#pragma once

#include "app/ui/DialogBinder.h"
#include "ledger/TzefiDialogs.h"

#include <QDialog>

namespace pelkor::web { class QtWebView; }

namespace pelkor::ui {

class frmSubtractFromTzefiView : public QDialog {
public:
    explicit frmSubtractFromTzefiView(frmSubtractFromTzefi& logic, QWidget* parent = nullptr);
    ~frmSubtractFromTzefiView() override;

    web::QtWebView& wb() { return *wb_; }

protected:
    void showEvent(QShowEvent* e) override;

private:
    frmSubtractFromTzefi& logic_;
    DialogBinder binder_;
    web::QtWebView* wb_ = nullptr;
};

} // namespace pelkor::ui
