// KbLayout: read, switch only on a difference, read again.
#include "base/KbLayout.h"

namespace pelkor {

KbLayout::KbLayout(platform::KeyboardLayouts& layouts)
    : layouts_(layouts)
{
    rememberInitial();
}

void KbLayout::rememberInitial()
{
    initialLocId_ = layouts_.active();
}

bool KbLayout::SetKbLayout(const QString& id)
{
    // No name is no layout, even when the active one has no name either.
    if (id.isEmpty())
        return false;
    if (layouts_.active() == id)
        return true;
    // The desktop's own answer is not enough: a switch it accepted may
    // still leave another layout active.
    layouts_.activate(id);
    return layouts_.active() == id;
}

bool KbLayout::switchToInitialLanguage()
{
    return SetKbLayout(initialLocId_);
}

} // namespace pelkor
