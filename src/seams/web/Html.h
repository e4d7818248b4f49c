// Html: the text of the pages the program writes, and their files.
//
// Every text that comes from the user or a file (a detail, a kind's name, a
// file name) enters a page through htmlEscape, so that "<", "&" and quotes
// show as themselves and a script tag in a detail is words on the page,
// never a script. A page is written in windows-1255, as its head says; a
// character the code page lacks goes out as a character reference, so
// nothing is dropped or turned into "?".
//
// Not here: what a page holds (each window builds its own text), and how it
// is shown (WebView).
#pragma once

#include <QByteArray>
#include <QString>

namespace pelkor::web {

// The text with "&", "<", ">", '"' and "'" as entities: safe as element
// text and inside a quoted attribute.
QString htmlEscape(const QString& text);
// The same, appended to out (for pages built in one buffer).
void appendEscaped(QString& out, const QString& text);

// The meta line every written page carries in its head.
inline constexpr char charsetMeta[] = "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=windows-1255\">";

// The page's bytes as written: windows-1255, unmappable characters as
// "&#NNNN;".
QByteArray pageBytes(const QString& html);

// Writes html to folder/fileName (folder with or without a trailing "/")
// in windows-1255 and returns the file's path; empty when it could not be
// written. An existing file is replaced whole (written beside it, then
// renamed), so a view never reads half a page.
QString writePage(const QString& folder, const QString& fileName, const QString& html);

// The path of a fixed page shipped beside the program (anim.html).
QString fixedPage(const QString& programDir, const QString& fileName);

} // namespace pelkor::web
