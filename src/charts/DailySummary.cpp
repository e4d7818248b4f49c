#include "charts/DailySummary.h"

#include "base/CommandLine.h"
#include "base/Format.h"
#include "base/Instance.h"
#include "base/Shown.h"
#include "base/WindowCalls.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"

#include <algorithm>
#include <cmath>

namespace pelkor::charts {

namespace {
const QString chartTitle = QStringLiteral("גרף יתרה יומי");
// The wheel's rotation for one notch is 120; a notch moves the scroll bar
// by five days, its small change.
constexpr int wheelDivisor = 24;
// Where the pointer lands on a point after a slide, and the hover's gap
// above its point, in pixels.
constexpr int hoverGap = 3;
} // namespace

DailySummary::DailySummary(DailySummaryParts parts, QObject* parent) : QObject(parent), p_(std::move(parts))
{
    // The first drawing waits until the window has laid the picture out.
    timerInitialScrollChart_.setSingleShot(true);
    timerInitialScrollChart_.setInterval(200);
    connect(&timerInitialScrollChart_, &QTimer::timeout, this, [this] { reallyScrollChart(msfgBank.Row() - 1, true); });
    // chartBusy spans the moment after a redraw, while its events settle.
    timerReleaseScrollChart_.setSingleShot(true);
    timerReleaseScrollChart_.setInterval(100);
    connect(&timerReleaseScrollChart_, &QTimer::timeout, this, [this] { chartBusy_ = false; });
    // A hover shows once the mouse has rested a quarter of a second.
    timerChartHover_.setInterval(250);
    connect(&timerChartHover_, &QTimer::timeout, this, [this] { timerChartHover_Timer(); });
    // A click slides the chart in steps a tenth of a second apart.
    timerSlide_.setInterval(100);
    connect(&timerSlide_, &QTimer::timeout, this, [this] { slideStep(); });
}

QString DailySummary::chartCaption(int nDays)
{
    return QStringLiteral("   גרף יתרה ") + QString::number(nDays)
        + (nDays < 11 ? QStringLiteral(" ימים") : QStringLiteral(" יום"));
}

void DailySummary::createDailySummary(bool isFromFlag)
{
    // Steps 1-3: the lines afresh (or shown as they are for the host), the
    // mode, the title.
    if (isFromFlag) {
        p_.shown.gridVisible = true;
        p_.shown.visible = true;
    } else {
        p_.window.refresh();
    }
    chartHalf_ = 30;
    building_ = true;
    p_.instance.progMode = modeDailySummarySplit;
    shown_.lblTitle = QStringLiteral("   סיכום יומי");
    shown_.cmdCloseCaption = QStringLiteral("יציאה");
    chartCenter_ = -1;

    // Step 4: the days and the grid.
    refreshStep();

    // Steps 5-6: the day grid on the zeroing date's row.
    const int ipusDay = days_.dayOf(p_.ledger.ipusDate);
    iBankRowAboveRed_ = ipusDay >= 0 ? ipusDay + 1 : -1;
    bankGoTo(iBankRowAboveRed_ > 0 ? iBankRowAboveRed_ : msfgBank.Rows() - 1, false);

    // Steps 7-9: the chart's controls and its surface; the first drawing
    // comes when the window has placed the picture.
    shown_.lblChart = chartCaption(shown_.HScrollChartValue);
    shown_.visible = true;
    picChart.Create(chartWidth_, chartHeight_, rgb(0, 0, 255), rgb(255, 0, 0), p_.frameImage);
    emit changed();
    p_.window.shownChanged();
    emit focusWanted(true);
    timerInitialScrollChart_.start();
    building_ = false;
}

void DailySummary::leaveDailySummary()
{
    timerInitialScrollChart_.stop();
    timerChartHover_.stop();
    timerSlide_.stop();
    slide_.clear();
    shown_.visible = false;
    chartHoverShown_ = false;
    picChart.Destroy();
    p_.instance.progMode = modeFullScreen;
    emit changed();
    p_.window.shownChanged();
    emit focusWanted(true);
}

void DailySummary::refreshStep()
{
    chartForce_ = true;
    calcDailySummary(p_.ledger.lines, days_);
    fillDailySummary(days_, p_.ledger.theCredit, msfgBank);
    const int ipusDay = days_.dayOf(p_.ledger.ipusDate);
    iBankRowAboveRed_ = ipusDay >= 0 ? ipusDay + 1 : -1;
    if (shown_.visible && !building_)
        scrollChart(std::clamp(chartCenter_, 0, std::max(0, days_.nDaysInSummary - 1)), true);
    emit changed();
}

void DailySummary::bankGoTo(int row, bool centre)
{
    if (msfgBank.Rows() < 2)
        return;
    row = clipRowNum(row, msfgBank.Rows());
    const int top = centre ? row - msfgBank.visibleRows() / 2 + 2 : row;
    msfgBank.setTopRow(clipRowNum(top, msfgBank.Rows()));
    msfgBank.setRow(row);
    msfgBank.setCol(dayColDate);
    msfgBank_EnterCell();
}

void DailySummary::msfgBank_EnterCell()
{
    if (!shown_.visible && !building_)
        return;
    const int day = msfgBank.Row() - 1;
    scrollChart(day, false);
    if (following_ || building_ || day < 0 || day >= days_.nDaysInSummary || !p_.moveMainRow)
        return;
    // The main grid follows to the day's first line; a day without lines
    // leaves it where it is.
    const auto& lines = p_.ledger.lines;
    const QDate date = days_.dateOf(day);
    const auto it = std::lower_bound(lines.begin(), lines.end(), date,
                                     [](const Line& L, const QDate& d) { return L.Date < d; });
    if (it == lines.end() || it->Date != date)
        return;
    const int mainRow = int(it - lines.begin()) + 1;
    const int current = p_.grid.msfgMain.Row();
    if (current >= 1 && current <= int(lines.size()) && lines[size_t(current - 1)].Date == date)
        return;   // already on a line of that day
    following_ = true;
    p_.moveMainRow(mainRow);
    following_ = false;
}

void DailySummary::msfgBank_DblClick()
{
    const int day = msfgBank.Row() - 1;
    if (!shown_.visible || day < 0 || day >= days_.nDaysInSummary || !p_.startChild)
        return;
    // Kind 2: every line of the date, unconverted.
    p_.startChild(QStringLiteral("detail ") + idText(p_.instance.txtMessageId) + QStringLiteral(" 2 ")
                  + formatDate224(days_.dateOf(day)) + QStringLiteral(" 0.0000 ") + p_.ledger.filePath);
}

void DailySummary::matchBankRowToMainRow()
{
    if (!shown_.visible || following_)
        return;
    const int r = p_.grid.msfgMain.Row();
    if (r < 1 || r > int(p_.ledger.lines.size()))
        return;
    const int day = days_.dayOf(p_.ledger.lines[size_t(r - 1)].Date);
    if (day < 0 || day + 1 == msfgBank.Row())
        return;
    following_ = true;
    const int row = clipRowNum(day + 1, msfgBank.Rows());
    msfgBank.setTopRow(clipRowNum(row - msfgBank.visibleRows() / 2 + 2, msfgBank.Rows()));
    msfgBank.setRow(row);
    following_ = false;
    scrollChart(row - 1, true);
}

void DailySummary::reallyScrollChart(int center, bool focusOnMain)
{
    if (!shown_.visible || !picChart.isCreated())
        return;
    // Step 1: nothing moved, nothing to draw.
    if (center == chartCenter_ && chartHalf_ == chartHalfDrawn_ && !chartForce_)
        return;
    // Step 2.
    chartForce_ = false;
    chartCenter_ = center;
    chartHalfDrawn_ = chartHalf_;
    chartBusy_ = true;
    chartHoverShown_ = false;
    // Step 3: the window keeps its length near the start and shortens near
    // the end.
    chartFirst_ = std::max(0, center - chartHalf_);
    const int last = std::min(chartFirst_ + 2 * chartHalf_, days_.nDaysInSummary - 1);
    // Step 4: the dates as short labels, the balances as whole numbers.
    QStringList labels;
    std::vector<double> values;
    for (int d = chartFirst_; d <= last; ++d) {
        labels << days_.dateOf(d).toString(QStringLiteral("d/M/yy"));
        values.push_back(std::round(days_.dailyBalances[size_t(d)]));
    }
    // Step 5: the chart.
    picChart.crdt = p_.ledger.theCredit;
    picChart.updateBalanceGraph(labels, values, chartTitle, 1, false);
    emit chartDrawn();
    // Step 6.
    emit focusWanted(focusOnMain);
    timerReleaseScrollChart_.start();
}

void DailySummary::HScrollChart_Change(int value)
{
    value = std::clamp(value, ChartShown::HScrollChartMin, ChartShown::HScrollChartMax);
    shown_.HScrollChartValue = value;
    chartHalf_ = value / 2;
    shown_.lblChart = chartCaption(value);
    emit changed();
    scrollChart(chartCenter_, true);
}

void DailySummary::picChart_Resize(int width, int height)
{
    if (width <= 0 || height <= 0 || (width == chartWidth_ && height == chartHeight_ && picChart.isCreated()))
        return;
    chartWidth_ = width;
    chartHeight_ = height;
    if (!shown_.visible)
        return;
    picChart.Create(width, height, rgb(0, 0, 255), rgb(255, 0, 0), p_.frameImage);
    if (chartCenter_ >= 0) {
        chartForce_ = true;
        const bool keep = chartBusy_;
        reallyScrollChart(chartCenter_, true);
        chartBusy_ = keep || chartBusy_;
    }
}

void DailySummary::picChart_MouseMove(int x, int y)
{
    if (chartHoverShown_) {
        chartHoverShown_ = false;
        chartForce_ = true;
        scrollChart(chartCenter_, true);   // wipes the text
    }
    hoverAt_ = QPoint(x, y);
    timerChartHover_.start();
}

void DailySummary::timerChartHover_Timer()
{
    const int i = picChart.getBalanceHoverIndex(hoverAt_.x(), hoverAt_.y());
    if (i < 0)
        return;   // keeps looking while the mouse rests off the points
    timerChartHover_.stop();
    const QString sDate = picChart.getX(i);
    const QString sSum = FormatChartSum(picChart.getY(i), 0);
    const int y = std::max(0, picChart.getPntY(i) - picChart.hoverHeight() - hoverGap);
    chartHoverShown_ = true;
    picChart.showBalanceHover(QString(), sDate, sSum, picChart.getPntX(i), y);
    emit chartDrawn();
}

void DailySummary::picChart_MouseUp()
{
    const int i = picChart.getBalanceHoverIndex(hoverAt_.x(), hoverAt_.y());
    if (i < 0 || !slide_.empty())
        return;
    const int t = chartFirst_ + i;
    // The chart slides in a tenth of the way each step, whole days only.
    const int step = (t - chartCenter_) / 10;
    if (step != 0)
        for (int c = chartCenter_ + step; step > 0 ? c < t : c > t; c += step)
            slide_.push_back(c);
    slide_.push_back(t);
    slideTarget_ = t;
    slideStep();
    if (!slide_.empty())
        timerSlide_.start();
}

void DailySummary::slideStep()
{
    if (slide_.empty()) {
        timerSlide_.stop();
        return;
    }
    const int c = slide_.front();
    slide_.pop_front();
    scrollChart(c, true);
    if (!slide_.empty())
        return;
    timerSlide_.stop();
    // The day grid takes the day, and the pointer goes onto its point.
    bankGoTo(chartCenter_ + 1, true);
    const int i = slideTarget_ - chartFirst_;
    if (i >= 0 && i < picChart.pointCount())
        emit pointerTo(QPoint(picChart.getPntX(i), picChart.getPntY(i)));
}

void DailySummary::picChart_MouseWheel(int rotation)
{
    const int v = shown_.HScrollChartValue - rotation / wheelDivisor;
    if (v >= ChartShown::HScrollChartMin && v <= ChartShown::HScrollChartMax)
        HScrollChart_Change(v);
}

} // namespace pelkor::charts
