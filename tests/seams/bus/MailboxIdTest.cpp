// Ids as command lines carry them, and the bytes of a request.
#include "seams/bus/MailboxId.h"
#include "seams/bus/Wire.h"

#include <gtest/gtest.h>

#include "BusTestSupport.h"

using namespace pelkor::bus;

TEST(MailboxId, ParsesOneToEightHexDigitsAndPrintsEight)
{
    EXPECT_EQ(parseId(QStringLiteral("1234abcd")), 0x1234abcdu);
    EXPECT_EQ(parseId(QStringLiteral("1234ABCD")), 0x1234abcdu);
    EXPECT_EQ(parseId(QStringLiteral(" ffffffff ")), 0xffffffffu);
    EXPECT_EQ(parseId(QStringLiteral("00000000")), 0u);
    EXPECT_EQ(parseId(QStringLiteral("1f")), 0x1fu);

    for (const char* bad : {"", "   ", "123456789", "0x1234", "-1", "+1", "1234 abc", "1234abcg", "١٢٣"})
        EXPECT_FALSE(parseId(QString::fromUtf8(bad)).has_value()) << bad;

    EXPECT_EQ(idToText(0), QStringLiteral("00000000"));
    EXPECT_EQ(idToText(0x1f), QStringLiteral("0000001f"));
    EXPECT_EQ(idToText(0xDEADBEEF), QStringLiteral("deadbeef"));
    for (quint32 id : {0u, 1u, 0x80000000u, 0xffffffffu, 0x0a0b0c0du})
        EXPECT_EQ(parseId(idToText(id)), id);
}

TEST(MailboxId, FolderFollowsTheRuntimeFolderOrFallsBackToTmp)
{
    bustest::RuntimeFolder folder;
    EXPECT_EQ(mailboxDirectory(), folder.boxes());
    EXPECT_EQ(socketPathFor(0xab), folder.boxes() + QStringLiteral("/000000ab"));
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(mailboxDirectory(), QStringLiteral("/tmp/pelkor-%1").arg(uint(geteuid())));
}

TEST(BusWire, RequestsRoundTripAndAreJudgedByteByByte)
{
    using namespace wire;
    const QString hebrew = QStringLiteral("\xFEFF" "עדכון נתונים ltrb 25 300");
    const QByteArray bytes = encodeRequest(Kind::Text, hebrew);
    ASSERT_EQ(bytes.left(4), QByteArray("PB\x01T"));

    // Every proper prefix is incomplete, never refused; the whole is the text.
    for (qsizetype n = 0; n < bytes.size(); ++n)
        ASSERT_EQ(parseRequest(bytes.left(n)).status, Parsed::Incomplete) << n;
    const Parsed whole = parseRequest(bytes);
    ASSERT_EQ(whole.status, Parsed::Complete);
    EXPECT_EQ(whole.kind, Kind::Text);
    EXPECT_EQ(whole.text, hebrew);

    const Parsed empty = parseRequest(encodeRequest(Kind::Text, QString()));
    EXPECT_EQ(empty.status, Parsed::Complete);
    EXPECT_TRUE(empty.text.isEmpty());
    EXPECT_EQ(parseRequest(encodeRequest(Kind::Get)).kind, Kind::Get);
    // A focus notice carries no text even when one is given.
    EXPECT_EQ(encodeRequest(Kind::Focus, QStringLiteral("x")), QByteArray("PB\x01" "F\0\0\0\0", 8));

    const auto refusal = [](const QByteArray& b) {
        const Parsed p = parseRequest(b);
        return p.status == Parsed::Refused ? int(p.refusal) : 0;
    };
    EXPECT_EQ(refusal("X"), int(Refusal::BadHeader)); // judged on its first byte
    EXPECT_EQ(refusal("PB\x02"), int(Refusal::BadHeader));
    EXPECT_EQ(refusal("PB\x01X"), int(Refusal::UnknownKind));
    EXPECT_EQ(refusal(QByteArray("PB\x01G\0\0\0\1", 8)), int(Refusal::BadHeader));
    EXPECT_EQ(refusal(QByteArray("PB\x01T\0\x10\0\1", 8)), int(Refusal::TooLong)); // before any payload
    EXPECT_EQ(refusal(QByteArray("PB\x01T\0\0\0\2\xC3\x28", 10)), int(Refusal::BadText));

    const QByteArray done = encodeDone(hebrew);
    EXPECT_EQ(done[0], wire::done);
    EXPECT_EQ(readLength(done.constData() + 1), quint32(hebrew.toUtf8().size()));
}
