// Named: a widget given its control's name, as object name and accessible
// name, so that tests and screen readers find it by the name the logic
// uses. A button keeps its caption readable as its description.
#pragma once

#include <QAbstractButton>
#include <QString>

#include <type_traits>

namespace pelkor {

template <class W>
W* named(W* w, const QString& name)
{
    w->setObjectName(name);
    w->setAccessibleName(name);
    if constexpr (std::is_base_of_v<QAbstractButton, W>)
        w->setAccessibleDescription(w->text());
    return w;
}

} // namespace pelkor
