// CodePages: the tables of windows-1255 and windows-1252 and the loops over
// them.
#include "seams/web/CodePages.h"

#include <array>

namespace pelkor::codepage {

namespace {

// Bytes 0x80-0xFF of windows-1255; 0xFFFD where the code page defines none.
const char16_t cp1255High[128] = {
    0x20AC,0xFFFD,0x201A,0x0192,0x201E,0x2026,0x2020,0x2021,0x02C6,0x2030,0xFFFD,0x2039,0xFFFD,0xFFFD,0xFFFD,0xFFFD,
    0xFFFD,0x2018,0x2019,0x201C,0x201D,0x2022,0x2013,0x2014,0x02DC,0x2122,0xFFFD,0x203A,0xFFFD,0xFFFD,0xFFFD,0xFFFD,
    0x00A0,0x00A1,0x00A2,0x00A3,0x20AA,0x00A5,0x00A6,0x00A7,0x00A8,0x00A9,0x00D7,0x00AB,0x00AC,0x00AD,0x00AE,0x00AF,
    0x00B0,0x00B1,0x00B2,0x00B3,0x00B4,0x00B5,0x00B6,0x00B7,0x00B8,0x00B9,0x00F7,0x00BB,0x00BC,0x00BD,0x00BE,0x00BF,
    0x05B0,0x05B1,0x05B2,0x05B3,0x05B4,0x05B5,0x05B6,0x05B7,0x05B8,0x05B9,0xFFFD,0x05BB,0x05BC,0x05BD,0x05BE,0x05BF,
    0x05C0,0x05C1,0x05C2,0x05C3,0x05F0,0x05F1,0x05F2,0x05F3,0x05F4,0xFFFD,0xFFFD,0xFFFD,0xFFFD,0xFFFD,0xFFFD,0xFFFD,
    0x05D0,0x05D1,0x05D2,0x05D3,0x05D4,0x05D5,0x05D6,0x05D7,0x05D8,0x05D9,0x05DA,0x05DB,0x05DC,0x05DD,0x05DE,0x05DF,
    0x05E0,0x05E1,0x05E2,0x05E3,0x05E4,0x05E5,0x05E6,0x05E7,0x05E8,0x05E9,0x05EA,0xFFFD,0xFFFD,0x200E,0x200F,0xFFFD};

// Bytes 0x80-0x9F of windows-1252; from 0xA0 on it is ISO-8859-1.
const char16_t cp1252Low[32] = {
    0x20AC,0xFFFD,0x201A,0x0192,0x201E,0x2026,0x2020,0x2021,0x02C6,0x2030,0x0160,0x2039,0x0152,0xFFFD,0x017D,0xFFFD,
    0xFFFD,0x2018,0x2019,0x201C,0x201D,0x2022,0x2013,0x2014,0x02DC,0x2122,0x0161,0x203A,0x0153,0xFFFD,0x017E,0x0178};

// A single-byte code page: ASCII as it stands, the other bytes through
// the page's table.
template <class High>
QString fromSingleByte(const QByteArray& bytes, High high)
{
    QString out(bytes.size(), Qt::Uninitialized);
    QChar* o = out.data();
    for (char ch : bytes) {
        const auto c = static_cast<unsigned char>(ch);
        *o++ = QChar(c < 0x80 ? char16_t(c) : high(c));
    }
    return out;
}

// The byte of each character of U+0000..U+FFFF that windows-1255 holds
// above ASCII, 0 for none: the table above turned round once, so a page of
// many rows costs one lookup per character.
struct Reverse1255 {
    std::array<unsigned char, 0x10000> byte{};
    Reverse1255()
    {
        for (int i = 0; i < 128; ++i)
            if (cp1255High[i] != 0xFFFD)
                byte[cp1255High[i]] = static_cast<unsigned char>(0x80 + i);
    }
};

const Reverse1255& reverse1255()
{
    static const Reverse1255 table;
    return table;
}

} // namespace

QString fromWindows1255(const QByteArray& bytes)
{
    return fromSingleByte(bytes, [](unsigned char c) { return cp1255High[c - 0x80]; });
}

QString fromWindows1252(const QByteArray& bytes)
{
    // 0xA0 and above are Latin-1 itself.
    return fromSingleByte(bytes, [](unsigned char c) { return c >= 0xA0 ? char16_t(c) : cp1252Low[c - 0x80]; });
}

QByteArray toWindows1255(const QString& text, Unmappable unmappable)
{
    const Reverse1255& r = reverse1255();
    QByteArray out;
    out.reserve(text.size());
    const QChar* p = text.constData();
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t u = p[i].unicode();
        if (u < 0x80) {
            out += char(u);
            continue;
        }
        if (const unsigned char b = r.byte[u]) {
            out += char(b);
            continue;
        }
        if (unmappable == Unmappable::Question) {
            out += '?';
            if (QChar::isHighSurrogate(u) && i + 1 < n && p[i + 1].isLowSurrogate())
                ++i;
            continue;
        }
        char32_t cp = u;
        if (QChar::isHighSurrogate(u) && i + 1 < n && p[i + 1].isLowSurrogate())
            cp = QChar::surrogateToUcs4(u, p[++i].unicode());
        out += "&#";
        out += QByteArray::number(quint32(cp));
        out += ';';
    }
    return out;
}

} // namespace pelkor::codepage
