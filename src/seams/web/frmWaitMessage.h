// frmWaitMessage: the wait notice shown over a long piece of work.
//
// A small window, centred on the screen, whose web view wb shows the fixed
// page anim.html (an animation and an empty line "msg"). The message is
// written into the page once the page is complete, and only then does the
// window show itself, so the user never sees the page without its words.
// The match finder opens it with "מחפש התאמות" from its timer.
//
// The logic is here; app/web/frmWaitMessageView is the window, which shows
// and raises itself when told.
#pragma once

#include "seams/web/WebView.h"

#include <QString>

#include <functional>

namespace pelkor::web {

class frmWaitMessage {
public:
    // wb is the window's view; programDir holds anim.html.
    frmWaitMessage(WebView& wb, QString programDir);

    // Loads the page; the message goes in and the window shows once the
    // page is complete.
    void showMessage(const QString& message);
    // Unload: the page is cleared and the window hides.
    void close();
    // bringUp(hWnd): the notice raised above the other windows.
    void bringUp();

    const QString& message() const { return message_; }
    bool isVisible() const { return visible_; }

    // The window's side: shown or hidden, and raised.
    std::function<void(bool visible)> visibilityChanged;
    std::function<void()> raise;

    static QString pageName() { return QStringLiteral("anim.html"); }

private:
    void wb_DocumentComplete(const QString& target);
    void setVisible(bool v);

    WebView& wb_;
    QString programDir_;
    QString message_;
    bool visible_ = false;
};

} // namespace pelkor::web
