// KbLayout: the keyboard language that follows the cursor.
//
// The interface is Hebrew, and sums and kind codes are typed in Latin
// digits, so the window asks for Hebrew in the text columns and fields and
// for English in the others, and at exit for the layout that was active
// when the program started. Each request reads the active layout first and
// switches only when it differs, so a cursor that stays in one language
// costs one read and no switch. A switch that fails is no error: the
// caller may look at the result, and nothing else changes.
//
// The desktop's side is a platform::KeyboardLayouts, which the owner keeps
// alive as long as this object.
#pragma once

#include "seams/platform/KeyboardLayouts.h"

#include <QString>

namespace pelkor {

class KbLayout {
public:
    static inline const QString hebrewLayout = QStringLiteral("0000040d");
    static inline const QString englishLayout = QStringLiteral("00000409");

    // Remembers the layout active now as the one to restore at exit.
    explicit KbLayout(platform::KeyboardLayouts& layouts);

    // True when `id` is the active layout, whether it was already or the
    // switch made it so; false when the switch failed or did not take.
    bool SetKbLayout(const QString& id);
    bool switchToHebrew() { return SetKbLayout(hebrewLayout); }
    bool switchToEnglish() { return SetKbLayout(englishLayout); }
    // Back to the layout active at start (or at the last rememberInitial);
    // false, and nothing switched, when that one had no name.
    bool switchToInitialLanguage();

    // Takes the layout active now as the one to restore.
    void rememberInitial();
    const QString& initialLocId() const { return initialLocId_; }

private:
    platform::KeyboardLayouts& layouts_;
    QString initialLocId_;
};

} // namespace pelkor
