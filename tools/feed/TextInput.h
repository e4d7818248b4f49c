// TextInput: the bytes of a statement file turned into text, and the
// numbers and dates written in it.
//
// Encodings. A byte-order mark decides (UTF-8, UTF-16). Without one, text
// that is valid UTF-8 is UTF-8. Otherwise the file is single-byte: the
// encoding it declares (an OFX CHARSET, an XML declaration) when that names
// one we know, else windows-1255 when the high bytes come in runs that spell
// Hebrew letters, else windows-1252 (which ISO-8859-1 text reads the same
// in every printable place). The decision is reported, so the user sees how
// the file was read.
//
// Amounts. Grouping with "," or "." or a blank, a decimal "." or ",", a
// leading or trailing minus, a leading "+", brackets for a negative, and a
// currency sign or code around the digits. Whether "," is the decimal mark
// is decided for a whole column (decimalMarkOf), since "1,234" alone cannot
// say.
//
// Dates. Day, month and year in some order with "/", "." or "-" between,
// two- or four-digit years, or ISO "YYYY-MM-DD" (with a time or zone after
// it). The order of a column is decided from all its dates (dateOrderOf):
// a first field above 12 means day first, a second field above 12 month
// first, four digits first means year first; undecided columns are read day
// first, as this country writes them.
#pragma once

#include <QByteArray>
#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>

namespace pelkor::feed {

enum class Encoding { Utf8, Utf8Bom, Utf16LE, Utf16BE, Windows1255, Windows1252 };
QString encodingName(Encoding e);

struct DecodedText {
    QString text;
    Encoding encoding = Encoding::Utf8;
};

// Decodes bytes as the rules above say. declared is the file's own claim
// ("UTF-8", "1252", "windows-1255", "ISO-8859-8", ...) or empty; a claim of
// a single-byte encoding is overruled by valid UTF-8 with multi-byte
// sequences in it (files that say 1252 and hold UTF-8 are common).
DecodedText decodeText(const QByteArray& bytes, const QString& declared = {});

// True when bytes is valid UTF-8 (ASCII included).
bool isValidUtf8(const QByteArray& bytes);
// Bytes 0x80-0xFF of windows-1255 (Hebrew) and windows-1252 (Western) as
// text; undefined bytes become U+FFFD.
QString fromWindows1255(const QByteArray& bytes);
QString fromWindows1252(const QByteArray& bytes);
QByteArray toWindows1255(const QString& text);  // for tests and generated files

// Why bytes are no text at all ("ריק", "בינארי", "HTML"), or empty when
// they may be a statement. Checked before any reader runs.
QString notAStatement(const QByteArray& bytes);

// The decimal mark of a column of amount texts: ',' when some text ends in a
// comma and one or two digits, or has a comma after the last dot; '.'
// otherwise.
QChar decimalMarkOf(const QStringList& texts);
// The mark one text decides for, or nullopt when it decides nothing ("12",
// "12.40", "1.234").
std::optional<QChar> decimalMarkOfOne(const QString& text);
// An amount, or nullopt when text is not one. Empty text is nullopt too.
std::optional<double> parseAmount(const QString& text, QChar decimalMark = QLatin1Char('.'));
// Rounded to whole agorot (cents), so sums do not drift.
inline double toCents(double v) { return double(qRound64(v * 100.0)) / 100.0; }

enum class DateOrder { DayFirst, MonthFirst, YearFirst };
DateOrder dateOrderOf(const QStringList& texts);
// The order one date decides for, or nullopt ("01/02/2025", or no date).
std::optional<DateOrder> dateOrderOfOne(const QString& text);
// A date in the given order. When the text has the shape of a date but names
// no day of the calendar (31/02/2024), invalid is set and the result is
// nullopt; for text that is no date at all invalid stays false.
std::optional<QDate> parseDate(const QString& text, DateOrder order, bool* invalid = nullptr);

// Cells of one delimited line, as the CSV reader reads them (quotes doubled
// inside quoted cells). Exposed for tests.
QStringList splitDelimited(QStringView line, QChar separator);

} // namespace pelkor::feed
