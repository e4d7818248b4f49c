// An X server of the test's own: Xvfb on a free display, which it names on
// its standard output once it is ready, kept with -noreset (else it would
// reset its keymap and locked group each time its last client leaves).
// The server ends with the object.
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace pelkor::testing {

class XvfbServer {
public:
    // The display (":N"), or empty when the server did not come up.
    QString start(const QString& screen)
    {
        server_.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-noreset"),
                                               QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-screen"),
                                               QStringLiteral("0"), screen});
        if (!server_.waitForStarted(5000))
            return {};
        QByteArray number;
        while (!number.contains('\n') && server_.waitForReadyRead(10000))
            number += server_.readAllStandardOutput();
        bool isNumber = false;
        number.trimmed().toInt(&isNumber);
        return isNumber ? QStringLiteral(":") + QString::fromLatin1(number.trimmed()) : QString();
    }
    ~XvfbServer()
    {
        if (server_.state() != QProcess::NotRunning) {
            server_.terminate();
            if (!server_.waitForFinished(5000))
                server_.kill();
        }
    }

private:
    QProcess server_;
};

} // namespace pelkor::testing
