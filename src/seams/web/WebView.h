// WebView: an HTML view as the logic sees it.
//
// Reports, pick lists and the wait notice are pages the program writes to
// its temporary folder (Html.h) or ships beside itself, shown in a view and
// read and written through the element ids the page carries. The logic
// holds a WebView& and never knows whether a browser engine is behind it
// (app/web/QtWebView) or the page parser of the tests (ScriptedWebView).
//
// The event path from a page: the page holds a hidden input "theID" (row
// pages: "theRowIndx") and a hidden button "notifier". Once the page is
// complete the window attaches a clsForward to the notifier, and must do so
// anew after each navigation: a navigation drops the old one, and a click
// before the attachment reaches nobody. The page's script writes its event
// string into theID and clicks notifier; the forward calls its window's
// method, which reads theID (synchronously, below) and acts.
//
// Reads and writes of the live document are synchronous: they return when
// the document has answered. An id the document lacks reads as empty and
// takes no write. A shared id is a collection: count() gives its length
// and index picks a member.
#pragma once

#include <QString>

#include <functional>

namespace pelkor::web {

// The handler of a page's notifier: calls, without arguments, the method it
// was given; an unset forward does nothing.
class clsForward {
public:
    clsForward() = default;
    explicit clsForward(std::function<void()> method) : method_(std::move(method)) {}
    void operator()() const
    {
        if (method_)
            method_();
    }
    bool isSet() const { return bool(method_); }

private:
    std::function<void()> method_;
};

class WebView {
public:
    virtual ~WebView() = default;

    // Shows a page: a local path, a local path with a query
    // ("BankMenu.html?auto=true"), or "about:blank" to clear the view.
    // The old page's notifier handler is dropped at once.
    virtual void navigate(const QString& target) = 0;
    // "loading" until the page is whole, then "complete".
    virtual QString readyState() const = 0;
    bool isComplete() const { return readyState() == QLatin1String("complete"); }
    // What the last navigate was given.
    virtual QString location() const = 0;
    // wb_DocumentComplete: called once per navigation, when the page has
    // become complete, with what navigate was given.
    virtual void setDocumentComplete(std::function<void(const QString& target)> handler) = 0;

    // Sets onclick of the page's "notifier" to forward. False, attaching
    // nothing, while the page is not complete (the scripted view also
    // refuses a page without a notifier).
    virtual bool attachNotifier(const clsForward& forward) = 0;

    // ---- the live document ----------------------------------------------
    virtual int count(const QString& id) = 0;
    virtual QString value(const QString& id, int index = 0) = 0;
    virtual void setValue(const QString& id, const QString& value, int index = 0) = 0;
    // The element's text as shown (innerText).
    virtual QString text(const QString& id, int index = 0) = 0;
    // Replaces the element's content by text, shown as text.
    virtual void setText(const QString& id, const QString& text, int index = 0) = 0;
    // Replaces the element's content by markup the program built (its user
    // texts passed through htmlEscape).
    virtual void setInnerHtml(const QString& id, const QString& html, int index = 0) = 0;
    // Style.display: "" (the element's own), "none", "block", ...
    virtual QString display(const QString& id, int index = 0) = 0;
    virtual void setDisplay(const QString& id, const QString& display, int index = 0) = 0;
    virtual void click(const QString& id, int index = 0) = 0;
    // Whether a check box of the page is ticked (false for anything else).
    virtual bool checked(const QString& id, int index = 0) = 0;
    // scrollTop of the element, or of the page when id is empty.
    virtual int scrollTop(const QString& id = {}) = 0;
    virtual void setScrollTop(int top, const QString& id = {}) = 0;
    // Runs a script of the page's (execScript "completeIt()").
    virtual void execScript(const QString& script) = 0;
};

} // namespace pelkor::web
