// frmBankReportMainView: the merged bank report window as the user sees it.
//
// Right to left: the task pane (frameTaskPane: the list of files and its
// buttons, the range, the summaries, the toggles, transfer, export, print,
// close) and beside it the report page (wb) over the chart pane
// (frameGraphpane: the total balance chart and the separate charts of the
// files). Two more chart surfaces, never shown, are drawn at a fixed size
// for an export and a print. A hover over a chart's point shows the sum,
// the date and (on the separate chart) the file above it.
//
// The task pane's buttons are made in one place (taskButton), so their
// kind can change there alone. Nothing here decides anything: each act
// goes to frmBankReportMain.
#pragma once

#include "reports/frmBankReportMain.h"

#include <QTimer>
#include <QWidget>

#include <memory>

class QAbstractButton;
class QListWidget;
class QLineEdit;

namespace pelkor::bus { class Mailbox; }
namespace pelkor::charts { class clsBackBuffer; }
namespace pelkor::web { class QtWebView; }

namespace pelkor {

class ChartView;

// A button of the task pane: objectName, the Hebrew caption (its accessible
// name too), a check button when check, whose caption while down is
// downCaption.
QAbstractButton* taskButton(QWidget* parent, const char* objectName, const QString& caption, bool check,
                            const QString& downCaption = {});

class frmBankReportMainView : public QWidget, public reports::BankWindowCalls {
    Q_OBJECT
public:
    explicit frmBankReportMainView(reports::BankReportParts parts, QWidget* parent = nullptr);
    ~frmBankReportMainView() override;

    reports::frmBankReportMain& logic() { return *logic_; }
    web::QtWebView* page() const { return wb_; }
    charts::clsBackBuffer& totalChart() { return *total_; }
    charts::clsBackBuffer& separateChart() { return *separate_; }

    // BankWindowCalls.
    void shownChanged() override;
    void bringToTop() override;
    void setFocus(const QString& name) override;
    void printPreview(web::WebView& view, bool backgroundColors) override;
    void closeWindow() override { close(); }
    void drawCharts() override;
    bool saveGraphs(const QString& folder) override;
    QString exportHtml(web::WebView& view, const QString& imageFolder) override;

    // The preview opens modeless (for tests); previewDialog is the last one.
    void setPreviewModeless(bool on) { previewModeless_ = on; }
    QWidget* previewDialog() const { return preview_; }

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void drawChart(charts::clsBackBuffer& b, bool separate, int width, int height);
    void chartMouseMove(bool separate, int x, int y);
    void timerHover_Timer();

    std::unique_ptr<reports::frmBankReportMain> logic_;
    std::unique_ptr<bus::Mailbox> txtMessage_;
    std::unique_ptr<charts::clsBackBuffer> total_, separate_, totalForFile_, separateForFile_;
    int coloursAdded_ = 0;
    web::QtWebView* wb_ = nullptr;
    QWidget* frameTaskPane_ = nullptr;
    QWidget* frameGraphpane_ = nullptr;
    ChartView* picTotalGraph_ = nullptr;
    ChartView* picSeparateGraphs_ = nullptr;
    QListWidget* lstFiles_ = nullptr;
    QLineEdit* txtFrom_ = nullptr;
    QLineEdit* txtTo_ = nullptr;
    QAbstractButton* cmdShow_ = nullptr;
    QAbstractButton* cmdRemove_ = nullptr;
    QAbstractButton* chkShowIncomeAndExpenseCols_ = nullptr;
    QAbstractButton* chkShowGraphs_ = nullptr;
    QList<QAbstractButton*> reportCommands_;
    QTimer timerHover_;
    bool hoverSeparate_ = false;
    int hoverX_ = 0, hoverY_ = 0;
    bool hoverShowing_ = false;
    bool syncing_ = false;
    bool closing_ = false;
    bool previewModeless_ = false;
    QWidget* preview_ = nullptr;
    QString frameImage_;
};

} // namespace pelkor
