// What view tests do while a window works: run the event loop until
// something holds (or for a while), and where a screenshot goes.
#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QString>

#include <functional>

namespace pelkor::testing {

// Runs the event loop until pred holds or ms pass; whether it holds.
inline bool waitFor(const std::function<bool()>& pred, int ms = 20000)
{
    QElapsedTimer t;
    t.start();
    while (!pred() && t.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return pred();
}

// Runs the event loop for ms: timers fire, frames paint.
inline void pause(int ms)
{
    waitFor([] { return false; }, ms);
}

// <build>/screenshots/name, the folder made.
inline QString shot(const QString& name)
{
    QDir().mkpath(QStringLiteral(PELKOR_BINARY_DIR "/screenshots"));
    return QStringLiteral(PELKOR_BINARY_DIR "/screenshots/") + name;
}

} // namespace pelkor::testing
