// The verbs an instance starts with, as the senders write them, and what
// is refused.
#include "base/CommandLine.h"
#include "base/Instances.h"

#include <gtest/gtest.h>

#include "QtPrinters.h"

using namespace pelkor;
using V = StartCommand::Verb;

TEST(CommandLine, NewLineChildAtFixedPositionsWithAPathOfBlanks)
{
    const QString line = newLineCommand(3, 0x1a2b3c4d, 0, 0xff, QStringLiteral("/home/u/my shop 2025.pkr"));
    EXPECT_EQ(line, QStringLiteral("new3 1a2b3c4d 00000000 000000ff /home/u/my shop 2025.pkr"));
    const StartCommand c = parseCommandLine(line);
    EXPECT_EQ(c.verb, V::New);
    EXPECT_EQ(c.progMode, 4);
    EXPECT_EQ(c.newLineDialogType, 3);
    EXPECT_EQ(c.parentMessagesWindow, 0x1a2b3c4du);
    EXPECT_EQ(c.hostTextBox1, 0u);
    EXPECT_EQ(c.hostTextBox2, 0xffu);
    EXPECT_EQ(c.file, QStringLiteral("/home/u/my shop 2025.pkr"));
    // The child gets it as separate arguments and joins them back.
    EXPECT_EQ(splitCommand(line, 4).join(QLatin1Char(' ')), line);
    EXPECT_EQ(splitCommand(line, 4).size(), 5);

    EXPECT_EQ(parseCommandLine(QStringLiteral("new5 1a2b3c4d 00000000 00000000 /a.pkr")).verb, V::WrongNewLineType);
    EXPECT_EQ(parseCommandLine(QStringLiteral("newx")).verb, V::WrongNewLineType);
    for (const char* bad : {"new3", "new3 1a2b3c4d 00000000 00000000", "new3 1a2b3c4 00000000 00000000 /a.pkr",
                            "new3 1a2b3c4z 00000000 00000000 /a.pkr", "new3 1a2b3c4d 00000000 00000000  "}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(parseCommandLine(QString::fromUtf8(bad)).verb, V::Wrong);
    }
}

TEST(CommandLine, DetailMergedAndTheOthers)
{
    StartCommand c = parseCommandLine(QStringLiteral("detail 0000beef 1 05/03/2025 -3.0000 /d/a b.pkr"));
    EXPECT_EQ(c.verb, V::Detail);
    EXPECT_EQ(c.progMode, 3);
    EXPECT_EQ(c.parentTxtMessage, 0xbeefu);
    EXPECT_EQ(c.detailKind, 1);
    EXPECT_EQ(c.fromDate, QDate(2025, 3, 5));
    EXPECT_EQ(c.toDate, QDate(2025, 3, 5));
    EXPECT_EQ(c.conv, -3.0);
    EXPECT_EQ(c.file, QStringLiteral("/d/a b.pkr"));

    c = parseCommandLine(QStringLiteral("mrg detail 0000beef 3 01/01/2025 31/03/2025 -12 /d/m.pkr"));
    EXPECT_TRUE(c.isMerged);
    EXPECT_EQ(c.detailKind, 3);
    EXPECT_EQ(c.detailKindText, QStringLiteral("-12"));
    EXPECT_EQ(c.toDate, QDate(2025, 3, 31));

    c = parseCommandLine(QStringLiteral("detail 0000beef 4 01/01/2025 31/03/2025 7 /d/a.pkr"));
    EXPECT_EQ(c.detailTypeIndex, 7);

    c = parseCommandLine(QStringLiteral("merged ktrpw 01/01/2025 31/03/2025 00c0ffee /t/merged.pkr"));
    EXPECT_EQ(c.verb, V::Merged);
    EXPECT_EQ(c.progMode, 5);
    EXPECT_EQ(c.mergedVerb, QStringLiteral("ktrpw"));
    EXPECT_EQ(c.parentTxtMessage, 0xc0ffeeu);

    EXPECT_EQ(parseCommandLine(QStringLiteral("dayblnc")).verb, V::DayBalance);
    EXPECT_EQ(parseCommandLine(QStringLiteral("bank poalim")).verb, V::Bank);
    EXPECT_EQ(parseCommandLine(QString()).verb, V::Empty);
    EXPECT_EQ(parseCommandLine(QStringLiteral("open")).file, QString());
    EXPECT_EQ(parseCommandLine(QStringLiteral("/x/y z.pkr")).file, QStringLiteral("/x/y z.pkr"));

    for (const char* bad : {// dates that are no dates
                            "detail 0000beef 1 32/13/2025 0.0000 /a.pkr", "detail 0000beef 1 29/02/2025 0.0000 /a.pkr",
                            "detail 0000beef 1 yesterday 0.0000 /a.pkr", "detail 0000beef 3 01/01/2025 31/04/2025 +1 /a.pkr",
                            "merged ktrep 01/01/2025 1/1/20x5 00000001 /m.pkr",
                            // ids that are no ids
                            "detail beef 1 01/01/2025 0 /a.pkr", "detail 0x00beef 1 01/01/2025 0 /a.pkr",
                            "detail +000beef 1 01/01/2025 0 /a.pkr", "merged ktrep 01/01/2025 02/01/2025 1 /m.pkr",
                            // missing fields, the file among them
                            "detail 0000beef 1 01/01/2025 0.0000", "detail 0000beef 1 01/01/2025 0.0000   ",
                            "detail 0000beef 3 01/01/2025 /a.pkr", "detail", "merged ktrep 01/01/2025",
                            // fields out of range
                            "detail 0000beef 9 01/01/2025 0 /a.pkr", "detail 0000beef 1 01/01/2025 x /a.pkr",
                            "detail 0000beef 4 01/01/2025 31/03/2025 x /a.pkr",
                            "merged ktrxx 01/01/2025 02/01/2025 00000001 /m.pkr", "hello", "--help"}) {
        SCOPED_TRACE(bad);
        const StartCommand c = parseCommandLine(QString::fromUtf8(bad));
        EXPECT_EQ(c.verb, V::Wrong);
        EXPECT_FALSE(c.reason.isEmpty());
    }
}

// The outer host's boxes in front of a main instance's verb; a child's
// verb refuses them, and a refused line keeps them so the host hears the end.
TEST(CommandLine, HostPrefixGivesAMainInstanceTheHostsBoxes)
{
    StartCommand c = parseCommandLine(QStringLiteral("host 0000beef 0000CAFE open /d/my shop.pkr"));
    EXPECT_EQ(c.verb, V::Open);
    EXPECT_EQ(c.progMode, 1);
    EXPECT_EQ(c.hostTextBox1, 0xbeefu);
    EXPECT_EQ(c.hostTextBox2, 0xcafeu);
    EXPECT_EQ(c.file, QStringLiteral("/d/my shop.pkr"));

    c = parseCommandLine(QStringLiteral("host 0000beef 00000000"));
    EXPECT_EQ(c.verb, V::Empty);
    EXPECT_EQ(c.progMode, 2);
    EXPECT_EQ(c.hostTextBox1, 0xbeefu);
    EXPECT_EQ(parseCommandLine(QStringLiteral("host 0000beef 0000cafe bank poalim")).verb, V::Bank);
    EXPECT_EQ(parseCommandLine(QStringLiteral("host 0000beef 0000cafe dayblnc")).verb, V::DayBalance);
    EXPECT_EQ(parseCommandLine(QStringLiteral("host 0000beef 0000cafe /x/a b.pkr")).file, QStringLiteral("/x/a b.pkr"));

    c = parseCommandLine(QStringLiteral("host 0000beef 0000cafe hello"));
    EXPECT_EQ(c.verb, V::Wrong);
    EXPECT_EQ(c.hostTextBox1, 0xbeefu);
    EXPECT_EQ(c.hostTextBox2, 0xcafeu);

    for (const char* bad : {"host 0000beef", "host beef 0000cafe open /a.pkr", "host 0000beef 0000caf open /a.pkr",
                            "host 0000beef 0000cafe new3 1a2b3c4d 00000000 00000000 /a.pkr",
                            "host 0000beef 0000cafe new5 1a2b3c4d 00000000 00000000 /a.pkr",
                            "host 0000beef 0000cafe detail 0000beef 1 05/03/2025 0.0000 /a.pkr",
                            "host 0000beef 0000cafe merged ktrep 01/01/2025 02/01/2025 00000001 /m.pkr",
                            "host 0000beef 0000cafe host 0000beef 0000cafe open /a.pkr"}) {
        SCOPED_TRACE(bad);
        c = parseCommandLine(QString::fromUtf8(bad));
        EXPECT_EQ(c.verb, V::Wrong);
        EXPECT_TRUE(c.reason.startsWith(QStringLiteral("host: "))) << c.reason.toStdString();
    }
}
