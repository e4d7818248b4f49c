// QtWebView: the web seam on Qt WebEngine.
//
// A QWebEngineView inside a plain widget (so the engine's process settings
// are made before the first view exists), with a QWebChannel bridge in a
// world of its own, out of the pages' reach: a script injected into every
// page listens for clicks on "notifier" and tells the bridge, which calls
// the attached clsForward only while the page that clicked is the complete
// current one. The click brings theID and theRowIndx with it, and the
// handler's reads of these two are answered from them. Other reads and
// writes of the document run a script and wait for its answer with the
// event loop running (user input held back), so the logic reads the page
// in the same line as it would on the old control.
//
// Pages are read in windows-1255 unless they say otherwise.
#pragma once

#include "seams/web/WebView.h"

#include <QVariant>
#include <QWidget>

class QWebEngineView;
class QWebChannel;

namespace pelkor::web {

class NotifierBridge;

class QtWebView : public QWidget, public WebView {
    Q_OBJECT
public:
    explicit QtWebView(QWidget* parent = nullptr);
    ~QtWebView() override;

    // Settings the engine needs before its first view: no sandbox under
    // root (containers, test machines), where Chromium refuses it.
    static void prepareEngine();

    void navigate(const QString& target) override;
    QString readyState() const override { return complete_ ? QStringLiteral("complete") : QStringLiteral("loading"); }
    QString location() const override { return location_; }
    void setDocumentComplete(std::function<void(const QString&)> handler) override { onComplete_ = std::move(handler); }
    bool attachNotifier(const clsForward& forward) override;

    int count(const QString& id) override;
    QString value(const QString& id, int index = 0) override;
    void setValue(const QString& id, const QString& value, int index = 0) override;
    QString text(const QString& id, int index = 0) override;
    void setText(const QString& id, const QString& text, int index = 0) override;
    void setInnerHtml(const QString& id, const QString& html, int index = 0) override;
    QString display(const QString& id, int index = 0) override;
    void setDisplay(const QString& id, const QString& display, int index = 0) override;
    void click(const QString& id, int index = 0) override;
    bool checked(const QString& id, int index = 0) override;
    int scrollTop(const QString& id = {}) override;
    void setScrollTop(int top, const QString& id = {}) override;
    void execScript(const QString& script) override;

    QWebEngineView* engineView() const { return view_; }
    // What a screen reader calls the page's pane (in Hebrew: "דוח לפי סיווגים").
    void setSpokenName(const QString& name);
    // Runs a script in the program's world and returns its value; an
    // invalid value after five seconds without an answer.
    QVariant evaluate(const QString& script);

signals:
    // The page became complete (after the document-complete handler ran).
    void documentCompleted(const QString& target);

private:
    friend class NotifierBridge;
    void notified(const QString& href, const QString& theID, const QString& theRowIndx);
    void loadFinished(bool ok);
    // element(id, index) as a script expression.
    static QString element(const QString& id, int index);

    QWebEngineView* view_ = nullptr;
    QWebChannel* channel_ = nullptr;
    NotifierBridge* bridge_ = nullptr;
    std::function<void(const QString&)> onComplete_;
    clsForward forward_;
    QString location_;
    bool complete_ = false;
    int navigation_ = 0;
    // The page's event while its handler runs: theID and theRowIndx as the
    // click left them.
    struct Event {
        bool running = false;
        QString theID, theRowIndx;
    } event_;  // counts navigations, so a late load of an old page is not taken for the new one
};

// A script's string literal of s (quoted, escaped, non-ASCII as \uXXXX).
QString jsString(const QString& s);

} // namespace pelkor::web
