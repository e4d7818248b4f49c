// The verbs an instance starts with, as the senders write them, and what
// is refused.
#include "frame/CommandLine.h"
#include "frame/Instances.h"

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

    for (const char* bad : {"detail 0000beef 1 32/13/2025 0.0000 /a.pkr", "detail beef 1 01/01/2025 0 /a.pkr",
                            "detail 0000beef 9 01/01/2025 0 /a.pkr", "detail 0000beef 1 01/01/2025 x /a.pkr",
                            "detail 0000beef 3 01/01/2025 /a.pkr", "merged ktrxx 01/01/2025 02/01/2025 00000001 /m.pkr",
                            "merged ktrep 01/01/2025", "hello", "--help"}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(parseCommandLine(QString::fromUtf8(bad)).verb, V::Wrong);
    }
}
