// frmCompare: the comparison window's logic.
//
// Two periods, each a file and a range in a box of its own ("תקופה א",
// "תקופה ב"), both on the main window's file at first. Each period has a
// connection of this window's own to its file, opened when the file is
// chosen and closed with the window. The window shows a kind report and a
// type report (the latter only when both files hold the same types), each
// a page beside a list of ticks and two bar charts, expenses and incomes,
// of the ticked rows in the two periods.
//
// It builds as the period report does, in a chain of one-shot timers (the
// lists, the sums and the pages, showing them once complete), and runs the
// period reports' sums statement and page writer over each period. A tick
// rewrites the page and the side's chart; a click on an amount opens the
// lines behind it in a detail child on that period's file and range.
//
// The charts themselves are the view's: the logic says which pair to
// draw, and gives their bars (kindChartSeries, typeChartSeries).
#pragma once

#include "reports/CompareReport.h"
#include "reports/frmMonthReportMain.h"
#include "seams/store/Connection.h"

#include <array>

namespace pelkor::reports {

class CompareWindowCalls : public ReportWindowCalls {
public:
    // The charts of pair which (1 kinds, 0 types) are to be drawn anew.
    virtual void drawCharts(int which, bool mustAnimate) { (void)which; (void)mustAnimate; }
};

struct CompareShown {
    QString caption = QStringLiteral("השוואה");
    std::array<QString, 2> txtFileName, txtFrom, txtTo;
    bool enabled = true;
    bool visible = false;
    bool busy = true;
    int optKindsOrTypes = 1;            // 1 kinds, 0 types
    bool typesEnabled = true;
    bool tableShown = true;             // cmdHideTable / cmdShowTable
    bool taskPaneShown = true;          // cmdHideTaskPane / cmdShowTaskPane
    bool chkPrintBGColors = true;
};

class frmCompare {
public:
    frmCompare(ReportParts parts, ReportViews views, CompareWindowCalls& window);
    ~frmCompare();

    void guarded(const QString& proc, const std::function<void()>& fn);
    void setImmediate(bool immediate) { immediate_ = immediate; }
    void setTxtMessageId(std::uint32_t id) { txtMessageId_ = id; }

    // ---- building ------------------------------------------------------
    void Form_Load();
    // Opens period i's connection on its file and takes the file's whole
    // range. False (with a message) when the file can't be read as a
    // ledger; the period is then left as it was.
    bool initFile(int i);
    void createKindList();
    void createTypeList();
    void createReports(bool isFirstTime, bool isFromCmdShow);
    void timerNavigateToReports();
    void timerSetReportNotifiersAndScrolls();

    // ---- the pages' events -------------------------------------------
    void listEventHandler(int which);
    void reportEventHandler(int which);

    // ---- the controls -------------------------------------------------
    void cmdBrowse_Click(int i);
    void cmdLikeOther_Click(int i);
    void cmdShow_Click();
    void optKindsOrTypes_Click(int index);
    void txtFrom_Change(int i, const QString& text) { shown_.txtFrom[size_t(i)] = text; }
    void txtTo_Change(int i, const QString& text) { shown_.txtTo[size_t(i)] = text; }
    void cmdSave_Click();
    void cmdPrintPreview_Click();
    void chkPrintBGColors_Click(bool checked);
    void cmdHideTable_Click(bool hide);
    void cmdHideTaskPane_Click(bool hide);
    void Form_Unload();
    // A control clicked by name (cmdShow, cmdSave, cmdPrintPreview,
    // cmdBrowse0/1, cmdLikeOther0/1, optKindsOrTypes0/1, cmdHideTable,
    // cmdShowTable, cmdHideTaskPane, cmdShowTaskPane, cmdClose).
    bool clickControl(const QString& name);
    bool txtMessage_Change(const QString& text);

    // ---- state --------------------------------------------------------
    const CompareShown& shown() const { return shown_; }
    const CompareSums& sums() const { return sums_; }
    const std::array<QString, 2>& fileNames() const { return fileNames_; }
    const std::array<DateRange, 2>& ranges() const { return ranges_; }
    QString pagePath(const QString& fileName) const;
    QString proposedSaveName() const;
    const QString& lastChildCommand() const { return lastChildCommand_; }

private:
    void startTimer(QTimer& t, int ms, void (frmCompare::*step)());
    void timerNavigateToLists();
    void timerCreateReports();
    void writeLists();
    void writeReports();
    void syncListBoxes(int which);
    void setBox(int which, const QString& cellId, const QString& boxId, bool on, const QString& event, int index = 0);
    void ticksChanged(int which);
    CompareHead head(int nameWidth) const;
    void changed();
    void setEnabled(bool on);

    ReportParts parts_;
    ReportViews views_;
    CompareWindowCalls& window_;
    CompareShown shown_;
    bool immediate_ = false;
    std::uint32_t txtMessageId_ = 0;
    std::array<store::Connection, 2> cn_;
    std::array<QString, 2> fileNames_;
    std::array<DateRange, 2> ranges_;
    std::array<TypeTotals, 2> catalogues_;
    CompareSums sums_;
    QString lastKindList_, lastTypeList_;
    int kindNameWidth_ = 150, typeNameWidth_ = 150;
    bool suspendCheckHandler_ = true;
    bool animateNext_ = true;           // one-shot: the next drawing of the charts rises
    QString lastChildCommand_;
    QTimer timerLists_, timerCreate_, timerReports_, timerNotifiers_;
};

} // namespace pelkor::reports
