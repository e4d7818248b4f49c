// TextForms: how the old engine read numbers and dates written as text.
//
// One reader serves four callers that must agree: Value::toDouble, the
// registered isnumeric()/cint(), and the conversion of a quoted text
// assigned to a numeric or date column. The readers work on a range of
// char (UTF-8 straight from SQLite) or char16_t (QString), so the hot path
// inside a registered function allocates nothing.
//
// Numbers: blanks around; one sign, leading or trailing ("1,234.50-"), or
// parentheses for a negative; digits with ',' as thousands separator before
// the point; '.' as the decimal point; an optional exponent.
// Dates: ISO "YYYY-MM-DD" (the stored form, an optional time after it is
// ignored), or day first "D/M/YYYY", "D.M.YYYY" as the user types them.
#pragma once

#include <QDate>
#include <QString>
#include <charconv>
#include <cstdint>

namespace pelkor::store::text {

template <class Ch>
inline bool isBlank(Ch c) { return c == Ch(' ') || c == Ch('\t') || c == Ch('\r') || c == Ch('\n'); }

template <class Ch>
inline bool isDigit(Ch c) { return c >= Ch('0') && c <= Ch('9'); }

// Reads [p, e) as a number of the old engine's forms. False when it is none.
template <class Ch>
bool parseNumber(const Ch* p, const Ch* e, double& out)
{
    while (p < e && isBlank(*p)) ++p;
    while (e > p && isBlank(e[-1])) --e;
    if (p == e)
        return false;
    bool negative = false;
    bool signSeen = false;
    if (*p == Ch('(') && e[-1] == Ch(')')) {
        negative = true;
        signSeen = true;
        ++p;
        --e;
    }
    if (p < e && (*p == Ch('-') || *p == Ch('+'))) {
        if (signSeen)
            return false;
        negative = *p == Ch('-');
        signSeen = true;
        ++p;
    } else if (p < e && (e[-1] == Ch('-') || e[-1] == Ch('+'))) {
        if (signSeen)
            return false;
        negative = e[-1] == Ch('-');
        signSeen = true;
        --e;
    }
    while (p < e && isBlank(*p)) ++p;
    while (e > p && isBlank(e[-1])) --e;
    // Copy the digits without thousands separators into a small buffer for
    // from_chars, which is exact and ignores the process locale.
    char buf[128];
    int n = 0;
    int digits = 0;
    bool point = false;
    bool exponent = false;
    for (; p < e; ++p) {
        const Ch c = *p;
        if (n >= int(sizeof buf) - 1)
            return false;
        if (isDigit(c)) {
            buf[n++] = char(c);
            ++digits;
        } else if (c == Ch(',') && !point && !exponent && digits > 0) {
            continue;
        } else if (c == Ch('.') && !point && !exponent) {
            point = true;
            buf[n++] = '.';
        } else if ((c == Ch('e') || c == Ch('E')) && !exponent && digits > 0) {
            exponent = true;
            buf[n++] = 'e';
            if (p + 1 < e && (p[1] == Ch('-') || p[1] == Ch('+')))
                buf[n++] = char(*++p);
            if (p + 1 >= e || !isDigit(p[1]))
                return false;
        } else {
            return false;
        }
    }
    if (digits == 0)
        return false;
    double v = 0;
    const auto r = std::from_chars(buf, buf + n, v);
    if (r.ec != std::errc() || r.ptr != buf + n)
        return false;
    out = negative ? -v : v;
    return true;
}

inline bool parseNumber(const QString& s, double& out)
{
    const auto* p = reinterpret_cast<const char16_t*>(s.constData());
    return parseNumber(p, p + s.size(), out);
}

template <class Ch>
inline int twoDigits(const Ch* p) { return (int(p[0]) - '0') * 10 + (int(p[1]) - '0'); }

// A day of the proleptic Gregorian calendar from year 1 on, as QDate::isValid
// (which counts no year 0) decides it, without a call per read cell.
inline bool isValidDate(int y, int m, int d)
{
    static constexpr unsigned char monthDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (y < 1 || m < 1 || m > 12 || d < 1)
        return false;
    if (d <= monthDays[m - 1])
        return true;
    return m == 2 && d == 29 && y % 4 == 0 && (y % 100 != 0 || y % 400 == 0);
}

// The Julian day number of a valid date from year 1 on, as
// QDate::toJulianDay gives it.
inline std::int64_t julianDay(int y, int m, int d)
{
    const int a = (14 - m) / 12;
    const std::int64_t yy = std::int64_t(y) + 4800 - a;
    const int mm = m + 12 * a - 3;
    return d + (153 * mm + 2) / 5 + 365 * yy + yy / 4 - yy / 100 + yy / 400 - 32045;
}

// The stored form: exactly "YYYY-MM-DD", optionally followed by a time
// ("T" or a blank, then anything). Validates the calendar date.
template <class Ch>
bool parseIsoDate(const Ch* p, const Ch* e, int& y, int& m, int& d)
{
    const auto len = e - p;
    if (len < 10)
        return false;
    if (len > 10 && p[10] != Ch(' ') && p[10] != Ch('T'))
        return false;
    for (int i : {0, 1, 2, 3, 5, 6, 8, 9})
        if (!isDigit(p[i]))
            return false;
    if (p[4] != Ch('-') || p[7] != Ch('-'))
        return false;
    y = twoDigits(p) * 100 + twoDigits(p + 2);
    m = twoDigits(p + 5);
    d = twoDigits(p + 8);
    return isValidDate(y, m, d);
}

// Any date form the user or a statement may write: ISO, or day first with
// '/', '.' or '-' between day, month and a four-digit year.
template <class Ch>
bool parseDate(const Ch* p, const Ch* e, QDate& out)
{
    while (p < e && isBlank(*p)) ++p;
    while (e > p && isBlank(e[-1])) --e;
    int y = 0, m = 0, d = 0;
    if (parseIsoDate(p, e, y, m, d)) {
        out = QDate(y, m, d);
        return true;
    }
    int parts[3] = {0, 0, 0};
    int lens[3] = {0, 0, 0};
    int k = 0;
    Ch sep = Ch(0);
    for (; p < e; ++p) {
        if (isDigit(*p)) {
            if (++lens[k] > 4)
                return false;
            parts[k] = parts[k] * 10 + (int(*p) - '0');
        } else if ((*p == Ch('/') || *p == Ch('.') || *p == Ch('-')) && k < 2 && lens[k] > 0
                   && (sep == Ch(0) || sep == *p)) {
            sep = *p;
            ++k;
        } else {
            return false;
        }
    }
    if (k != 2 || lens[0] > 2 || lens[1] > 2 || lens[2] != 4)
        return false;
    if (!QDate::isValid(parts[2], parts[1], parts[0]))
        return false;
    out = QDate(parts[2], parts[1], parts[0]);
    return true;
}

inline bool parseDate(const QString& s, QDate& out)
{
    const auto* p = reinterpret_cast<const char16_t*>(s.constData());
    return parseDate(p, p + s.size(), out);
}

// "YYYY-MM-DD" of a valid date.
inline QString isoDate(const QDate& d)
{
    return QString::asprintf("%04d-%02d-%02d", d.year(), d.month(), d.day());
}

} // namespace pelkor::store::text
