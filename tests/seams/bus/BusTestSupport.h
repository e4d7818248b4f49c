// What the bus tests share: an application for event loops, a private
// runtime folder per test, a box living in a thread of its own, and raw
// clients that speak to a box the way a stranger would.
#pragma once

#include "seams/bus/Bus.h"
#include "seams/bus/Mailbox.h"
#include "seams/bus/MailboxId.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QPointer>
#include <QStringList>
#include <QTemporaryDir>
#include <QThread>
#include <functional>
#include <mutex>

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "QtPrinters.h"
#include "TestSupport.h"

namespace pelkor::bus {
inline void PrintTo(SendResult r, std::ostream* os) { *os << describe(r).toStdString(); }
} // namespace pelkor::bus

namespace pelkor::bus::bustest {

using pelkor::testing::ensureApplication;

// Points XDG_RUNTIME_DIR at a fresh folder while it lives, so a test's
// boxes (and a helper process's) never meet the user's own.
class RuntimeFolder {
public:
    RuntimeFolder() : had_(qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")), old_(qgetenv("XDG_RUNTIME_DIR"))
    {
        ensureApplication();
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(dir_.path()));
    }
    ~RuntimeFolder()
    {
        if (had_)
            qputenv("XDG_RUNTIME_DIR", old_);
        else
            qunsetenv("XDG_RUNTIME_DIR");
    }
    QString root() const { return dir_.path(); }
    QString boxes() const { return dir_.path() + QStringLiteral("/pelkor"); }

private:
    QTemporaryDir dir_;
    bool had_;
    QByteArray old_;
};

// A thread-safe list of what handlers saw.
class Log {
public:
    void add(const QString& s)
    {
        std::lock_guard<std::mutex> lock(m_);
        items_ << s;
    }
    QStringList items() const
    {
        std::lock_guard<std::mutex> lock(m_);
        return items_;
    }

private:
    mutable std::mutex m_;
    QStringList items_;
};

// A box made and served by a thread of its own, so that a send from the
// test's thread goes through the socket as one from another process would.
class BoxThread {
public:
    // setup runs in the box's thread, right after the box is made.
    explicit BoxThread(std::function<void(Mailbox&)> setup = {})
    {
        thread_.start();
        ctx_.moveToThread(&thread_);
        in([&] {
            box_ = new Mailbox;
            id_ = box_->id();
            if (setup)
                setup(*box_);
        });
    }
    ~BoxThread()
    {
        QThread* home = QThread::currentThread();
        in([&] {
            delete box_.data();
            ctx_.moveToThread(home);
        });
        thread_.quit();
        thread_.wait();
    }
    // Runs f in the box's thread and waits for it.
    void in(const std::function<void()>& f)
    {
        QMetaObject::invokeMethod(&ctx_, f, Qt::BlockingQueuedConnection);
    }
    quint32 id() const { return id_; }
    QString text()
    {
        QString t;
        in([&] { t = box_ ? box_->text() : QString(); });
        return t;
    }
    bool alive()
    {
        bool a = false;
        in([&] { a = !box_.isNull(); });
        return a;
    }

private:
    QThread thread_;
    QObject ctx_;
    QPointer<Mailbox> box_;
    quint32 id_ = 0;
};

// Runs the event loop until done() or ms pass. Returns done().
inline bool spinUntil(const std::function<bool()>& done, int ms = 3000)
{
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    return done();
}

inline bool addressOf(const QString& path, sockaddr_un& addr)
{
    const QByteArray p = QFile::encodeName(path);
    std::memset(&addr, 0, sizeof addr);
    addr.sun_family = AF_UNIX;
    if (p.size() >= qsizetype(sizeof addr.sun_path))
        return false;
    std::memcpy(addr.sun_path, p.constData(), size_t(p.size()));
    return true;
}

// A blocking client connected to box id, or -1.
inline int rawConnect(quint32 id)
{
    sockaddr_un addr;
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0 || !addressOf(socketPathFor(id), addr)
        || ::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0) {
        if (fd >= 0)
            ::close(fd);
        return -1;
    }
    timeval tv {5, 0}; // a test that goes wrong fails rather than hangs
    ::setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &tv, sizeof tv);
    return fd;
}

// A socket bound (and listening when listening is true) at the name of id,
// with no box behind it. Returns the descriptor, or -1.
inline int rawListener(quint32 id, bool listening)
{
    sockaddr_un addr;
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0 || !addressOf(socketPathFor(id), addr)
        || ::bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) != 0
        || (listening && ::listen(fd, 4) != 0)) {
        if (fd >= 0)
            ::close(fd);
        return -1;
    }
    return fd;
}

// Everything the peer sends until it closes (or 5 s pass).
inline QByteArray readToEnd(int fd)
{
    QByteArray out;
    char buf[256];
    ssize_t n;
    while ((n = ::recv(fd, buf, sizeof buf, 0)) > 0)
        out.append(buf, n);
    return out;
}

} // namespace pelkor::bus::bustest
