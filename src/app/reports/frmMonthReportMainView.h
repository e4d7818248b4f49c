// frmMonthReportMainView: the period report window as the user sees it.
//
// The controls of the top row (which pair, the range, show, save, print,
// the print setting, the panes' toggle, close), the report page and its
// list of ticks beside it (to the left, right to left). Both pairs of web
// views stay loaded and visible to the engine: the pair not chosen is
// moved far off to the side rather than hidden, since the engine runs no
// script in a page nobody can see, and the window shows at once for the
// same reason, with a waiting pointer until the logic says it is built.
// txtMessage is a mailbox of its own, so a detail child answers this
// window and not the main one.
//
// Nothing here decides anything: each act goes to frmMonthReportMain.
#pragma once

#include "reports/frmMonthReportMain.h"

#include <QWidget>

#include <memory>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace pelkor::bus { class Mailbox; }
namespace pelkor::web { class QtWebView; }

namespace pelkor {

class frmMonthReportMainView : public QWidget, public reports::ReportWindowCalls {
    Q_OBJECT
public:
    frmMonthReportMainView(reports::ReportParts parts, reports::PeriodType type, QWidget* parent = nullptr);
    ~frmMonthReportMainView() override;

    reports::frmMonthReportMain& logic() { return *logic_; }
    // The views: index 1 the kinds, 0 the types.
    web::QtWebView* report(int which) const { return reports_[which]; }
    web::QtWebView* list(int which) const { return lists_[which]; }

    // ReportWindowCalls.
    void shownChanged() override;
    void bringToTop() override;
    void setFocus(const QString& name) override;
    QString pageHtml(web::WebView& view) override;
    void printPreview(web::WebView& view, bool backgroundColors) override;
    void closeWindow() override { close(); }

    // The preview dialog of the last printPreview while it is open (for a
    // look at it); null otherwise.
    QWidget* previewDialog() const { return preview_; }
    // Opens the preview without waiting for it to close.
    void setPreviewModeless(bool modeless) { previewModeless_ = modeless; }

protected:
    void resizeEvent(QResizeEvent* e) override;
    void closeEvent(QCloseEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    void placePairs();
    web::QtWebView* viewOf(web::WebView& view) const;

    std::unique_ptr<reports::frmMonthReportMain> logic_;
    std::unique_ptr<bus::Mailbox> txtMessage_;
    web::QtWebView* reports_[2] = {nullptr, nullptr};
    web::QtWebView* lists_[2] = {nullptr, nullptr};
    QWidget* pane_ = nullptr;     // holds the pairs, placed by hand
    QRadioButton* opt_[2] = {nullptr, nullptr};
    QLineEdit* txtFrom_ = nullptr;
    QLineEdit* txtTo_ = nullptr;
    QCheckBox* chkPrintBGColors_ = nullptr;
    QPushButton* cmdToggleTaskpane_ = nullptr;
    QWidget* preview_ = nullptr;
    bool previewModeless_ = false;
    bool closing_ = false;
};

} // namespace pelkor
