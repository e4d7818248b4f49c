// FeedWriter: the feed database written whole or not at all.
//
// The feed (Schema.h: one "<bank>Osh" table per bank and "main") is built
// in a new file beside the target, flushed to disk, and renamed over the
// old feed in one step. A failure at any point removes the new file and
// leaves the old feed as it was. The renames of the old feed's "main" table
// are carried over; its statement rows are not (the new feed is the whole
// statement).
#pragma once

#include "FeedRows.h"

#include <QString>

namespace pelkor::feed {

// Writes rows into table (e.g. "poalimOsh") of a new feed at path. Returns
// an empty string on success, else why it failed (in Hebrew).
QString writeFeed(const QString& path, const QString& table, const QList<FeedRow>& rows);

} // namespace pelkor::feed
