// HtmlTable: a statement saved by a bank's site as an HTML table (often
// named .xls), turned into delimited text for the CSV reader.
//
// Each <tr> becomes a line and each <td> or <th> a cell, tab-separated,
// with tags removed and the common character references decoded. The
// bytes are decoded by the page's declared charset (<meta charset> or
// http-equiv content) unless they are valid UTF-8. A page with no table
// rows gives an empty text: it is a page, not a statement (an error or a
// login page saved by mistake).
#pragma once

#include <QByteArray>
#include <QString>

namespace pelkor::feed {

// The table rows of an HTML page as tab-separated lines; empty when the
// page has fewer than two rows of cells.
QString htmlTableText(const QByteArray& bytes);

} // namespace pelkor::feed
