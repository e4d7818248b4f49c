// Value: one field's value as the logic sees it.
//
// Null, integer, double, text or date. Null stays Null all the way up; the
// formatters decide what a Null means (RemoveNull, RemoveSumNull). A date is
// held as its day number; a date column holding something that is no date
// (a damaged row) comes back as Text, so the loader can tell the two apart.
//
// A Value is 16 bytes, because a load of the whole ledger holds millions of
// them: a tag, then a number, a day number, or a text. A text of up to 14
// bytes of UTF-8 (a kind, a reference number, a marker, a short word) lives
// in the Value itself, the way SQLite hands it over; a longer one is a
// shared QString, so that copies of a Value and repeated texts of a column
// share one string. Values are cheap to copy either way.
#pragma once

#include <QDate>
#include <QString>
#include <atomic>
#include <cstdint>
#include <cstring>

namespace pelkor::store {

class Value {
public:
    enum class Type : std::uint8_t { Null, Integer, Double, Text, Date };

    Value() noexcept { std::memset(b_, 0, sizeof b_); }
    Value(const Value& o) noexcept
    {
        std::memcpy(b_, o.b_, sizeof b_);
        if (isShared())
            retain();
    }
    Value(Value&& o) noexcept
    {
        std::memcpy(b_, o.b_, sizeof b_);
        o.b_[0] = std::uint8_t(Type::Null);
        o.b_[1] = 0;
    }
    Value& operator=(const Value& o) noexcept
    {
        if (this != &o) {
            Value copy(o);
            swap(copy);
        }
        return *this;
    }
    Value& operator=(Value&& o) noexcept
    {
        if (this != &o) {
            release();
            std::memcpy(b_, o.b_, sizeof b_);
            o.b_[0] = std::uint8_t(Type::Null);
            o.b_[1] = 0;
        }
        return *this;
    }
    ~Value() { release(); }
    void swap(Value& o) noexcept
    {
        unsigned char t[sizeof b_];
        std::memcpy(t, b_, sizeof b_);
        std::memcpy(b_, o.b_, sizeof b_);
        std::memcpy(o.b_, t, sizeof b_);
    }

    static Value null() { return Value(); }
    static Value integer(std::int64_t v) { return Value(Type::Integer, v); }
    static Value real(double v)
    {
        std::int64_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        return Value(Type::Double, bits);
    }
    static Value text(QString v);
    // Text given as UTF-8 bytes (SQLite's own form), copied.
    static Value utf8(const char* p, qsizetype n)
    {
        if (n > inlineMax)
            return text(QString::fromUtf8(p, n));
        Value r;
        r.b_[0] = std::uint8_t(Type::Text);
        r.b_[1] = std::uint8_t(n);
        if (n > 0)
            std::memcpy(r.b_ + 2, p, size_t(n));
        return r;
    }
    static Value date(QDate v) { return Value(Type::Date, v.toJulianDay()); }
    // A date by its Julian day number, as QDate counts them.
    static Value julianDay(std::int64_t day) { return Value(Type::Date, day); }

    Type type() const { return Type(b_[0]); }
    bool isNull() const { return type() == Type::Null; }
    bool isNumber() const { return type() == Type::Integer || type() == Type::Double; }
    bool isText() const { return type() == Type::Text; }
    bool isDate() const { return type() == Type::Date; }

    // Numbers as numbers; a text that reads as a number (the old engine's
    // forms, "1,234.50" and "1,234.50-" included) as that number; else 0.
    double toDouble() const;
    std::int64_t toInt() const;   // toDouble() rounded half to even
    // Text as it stands; numbers in their shortest exact form ("12", "12.5");
    // dates as dd/mm/yyyy; Null as the empty string.
    QString toString() const;
    // A date, or a text that reads as one; else an invalid QDate.
    QDate toDate() const;
    bool toBool() const { return toDouble() != 0.0; }

    bool operator==(const Value& o) const;

    // The longest text held inside the Value itself, with no allocation.
    static constexpr int inlineMax = 14;

private:
    // b_[0] the Type; for a text b_[1] is the length of a text held inline
    // in b_[2..15], or sharedMark when b_[8..15] point to a Shared.
    static constexpr std::uint8_t sharedMark = 0xff;
    // A longer text, shared by every copy of the Value and by the repeated
    // texts of a column that a recordset reads.
    struct Shared {
        std::atomic<int> ref{1};
        QString s;
    };

    Value(Type t, std::int64_t payload) noexcept
    {
        std::memset(b_, 0, sizeof b_);
        b_[0] = std::uint8_t(t);
        std::memcpy(b_ + 8, &payload, sizeof payload);
    }
    std::int64_t payload() const
    {
        std::int64_t v;
        std::memcpy(&v, b_ + 8, sizeof v);
        return v;
    }
    double real() const
    {
        double v;
        std::memcpy(&v, b_ + 8, sizeof v);
        return v;
    }
    bool isShared() const { return type() == Type::Text && b_[1] == sharedMark; }
    Shared* shared() const
    {
        Shared* s;
        std::memcpy(&s, b_ + 8, sizeof s);
        return s;
    }
    const char* inlineText() const { return reinterpret_cast<const char*>(b_ + 2); }
    void retain() const { shared()->ref.fetch_add(1, std::memory_order_relaxed); }
    void release() noexcept
    {
        if (isShared())
            dropShared();
    }
    void dropShared() noexcept;

    alignas(8) unsigned char b_[16];
};

static_assert(sizeof(Value) == 16, "a load holds millions of Values");

} // namespace pelkor::store
