// What every figure of the bench does alike: the best of several runs of
// each side, one table line per figure, a wait with the event loop running,
// and a figure measured in a process of its own.
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace pelkor::bench {

// The best of count runs of each side, the two taking turns and each going
// first in half of the rounds; warmUp: one run of both first (the page
// cache, the first use of the libraries).
template <class Mine, class Base>
std::pair<double, double> bestOf(int count, Mine mine, Base base, bool warmUp = true)
{
    if (warmUp) {
        base();
        mine();
    }
    double b = 1e300, m = 1e300;
    for (int r = 0; r < count; ++r) {
        if (r % 2 == 0) {
            b = std::min(b, base());
            m = std::min(m, mine());
        } else {
            m = std::min(m, mine());
            b = std::min(b, base());
        }
    }
    return {m, b};
}

// The median of count runs of each side, run in blocks of block runs of
// one side then of the other, so that a side's run follows one of its own
// (two connections writing in turn make each re-read what the other
// wrote, which neither would do alone). For figures whose runs vary more
// from luck (a disk's flush) than from the work: the best of them would
// measure the luck.
template <class Mine, class Base>
std::pair<double, double> medianOfBlocks(int count, Mine mine, Base base, int block = 10)
{
    std::vector<double> m, b;
    base();
    mine();
    while (int(m.size()) < count) {
        for (int k = 0; k < block; ++k)
            b.push_back(base());
        for (int k = 0; k < block; ++k)
            m.push_back(mine());
    }
    const auto median = [](std::vector<double>& v) {
        std::nth_element(v.begin(), v.begin() + v.size() / 2, v.end());
        return v[v.size() / 2];
    };
    return {median(m), median(b)};
}

// A line of the table: the figure, both sides, their ratio, the target.
// decimals: 1 for figures of tens of milliseconds and more, 2 for fractions
// of one.
void printFigure(const QString& figure, double mine, double base, const char* target, int decimals = 1);

// The lines of the ledger at path; -1 when it is missing or not a ledger.
long countLines(const QString& path);

// A generated ledger of lines over the year that ends on last, made at
// path unless one of that many lines lies there already (what names it in
// the note printed while it is made).
void yearLedger(const QString& path, long lines, const QDate& last, unsigned seed, const QString& what);

// The bare side of a report's figure: sql, a grouped sum of "in" and out
// with ?1 and ?2 for the range's ends, run by SQLite alone on the file at
// path; the sum of its rows' in less out.
double bareGroupedSum(const QString& path, const char* sql, const QDate& from, const QDate& to);

// Runs the event loop until done or timeoutMs; whether done.
bool waitUntil(const std::function<bool()>& done, int timeoutMs = 60000);

// Runs program with args on the offscreen platform; its output is "<tag>
// <mine> <base>", or anything else with the reason it could not measure.
// Prints the figure's line, or a skipped line with the reason.
void childFigure(const QString& program, const QStringList& args, const QString& tag, const QString& figure,
                 const char* target, int timeoutMs);

} // namespace pelkor::bench
