#include "app/web/frmWaitMessageView.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>
#include <QWebEngineView>

namespace pelkor::web {

frmWaitMessageView::frmWaitMessageView(const QString& programDir, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
{
    setObjectName(QStringLiteral("frmWaitMessage"));
    setAccessibleName(QStringLiteral("הודעת המתנה"));
    setLayoutDirection(Qt::RightToLeft);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(1, 1, 1, 1);
    wb_ = new QtWebView(this);
    layout->addWidget(wb_);
    // 340 x 150: room for the animation and a line of about thirty letters.
    resize(340, 150);
    logic_ = std::make_unique<frmWaitMessage>(*wb_, programDir);
    // The engine runs no script in a page nobody can see, so the window is
    // there, transparent, while its page loads, and becomes visible once the
    // logic has written the words in.
    connect(wb_->engineView(), &QWebEngineView::loadStarted, this, [this] {
        if (logic_->message().isEmpty() || (isVisible() && windowOpacity() > 0))
            return;
        setWindowOpacity(0);
        placeCentred();
        show();
    });
    logic_->visibilityChanged = [this](bool visible) {
        if (!visible)
            return hide();
        placeCentred();
        setWindowOpacity(1);
        show();
    };
    logic_->raise = [this] {
        raise();
        activateWindow();
    };
}

void frmWaitMessageView::placeCentred()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect area = screen->availableGeometry();
    move(area.center() - rect().center());
}

} // namespace pelkor::web
