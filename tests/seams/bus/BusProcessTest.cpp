// Boxes in another process: the test binary run again as a peer.
//
// The peer is the test BusPeer.Serve, which does nothing unless
// PELKOR_BUS_PEER names the parent's box. It makes four boxes, prints their
// ids on one line, and serves until it is told "quit".
#include "seams/bus/Bus.h"

#include <QFileInfo>
#include <QProcess>
#include <QTimer>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>

#include "BusTestSupport.h"

using namespace pelkor::bus;
using pelkor::bus::bustest::RuntimeFolder;

namespace {

constexpr char peerVariable[] = "PELKOR_BUS_PEER";

class Peer {
public:
    ~Peer()
    {
        if (process.state() != QProcess::NotRunning) {
            process.kill();
            process.waitForFinished(5000);
        }
    }

    // Starts the peer for the parent's box and reads its boxes' ids.
    bool start(quint32 parent)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QString::fromLatin1(peerVariable), idToText(parent));
        process.setProcessEnvironment(env);
        process.setProcessChannelMode(QProcess::SeparateChannels);
        process.start(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath(),
                      {QStringLiteral("--gtest_filter=BusPeer.Serve")});
        while (process.waitForReadyRead(10000)) {
            while (process.canReadLine()) {
                const QStringList f = QString::fromLatin1(process.readLine()).simplified().split(QLatin1Char(' '));
                if (f.size() == 5 && f[0] == QStringLiteral("PEER")) {
                    inbox = parseId(f[1]).value_or(0);
                    host1 = parseId(f[2]).value_or(0);
                    host2 = parseId(f[3]).value_or(0);
                    log = parseId(f[4]).value_or(0);
                    return inbox && host1 && host2 && log;
                }
            }
        }
        return false;
    }

    QProcess process;
    quint32 inbox = 0, host1 = 0, host2 = 0, log = 0;
};

} // namespace

TEST(BusPeer, Serve)
{
    const QByteArray parentText = qgetenv(peerVariable);
    if (parentText.isEmpty())
        GTEST_SKIP() << "the peer of the BusProcess tests; runs only when they start it";
    bustest::ensureApplication();
    const quint32 parent = parseId(QString::fromLatin1(parentText)).value_or(0);
    ASSERT_NE(parent, 0u);

    Mailbox inbox, host1, host2, log;
    QEventLoop loop;
    const auto note = [&](const QString& s) {
        log.setText(log.text().isEmpty() ? s : log.text() + QLatin1Char('|') + s);
    };
    inbox.setHandler([&](const QString& t) {
        note(QStringLiteral("text ") + t);
        if (t == QStringLiteral("ping"))
            send(parent, QStringLiteral("pong")); // while the parent still waits
        else if (t == QStringLiteral("quit"))
            loop.quit();
    });
    host1.setFocusHandler([&] { note(QStringLiteral("focus h1")); });
    host1.setHandler([&](const QString& t) { note(QStringLiteral("text h1 ") + t); });
    host2.setFocusHandler([&] { note(QStringLiteral("focus h2")); });
    host2.setHandler([&](const QString& t) { note(QStringLiteral("text h2 ") + t); });

    std::printf("PEER %s %s %s %s\n", qPrintable(inbox.idText()), qPrintable(host1.idText()),
                qPrintable(host2.idText()), qPrintable(log.idText()));
    std::fflush(stdout);
    QTimer::singleShot(30000, &loop, &QEventLoop::quit); // an orphan does not linger
    loop.exec();
}

TEST(BusProcess, APeerAnswersFromItsHandlerBeforeTheSendReturns)
{
    RuntimeFolder folder;
    Mailbox here;
    QStringList seen;
    here.setHandler([&](const QString& t) { seen << t; });
    Peer peer;
    ASSERT_TRUE(peer.start(here.id())) << peer.process.readAllStandardError().toStdString();

    EXPECT_EQ(send(peer.inbox, QStringLiteral("ping")), SendResult::Delivered);
    EXPECT_EQ(seen, QStringList{QStringLiteral("pong")});
    // The same text again is no event there, so no second answer here.
    EXPECT_EQ(send(idToText(peer.inbox), QStringLiteral("ping")), SendResult::Delivered);
    EXPECT_EQ(seen, QStringList{QStringLiteral("pong")});
    EXPECT_EQ(get(peer.inbox).text, QStringLiteral("ping"));

    EXPECT_EQ(sendToHost(peer.host1, peer.host2, QStringLiteral("unload")), SendResult::Delivered);
    EXPECT_EQ(get(peer.log).text, QStringLiteral("text ping|focus h1|text h1 unload|focus h2"));

    EXPECT_EQ(send(peer.inbox, QStringLiteral("quit")), SendResult::Delivered);
    ASSERT_TRUE(peer.process.waitForFinished(10000));
    EXPECT_EQ(peer.process.exitCode(), 0) << peer.process.readAllStandardOutput().toStdString();
    EXPECT_EQ(send(peer.inbox, QStringLiteral("refresh")), SendResult::NoSuchBox);
    // Only this process's own box is left in the folder.
    EXPECT_EQ(QDir(folder.boxes()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
              (QStringList{here.idText(), here.idText() + QStringLiteral(".lock")}));
}

TEST(BusProcess, AStoppedPeerTimesOutAndAKilledOneIsGone)
{
    RuntimeFolder folder;
    Mailbox here;
    Peer peer;
    ASSERT_TRUE(peer.start(here.id()));
    const pid_t pid = pid_t(peer.process.processId());

    // Stopped: alive but serving nobody. The send gives up in time, and the
    // text it gave up on is not applied when the peer runs again.
    ASSERT_EQ(::kill(pid, SIGSTOP), 0);
    QElapsedTimer t;
    t.start();
    EXPECT_EQ(send(peer.inbox, QStringLiteral("stopped"), 300), SendResult::TimedOut);
    EXPECT_LT(t.elapsed(), 1500);
    ASSERT_EQ(::kill(pid, SIGCONT), 0);
    EXPECT_EQ(send(peer.inbox, QStringLiteral("after")), SendResult::Delivered);
    QThread::msleep(200);
    EXPECT_EQ(get(peer.log).text, QStringLiteral("text after"));

    // Killed: its files stay behind, sends fail at once, and a new box may
    // take the id over.
    peer.process.kill();
    ASSERT_TRUE(peer.process.waitForFinished(5000));
    EXPECT_TRUE(QFile::exists(socketPathFor(peer.inbox)));
    t.restart();
    EXPECT_EQ(send(peer.inbox, QStringLiteral("refresh")), SendResult::NoSuchBox);
    EXPECT_EQ(sendToHost(peer.host1, peer.host2, QStringLiteral("unload")), SendResult::NoSuchBox);
    EXPECT_LT(t.elapsed(), 500);
    Mailbox heir(peer.inbox);
    EXPECT_EQ(heir.id(), peer.inbox);
}
