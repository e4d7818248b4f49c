// The keyboard layouts on a real X server: an Xvfb of the test's own with
// layouts set by setxkbmap, and kb-probe, a process on the xcb platform
// that switches through KbLayout and X11KeyboardLayouts and reads back.
// A layout locked by one process stays on the server, so a second probe
// reads what the first one left. Skipped without Xvfb or setxkbmap.
#include "app/platform/X11KeyboardLayouts.h"

#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

#include "XvfbServer.h"

#include "QtPrinters.h"

namespace {

class X11KeyboardTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty())
            GTEST_SKIP() << "Xvfb is not installed (package xvfb)";
        if (QStandardPaths::findExecutable(QStringLiteral("setxkbmap")).isEmpty())
            GTEST_SKIP() << "setxkbmap is not installed (package x11-xkb-utils)";
        display = server.start(QStringLiteral("640x480x24"));
        ASSERT_FALSE(display.isEmpty()) << "Xvfb gave no display";
    }

    QProcessEnvironment environment() const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("DISPLAY"), display);
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        env.remove(QStringLiteral("WAYLAND_DISPLAY"));
        env.remove(QStringLiteral("XAUTHORITY"));
        return env;
    }
    void setLayouts(const QString& layouts)
    {
        QProcess p;
        p.setProcessEnvironment(environment());
        p.start(QStringLiteral("setxkbmap"), {QStringLiteral("-layout"), layouts});
        ASSERT_TRUE(p.waitForFinished(10000));
        ASSERT_EQ(p.exitCode(), 0) << p.readAllStandardError().constData();
    }
    // kb-probe's lines for these words, joined by " | ".
    QString probe(const QStringList& words)
    {
        QProcess p;
        p.setProcessEnvironment(environment());
        p.start(QStringLiteral(PELKOR_BINARY_DIR "/kb-probe"), words);
        if (!p.waitForFinished(20000))
            return QStringLiteral("kb-probe did not end");
        const QString out = QString::fromUtf8(p.readAllStandardOutput()).trimmed();
        if (p.exitCode() != 0)
            return QStringLiteral("kb-probe failed: ") + QString::fromUtf8(p.readAllStandardError());
        return out.split(QLatin1Char('\n')).join(QStringLiteral(" | "));
    }

    pelkor::testing::XvfbServer server;
    QString display;
};

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

} // namespace

TEST_F(X11KeyboardTest, SwitchesBetweenHebrewAndEnglishGroupsOnTheServer)
{
    setLayouts(QStringLiteral("us,il"));
    EXPECT_EQ(probe(words("kind groups active he he en he")),
              QStringLiteral("x11 | 00000409,0000040d | 00000409 | 1 0000040d | 1 0000040d | 1 00000409 | 1 0000040d"));
    // The first probe left Hebrew; the next starts in it and restores it.
    EXPECT_EQ(probe(words("active en initial")), QStringLiteral("0000040d | 1 00000409 | 1 0000040d"));
    EXPECT_EQ(probe(words("active")), QStringLiteral("0000040d"));
}

TEST_F(X11KeyboardTest, FindsTheGroupsInAnyOrderAndRestoresAThirdLayout)
{
    setLayouts(QStringLiteral("ru,il,us"));
    EXPECT_EQ(probe(words("kind groups active he en initial")),
              QStringLiteral("x11 | 00000419,0000040d,00000409 | 00000419 | 1 0000040d | 1 00000409 | 1 00000419"));
}

TEST_F(X11KeyboardTest, WithoutTheRulesNamesTheKeymapNamesTheGroups)
{
    setLayouts(QStringLiteral("il,us"));
    ASSERT_EQ(probe(words("norules")), QStringLiteral("ok"));
    EXPECT_EQ(probe(words("kind groups he en initial")),
              QStringLiteral("x11 | 0000040d,00000409 | 1 0000040d | 1 00000409 | 1 0000040d"));
}

TEST_F(X11KeyboardTest, WithoutBothLanguagesNothingIsSwitched)
{
    setLayouts(QStringLiteral("us"));
    EXPECT_EQ(probe(words("kind active he en initial")), QStringLiteral("none | - | 0 - | 0 - | 0 -"));
    setLayouts(QStringLiteral("il,ru"));
    EXPECT_EQ(probe(words("kind en")), QStringLiteral("none | 0 -"));
}

TEST(DesktopKeyboardLayouts, OffTheXcbPlatformNothingIsSwitched)
{
    // The view tests run on the offscreen platform.
    const auto layouts = pelkor::desktopKeyboardLayouts();
    EXPECT_EQ(dynamic_cast<pelkor::X11KeyboardLayouts*>(layouts.get()), nullptr);
    EXPECT_EQ(layouts->active(), QString());
    EXPECT_FALSE(layouts->activate(QStringLiteral("0000040d")));
}
