// pelkor-demofeed <ledger.pkr> <demo.mdb>: writes the demonstration feed
// that matches a demo ledger (DemoFeed.h).
#include "DemoFeed.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 3) {
        std::fprintf(stderr, "usage: pelkor-demofeed <ledger.pkr> <demo.mdb>\n");
        return 1;
    }
    const QString error = pelkor::feed::generateDemoFeed(args[1], args[2]);
    if (!error.isEmpty()) {
        std::fprintf(stderr, "%s\n", error.toUtf8().constData());
        return 1;
    }
    return 0;
}
