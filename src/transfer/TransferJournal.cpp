#include "transfer/TransferJournal.h"

#include "transfer/MoveJournal.h"

#include <QCoreApplication>

#include <vector>

namespace pelkor::transfer {

namespace {

const char journalTable[] = "CREATE TABLE IF NOT EXISTS transferJournal "
                            "(token TEXT NOT NULL, secondPath TEXT NOT NULL, pid INTEGER, lineId INTEGER)";

QString quoted(const QString& s)
{
    QString q = s;
    q.replace(QLatin1Char('\''), QStringLiteral("''"));
    return QLatin1Char('\'') + q + QLatin1Char('\'');
}

// The first line and its note out, in one transaction.
void undoFirst(store::Connection& cn, const QString& linesTable, const QString& token)
{
    store::Transaction tx(cn);
    cn.executeRaw(QStringLiteral("DELETE FROM \"%1\" WHERE id IN (SELECT lineId FROM transferJournal WHERE token = %2)")
                      .arg(linesTable, quoted(token)));
    cn.executeRaw(QStringLiteral("DELETE FROM transferJournal WHERE token = %1").arg(quoted(token)));
    tx.commit();
}

void clearNote(store::Connection& cn, const QString& token)
{
    store::Transaction tx(cn);
    cn.executeRaw(QStringLiteral("DELETE FROM transferJournal WHERE token = %1").arg(quoted(token)));
    tx.commit();
}

} // namespace

PairWrite writeTransferPair(store::Connection& first, const QString& insertFirst,
                            const std::function<void(store::Connection&)>& openSecond, const QString& secondPath,
                            const QString& insertSecond)
{
    PairWrite w;
    const QString token = newMoveToken();
    // 1: the first line and the note.
    try {
        store::Transaction tx(first);
        first.executeRaw(QLatin1String(journalTable));
        first.execute(insertFirst);
        const long long id = first.lastInsertId();
        first.executeRaw(QStringLiteral("INSERT INTO transferJournal (token, secondPath, pid, lineId) VALUES (%1, %2, %3, %4)")
                             .arg(quoted(token), quoted(secondPath))
                             .arg(QCoreApplication::applicationPid())
                             .arg(id));
        tx.commit();
    } catch (const store::StoreError& e) {
        w.refused = 0;
        w.why = e.message();
        return w;
    }
    // 2: the second line and its marker.
    try {
        store::Connection own;
        openSecond(own);
        store::Transaction tx(own);
        own.execute(insertSecond);
        markMoveInTarget(own, token);
        tx.commit();
    } catch (const store::StoreError& e) {
        w.refused = 1;
        w.why = e.message();
        try {
            undoFirst(first, QStringLiteral("pelkor"), token);
            w.firstUndone = true;
        } catch (const store::StoreError& e2) {
            // The note stays: the next open of the first file takes the
            // line out, finding no marker in the second.
            w.why += QStringLiteral("; undo: ") + e2.message();
        }
        return w;
    }
    // 3: the note cleared. Should this fail, the next open finds the
    // marker and clears it then: both lines stand either way.
    try {
        clearNote(first, token);
    } catch (const store::StoreError& e) {
        w.why = e.message();
    }
    w.done = true;
    return w;
}

PendingTransfers finishPendingTransfers(store::Connection& cn, const QString& linesTable)
{
    PendingTransfers done;
    if (!cn.tableExists(QStringLiteral("transferJournal")))
        return done;
    struct Note {
        QString token, second;
        qint64 pid;
    };
    std::vector<Note> notes;
    for (auto rs = cn.execute(QStringLiteral("SELECT DISTINCT token, secondPath, pid FROM transferJournal")); !rs.eof();
         rs.moveNext())
        notes.push_back({rs.field(0).toString(), rs.field(1).toString(), qint64(rs.field(2).toDouble())});
    for (const Note& n : notes) {
        if (writerLives(n.pid)) {
            ++done.left;
            continue;
        }
        bool written = false;
        try {
            store::Connection second;
            second.open(n.second, store::Connection::OpenMode::ReadOnly);
            if (second.tableExists(QStringLiteral("movedLines")))
                written = second.execute(QStringLiteral("SELECT token FROM movedLines WHERE token = %1").arg(quoted(n.token)))
                              .recordCount()
                    > 0;
        } catch (const store::StoreError&) {
            ++done.left;
            done.problems << n.second;
            continue;
        }
        if (written) {
            clearNote(cn, n.token);
            ++done.kept;
        } else {
            undoFirst(cn, linesTable, n.token);
            ++done.undone;
        }
    }
    return done;
}

} // namespace pelkor::transfer
