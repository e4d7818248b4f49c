// The windows over a real load: the demo ledger in a working run, and the
// helpers the view tests share (the controls as the accessibility tree
// speaks them, the painted pixels of a cell).
#pragma once

#include "app/frmMainView.h"
#include "app/grid/GridView.h"
#include "file/LoadFixture.h"
#include "gen/DemoLedger.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QImage>
#include <QTableView>

#include <gtest/gtest.h>

namespace pelkor::testing {

// The demo ledger in a working run, its lines drawn into the window, which
// then shows at 1000 x 600.
class DemoWindowTest : public LoadTest {
protected:
    void SetUp() override
    {
        LoadTest::SetUp();
        generator::generateDemoLedger(file, QDate(2025, 6, 1));
        start({QStringLiteral("open"), file}, QString());
        ASSERT_FALSE(m->ended());
        // As in the program: the window is made, the load draws into it,
        // then it shows.
        view = std::make_unique<frmMainView>(*m);
        emit m->loaded();
        view->resize(1000, 600);
        view->show();
        QCoreApplication::processEvents();
        table = view->findChild<QTableView*>();
        ASSERT_NE(table, nullptr);
    }
    std::unique_ptr<frmMainView> view;
    QTableView* table = nullptr;
};

// What a screen reader hears of a control: its accessible name and value.
struct Spoken {
    QString name, value;
};

// The visible controls in the accessibility tree under w (w included), by
// object name ("" for those without one); a grid's cells and the pages of
// a web view are not walked.
inline QMultiMap<QString, Spoken> spokenControls(QWidget* w)
{
    QMultiMap<QString, Spoken> spoken;
    std::function<void(QAccessibleInterface*, int)> walk = [&](QAccessibleInterface* a, int depth) {
        if (!a || depth > 30 || a->state().invisible)
            return;
        QObject* o = a->object();
        spoken.insert(o ? o->objectName() : QString(), {a->text(QAccessible::Name), a->text(QAccessible::Value)});
        if (a->role() == QAccessible::Table || (o && o->inherits("QWebEngineView")))
            return;
        for (int i = 0; i < a->childCount(); ++i)
            walk(a->child(i), depth + 1);
    };
    walk(QAccessible::queryAccessibleInterface(w), 0);
    return spoken;
}

// The visible cells of t that are drawn cut, as "row,col: text".
inline QStringList cutCells(QTableView* t)
{
    auto* grid = qobject_cast<grid::GridView*>(t);
    if (!grid)
        return {QStringLiteral("not a grid")};
    QStringList cut;
    for (int r = std::max(0, t->rowAt(0)); r < t->model()->rowCount(); ++r) {
        if (t->rowViewportPosition(r) > t->viewport()->height())
            break;
        for (int c = 0; c < t->model()->columnCount(); ++c) {
            const QString text = t->model()->index(r, c).data().toString();
            if (!text.isEmpty() && grid->shownText(r, c) != text)
                cut << QStringLiteral("%1,%2: %3").arg(r).arg(c).arg(text);
        }
    }
    return cut;
}

// What the view painted, in the view's viewport coordinates.
inline QImage painted(QAbstractItemView* v)
{
    return v->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// The leftmost and rightmost columns of r in img that hold ink (a pixel
// much darker than the cell's background at r's centre line); -1 when none.
inline std::pair<int, int> inkColumns(const QImage& img, const QRect& r)
{
    int left = -1, right = -1;
    for (int x = r.left(); x <= r.right(); ++x)
        for (int y = r.top(); y <= r.bottom(); ++y)
            if (qGray(img.pixel(x, y)) < 110) {
                if (left < 0)
                    left = x;
                right = x;
                break;
            }
    return {left, right};
}

} // namespace pelkor::testing
