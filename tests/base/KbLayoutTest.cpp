// The keyboard language: switch only on a difference, trust the read back
// rather than the desktop's answer, restore the layout of the start.
#include "base/KbLayout.h"
#include "seams/platform/FakeKeyboardLayouts.h"

#include <gtest/gtest.h>

#include "QtPrinters.h"

using namespace pelkor;
using pelkor::testing::FakeKeyboardLayouts;

namespace {
const QString russian = QStringLiteral("00000419");
}

TEST(KbLayout, SwitchesOnlyWhenTheActiveLayoutDiffers)
{
    FakeKeyboardLayouts desktop(KbLayout::hebrewLayout);
    KbLayout kb(desktop);
    // The cursor stays in text columns: reads, no switch.
    EXPECT_TRUE(kb.switchToHebrew());
    EXPECT_TRUE(kb.SetKbLayout(QStringLiteral("0000040d")));
    EXPECT_TRUE(desktop.activations.isEmpty());
    // Into a sum column, and on along sum columns: one switch.
    EXPECT_TRUE(kb.switchToEnglish());
    EXPECT_TRUE(kb.switchToEnglish());
    EXPECT_EQ(desktop.activations, QStringList{KbLayout::englishLayout});
    EXPECT_EQ(desktop.current, QStringLiteral("00000409"));
    // The user switched by hand meanwhile: the next request sees it.
    desktop.current = russian;
    EXPECT_TRUE(kb.switchToEnglish());
    EXPECT_EQ(desktop.activations.size(), 2);
}

TEST(KbLayout, AFailedSwitchIsFalseAndChangesNothing)
{
    // English is not installed.
    FakeKeyboardLayouts desktop(KbLayout::hebrewLayout, {KbLayout::hebrewLayout});
    KbLayout kb(desktop);
    EXPECT_FALSE(kb.switchToEnglish());
    EXPECT_EQ(desktop.current, KbLayout::hebrewLayout);
    EXPECT_TRUE(kb.switchToHebrew());

    // The desktop says yes and keeps its layout: the read back decides.
    FakeKeyboardLayouts stubborn(KbLayout::hebrewLayout);
    stubborn.switchTakes = false;
    KbLayout kb2(stubborn);
    EXPECT_FALSE(kb2.switchToEnglish());
    EXPECT_EQ(stubborn.activations, QStringList{KbLayout::englishLayout});

    // A layout with no name is never asked for.
    EXPECT_FALSE(kb.SetKbLayout(QString()));
}

TEST(KbLayout, ExitRestoresTheLayoutOfTheStartWhateverCameBetween)
{
    FakeKeyboardLayouts desktop(russian, {KbLayout::hebrewLayout, KbLayout::englishLayout, russian});
    KbLayout kb(desktop);
    EXPECT_EQ(kb.initialLocId(), russian);
    kb.switchToHebrew();
    kb.switchToEnglish();
    kb.switchToHebrew();
    EXPECT_TRUE(kb.switchToInitialLanguage());
    EXPECT_EQ(desktop.current, russian);

    // Started in English and left in English: nothing to switch.
    FakeKeyboardLayouts english(KbLayout::englishLayout);
    KbLayout kb2(english);
    kb2.switchToHebrew();
    kb2.switchToEnglish();
    english.activations.clear();
    EXPECT_TRUE(kb2.switchToInitialLanguage());
    EXPECT_TRUE(english.activations.isEmpty());

    // rememberInitial takes the layout active at its call.
    kb2.switchToHebrew();
    kb2.rememberInitial();
    kb2.switchToEnglish();
    kb2.switchToInitialLanguage();
    EXPECT_EQ(english.current, KbLayout::hebrewLayout);
}

TEST(KbLayout, ADesktopWithoutLayoutsIsHarmless)
{
    const auto none = platform::noKeyboardLayouts();
    KbLayout kb(*none);
    EXPECT_EQ(kb.initialLocId(), QString());
    EXPECT_FALSE(kb.switchToHebrew());
    EXPECT_FALSE(kb.switchToEnglish());
    // An unnamed layout at start is not "restored" as a success.
    EXPECT_FALSE(kb.switchToInitialLanguage());
}
