// LedgerGenerator: realistic data files for benchmarks, the demo and trials.
//
// Ten years of a small business ending today: every working day (Sunday to
// Thursday, and half of the Fridays) gets a spread of sales, supplier
// payments, salaries at the month's start, rent, taxes on the 15th, loan
// repayments, with references, Hebrew descriptions, kinds and types that
// agree with the sums, a few forecast lines after today and one zeroing line
// a few weeks back. The count per day is drawn so the file ends with the
// requested number of lines.
#pragma once

#include <QDate>
#include <QString>

namespace pelkor::generator {

struct GeneratorOptions {
    long lines = 10000;
    QDate lastDate = QDate::currentDate();
    int years = 10;
    int damagedRows = 0;   // rows with text in date, in or out
    unsigned seed = 20261122;
};

// Writes a new data file at path (replacing one that is there).
void generateLedger(const QString& path, const GeneratorOptions& options);

} // namespace pelkor::generator
