// The task-pane button under a mouse and a keyboard made of events: its
// states, its outline, what a screen reader hears. Screenshot:
// <build>/screenshots/taskpaneButtons.png.
#include "app/charts/uctlTaskpaneButton.h"
#include "views/ViewWait.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;
using charts::uctlTaskpaneButton;

namespace {

void mouse(QWidget& w, QEvent::Type type, QPoint at)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(Qt::LeftButton);
    QMouseEvent e(type, QPointF(at), QPointF(w.mapToGlobal(at)), button,
                  type == QEvent::MouseMove ? Qt::MouseButtons(Qt::NoButton) : held, Qt::NoModifier);
    QCoreApplication::sendEvent(&w, &e);
}
void press(QWidget& w, QPoint at = {20, 10}) { mouse(w, QEvent::MouseButtonPress, at); }
void release(QWidget& w, QPoint at = {20, 10}) { mouse(w, QEvent::MouseButtonRelease, at); }
void move(QWidget& w, QPoint at = {20, 10}) { mouse(w, QEvent::MouseMove, at); }
void leave(QWidget& w)
{
    QEvent e(QEvent::Leave);
    QCoreApplication::sendEvent(&w, &e);
}
void key(QWidget& w, QEvent::Type type, int k)
{
    QKeyEvent e(type, k, Qt::NoModifier, k == Qt::Key_Space ? QStringLiteral(" ") : QString());
    QCoreApplication::sendEvent(&w, &e);
}

// How many times a signal came.
struct Count {
    template <class Signal>
    Count(QAbstractButton& b, Signal s) { QObject::connect(&b, s, [this] { ++n; }); }
    int count() const { return n; }
    int n = 0;
};

struct Buttons : ::testing::Test {
    Buttons()
    {
        push.setText(QStringLiteral("הצג"));
        push.resize(140, 30);
        check.setText(QStringLiteral("הצג גרפים"));
        check.setDownCaption(QStringLiteral("הסתר גרפים"));
        check.setCheckable(true);
        check.resize(140, 30);
    }
    uctlTaskpaneButton push{nullptr};
    uctlTaskpaneButton check{nullptr};
};

} // namespace

TEST_F(Buttons, APushButtonIsDownWhilePressedEvenDraggedOutAndClicksOnlyReleasedOverItself)
{
    Count clicks(push, &QAbstractButton::clicked);
    move(push);
    EXPECT_EQ(push.buttonState(), uctlTaskpaneButton::stateOver);
    press(push);
    EXPECT_EQ(push.buttonState(), uctlTaskpaneButton::stateDown);
    // Dragged out: still down, a leave notwithstanding.
    move(push, {400, 200});
    leave(push);
    EXPECT_EQ(push.buttonState(), uctlTaskpaneButton::stateDown);
    EXPECT_TRUE(push.isDown());
    release(push, {400, 200});
    EXPECT_EQ(push.buttonState(), uctlTaskpaneButton::stateNormal);
    EXPECT_EQ(clicks.count(), 0);
    // Released over itself: over, and one click.
    press(push);
    move(push, {400, 200});
    move(push);
    release(push);
    EXPECT_EQ(push.buttonState(), uctlTaskpaneButton::stateOver);
    EXPECT_EQ(clicks.count(), 1);
    leave(push);
    EXPECT_EQ(push.buttonState(), uctlTaskpaneButton::stateNormal);
}

TEST_F(Buttons, ADisabledButtonIgnoresTheMouseAndTheKeysAndComesBackNormal)
{
    Count clicks(push, &QAbstractButton::clicked);
    push.setEnabled(false);
    EXPECT_EQ(push.buttonState(), uctlTaskpaneButton::stateDisabled);
    for (QWidget* w : {static_cast<QWidget*>(&push), static_cast<QWidget*>(&check)}) {
        w->setEnabled(false);
        move(*w);
        press(*w);
        release(*w);
        key(*w, QEvent::KeyPress, Qt::Key_Space);
        key(*w, QEvent::KeyRelease, Qt::Key_Space);
    }
    EXPECT_EQ(push.buttonState(), uctlTaskpaneButton::stateDisabled);
    EXPECT_EQ(check.buttonState(), uctlTaskpaneButton::stateDisabled);
    EXPECT_FALSE(check.isChecked());
    EXPECT_EQ(clicks.count(), 0);
    EXPECT_EQ(uctlTaskpaneButton::textColor(uctlTaskpaneButton::stateDisabled), QColor(150, 150, 150));
    push.setEnabled(true);
    EXPECT_EQ(push.buttonState(), uctlTaskpaneButton::stateNormal);
}

TEST_F(Buttons, ACheckButtonTogglesOnThePressAndLeavingKeepsItChecked)
{
    Count toggles(check, &QAbstractButton::toggled);
    move(check);
    press(check);
    EXPECT_TRUE(check.isChecked());
    EXPECT_EQ(check.buttonState(), uctlTaskpaneButton::stateChecked);
    EXPECT_EQ(toggles.count(), 1);
    EXPECT_EQ(check.faceText(), QStringLiteral("הסתר גרפים"));
    release(check);
    move(check, {400, 200});
    leave(check);
    move(check);
    EXPECT_EQ(check.buttonState(), uctlTaskpaneButton::stateChecked);
    // The next press unchecks, before any release.
    press(check);
    EXPECT_FALSE(check.isChecked());
    EXPECT_EQ(check.buttonState(), uctlTaskpaneButton::stateNormal);
    EXPECT_EQ(check.faceText(), QStringLiteral("הצג גרפים"));
    release(check);
    // A check the host sets shows too.
    check.setChecked(true);
    EXPECT_EQ(check.buttonState(), uctlTaskpaneButton::stateChecked);
}

TEST_F(Buttons, SpaceAndEnterWorkAndAScreenReaderHearsTheCaptionShown)
{
    Count clicks(push, &QAbstractButton::clicked);
    key(push, QEvent::KeyPress, Qt::Key_Space);
    EXPECT_EQ(push.buttonState(), uctlTaskpaneButton::stateDown);
    key(push, QEvent::KeyRelease, Qt::Key_Space);
    key(push, QEvent::KeyPress, Qt::Key_Return);
    key(push, QEvent::KeyRelease, Qt::Key_Return);
    EXPECT_EQ(clicks.count(), 2);
    key(check, QEvent::KeyPress, Qt::Key_Enter);
    EXPECT_TRUE(check.isChecked());
    EXPECT_EQ(push.focusPolicy(), Qt::StrongFocus);

    auto name = [](QWidget& w) { return QAccessible::queryAccessibleInterface(&w)->text(QAccessible::Name); };
    EXPECT_EQ(name(push), QStringLiteral("הצג"));
    push.setText(QStringLiteral("סגור"));
    EXPECT_EQ(name(push), QStringLiteral("סגור"));
    EXPECT_EQ(name(check), QStringLiteral("הסתר גרפים"));
    key(check, QEvent::KeyPress, Qt::Key_Space);
    EXPECT_EQ(name(check), QStringLiteral("הצג גרפים"));
}

TEST(TaskpaneButtonFace, TheNineSliceKeepsTheCornersAndStretchesTheRest)
{
    // A 24 x 24 source: corners red, edges green, centre blue.
    QImage src(24, 24, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < 24; ++y)
        for (int x = 0; x < 24; ++x) {
            const bool ex = x < 8 || x >= 16, ey = y < 8 || y >= 16;
            src.setPixel(x, y, ex && ey ? 0xFFFF0000 : ex || ey ? 0xFF00FF00 : 0xFF0000FF);
        }
    src.setPixel(0, 0, 0x00000000);
    const QImage out = charts::nineSlice(src, QSize(200, 40));
    ASSERT_EQ(out.size(), QSize(200, 40));
    EXPECT_EQ(out.pixel(0, 0), 0x00000000u);       // the transparent corner stays so
    EXPECT_EQ(out.pixel(7, 7), 0xFFFF0000u);
    EXPECT_EQ(out.pixel(192, 32), 0xFFFF0000u);    // the far corner at its size
    EXPECT_EQ(out.pixel(191, 32), 0xFF00FF00u);    // the edge runs up to it
    EXPECT_EQ(out.pixel(100, 3), 0xFF00FF00u);
    EXPECT_EQ(out.pixel(100, 20), 0xFF0000FFu);
    EXPECT_EQ(out.pixel(8, 20), 0xFF0000FFu);
}

TEST(TaskpaneButtonFace, TheOutlineFollowsTheSkinsCornersAndTheStatesLookApart)
{
    QWidget pane;
    pane.setLayoutDirection(Qt::RightToLeft);
    pane.setStyleSheet(QStringLiteral("background: #DDE6F2;"));
    auto* row = new QHBoxLayout(&pane);
    const char* captions[] = {"רגיל", "לא זמין", "לחוץ", "מעל", "מסומן"};
    std::vector<uctlTaskpaneButton*> b;
    for (const char* c : captions) {
        b.push_back(new uctlTaskpaneButton(&pane));
        b.back()->setText(QString::fromUtf8(c));
        b.back()->setFixedSize(120, 32);
        row->addWidget(b.back());
    }
    b[1]->setEnabled(false);
    press(*b[2]);
    move(*b[3]);
    b[4]->setCheckable(true);
    b[4]->setDownCaption(QStringLiteral("מסומן ✓"));
    press(*b[4]);
    pane.resize(660, 60);
    pane.show();
    pause(100);
    // The skin's transparent corner is outside the button's outline.
    EXPECT_FALSE(b[0]->mask().contains(QPoint(0, 0)));
    EXPECT_TRUE(b[0]->mask().contains(QPoint(60, 16)));
    std::vector<QImage> faces;
    for (auto* w : b)
        faces.push_back(w->grab().toImage());
    for (size_t i = 0; i < faces.size(); ++i)
        for (size_t j = i + 1; j < faces.size(); ++j)
            EXPECT_NE(faces[i], faces[j]) << i << " " << j;
    pane.grab().save(shot(QStringLiteral("taskpaneButtons.png")));
}
