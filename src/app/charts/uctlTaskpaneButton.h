// uctlTaskpaneButton: the owner-drawn button of a task pane.
//
// A push button, or with setCheckable(true) a check button. Its face is a
// skin of the present state stretched to any size by a nine-slice (the four
// 8-pixel corners at their size, the edges stretched along their length,
// the centre both ways; nothing tiled), its outline cut by the skin's
// transparent corners; the caption (text()) reads right to left and ends
// 8 pixels left of the icon, which stands 4 pixels from the right edge. A
// check button in its checked state shows downCaption instead.
//
// The states and their mouse rules:
//   0 normal, 1 disabled (grey, deaf to the mouse), 2 down, 3 over,
//   4 checked.
//   A press makes a push button 2; a check button toggles on the press
//   itself (4, or back to 0). The pointer over a button in 0 makes it 3,
//   leaving makes 3 into 0; 2 stays until the release, wherever the pointer
//   went, and 4 stays whatever the pointer does. A release makes 2 into 3
//   over the button (and clicks), into 0 outside it (no click).
//   Space, Enter and Return do from the keyboard what the press and the
//   release do; the focus is drawn as a dotted frame.
// The skins are images/taskpanes/buttons/button*.png beside the program;
// a skin that is missing is drawn plain in its colours.
#pragma once

#include <QAbstractButton>
#include <QImage>
#include <QString>

#include <array>

namespace pelkor::charts {

class uctlTaskpaneButton : public QAbstractButton {
    Q_OBJECT
public:
    enum State { stateNormal = 0, stateDisabled = 1, stateDown = 2, stateOver = 3, stateChecked = 4 };

    explicit uctlTaskpaneButton(QWidget* parent);

    int buttonState() const { return state_; }
    const QString& downCaption() const { return downCaption_; }
    void setDownCaption(const QString& caption);
    // The text the face shows now: downCaption on a checked check button.
    QString faceText() const;

    // The file of each state's skin and of the icon, from the program's
    // folder.
    static QString skinFile(int state);
    static QString iconFile();
    // The text colour of a state (4 keeps the colour last drawn).
    static QColor textColor(int state);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void enterEvent(QEnterEvent* e) override;
    void leaveEvent(QEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;
    void changeEvent(QEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    bool hitButton(const QPoint& pos) const override;

private:
    void setState(int s);
    // The state the button rests in when nothing is pressed.
    int restingState() const;
    void toggleByUser();
    void updateAccessibleName();
    void updateMask();
    const QImage& skin(int state) const;

    int state_ = stateNormal;
    QString downCaption_;
    QColor lastTextColor_{255, 255, 255};
    bool keyDown_ = false;
    mutable std::array<QImage, 5> skins_;
    QImage icon_;
};

// The nine-slice: src stretched to size, its corners kept at corner pixels.
QImage nineSlice(const QImage& src, const QSize& size, int corner = 8);

} // namespace pelkor::charts
