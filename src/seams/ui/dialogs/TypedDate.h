// TypedDate: a date as a user types it on a Hebrew (Israel) desktop.
//
// Day first: d/m/yyyy, d/m/yy, d.m.yyyy, d-m-yyyy (one or two digits for day
// and month, one separator used throughout, blanks around the whole allowed).
// A two-digit year is read as the old desktop read it: 00-29 -> 2000-2029,
// 30-99 -> 1930-1999. Anything else, or a day that the month does not have,
// is no date.
//
// The dialogs use it to decide whether a typed text "is a date"; the callers
// that receive such a text read it with the same function.
#pragma once

#include <QDate>
#include <QString>

#include <optional>

namespace pelkor::ui {

std::optional<QDate> readTypedDate(const QString& text);

} // namespace pelkor::ui
