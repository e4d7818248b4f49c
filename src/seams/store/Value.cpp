#include "seams/store/Value.h"

#include "seams/store/TextForms.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace pelkor::store {

double Value::toDouble() const
{
    switch (type_) {
    case Type::Integer: return double(i_);
    case Type::Double: return d_;
    case Type::Text: {
        double v = 0;
        return text::parseNumber(s_, v) ? v : 0.0;
    }
    case Type::Date: return 0.0;
    case Type::Null: break;
    }
    return 0.0;
}

std::int64_t Value::toInt() const
{
    if (type_ == Type::Integer)
        return i_;
    // nearbyint rounds in the current mode, which is to nearest, ties to
    // even: the old engine's rounding (2.5 -> 2, 3.5 -> 4).
    const double r = std::nearbyint(toDouble());
    if (!(r > double(std::numeric_limits<std::int64_t>::min()) && r < double(std::numeric_limits<std::int64_t>::max())))
        return 0;
    return static_cast<std::int64_t>(r);
}

QString Value::toString() const
{
    switch (type_) {
    case Type::Null: return QString();
    case Type::Integer: return QString::number(i_);
    case Type::Double: {
        if (!std::isfinite(d_))
            return QString::number(d_);
        char buf[400];
        // Shortest text that reads back as the same double, never with an
        // exponent: "12", "12.5", "0.1".
        const auto r = std::to_chars(buf, buf + sizeof buf, d_, std::chars_format::fixed);
        if (r.ec != std::errc())
            return QString::number(d_, 'g', 17);
        QString s = QString::fromLatin1(buf, int(r.ptr - buf));
        return s == QLatin1String("-0") ? QStringLiteral("0") : s;
    }
    case Type::Text: return s_;
    case Type::Date: return QDate::fromJulianDay(i_).toString(QStringLiteral("dd/MM/yyyy"));
    }
    return QString();
}

QDate Value::toDate() const
{
    if (type_ == Type::Date)
        return QDate::fromJulianDay(i_);
    if (type_ == Type::Text) {
        QDate d;
        if (text::parseDate(s_, d))
            return d;
    }
    return QDate();
}

bool Value::operator==(const Value& o) const
{
    if (isNumber() && o.isNumber()) {
        if (type_ == Type::Integer && o.type_ == Type::Integer)
            return i_ == o.i_;
        return toDouble() == o.toDouble();
    }
    if (type_ != o.type_)
        return false;
    switch (type_) {
    case Type::Null: return true;
    case Type::Text: return s_ == o.s_;
    case Type::Date: return i_ == o.i_;
    default: return false;
    }
}

} // namespace pelkor::store
