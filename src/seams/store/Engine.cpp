#include "seams/store/Engine.h"

namespace pelkor::store::engine {

QString engineMessage(sqlite3* db)
{
    return db ? QString::fromUtf8(sqlite3_errmsg(db)) : QStringLiteral("out of memory");
}

bool isBusyCode(int rc)
{
    return (rc & 0xff) == SQLITE_BUSY || (rc & 0xff) == SQLITE_LOCKED;
}

void fail(StoreError::Kind kind, sqlite3* db, const QString& subject)
{
    if (db && isBusyCode(sqlite3_errcode(db)))
        kind = StoreError::Kind::Busy;
    throw StoreError(kind, engineMessage(db), subject);
}

Stmt::Stmt(sqlite3* db, const QString& sql, const QString& subject)
{
    const QByteArray utf8 = sql.toUtf8();
    if (sqlite3_prepare_v2(db, utf8.constData(), int(utf8.size()), &st_, nullptr) != SQLITE_OK) {
        sqlite3_finalize(st_);
        st_ = nullptr;
        fail(StoreError::Kind::Statement, db, subject);
    }
    if (!st_)
        throw StoreError(StoreError::Kind::Statement, QStringLiteral("Empty statement"), subject);
}

void run(sqlite3* db, const char* sql, const QString& subject)
{
    char* err = nullptr;
    if (sqlite3_exec(db, sql, nullptr, nullptr, &err) != SQLITE_OK) {
        const QString msg = err ? QString::fromUtf8(err) : engineMessage(db);
        sqlite3_free(err);
        throw StoreError(isBusyCode(sqlite3_errcode(db)) ? StoreError::Kind::Busy : StoreError::Kind::Statement, msg,
                         subject);
    }
}

ColumnClass classify(const QString& declared)
{
    const QString t = declared.toUpper();
    if (t.isEmpty())
        return ColumnClass::Untyped;
    if (t.contains(QLatin1String("DATE")) || t.contains(QLatin1String("TIME")))
        return ColumnClass::Date;
    if (t.contains(QLatin1String("CHAR")) || t.contains(QLatin1String("TEXT")) || t.contains(QLatin1String("CLOB"))
        || t.contains(QLatin1String("MEMO")))
        return ColumnClass::Text;
    if (t.contains(QLatin1String("INT")) || t.contains(QLatin1String("LONG")) || t.contains(QLatin1String("BYTE"))
        || t.contains(QLatin1String("BIT")) || t.contains(QLatin1String("BOOL")) || t.contains(QLatin1String("YESNO"))
        || t.contains(QLatin1String("COUNTER")))
        return ColumnClass::Whole;
    if (t.contains(QLatin1String("REAL")) || t.contains(QLatin1String("FLOA")) || t.contains(QLatin1String("DOUB"))
        || t.contains(QLatin1String("NUM")) || t.contains(QLatin1String("DEC")) || t.contains(QLatin1String("CURRENCY"))
        || t.contains(QLatin1String("MONEY")) || t.contains(QLatin1String("SINGLE")))
        return ColumnClass::Number;
    return ColumnClass::Text;
}

std::vector<ColumnInfo> tableColumns(sqlite3* db, const QString& schema, const QString& table, const QString& subject)
{
    Stmt st(db, QStringLiteral("SELECT name, type FROM pragma_table_info(?1, ?2)"), subject);
    const QByteArray t = table.toUtf8();
    const QByteArray s = schema.toUtf8();
    sqlite3_bind_text(st, 1, t.constData(), int(t.size()), SQLITE_STATIC);
    sqlite3_bind_text(st, 2, s.constData(), int(s.size()), SQLITE_STATIC);
    std::vector<ColumnInfo> cols;
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
        cols.push_back({QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0))),
                        QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 1))).toUpper()});
    }
    if (rc != SQLITE_DONE)
        fail(StoreError::Kind::Statement, db, subject);
    return cols;
}

void SchemaCache::forget()
{
    sqlite3_finalize(version_stmt_);
    version_stmt_ = nullptr;
    db_ = nullptr;
    version_ = -1;
    plain_.clear();
    columns_.clear();
    anyTable_.clear();
}

int SchemaCache::schemaVersion(sqlite3* db, const QString& statement)
{
    if (db != db_) {
        forget();
        if (sqlite3_prepare_v3(db, "PRAGMA schema_version", -1, SQLITE_PREPARE_PERSISTENT, &version_stmt_, nullptr)
            != SQLITE_OK) {
            sqlite3_finalize(version_stmt_);
            version_stmt_ = nullptr;
            fail(StoreError::Kind::Statement, db, statement);
        }
        db_ = db;
    }
    const int rc = sqlite3_step(version_stmt_);
    const int version = sqlite3_column_int(version_stmt_, 0);
    sqlite3_reset(version_stmt_);
    if (rc != SQLITE_ROW)
        fail(StoreError::Kind::Statement, db, statement);
    return version;
}

void SchemaCache::refresh(sqlite3* db, const QString& statement)
{
    const int version = schemaVersion(db, statement);
    if (version == version_)
        return;
    plain_.clear();
    columns_.clear();
    anyTable_.clear();
    Stmt st(db,
            QStringLiteral("SELECT m.name, p.name, p.type FROM sqlite_master m, pragma_table_info(m.name) p "
                           "WHERE m.type = 'table' ORDER BY m.name, p.cid"),
            statement);
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
        const QString table = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0))).toLower();
        const QString name = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 1)));
        const QString type = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 2))).toUpper();
        const QString column = name.toLower();
        const ColumnClass cls = classify(type);
        const bool plain = cls == ColumnClass::Date || cls == ColumnClass::Whole || cls == ColumnClass::Number;
        plain_[table][column] = plain;
        columns_[table].push_back({name, type});
        const auto it = anyTable_.constFind(column);
        anyTable_[column] = plain && (it == anyTable_.constEnd() || *it);
    }
    if (rc != SQLITE_DONE)
        fail(StoreError::Kind::Statement, db, statement);
    version_ = version;
}

bool SchemaCache::plain(const QString& table, const QString& column) const
{
    const QString c = column.toLower();
    if (!table.isEmpty()) {
        const auto t = plain_.constFind(table.toLower());
        if (t != plain_.constEnd())
            return t->value(c, false);
    }
    return anyTable_.value(c, false);
}

const std::vector<ColumnInfo>* SchemaCache::columns(const QString& table) const
{
    const auto t = columns_.constFind(table.toLower());
    return t == columns_.constEnd() ? nullptr : &*t;
}

} // namespace pelkor::store::engine
