// Settings files behave as the old private profile functions did.
#include "seams/platform/ProfileFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "QtPrinters.h"

using pelkor::platform::ProfileFile;

namespace {
void writeFile(const QString& path, const QByteArray& text)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(text);
}
QString readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}
} // namespace

TEST(ProfileFile, ReadsCaseInsensitivelyWithDefaultsQuotesAndTheLengthLimit)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("pelkor.ini"));
    ProfileFile ini(path);
    EXPECT_EQ(ini.readString(QStringLiteral("misc"), QStringLiteral("debug"), QStringLiteral("0")), QStringLiteral("0"));
    EXPECT_EQ(ini.readInt(QStringLiteral("misc"), QStringLiteral("x"), 7), 7);

    writeFile(path, "; settings\r\n[Misc]\r\n Debug = 1 \r\nname=\"  שלום  \"\r\nbad=abc\r\n[other]\r\ndebug=9\r\nlong="
                        + QByteArray(300, 'x') + "\r\n");
    EXPECT_EQ(ini.readString(QStringLiteral("misc"), QStringLiteral("DEBUG")), QStringLiteral("1"));
    EXPECT_EQ(ini.readString(QStringLiteral("misc"), QStringLiteral("name")), QStringLiteral("  שלום  "));
    EXPECT_EQ(ini.readInt(QStringLiteral("misc"), QStringLiteral("bad"), 5), 5);
    EXPECT_EQ(ini.readInt(QStringLiteral("other"), QStringLiteral("debug"), 0), 9);
    EXPECT_EQ(ini.readString(QStringLiteral("other"), QStringLiteral("long")).size(), 255);
    EXPECT_EQ(ini.readString(QStringLiteral("none"), QStringLiteral("debug"), QStringLiteral("d")), QStringLiteral("d"));
    EXPECT_EQ(ini.keys(QStringLiteral("MISC")), (QStringList{QStringLiteral("Debug"), QStringLiteral("name"), QStringLiteral("bad")}));
}

TEST(ProfileFile, WritesInPlaceKeepingEverythingElse)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("sub/merge.ini"));
    ProfileFile ini(path);
    ASSERT_TRUE(ini.writeString(QStringLiteral("files"), QStringLiteral("file1"), QStringLiteral("/a/b.pkr")));
    ASSERT_TRUE(ini.writeString(QStringLiteral("misc"), QStringLiteral("debug"), QStringLiteral("0")));
    ASSERT_TRUE(ini.writeString(QStringLiteral("FILES"), QStringLiteral("file2"), QStringLiteral("/a/c.pkr")));
    ASSERT_TRUE(ini.writeString(QStringLiteral("files"), QStringLiteral("FILE1"), QStringLiteral("/a/d.pkr")));
    EXPECT_EQ(readFile(path), QStringLiteral("[files]\r\nfile1=/a/d.pkr\r\nfile2=/a/c.pkr\r\n\r\n[misc]\r\ndebug=0\r\n"));

    ASSERT_TRUE(ini.writeString(QStringLiteral("files"), QStringLiteral("file2"), QString()));   // delete a key
    ASSERT_TRUE(ini.deleteSection(QStringLiteral("misc")));
    EXPECT_EQ(readFile(path), QStringLiteral("[files]\r\nfile1=/a/d.pkr\r\n\r\n"));
    EXPECT_EQ(ini.readString(QStringLiteral("files"), QStringLiteral("file1")), QStringLiteral("/a/d.pkr"));
}
