#include "seams/store/Connection.h"

#include "seams/store/Dialect.h"
#include "seams/store/Engine.h"
#include "seams/store/JetFunctions.h"
#include "seams/store/TextForms.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QFileInfo>
#include <QHash>
#include <sqlite3.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <type_traits>

namespace pelkor::store {

using namespace engine;

namespace {

// Another process (a new-line instance, a second window) may hold the file
// in a short write transaction; waiting up to five seconds lets such a
// writer finish instead of failing at once, while a file that stays locked
// still surfaces as an error rather than a hang.
constexpr int busyTimeoutMs = 5000;

// Binds each quoted text assigned to a column, converted by the column's
// declared type as the old engine converted it.
void bindAssigned(sqlite3* db, SchemaCache& schema, sqlite3_stmt* st, const Translation& tr, const QString& statement)
{
    if (tr.assigned.empty())
        return;
    // The main file's columns are known between statements; an attached
    // file's are read for the statement.
    std::vector<ColumnInfo> read;
    const std::vector<ColumnInfo>* known = nullptr;
    if (tr.attachFile.isEmpty()) {
        schema.refresh(db, statement);
        known = schema.columns(tr.target);
    }
    if (!known) {
        read = tableColumns(db, tr.attachFile.isEmpty() ? QStringLiteral("main") : QString::fromLatin1(attachedSchema),
                            tr.target, statement);
        known = &read;
    }
    const std::vector<ColumnInfo>& cols = *known;
    for (size_t i = 0; i < tr.assigned.size(); ++i) {
        const Translation::Assigned& a = tr.assigned[i];
        const int slot = int(i) + 1;
        QString type;
        QString column = a.column;
        if (a.position >= 0) {
            if (size_t(a.position) < cols.size()) {
                type = cols[size_t(a.position)].type;
                column = cols[size_t(a.position)].name;
            }
        } else {
            for (const ColumnInfo& c : cols)
                if (c.name.compare(a.column, Qt::CaseInsensitive) == 0)
                    type = c.type;
        }
        const ColumnClass cls = classify(type);
        auto refuse = [&](const char* what) {
            throw StoreError(StoreError::Kind::Conversion,
                             QStringLiteral("Data type mismatch: '%1' is no %2 for column %3")
                                 .arg(a.text, QLatin1String(what), column),
                             statement);
        };
        switch (cls) {
        case ColumnClass::Whole:
        case ColumnClass::Number: {
            double v = 0;
            if (!text::parseNumber(a.text, v))
                refuse("number");
            if (cls == ColumnClass::Whole) {
                const double r = std::nearbyint(v);
                if (!(std::fabs(r) < 9.2e18))
                    refuse("whole number in range");
                sqlite3_bind_int64(st, slot, sqlite3_int64(r));
            } else {
                sqlite3_bind_double(st, slot, v);
            }
            break;
        }
        case ColumnClass::Date: {
            QDate d;
            if (!text::parseDate(a.text, d))
                refuse("date");
            const QByteArray iso = text::isoDate(d).toUtf8();
            sqlite3_bind_text(st, slot, iso.constData(), int(iso.size()), SQLITE_TRANSIENT);
            break;
        }
        case ColumnClass::Text:
        case ColumnClass::Untyped: {
            const QByteArray utf8 = a.text.toUtf8();
            sqlite3_bind_text(st, slot, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
            break;
        }
        }
    }
    (void)db;
}

// Repeated long texts of a column (details, colour words) share one
// string: a small two-way cache per column, keyed by the bytes. Texts short
// enough to live inside a Value need none.
class TextCache {
public:
    Value get(const char* p, int n)
    {
        if (n > maxKey)
            return Value::utf8(p, n);
        const std::uint64_t h = hash(p, n);
        Entry* set = slots_ + 2 * (h & (sets - 1));
        for (int w = 0; w < 2; ++w) {
            Entry& e = set[w];
            if (e.hash == h && e.n == n && std::memcmp(e.key, p, size_t(n)) == 0) {
                e.used = ++clock_;
                return e.value;
            }
        }
        Entry& e = set[0].used <= set[1].used ? set[0] : set[1];
        e.hash = h;
        e.n = n;
        e.used = ++clock_;
        std::memcpy(e.key, p, size_t(n));
        e.value = Value::utf8(p, n);
        return e.value;
    }

private:
    // Long enough for a detail of some forty Hebrew letters.
    static constexpr int maxKey = 96;
    static constexpr std::uint64_t sets = 128;

    // n > 14 here (shorter texts are inline), so the first and the last
    // eight bytes are there to read; they tell most details apart, and the
    // full compare above catches the rest.
    static std::uint64_t hash(const char* p, int n)
    {
        std::uint64_t a, b;
        std::memcpy(&a, p, 8);
        std::memcpy(&b, p + n - 8, 8);
        std::uint64_t h = (a ^ (b * 0x9E3779B97F4A7C15ull) ^ std::uint64_t(n)) * 0xFF51AFD7ED558CCDull;
        return h ^ (h >> 29);
    }

    struct Entry {
        std::uint64_t hash = 0;
        std::uint64_t used = 0;
        int n = -1;
        Value value;
        char key[maxKey];
    };
    Entry slots_[2 * sets];
    std::uint64_t clock_ = 0;
};

enum class CellKind { Plain, Date, Expression };

// Reads every row of a stepped statement into a Recordset.
Recordset collect(sqlite3* db, sqlite3_stmt* st, const QString& statement)
{
    const int n = sqlite3_column_count(st);
    if (n == 0) {
        int rc;
        while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
        }
        if (rc != SQLITE_DONE)
            fail(StoreError::Kind::Statement, db, statement);
        return Recordset::affected(long(sqlite3_changes(db)));
    }

    QStringList names;
    std::vector<CellKind> kinds(size_t(n), CellKind::Plain);
    for (int c = 0; c < n; ++c) {
        names << QString::fromUtf8(sqlite3_column_name(st, c));
        const char* decl = sqlite3_column_decltype(st, c);
        if (!decl)
            kinds[size_t(c)] = CellKind::Expression;
        else if (classify(QString::fromUtf8(decl)) == ColumnClass::Date)
            kinds[size_t(c)] = CellKind::Date;
    }
    // A name given twice (a join's key on both sides) is held as
    // "table.column" so that each can be asked for.
    for (int c = 0; c < n; ++c) {
        if (names.count(names[c]) > 1 || [&] {
                for (int o = 0; o < n; ++o)
                    if (o != c && names[o].compare(names[c], Qt::CaseInsensitive) == 0)
                        return true;
                return false;
            }()) {
            if (const char* table = sqlite3_column_table_name(st, c))
                names[c] = QString::fromUtf8(table) + QLatin1Char('.') + names[c];
        }
    }

    // Caches are made for the columns that turn out to hold long texts.
    std::vector<std::unique_ptr<TextCache>> caches(static_cast<size_t>(n));
    auto rows = std::make_shared<Rows>(n);
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
        Value* row = rows->append();
        for (int c = 0; c < n; ++c) {
            switch (sqlite3_column_type(st, c)) {
            case SQLITE_NULL:
                break;
            case SQLITE_INTEGER:
                row[c] = Value::integer(sqlite3_column_int64(st, c));
                break;
            case SQLITE_FLOAT:
                row[c] = Value::real(sqlite3_column_double(st, c));
                break;
            case SQLITE_TEXT: {
                const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st, c));
                const int len = sqlite3_column_bytes(st, c);
                const CellKind kind = kinds[size_t(c)];
                int y, m, d;
                // A date column's stored form is a date; anything else there
                // is a damaged row and stays text. A computed column (min of
                // a date) is a date when it has exactly the stored form.
                if (kind != CellKind::Plain && (kind == CellKind::Date || len == 10)
                    && text::parseIsoDate(p, p + len, y, m, d)) {
                    row[c] = Value::julianDay(text::julianDay(y, m, d));
                } else if (len <= Value::inlineMax) {
                    // Short texts live inside the Value: no cache is worth it.
                    row[c] = Value::utf8(p, len);
                } else {
                    std::unique_ptr<TextCache>& cache = caches[size_t(c)];
                    if (!cache)
                        cache = std::make_unique<TextCache>();
                    row[c] = cache->get(p, len);
                }
                break;
            }
            default: {
                const auto* p = static_cast<const char*>(sqlite3_column_blob(st, c));
                row[c] = Value::utf8(p, sqlite3_column_bytes(st, c));
                break;
            }
            }
        }
    }
    if (rc != SQLITE_DONE)
        fail(StoreError::Kind::Statement, db, statement);
    return Recordset(std::move(names), std::move(rows), 0);
}

// IN "<file>": the file is attached for one statement and detached after.
class Attachment {
public:
    Attachment(sqlite3* db, const QString& file, const QString& statement) : db_(db)
    {
        if (file.isEmpty())
            return;
        if (!QFileInfo(file).isFile())
            throw StoreError(StoreError::Kind::Open, QStringLiteral("Could not find file '%1'").arg(file), statement);
        Stmt st(db, QStringLiteral("ATTACH DATABASE ?1 AS ") + QLatin1String(attachedSchema), statement);
        const QByteArray path = file.toUtf8();
        sqlite3_bind_text(st, 1, path.constData(), int(path.size()), SQLITE_STATIC);
        if (sqlite3_step(st) != SQLITE_DONE)
            fail(StoreError::Kind::Statement, db, statement);
        attached_ = true;
    }
    ~Attachment()
    {
        if (attached_)
            sqlite3_exec(db_, (QByteArray("DETACH DATABASE ") + attachedSchema).constData(), nullptr, nullptr, nullptr);
    }
    Attachment(const Attachment&) = delete;
    Attachment& operator=(const Attachment&) = delete;

private:
    sqlite3* db_;
    bool attached_ = false;
};

// A savepoint: a transaction of its own, or a nested one inside begin().
class Savepoint {
public:
    Savepoint(sqlite3* db, const QString& statement) : db_(db) { run(db, "SAVEPOINT pk_step", statement); }
    ~Savepoint()
    {
        if (!done_) {
            sqlite3_exec(db_, "ROLLBACK TO pk_step", nullptr, nullptr, nullptr);
            sqlite3_exec(db_, "RELEASE pk_step", nullptr, nullptr, nullptr);
        }
    }
    void release(const QString& statement)
    {
        run(db_, "RELEASE pk_step", statement);
        done_ = true;
    }
    Savepoint(const Savepoint&) = delete;
    Savepoint& operator=(const Savepoint&) = delete;

private:
    sqlite3* db_;
    bool done_ = false;
};

bool isWholeType(const char* decl)
{
    return decl && classify(QString::fromUtf8(decl)) == ColumnClass::Whole;
}

// SELECT cols INTO t FROM ...: t gets the source's columns with their
// declared types; a column that is the integer key of its table stays the
// key of the copy, so inserts into the copy number themselves. A derived
// source (a UNION of several files' lines) may repeat ids and gets no key.
long selectInto(sqlite3* db, const Translation& tr, const QString& statement)
{
    const QString schema = tr.attachFile.isEmpty() ? QStringLiteral("main") : QString::fromLatin1(attachedSchema);
    const QString target = quoteName(schema) + QLatin1Char('.') + quoteName(tr.target);
    QString create;
    {
        Stmt src(db, tr.sql, statement);
        const int n = sqlite3_column_count(src);
        QStringList defs;
        QStringList used;
        bool keyTaken = false;
        for (int c = 0; c < n; ++c) {
            QString name = QString::fromUtf8(sqlite3_column_name(src, c));
            const QString base = name;
            for (int k = 1; used.contains(name, Qt::CaseInsensitive); ++k)
                name = base + QString::number(k);
            used << name;
            const char* decl = sqlite3_column_decltype(src, c);
            QString def = quoteName(name);
            if (decl && *decl)
                def += QLatin1Char(' ') + QString::fromUtf8(decl);
            const char* originDb = sqlite3_column_database_name(src, c);
            const char* originTable = sqlite3_column_table_name(src, c);
            const char* originColumn = sqlite3_column_origin_name(src, c);
            int primary = 0;
            if (!keyTaken && !tr.derivedSource && originDb && originTable && originColumn && isWholeType(decl)) {
                int notNull = 0, autoinc = 0;
                sqlite3_table_column_metadata(db, originDb, originTable, originColumn, nullptr, nullptr, &notNull,
                                              &primary, &autoinc);
                // Only a lone integer key is the rowid; a key of several
                // columns is not copied.
                if (primary) {
                    int keys = 0;
                    Stmt pk(db, QStringLiteral("SELECT count(*) FROM pragma_table_info(?1, ?2) WHERE pk > 0"),
                            statement);
                    sqlite3_bind_text(pk, 1, originTable, -1, SQLITE_STATIC);
                    sqlite3_bind_text(pk, 2, originDb, -1, SQLITE_STATIC);
                    if (sqlite3_step(pk) == SQLITE_ROW)
                        keys = sqlite3_column_int(pk, 0);
                    primary = keys == 1;
                }
            }
            if (primary) {
                def = quoteName(name) + QStringLiteral(" INTEGER PRIMARY KEY");
                keyTaken = true;
            }
            defs << def;
        }
        if (n == 0)
            throw StoreError(StoreError::Kind::Statement, QStringLiteral("SELECT INTO needs columns"), statement);
        create = QStringLiteral("CREATE TABLE ") + target + QStringLiteral(" (") + defs.join(QStringLiteral(", "))
            + QLatin1Char(')');
    }
    Savepoint sp(db, statement);
    run(db, create.toUtf8().constData(), statement);
    Stmt copy(db, QStringLiteral("INSERT INTO ") + target + QLatin1Char(' ') + tr.sql, statement);
    if (sqlite3_step(copy) != SQLITE_DONE)
        fail(StoreError::Kind::Statement, db, statement);
    const long copied = long(sqlite3_changes(db));
    sp.release(statement);
    return copied;
}

} // namespace

struct Connection::Impl {
    sqlite3* db = nullptr;
    QString path;
    OpenMode mode = OpenMode::ReadWrite;
    SchemaCache schema;
    BusyPolicy* busyPolicy = nullptr;
    QElapsedTimer waited;      // since the engine first met the file held
    qint64 lastNotice = 0;
    bool noticed = false;      // waiting() was told of this wait

    // The engine's busy handler: sleep a little and try again, telling the
    // policy how long the wait has lasted, until its patience is spent.
    static int onBusy(void* self, int count)
    {
        auto* d = static_cast<Impl*>(self);
        if (count == 0) {
            d->waited.start();
            d->lastNotice = 0;
        }
        const qint64 ms = d->waited.elapsed();
        if (ms >= (d->busyPolicy ? d->busyPolicy->patienceMs() : busyTimeoutMs))
            return 0;
        // Notices a quarter of a second apart: often enough to look alive,
        // seldom enough not to cost the wait anything.
        if (d->busyPolicy && ms - d->lastNotice >= 250) {
            d->lastNotice = ms;
            d->noticed = true;
            d->busyPolicy->waiting(d->path, int(ms));
        }
        // Short sleeps: most writers of a ledger finish in a few
        // milliseconds. Their length varies, so a waiter never falls into
        // step with a writer that keeps coming back and misses every gap.
        sqlite3_sleep(1 + int(QRandomGenerator::global()->bounded(count < 10 ? 4 : 12)));
        return 1;
    }

    // Runs fn, and again each time it fails because the file is held and
    // the policy says to wait once more. A statement that failed busy
    // changed nothing, so running it again is safe.
    template <class F>
    auto withBusyRetry(F&& fn) -> decltype(fn())
    {
        for (;;) {
            try {
                if constexpr (std::is_void_v<decltype(fn())>) {
                    fn();
                    endWait();
                    return;
                } else {
                    auto r = fn();
                    endWait();
                    return r;
                }
            } catch (const StoreError& e) {
                if (e.kind() != StoreError::Kind::Busy || !busyPolicy) {
                    endWait();
                    throw;
                }
                noticed = true;
                if (!busyPolicy->retry(path)) {
                    endWait();
                    throw;
                }
            }
        }
    }

    void endWait()
    {
        if (noticed && busyPolicy)
            busyPolicy->done(path);
        noticed = false;
    }
};

Connection::Connection() : d(std::make_unique<Impl>()) {}
Connection::~Connection() { close(); }
Connection::Connection(Connection&&) noexcept = default;
Connection& Connection::operator=(Connection&& o) noexcept
{
    if (this != &o) {
        close();
        d = std::move(o.d);
        o.d = std::make_unique<Impl>();
    }
    return *this;
}

void Connection::open(const QString& path, OpenMode mode)
{
    close();
    const QFileInfo info(path);
    if (mode != OpenMode::ReadWriteCreate && !info.isFile())
        throw StoreError(StoreError::Kind::Open, QStringLiteral("Could not find file '%1'").arg(path), path);
    if (mode == OpenMode::ReadWrite && !info.isWritable())
        throw StoreError(StoreError::Kind::Open,
                         QStringLiteral("The file '%1' is read-only; it cannot be opened for writing").arg(path), path);

    int flags = SQLITE_OPEN_NOMUTEX;
    switch (mode) {
    case OpenMode::ReadWrite: flags |= SQLITE_OPEN_READWRITE; break;
    case OpenMode::ReadWriteCreate: flags |= SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE; break;
    case OpenMode::ReadOnly: flags |= SQLITE_OPEN_READONLY; break;
    }
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(path.toUtf8().constData(), &db, flags, nullptr);
    auto refuse = [&](const QString& why) {
        sqlite3_close_v2(db);
        throw StoreError(StoreError::Kind::Open, why, path);
    };
    auto refuseBusy = [&] {
        sqlite3_close_v2(db);
        throw StoreError(StoreError::Kind::Busy, QStringLiteral("The file '%1' is locked by another user").arg(path), path);
    };
    if (rc != SQLITE_OK)
        refuse(QStringLiteral("Cannot open '%1': %2").arg(path, engineMessage(db)));
    sqlite3_extended_result_codes(db, 1);
    sqlite3_busy_handler(db, &Impl::onBusy, d.get());
    if (mode != OpenMode::ReadOnly && sqlite3_db_readonly(db, "main") == 1)
        refuse(QStringLiteral("The file '%1' is read-only; it cannot be opened for writing").arg(path));

    // A cheap read of the schema tells a database from any other file.
    {
        sqlite3_stmt* st = nullptr;
        int prc = sqlite3_prepare_v2(db, "SELECT count(*) FROM sqlite_master", -1, &st, nullptr);
        if (prc == SQLITE_OK)
            prc = sqlite3_step(st);
        sqlite3_finalize(st);
        if ((prc & 0xff) == SQLITE_NOTADB)
            refuse(QStringLiteral("The file '%1' is not a database").arg(path));
        if (isBusyCode(prc))
            refuseBusy();
        if (prc != SQLITE_ROW)
            refuse(QStringLiteral("Cannot read '%1': %2").arg(path, engineMessage(db)));
    }
    if (mode != OpenMode::ReadOnly) {
        // Several processes work on one file: readers never wait for a
        // writer in write-ahead-log mode. Each commit is copied back into
        // the file at once (a checkpoint as soon as the log holds a page),
        // so the file alone holds every committed write and a copy taken
        // between two edits is whole; the log is removed at the last close.
        sqlite3_stmt* st = nullptr;
        int prc = sqlite3_prepare_v2(db, "PRAGMA journal_mode=WAL", -1, &st, nullptr);
        if (prc == SQLITE_OK)
            prc = sqlite3_step(st);
        sqlite3_finalize(st);
        if (isBusyCode(prc))
            refuseBusy();
        if (prc != SQLITE_ROW)
            refuse(QStringLiteral("Cannot open '%1' for writing: %2").arg(path, engineMessage(db)));
        sqlite3_wal_autocheckpoint(db, 1);
    }
    if (registerJetFunctions(db) != SQLITE_OK)
        refuse(QStringLiteral("Cannot prepare '%1': %2").arg(path, engineMessage(db)));
    d->db = db;
    d->path = path;
    d->mode = mode;
    // Another file may have the same schema version.
    d->schema.forget();
}

void Connection::close()
{
    if (d && d->db) {
        d->schema.forget();
        sqlite3_close_v2(d->db);
        d->db = nullptr;
    }
}

void Connection::setBusyPolicy(BusyPolicy* policy) { d->busyPolicy = policy; }

bool Connection::isOpen() const { return d && d->db; }

const QString& Connection::path() const { return d->path; }

sqlite3* Connection::handle() const { return d ? d->db : nullptr; }

long long Connection::dataVersion()
{
    if (!isOpen())
        return -1;
    // Asked from an idle window's timer: never wait for a writer.
    sqlite3_busy_handler(d->db, nullptr, nullptr);
    sqlite3_stmt* st = nullptr;
    long long v = -1;
    if (sqlite3_prepare_v2(d->db, "PRAGMA data_version", -1, &st, nullptr) == SQLITE_OK && sqlite3_step(st) == SQLITE_ROW)
        v = sqlite3_column_int64(st, 0);
    sqlite3_finalize(st);
    sqlite3_busy_handler(d->db, &Impl::onBusy, d.get());
    return v;
}

long long Connection::lastInsertId() const { return d && d->db ? sqlite3_last_insert_rowid(d->db) : 0; }

Recordset Connection::execute(const QString& sql)
{
    if (!isOpen())
        throw StoreError(StoreError::Kind::Statement, QStringLiteral("The connection is closed"), sql);
    bool schemaRead = false;
    const Translation tr = translate(sql, [&](const QString& table, const QString& column) {
        if (!schemaRead) {
            d->schema.refresh(d->db, sql);
            schemaRead = true;
        }
        return d->schema.plain(table, column);
    });
    return d->withBusyRetry([&] {
        Attachment attached(d->db, tr.attachFile, sql);
        if (tr.form == Translation::Form::SelectInto)
            return Recordset::affected(selectInto(d->db, tr, sql));
        Stmt st(d->db, tr.sql, sql);
        bindAssigned(d->db, d->schema, st, tr, sql);
        return collect(d->db, st, sql);
    });
}

void Connection::executeRaw(const QString& sqliteScript)
{
    if (!isOpen())
        throw StoreError(StoreError::Kind::Statement, QStringLiteral("The connection is closed"), sqliteScript);
    // A script is not run again on a busy file: its first statements may
    // have run already.
    run(d->db, sqliteScript.toUtf8().constData(), sqliteScript);
}

void Connection::begin()
{
    if (!isOpen())
        throw StoreError(StoreError::Kind::Statement, QStringLiteral("The connection is closed"), QStringLiteral("BEGIN"));
    // IMMEDIATE takes the write lock at once, so two processes never both
    // read and then both wait to write.
    d->withBusyRetry([&] { run(d->db, d->mode == OpenMode::ReadOnly ? "BEGIN" : "BEGIN IMMEDIATE", QStringLiteral("BEGIN")); });
}

void Connection::commit()
{
    if (!isOpen())
        throw StoreError(StoreError::Kind::Statement, QStringLiteral("The connection is closed"), QStringLiteral("COMMIT"));
    d->withBusyRetry([&] { run(d->db, "COMMIT", QStringLiteral("COMMIT")); });
}

void Connection::rollback()
{
    if (!isOpen())
        throw StoreError(StoreError::Kind::Statement, QStringLiteral("The connection is closed"), QStringLiteral("ROLLBACK"));
    run(d->db, "ROLLBACK", QStringLiteral("ROLLBACK"));
}

QString Connection::columnType(const QString& table, const QString& column)
{
    if (!isOpen())
        return QString();
    for (const ColumnInfo& c : tableColumns(d->db, QStringLiteral("main"), table, table))
        if (c.name.compare(column, Qt::CaseInsensitive) == 0)
            return c.type;
    return QString();
}

bool Connection::tableExists(const QString& table)
{
    if (!isOpen())
        return false;
    Stmt st(d->db,
            QStringLiteral("SELECT 1 FROM sqlite_master WHERE type IN ('table','view') AND name = ?1 COLLATE NOCASE"),
            table);
    const QByteArray t = table.toUtf8();
    sqlite3_bind_text(st, 1, t.constData(), int(t.size()), SQLITE_STATIC);
    return sqlite3_step(st) == SQLITE_ROW;
}

} // namespace pelkor::store
