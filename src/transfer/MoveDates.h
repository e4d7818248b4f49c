// MoveDates: every line of the demonstration file, and every row of the
// demonstration feed, moved by a whole number of months, so that the
// demonstration stays current.
//
// The rule keeps month-ends month-ends: a date that is the last day of its
// month goes to the last day of the month n months on; any other goes n
// calendar months on, cut to the last day of a shorter month. The file's
// lines move in one transaction and the feed's rows in another, so a
// failure leaves each either moved or as it was. The lines in memory keep
// their old dates until the next load.
#pragma once

#include <QDate>
#include <QString>

#include <functional>

namespace pelkor {

struct OpenLedger;
namespace ui { class Ui; }

namespace transfer {

// The date n months from d, by the rule above.
QDate moveDate(const QDate& d, int n);

// Moves the dates of the ledger's lines (every line it holds but the first
// skip ones counted from the end: the unsaved new line) and of the feed's
// demoOsh at feedPath. Throws StoreError when a write fails.
struct MovedDates {
    int lines = 0;
    int feedRows = 0;
};
MovedDates moveAllDates(OpenLedger& ledger, int skipLast, const QString& feedPath, int n);

// mnuMoveDates_Click: asks for the months ("מספר חודשים"), refreshes the
// window (refresh), moves the dates and says so. Nothing moves when the
// answer is empty or cancelled; a wrong number is said and asked again.
struct MoveDatesParts {
    OpenLedger& ledger;
    ui::Ui& ui;
    QString feedPath;                  // demo.mdb in the program's folder
    std::function<void()> refresh;     // cmdRefresh_Click
    std::function<bool()> hasNewLine;  // an unsaved line ends the grid
};
void mnuMoveDates_Click(MoveDatesParts& p);

} // namespace transfer
} // namespace pelkor
