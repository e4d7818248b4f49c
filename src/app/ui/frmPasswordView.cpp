// frmPasswordView: widgets and layout of the password dialog.
#include "app/ui/frmPasswordView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace pelkor::ui {

frmPasswordView::frmPasswordView(frmPassword& logic, QWidget* parent)
    : QDialog(parent), binder_(logic, *this)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());

    auto* prompt = new QLabel(logic.text(), this);
    auto* txtPassw = new QLineEdit(this);
    txtPassw->setEchoMode(QLineEdit::Password);
    auto* cmdOK = new QPushButton(logic.label(QStringLiteral("cmdOK")), this);
    auto* cmdCancel = new QPushButton(logic.label(QStringLiteral("cmdCancel")), this);
    cmdOK->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(prompt);
    layout->addWidget(txtPassw);
    layout->addLayout(buttons);
    setMinimumWidth(300);

    binder_.bindText(QStringLiteral("txtPassw"), txtPassw);
    binder_.bindButton(QStringLiteral("cmdOK"), cmdOK);
    binder_.bindButton(QStringLiteral("cmdCancel"), cmdCancel);
    binder_.sync();
}

} // namespace pelkor::ui
