// Published: listing a box under this process's id, and finding another's.
#include "seams/bus/Published.h"

#include "seams/bus/MailboxId.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSaveFile>

#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace pelkor::bus {

namespace {

// "p<pid>.<name>": the leading letter keeps a listing apart from the boxes'
// own files, whose names are ids.
QString listingName(qint64 pid, const QString& name)
{
    return QStringLiteral("p%1.%2").arg(pid).arg(name);
}

bool goodName(const QString& name)
{
    static const QRegularExpression re(QStringLiteral("^[A-Za-z0-9]+$"));
    return re.match(name).hasMatch();
}

// Removes the listings of processes that no longer run.
void sweepDeadListings(const QString& dir)
{
    static const QRegularExpression re(QStringLiteral("^p([0-9]+)\\.[A-Za-z0-9]+$"));
    for (const QString& entry : QDir(dir).entryList(QDir::Files)) {
        const auto m = re.match(entry);
        if (!m.hasMatch())
            continue;
        const pid_t pid = pid_t(m.captured(1).toLongLong());
        if (pid > 0 && ::kill(pid, 0) != 0 && errno == ESRCH)
            QFile::remove(dir + QLatin1Char('/') + entry);
    }
}

} // namespace

Publication::Publication(const QString& name, quint32 id)
{
    if (id == 0) {
        error_ = QStringLiteral("the box does not listen");
        return;
    }
    if (!goodName(name)) {
        error_ = QStringLiteral("bad name: ") + name;
        return;
    }
    error_ = prepareMailboxDirectory();
    if (!error_.isEmpty())
        return;
    const QString dir = mailboxDirectory();
    sweepDeadListings(dir);
    const QString path = dir + QLatin1Char('/') + listingName(::getpid(), name);
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(idToText(id).toLatin1() + '\n') < 0 || !f.commit()) {
        error_ = QStringLiteral("cannot write %1: %2").arg(path, f.errorString());
        return;
    }
    path_ = path;
}

Publication::~Publication()
{
    if (!path_.isEmpty())
        QFile::remove(path_);
}

quint32 findPublished(qint64 pid, const QString& name)
{
    if (pid <= 0 || !goodName(name))
        return 0;
    QFile f(mailboxDirectory() + QLatin1Char('/') + listingName(pid, name));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    const QString text = QString::fromLatin1(f.read(64)).trimmed();
    if (text.size() != 8)
        return 0;
    return parseId(text).value_or(0);
}

} // namespace pelkor::bus
