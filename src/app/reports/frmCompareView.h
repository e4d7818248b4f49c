// frmCompareView: the comparison window as the user sees it.
//
// A top row (which pair, show, save, print, the print setting, close), the
// two period boxes (the file, browse, the range, "כמו"), and below them,
// right to left: the report page with the bar that folds it away, the two
// bar charts (expenses over incomes) of the shown pair, the bar that folds
// the task pane, and the task pane with the list of ticks. Both pairs of
// web views stay loaded, the one not chosen moved far to the side. A hover
// over a bar shows the period, the label and the sum above it.
//
// Nothing here decides anything: each act goes to frmCompare.
#pragma once

#include "reports/frmCompare.h"

#include <QTimer>
#include <QWidget>

#include <array>
#include <memory>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace pelkor::bus { class Mailbox; }
namespace pelkor::charts { class clsBackBuffer; }
namespace pelkor::web { class QtWebView; }

namespace pelkor {

class ChartView;

class frmCompareView : public QWidget, public reports::CompareWindowCalls {
    Q_OBJECT
public:
    frmCompareView(reports::ReportParts parts, QWidget* parent = nullptr);
    ~frmCompareView() override;

    reports::frmCompare& logic() { return *logic_; }
    charts::clsBackBuffer& chartOut(int which) { return *out_[size_t(which)]; }
    charts::clsBackBuffer& chartIn(int which) { return *in_[size_t(which)]; }

    // CompareWindowCalls.
    void shownChanged() override;
    void bringToTop() override;
    void setFocus(const QString& name) override;
    QString pageHtml(web::WebView& view) override;
    void printPreview(web::WebView& view, bool backgroundColors) override;
    void closeWindow() override { close(); }
    void drawCharts(int which, bool mustAnimate) override;

protected:
    void resizeEvent(QResizeEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    void placePanes();
    void chartMouseMove(int chart, int x, int y);
    void timerChartHover_Timer();
    void drawChart(int which, bool expenses, bool mustAnimate);

    std::unique_ptr<reports::frmCompare> logic_;
    std::unique_ptr<bus::Mailbox> txtMessage_;
    std::array<std::unique_ptr<charts::clsBackBuffer>, 2> out_, in_;
    std::array<ChartView*, 2> picChartOut_{}, picChartIn_{};
    web::QtWebView* reports_[2] = {nullptr, nullptr};
    web::QtWebView* lists_[2] = {nullptr, nullptr};
    QWidget* pane_ = nullptr;
    QWidget* frameTableBar_ = nullptr;
    QWidget* frameTaskPaneBar_ = nullptr;
    QPushButton* cmdHideTable_ = nullptr;
    QPushButton* cmdShowTable_ = nullptr;
    QPushButton* cmdHideTaskPane_ = nullptr;
    QPushButton* cmdShowTaskPane_ = nullptr;
    QRadioButton* opt_[2] = {nullptr, nullptr};
    std::array<QLineEdit*, 2> txtFileName_{}, txtFrom_{}, txtTo_{};
    QCheckBox* chkPrintBGColors_ = nullptr;
    QLabel* lblHoverXLabel_ = nullptr;
    QLabel* lblHoverSum_ = nullptr;
    QTimer timerChartHover_;
    int hoverX_ = 0, hoverY_ = 0, hoverChart_ = 0;   // chart: 0 expenses, 1 incomes
    bool hoverShowing_ = false;
    bool closing_ = false;
};

} // namespace pelkor
