#include "ledger/frmCalc.h"

#include "base/Format.h"
#include "seams/ui/Ui.h"

#include <cmath>

namespace pelkor {

namespace {
// The display's width, in characters, as the form's box holds them.
constexpr int displayWidth = 12;
} // namespace

frmCalc::frmCalc(double calcValue, ui::Ui& ui) : Dialog(QStringLiteral("מחשבון"), QString()), ui_(ui), calcValue_(calcValue)
{
    addControl(QStringLiteral("txtNum"), Kind::Label, QString(), displayText(calcValue));
    addControl(QStringLiteral("txtMem"), Kind::Label);
    for (int d = 0; d <= 9; ++d)
        addControl(QStringLiteral("cmdDigit%1").arg(d), Kind::Button, QString::number(d));
    const struct {
        const char* name;
        const char* label;
    } buttons[] = {
        {"cmdPoint", "."},       {"cmdPlusMinus", "+/-"}, {"cmdAdd", "+"},        {"cmdSubt", "-"},
        {"cmdMult", "*"},        {"cmdDiv", "/"},         {"cmdEquals", "="},     {"cmdClear", "C"},
        {"cmdClearEntry", "CE"}, {"cmdBackspace", "←"},   {"cmdMemClear", "MC"},  {"cmdMemRead", "MR"},
        {"cmdMemStore", "MS"},   {"cmdMemAdd", "M+"},     {"cmdOK", "אישור"},     {"cmdCancel", "ביטול"},
    };
    for (const auto& b : buttons)
        addControl(QString::fromLatin1(b.name), Kind::Button, QString::fromUtf8(b.label));
    sum_ = term_ = calcValue;
}

QString frmCalc::displayText(double v)
{
    if (v == 0)
        return QStringLiteral("0");
    // Whole numbers without a point; others with as many digits as matter.
    QString s = QString::number(v, 'f', std::fabs(v) >= 1e15 ? 0 : 10);
    if (s.contains(QLatin1Char('.'))) {
        while (s.endsWith(QLatin1Char('0')))
            s.chop(1);
        if (s.endsWith(QLatin1Char('.')))
            s.chop(1);
    }
    return s;
}

double frmCalc::displayNumber() const
{
    bool ok = false;
    const double v = display().toDouble(&ok);
    return ok ? v : 0;
}

void frmCalc::digit(int d)
{
    const QString t = QString::number(d);
    if (!isTyping_ || isFreshValue_) {
        setValue(QStringLiteral("txtNum"), t);
        isTyping_ = true;
        hasPoint_ = false;
    } else if (display() == QLatin1String("0")) {
        setValue(QStringLiteral("txtNum"), t);
    } else if (display().size() < displayWidth) {
        setValue(QStringLiteral("txtNum"), display() + t);
    }
    isFreshValue_ = false;
}

void frmCalc::point()
{
    if (!isTyping_ || isFreshValue_) {
        setValue(QStringLiteral("txtNum"), QStringLiteral("0."));
        hasPoint_ = true;
    } else if (!hasPoint_) {
        setValue(QStringLiteral("txtNum"), display() + QLatin1Char('.'));
        hasPoint_ = true;
    }
    isTyping_ = true;
    isFreshValue_ = false;
}

void frmCalc::plusMinus()
{
    const QString t = display();
    if (t == QLatin1String("0") || t == QLatin1String("0."))
        return;
    setValue(QStringLiteral("txtNum"), t.startsWith(QLatin1Char('-')) ? t.mid(1) : QLatin1Char('-') + t);
}

void frmCalc::backspace()
{
    if (isTyping_ && !isFreshValue_ && !display().isEmpty()) {
        QString t = display();
        t.chop(1);
        if (!t.contains(QLatin1Char('.')))
            hasPoint_ = false;
        setValue(QStringLiteral("txtNum"), t.isEmpty() || t == QLatin1String("-") ? QStringLiteral("0") : t);
    }
}

bool frmCalc::finishMultiplicative()
{
    const double x = displayNumber();
    if (mulOp_ == opMult) {
        term_ *= x;
    } else if (mulOp_ == opDiv) {
        if (x == 0) {
            ui_.msgBox(QStringLiteral("לא ניתן לחלק באפס"), QStringLiteral("שגיאה"), ui::Buttons::OK, ui::Icon::Exclamation);
            return false;
        }
        term_ /= x;
    } else {
        term_ = x;
    }
    return true;
}

bool frmCalc::cmdAdd()
{
    bool typing = isTyping_;
    if (!typing && mulOp_ != opNone) {
        mulOp_ = opNone;
        typing = true;
    }
    if (typing) {
        // A refused division leaves everything as it was.
        const double termBefore = term_;
        if (!finishMultiplicative()) {
            term_ = termBefore;
            return false;
        }
        sum_ = addOp_ == opAdd ? sum_ + term_ : addOp_ == opSubt ? sum_ - term_ : term_;
        show(sum_);
        term_ = sum_;
    }
    addOp_ = opAdd;
    mulOp_ = opNone;
    isTyping_ = false;
    return true;
}

bool frmCalc::cmdMult()
{
    if (isTyping_) {
        const bool pending = mulOp_ != opNone;
        const double termBefore = term_;
        if (!finishMultiplicative()) {
            term_ = termBefore;
            return false;
        }
        if (pending)
            show(term_);
    } else {
        addOp_ = opNone;
    }
    mulOp_ = opMult;
    isTyping_ = false;
    return true;
}

void frmCalc::cmdEquals()
{
    if (addOp_ == opNone && mulOp_ == opNone) {
        sum_ = displayNumber();
        show(sum_);
    } else if (isTyping_) {
        const double termBefore = term_;
        if (!finishMultiplicative()) {
            term_ = termBefore;
            return;   // the divisor may be typed again, and = pressed again
        }
        sum_ = addOp_ == opAdd ? sum_ + term_ : addOp_ == opSubt ? sum_ - term_ : term_;
        show(sum_);
        addOp_ = mulOp_ = opNone;
    } else {
        addOp_ = mulOp_ = opNone;
        cmdEquals();
        return;
    }
    isTyping_ = false;
}

void frmCalc::onClick(const QString& name)
{
    if (name.startsWith(QLatin1String("cmdDigit"))) {
        digit(name.mid(8).toInt());
    } else if (name == QLatin1String("cmdPoint")) {
        point();
    } else if (name == QLatin1String("cmdPlusMinus")) {
        plusMinus();
    } else if (name == QLatin1String("cmdAdd")) {
        cmdAdd();
    } else if (name == QLatin1String("cmdSubt")) {
        if (cmdAdd())
            addOp_ = opSubt;
    } else if (name == QLatin1String("cmdMult")) {
        cmdMult();
    } else if (name == QLatin1String("cmdDiv")) {
        if (cmdMult())
            mulOp_ = opDiv;
    } else if (name == QLatin1String("cmdEquals")) {
        cmdEquals();
    } else if (name == QLatin1String("cmdClear")) {
        sum_ = 0;
        addOp_ = mulOp_ = opNone;
        show(0);
        isTyping_ = false;
    } else if (name == QLatin1String("cmdClearEntry")) {
        setValue(QStringLiteral("txtNum"), QStringLiteral("0"));
    } else if (name == QLatin1String("cmdBackspace")) {
        backspace();
    } else if (name == QLatin1String("cmdMemStore") || name == QLatin1String("cmdMemAdd")) {
        memory_ = name == QLatin1String("cmdMemStore") ? displayNumber() : memory_ + displayNumber();
        setValue(QStringLiteral("txtMem"), QStringLiteral("M"));
        isFreshValue_ = true;
    } else if (name == QLatin1String("cmdMemRead")) {
        show(memory_);
        isTyping_ = isFreshValue_ = true;
    } else if (name == QLatin1String("cmdMemClear")) {
        memory_ = 0;
        setValue(QStringLiteral("txtMem"), QString());
        isFreshValue_ = true;
    } else if (name == QLatin1String("cmdOK")) {
        cmdEquals();
        if (isSumTooLarge(displayNumber())) {
            // No line takes it: the calculator stays open on the result.
            ui_.msgBox(sumTooLargeMessage(), QStringLiteral("שגיאה"), ui::Buttons::OK, ui::Icon::Exclamation);
            return;
        }
        calcValue_ = displayNumber();
        close(true);
    } else if (name == QLatin1String("cmdCancel")) {
        close(false);
    }
}

void frmCalc::keyPress(QChar c)
{
    if (c.isDigit()) {
        click(QStringLiteral("cmdDigit%1").arg(c.digitValue()));
        return;
    }
    switch (c.unicode()) {
    case '.': click(QStringLiteral("cmdPoint")); break;
    case '+': click(QStringLiteral("cmdAdd")); break;
    case '-': click(QStringLiteral("cmdSubt")); break;
    case '*': click(QStringLiteral("cmdMult")); break;
    case '/': click(QStringLiteral("cmdDiv")); break;
    case 'x': click(QStringLiteral("cmdPlusMinus")); break;
    case '\r': click(QStringLiteral("cmdEquals")); break;
    case 0x1b: click(QStringLiteral("cmdClear")); break;
    default: break;
    }
}

} // namespace pelkor
