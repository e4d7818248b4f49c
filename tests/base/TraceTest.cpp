// The trace writes its lines only while on, to a file of its own per process.
#include "base/Trace.h"
#include "seams/platform/ProfileFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "QtPrinters.h"

using namespace pelkor;

namespace {
QString readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}
} // namespace

TEST(Trace, LinesOnlyWhileOnAndScopesCloseThemselves)
{
    QTemporaryDir dir;
    Trace t(dir.filePath(QStringLiteral("PelkorLogs")), QStringLiteral("/home/u/shop.pkr"));
    EXPECT_TRUE(t.noTrace());
    t.traceLine(QStringLiteral("early"), QStringLiteral("lost"));

    t.setOn(true);
    ASSERT_FALSE(t.noTrace());
    EXPECT_TRUE(t.filePath().contains(QStringLiteral("/PelkorLogs/PelkorLog__hom_")));
    {
        TraceScope s(t, QStringLiteral("openDB"));
        EXPECT_EQ(t.curProc(), QStringLiteral("openDB"));
        s.line(QStringLiteral("קורא שורות"));
    }
    t.setOn(false);
    t.traceLine(QStringLiteral("late"), QStringLiteral("lost"));

    EXPECT_EQ(readAll(t.filePath()),
              QStringLiteral("*** openDB: <<<< starting\n*** openDB: קורא שורות\n*** openDB: >>>> finished\n"));
}

TEST(Trace, DebugPanelGetsTheLineAndTheIniDecides)
{
    QTemporaryDir dir;
    Trace t(dir.path(), QStringLiteral("open"));
    QString shown;
    t.setDebugPanel([&](const QString& text, int size, const QString& colour, const QString&) {
        shown = QStringLiteral("%1/%2/%3").arg(text).arg(size).arg(colour);
    });
    t.DBMsgBox(QStringLiteral("openDB"), QStringLiteral("reading"), 18, QStringLiteral("Blue"));
    EXPECT_EQ(shown, QStringLiteral("reading/18/Blue"));

    platform::ProfileFile ini(dir.filePath(QStringLiteral("pelkor.ini")));
    EXPECT_FALSE(Trace::wantedBy(ini));   // no file
    ini.writeString(QStringLiteral("misc"), QStringLiteral("debug"), QStringLiteral("0"));
    EXPECT_FALSE(Trace::wantedBy(ini));
    ini.writeString(QStringLiteral("misc"), QStringLiteral("debug"), QStringLiteral("1"));
    EXPECT_TRUE(Trace::wantedBy(ini));
}
