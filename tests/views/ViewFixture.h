// The windows over a real load: the demo ledger in a working run, and the
// helpers the view tests share (the controls as the accessibility tree
// names them, the painted pixels of a cell).
#pragma once

#include "app/frmMainView.h"
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

// The accessible names in the tree under w, with the description of each
// (a label's text, a button's caption).
inline QMap<QString, QString> accessibleNames(QWidget* w)
{
    QMap<QString, QString> names;
    std::function<void(QAccessibleInterface*, int)> walk = [&](QAccessibleInterface* a, int depth) {
        if (!a || depth > 30)
            return;
        if (!a->state().invisible)
            names.insert(a->text(QAccessible::Name), a->text(QAccessible::Description));
        for (int i = 0; i < a->childCount(); ++i)
            walk(a->child(i), depth + 1);
    };
    walk(QAccessible::queryAccessibleInterface(w), 0);
    return names;
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
