// Upgrades: reading a file's settings, and upgrading an old file in place.
//
// A file is never versioned. Each upgrade is set off by the failure of the
// statement that needs the new column or table, at the moment it is
// needed; old data stay as they are. Each upgrade of several statements
// runs in one transaction, so a crash never leaves it half-done.
#pragma once

#include <optional>

namespace pelkor {

struct OpenLedger;

// isAutomatic from Defaults.isAuto; a file without the column gets it, on.
void handleAuto(OpenLedger& m);
// theInvoiceCategs from the one row of invoiceCategs; a file without the
// table gets it, with one row whose detail is one blank.
void readInvoiceCategs(OpenLedger& m);
// iBank (less one: -1 none), the account number and isSimulate from
// Defaults; a file without the columns counts as unbound.
void handleBankInfo(OpenLedger& m);
// Unbinds the file; a failure is traced and ignored.
void resetBankInfo(OpenLedger& m);
// Whether the moving-dates menu entry shows: on a file bound to the
// demonstration feed (iBank 99). nullopt when Defaults cannot be read (the
// entry stays as it is).
std::optional<bool> checkBankNum(OpenLedger& m);

} // namespace pelkor
