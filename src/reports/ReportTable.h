// ReportTable: the table a report page is made of, shared by the period
// reports and the comparison.
//
// A page is a title, a row of column headings, a column of row names and
// one small table of amounts per column (tblperiodsums), once for the
// screen and once per printed page of at most 11 columns. The rows say
// what each column's cell holds; writeReport writes the whole page.
#pragma once

#include "reports/ReportPages.h"

#include <functional>
#include <vector>

namespace pelkor::reports {

// One cell of the amounts: its text and class, and for an amount that
// opens its lines the link's style and id.
struct Cell {
    QString text;
    QString cls;
    QString linkStyle;   // "3" a kind, "4" a type; empty: no link
    QString linkId;      // "'+1'" (quoted) or a type's index
    int period = 0;
    bool isUpdated = false;  // a total cell the window rewrites (id c<row>)
    bool nz = false;         // the amount is not 0 (its lines exist)
    QString bgcolor;         // a link cell's own ground ("#rrggbb"), numbers left to right
};

struct Row {
    QString name;
    QString nameClass;
    bool hidden = false;
    std::function<Cell(int col)> cell;   // by default col 0 the total, col c period c-1
};

struct Report {
    QString title;        // escaped into the title cell
    QString titleHtml;    // when set: written as it is into the cell tdTitle instead
    QString namesDiv;     // "topdivkinds" or "topdivtypes"
    QString namesAll;     // "tblallkinds" or "tblalltypes"
    QString namesTable;   // "tblperiodkinds" or "tblperiodtypes"
    QString extraStyle;   // a style sheet of the page's own, after the common one
    // The heading of column c; unset: "סך הכל" then the periods' headings.
    std::function<QString(int c)> heading;
    std::vector<Row> rows;
};

// The page of a report of columns columns (0: nPeriods + 1).
QString writeReport(const Report& rep, const Periods& periods, const ReportHead& head, int columns = 0);

} // namespace pelkor::reports
