#include "base/Format.h"
#include "base/StoredKind.h"

#include <cmath>

namespace pelkor {

QString formatDateForSQL(const QDate& d)
{
    return QStringLiteral("#%1/%2/%3#").arg(d.month()).arg(d.day()).arg(d.year(), 4, 10, QLatin1Char('0'));
}

QString twoDigits(int n)
{
    return n < 10 ? QLatin1Char('0') + QString::number(n) : QString::number(n);
}

namespace {

// Writes n as two digits at p (n from 0 to 99).
inline void putTwo(char* p, int n)
{
    p[0] = char('0' + n / 10);
    p[1] = char('0' + n % 10);
}

// A sum of 1e16 and more: a double that large holds no cents, so its exact
// decimal digits are grouped as text, in the same form as the small ones.
QString groupedLargeSum(double magnitude, bool negative)
{
    const QString digits = QString::number(magnitude, 'f', 2);   // "123000000000000000.00"
    const qsizetype point = digits.indexOf(QLatin1Char('.'));
    QString r;
    r.reserve(digits.size() + point / 3 + 1);
    for (qsizetype i = 0; i < point; ++i) {
        if (i > 0 && (point - i) % 3 == 0)
            r += QLatin1Char(',');
        r += digits[i];
    }
    r += QStringView(digits).mid(point);
    if (negative)
        r += QLatin1Char('-');
    return r;
}

} // namespace

// The dates and sums below are written into a small buffer and made a
// string once: a load formats some hundreds of thousands of them.
QString formatDate224(const QDate& d)
{
    const int y = d.year();
    if (y < 0 || y > 9999)
        return twoDigits(d.day()) + QLatin1Char('/') + twoDigits(d.month()) + QLatin1Char('/')
            + QStringLiteral("%1").arg(y, 4, 10, QLatin1Char('0'));
    char b[10];
    putTwo(b, d.day());
    b[2] = '/';
    putTwo(b + 3, d.month());
    b[5] = '/';
    putTwo(b + 6, y / 100);
    putTwo(b + 8, y % 100);
    return QString::fromLatin1(b, 10);
}

QString formatDate8(const QDate& d)
{
    char b[8];
    putTwo(b, d.day());
    b[2] = '/';
    putTwo(b + 3, d.month());
    b[5] = '/';
    putTwo(b + 6, ((d.year() % 100) + 100) % 100);
    return QString::fromLatin1(b, 8);
}

QString FormatSum(double x)
{
    // Work in whole cents so that grouping never sees a binary fraction:
    // 0.005 and its neighbours round the way the printed two decimals would.
    const bool negative = x < 0;
    const double cents = std::round(std::fabs(x) * 100.0);
    if (!std::isfinite(cents))
        return negative ? QStringLiteral("0.00-") : QStringLiteral("0.00");
    if (cents >= 1e18)   // beyond whole cents in 64 bits
        return groupedLargeSum(std::fabs(x), negative);
    auto whole = static_cast<unsigned long long>(cents / 100.0);
    const int frac = int(cents - double(whole) * 100.0);
    // From the right: the sign, the cents, the point, then the digits with
    // a comma every three.
    char b[40];
    char* p = b + sizeof b;
    if (negative)
        *--p = '-';
    p -= 2;
    putTwo(p, frac);
    *--p = '.';
    int n = 0;
    do {
        if (n > 0 && n % 3 == 0)
            *--p = ',';
        *--p = char('0' + whole % 10);
        whole /= 10;
        ++n;
    } while (whole > 0);
    return QString::fromLatin1(p, int(b + sizeof b - p));
}

bool isSumTooLarge(double x)
{
    return !(std::round(std::fabs(x) * 100.0) <= std::round(maxSum * 100.0));
}

QString sumTooLargeMessage()
{
    return QStringLiteral("הסכום גדול מדי. הסכום המירבי הוא ") + isolated(FormatSum(maxSum));
}

double RemoveSumNull(const store::Value& v)
{
    return v.isNull() ? 0.0 : v.toDouble();
}

QString RemoveNull(const store::Value& v)
{
    return v.isNull() ? QString() : v.toString();
}

double reallyConvNum(double x, double conv)
{
    if (conv == 0)
        return x;
    if (conv > 0)
        return x * conv;
    return x / -conv;
}

double Conversion::factorFor(int row) const
{
    if (!isMerged)
        return conv;
    if (row < 0 || row >= int(mergedBankIndexes.size()))
        return 0;
    const int i = mergedBankIndexes[size_t(row)];
    return i >= 0 && i < int(convs.size()) ? convs[size_t(i)] : 0;
}

double convNum(double x, int row, const Conversion& c)
{
    return reallyConvNum(x, c.factorFor(row));
}

QString FormatKind(const QString& k)
{
    if (k.isEmpty())
        return k;
    const QChar first = k.front();
    if (first == QLatin1Char('+') || first == QLatin1Char('-'))
        return k.mid(1) + first;
    const QChar last = k.back();
    if (last == QLatin1Char('+') || last == QLatin1Char('-'))
        return last + k.left(k.size() - 1);
    return k;
}

QString storedKind(const QString& typed)
{
    const QString t = typed.trimmed();
    if (t.isEmpty())
        return t;
    if (t.startsWith(QLatin1Char('+')) || t.startsWith(QLatin1Char('-')))
        return t;
    if (t.endsWith(QLatin1Char('+')) || t.endsWith(QLatin1Char('-')))
        return FormatKind(t);
    bool digits = true;
    for (QChar c : t)
        digits = digits && c.isDigit();
    return digits ? QStringLiteral("+") + t : t;
}

QString fixString(const QString& s)
{
    QString r = s;
    r.replace(QLatin1Char('\''), QLatin1Char('`'));
    return r;
}

QString getFileName(const QString& path)
{
    const qsizetype i = std::max(path.lastIndexOf(QLatin1Char('\\')), path.lastIndexOf(QLatin1Char('/')));
    return i < 0 ? QString() : path.mid(i + 1);
}

QString getShortFileName(const QString& path)
{
    const QString name = getFileName(path);
    return name.left(std::max<qsizetype>(0, name.size() - 4));
}

QString StrZToStr(const QString& s)
{
    return s.left(std::max<qsizetype>(0, s.size() - 1));
}

QString completeToLen8(const QString& s)
{
    return s.size() >= 8 ? s : QString(8 - s.size(), QLatin1Char('0')) + s;
}

std::int16_t MyMin(std::int16_t a, std::int16_t b) { return a < b ? a : b; }
std::int16_t MyMax(std::int16_t a, std::int16_t b) { return a > b ? a : b; }

int clipRowNum(int n, int rows)
{
    if (n > rows - 1)
        n = rows - 1;
    return n < 1 ? 1 : n;
}

QString hexByte(int n)
{
    const QString h = QString::number(n, 16).toUpper();
    return n < 16 ? QLatin1Char('0') + h : h;
}

QString colorToHtml(std::uint32_t c)
{
    return QLatin1Char('#') + hexByte(int(c & 0xFF)) + hexByte(int((c >> 8) & 0xFF))
        + hexByte(int((c >> 16) & 0xFF));
}

} // namespace pelkor
