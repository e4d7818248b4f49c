// TzefiPage: the pick list of forecast lines, tempTzefi.htm.
//
// When a real line arrives, the user picks the forecast it is taken from
// (frmSubtractFromTzefi). The candidates are shown as one table "t1", a row
// per forecast: its kind, date, detail (cut at 22 characters past 25) and
// its sum rounded to a whole number, with thin dark-gray separators. A
// click paints the row orange, gives the previous choice its white back,
// puts this.rowIndex into the hidden "theRowIndx" and clicks the hidden
// "notifier" (WebView.h tells how that reaches the window); hovering
// lights any row but the chosen one.
//
// Every text of a line enters the page through htmlEscape. The text is
// pure: the same candidates and font give the same bytes, which is what
// the golden test compares.
//
// Not here: which lines are candidates (Tzefi), and the dialog and its
// file (TzefiDialogs).
#pragma once

#include <QDate>
#include <QString>

#include <vector>

namespace pelkor {

// One forecast line offered for the subtraction.
struct TzefiCandidate {
    QString id;
    QString kind;        // stored form, sign in front
    QDate date;
    QString detail;
    double sum = 0;      // In of an income forecast, out of an expense one
    int lineIndex = -1;  // its index in lines; -1 when read from the file
};

// The detail as the page shows it: whole when shorter than 26 characters,
// else its first 22 and "...".
QString tzefiDetail(const QString& detail);

// The page's text; fontName is the grid's font.
QString tzefiPage(const std::vector<TzefiCandidate>& candidates, const QString& fontName);

} // namespace pelkor
