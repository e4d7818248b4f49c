// XKB layout names to the program's ids, and the groups of a rules-names
// property as setxkbmap and the desktops write it, or of a symbols name.
#include "seams/platform/KeyboardLayouts.h"

#include <gtest/gtest.h>

#include "QtPrinters.h"

using namespace pelkor::platform;

TEST(KeyboardLayouts, XkbLayoutNamesGiveIds)
{
    // A variant or a group number after the name; a name that merely starts
    // like a known one, or none, is no layout.
    EXPECT_EQ(xkbLayoutId(u"il(phonetic)"), QStringLiteral("0000040d"));
    EXPECT_EQ(xkbLayoutId(u" us:1 "), QStringLiteral("00000409"));
    EXPECT_EQ(xkbLayoutId(u"usx"), QString());
    EXPECT_EQ(xkbLayoutId(u""), QString());
}

TEST(KeyboardLayouts, RulesNamesListTheGroupsInOrder)
{
    using namespace Qt::StringLiterals;
    const QByteArray twoGroups("evdev\0pc105\0us,il\0,\0grp:alt_shift_toggle\0", 41);
    EXPECT_EQ(xkbRulesLayouts(twoGroups), (QStringList{u"us"_s, u"il"_s}));
    const QByteArray oneGroup("evdev\0pc105\0il\0\0\0", 17);
    EXPECT_EQ(xkbRulesLayouts(oneGroup), QStringList{u"il"_s});
    // An empty group keeps its place, so the groups after it keep theirs.
    const QByteArray gap("evdev\0pc105\0us,,il\0\0\0", 21);
    EXPECT_EQ(xkbRulesLayouts(gap), (QStringList{u"us"_s, QString(), u"il"_s}));
    // No property, or one cut short.
    EXPECT_TRUE(xkbRulesLayouts(QByteArray()).isEmpty());
    EXPECT_TRUE(xkbRulesLayouts(QByteArray("evdev\0pc105", 11)).isEmpty());
}

TEST(KeyboardLayouts, SymbolsNamesListTheGroupsAndSkipTheOptions)
{
    using namespace Qt::StringLiterals;
    EXPECT_EQ(xkbSymbolsLayouts(u"pc+us+il:2+inet(evdev)"), (QStringList{u"us"_s, u"il"_s}));
    EXPECT_EQ(xkbSymbolsLayouts(u"pc+il(phonetic)+us:2+ru:3+inet(evdev)+group(alt_shift_toggle)"),
              (QStringList{u"il(phonetic)"_s, u"us"_s, u"ru"_s}));
    // A group number out of range is no group.
    EXPECT_EQ(xkbSymbolsLayouts(u"pc+us+il:9"), QStringList{u"us"_s});
    EXPECT_TRUE(xkbSymbolsLayouts(u"").isEmpty());
}
