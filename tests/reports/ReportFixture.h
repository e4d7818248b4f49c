// A period report window over a working run of a small ledger: the real
// load, the report's logic on four scripted views, its building chain run
// at once, a child the test plays and an add-line dialog it records.
#pragma once

#include "file/LoadFixture.h"
#include "reports/frmMonthReportMain.h"
#include "seams/web/ScriptedWebView.h"

#include <memory>

namespace pelkor::testing {

// Opening line on 31/12/2024 (the zeroing line, 10,000), then January
// (+1 1,000 type 1; -1 300 type 7), an empty February, March (-2 500 and
// a 50 refund, type 2) and April (+1 200 type 3).
inline QString reportLines()
{
    return QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+0','2024-12-31','1','יתרה',10000,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(2,'+1','2025-01-05','2','מכירה',1000,0,1,' ','ללא צבע'),"
        "(3,'-1','2025-01-20','3','ספק',0,300,7,' ','ללא צבע'),"
        "(4,'-2','2025-03-10','4','משכורת',0,500,2,' ','ללא צבע'),"
        "(5,'-2','2025-03-11','5','החזר',50,0,2,' ','ללא צבע'),"
        "(6,'+1','2025-04-02','6','מכירה',200,0,3,' ','ללא צבע');");
}

struct RecordingReportWindow : reports::ReportWindowCalls {
    int changes = 0;
    int raised = 0;
    QString focus;
    void shownChanged() override { ++changes; }
    void bringToTop() override { ++raised; }
    void setFocus(const QString& name) override { focus = name; }
};

class ReportTest : public LoadTest {
protected:
    // The working run on the ledger, then the report window of type t.
    void openReport(reports::PeriodType t, const QString& lines = reportLines(), const QString& rules = {})
    {
        makeLedger(lines);
        start({QStringLiteral("open"), file}, rules);
        ASSERT_FALSE(m->ended());
        reports::ReportParts parts = m->reportParts();
        parts.children = childrenOverride ? childrenOverride : &children;
        parts.openAddLine = [this](std::function<void(const QString&)> tell) {
            ++addLinesOpened;
            tell(QStringLiteral("closed"));
        };
        parts.closed = [this] { ++closedCalls; };
        reports::ReportViews views;
        views.wbReport[1] = &kindReport;
        views.wbList[1] = &kindList;
        views.wbReport[0] = &typeReport;
        views.wbList[0] = &typeList;
        r = std::make_unique<reports::frmMonthReportMain>(std::move(parts), views, window, t);
        r->setImmediate(true);
        r->setTxtMessageId(0x00c0ffee);
        r->Form_Load();
    }
    // The text of member index of the shared id on a page.
    static QString cell(web::ScriptedWebView& v, int row, int index) { return v.text(QStringLiteral("c%1").arg(row), index); }
    static QString rowDisplay(web::ScriptedWebView& v, int row, int index = 0) { return v.display(QStringLiteral("r%1").arg(row), index); }

    web::ScriptedWebView kindReport, kindList, typeReport, typeList;
    RecordingReportWindow window;
    std::unique_ptr<reports::frmMonthReportMain> r;
    Children* childrenOverride = nullptr;   // real children instead of played ones
    int addLinesOpened = 0;
    int closedCalls = 0;
};

} // namespace pelkor::testing
