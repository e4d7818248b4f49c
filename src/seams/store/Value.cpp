#include "seams/store/Value.h"

#include "seams/store/TextForms.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace pelkor::store {

Value Value::text(QString v)
{
    Value r;
    r.b_[0] = std::uint8_t(Type::Text);
    r.b_[1] = sharedMark;
    Shared* s = new Shared;
    s->s = std::move(v);
    std::memcpy(r.b_ + 8, &s, sizeof s);
    return r;
}

void Value::dropShared() noexcept
{
    Shared* s = shared();
    if (s->ref.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete s;
}

double Value::toDouble() const
{
    switch (type()) {
    case Type::Integer: return double(payload());
    case Type::Double: return real();
    case Type::Text: {
        double v = 0;
        if (isShared())
            return text::parseNumber(shared()->s, v) ? v : 0.0;
        const char* p = inlineText();
        return text::parseNumber(p, p + b_[1], v) ? v : 0.0;
    }
    case Type::Date: return 0.0;
    case Type::Null: break;
    }
    return 0.0;
}

std::int64_t Value::toInt() const
{
    if (type() == Type::Integer)
        return payload();
    // nearbyint rounds in the current mode, which is to nearest, ties to
    // even: the old engine's rounding (2.5 -> 2, 3.5 -> 4).
    const double r = std::nearbyint(toDouble());
    if (!(r > double(std::numeric_limits<std::int64_t>::min()) && r < double(std::numeric_limits<std::int64_t>::max())))
        return 0;
    return static_cast<std::int64_t>(r);
}

QString Value::toString() const
{
    switch (type()) {
    case Type::Null: return QString();
    case Type::Integer: {
        // Written out directly: every line's id is read this way at a load.
        char buf[24];
        const auto r = std::to_chars(buf, buf + sizeof buf, payload());
        QString s(qsizetype(r.ptr - buf), Qt::Uninitialized);
        QChar* o = s.data();
        for (const char* p = buf; p < r.ptr; ++p)
            *o++ = QLatin1Char(*p);
        return s;
    }
    case Type::Double: {
        const double d = real();
        if (!std::isfinite(d))
            return QString::number(d);
        char buf[400];
        // Shortest text that reads back as the same double, never with an
        // exponent: "12", "12.5", "0.1".
        const auto r = std::to_chars(buf, buf + sizeof buf, d, std::chars_format::fixed);
        if (r.ec != std::errc())
            return QString::number(d, 'g', 17);
        QString s = QString::fromLatin1(buf, int(r.ptr - buf));
        return s == QLatin1String("-0") ? QStringLiteral("0") : s;
    }
    case Type::Text:
        return isShared() ? shared()->s : QString::fromUtf8(inlineText(), b_[1]);
    case Type::Date: return QDate::fromJulianDay(payload()).toString(QStringLiteral("dd/MM/yyyy"));
    }
    return QString();
}

QDate Value::toDate() const
{
    if (type() == Type::Date)
        return QDate::fromJulianDay(payload());
    if (type() == Type::Text) {
        QDate d;
        if (isShared() ? text::parseDate(shared()->s, d) : text::parseDate(inlineText(), inlineText() + b_[1], d))
            return d;
    }
    return QDate();
}

bool Value::operator==(const Value& o) const
{
    if (isNumber() && o.isNumber()) {
        if (type() == Type::Integer && o.type() == Type::Integer)
            return payload() == o.payload();
        return toDouble() == o.toDouble();
    }
    if (type() != o.type())
        return false;
    switch (type()) {
    case Type::Null: return true;
    case Type::Text:
        if (!isShared() && !o.isShared())
            return b_[1] == o.b_[1] && std::memcmp(inlineText(), o.inlineText(), b_[1]) == 0;
        return toString() == o.toString();
    case Type::Date: return payload() == o.payload();
    default: return false;
    }
}

} // namespace pelkor::store
