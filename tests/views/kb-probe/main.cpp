// kb-probe: the program's keyboard layouts in a process of their own, for
// the view tests to run on a real X server (the view tests themselves run
// on the offscreen platform).
//
// It takes the desktop's layouts as the program does, remembers the active
// one, then does each argument in turn and writes one line for each:
//   kind     "x11", or "none" for the layouts that do nothing
//   groups   the ids of the configured groups, comma-separated
//   active   the active layout's id, "-" when it has none
//   norules  removes the root window's _XKB_RULES_NAMES: "ok"
//   he, en, initial   switchToHebrew / switchToEnglish /
//            switchToInitialLanguage: "1" or "0", a blank, the active id
#include "app/platform/X11KeyboardLayouts.h"
#include "base/KbLayout.h"

#include <QGuiApplication>
#include <QtGui/qguiapplication_platform.h>

#include <cstdio>

#include <X11/Xlib.h>

using namespace pelkor;

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    const std::unique_ptr<platform::KeyboardLayouts> layouts = desktopKeyboardLayouts();
    auto* x11 = dynamic_cast<X11KeyboardLayouts*>(layouts.get());
    KbLayout kb(*layouts);
    const auto activeId = [&] {
        const QString id = layouts->active();
        return id.isEmpty() ? QStringLiteral("-") : id;
    };
    for (const QString& arg : app.arguments().mid(1)) {
        QString line;
        if (arg == QLatin1String("kind"))
            line = x11 ? QStringLiteral("x11") : QStringLiteral("none");
        else if (arg == QLatin1String("groups"))
            line = x11 ? x11->groups().join(QLatin1Char(',')) : QString();
        else if (arg == QLatin1String("norules")) {
            Display* display = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->display();
            XDeleteProperty(display, DefaultRootWindow(display), XInternAtom(display, "_XKB_RULES_NAMES", False));
            XSync(display, False);
            line = QStringLiteral("ok");
        } else if (arg == QLatin1String("active"))
            line = activeId();
        else if (arg == QLatin1String("he") || arg == QLatin1String("en") || arg == QLatin1String("initial")) {
            const bool ok = arg == QLatin1String("he") ? kb.switchToHebrew()
                          : arg == QLatin1String("en") ? kb.switchToEnglish()
                                                       : kb.switchToInitialLanguage();
            line = QStringLiteral("%1 %2").arg(ok ? 1 : 0).arg(activeId());
        } else {
            std::fprintf(stderr, "kb-probe: unknown word %s\n", qPrintable(arg));
            return 2;
        }
        std::printf("%s\n", qPrintable(line));
    }
    return 0;
}
