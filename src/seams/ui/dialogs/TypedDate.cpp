// TypedDate: the day-first reading of a typed date.
#include "seams/ui/dialogs/TypedDate.h"

#include <QRegularExpression>

namespace pelkor::ui {

namespace {

// Two-digit years below this one belong to this century, as on the old desktop.
constexpr int kTwoDigitYearPivot = 30;

} // namespace

std::optional<QDate> readTypedDate(const QString& text)
{
    // The back-reference \2 makes both separators the same.
    static const QRegularExpression form(
        QStringLiteral("^(\\d{1,2})([/.\\-])(\\d{1,2})\\2(\\d{4}|\\d{2})$"));
    const QRegularExpressionMatch m = form.match(text.trimmed());
    if (!m.hasMatch())
        return std::nullopt;
    const int day = m.captured(1).toInt();
    const int month = m.captured(3).toInt();
    const QString y = m.captured(4);
    int year = y.toInt();
    if (y.size() == 2)
        year += year < kTwoDigitYearPivot ? 2000 : 1900;
    const QDate d(year, month, day);
    if (!d.isValid())
        return std::nullopt;
    return d;
}

} // namespace pelkor::ui
