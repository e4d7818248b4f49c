// What the chart tests share: a GUI application (text is drawn with the
// desktop's fonts, which only a QGuiApplication reaches; offscreen unless a
// platform is chosen), and colour tests on a surface's pixels.
#pragma once

#include <QColor>
#include <QGuiApplication>
#include <QImage>

#include <cstdlib>

namespace pelkor::testing {

// False when the process already runs a plain QCoreApplication (all tests
// in one process): the caller skips.
inline bool ensureGuiApplication()
{
    static int argc = 1;
    static char name[] = "pelkor_tests";
    static char* argv[] = {name, nullptr};
    if (!QCoreApplication::instance()) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        new QGuiApplication(argc, argv);
    }
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

// Whether the pixel is near the colour (each channel within tol): a line
// drawn with anti-aliasing is solid only in its middle.
inline bool near(const QImage& img, int x, int y, QColor c, int tol = 40)
{
    const QColor p = img.pixelColor(x, y);
    return std::abs(p.red() - c.red()) <= tol && std::abs(p.green() - c.green()) <= tol && std::abs(p.blue() - c.blue()) <= tol;
}

} // namespace pelkor::testing

#define PELKOR_REQUIRE_GUI() \
    if (!pelkor::testing::ensureGuiApplication()) GTEST_SKIP() << "needs a QGuiApplication; run this test alone"
