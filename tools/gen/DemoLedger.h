// DemoLedger: the demonstration ledger, a year of a small business.
//
// A print shop's current account: sales by cheque, card and transfer most
// days; suppliers; salaries on the 1st; rent on the 5th; VAT and income tax
// advances on the 15th; a loan received in the spring and repaid monthly;
// bank fees. The account runs on a credit line of 40,000 and crosses it on a
// few days before the big receipts; the zeroing line stands three weeks back;
// forecast lines lie ahead; some lines carry colours and some are marked for
// synchronisation. The same date gives the same file.
#pragma once

#include <QDate>
#include <QString>

namespace pelkor::generator {

// Writes the demo ledger at path, ending on today (replacing a file there).
void generateDemoLedger(const QString& path, const QDate& today);

} // namespace pelkor::generator
