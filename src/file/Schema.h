// Schema: the format description of every database file the system reads.
//
// A data file (*.pkr) is one bank account. Its tables, columns and marker
// values are these; every other part of the program refers to these names
// and does not describe them again.
//
//   pelkor          the ledger's lines
//     id            INTEGER PRIMARY KEY: unique and growing; MAX(id) right
//                   after an insert is the new line
//     kind          sign and digits ("+1", "-12"); must equal a category.id
//     date          DATE, ISO text; a damaged file may hold other text here
//     confirm       reference; one blank when empty, never Null or ""
//     detail        free description
//     in, out       DOUBLE sums; a damaged file may hold text here
//     TypeNum       refers to Types.TypeNum; may be Null
//     zee           marker: " " ordinary, "ZZZZZZZZZZ" the zeroing (ipus)
//                   line, "coord0/1/2/9" during one step of a
//                   reconciliation, or the member's index in a merged file
//     memo          colour word, optionally prefixed "newline "
//     relate        0, -1 or 99; Null reads as 0
//     IndTzefi      1 on a forecast line; Null reads as 0
//     ConstantLineNum  the recurring transaction the line came from
//     total         read by the merged report's statement, value unused
//   tempPelkor, savedPelkor, bckpPelkor, invoiceCategs: copies of pelkor's
//                   layout, made by SELECT * INTO
//   category        id (the kind, "+1") and category (its description);
//                   kinds come in +n/-n pairs from 0 up with no gap
//   TypesCategories CategoryNum, CategoryName, InOut (1 income, else expense)
//   Types           TypeNum, TypeName, CategoryNum; TypeNum 1 is the default
//                   income type, 2 the default expense type
//   ConstantLines   stored recurring transactions
//   Defaults        one row: Password, Credit, and the upgraded columns
//                   NDays, isAuto, iBank (0 none, 1-12 a bank, 99 the demo
//                   feed), AccountNum ("(none)" when unbound)
//   mergedBanks     in a merged file: index, fileName, conv
//
// The parameter database PelkorParams.mdb has one table PARAMETER(PARAMETER,
// T) with the keys "CURRENTFILE" and "directory". A bank feed database has
// one table "<bank>Osh" per bank (one row a statement line) and a table
// "main" that renames accounts.
//
// This file creates such files. Old data files are upgraded in place when
// they are opened, never here.
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

namespace pelkor::store { class Connection; }

namespace pelkor::schema {

// The select list used wherever whole lines are read. detail is named as
// itself so that the engine's sort, which orders by it under the text
// collation, holds one copy of it per line rather than two.
inline constexpr const char* lineColumns =
    "id, kind, date, confirm, detail AS detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi";
// The order in which lines are always read.
inline constexpr const char* lineOrder =
    "date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id";
inline constexpr const char* ipusMark = "ZZZZZZZZZZ";

// SQLite scripts (run with Connection::executeRaw).
QString dataFileScript();     // every table of a current data file, empty
QString oldDataFileScript();  // a file from before the upgrades: Defaults
                              // without NDays, isAuto, iBank, AccountNum; no
                              // invoiceCategs
QString paramsScript();       // PARAMETER
QString mergeTemplateScript();// mergedBanks, category, Types, TypesCategories
// merge.pkr as shipped: the four tables above, and what a merged file needs
// to open as a ledger beside its lines (ConstantLines, invoiceCategs, one
// row of Defaults with no password and no credit line).
QString mergeFileTemplateScript();
// A bank feed with the given tables ("poalimOsh", "demoOsh", ...) and main.
QString feedScript(const QStringList& feedTables);
// The feed table names of the twelve banks, deduplicated, in bank order.
QStringList bankFeedTables();

// Creates a new ledger at path that a user can start from: Hebrew kinds in
// +n/-n pairs from 0 up, type groups and types (1 default income, 2 default
// expense), Defaults with Credit 0 and every column, the invoice kinds row,
// and one opening line "יתרה התחלתית" dated today bearing the ipus mark.
// Refuses an existing path. Throws store::StoreError; on failure nothing is
// left behind at path.
void createLedger(const QString& path, const QDate& today);

// Creates the parameter database at path with the folder the open dialogs
// start in and the file a working run opens. Refuses an existing path.
void createParams(const QString& path, const QString& directory, const QString& currentFile);

// Fills the kinds, type groups and types of a new ledger into an open
// connection whose tables exist (shared by createLedger and the generators).
void fillStandardCatalogue(store::Connection& cn);

} // namespace pelkor::schema
