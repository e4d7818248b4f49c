#include "app/ui/frmCalcView.h"

#include "app/AmountLabel.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace pelkor::ui {

frmCalcView::frmCalcView(frmCalc& logic, QWidget* parent) : QDialog(parent), logic_(logic)
{
    setObjectName(QStringLiteral("frmCalc"));
    setWindowTitle(logic.caption());
    // The numbers read left to right, as on any calculator.
    setLayoutDirection(Qt::LeftToRight);
    setStyleSheet(QStringLiteral("QDialog { background: rgb(255, 255, 153); }"));
    auto* grid = new QGridLayout(this);
    // Read as what they are, their numbers as the values.
    txtNum_ = new AmountLabel(QStringLiteral("txtNum"), QStringLiteral("תצוגה"), this);
    txtNum_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    txtNum_->setFrameShape(QFrame::Box);
    txtNum_->setStyleSheet(QStringLiteral("background: white; font-size: 16pt; padding: 2px;"));
    txtMem_ = new AmountLabel(QStringLiteral("txtMem"), QStringLiteral("זיכרון"), this);
    grid->addWidget(txtMem_, 0, 0);
    grid->addWidget(txtNum_, 0, 1, 1, 4);
    const char* rows[][5] = {
        {"cmdMemClear", "cmdClear", "cmdClearEntry", "cmdBackspace", "cmdDiv"},
        {"cmdMemRead", "cmdDigit7", "cmdDigit8", "cmdDigit9", "cmdMult"},
        {"cmdMemStore", "cmdDigit4", "cmdDigit5", "cmdDigit6", "cmdSubt"},
        {"cmdMemAdd", "cmdDigit1", "cmdDigit2", "cmdDigit3", "cmdAdd"},
        {"cmdPlusMinus", "cmdDigit0", "cmdPoint", "cmdEquals", nullptr},
        {"cmdOK", "cmdCancel", nullptr, nullptr, nullptr},
    };
    for (int r = 0; r < 6; ++r) {
        for (int c = 0; c < 5; ++c) {
            if (!rows[r][c])
                continue;
            const QString name = QString::fromLatin1(rows[r][c]);
            // Marks on either side keep "M+" and "+/-" in their own order.
            auto* b = new QPushButton(QChar(0x200E) + logic.label(name) + QChar(0x200E), this);
            b->setObjectName(name);
            // The keyboard stays with the window, as it does on the old form.
            b->setFocusPolicy(Qt::NoFocus);
            connect(b, &QPushButton::clicked, this, [this, name] { press(name); });
            if (r == 5)
                grid->addWidget(b, r + 1, c * 2 + 1, 1, 2);
            else
                grid->addWidget(b, r + 1, c);
        }
    }
    mirror();
}

void frmCalcView::press(const QString& name)
{
    logic_.click(name);
    mirror();
}

void frmCalcView::mirror()
{
    txtNum_->setAmount(logic_.control(QStringLiteral("txtNum")));
    txtMem_->setAmount(logic_.control(QStringLiteral("txtMem")));
    if (logic_.isClosed())
        logic_.accepted() ? accept() : QDialog::reject();
}

void frmCalcView::keyPressEvent(QKeyEvent* e)
{
    switch (e->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        logic_.keyPress(QLatin1Char('\r'));
        break;
    case Qt::Key_Escape:
        logic_.keyPress(QLatin1Char('\x1b'));
        break;
    case Qt::Key_Backspace:
        logic_.click(QStringLiteral("cmdBackspace"));
        break;
    default:
        if (e->text().size() == 1)
            logic_.keyPress(e->text()[0]);
        else
            QDialog::keyPressEvent(e);
    }
    mirror();
}

void frmCalcView::reject()
{
    // The window's close box: as ביטול.
    logic_.click(QStringLiteral("cmdCancel"));
    QDialog::reject();
}

} // namespace pelkor::ui
