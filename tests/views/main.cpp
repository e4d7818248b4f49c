// The view tests run real windows: they need a QApplication, on the
// offscreen platform unless a display is asked for. The offscreen screen
// is a desktop's (1600 x 1000, windows without frames), so a window
// centred on another fits on it whole.
#include "app/ui/QtHebrew.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    QString screenFile;
    if (platform.isEmpty() || platform == "offscreen") {
        screenFile = QDir::temp().filePath(QStringLiteral("pelkor-view-screen-%1.json").arg(QCoreApplication::applicationPid()));
        QFile f(screenFile);
        if (f.open(QIODevice::WriteOnly)) {
            f.write(R"({"windowFrameMargins": false,
                        "screens": [{"name": "screen", "x": 0, "y": 0, "width": 1600, "height": 1000,
                                     "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
            f.close();
            qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screenFile.toLocal8Bit());
        } else {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
    }
    QApplication app(argc, argv);
    if (!screenFile.isEmpty()) {
        // Processes the tests start find the platform as it was asked for.
        QFile::remove(screenFile);
        qputenv("QT_QPA_PLATFORM", platform.isEmpty() ? QByteArray("offscreen") : platform);
    }
    app.setLayoutDirection(Qt::RightToLeft);
    // As the program: Qt's own words in Hebrew.
    pelkor::ui::installQtHebrew(app);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
