// MatchPasses: the five passes that propose pairs of a bank row and a line.
//
// Each pass goes over the bank rows in grid order and gives each free bank
// row the first free line, in grid order, that meets the pass's proof;
// a row taken by a pass is out of the later ones, so a stronger proof
// always wins a row. Grades 0 to 4 are the passes in order:
//   0  reference (its right end) equal, sums equal, within the day window
//   1  same day, one reference empty, sums equal
//   2  reference equal, the same side (income or expense), within the window
//   3  the bank row has a reference and the line none, sums equal, window
//   4  same day, both references and different, sums equal
// Passes 0, 2 and 3 want a reference on the bank row. References are
// compared as text, exactly; sums as doubles.
//
// Lines are in date order. Each pass looks only at the lines that can meet
// its proof, through indexes by day, by reference and by sums, in grid
// order within the bank row's window, so a search costs the candidates of
// each bank row, never the whole window.
#pragma once

#include <QString>
#include <QByteArray>

#include <QSet>
#include <functional>
#include <vector>

namespace pelkor::reconcile {

// A row as the passes read it. Dates are day numbers (QDate::toJulianDay).
struct MatchRow {
    qint64 day = 0;
    QString confirm;          // the reference cell as shown
    double in = 0, out = 0;
    bool confirmed = false;   // "v": already paired
    bool visible = true;      // a line whose row is shown (not hidden)
};

struct MatchPair {
    int grade = 0;
    int iMain = 0, iBank = 0; // grid rows
    // "<grade> <iMain> <iBank>"
    QString key() const;
    // "<iMain> <iBank>": the pair without its grade.
    QString rows() const;
    bool operator==(const MatchPair&) const = default;
};

struct MatchInput {
    const std::vector<MatchRow>* lines = nullptr;  // [0] is grid row 1
    const std::vector<MatchRow>* bank = nullptr;   // [0] is grid row 1
    int iRowAboveRed = 0;       // lines from the next row on
    int iBankRowAboveRed = 0;   // bank rows from the next row on
    qint64 targetDay = 0;
    int nDigits = 4;
    int maxDayDiff = 30;
    // Row pairs ("<iMain> <iBank>") that the user rejected in this search.
    const QSet<QString>* rejected = nullptr;
    // Called between bank rows now and then, so that a long search can let
    // the window show that it is working.
    std::function<void()> pause;
};

// The right end of a reference: its last n characters, or the whole text
// when it is shorter.
QString confirmTail(const QString& confirm, int n);

// The five passes. mainTaken and bankTaken (by grid row, sized to the grids'
// rows) hold the rows already in a kept pair, and get the rows paired now.
// log, when given, gets the search's log (UTF-8): each pass, each bank row,
// each line looked at and each pair.
std::vector<MatchPair> runMatchPasses(const MatchInput& in, std::vector<char>& mainTaken, std::vector<char>& bankTaken,
                                      QByteArray* log = nullptr);

} // namespace pelkor::reconcile
