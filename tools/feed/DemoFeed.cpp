#include "DemoFeed.h"
namespace pelkor::feed {
QString generateDemoFeed(const QString&, const QString&) { return QStringLiteral("not yet"); }
}
