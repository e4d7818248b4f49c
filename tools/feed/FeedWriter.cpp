// FeedWriter: building a feed file beside the target and renaming it into
// place. See FeedWriter.h.
#include "FeedWriter.h"

#include "file/Schema.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringEncoder>
#include <sqlite3.h>

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace pelkor::feed {

namespace {

struct Db {
    sqlite3* h = nullptr;
    ~Db() { if (h) sqlite3_close_v2(h); }
    QString lastError() const { return QString::fromUtf8(sqlite3_errmsg(h)); }
    bool exec(const char* sql) { return sqlite3_exec(h, sql, nullptr, nullptr, nullptr) == SQLITE_OK; }
    bool exec(const QString& sql) { return exec(sql.toUtf8().constData()); }
};

struct Stmt {
    sqlite3_stmt* s = nullptr;
    ~Stmt() { sqlite3_finalize(s); }
};

bool syncFile(const QString& path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY);
    if (fd < 0)
        return false;
    const bool ok = ::fsync(fd) == 0;
    ::close(fd);
    return ok;
}

// Binds t as UTF-8 encoded into buffer, which must live until the step;
// the buffers are kept across rows so that a row costs no allocation.
void bindText(sqlite3_stmt* s, int i, const QString& t, QByteArray& buffer)
{
    if (t.isEmpty()) {
        sqlite3_bind_null(s, i);
        return;
    }
    // Three bytes of UTF-8 at most for each UTF-16 unit.
    if (buffer.size() < t.size() * 3)
        buffer.resize(t.size() * 3);
    QStringEncoder utf8(QStringEncoder::Utf8);
    char* end = utf8.appendToBuffer(buffer.data(), t);
    sqlite3_bind_text(s, i, buffer.constData(), int(end - buffer.constData()), SQLITE_STATIC);
}

// The renames of the old feed, "accountNum|description" pairs; none when
// there is no old feed or it cannot be read.
QList<QPair<QString, QString>> oldRenames(const QString& path)
{
    QList<QPair<QString, QString>> out;
    if (!QFileInfo::exists(path))
        return out;
    Db db;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db.h, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
        return out;
    Stmt st;
    if (sqlite3_prepare_v2(db.h, "SELECT accountNum, description FROM main", -1, &st.s, nullptr) != SQLITE_OK)
        return out;
    while (sqlite3_step(st.s) == SQLITE_ROW)
        out.append({QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st.s, 0))),
                    QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st.s, 1)))});
    return out;
}

QString build(const QString& tmp, const QString& table, const QList<FeedRow>& rows,
              const QList<QPair<QString, QString>>& renames)
{
    Db db;
    if (sqlite3_open_v2(QFile::encodeName(tmp).constData(), &db.h, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                        nullptr) != SQLITE_OK)
        return db.h ? db.lastError() : QStringLiteral("sqlite");
    // The new file is nobody's until the rename: no journal is needed, a
    // failure deletes it. It is flushed once, before the rename. Its text is
    // UTF-8 like every other database file of the system, which a ledger
    // can attach.
    QStringList tables = schema::bankFeedTables();
    if (!tables.contains(table))
        tables << table;
    if (!db.exec("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA cache_size=-65536;") || !db.exec(schema::feedScript(tables)) ||
        !db.exec("BEGIN"))
        return db.lastError();
    Stmt ins;
    const QString sql = QStringLiteral("INSERT INTO %1 (accountNum, transactionID, date, confirm, description, \"in\", "
                                       "out, balance, part) VALUES (?,?,?,?,?,?,?,?,0)")
                            .arg(table);
    if (sqlite3_prepare_v2(db.h, sql.toUtf8().constData(), -1, &ins.s, nullptr) != SQLITE_OK)
        return db.lastError();
    char date[11];
    QByteArray buffers[3];
    for (const FeedRow& r : rows) {
        bindText(ins.s, 1, r.account, buffers[0]);
        sqlite3_bind_int64(ins.s, 2, r.transactionID);
        const int y = r.date.year(), m = r.date.month(), d = r.date.day();
        const char iso[10] = {char('0' + y / 1000 % 10), char('0' + y / 100 % 10), char('0' + y / 10 % 10), char('0' + y % 10), '-',
                              char('0' + m / 10), char('0' + m % 10), '-', char('0' + d / 10), char('0' + d % 10)};
        std::memcpy(date, iso, 10);
        sqlite3_bind_text(ins.s, 3, date, 10, SQLITE_STATIC);
        bindText(ins.s, 4, r.confirm, buffers[1]);
        bindText(ins.s, 5, r.description, buffers[2]);
        sqlite3_bind_double(ins.s, 6, r.in);
        sqlite3_bind_double(ins.s, 7, r.out);
        sqlite3_bind_double(ins.s, 8, r.balance);
        if (sqlite3_step(ins.s) != SQLITE_DONE)
            return db.lastError();
        sqlite3_reset(ins.s);
    }
    Stmt ren;
    if (sqlite3_prepare_v2(db.h, "INSERT INTO main (accountNum, description) VALUES (?,?)", -1, &ren.s, nullptr) !=
        SQLITE_OK)
        return db.lastError();
    for (const auto& [account, description] : renames) {
        bindText(ren.s, 1, account, buffers[0]);
        bindText(ren.s, 2, description, buffers[1]);
        if (sqlite3_step(ren.s) != SQLITE_DONE)
            return db.lastError();
        sqlite3_reset(ren.s);
    }
    if (!db.exec("COMMIT"))
        return db.lastError();
    return {};
}

} // namespace

QString writeFeed(const QString& path, const QString& table, const QList<FeedRow>& rows)
{
    const QString tmp = QStringLiteral("%1.new-%2").arg(path).arg(QCoreApplication::applicationPid());
    QFile::remove(tmp);
    const QString failed = build(tmp, table, rows, oldRenames(path));
    if (!failed.isEmpty() || !syncFile(tmp)) {
        QFile::remove(tmp);
        return QStringLiteral("כתיבת קובץ הנתונים %1 נכשלה: %2").arg(tmp, failed.isEmpty() ? QStringLiteral("fsync") : failed);
    }
    // rename(2) replaces the old feed in one step: a reader sees the old
    // file or the new one, never a mixture. The old feed's WAL files, if a
    // reader left them, belong to the old file and go with it.
    if (::rename(QFile::encodeName(tmp).constData(), QFile::encodeName(path).constData()) != 0) {
        QFile::remove(tmp);
        return QStringLiteral("החלפת קובץ הנתונים %1 נכשלה").arg(path);
    }
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
    return {};
}

} // namespace pelkor::feed
