// Connection: one open data file (or parameter, feed or template database)
// speaking the dialect the system's statements are written in.
//
// open() opens an SQLite file in WAL mode with a busy timeout, so several
// processes can work on one file; committed writes are seen by the others.
// Every commit is checkpointed into the file at once, so the file alone
// holds every committed write: a copy of it taken between two writes is
// whole.
// execute() translates one statement (see Dialect.h), runs it, and returns
// its rows. Statements that the dialect turns into several SQLite steps
// (SELECT INTO, IN "<file>") run inside one transaction: they happen whole
// or not at all. Failures throw StoreError naming the statement.
//
// Not thread-safe: one connection per thread, as the program has one thread.
#pragma once

#include "seams/store/Recordset.h"
#include "seams/store/StoreError.h"

#include <QString>
#include <memory>

struct sqlite3;

namespace pelkor::store {

// What a connection does while another process holds its file. The engine
// waits, telling waiting() about every quarter of a second how long it has
// waited (so a window can say so); after patienceMs() retry() decides
// whether to wait that long again or to give up, in which case the
// statement fails with StoreError(Busy) having changed nothing. done() ends
// a wait that waiting() was told of, whichever way it ended.
class BusyPolicy {
public:
    virtual ~BusyPolicy() = default;
    virtual void waiting(const QString& file, int waitedMs) = 0;
    virtual bool retry(const QString& file) = 0;
    virtual void done(const QString& file) = 0;
    virtual int patienceMs() const { return 3000; }
};

class Connection {
public:
    enum class OpenMode { ReadWrite, ReadWriteCreate, ReadOnly };

    Connection();
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    Connection(Connection&&) noexcept;
    Connection& operator=(Connection&&) noexcept;

    // Opens path. ReadWrite (the default) refuses a file that does not exist
    // and a file that is not a database: both throw StoreError(Open) naming
    // the path. Opening an open connection closes it first.
    void open(const QString& path, OpenMode mode = OpenMode::ReadWrite);
    void close();
    bool isOpen() const;
    const QString& path() const;

    // Runs one statement of the dialect. Throws StoreError on failure.
    Recordset execute(const QString& sql);
    // Runs plain SQLite text (several statements allowed) without
    // translation: for schema scripts and test fixtures that must write what
    // the dialect refuses (damaged rows). Throws StoreError on failure.
    void executeRaw(const QString& sqliteScript);

    // Explicit transactions for operations of several statements.
    void begin();
    void commit();
    void rollback();

    // The declared type of a column, upper case ("DOUBLE", "DATE", ...), or
    // empty when the table or column does not exist. Case-insensitive.
    QString columnType(const QString& table, const QString& column);
    bool tableExists(const QString& table);

    // A number that changes whenever another connection, of this process
    // or another, commits a change to the file, and stays while none does
    // (this connection's own writes leave it). -1 while closed, or when the
    // file cannot be read at once (a writer holds it): ask again later.
    long long dataVersion();

    sqlite3* handle() const;
    // The key the last INSERT on this connection gave its row (another
    // connection's inserts do not change it); 0 before any.
    long long lastInsertId() const;

    // The policy for a file another process holds; null (the default): wait
    // five seconds, then fail with StoreError(Busy). It stays through
    // close() and open(). Not owned.
    void setBusyPolicy(BusyPolicy* policy);

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

// Begins on construction, rolls back on destruction unless committed.
class Transaction {
public:
    explicit Transaction(Connection& c) : c_(c) { c_.begin(); }
    ~Transaction() { if (!done_) { try { c_.rollback(); } catch (...) {} } }
    void commit() { c_.commit(); done_ = true; }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
private:
    Connection& c_;
    bool done_ = false;
};

} // namespace pelkor::store
