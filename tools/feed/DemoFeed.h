// DemoFeed: the demonstration feed demo.mdb (table demoOsh) that the demo
// ledger reconciles against.
//
// Made from the demo ledger itself, so the two agree on dates: the bank's
// rows of the last 90 days up to the ledger's today (its last line that is
// not a forecast). Up to the zeroing line's date every row is the ledger's
// line as the bank words it, so the balances agree there; after it the
// reconciliation has work: a few rows a day later than the line, a few
// card credits less the bank's fee, bank charges and interest that the
// ledger has no line for, and the latest cheques not yet cleared. Several
// days hold more than one row. The same ledger gives the same feed.
#pragma once

#include <QString>

namespace pelkor::feed {

// The account number of the demonstration feed's rows.
inline constexpr const char* demoAccount = "20-633-412345";

// Writes demo.mdb at path from the demo ledger at ledgerPath (replacing a
// file there). Returns an empty string on success, else why not.
QString generateDemoFeed(const QString& ledgerPath, const QString& path);

} // namespace pelkor::feed
