// frmNoIpusView: widgets and layout of the no-ipus-line dialog.
#include "app/ui/frmNoIpusView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace pelkor::ui {

frmNoIpusView::frmNoIpusView(frmNoIpus& logic, QWidget* parent)
    : QDialog(parent), binder_(logic, *this)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());

    auto* text = new QLabel(logic.text(), this);
    text->setWordWrap(true);
    auto* opt1stLine = new QRadioButton(logic.label(QStringLiteral("opt1stLine")), this);
    auto* optDate = new QRadioButton(logic.label(QStringLiteral("optDate")), this);
    auto* txtDate = new QLineEdit(this);
    txtDate->setPlaceholderText(QStringLiteral("dd/mm/yyyy"));
    auto* cmdOK = new QPushButton(logic.label(QStringLiteral("cmdOK")), this);
    cmdOK->setDefault(true);

    auto* dateRow = new QHBoxLayout;
    dateRow->addWidget(optDate);
    dateRow->addWidget(txtDate, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(opt1stLine);
    layout->addLayout(dateRow);
    layout->addLayout(buttons);
    setMinimumWidth(380);

    binder_.bindOption(QStringLiteral("opt1stLine"), opt1stLine);
    binder_.bindOption(QStringLiteral("optDate"), optDate);
    binder_.bindText(QStringLiteral("txtDate"), txtDate);
    binder_.bindButton(QStringLiteral("cmdOK"), cmdOK);
    binder_.sync();
}

} // namespace pelkor::ui
