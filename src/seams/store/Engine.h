// The engine's own calls as the store's connection makes them: its
// messages turned into StoreError, a prepared statement that finalizes
// itself, the declared types of columns read as the old engine read them,
// and the file's columns kept between statements.
//
// Used by the connection alone; nothing outside the store includes it.
#pragma once

#include "seams/store/StoreError.h"

#include <QHash>
#include <QString>
#include <sqlite3.h>

#include <vector>

namespace pelkor::store::engine {

QString engineMessage(sqlite3* db);
bool isBusyCode(int rc);
// A failure because another process holds the file is Busy, whatever the
// caller was doing.
[[noreturn]] void fail(StoreError::Kind kind, sqlite3* db, const QString& subject);

class Stmt {
public:
    Stmt(sqlite3* db, const QString& sql, const QString& subject);
    ~Stmt() { sqlite3_finalize(st_); }
    Stmt(const Stmt&) = delete;
    Stmt& operator=(const Stmt&) = delete;
    sqlite3_stmt* get() const { return st_; }
    operator sqlite3_stmt*() const { return st_; }

private:
    sqlite3_stmt* st_ = nullptr;
};

// Runs one statement that returns nothing useful.
void run(sqlite3* db, const char* sql, const QString& subject);

enum class ColumnClass { Text, Whole, Number, Date, Untyped };
// How the old engine's declared types map onto a conversion of text.
ColumnClass classify(const QString& declared);

struct ColumnInfo {
    QString name;
    QString type;   // upper case
};
// The columns of a table of a schema, in their order, read from the file.
std::vector<ColumnInfo> tableColumns(sqlite3* db, const QString& schema, const QString& table, const QString& subject);

// The columns of every table of the main file, with their declared types,
// and which of them sort the same without the text collation (see
// OrderHint): those declared as dates or numbers. Read again whenever the
// file's schema version moves, so a table made or altered since, here or
// by another process, is seen; the version is read by a statement
// prepared once.
class SchemaCache {
public:
    SchemaCache() = default;
    ~SchemaCache() { forget(); }
    SchemaCache(const SchemaCache&) = delete;
    SchemaCache& operator=(const SchemaCache&) = delete;

    // Reads the schema if it changed; once per statement is enough.
    void refresh(sqlite3* db, const QString& statement);
    // Drops what was read and the prepared statement (before the
    // connection closes or opens another file).
    void forget();

    // A column of that table, or, when the table is not one of the file's
    // (no table, or an alias), every column of that name in the file.
    bool plain(const QString& table, const QString& column) const;
    // The columns of a table of the file in their order; null for a table
    // the file does not have.
    const std::vector<ColumnInfo>* columns(const QString& table) const;

private:
    int schemaVersion(sqlite3* db, const QString& statement);

    sqlite3_stmt* version_stmt_ = nullptr;
    sqlite3* db_ = nullptr;
    int version_ = -1;
    QHash<QString, QHash<QString, bool>> plain_;
    QHash<QString, std::vector<ColumnInfo>> columns_;
    QHash<QString, bool> anyTable_;
};

} // namespace pelkor::store::engine
