// X11KeyboardLayouts: XKB groups read from the root window, locked and
// read back on Qt's display connection.
#include "app/platform/X11KeyboardLayouts.h"

#include "base/KbLayout.h"

#include <QGuiApplication>
#include <QtGui/qguiapplication_platform.h>

// Last: the X headers define names (None, Bool, Status) Qt's headers use.
#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>

namespace pelkor {

namespace {

// The value of the root window's _XKB_RULES_NAMES, empty when it has none.
QByteArray rulesNames(Display* display)
{
    const Atom rulesAtom = XInternAtom(display, "_XKB_RULES_NAMES", True);
    if (rulesAtom == None)
        return {};
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long after = 0;
    unsigned char* data = nullptr;
    const int status = XGetWindowProperty(display, DefaultRootWindow(display), rulesAtom, 0, 1024, False,
                                          XA_STRING, &type, &format, &count, &after, &data);
    QByteArray value;
    if (status == Success && type == XA_STRING && format == 8 && data)
        value = QByteArray(reinterpret_cast<const char*>(data), qsizetype(count));
    if (data)
        XFree(data);
    return value;
}

// The keymap's symbols name ("pc+us+il:2+inet(evdev)"), empty when unknown.
QString symbolsName(Display* display)
{
    XkbDescPtr keyboard = XkbAllocKeyboard();
    if (!keyboard)
        return {};
    QString name;
    if (XkbGetNames(display, XkbSymbolsNameMask, keyboard) == Success && keyboard->names
        && keyboard->names->symbols != None) {
        if (char* text = XGetAtomName(display, keyboard->names->symbols)) {
            name = QString::fromLatin1(text);
            XFree(text);
        }
    }
    XkbFreeKeyboard(keyboard, 0, True);
    return name;
}

} // namespace

QStringList X11KeyboardLayouts::groups() const
{
    // The rules names are what setxkbmap and the desktops write; a server
    // without them still names its keymap's symbols.
    QStringList layouts = platform::xkbRulesLayouts(rulesNames(display_));
    if (layouts.isEmpty())
        layouts = platform::xkbSymbolsLayouts(symbolsName(display_));
    QStringList ids;
    for (const QString& layout : layouts)
        ids << platform::xkbLayoutId(layout);
    return ids;
}

QString X11KeyboardLayouts::active()
{
    XkbStateRec state{};
    if (XkbGetState(display_, XkbUseCoreKbd, &state) != Success)
        return {};
    return groups().value(state.locked_group);
}

bool X11KeyboardLayouts::activate(const QString& id)
{
    if (id.isEmpty())
        return false;
    const int group = int(groups().indexOf(id));
    if (group < 0)
        return false;
    if (!XkbLockGroup(display_, XkbUseCoreKbd, unsigned(group)))
        return false;
    XFlush(display_);
    return true;
}

std::unique_ptr<platform::KeyboardLayouts> desktopKeyboardLayouts()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return platform::noKeyboardLayouts();
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    Display* display = x11 ? x11->display() : nullptr;
    if (!display)
        return platform::noKeyboardLayouts();
    int opcode = 0, event = 0, error = 0, major = XkbMajorVersion, minor = XkbMinorVersion;
    if (!XkbQueryExtension(display, &opcode, &event, &error, &major, &minor))
        return platform::noKeyboardLayouts();
    auto layouts = std::make_unique<X11KeyboardLayouts>(display);
    const QStringList groups = layouts->groups();
    if (!groups.contains(KbLayout::hebrewLayout) || !groups.contains(KbLayout::englishLayout))
        return platform::noKeyboardLayouts();
    return layouts;
}

} // namespace pelkor
