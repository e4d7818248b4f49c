// storedKind: a kind as the user may type it ("+12", "12+" as a grid
// shows it, or "12", taken as income) in its stored form, sign in front;
// other text stays as it is, trimmed. The ledger's commit and the
// transfer's grid read typed kinds with it.
#pragma once

#include <QString>

namespace pelkor {

QString storedKind(const QString& typed);

} // namespace pelkor
