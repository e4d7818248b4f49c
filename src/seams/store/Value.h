// Value: one field's value as the logic sees it.
//
// Null, integer, double, text or date. Null stays Null all the way up; the
// formatters decide what a Null means (RemoveNull, RemoveSumNull). A date is
// held as a QDate; a date column holding something that is no date (a
// damaged row) comes back as Text, so the loader can tell the two apart.
// Values are small and cheap to copy: a tag, a 64-bit number and an
// implicitly shared QString.
#pragma once

#include <QDate>
#include <QString>
#include <cstdint>

namespace pelkor::store {

class Value {
public:
    enum class Type : std::uint8_t { Null, Integer, Double, Text, Date };

    Value() = default;
    static Value null() { return Value(); }
    static Value integer(std::int64_t v) { Value r; r.type_ = Type::Integer; r.i_ = v; return r; }
    static Value real(double v) { Value r; r.type_ = Type::Double; r.d_ = v; return r; }
    static Value text(QString v) { Value r; r.type_ = Type::Text; r.s_ = std::move(v); return r; }
    static Value date(QDate v) { Value r; r.type_ = Type::Date; r.i_ = v.toJulianDay(); return r; }

    Type type() const { return type_; }
    bool isNull() const { return type_ == Type::Null; }
    bool isNumber() const { return type_ == Type::Integer || type_ == Type::Double; }
    bool isText() const { return type_ == Type::Text; }
    bool isDate() const { return type_ == Type::Date; }

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

private:
    Type type_ = Type::Null;
    union { std::int64_t i_ = 0; double d_; };
    QString s_;
};

} // namespace pelkor::store
