#include "app/charts/uctlTaskpaneButton.h"

#include <QBitmap>
#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace pelkor::charts {

namespace {

const char* const skinNames[5] = {"button", "button_disabled", "button_down", "button_over", "button_checked"};

// The colours a missing skin is drawn in: face and border.
const QRgb plainFace[5] = {0xFF2A5AA6, 0xFFD6D6D6, 0xFF1E4280, 0xFF3C74C4, 0xFF1F7468};
const QRgb plainBorder[5] = {0xFF143064, 0xFFA8A8A8, 0xFF0C2048, 0xFF143064, 0xFF0E4038};

QImage plainSkin(int state)
{
    QImage img(32, 24, QImage::Format_ARGB32_Premultiplied);
    img.fill(Qt::transparent);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QColor::fromRgba(plainBorder[state]));
    p.setBrush(QColor::fromRgba(plainFace[state]));
    p.drawRoundedRect(QRectF(0.5, 0.5, 31, 23), 6, 6);
    return img;
}

} // namespace

QImage nineSlice(const QImage& src, const QSize& size, int corner)
{
    QImage out(size, QImage::Format_ARGB32_Premultiplied);
    out.fill(Qt::transparent);
    if (src.isNull() || size.isEmpty())
        return out;
    const int c = std::min({corner, src.width() / 2, src.height() / 2, size.width() / 2, size.height() / 2});
    const int sw = src.width(), sh = src.height(), w = size.width(), h = size.height();
    const int sx[4] = {0, c, sw - c, sw}, sy[4] = {0, c, sh - c, sh};
    const int dx[4] = {0, c, w - c, w}, dy[4] = {0, c, h - c, h};
    QPainter p(&out);
    p.setCompositionMode(QPainter::CompositionMode_Source);
    p.setRenderHint(QPainter::SmoothPixmapTransform, false);
    for (int j = 0; j < 3; ++j)
        for (int i = 0; i < 3; ++i) {
            const QRect from(sx[i], sy[j], sx[i + 1] - sx[i], sy[j + 1] - sy[j]);
            const QRect to(dx[i], dy[j], dx[i + 1] - dx[i], dy[j + 1] - dy[j]);
            if (!from.isEmpty() && !to.isEmpty())
                p.drawImage(to, src, from);
        }
    return out;
}

uctlTaskpaneButton::uctlTaskpaneButton(QWidget* parent) : QAbstractButton(parent)
{
    setLayoutDirection(Qt::RightToLeft);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_Hover);
    QFont f(QStringLiteral("Arial"), 11);
    f.setBold(true);
    setFont(f);
    icon_.load(iconFile());
    // A check set by the host (setChecked) shows at once.
    connect(this, &QAbstractButton::toggled, this, [this](bool) {
        if (state_ != stateDisabled && state_ != stateDown)
            setState(restingState());
    });
}

QString uctlTaskpaneButton::skinFile(int state)
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/images/taskpanes/buttons/")
        + QLatin1String(skinNames[std::clamp(state, 0, 4)]) + QStringLiteral(".png");
}

QString uctlTaskpaneButton::iconFile()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/images/taskpanes/buttons/mini_add.png");
}

QColor uctlTaskpaneButton::textColor(int state)
{
    switch (state) {
    case stateDisabled: return QColor(150, 150, 150);
    case stateDown:
    case stateOver: return QColor(255, 255, 0);
    default: return QColor(255, 255, 255);
    }
}

const QImage& uctlTaskpaneButton::skin(int state) const
{
    QImage& s = skins_[size_t(state)];
    if (s.isNull() && !s.load(skinFile(state)))
        s = plainSkin(state);
    return s;
}

void uctlTaskpaneButton::setDownCaption(const QString& caption)
{
    downCaption_ = caption;
    updateAccessibleName();
    update();
}

QString uctlTaskpaneButton::faceText() const
{
    return isCheckable() && state_ == stateChecked && !downCaption_.isEmpty() ? downCaption_ : text();
}

QSize uctlTaskpaneButton::sizeHint() const
{
    const QFontMetrics fm(font());
    return QSize(fm.horizontalAdvance(faceText()) + icon_.width() + 4 + 8 + 16, std::max(fm.height(), icon_.height()) + 12);
}

int uctlTaskpaneButton::restingState() const
{
    if (!isEnabled())
        return stateDisabled;
    if (isCheckable() && isChecked())
        return stateChecked;
    return underMouse() ? stateOver : stateNormal;
}

void uctlTaskpaneButton::setState(int s)
{
    if (s == state_)
        return;
    state_ = s;
    updateAccessibleName();
    updateMask();
    update();
}

void uctlTaskpaneButton::updateAccessibleName()
{
    // Empty: a screen reader reads the caption (text()) itself, whenever
    // the host changes it; the down caption only while it shows.
    setAccessibleName(faceText() == text() ? QString() : faceText());
}

void uctlTaskpaneButton::toggleByUser()
{
    // The check follows the press; toggled() and clicked() tell the host.
    QAbstractButton::setChecked(!isChecked());
    setState(isChecked() ? stateChecked : stateNormal);
    emit clicked(isChecked());
}

bool uctlTaskpaneButton::hitButton(const QPoint& pos) const { return rect().contains(pos); }

void uctlTaskpaneButton::mousePressEvent(QMouseEvent* e)
{
    if (state_ == stateDisabled || e->button() != Qt::LeftButton) {
        e->ignore();
        return;
    }
    e->accept();
    if (isCheckable()) {
        toggleByUser();
        return;
    }
    setDown(true);
    setState(stateDown);
    emit pressed();
}

void uctlTaskpaneButton::mouseMoveEvent(QMouseEvent* e)
{
    // A pressed button stays down wherever the pointer goes.
    if (state_ == stateNormal && rect().contains(e->position().toPoint()))
        setState(stateOver);
    e->accept();
}

void uctlTaskpaneButton::mouseReleaseEvent(QMouseEvent* e)
{
    if (e->button() != Qt::LeftButton || state_ != stateDown) {
        e->ignore();
        return;
    }
    e->accept();
    const bool inside = rect().contains(e->position().toPoint());
    setDown(false);
    setState(inside ? stateOver : stateNormal);
    emit released();
    if (inside)
        emit clicked(false);
}

void uctlTaskpaneButton::enterEvent(QEnterEvent* e)
{
    if (state_ == stateNormal)
        setState(stateOver);
    QAbstractButton::enterEvent(e);
}

void uctlTaskpaneButton::leaveEvent(QEvent* e)
{
    if (state_ == stateOver)
        setState(stateNormal);
    QAbstractButton::leaveEvent(e);
}

void uctlTaskpaneButton::keyPressEvent(QKeyEvent* e)
{
    const bool activates = e->key() == Qt::Key_Space || e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter;
    if (!activates || state_ == stateDisabled) {
        QWidget::keyPressEvent(e);
        return;
    }
    e->accept();
    if (e->isAutoRepeat())
        return;
    if (isCheckable()) {
        toggleByUser();
        return;
    }
    keyDown_ = true;
    setDown(true);
    setState(stateDown);
    emit pressed();
}

void uctlTaskpaneButton::keyReleaseEvent(QKeyEvent* e)
{
    const bool activates = e->key() == Qt::Key_Space || e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter;
    if (!activates || e->isAutoRepeat() || !keyDown_) {
        QWidget::keyReleaseEvent(e);
        return;
    }
    e->accept();
    keyDown_ = false;
    setDown(false);
    setState(restingState());
    emit released();
    emit clicked(false);
}

void uctlTaskpaneButton::changeEvent(QEvent* e)
{
    if (e->type() == QEvent::EnabledChange) {
        if (!isEnabled()) {
            setDown(false);
            keyDown_ = false;
        }
        setState(restingState());
    }
    QAbstractButton::changeEvent(e);
}

void uctlTaskpaneButton::resizeEvent(QResizeEvent* e)
{
    QAbstractButton::resizeEvent(e);
    updateMask();
}

void uctlTaskpaneButton::updateMask()
{
    // The outline follows the skin: its transparent corners are cut away.
    if (size().isEmpty())
        return;
    const QImage face = nineSlice(skin(state_), size());
    setMask(QBitmap::fromImage(face.createAlphaMask()));
}

void uctlTaskpaneButton::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.drawImage(0, 0, nineSlice(skin(state_), size()));
    if (state_ != stateChecked)
        lastTextColor_ = textColor(state_);
    const int shift = state_ == stateDown ? 2 : 0;
    int right = width() - 4;
    if (!icon_.isNull()) {
        const QRect iconRect(right - icon_.width() + shift, (height() - icon_.height()) / 2 + shift, icon_.width(),
                             icon_.height());
        p.drawImage(iconRect, icon_);
        right = iconRect.left() - shift - 8;
    } else {
        right -= 4;
    }
    p.setFont(font());
    p.setPen(lastTextColor_);
    const QRect textRect(4 + shift, shift, right - 4, height());
    p.drawText(textRect, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, faceText());
    if (hasFocus()) {
        QStyleOptionFocusRect o;
        o.initFrom(this);
        o.rect = rect().adjusted(3, 3, -3, -3);
        o.backgroundColor = QColor::fromRgba(plainFace[state_]);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &o, &p, this);
    }
}

} // namespace pelkor::charts
