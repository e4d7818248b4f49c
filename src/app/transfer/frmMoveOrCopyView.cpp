#include "app/transfer/frmMoveOrCopyView.h"

#include "app/Named.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace pelkor::ui {

frmMoveOrCopyView::frmMoveOrCopyView(transfer::frmMoveOrCopy& logic, QWidget* parent)
    : QDialog(parent), binder_(logic, *this)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    setObjectName(logic.name());

    auto* optCopy = named(new QRadioButton(logic.label(QStringLiteral("optCopy")), this), QStringLiteral("optCopy"));
    auto* optMove = named(new QRadioButton(logic.label(QStringLiteral("optMove")), this), QStringLiteral("optMove"));
    auto* label = new QLabel(logic.label(QStringLiteral("txtFileName")), this);
    auto* txtFileName = named(new QLineEdit(this), QStringLiteral("txtFileName"), QStringLiteral("קובץ יעד"));
    txtFileName->setReadOnly(true);
    // A file name reads left to right inside the Hebrew window.
    txtFileName->setLayoutDirection(Qt::LeftToRight);
    txtFileName->setMinimumWidth(260);
    label->setBuddy(txtFileName);
    auto* cmdBrowse = named(new QPushButton(logic.label(QStringLiteral("cmdBrowse")), this), QStringLiteral("cmdBrowse"));
    auto* cmdOK = named(new QPushButton(logic.label(QStringLiteral("cmdOK")), this), QStringLiteral("cmdOK"));
    auto* cmdCancel = named(new QPushButton(logic.label(QStringLiteral("cmdCancel")), this), QStringLiteral("cmdCancel"));
    cmdOK->setDefault(true);

    auto* file = new QHBoxLayout;
    file->addWidget(label);
    file->addWidget(txtFileName, 1);
    file->addWidget(cmdBrowse);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(optCopy);
    layout->addWidget(optMove);
    layout->addSpacing(8);
    layout->addLayout(file);
    layout->addSpacing(8);
    layout->addLayout(buttons);

    binder_.bindOption(QStringLiteral("optCopy"), optCopy);
    binder_.bindOption(QStringLiteral("optMove"), optMove);
    binder_.bindText(QStringLiteral("txtFileName"), txtFileName);
    binder_.bindButton(QStringLiteral("cmdBrowse"), cmdBrowse);
    binder_.bindButton(QStringLiteral("cmdOK"), cmdOK);
    binder_.bindButton(QStringLiteral("cmdCancel"), cmdCancel);
    binder_.sync();
}

} // namespace pelkor::ui
