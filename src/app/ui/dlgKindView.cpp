#include "app/ui/dlgKindView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace pelkor::ui {

dlgKindView::dlgKindView(dlgKind& logic, QWidget* parent) : QDialog(parent), logic_(logic)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    setObjectName(QStringLiteral("dlgKind"));
    auto* outer = new QVBoxLayout(this);
    if (!logic.text().isEmpty()) {
        auto* text = new QLabel(logic.text(), this);
        text->setWordWrap(true);
        outer->addWidget(text);
    }
    auto* lists = new QHBoxLayout;
    outer->addLayout(lists);
    QListWidget* focused = nullptr;
    // Income on the right, where a Hebrew reader starts.
    for (const QString name : {QStringLiteral("lstKind1"), QStringLiteral("lstKind0")}) {
        auto* column = new QVBoxLayout;
        column->addWidget(new QLabel(logic.label(name), this));
        auto* list = new QListWidget(this);
        list->setObjectName(name);
        list->setAccessibleName(logic.label(name));
        list->setMinimumWidth(220);
        for (const QString& row : logic.controls()[name == QLatin1String("lstKind0") ? 0 : 1].items) {
            auto* item = new QListWidgetItem(row, list);
            if (row == logic.control(name)) {
                list->setCurrentItem(item);
                focused = list;
            }
        }
        connect(list, &QListWidget::itemClicked, this, [this, name](QListWidgetItem* item) {
            if (logic_.setControl(name, item->text()) && logic_.isClosed())
                accept();
        });
        connect(list, &QListWidget::itemActivated, this, [this, name](QListWidgetItem* item) {
            if (logic_.setControl(name, item->text()) && logic_.isClosed())
                accept();
        });
        column->addWidget(list);
        lists->addLayout(column);
    }
    if (focused)
        focused->setFocus();
    resize(520, 360);
}

void dlgKindView::reject()
{
    logic_.dismiss();
    QDialog::reject();
}

} // namespace pelkor::ui
