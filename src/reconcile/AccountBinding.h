// AccountBinding: which account of the feed a data file is reconciled with,
// and the reading of that account's rows.
//
// A file is bound once, to one bank and one account (Defaults.iBank and
// Defaults.AccountNum). At the first reconciliation the user picks the
// account among those the feed holds (one question for a single account,
// frmSelectAccount for several); later the feed's table "main" may tell
// that the account was renumbered, and a bound account that the feed no
// longer holds is bound anew. The demonstration file (iBank 99) reads the
// demonstration feed and is never written a binding.
//
// Every road that fails to bind ends the same way: the feed closed, the
// importer told through the "ok" file, and the caller goes back to the full
// screen. Nothing of the file changes on such a road.
//
// Not here: the window's split (the session), the bank grid.
#pragma once

#include "seams/store/Recordset.h"

#include <QString>
#include <optional>

namespace pelkor {
struct OpenLedger;
namespace ui { class Ui; }
}

namespace pelkor::reconcile {

class BankFeed;

struct BindingParts {
    OpenLedger& ledger;      // cn, sql, iBank, accountNum, isSimulate, feedPath
    BankFeed& feed;
    ui::Ui& ui;
    QString tempPath;        // ends with a separator
    QString programDir;
    QString fileCaption;     // the caption of lblFileName, as the questions name the file
};

// The caption of lblBankInfo: the bank's name and three blanks, then a
// blank and the account when one is chosen; empty with no bank.
QString bankInfoCaption(int iBank, const QString& accountNum);

// Opens the feed, binds the file to an account as needed, and reads that
// account's rows in the bank's order. nullopt when it ended without rows
// to show (nothing bound, no account, a feed that could not be read: the
// user was told, where there was something to tell); the feed is then
// closed and the "ok" file written. On success the feed stays open and the
// recordset is at its first row.
std::optional<store::Recordset> readBoundAccount(BindingParts& p);

} // namespace pelkor::reconcile
