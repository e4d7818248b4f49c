// TextInput: decoding statement bytes and reading amounts and dates. See
// TextInput.h for the rules.
#include "TextInput.h"

#include "seams/web/CodePages.h"

#include <QRegularExpression>
#include <QStringDecoder>

#include <cmath>

namespace pelkor::feed {

namespace {

bool hebrewLetterByte(unsigned char c) { return c >= 0xE0 && c <= 0xFA; }

// UTF-16 without a byte-order mark: in text of Latin or Hebrew letters one
// byte of each pair is nearly always 0x00 (Latin) or 0x05 (Hebrew), so
// half the bytes at even or at odd places are those. 0 none, 1 little
// endian, 2 big endian.
int utf16WithoutBom(const QByteArray& b)
{
    const qsizetype n = std::min<qsizetype>(b.size() & ~qsizetype(1), 512);
    if (n < 4)
        return 0;
    qsizetype high[2] = {0, 0};
    for (qsizetype i = 0; i < n; ++i) {
        const auto c = static_cast<unsigned char>(b[i]);
        if (c == 0x00 || c == 0x05)
            ++high[i % 2];
    }
    if (high[1] * 10 >= n / 2 * 9 && high[0] * 10 < n / 2 * 3)
        return 1;
    if (high[0] * 10 >= n / 2 * 9 && high[1] * 10 < n / 2 * 3)
        return 2;
    return 0;
}

// Hebrew in windows-1255 is words of letters 0xE0-0xFA, so nearly every
// high byte stands next to another; Western text has one accented letter
// among plain ones. Three in four high bytes in such runs decide for Hebrew.
bool looksLikeWindows1255(const QByteArray& b)
{
    qsizetype high = 0, inRuns = 0;
    for (qsizetype i = 0; i < b.size(); ++i) {
        const auto c = static_cast<unsigned char>(b[i]);
        if (c < 0x80)
            continue;
        ++high;
        const bool prev = i > 0 && hebrewLetterByte(static_cast<unsigned char>(b[i - 1]));
        const bool next = i + 1 < b.size() && hebrewLetterByte(static_cast<unsigned char>(b[i + 1]));
        if (hebrewLetterByte(c) && (prev || next))
            ++inRuns;
    }
    return high > 0 && inRuns * 4 >= high * 3;
}

enum class Claim { None, Utf8, Hebrew, Western };

Claim claimOf(const QString& declared)
{
    const QString d = declared.trimmed().toLower();
    if (d.isEmpty() || d == QLatin1String("none"))
        return Claim::None;
    if (d.contains(QLatin1String("utf-8")) || d.contains(QLatin1String("utf8")) || d == QLatin1String("unicode"))
        return Claim::Utf8;
    if (d.contains(QLatin1String("1255")) || d.contains(QLatin1String("8859-8")) || d.contains(QLatin1String("hebrew")))
        return Claim::Hebrew;
    return Claim::Western;  // 1252, ISO-8859-1, US-ASCII, latin1
}

} // namespace

QString encodingName(Encoding e)
{
    switch (e) {
    case Encoding::Utf8: return QStringLiteral("UTF-8");
    case Encoding::Utf8Bom: return QStringLiteral("UTF-8 (BOM)");
    case Encoding::Utf16LE: return QStringLiteral("UTF-16LE");
    case Encoding::Utf16BE: return QStringLiteral("UTF-16BE");
    case Encoding::Windows1255: return QStringLiteral("windows-1255");
    case Encoding::Windows1252: return QStringLiteral("windows-1252");
    }
    return {};
}

bool isValidUtf8(const QByteArray& bytes)
{
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.constData());
    const qsizetype n = bytes.size();
    for (qsizetype i = 0; i < n;) {
        const unsigned char c = p[i];
        int more = 0;
        char32_t cp = 0;
        if (c < 0x80) { ++i; continue; }
        if (c >= 0xC2 && c <= 0xDF) { more = 1; cp = c & 0x1F; }
        else if (c >= 0xE0 && c <= 0xEF) { more = 2; cp = c & 0x0F; }
        else if (c >= 0xF0 && c <= 0xF4) { more = 3; cp = c & 0x07; }
        else return false;
        if (i + more >= n)  // the sequence runs past the end
            return false;
        for (int k = 1; k <= more; ++k) {
            if ((p[i + k] & 0xC0) != 0x80)
                return false;
            cp = (cp << 6) | (p[i + k] & 0x3F);
        }
        // Overlong forms, surrogates and values past U+10FFFF are not UTF-8.
        if ((more == 2 && cp < 0x800) || (more == 3 && (cp < 0x10000 || cp > 0x10FFFF)) ||
            (cp >= 0xD800 && cp <= 0xDFFF))
            return false;
        i += more + 1;
    }
    return true;
}

// The code pages themselves are the seams' (one table for reading and
// writing, shared with the pages the program writes).
QString fromWindows1255(const QByteArray& bytes) { return codepage::fromWindows1255(bytes); }
QString fromWindows1252(const QByteArray& bytes) { return codepage::fromWindows1252(bytes); }
QByteArray toWindows1255(const QString& text) { return codepage::toWindows1255(text); }

DecodedText decodeText(const QByteArray& bytes, const QString& declared)
{
    DecodedText r;
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        r.text = QString::fromUtf8(bytes.mid(3));
        r.encoding = Encoding::Utf8Bom;
        return r;
    }
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        const bool le = bytes.startsWith("\xFF\xFE");
        QStringDecoder dec(le ? QStringDecoder::Utf16LE : QStringDecoder::Utf16BE);
        r.text = dec(bytes.mid(2));
        r.encoding = le ? Encoding::Utf16LE : Encoding::Utf16BE;
        return r;
    }
    if (const int u16 = utf16WithoutBom(bytes)) {
        QStringDecoder dec(u16 == 1 ? QStringDecoder::Utf16LE : QStringDecoder::Utf16BE);
        r.text = dec(bytes);
        r.encoding = u16 == 1 ? Encoding::Utf16LE : Encoding::Utf16BE;
        return r;
    }
    if (isValidUtf8(bytes)) {
        r.text = QString::fromUtf8(bytes);
        r.encoding = Encoding::Utf8;
        return r;
    }
    const Claim claim = claimOf(declared);
    const bool hebrew = claim == Claim::Hebrew || ((claim == Claim::None || claim == Claim::Utf8) && looksLikeWindows1255(bytes));
    r.encoding = hebrew ? Encoding::Windows1255 : Encoding::Windows1252;
    r.text = hebrew ? fromWindows1255(bytes) : fromWindows1252(bytes);
    return r;
}

QString notAStatement(const QByteArray& bytes)
{
    if (bytes.trimmed().isEmpty())
        return QStringLiteral("הקובץ ריק");
    // Text files hold no NUL and few control characters; an image, an
    // archive or a spreadsheet in its binary form holds many. UTF-16 is text.
    if (!bytes.startsWith("\xFF\xFE") && !bytes.startsWith("\xFE\xFF") && !utf16WithoutBom(bytes)) {
        const qsizetype n = std::min<qsizetype>(bytes.size(), 8192);
        qsizetype control = 0;
        for (qsizetype i = 0; i < n; ++i) {
            const auto c = static_cast<unsigned char>(bytes[i]);
            if (c == 0)
                return QStringLiteral("הקובץ בינארי (בבית %1 יש תו אפס) ואינו קובץ טקסט").arg(i + 1);
            if (c < 0x20 && c != '\n' && c != '\r' && c != '\t' && c != '\f')
                ++control;
        }
        if (control * 20 > n)
            return QStringLiteral("הקובץ בינארי ואינו קובץ טקסט");
    }
    static const QRegularExpression html(QStringLiteral("^\\s*(<!doctype\\s+html|<html|<head|<body)"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QString start = QString::fromLatin1(bytes.left(512));
    if (html.match(start).hasMatch()) {
        static const QRegularExpression title(QStringLiteral("<title>([^<]*)</title>"),
                                              QRegularExpression::CaseInsensitiveOption);
        const auto m = title.match(QString::fromUtf8(bytes.left(4096)));
        const QString t = m.hasMatch() ? m.captured(1).simplified() : QString();
        return t.isEmpty() ? QStringLiteral("הקובץ הוא דף אינטרנט (HTML) ולא דף חשבון")
                           : QStringLiteral("הקובץ הוא דף אינטרנט (HTML) ולא דף חשבון: \"%1\"").arg(t);
    }
    return {};
}

std::optional<QChar> decimalMarkOfOne(const QString& text)
{
    QStringView t = QStringView(text).trimmed();
    while (!t.isEmpty() && (t.back() == u'-' || t.back() == u')' || t.back() == u' '))
        t.chop(1);
    const qsizetype lastComma = t.lastIndexOf(u','), lastDot = t.lastIndexOf(u'.');
    if (lastComma >= 0 && lastDot >= 0)
        return lastComma > lastDot ? QLatin1Char(',') : QLatin1Char('.');
    // A comma followed by one or two digits at the end is a decimal comma.
    const qsizetype after = t.size() - lastComma - 1;
    if (lastComma >= 0 && after >= 1 && after <= 2) {
        for (qsizetype i = lastComma + 1; i < t.size(); ++i)
            if (!t[i].isDigit())
                return std::nullopt;
        return QLatin1Char(',');
    }
    return std::nullopt;
}

QChar decimalMarkOf(const QStringList& texts)
{
    for (const QString& t : texts)
        if (const auto m = decimalMarkOfOne(t))
            return *m;
    return QLatin1Char('.');
}

std::optional<double> parseAmount(const QString& text, QChar decimalMark)
{
    QString t = text.trimmed();
    if (t.isEmpty())
        return std::nullopt;
    bool negative = false;
    if (t.startsWith(QLatin1Char('(')) && t.endsWith(QLatin1Char(')'))) {
        negative = true;
        t = t.mid(1, t.size() - 2).trimmed();
    }
    // Currency signs and codes around the digits: ₪, $, €, "ILS", "ש\"ח".
    auto plain = [](QChar c) { return c.isDigit() || c == u'-' || c == u'+' || c == u'.' || c == u','; };
    if (!plain(t.front()) || !plain(t.back())) {
        static const QRegularExpression currency(
            QStringLiteral("^(₪|\\$|€|£|ILS|NIS|USD|EUR|ש\"ח|שח)\\s*|\\s*(₪|\\$|€|£|ILS|NIS|USD|EUR|ש\"ח|שח)$"));
        t.remove(currency);
        t = t.trimmed();
        if (t.isEmpty())
            return std::nullopt;
    }
    // U+2212 and the en dash serve as minus in some exports.
    t.replace(QChar(0x2212), QLatin1Char('-'));
    if (t.startsWith(QLatin1Char('-')) || t.startsWith(QLatin1Char('+'))) {
        negative = negative != (t[0] == QLatin1Char('-'));
        t = t.mid(1).trimmed();
    } else if (t.endsWith(QLatin1Char('-'))) {
        negative = !negative;
        t.chop(1);
        t = t.trimmed();
    }
    if (t.isEmpty())
        return std::nullopt;
    const QChar group = decimalMark == QLatin1Char(',') ? QLatin1Char('.') : QLatin1Char(',');
    // Digits into a whole number and a count of decimals: exact for every
    // amount a statement holds, and far quicker than a locale-aware parse.
    qint64 mantissa = 0;
    int decimals = 0, digits = 0;
    bool seenDecimal = false;
    for (QChar c : t) {
        if (c >= u'0' && c <= u'9') {
            // 1e13 is more money than any account holds; more digits are
            // no amount.
            if (++digits > 17)
                return std::nullopt;
            mantissa = mantissa * 10 + (c.unicode() - u'0');
            if (seenDecimal)
                ++decimals;
        } else if (c == decimalMark && !seenDecimal) {
            seenDecimal = true;
        } else if ((c == group || c == QLatin1Char(' ') || c == QChar(0xA0) || c == QLatin1Char('\'')) && !seenDecimal &&
                   digits > 0) {
            continue;
        } else {
            return std::nullopt;
        }
    }
    if (digits == 0)
        return std::nullopt;
    static const double scale[] = {1, 10, 100, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17};
    const double v = double(mantissa) / scale[decimals];
    if (v > 1e13)
        return std::nullopt;
    return negative ? -v : v;
}

namespace {

struct DateParts {
    int a = 0, b = 0, c = 0;
    int aDigits = 0, cDigits = 0;
};

// Digits, a separator ("/", "." or "-"), digits, the same separator, two
// or four digits; then the end, or a time ("T..." or " ...") or a zone
// ("+02:00", "Z"). Written out by hand: statements have a date a row.
std::optional<DateParts> partsOf(const QString& text)
{
    const QStringView t = QStringView(text).trimmed();
    qsizetype i = 0;
    auto digits = [&](int& value, int& count, int most) {
        value = 0;
        count = 0;
        while (i < t.size() && count < most && t[i] >= u'0' && t[i] <= u'9') {
            value = value * 10 + (t[i].unicode() - u'0');
            ++count;
            ++i;
        }
        return count > 0;
    };
    DateParts p;
    int bDigits = 0;
    if (!digits(p.a, p.aDigits, 4) || i >= t.size())
        return std::nullopt;
    const QChar sep = t[i];
    if (sep != u'/' && sep != u'.' && sep != u'-')
        return std::nullopt;
    ++i;
    if (!digits(p.b, bDigits, 2) || i >= t.size() || t[i] != sep)
        return std::nullopt;
    ++i;
    if (!digits(p.c, p.cDigits, 4) || (p.cDigits != 2 && p.cDigits != 4 && !(p.aDigits == 4 && p.cDigits == 1)))
        return std::nullopt;
    if (i < t.size()) {
        const QChar next = t[i];
        if (next != u'T' && next != u' ' && next != u'+' && next != u'-' && next != u'Z')
            return std::nullopt;
    }
    return p;
}

int fullYear(int y, int digits)
{
    // Two-digit years: statements are of this century and the last.
    if (digits == 2)
        return y < 70 ? 2000 + y : 1900 + y;
    return y;
}

} // namespace

std::optional<DateOrder> dateOrderOfOne(const QString& text)
{
    const auto p = partsOf(text);
    if (!p)
        return std::nullopt;
    if (p->aDigits == 4)
        return DateOrder::YearFirst;
    if (p->a > 12)
        return DateOrder::DayFirst;
    if (p->b > 12)
        return DateOrder::MonthFirst;
    return std::nullopt;
}

DateOrder dateOrderOf(const QStringList& texts)
{
    for (const QString& t : texts)
        if (const auto o = dateOrderOfOne(t))
            return *o;
    return DateOrder::DayFirst;
}

std::optional<QDate> parseDate(const QString& text, DateOrder order, bool* invalid)
{
    if (invalid)
        *invalid = false;
    const auto p = partsOf(text);
    if (!p)
        return std::nullopt;
    int y = 0, m = 0, d = 0;
    if (p->aDigits == 4) {
        y = p->a; m = p->b; d = p->c;
        if (p->cDigits != 2 && p->cDigits != 1) {
            if (invalid) *invalid = true;
            return std::nullopt;
        }
    } else if (p->aDigits > 2) {
        if (invalid) *invalid = true;
        return std::nullopt;
    } else {
        y = fullYear(p->c, p->cDigits);
        if (order == DateOrder::MonthFirst) { m = p->a; d = p->b; }
        else { d = p->a; m = p->b; }
    }
    const QDate date(y, m, d);
    if (!date.isValid()) {
        if (invalid) *invalid = true;
        return std::nullopt;
    }
    return date;
}

QStringList splitDelimited(QStringView line, QChar separator)
{
    QStringList cells;
    if (!line.contains(u'"')) {
        cells.reserve(8);
        for (QStringView cell : line.tokenize(separator))
            cells << cell.trimmed().toString();
        return cells;
    }
    QString cell;
    bool quoted = false, wasQuoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (quoted) {
            if (c == QLatin1Char('"')) {
                if (i + 1 < line.size() && line[i + 1] == QLatin1Char('"')) {
                    cell += c;
                    ++i;
                } else {
                    quoted = false;
                }
            } else {
                cell += c;
            }
        } else if (c == QLatin1Char('"') && cell.trimmed().isEmpty() && !wasQuoted) {
            quoted = wasQuoted = true;
            cell.clear();
        } else if (c == separator) {
            cells << (wasQuoted ? cell : cell.trimmed());
            cell.clear();
            wasQuoted = false;
        } else {
            cell += c;
        }
    }
    cells << (wasQuoted ? cell : cell.trimmed());
    return cells;
}

} // namespace pelkor::feed
