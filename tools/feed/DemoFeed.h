// DemoFeed: the demonstration feed demo.mdb, table demoOsh, that the demo
// ledger reconciles against.
#pragma once

#include <QDate>
#include <QString>

namespace pelkor::feed {

// Writes demo.mdb at path from the demo ledger at ledgerPath. Returns an
// empty string on success, else why not.
QString generateDemoFeed(const QString& ledgerPath, const QString& path);

} // namespace pelkor::feed
