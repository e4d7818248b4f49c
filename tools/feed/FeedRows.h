// FeedRows: statements become the rows of a feed table.
//
// For each account (the same number in several files is one account):
//  - each statement's rows are put in date order, keeping the file's order
//    within a day (a file listed newest first is turned round first);
//  - the balance after each row is the file's own where it states one, else
//    computed backward from the statement's closing balance, else forward
//    from its opening balance, else from a closing balance the user gives
//    (the asker); a statement whose stated balances disagree with its rows
//    gets a warning with the difference;
//  - overlapping statements give each bank row once: a row counts as seen
//    as many times as the one statement that holds it most often (so two
//    equal coffees on one day stay two);
//  - rows older than nDays before the account's last date are left out;
//  - transactionID numbers the rows from 1 in that order across the whole
//    table, so numbers grow within each account and the same files give the
//    same numbers again.
#pragma once

#include "Statement.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace pelkor::feed {

struct FeedRow {
    QString account;
    qint64 transactionID = 0;
    QDate date;
    QString confirm;      // the bank's reference; empty is written as Null
    QString description;  // empty is written as Null
    double in = 0, out = 0, balance = 0;
};

struct AccountSummary {
    QString account;
    QString currency;
    int rows = 0;
    QDate first, last;
    double credits = 0, debits = 0;  // both positive
    double closing = 0;              // balance after the last row
    int duplicates = 0;              // rows given by more than one statement, kept once
    int older = 0;                   // rows left out as older than nDays
};

struct FeedPlan {
    QList<FeedRow> rows;
    QList<AccountSummary> accounts;
    QStringList warnings;
    QString error;  // non-empty: nothing may be written
    bool noBalanceGiven = false;  // the error is the user's: no closing balance given
    bool ok() const { return error.isEmpty(); }
};

// Asked for the closing balance of a statement that states no balance at
// all; nullopt when the user gives none.
using ClosingBalanceAsker = std::function<std::optional<double>(const QString& account, const QDate& lastDate)>;

// files: every file's reading, refused ones included (they are skipped).
// nDays <= 0 keeps every row.
FeedPlan planFeed(const QList<ReadResult>& files, int nDays, const ClosingBalanceAsker& ask);

} // namespace pelkor::feed
