// MailboxId: parsing and printing ids, and the private socket folder.
#include "seams/bus/MailboxId.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace pelkor::bus {

std::optional<quint32> parseId(const QString& text, IdForm form)
{
    const QString t = form == IdForm::Loose ? text.trimmed() : text;
    if (form == IdForm::Exact ? t.size() != 8 : (t.isEmpty() || t.size() > 8))
        return std::nullopt;
    quint32 v = 0;
    for (const QChar ch : t) {
        const char16_t c = ch.unicode();
        int digit;
        if (c >= u'0' && c <= u'9')
            digit = c - u'0';
        else if (c >= u'a' && c <= u'f')
            digit = c - u'a' + 10;
        else if (c >= u'A' && c <= u'F')
            digit = c - u'A' + 10;
        else
            return std::nullopt;
        v = (v << 4) | quint32(digit);
    }
    return v;
}

QString idToText(quint32 id)
{
    return QStringLiteral("%1").arg(id, 8, 16, QLatin1Char('0'));
}

QString mailboxDirectory()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty())
        return runtime + QStringLiteral("/pelkor");
    return QStringLiteral("/tmp/pelkor-%1").arg(uint(geteuid()));
}

QString socketPathFor(quint32 id)
{
    return mailboxDirectory() + QLatin1Char('/') + idToText(id);
}

QString prepareMailboxDirectory()
{
    const QString dir = mailboxDirectory();
    const QByteArray path = QFile::encodeName(dir);
    if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        return QStringLiteral("cannot create %1: %2").arg(dir, QString::fromLocal8Bit(std::strerror(errno)));
    // lstat, not stat: a symbolic link planted in /tmp under our folder's
    // name must not lead our sockets into someone else's folder.
    struct stat st {};
    if (::lstat(path.constData(), &st) != 0)
        return QStringLiteral("cannot read %1: %2").arg(dir, QString::fromLocal8Bit(std::strerror(errno)));
    if (!S_ISDIR(st.st_mode))
        return QStringLiteral("%1 is not a folder").arg(dir);
    if (st.st_uid != geteuid())
        return QStringLiteral("%1 belongs to another user").arg(dir);
    if ((st.st_mode & 077) != 0 && ::chmod(path.constData(), 0700) != 0)
        return QStringLiteral("cannot make %1 private: %2").arg(dir, QString::fromLocal8Bit(std::strerror(errno)));
    return QString();
}

} // namespace pelkor::bus
