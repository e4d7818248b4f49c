// ChartView: a picture that shows a chart surface (picChart and the
// report windows' charts).
//
// It copies the surface in its paint event and nothing else, tells its
// owner its size when it changes (the owner makes a surface of that size
// and draws it), and forwards the mouse: moves for the hover, the release
// of a click, and the wheel. It repaints when the surface says it changed.
#pragma once

#include <QWidget>

#include <functional>

namespace pelkor::charts { class clsBackBuffer; }

namespace pelkor {

class ChartView : public QWidget {
    Q_OBJECT
public:
    struct Handlers {
        std::function<void(int width, int height)> resized;
        std::function<void(int x, int y)> mouseMove;
        std::function<void()> mouseUp;
        std::function<void(int rotation)> wheel;
    };
    ChartView(charts::clsBackBuffer& surface, Handlers handlers, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;

private:
    charts::clsBackBuffer& surface_;
    Handlers on_;
};

} // namespace pelkor
