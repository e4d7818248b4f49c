// ScriptedWebView: the WebView of the core tests and headless runs.
//
// It reads the page a navigation names (windows-1255, as the program writes
// it) and keeps what the logic reads and writes of it: each element with an
// id (tag, value, display, text), the rows and cells of each table with an
// id, and the scripts the page holds. No script runs. A test plays the
// page's events as its script would: sendEvent writes theID and clicks
// notifier; clickRow writes a row's index into theRowIndx and clicks
// notifier. A page becomes complete when the test says so (finishLoading),
// or at once with autoComplete, so a test can click too early.
//
// Not a browser: enough HTML to find elements, text and table cells in the
// pages this program writes (quoted or bare attributes, entities, void
// elements, raw text in script and style).
#pragma once

#include "seams/web/WebView.h"

#include <QHash>
#include <QStringList>

#include <vector>

namespace pelkor::web {

class ScriptedWebView : public WebView {
public:
    struct Element {
        QString id;
        QString tag;
        QString value;
        QString display;
        QString text;
        QHash<QString, QString> attributes;
    };

    // Pages become complete within navigate when autoComplete is true.
    explicit ScriptedWebView(bool autoComplete = true) : autoComplete_(autoComplete) {}

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
    // A click on a check box ticks or unticks it; on notifier, it reaches
    // the attached handler.
    void click(const QString& id, int index = 0) override;
    bool checked(const QString& id, int index = 0) override;
    int scrollTop(const QString& id = {}) override;
    void setScrollTop(int top, const QString& id = {}) override;
    void execScript(const QString& script) override { scriptsRun_ << script; }

    // ---- the test's side ----------------------------------------------
    // The page completes: readyState "complete", then the handler.
    void finishLoading();
    // The page's event: theID takes text, notifier is clicked.
    void sendEvent(const QString& text);
    // A click on row rowIndex (this.rowIndex) of the table: theRowIndx
    // takes it, notifier is clicked. False when the table has no such row.
    bool clickRow(const QString& tableId, int rowIndex);
    // The cells' texts of each row of a table with that id.
    std::vector<QStringList> rows(const QString& tableId) const;
    // The bodies of the page's script elements, in order.
    const QStringList& scripts() const { return scripts_; }
    const QStringList& scriptsRun() const { return scriptsRun_; }
    // The page as read (decoded), and every target navigated to.
    const QString& source() const { return source_; }
    const QStringList& navigations() const { return navigations_; }
    // How many times the notifier reached a forward.
    int notifications() const { return notifications_; }

    // Parses html into the elements and tables above (navigate does it to
    // the file's text).
    void load(const QString& html);

private:
    Element* find(const QString& id, int index);

    bool autoComplete_ = true;
    bool complete_ = false;
    QString location_;
    QString source_;
    QStringList navigations_;
    std::function<void(const QString&)> onComplete_;
    clsForward forward_;
    std::vector<Element> elements_;
    QHash<QString, std::vector<QStringList>> tables_;
    QStringList scripts_;
    QStringList scriptsRun_;
    QHash<QString, int> scroll_;
    int notifications_ = 0;
};

} // namespace pelkor::web
