// Format: the text forms of dates, sums and kinds, the conversion of sums,
// and the small helpers on file names, numbers and colours.
//
// Statements, grids, command lines and pages all rely on these exact forms,
// so every window uses these functions and none writes its own. They hold no
// state. Not here: the lookups by type or kind, which need the arrays that
// a load fills (file/), and the trace (base/Trace.h).
#pragma once

#include "seams/store/Value.h"

#include <QDate>
#include <QString>
#include <cstdint>
#include <vector>

namespace pelkor {

// ---- dates -------------------------------------------------------------

// "#M/D/YYYY#", no leading zeros: the date literal of statements.
QString formatDateForSQL(const QDate& d);
// "dd/mm/yyyy": command lines and the report windows (formatTheDate).
QString formatDate224(const QDate& d);
inline QString formatTheDate(const QDate& d) { return formatDate224(d); }
// "dd/mm/yy", the year modulo 100.
QString formatDate8(const QDate& d);
// n with a "0" in front when it is below 10.
QString twoDigits(int n);

// ---- sums --------------------------------------------------------------

// The absolute value with two decimals, a leading zero and "," grouping; a
// negative x gets "-" behind the digits (-1234.5 -> "1,234.50-"). The
// rounding to cents happens first, so -0.001 reads "0.00-": the sign tells
// the user the sum was below zero even when it rounds away.
QString FormatSum(double x);
// The largest sum a line, a recurring line or the calculator gives: a
// double holds every agora of a sum below 10^13 (ten thousand billion),
// and not beyond. A larger sum is refused, never stored rounded.
inline constexpr double maxSum = 9999999999999.99;
// x rounds to more agorot than maxSum holds, either way (or is no finite
// number).
bool isSumTooLarge(double x);
// The refusal of such a sum, naming the limit: "הסכום גדול מדי. ...".
QString sumTooLargeMessage();
// Null -> 0, else the value as a double.
double RemoveSumNull(const store::Value& v);
// Null -> "", else the value as text.
QString RemoveNull(const store::Value& v);

// ---- conversion --------------------------------------------------------

// conv 0 gives x; above 0 multiplies; below 0 divides by -conv (-3 is "/3").
double reallyConvNum(double x, double conv);

// The factor of a window: a merged file converts each row by the factor of
// the member file the row came from; any other window by its own conv.
struct Conversion {
    bool isMerged = false;
    double conv = 0;
    std::vector<double> convs;          // per member file of a merged file
    std::vector<int> mergedBankIndexes; // per line: index into convs
    // The factor that applies to line row (0-based index into lines).
    double factorFor(int row) const;
};
double convNum(double x, int row, const Conversion& c);

// ---- kinds and text -----------------------------------------------------

// "+12" <-> "12+": a leading sign moves to the end, else a trailing sign
// moves to the front, else the text as it stands.
QString FormatKind(const QString& k);
// Each apostrophe becomes a backtick: the only escaping of user text that
// enters a statement.
QString fixString(const QString& s);
// The part behind the last path separator ("\" as the old paths wrote it,
// or "/"); a path without one gives "".
QString getFileName(const QString& path);
// getFileName less its last four characters (".pkr").
QString getShortFileName(const QString& path);
// s between a first-strong isolate and its end (U+2068 ... U+2069): a file
// name or a sum inside a Hebrew sentence keeps its own order ("cut -
// משוחזר.pkr", "1,234.50-") whatever surrounds it.
inline QString isolated(const QString& s) { return QChar(0x2068) + s + QChar(0x2069); }
// s less its last character.
QString StrZToStr(const QString& s);
// s with zeros in front up to eight characters (mailbox ids on command lines).
QString completeToLen8(const QString& s);

// ---- numbers -----------------------------------------------------------

// On 16-bit integers; a tie gives the second argument.
std::int16_t MyMin(std::int16_t a, std::int16_t b);
std::int16_t MyMax(std::int16_t a, std::int16_t b);
// n held within 1 and rows-1 (the first data row and the last row of a
// grid with one fixed row). A grid without data rows gives 1.
int clipRowNum(int n, int rows);

// ---- colours -----------------------------------------------------------

// Upper-case hexadecimal of n, with a "0" in front below 16.
QString hexByte(int n);
// "#RRGGBB" of a colour number whose lowest byte is red.
QString colorToHtml(std::uint32_t c);
// The colour number (lowest byte red) of r, g, b.
constexpr std::uint32_t rgb(int r, int g, int b)
{
    return std::uint32_t(r & 0xFF) | (std::uint32_t(g & 0xFF) << 8) | (std::uint32_t(b & 0xFF) << 16);
}

} // namespace pelkor
