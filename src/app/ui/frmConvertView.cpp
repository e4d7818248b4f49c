// frmConvertView: widgets and layout of the conversion dialog.
#include "app/ui/frmConvertView.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace pelkor::ui {

frmConvertView::frmConvertView(reports::frmConvert& logic, QWidget* parent) : QDialog(parent), binder_(logic, *this)
{
    setObjectName(QStringLiteral("frmConvert"));
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    auto* grid = new QGridLayout;
    const auto option = [&](const char* name, int row) {
        auto* o = new QRadioButton(logic.label(QLatin1String(name)), this);
        o->setObjectName(QLatin1String(name));
        grid->addWidget(o, row, 0);
        binder_.bindOption(QLatin1String(name), o);
    };
    const auto box = [&](const char* name, int row) {
        auto* t = new QLineEdit(this);
        t->setObjectName(QLatin1String(name));
        t->setAccessibleName(logic.label(QLatin1String(name)));
        t->setLayoutDirection(Qt::LeftToRight);
        grid->addWidget(t, row, 1);
        binder_.bindText(QLatin1String(name), t);
    };
    option("optNone", 0);
    option("optMult", 1);
    box("txtMult", 1);
    option("optDiv", 2);
    box("txtDiv", 2);
    auto* cmdOK = new QPushButton(logic.label(QStringLiteral("cmdOK")), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto* cmdCancel = new QPushButton(logic.label(QStringLiteral("cmdCancel")), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);
    setMinimumWidth(300);
    binder_.bindButton(QStringLiteral("cmdOK"), cmdOK);
    binder_.bindButton(QStringLiteral("cmdCancel"), cmdCancel);
    binder_.sync();
}

} // namespace pelkor::ui
