// frmMonthReportMain: the period report window's logic.
//
// A report by kind and a report by type, each a page beside a list of
// ticks (wbReport(1)/wbList(1) the kinds, wbReport(0)/wbList(0) the types,
// the latter only when the file has type categories). The window builds in
// a chain of one-shot timers (the lists, then the sums and the report
// pages, then showing them once they are complete), takes the lists'
// clicks without rebuilding a page (rows shown or hidden, totals rewritten
// in place), opens the lines behind an amount in a detail child (or the
// add-line dialog for an empty amount), checks the range boxes, saves and
// previews the page, and hears the child's "closed" and "nochange" and a
// "refresh" in its own txtMessage.
//
// It works on the parts it is given: the open ledger (its connection is
// closed and reopened at each build, so the writes of other instances are
// seen), the instance, the ui, the children, the four views, and the
// window (ReportWindowCalls) for what only a view can do. It never sees
// frmMain.
#pragma once

#include "reports/PeriodSums.h"
#include "reports/PeriodTotals.h"
#include "reports/ReportPages.h"
#include "seams/web/WebView.h"

#include <QDate>
#include <QString>
#include <QTimer>

#include <cstdint>
#include <functional>

namespace pelkor {
namespace ui { class Ui; }
class Children;
struct Instance;
struct OpenLedger;
}

namespace pelkor::reports {

// What the report window asks of its view.
class ReportWindowCalls {
public:
    virtual ~ReportWindowCalls() = default;
    // The shown state (caption, boxes, enabled, the pair shown) changed.
    virtual void shownChanged() = 0;
    virtual void bringToTop() {}
    // The focus to a control by name (txtFrom, txtTo).
    virtual void setFocus(const QString& name) { (void)name; }
    // The live page as it stands (hidden rows, rewritten totals), with the
    // body's overflow "scroll": the saved report's text. Empty: the page
    // as written is saved.
    virtual QString pageHtml(web::WebView& view) { (void)view; return {}; }
    // The print preview of the page, landscape, background colours by the
    // setting.
    virtual void printPreview(web::WebView& view, bool backgroundColors) { (void)view; (void)backgroundColors; }
    // Closes the window as its close box does (Form_Unload follows).
    virtual void closeWindow() {}
};

struct ReportParts {
    OpenLedger& ledger;
    const Instance& instance;
    ui::Ui& ui;
    Children* children = nullptr;          // none start when null
    QString settingsFile;                  // pelkor.ini: the print setting
    QDate today;                           // the first range of a file with no zeroing line
    // frmAddLine, modal, on this window's file; tellOpener carries its
    // answer to this window's txtMessage.
    std::function<void(std::function<void(const QString&)> tellOpener)> openAddLine;
    // The window has closed: the main window takes over (or the run ends).
    std::function<void()> closed;
    // The main window, when shown, takes the changes a child made (the
    // comparison's "refresh" and "closed"); none when null.
    std::function<void()> refreshMain;
    MeasureText measure = estimatedTextWidth;
};

// A report window's save: the user names a file (proposedName offered),
// which takes the live page as it stands (livePage, asked only once a name
// is chosen; empty: none) or else the page as written (writtenPath). A
// failure is told under caption.
void saveReportPage(ui::Ui& ui, const std::function<QString()>& livePage, const QString& writtenPath,
                    const QString& proposedName, const QString& caption);

// The four views: index 1 the kinds, 0 the types (may be null when the
// file has no type categories).
struct ReportViews {
    web::WebView* wbReport[2] = {nullptr, nullptr};
    web::WebView* wbList[2] = {nullptr, nullptr};
};

struct ReportShown {
    QString caption;
    QString txtFrom, txtTo;
    bool enabled = true;
    bool visible = false;
    bool busy = true;                      // the mouse pointer waits
    int optKindsOrTypes = 1;               // 1 kinds, 0 types
    bool typesEnabled = true;
    bool taskpaneShown = true;
    QString cmdToggleTaskpaneCaption = QStringLiteral("הסתר\n>>");
    bool chkPrintBGColors = true;
};

class frmMonthReportMain {
public:
    frmMonthReportMain(ReportParts parts, ReportViews views, ReportWindowCalls& window, PeriodType type);
    ~frmMonthReportMain();

    // Runs fn; a failure nobody expected is told in Hebrew and traced.
    void guarded(const QString& proc, const std::function<void()>& fn);
    // Tests run the building chain at once instead of on its timers.
    void setImmediate(bool immediate) { immediate_ = immediate; }
    void setTxtMessageId(std::uint32_t id) { txtMessageId_ = id; }

    // ---- building ------------------------------------------------------
    // The first range, the lists written, the chain started (timerList).
    void Form_Load();
    void timerList_Timer();
    void Timer1_Timer();
    // Adjusts the range, reads the sums, writes the report pages, starts
    // timerNew.
    void createReports(bool isFirstTime, bool isFromCmdShow);
    void timerNew_Timer();
    void Timer5_Timer();
    // Once the pages are complete: notifiers, boxes, scroll, shown.
    void Timer6_Timer();
    bool isBuilding() const { return suspendCheckHandler_; }

    // ---- the pages' events -------------------------------------------
    void listEventHandler(int which);
    void reportEventHandler(int which);
    void kindClicked(int row, bool checked);
    void kindExpensesClicked();
    void kindIncomesClicked();
    void typeClicked(int index, bool checked);
    void categClicked(int c);
    void typeExpensesClicked();
    void typeIncomesClicked();

    // ---- the controls -------------------------------------------------
    void optKindsOrTypes_Click(int index);
    void cmdShow_Click();
    void txtFrom_Change(const QString& text) { shown_.txtFrom = text; }
    void txtTo_Change(const QString& text) { shown_.txtTo = text; }
    void txtFrom_LostFocus();
    void txtTo_LostFocus();
    // Enter in the boxes.
    void txtFrom_Enter();
    void txtTo_Enter();
    void cmdSave_Click();
    void cmdPrintPreview_Click();
    void chkPrintBGColors_Click(bool checked);
    void cmdToggleTaskpane_Click();
    // Closing: the page files go and the main window takes over.
    void Form_Unload();
    // A control clicked by name, as a scripted run or a host clicks it:
    // cmdShow, cmdSave, cmdPrintPreview, cmdToggleTaskpane,
    // optKindsOrTypes0 and 1, cmdClose. False for any other name.
    bool clickControl(const QString& name);
    // A text in txtMessage: "refresh", "closed", "nochange". False for any
    // other.
    bool txtMessage_Change(const QString& text);

    // ---- state --------------------------------------------------------
    const ReportShown& shown() const { return shown_; }
    const Periods& periods() const { return periods_; }
    const SumSet& kindSums() const { return kinds_; }
    const TypeTotals& typeTotals() const { return types_; }
    const TypeRows& typeRows() const { return typeRows_; }
    const KindNames& kindNames() const { return names_; }
    bool isTypeReportIncluded() const { return isTypeReportIncluded_; }
    PeriodType periodType() const { return type_; }
    // The four page files.
    QString pagePath(const QString& fileName) const;
    // The name a save proposes.
    QString proposedSaveName() const;
    // The last detail child's verb line.
    const QString& lastChildCommand() const { return lastChildCommand_; }

private:
    void startTimer(QTimer& t, int ms, void (frmMonthReportMain::*step)());
    void writeLists();
    // The ticks, totals and section boxes of each report from its sums
    // (a rebuild ticks every row with a non-zero total).
    void createKindReport(bool isFirstTime);
    void createTypeReport(bool isFirstTime);
    void writeReports();
    void saveScroll(bool isFirstTime, bool isFromCmdShow);
    void restoreScroll();
    void syncListBoxes();
    void setBox(int which, const QString& cellId, const QString& boxId, bool on, const QString& event, int index = 0);
    void setRowDisplay(int which, int row, bool show);
    void updateKindDisplayedTotals();
    void updateTypeDisplayedTotals();
    void kindSideClicked(bool expenses);
    void typeSideClicked(bool expenses);
    bool anyTypeTicked(bool expenses) const;
    void setCategoryFromTypes(int c);
    void detailFor(const QStringList& fields);
    void setEnabled(bool on);
    // A range box left: a date is rewritten in its general form, other text refused.
    void dateBoxLostFocus(QString& box, const QString& refusal);
    void changed();
    web::WebView* activeReport() const { return views_.wbReport[shown_.optKindsOrTypes]; }
    ReportHead head(int nameWidth) const;

    ReportParts parts_;
    ReportViews views_;
    ReportWindowCalls& window_;
    PeriodType type_;
    ReportShown shown_;
    bool immediate_ = false;
    std::uint32_t txtMessageId_ = 0;
    bool isTypeReportIncluded_ = false;
    DateRange range_;
    Periods periods_;
    MergedRates rates_;
    KindNames names_;
    SumSet kinds_;
    TypeTotals types_;
    TypeRows typeRows_;
    int kindNameWidth_ = 150, typeNameWidth_ = 150;
    bool suspendCheckHandler_ = true;
    bool batchUpdate_ = false;
    bool wrongCategoryTold_ = false;
    QString hScroll_[2], vScroll_[2];   // "" = nothing saved
    QString lastChildCommand_;
    QTimer timerList_, timer1_, timerNew_, timer5_, timer6_;
};

} // namespace pelkor::reports
