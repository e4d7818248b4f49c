#include "BenchSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>

#include <cstdio>

namespace pelkor::bench {

void printFigure(const QString& figure, double mine, double base, const char* target, int decimals)
{
    std::printf("%-28s %12.*f %12.*f %8.2f %8s\n", figure.toUtf8().constData(), decimals, mine, decimals, base, mine / base,
                target);
    std::fflush(stdout);
}

bool waitUntil(const std::function<bool()>& done, int timeoutMs)
{
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < timeoutMs)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return done();
}

void childFigure(const QString& program, const QStringList& args, const QString& tag, const QString& figure,
                 const char* target, int timeoutMs)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    p.setProcessEnvironment(env);
    p.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    p.start(program, args);
    const bool finished = p.waitForFinished(timeoutMs);
    const QStringList words = QString::fromUtf8(p.readAllStandardOutput()).trimmed().split(QLatin1Char(' '));
    if (!finished || words.value(0) != tag) {
        std::printf("%-28s skipped: %s\n", figure.toUtf8().constData(),
                    finished ? qPrintable(words.mid(1).join(QLatin1Char(' '))) : "WebEngine did not answer");
        std::fflush(stdout);
        return;
    }
    printFigure(figure, words.value(1).toDouble(), words.value(2).toDouble(), target);
}

} // namespace pelkor::bench
