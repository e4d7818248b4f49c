#include "transfer/MoveJournal.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QRandomGenerator>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <signal.h>
#endif

namespace pelkor::transfer {

namespace {

const char journalTable[] =
    "CREATE TABLE IF NOT EXISTS moveJournal (token TEXT NOT NULL, destPath TEXT NOT NULL, pid INTEGER, lineId INTEGER)";
const char markerTable[] = "CREATE TABLE IF NOT EXISTS movedLines (token TEXT PRIMARY KEY)";

QString quoted(const QString& s)
{
    QString q = s;
    q.replace(QLatin1Char('\''), QStringLiteral("''"));
    return QLatin1Char('\'') + q + QLatin1Char('\'');
}

} // namespace

// Whether the process that wrote a note still runs (never this one's own
// notes: a run finishes them itself).
bool writerLives(qint64 pid)
{
#ifdef Q_OS_UNIX
    if (pid <= 0 || pid == QCoreApplication::applicationPid())
        return false;
    return ::kill(pid_t(pid), 0) == 0 || errno == EPERM;
#else
    Q_UNUSED(pid);
    return false;
#endif
}

QString newMoveToken()
{
    return QStringLiteral("%1-%2-%3")
        .arg(QCoreApplication::applicationPid())
        .arg(QDateTime::currentMSecsSinceEpoch())
        .arg(QRandomGenerator::global()->generate64(), 16, 16, QLatin1Char('0'));
}

void writeMoveIntent(store::Connection& source, const QString& token, const QString& destPath,
                     const QStringList& idsToDelete)
{
    store::Transaction tx(source);
    source.executeRaw(QLatin1String(journalTable));
    const QString head = QStringLiteral("INSERT INTO moveJournal (token, destPath, pid, lineId) VALUES (%1, %2, %3, ")
                             .arg(quoted(token), quoted(destPath))
                             .arg(QCoreApplication::applicationPid());
    // One row without a line says the run exists even when it deletes nothing.
    source.executeRaw(head + QStringLiteral("NULL)"));
    for (const QString& id : idsToDelete)
        source.executeRaw(head + QString::number(id.toLongLong()) + QStringLiteral(")"));
    tx.commit();
}

void markMoveInTarget(store::Connection& target, const QString& token)
{
    target.executeRaw(QLatin1String(markerTable));
    target.executeRaw(QStringLiteral("INSERT OR IGNORE INTO movedLines (token) VALUES (%1)").arg(quoted(token)));
}

void completeMove(store::Connection& source, const QString& linesTable, const QString& token)
{
    store::Transaction tx(source);
    source.executeRaw(QStringLiteral("DELETE FROM \"%1\" WHERE id IN (SELECT lineId FROM moveJournal WHERE token = %2)")
                          .arg(linesTable, quoted(token)));
    source.executeRaw(QStringLiteral("DELETE FROM moveJournal WHERE token = %1").arg(quoted(token)));
    tx.commit();
}

PendingMoves finishPendingMoves(store::Connection& source, const QString& linesTable)
{
    PendingMoves done;
    if (!source.tableExists(QStringLiteral("moveJournal")))
        return done;
    auto rs = source.execute(QStringLiteral("SELECT DISTINCT token, destPath, pid FROM moveJournal"));
    struct Run {
        QString token, dest;
        qint64 pid;
    };
    std::vector<Run> runs;
    for (; !rs.eof(); rs.moveNext())
        runs.push_back({rs.field(0).toString(), rs.field(1).toString(), qint64(rs.field(2).toDouble())});
    for (const Run& r : runs) {
        if (writerLives(r.pid)) {
            ++done.left;
            continue;
        }
        bool inserted = false;
        try {
            store::Connection target;
            target.open(r.dest, store::Connection::OpenMode::ReadOnly);
            if (target.tableExists(QStringLiteral("movedLines")))
                inserted = target.execute(QStringLiteral("SELECT token FROM movedLines WHERE token = %1").arg(quoted(r.token)))
                               .recordCount() > 0;
        } catch (const store::StoreError&) {
            ++done.left;
            done.problems << r.dest;
            continue;
        }
        if (inserted) {
            completeMove(source, linesTable, r.token);
            ++done.finished;
        } else {
            store::Transaction tx(source);
            source.executeRaw(QStringLiteral("DELETE FROM moveJournal WHERE token = %1").arg(quoted(r.token)));
            tx.commit();
            ++done.undone;
        }
    }
    return done;
}

} // namespace pelkor::transfer
