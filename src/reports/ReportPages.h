// ReportPages: the text of the period report's four pages.
//
// The kind list and the type list (a box per kind, type, category and
// section, each box's click an event string "knd3", "tex", ...), and the
// kind report and the type report: the title, the column headings by
// period type, a name column and one small table of amounts per column
// (tblperiodsums), first once with every column for the screen (divscr),
// then once per printed page of at most 11 columns (divprn). A click on an
// amount sends "<style> <id> <period> <nz>" (style 3 a kind, 4 a type).
//
// Ids the window writes to in place: each report row's tr is "r<row>"
// (shared by the name tables and every tblperiodsums), and the cell of a
// total row is "c<row>" (shared, one per tblperiodsums in document order,
// so member i is column i modulo nPeriods + 1). The amount of an updated
// cell is written inside a span carrying the cell's new class.
//
// Every user text (a kind's or type's name, the file's name) goes through
// htmlEscape. Pages are plain text here; Html::writePage writes them in
// windows-1255.
#pragma once

#include "reports/PeriodTotals.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace pelkor::reports {

// The width of a text in 10-point Arial, in pixels (the view measures; a
// core run without fonts estimates).
using MeasureText = std::function<int(const QString&)>;
int estimatedTextWidth(const QString& text);

// The kinds as the lists and reports name them, by kind index.
struct KindNames {
    QStringList descs;   // getKindDesc
    QStringList ids;     // getKindID ("+0", "-3")
    int nCategories() const { return int(ids.size()); }
};

// Kind list row r: below nCategories/2 the expense kind r + nCategories/2
// (report row r + 1); else the income kind r - nCategories/2 (report row
// r + 2).
int kindOfListRow(int r, int nCategories);
int reportRowOfListRow(int r, int nCategories);

// The list pages. widest takes the widest text written, measured.
QString kindListPage(const KindNames& kinds, const SumSet& s, const MeasureText& measure, int& widest);
QString typeListPage(const TypeTotals& t, const MeasureText& measure, int& widest);

// The rows of the type report, kept while the page is written: a row per
// type, a total row per category, the two section totals.
struct TypeRows {
    std::vector<int> typeRowIndex;     // per type
    std::vector<int> categRowIndex;    // per category
    int expensesTotalRow = 0, incomesTotalRow = 0, netRow = 0, balanceRow = 0;
};
TypeRows typeRowsOf(const TypeTotals& t);

// What heads a report page.
struct ReportHead {
    QString shortFileName;
    QString sPeriodic;
    double theCredit = 0;
    int nameWidth = 150;   // the name column, in pixels
};

// The kind report and the type report.
QString kindReportPage(const ReportHead& head, const Periods& periods, const KindNames& kinds, const SumSet& s);
QString typeReportPage(const ReportHead& head, const Periods& periods, const TypeTotals& t, const TypeRows& rows);

// The kind report's fixed rows.
inline int kindExpensesRow(int n) { return n / 2 + 1; }
inline int kindIncomesRow(int n) { return n + 2; }
inline int kindNetRow(int n) { return n + 3; }
inline int kindBalanceRow(int n) { return n + 4; }

// How many printed pages nPeriods columns (and the total column) take.
inline int printedPages(int nPeriods) { return (nPeriods + 1 + 10) / 11; }

} // namespace pelkor::reports
