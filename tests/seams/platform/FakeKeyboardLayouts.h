// FakeKeyboardLayouts: a desktop's keyboard layouts for tests. It keeps an
// active id, offers the layouts in `installed`, and records every read and
// every activate() call, so a test sees what was switched and what was not.
#pragma once

#include "seams/platform/KeyboardLayouts.h"

#include <QStringList>

namespace pelkor::testing {

class FakeKeyboardLayouts : public platform::KeyboardLayouts {
public:
    explicit FakeKeyboardLayouts(QString activeId = QStringLiteral("0000040d"),
                                 QStringList installedIds = {QStringLiteral("0000040d"), QStringLiteral("00000409")})
        : current(std::move(activeId)), installed(std::move(installedIds))
    {
    }

    QString active() override
    {
        ++reads;
        return current;
    }
    bool activate(const QString& id) override
    {
        activations << id;
        if (!installed.contains(id))
            return false;
        // A desktop that answers yes and keeps its layout (one that
        // switches later, or overrides the request).
        if (!switchTakes)
            return true;
        current = id;
        return true;
    }

    QString current;        // the active layout
    QStringList installed;  // what activate() can reach
    bool switchTakes = true;
    QStringList activations;
    int reads = 0;
};

} // namespace pelkor::testing
