// CodePages: the two single-byte code pages the program meets, windows-1255
// (Hebrew) and windows-1252 (Western), both ways.
//
// Bank statements arrive in them, and every page the program writes for a
// web view goes out in windows-1255. One table per code page serves both
// directions, so reading and writing can never disagree on a byte.
//
// Not here: guessing which encoding a file is in (the downloader's
// TextInput), and HTML escaping (Html.h).
#pragma once

#include <QByteArray>
#include <QString>

namespace pelkor::codepage {

// Bytes as text: ASCII as it stands, 0x80-0xFF through the page's table;
// a byte the page leaves undefined becomes U+FFFD.
QString fromWindows1255(const QByteArray& bytes);
QString fromWindows1252(const QByteArray& bytes);

// What becomes of a character windows-1255 cannot hold.
enum class Unmappable {
    Question,        // "?", for plain files and tests
    CharReference,   // "&#NNNN;" (the code point, surrogate pairs joined): pages
};

// Text as windows-1255 bytes. ASCII and the page's characters become one
// byte each; any other character as unmappable says.
QByteArray toWindows1255(const QString& text, Unmappable unmappable = Unmappable::Question);

} // namespace pelkor::codepage
