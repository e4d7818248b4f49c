// frmWaitMessageView: the wait notice's window: small, without a frame,
// above the program's windows, centred on the screen, holding the web view
// that shows anim.html. It shows itself when the logic says the page has
// its words (seams/web/frmWaitMessage).
#pragma once

#include "app/web/QtWebView.h"
#include "seams/web/frmWaitMessage.h"

#include <QWidget>

#include <memory>

namespace pelkor::web {

class frmWaitMessageView : public QWidget {
public:
    // programDir holds anim.html.
    explicit frmWaitMessageView(const QString& programDir, QWidget* parent = nullptr);

    frmWaitMessage& logic() { return *logic_; }
    QtWebView& wb() { return *wb_; }

private:
    void placeCentred();

    QtWebView* wb_ = nullptr;
    std::unique_ptr<frmWaitMessage> logic_;
};

} // namespace pelkor::web
