#include "frame/Format.h"

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

QString formatDate224(const QDate& d)
{
    return twoDigits(d.day()) + QLatin1Char('/') + twoDigits(d.month()) + QLatin1Char('/')
        + QStringLiteral("%1").arg(d.year(), 4, 10, QLatin1Char('0'));
}

QString formatDate8(const QDate& d)
{
    return twoDigits(d.day()) + QLatin1Char('/') + twoDigits(d.month()) + QLatin1Char('/')
        + twoDigits(((d.year() % 100) + 100) % 100);
}

QString FormatSum(double x)
{
    // Work in whole cents so that grouping never sees a binary fraction:
    // 0.005 and its neighbours round the way the printed two decimals would.
    const bool negative = x < 0;
    const double cents = std::round(std::fabs(x) * 100.0);
    if (!std::isfinite(cents))
        return negative ? QStringLiteral("0.00-") : QStringLiteral("0.00");
    const auto whole = static_cast<unsigned long long>(cents / 100.0);
    const int frac = int(cents - double(whole) * 100.0);
    QString digits = QString::number(whole);
    QString out;
    out.reserve(digits.size() + digits.size() / 3 + 4);
    const int lead = int(digits.size()) % 3;
    for (int i = 0; i < digits.size(); ++i) {
        if (i > 0 && (i - lead) % 3 == 0)
            out += QLatin1Char(',');
        out += digits[i];
    }
    out += QLatin1Char('.');
    out += twoDigits(frac);
    if (negative)
        out += QLatin1Char('-');
    return out;
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
