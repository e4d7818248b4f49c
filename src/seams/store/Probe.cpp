#include "seams/store/Probe.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <sqlite3.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <memory>

namespace pelkor::store {

namespace {

struct DbCloser {
    void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
};
using Db = std::unique_ptr<sqlite3, DbCloser>;

// The file as it stands: read only, no locking, the journal beside it not
// looked at (immutable), so nothing is made beside the file.
Db openAsItStands(const QString& path, QString& why)
{
    const QByteArray uri = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toEncoded() + "?immutable=1";
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(uri.constData(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    Db owned(db);
    if (rc != SQLITE_OK) {
        why = db ? QString::fromUtf8(sqlite3_errmsg(db)) : QStringLiteral("out of memory");
        return nullptr;
    }
    return owned;
}

QStringList column0(sqlite3* db, const char* sql, int& rc)
{
    QStringList out;
    sqlite3_stmt* st = nullptr;
    rc = sqlite3_prepare_v2(db, sql, -1, &st, nullptr);
    if (rc == SQLITE_OK) {
        while ((rc = sqlite3_step(st)) == SQLITE_ROW)
            out << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
        if (rc == SQLITE_DONE)
            rc = SQLITE_OK;
    }
    sqlite3_finalize(st);
    return out;
}

} // namespace

ProbeResult probe(const QString& path)
{
    ProbeResult r;
    const QFileInfo info(path);
    if (path.isEmpty() || !info.isFile())
        return r;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        // Unreadable: as good as missing to this user.
        r.detail = f.errorString();
        return r;
    }
    static const char header[] = "SQLite format 3";
    const QByteArray head = f.read(16);
    if (head.size() < 16 || !head.startsWith(QByteArray(header, sizeof header))) {
        r.kind = FileKind::NotDatabase;
        return r;
    }
    // The file is as long as its header says: a copy that stopped half
    // way is the damage met most. The header's count holds only when the
    // writer that left it stamped it (bytes 92 and 24 agree).
    f.seek(0);
    const QByteArray header100 = f.read(100);
    if (header100.size() == 100) {
        const auto be32 = [&](int at) {
            const auto* b = reinterpret_cast<const unsigned char*>(header100.constData()) + at;
            return (quint32(b[0]) << 24) | (quint32(b[1]) << 16) | (quint32(b[2]) << 8) | quint32(b[3]);
        };
        const quint32 rawPageSize = (quint32(quint8(header100[16])) << 8) | quint8(header100[17]);
        const qint64 pageSize = rawPageSize == 1 ? 65536 : rawPageSize;
        const quint32 pages = be32(28);
        if (pages > 0 && be32(92) == be32(24) && qint64(pages) * pageSize > info.size()) {
            r.kind = FileKind::Damaged;
            r.detail = QStringLiteral("%1 pages of %2 bytes in a file of %3 bytes").arg(pages).arg(pageSize).arg(info.size());
            return r;
        }
    }
    Db db = openAsItStands(path, r.detail);
    if (!db) {
        r.kind = FileKind::Damaged;
        return r;
    }
    int rc = SQLITE_OK;
    r.tables = column0(db.get(), "SELECT name FROM sqlite_master WHERE type='table'", rc);
    if (rc != SQLITE_OK) {
        r.kind = FileKind::Damaged;
        r.detail = QString::fromUtf8(sqlite3_errmsg(db.get()));
        return r;
    }
    // Every page of every table walked (its rows counted, not read): a page
    // that is not where its parent says, or not a page of a table at all,
    // stops the walk. Damage inside a row is the load's to meet, as the
    // statement that reads it fails.
    for (const QString& table : std::as_const(r.tables)) {
        const QByteArray sql = "SELECT count(*) FROM \"" + table.toUtf8().replace('"', "\"\"") + '"';
        column0(db.get(), sql.constData(), rc);
        if (rc != SQLITE_OK) {
            r.kind = FileKind::Damaged;
            r.detail = QString::fromUtf8(sqlite3_errmsg(db.get()));
            r.tables.clear();
            return r;
        }
    }
    r.kind = FileKind::Database;
    return r;
}

WriteBlock writeBlock(const QString& path)
{
    const QFileInfo info(path);
    const QByteArray dir = QFile::encodeName(info.absolutePath());
    struct statvfs fs {};
    if (::statvfs(dir.constData(), &fs) == 0 && (fs.f_flag & ST_RDONLY))
        return WriteBlock::FileSystem;
    if (::access(dir.constData(), W_OK) != 0)
        return WriteBlock::Folder;
    if (!info.isWritable())
        return WriteBlock::File;
    return WriteBlock::None;
}

namespace {

// SQLite's own recovery, through the shell: its ".recover" writes the SQL
// that rebuilds what can be read. Empty when the shell is not at hand or
// did not finish.
QByteArray recoveredSql(const QString& from)
{
    const QString shell = QStandardPaths::findExecutable(QStringLiteral("sqlite3"));
    if (shell.isEmpty())
        return {};
    QProcess p;
    p.start(shell, {QStringLiteral("-readonly"), QFileInfo(from).absoluteFilePath(), QStringLiteral(".recover")});
    // A ledger of a million lines recovers in seconds; a shell that takes
    // minutes is stuck.
    if (!p.waitForFinished(120000) || p.exitStatus() != QProcess::NormalExit) {
        p.kill();
        return {};
    }
    return p.readAllStandardOutput();
}

// What ".recover" cannot do without the shell, done plainly: every table
// of the file is made again by its own statement and its rows copied as
// far as they read, forward up to the damage and backward from the end.
long copyRows(sqlite3* in, sqlite3* out)
{
    // A schema entry whose pages are gone must not stop the tables that
    // are still whole from being read.
    sqlite3_exec(in, "PRAGMA writable_schema=ON", nullptr, nullptr, nullptr);
    int rc = SQLITE_OK;
    QStringList creates = column0(in, "SELECT sql FROM sqlite_master WHERE type='table' AND sql IS NOT NULL", rc);
    QStringList names = column0(in, "SELECT name FROM sqlite_master WHERE type='table' AND sql IS NOT NULL", rc);
    long rows = 0;
    for (qsizetype t = 0; t < names.size() && t < creates.size(); ++t) {
        if (names[t].startsWith(QLatin1String("sqlite_")))
            continue;
        if (sqlite3_exec(out, creates[t].toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
            continue;
        const QString quoted = QLatin1Char('"') + QString(names[t]).replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
        for (const char* order : {"ASC", "DESC"}) {
            sqlite3_stmt* rd = nullptr;
            if (sqlite3_prepare_v2(in, (QStringLiteral("SELECT * FROM %1 ORDER BY rowid %2").arg(quoted, QLatin1String(order))).toUtf8().constData(),
                                   -1, &rd, nullptr) != SQLITE_OK) {
                sqlite3_finalize(rd);
                continue;
            }
            const int n = sqlite3_column_count(rd);
            QString marks;
            for (int c = 0; c < n; ++c)
                marks += c ? QStringLiteral(",?") : QStringLiteral("?");
            sqlite3_stmt* wr = nullptr;
            sqlite3_prepare_v2(out, QStringLiteral("INSERT OR IGNORE INTO %1 VALUES (%2)").arg(quoted, marks).toUtf8().constData(), -1,
                               &wr, nullptr);
            while (wr && sqlite3_step(rd) == SQLITE_ROW) {
                for (int c = 0; c < n; ++c)
                    sqlite3_bind_value(wr, c + 1, sqlite3_column_value(rd, c));
                if (sqlite3_step(wr) == SQLITE_DONE && sqlite3_changes(out) > 0)
                    ++rows;
                sqlite3_reset(wr);
            }
            sqlite3_finalize(wr);
            sqlite3_finalize(rd);
        }
    }
    return rows;
}

long countRows(sqlite3* db)
{
    int rc = SQLITE_OK;
    long rows = 0;
    for (const QString& t : column0(db, "SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite_%'", rc)) {
        const QString q = QStringLiteral("SELECT count(*) FROM \"%1\"").arg(QString(t).replace(QLatin1Char('"'), QLatin1String("\"\"")));
        rows += column0(db, q.toUtf8().constData(), rc).value(0).toLong();
    }
    return rows;
}

} // namespace

SalvageResult salvage(const QString& from, const QString& to)
{
    SalvageResult r;
    if (QFileInfo::exists(to)) {
        r.why = QStringLiteral("exists: ") + to;
        return r;
    }
    const QString part = to + QStringLiteral(".part");
    QFile::remove(part);
    sqlite3* raw = nullptr;
    if (sqlite3_open_v2(QFile::encodeName(part).constData(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK) {
        r.why = raw ? QString::fromUtf8(sqlite3_errmsg(raw)) : QStringLiteral("out of memory");
        sqlite3_close_v2(raw);
        return r;
    }
    Db out(raw);
    const QByteArray sql = recoveredSql(from);
    if (!sql.isEmpty() && sqlite3_exec(out.get(), sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK) {
        // The shell keeps pages it could not place in a table of its own.
        sqlite3_exec(out.get(), "DROP TABLE IF EXISTS lost_and_found", nullptr, nullptr, nullptr);
        r.rows = countRows(out.get());
    }
    if (r.rows <= 0) {
        // The shell is missing, or could not read the schema: row by row.
        out.reset();
        QFile::remove(part);
        sqlite3* again = nullptr;
        sqlite3_open_v2(QFile::encodeName(part).constData(), &again, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
        out.reset(again);
        QString why;
        Db in = openAsItStands(from, why);
        if (!in || !out) {
            r.why = why;
            out.reset();
            QFile::remove(part);
            return r;
        }
        sqlite3_exec(out.get(), "BEGIN", nullptr, nullptr, nullptr);
        r.rows = copyRows(in.get(), out.get());
        sqlite3_exec(out.get(), "COMMIT", nullptr, nullptr, nullptr);
    }
    out.reset();
    if (r.rows <= 0 || !QFile::rename(part, to)) {
        QFile::remove(part);
        r.why = r.rows <= 0 ? QStringLiteral("nothing could be read") : QStringLiteral("cannot rename to ") + to;
        r.rows = -1;
    }
    return r;
}

} // namespace pelkor::store
