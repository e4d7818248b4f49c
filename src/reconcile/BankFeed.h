// BankFeed: the feed database that the statement importer leaves for one
// bank, and how the reconciliation reads it.
//
// A feed file per bank lies in the temporary folder ("atl613o<n>.dll", n
// the bank's place counted from 0, whatever its extension suggests: it is
// a database); the demonstration file reads "demo.mdb" beside the program.
// Each bank's rows stand in a table named after the bank ("poalimOsh", ...;
// three banks share "poalimOsh"), the demonstration feed's in "demoOsh".
// Table "main" renames accounts. The rows of an account are read in date
// order and then in the bank's own order of a day.
//
// Not here: binding a file to an account (AccountBinding) and the grid
// (BankGrid).
#pragma once

#include "seams/store/Connection.h"

#include <QString>

namespace pelkor::reconcile {

// The place of the demonstration feed (Defaults.iBank 99, less one).
inline constexpr int simulatedBank = 98;

// The bank's internal name ("poalim", ...); empty for a place that is no bank.
QString bankInternalName(int iBank);
// The feed table of a bank: "demoOsh" on the demonstration feed, else the
// internal name and "Osh", with the three banks that share it reading
// "poalimOsh".
QString feedTable(int iBank, bool isSimulate);
// The feed file: demo.mdb in the program's folder, or atl613o<iBank>.dll in
// the temporary folder (tempPath ends with a separator).
QString feedFilePath(int iBank, bool isSimulate, const QString& tempPath, const QString& programDir);
// The banks whose texts arrive in the order of the screen (leumi, igud, arab).
bool textArrivesInScreenOrder(int iBank);
// The query of one account's rows: by date, then "[part] DESC" for the two
// banks that number the parts of a day, then transactionID (descending for
// the three banks that list a day from its end). The demonstration feed
// takes neither addition. account is written as given (it has passed
// fixString).
QString accountRowsQuery(int iBank, bool isSimulate, const QString& account);

// The connection to the feed (cnNew).
class BankFeed {
public:
    // Opens the feed file. Throws store::StoreError when it is missing or
    // not a database.
    void openCnNew(const QString& path);
    void closeCnNew();
    bool isOpen() const { return cnNew.isOpen(); }
    store::Connection cnNew;
};

// killDB: at exit the feed file is deleted, unless it is the demonstration
// feed or the simulation check is on.
void killDB(const QString& feedPath, bool isSimulate, bool chkSimulate);

// The file "ok" in the temporary folder, one line "ok ok", written in
// place of any earlier one: it tells a waiting importer that the program
// is done with the feed.
void writeOkFile(const QString& tempPath);

} // namespace pelkor::reconcile
