// RedLine: the thin red line under one row of a table view.
//
// It marks the last line that agrees with the bank. It lies on the view's
// viewport, across the columns, at the lower edge of the given row, and
// follows the view by itself: scrolling, a resize, a row or column that
// changes size, a new model or a reset. When the row is out of view, or
// hidden, or no row is given, it hides. It takes no mouse events.
#pragma once

#include <QPointer>
#include <QWidget>

class QTableView;

namespace pelkor::grid {

class RedLine : public QWidget {
    Q_OBJECT
public:
    // Thickness in pixels: thin, yet seen on a high-density screen.
    static constexpr int thickness = 2;

    explicit RedLine(QTableView* view);

    // The item row (the view's model row) to lie under; -1 hides the line.
    void setRow(int itemRow);
    int row() const { return row_; }

    // Places or hides the line for where the view stands now.
    void place();

protected:
    bool eventFilter(QObject* o, QEvent* e) override;
    void paintEvent(QPaintEvent* e) override;

private:
    void connectModel();

    QTableView* view_;
    QPointer<QObject> model_;
    int row_ = -1;
};

} // namespace pelkor::grid
