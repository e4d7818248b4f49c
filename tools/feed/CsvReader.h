// CsvReader: bank statement exports as delimited text.
//
// What it takes: any separator of ",", ";", tab or "|" (the one that gives
// the most lines of one width); metadata lines above the header (title,
// period, account number, an opening or closing balance) and below the rows
// (a closing balance); a header row in Hebrew or in a Latin language, mapped
// to columns by its words (HeaderWords); one signed amount column or
// separate credit and debit columns; amounts with grouping, a decimal comma
// or dot decided for the file, a leading or trailing minus; dates in one
// order decided for the whole column; a running balance column.
//
// What it refuses, with the line: no header that names a date and an amount
// (the message lists the columns it saw), a row too short for the columns,
// an amount that is no number, a date that names no day. Lines after the
// header whose date cell holds words are metadata, not rows.
#pragma once

#include "Statement.h"
#include "TextInput.h"

namespace pelkor::feed {

// The roles a column can play, decided by its header's words.
enum class Column { None, Date, ValueDate, Reference, Description, Detail, Credit, Debit, Amount, Balance, Currency };

// The role of a header cell ("תאריך ערך" -> ValueDate, "Soll" -> Debit).
Column columnOf(const QString& header);

// text: the decoded file. fallbackAccount names the account when the file
// names none (the file's base name).
ReadResult readCsv(const QString& text, const QString& fileName, const QString& fallbackAccount);

} // namespace pelkor::feed
