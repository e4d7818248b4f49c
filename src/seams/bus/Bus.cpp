// Bus: the sender's side of a request.
#include "seams/bus/Bus.h"

#include "seams/bus/LocalBoxes.h"
#include "seams/bus/MailboxId.h"
#include "seams/bus/Wire.h"

#include <QDeadlineTimer>
#include <QFile>

#include <cerrno>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace pelkor::bus {

namespace {

// A connect that finds the box's backlog full is tried again this often.
constexpr int connectRetryMs = 10;

struct Socket {
    int fd = -1;
    ~Socket()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

SendResult connectTo(int fd, quint32 id, const QDeadlineTimer& deadline)
{
    const QByteArray path = QFile::encodeName(socketPathFor(id));
    sockaddr_un addr;
    std::memset(&addr, 0, sizeof addr);
    addr.sun_family = AF_UNIX;
    if (path.size() >= qsizetype(sizeof addr.sun_path))
        return SendResult::SystemError;
    std::memcpy(addr.sun_path, path.constData(), size_t(path.size()));

    for (;;) {
        if (::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0)
            return SendResult::Delivered;
        switch (errno) {
        case EINTR:
            continue;
        case ENOENT:
        case ECONNREFUSED:
        case ENOTDIR:
            return SendResult::NoSuchBox;
        case EAGAIN: // the box's backlog is full: it is alive but behind
            if (deadline.hasExpired())
                return SendResult::TimedOut;
            detail::waitServing(-1, 0, QDeadlineTimer(qMin<qint64>(connectRetryMs, deadline.remainingTime())));
            continue;
        case EINPROGRESS: {
            const short ev = detail::waitServing(fd, POLLOUT, deadline);
            if (ev == 0)
                return SendResult::TimedOut;
            int err = 0;
            socklen_t len = sizeof err;
            if (::getsockopt(fd, SOL_SOCKET, SO_ERROR, &err, &len) != 0 || err != 0)
                return err == ECONNREFUSED || err == ENOENT ? SendResult::NoSuchBox : SendResult::SystemError;
            return SendResult::Delivered;
        }
        default:
            return SendResult::SystemError;
        }
    }
}

// Writes all of bytes, serving our own boxes while the socket is full.
SendResult writeAll(int fd, const QByteArray& bytes, const QDeadlineTimer& deadline)
{
    switch (detail::writeAll(fd, bytes, deadline, true)) {
    case detail::Written::All: return SendResult::Delivered;
    case detail::Written::TimedOut: return SendResult::TimedOut;
    case detail::Written::Lost: break;
    }
    return SendResult::Lost;
}

// Reads exactly n bytes into out. Delivered, TimedOut or Lost (the box
// closed first).
SendResult readExactly(int fd, qsizetype n, QByteArray& out, const QDeadlineTimer& deadline)
{
    out.clear();
    out.reserve(n);
    char chunk[4096];
    while (out.size() < n) {
        const ssize_t got = ::recv(fd, chunk, size_t(qMin<qsizetype>(n - out.size(), sizeof chunk)), 0);
        if (got > 0) {
            out.append(chunk, got);
            continue;
        }
        if (got == 0)
            return SendResult::Lost;
        if (errno == EINTR)
            continue;
        if (errno != EAGAIN && errno != EWOULDBLOCK)
            return SendResult::Lost;
        if (detail::waitServing(fd, POLLIN, deadline) == 0)
            return SendResult::TimedOut;
    }
    return SendResult::Delivered;
}

// One request to box id, and its answer in *after when Delivered.
SendResult exchange(quint32 id, wire::Kind kind, const QString& text, int timeoutMs, QString* after)
{
    if (id == 0)
        return SendResult::Nobody;
    if (detail::deliverHere(id, kind, text, after))
        return SendResult::Delivered;

    const QByteArray request = wire::encodeRequest(kind, text);
    if (request.size() > wire::headerBytes + qsizetype(wire::maxTextBytes))
        return SendResult::Refused; // as the box would, without the trip

    Socket s;
    s.fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (s.fd < 0)
        return SendResult::SystemError;
    const QDeadlineTimer deadline(timeoutMs);
    SendResult r = connectTo(s.fd, id, deadline);
    if (r != SendResult::Delivered)
        return r;
    QByteArray bytes;
    if ((r = writeAll(s.fd, request, deadline)) != SendResult::Delivered) {
        // A box that refuses a header answers and closes without reading
        // the rest; its answer is still there to read.
        if (r == SendResult::Lost && readExactly(s.fd, 1, bytes, deadline) == SendResult::Delivered
            && bytes[0] == wire::refused)
            return SendResult::Refused;
        return r;
    }

    if ((r = readExactly(s.fd, 1, bytes, deadline)) != SendResult::Delivered)
        return r;
    if (bytes[0] == wire::received) {
        // The handler runs now; wait for it as long as it takes.
        if ((r = readExactly(s.fd, 1, bytes, QDeadlineTimer(QDeadlineTimer::Forever))) != SendResult::Delivered)
            return r;
    }
    // The rest of a reply follows its first byte at once.
    const QDeadlineTimer rest(timeoutMs);
    if (bytes[0] == wire::refused)
        return SendResult::Refused;
    if (bytes[0] != wire::done)
        return SendResult::Lost;
    if ((r = readExactly(s.fd, 4, bytes, rest)) != SendResult::Delivered)
        return r;
    const quint32 length = wire::readLength(bytes.constData());
    if (length > wire::maxTextBytes)
        return SendResult::Lost;
    if ((r = readExactly(s.fd, qsizetype(length), bytes, rest)) != SendResult::Delivered)
        return r;
    if (after)
        *after = QString::fromUtf8(bytes);
    return SendResult::Delivered;
}

} // namespace

QString describe(SendResult result)
{
    switch (result) {
    case SendResult::Delivered: return QStringLiteral("delivered");
    case SendResult::Nobody: return QStringLiteral("nobody to send to");
    case SendResult::MalformedId: return QStringLiteral("malformed mailbox id");
    case SendResult::NoSuchBox: return QStringLiteral("no such mailbox");
    case SendResult::TimedOut: return QStringLiteral("mailbox did not answer in time");
    case SendResult::Refused: return QStringLiteral("mailbox refused the request");
    case SendResult::Lost: return QStringLiteral("mailbox closed the connection");
    case SendResult::SystemError: return QStringLiteral("no socket for the mailbox");
    }
    return QString();
}

SendResult send(quint32 id, const QString& text, int timeoutMs)
{
    return exchange(id, wire::Kind::Text, text, timeoutMs, nullptr);
}

SendResult send(const QString& id, const QString& text, int timeoutMs)
{
    const auto parsed = parseId(id);
    return parsed ? send(*parsed, text, timeoutMs) : SendResult::MalformedId;
}

SendResult sendFocus(quint32 id, int timeoutMs)
{
    return exchange(id, wire::Kind::Focus, QString(), timeoutMs, nullptr);
}

SendResult sendToHost(quint32 box1, quint32 box2, const QString& text, int timeoutMs)
{
    if (box1 == 0)
        return SendResult::Nobody;
    SendResult r = sendFocus(box1, timeoutMs);
    if (r == SendResult::Delivered)
        r = send(box1, text, timeoutMs);
    if (r == SendResult::Delivered && box2 != 0)
        r = sendFocus(box2, timeoutMs);
    return r;
}

Reading get(quint32 id, int timeoutMs)
{
    Reading reading;
    QString text;
    reading.result = exchange(id, wire::Kind::Get, QString(), timeoutMs, &text);
    if (reading.result == SendResult::Delivered)
        reading.text = text;
    return reading;
}

} // namespace pelkor::bus
