// The two dialogs of forecast lines.
//
// frmTzefi marks the current line as a forecast line and, on a forecast
// line, lets the external import take movements down from it
// (chkHashavshevet, shown only while chkTzefiLine is checked).
//
// frmSubtractFromTzefi is the pick list of the forecasts a real line may
// be taken from. Its page (TzefiPage) is written whole as tempTzefi.htm in
// the temporary folder when the dialog loads; Timer1 navigates the view to
// it once the window is there (the engine runs no script in a page nobody
// can see), and wb_DocumentComplete attaches cellEventHandler to the
// page's notifier: a click before the page is complete reaches nobody.
// cellEventHandler reads theRowIndx (as the page's makeNum reads it) and
// enables cmdOK, which gives the row as rwIndex; Cancel and the close box
// give -1.
//
// The view is given by the window that shows the dialog (attachView). A
// run with no window (scripted dialogs) gets a ScriptedWebView over the
// same written page, and the list control "wb" (a row per candidate, its
// code the row's index) is how a scripted user clicks a row there: the
// click is played on the page, through its notifier.
#pragma once

#include "ledger/TzefiPage.h"
#include "seams/ui/Dialog.h"
#include "seams/web/ScriptedWebView.h"

#include <functional>
#include <memory>

namespace pelkor {

class frmTzefi : public ui::Dialog {
public:
    // isTzefi: the line is a forecast line; relate: its relate value.
    frmTzefi(bool isTzefi, int relate);
    QString name() const override { return QStringLiteral("frmTzefi"); }

    // cmdOK's copies of the two boxes; didCancelTzefi after Cancel or the
    // close box.
    bool wasTzefiChecked() const { return wasTzefiChecked_; }
    bool wasHashavshevetChecked() const { return wasHashavshevetChecked_; }
    bool didCancelTzefi() const { return didCancelTzefi_; }

protected:
    void onClick(const QString& name) override;
    void onDismiss() override { didCancelTzefi_ = true; }

private:
    bool wasTzefiChecked_ = false;
    bool wasHashavshevetChecked_ = false;
    bool didCancelTzefi_ = false;
};

class frmSubtractFromTzefi : public ui::Dialog {
public:
    // txt1 is the page's text (tzefiPage of the candidates); tempPath the
    // folder it is written to.
    frmSubtractFromTzefi(const std::vector<TzefiCandidate>& candidates, QString txt1, QString tempPath);
    QString name() const override { return QStringLiteral("frmSubtractFromTzefi"); }

    // The window's view; without one, the dialog keeps a scripted view.
    void attachView(web::WebView& wb);
    // The window's view is going: nothing reaches it any more.
    void detachView();
    web::WebView& wb() { return *wb_; }

    // Writes tempTzefi.htm; false when it could not be written.
    bool Form_Load();
    // Navigates the view to the page (once the window is there).
    void Timer1_Timer();
    // The page is complete: the notifier's handler is attached.
    void wb_DocumentComplete(const QString& target);
    // The page's notifier: theRowIndx becomes the chosen row; cmdOK is
    // enabled.
    void cellEventHandler();

    // The row picked; -1 while none is (and after Cancel).
    int rwIndex() const { return rwIndex_; }
    // The written page, or empty before Form_Load.
    const QString& pagePath() const { return pagePath_; }
    const QString& txt1() const { return txt1_; }
    bool isWbVisible() const { return wbVisible_; }

    static QString pageName() { return QStringLiteral("tempTzefi.htm"); }

    // The window's side: a row was picked or imgArrow clicked (the view
    // mirrors cmdOK and whether wb shows).
    std::function<void()> changed;

protected:
    void onClick(const QString& name) override;
    void onDismiss() override { rwIndex_ = -1; }

private:
    QString txt1_;
    QStringList rows_;
    QString tempPath_;
    QString pagePath_;
    std::unique_ptr<web::ScriptedWebView> scripted_;
    web::WebView* wb_ = nullptr;
    bool navigated_ = false;
    bool wbVisible_ = true;
    int picked_ = -1;
    int rwIndex_ = -1;
};

// makeNum of the page: the number a text holds as CInt reads it; -1 for a
// text that holds none.
int makeNum(const QString& str1);

} // namespace pelkor
