// Sends within one process: through a socket to a box of another thread,
// and directly to a box of the sending thread.
#include "seams/bus/Bus.h"
#include "seams/bus/Wire.h"

#include <QTimer>
#include <gtest/gtest.h>

#include <thread>

#include "BusTestSupport.h"

using namespace pelkor::bus;
using pelkor::bus::bustest::BoxThread;
using pelkor::bus::bustest::Log;
using pelkor::bus::bustest::RuntimeFolder;

TEST(BusSend, HandlerHasRunWhenSendReturnsAndARepeatIsNoEvent)
{
    RuntimeFolder folder;
    Log log;
    BoxThread box([&](Mailbox& b) {
        b.setHandler([&](const QString& t) {
            QThread::msleep(150); // a handler that takes its time
            log.add(t);
        });
    });
    ASSERT_NE(box.id(), 0u);

    QElapsedTimer t;
    t.start();
    EXPECT_EQ(send(box.id(), QStringLiteral("refresh")), SendResult::Delivered);
    EXPECT_GE(t.elapsed(), 150);
    EXPECT_EQ(log.items(), QStringList{QStringLiteral("refresh")});

    EXPECT_EQ(send(idToText(box.id()).toUpper(), QStringLiteral("refresh")), SendResult::Delivered);
    EXPECT_EQ(log.items(), QStringList{QStringLiteral("refresh")});

    const QString hebrew = QStringLiteral("עדכון הנתונים נכשל.\nשורה שנייה");
    EXPECT_EQ(send(box.id(), hebrew), SendResult::Delivered);
    EXPECT_EQ(log.items(), (QStringList{QStringLiteral("refresh"), hebrew}));

    // A caption is read without raising anything.
    const Reading r = get(box.id());
    EXPECT_EQ(r.result, SendResult::Delivered);
    EXPECT_EQ(r.text, hebrew);
    EXPECT_EQ(log.items().size(), 2);

    // Texts near the limit pass, one past it is refused and changes nothing.
    const QString big(int(wire::maxTextBytes), QLatin1Char('x'));
    EXPECT_EQ(send(box.id(), big), SendResult::Delivered);
    EXPECT_EQ(send(box.id(), big + QLatin1Char('x')), SendResult::Refused);
    EXPECT_EQ(box.text(), big);
}

TEST(BusSend, ToABoxOfTheSameThreadIsADirectCall)
{
    RuntimeFolder folder;
    Mailbox a, b;
    QStringList seen;
    a.setHandler([&](const QString& t) {
        seen << QStringLiteral("a ") + t;
        EXPECT_EQ(send(b.id(), t + QStringLiteral(" too")), SendResult::Delivered);
    });
    b.setHandler([&](const QString& t) { seen << QStringLiteral("b ") + t; });
    int focused = 0;
    b.setFocusHandler([&] { ++focused; });

    EXPECT_EQ(send(a.id(), QStringLiteral("add")), SendResult::Delivered);
    EXPECT_EQ(seen, (QStringList{QStringLiteral("a add"), QStringLiteral("b add too")}));
    EXPECT_EQ(get(b.id()).text, QStringLiteral("add too"));
    EXPECT_EQ(sendFocus(b.id()), SendResult::Delivered);
    EXPECT_EQ(focused, 1);
    EXPECT_EQ(b.text(), QStringLiteral("add too"));
}

TEST(BusSend, FailuresComeBackQuicklyWithTheirReason)
{
    RuntimeFolder folder;
    EXPECT_EQ(send(0u, QStringLiteral("closed")), SendResult::Nobody);
    EXPECT_EQ(send(QStringLiteral("00000000"), QStringLiteral("closed")), SendResult::Nobody);
    EXPECT_EQ(send(QStringLiteral("1234567g"), QStringLiteral("closed")), SendResult::MalformedId);
    EXPECT_EQ(send(QString(), QStringLiteral("closed")), SendResult::MalformedId);

    QElapsedTimer t;
    t.start();
    quint32 gone;
    {
        Mailbox box;
        gone = box.id();
    }
    EXPECT_EQ(send(gone, QStringLiteral("closed")), SendResult::NoSuchBox);
    EXPECT_EQ(send(0x7e57ab1e, QStringLiteral("closed")), SendResult::NoSuchBox);
    const int stale = bustest::rawListener(0x5ca1ab1e, true);
    ASSERT_GE(stale, 0);
    ::close(stale);
    EXPECT_EQ(send(0x5ca1ab1e, QStringLiteral("closed")), SendResult::NoSuchBox);
    EXPECT_EQ(get(0x5ca1ab1e).result, SendResult::NoSuchBox);
    EXPECT_LT(t.elapsed(), 500);

    // Alive but never serving (a process stopped or busy outside any event
    // loop): the send gives up after its time, not much later.
    const int deaf = bustest::rawListener(0xdeafdeaf, true);
    ASSERT_GE(deaf, 0);
    t.restart();
    EXPECT_EQ(send(0xdeafdeaf, QStringLiteral("closed"), 300), SendResult::TimedOut);
    EXPECT_GE(t.elapsed(), 290);
    EXPECT_LT(t.elapsed(), 1500);
    ::close(deaf);
}

TEST(BusSend, ServedInsideANestedEventLoop)
{
    RuntimeFolder folder;
    Mailbox box;
    QEventLoop outer, inner;
    QStringList seen;
    box.setHandler([&](const QString& t) {
        seen << t;
        inner.quit();
    });
    std::thread sender;
    SendResult result = SendResult::Nobody;
    QTimer::singleShot(0, &outer, [&] {
        sender = std::thread([&] { result = send(box.id(), QStringLiteral("coordinate")); });
        QTimer::singleShot(5000, &inner, &QEventLoop::quit); // a broken box fails, not hangs
        inner.exec();
        outer.quit();
    });
    outer.exec();
    sender.join();
    EXPECT_EQ(result, SendResult::Delivered);
    EXPECT_EQ(seen, QStringList{QStringLiteral("coordinate")});
}

TEST(BusSend, SilentAndMalformedClientsDoNotStopTheBox)
{
    RuntimeFolder folder;
    Log log;
    BoxThread box([&](Mailbox& b) { b.setHandler([&](const QString& t) { log.add(t); }); });

    const int silent = bustest::rawConnect(box.id());
    const int halfway = bustest::rawConnect(box.id());
    ASSERT_GE(silent, 0);
    ASSERT_GE(halfway, 0);
    ASSERT_EQ(::send(halfway, "PB\x01T\0\0\0\5ab", 10, 0), 10); // promises five bytes, sends two

    EXPECT_EQ(send(box.id(), QStringLiteral("refresh")), SendResult::Delivered);

    const auto answerTo = [&](const QByteArray& bytes) {
        const int fd = bustest::rawConnect(box.id());
        EXPECT_GE(fd, 0);
        ::send(fd, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL);
        const QByteArray answer = bustest::readToEnd(fd);
        ::close(fd);
        return answer;
    };
    EXPECT_EQ(answerTo("GET / HTTP/1.0\r\n\r\n"), wire::encodeRefusal(wire::Refusal::BadHeader));
    EXPECT_EQ(answerTo(QByteArray("PB\x01Q", 4)), wire::encodeRefusal(wire::Refusal::UnknownKind));
    EXPECT_EQ(answerTo(QByteArray("PB\x01T\0\0\0\2\xFF\xFE", 10)), wire::encodeRefusal(wire::Refusal::BadText));
    EXPECT_EQ(answerTo(QByteArray("PB\x01T\0\x10\0\1", 8) + QByteArray(4096, 'x')),
              wire::encodeRefusal(wire::Refusal::TooLong));
    EXPECT_EQ(answerTo(wire::encodeRequest(wire::Kind::Get)), wire::encodeDone(QStringLiteral("refresh")));
    EXPECT_EQ(log.items(), QStringList{QStringLiteral("refresh")});

    // The quiet ones are let go after a short while.
    QElapsedTimer t;
    t.start();
    EXPECT_EQ(bustest::readToEnd(silent), QByteArray());
    EXPECT_EQ(bustest::readToEnd(halfway), QByteArray());
    EXPECT_LT(t.elapsed(), 4000);
    ::close(silent);
    ::close(halfway);
    EXPECT_EQ(log.items(), QStringList{QStringLiteral("refresh")});
}

TEST(BusSend, AHandlerMayDeleteItsOwnBox)
{
    RuntimeFolder folder;
    BoxThread box([](Mailbox& b) {
        b.setHandler([&b](const QString& t) {
            if (t == QStringLiteral("close"))
                delete &b;
        });
    });
    EXPECT_EQ(send(box.id(), QStringLiteral("close")), SendResult::Delivered);
    EXPECT_FALSE(box.alive());
    EXPECT_EQ(send(box.id(), QStringLiteral("refresh")), SendResult::NoSuchBox);
}

TEST(BusHost, FocusTextFocusInThatOrder)
{
    RuntimeFolder folder;
    Mailbox box1, box2;
    QStringList seen;
    box1.setFocusHandler([&] { seen << QStringLiteral("focus 1"); });
    box1.setHandler([&](const QString& t) { seen << QStringLiteral("text 1 ") + t; });
    box2.setFocusHandler([&] { seen << QStringLiteral("focus 2"); });

    EXPECT_EQ(sendToHost(0, box2.id(), QStringLiteral("unload")), SendResult::Nobody);
    EXPECT_TRUE(seen.isEmpty());

    EXPECT_EQ(sendToHost(box1.id(), box2.id(), QStringLiteral("ok")), SendResult::Delivered);
    EXPECT_EQ(sendToHost(box1.id(), box2.id(), QStringLiteral("ok")), SendResult::Delivered);
    EXPECT_EQ(sendToHost(box1.id(), 0, QStringLiteral("auto")), SendResult::Delivered);
    EXPECT_EQ(seen, (QStringList{QStringLiteral("focus 1"), QStringLiteral("text 1 ok"), QStringLiteral("focus 2"),
                                 QStringLiteral("focus 1"), QStringLiteral("focus 2"),
                                 QStringLiteral("focus 1"), QStringLiteral("text 1 auto")}));
    EXPECT_EQ(box2.text(), QString());

    EXPECT_EQ(sendToHost(0x7e57ab1e, box2.id(), QStringLiteral("unload")), SendResult::NoSuchBox);
    EXPECT_EQ(seen.size(), 7);
}
