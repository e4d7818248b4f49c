// Mailbox: claiming an id, listening on its socket, serving requests.
//
// Not here: the sender's side (Bus.cpp) and the bytes (Wire.cpp).
#include "seams/bus/Mailbox.h"

#include "seams/bus/LocalBoxes.h"
#include "seams/bus/MailboxId.h"
#include "seams/bus/Wire.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QRandomGenerator>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace pelkor::bus::detail {

namespace {

// A sender writes its whole request right after connecting, so two seconds
// from accept to the last byte is generous on a loaded machine and still
// short enough that a client that says nothing is soon forgotten.
constexpr int frameTimeoutMs = 2000;
// Replies are a few bytes to a sender that is reading; one that does not
// read within a second has given up.
constexpr int replyTimeoutMs = 1000;
// Among 2^32 ids a handful of collisions in a row is already unlikely;
// sixty-four means something else is wrong (say, a folder we cannot write).
constexpr int idDraws = 64;
constexpr int listenBacklog = 16;
// How often a sender that waits looks at its own boxes' silent clients.
constexpr int servePollMs = 100;

QString systemError(const QString& what)
{
    return what + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
}

bool fillAddress(const QByteArray& path, sockaddr_un& addr)
{
    std::memset(&addr, 0, sizeof addr);
    addr.sun_family = AF_UNIX;
    if (path.size() >= qsizetype(sizeof addr.sun_path))
        return false;
    std::memcpy(addr.sun_path, path.constData(), size_t(path.size()));
    return true;
}

// True when a live socket answers at path.
bool answers(const QByteArray& path)
{
    sockaddr_un addr;
    if (!fillAddress(path, addr))
        return false;
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return false;
    const bool live = ::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0;
    ::close(fd);
    return live;
}

// True when the file open as fd is still the one at path: a lock taken on
// a file that its owner has just unlinked locks nothing.
bool stillAt(int fd, const QByteArray& path)
{
    struct stat a {}, b {};
    return ::fstat(fd, &a) == 0 && ::stat(path.constData(), &b) == 0 && a.st_dev == b.st_dev
        && a.st_ino == b.st_ino;
}

bool sameUser(int fd)
{
#ifdef SO_PEERCRED
    ucred cred {};
    socklen_t len = sizeof cred;
    return ::getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &cred, &len) == 0 && cred.uid == ::geteuid();
#else
    (void)fd;
    return true; // the folder's mode keeps other users out
#endif
}

// A box's answer to its sender, within timeoutMs. False when the peer is
// gone or does not read.
bool writeAll(int fd, const QByteArray& bytes, int timeoutMs = replyTimeoutMs)
{
    return detail::writeAll(fd, bytes, QDeadlineTimer(timeoutMs), false) == detail::Written::All;
}

// Removes the files of boxes whose processes died: a lock file nobody
// holds, and the socket beside it. Only a lock we hold lets us unlink,
// so a box that is being claimed right now is never disturbed.
void sweepDeadBoxes(const QString& dir)
{
    const QStringList locks = QDir(dir).entryList({QStringLiteral("*.lock")}, QDir::Files | QDir::System);
    for (const QString& name : locks) {
        const auto id = parseId(name.left(8));
        if (name.size() != 13 || !id || *id == 0)
            continue;
        const QByteArray lockPath = QFile::encodeName(dir + QLatin1Char('/') + name);
        const int fd = ::open(lockPath.constData(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
        if (fd < 0)
            continue;
        if (::flock(fd, LOCK_EX | LOCK_NB) == 0 && stillAt(fd, lockPath)) {
            ::unlink(QFile::encodeName(dir + QLatin1Char('/') + idToText(*id)).constData());
            ::unlink(lockPath.constData());
        }
        ::close(fd);
    }
}

// Notifiers and timers are often let go from inside their own signals (a
// handler deletes the box, a timeout drops its connection): silence them at
// once, delete them once control is back in the event loop.
struct DeleteLater {
    void operator()(QSocketNotifier* n) const
    {
        n->setEnabled(false);
        n->deleteLater();
    }
    void operator()(QTimer* t) const
    {
        t->stop();
        t->deleteLater();
    }
};
template <class T>
using Later = std::unique_ptr<T, DeleteLater>;

} // namespace

// One client of a box, from accept until its request is whole.
struct Connection {
    int fd = -1;
    QByteArray buffer;
    QDeadlineTimer deadline;
    Later<QSocketNotifier> notifier;
    Later<QTimer> timer;

    ~Connection()
    {
        notifier.reset(); // before the descriptor it watches goes
        timer.reset();
        if (fd >= 0)
            ::close(fd);
    }
};

struct MailboxState {
    enum class Claim { Claimed, Taken, Failed };

    explicit MailboxState(Mailbox* box) : q(box) {}
    ~MailboxState();

    void open(quint32 preferredId);
    Claim claim(quint32 candidate);
    void acceptPending();
    void readFrom(int fd);
    void drop(int fd);
    void expireSilent();
    Connection* find(int fd) const;

    static void apply(Mailbox* box, wire::Kind kind, const QString& text);
    static void serve(Mailbox* box, std::unique_ptr<Connection> conn, const wire::Parsed& request);

    Mailbox* q;
    quint32 id = 0;
    QString text;
    QString error;
    QByteArray socketPath;
    QByteArray lockPath;
    int listenFd = -1;
    int lockFd = -1;
    Later<QSocketNotifier> listenNotifier;
    std::vector<std::unique_ptr<Connection>> connections;
    Mailbox::Handler handler;
    Mailbox::FocusHandler focusHandler;
};

namespace {
// The listening boxes made by this thread: the ones a send from this thread
// delivers to directly and serves while it waits.
thread_local std::vector<MailboxState*> boxesOfThisThread;
} // namespace

MailboxState::~MailboxState()
{
    auto& boxes = boxesOfThisThread;
    boxes.erase(std::remove(boxes.begin(), boxes.end(), this), boxes.end());
    connections.clear(); // their senders see the connection end
    listenNotifier.reset();
    if (listenFd >= 0) {
        ::close(listenFd);
        ::unlink(socketPath.constData());
    }
    if (lockFd >= 0) {
        // Unlinked while still locked: nobody can claim the id in between.
        ::unlink(lockPath.constData());
        ::close(lockFd);
    }
}

void MailboxState::open(quint32 preferredId)
{
    error = prepareMailboxDirectory();
    if (!error.isEmpty())
        return;
    static std::once_flag swept;
    std::call_once(swept, [] { sweepDeadBoxes(mailboxDirectory()); });

    quint32 candidate = preferredId;
    for (int draw = 0; draw < idDraws; ++draw) {
        while (candidate == 0)
            candidate = QRandomGenerator::system()->generate();
        switch (claim(candidate)) {
        case Claim::Claimed:
            id = candidate;
            listenNotifier.reset(new QSocketNotifier(listenFd, QSocketNotifier::Read));
            QObject::connect(listenNotifier.get(), &QSocketNotifier::activated, q, [this] { acceptPending(); });
            boxesOfThisThread.push_back(this);
            return;
        case Claim::Failed:
            return;
        case Claim::Taken:
            candidate = 0;
            break;
        }
    }
    error = QStringLiteral("no free mailbox id after %1 draws").arg(idDraws);
}

MailboxState::Claim MailboxState::claim(quint32 candidate)
{
    const QString dir = mailboxDirectory();
    const QByteArray sock = QFile::encodeName(socketPathFor(candidate));
    const QByteArray lock = QFile::encodeName(dir + QLatin1Char('/') + idToText(candidate) + QStringLiteral(".lock"));
    sockaddr_un addr;
    if (!fillAddress(sock, addr)) {
        error = QStringLiteral("socket path too long: ") + QFile::decodeName(sock);
        return Claim::Failed;
    }

    const int lfd = ::open(lock.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (lfd < 0) {
        error = systemError(QStringLiteral("cannot open ") + QFile::decodeName(lock));
        return Claim::Failed;
    }
    if (::flock(lfd, LOCK_EX | LOCK_NB) != 0 || !stillAt(lfd, lock)) {
        ::close(lfd);
        return Claim::Taken;
    }
    // The id is ours by its lock. A socket at its name is a dead process's,
    // unless something that keeps no lock answers there: leave that alone.
    if (answers(sock)) {
        ::unlink(lock.constData());
        ::close(lfd);
        return Claim::Taken;
    }
    ::unlink(sock.constData());

    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0 || ::bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0
        || ::chmod(sock.constData(), 0600) != 0 || ::listen(fd, listenBacklog) != 0) {
        error = systemError(QStringLiteral("cannot listen on ") + QFile::decodeName(sock));
        if (fd >= 0) {
            ::close(fd);
            ::unlink(sock.constData());
        }
        ::unlink(lock.constData());
        ::close(lfd);
        return Claim::Failed;
    }
    listenFd = fd;
    lockFd = lfd;
    socketPath = sock;
    lockPath = lock;
    return Claim::Claimed;
}

Connection* MailboxState::find(int fd) const
{
    for (const auto& c : connections)
        if (c->fd == fd)
            return c.get();
    return nullptr;
}

void MailboxState::drop(int fd)
{
    connections.erase(std::remove_if(connections.begin(), connections.end(),
                                     [fd](const auto& c) { return c->fd == fd; }),
                      connections.end());
}

void MailboxState::expireSilent()
{
    connections.erase(std::remove_if(connections.begin(), connections.end(),
                                     [](const auto& c) { return c->deadline.hasExpired(); }),
                      connections.end());
}

void MailboxState::acceptPending()
{
    for (;;) {
        const int fd = ::accept4(listenFd, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (fd < 0) {
            if (errno == EINTR || errno == ECONNABORTED)
                continue;
            return; // EAGAIN: nobody else waits
        }
        if (!sameUser(fd)) {
            ::close(fd);
            continue;
        }
        auto conn = std::make_unique<Connection>();
        conn->fd = fd;
        conn->deadline = QDeadlineTimer(frameTimeoutMs);
        conn->notifier.reset(new QSocketNotifier(fd, QSocketNotifier::Read));
        QObject::connect(conn->notifier.get(), &QSocketNotifier::activated, q, [this, fd] { readFrom(fd); });
        conn->timer.reset(new QTimer);
        conn->timer->setSingleShot(true);
        QObject::connect(conn->timer.get(), &QTimer::timeout, q, [this, fd] { drop(fd); });
        conn->timer->start(frameTimeoutMs);
        connections.push_back(std::move(conn));
    }
}

void MailboxState::readFrom(int fd)
{
    Connection* c = find(fd);
    if (!c)
        return;
    bool ended = false;
    char chunk[4096];
    // Stop reading once a whole largest request is in: the parser refuses
    // anything longer, and a flood cannot grow the buffer further.
    while (c->buffer.size() <= wire::headerBytes + qsizetype(wire::maxTextBytes)) {
        const ssize_t n = ::recv(fd, chunk, sizeof chunk, 0);
        if (n > 0) {
            c->buffer.append(chunk, n);
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        ended = n == 0 || (errno != EAGAIN && errno != EWOULDBLOCK);
        break;
    }

    const wire::Parsed request = wire::parseRequest(c->buffer);
    if (request.status == wire::Parsed::Refused) {
        writeAll(fd, wire::encodeRefusal(request.refusal));
        drop(fd);
        return;
    }
    if (request.status == wire::Parsed::Incomplete) {
        if (ended)
            drop(fd);
        return;
    }
    // Out of the list before the handlers run: they may delete the box.
    auto it = std::find_if(connections.begin(), connections.end(), [fd](const auto& x) { return x->fd == fd; });
    std::unique_ptr<Connection> conn = std::move(*it);
    connections.erase(it);
    conn->notifier.reset();
    conn->timer.reset();
    serve(q, std::move(conn), request);
}

void MailboxState::serve(Mailbox* box, std::unique_ptr<Connection> conn, const wire::Parsed& request)
{
    if (request.kind == wire::Kind::Get) {
        writeAll(conn->fd, wire::encodeDone(box->d->text));
        return;
    }
    // A sender that gave up before this byte reached it gets nothing
    // applied: its send already reported failure.
    if (!writeAll(conn->fd, QByteArray(1, wire::received)))
        return;
    QPointer<Mailbox> guard(box);
    apply(box, request.kind, request.text);
    const QString after = guard ? guard->d->text : request.text;
    writeAll(conn->fd, wire::encodeDone(after));
}

void MailboxState::apply(Mailbox* box, wire::Kind kind, const QString& text)
{
    QPointer<Mailbox> guard(box);
    if (kind == wire::Kind::Text) {
        if (box->d->text == text)
            return;
        box->d->text = text;
        emit box->changed(text);
        if (!guard)
            return;
        // A copy: the handler may replace itself or delete the box.
        if (const Mailbox::Handler h = box->d->handler)
            h(text);
    } else if (kind == wire::Kind::Focus) {
        emit box->focusReceived();
        if (!guard)
            return;
        if (const Mailbox::FocusHandler h = box->d->focusHandler)
            h();
    }
}

bool deliverHere(quint32 id, wire::Kind kind, const QString& text, QString* after)
{
    if (id == 0)
        return false;
    const auto& boxes = boxesOfThisThread;
    const auto it = std::find_if(boxes.begin(), boxes.end(), [id](const MailboxState* s) { return s->id == id; });
    if (it == boxes.end())
        return false;
    Mailbox* box = (*it)->q;
    QPointer<Mailbox> guard(box);
    if (kind != wire::Kind::Get)
        MailboxState::apply(box, kind, text);
    if (after)
        *after = guard ? guard->text() : text;
    return true;
}

Written writeAll(int fd, const QByteArray& bytes, QDeadlineTimer deadline, bool serving)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::send(fd, bytes.constData() + done, size_t(bytes.size() - done), MSG_NOSIGNAL);
        if (n > 0) {
            done += n;
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            short ev = 0;
            if (serving) {
                ev = waitServing(fd, POLLOUT, deadline);
            } else {
                pollfd p{fd, POLLOUT, 0};
                const qint64 left = deadline.remainingTime();
                if (left != 0 && ::poll(&p, 1, int(left)) > 0)
                    ev = p.revents;
            }
            if (ev == 0)
                return Written::TimedOut;
            if (ev & (POLLERR | POLLHUP))
                return Written::Lost;
            continue;
        }
        return Written::Lost;
    }
    return Written::All;
}

short waitServing(int fd, short events, QDeadlineTimer deadline)
{
    std::vector<pollfd> fds;
    for (;;) {
        fds.clear();
        fds.push_back({fd, events, 0});
        for (MailboxState* s : boxesOfThisThread) {
            s->expireSilent();
            fds.push_back({s->listenFd, POLLIN, 0});
            for (const auto& c : s->connections)
                fds.push_back({c->fd, POLLIN, 0});
        }
        const qint64 left = deadline.remainingTime();
        const int wait = left < 0 ? servePollMs : int(std::min<qint64>(left, servePollMs));
        const int n = ::poll(fds.data(), nfds_t(fds.size()), wait);
        if (n > 0) {
            if (fds[0].revents)
                return fds[0].revents;
            for (size_t i = 1; i < fds.size(); ++i) {
                if (!fds[i].revents)
                    continue;
                // Look the owner up afresh: a handler run for an earlier
                // descriptor may have made or deleted boxes.
                const int ready = fds[i].fd;
                for (MailboxState* s : std::vector<MailboxState*>(boxesOfThisThread)) {
                    if (s->listenFd == ready) {
                        s->acceptPending();
                        break;
                    }
                    if (s->find(ready)) {
                        s->readFrom(ready);
                        break;
                    }
                }
            }
        } else if (n < 0 && errno != EINTR) {
            return POLLERR;
        }
        if (deadline.hasExpired())
            return 0;
    }
}

} // namespace pelkor::bus::detail

namespace pelkor::bus {

Mailbox::Mailbox(QObject* parent) : Mailbox(0, parent) {}

Mailbox::Mailbox(quint32 preferredId, QObject* parent)
    : QObject(parent), d(std::make_unique<detail::MailboxState>(this))
{
    d->open(preferredId);
}

Mailbox::~Mailbox() = default;

quint32 Mailbox::id() const { return d->id; }
QString Mailbox::idText() const { return idToText(d->id); }
QString Mailbox::error() const { return d->error; }
QString Mailbox::socketPath() const { return QFile::decodeName(d->socketPath); }
QString Mailbox::text() const { return d->text; }

void Mailbox::setText(const QString& text)
{
    detail::MailboxState::apply(this, wire::Kind::Text, text);
}

void Mailbox::setHandler(Handler handler) { d->handler = std::move(handler); }
void Mailbox::setFocusHandler(FocusHandler handler) { d->focusHandler = std::move(handler); }

} // namespace pelkor::bus
