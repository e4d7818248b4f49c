#include "app/Placement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace pelkor {

void centreOn(QWidget& w, const QWidget* owner)
{
    if (owner)
        owner = owner->window();
    const bool ownerShows = owner && owner->isVisible() && !owner->isMinimized();
    QScreen* screen = ownerShows ? owner->screen() : nullptr;
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect area = screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
    // A window not yet shown and not sized takes the size it will show at,
    // and no less than its layout allows. Its frame is not known yet: it
    // will be as wide as its owner's.
    if (!w.isVisible() && !w.testAttribute(Qt::WA_Resized))
        w.adjustSize();
    if (!w.isVisible())
        w.resize(w.size().expandedTo(w.minimumSizeHint()));
    QRect r = w.frameGeometry();
    if (!w.isVisible() && ownerShows) {
        const QRect inner = owner->geometry(), outer = owner->frameGeometry();
        r.adjust(outer.left() - inner.left(), outer.top() - inner.top(), outer.right() - inner.right(),
                 outer.bottom() - inner.bottom());
    }
    r.moveCenter(ownerShows ? owner->frameGeometry().center() : area.center());
    // Whole on the screen where it can be; its top left corner first.
    r.moveLeft(std::max(area.left(), std::min(r.left(), area.right() - r.width() + 1)));
    r.moveTop(std::max(area.top(), std::min(r.top(), area.bottom() - r.height() + 1)));
    w.move(r.topLeft());
}

void showSized(QWidget& w, int width, int height)
{
    const QWidget* owner = w.parentWidget();
    const QScreen* screen = owner ? owner->screen() : QGuiApplication::primaryScreen();
    const QSize room = screen ? screen->availableGeometry().size() * 9 / 10 : QSize(width, height);
    w.resize(std::min(width, room.width()), std::min(height, room.height()));
    centreOn(w, owner);
    w.show();
}

} // namespace pelkor
