// HtmlTable: HTML table exports as delimited text. See HtmlTable.h.
#include "HtmlTable.h"

#include "TextInput.h"

#include <QRegularExpression>

namespace pelkor::feed {

namespace {

QString decodeEntities(QString s)
{
    static const QRegularExpression numeric(QStringLiteral("&#(x?)([0-9a-fA-F]+);"));
    for (auto m = numeric.match(s); m.hasMatch(); m = numeric.match(s, m.capturedStart() + 1)) {
        bool ok = false;
        const uint code = m.captured(2).toUInt(&ok, m.captured(1).isEmpty() ? 10 : 16);
        if (!ok || code == 0 || code > 0x10FFFF)
            continue;
        s.replace(m.capturedStart(), m.capturedLength(), QString::fromUcs4(reinterpret_cast<const char32_t*>(&code), 1));
    }
    s.replace(QStringLiteral("&nbsp;"), QStringLiteral(" "));
    s.replace(QStringLiteral("&quot;"), QStringLiteral("\""));
    s.replace(QStringLiteral("&lt;"), QStringLiteral("<"));
    s.replace(QStringLiteral("&gt;"), QStringLiteral(">"));
    s.replace(QStringLiteral("&amp;"), QStringLiteral("&"));
    return s;
}

} // namespace

QString htmlTableText(const QByteArray& bytes)
{
    static const QRegularExpression charset(QStringLiteral("charset\\s*=\\s*[\"']?([A-Za-z0-9_-]+)"),
                                            QRegularExpression::CaseInsensitiveOption);
    const auto m = charset.match(QString::fromLatin1(bytes.left(4096)));
    const QString html = decodeText(bytes, m.hasMatch() ? m.captured(1) : QString()).text;

    static const QRegularExpression row(QStringLiteral("<tr\\b[^>]*>(.*?)(?=<tr\\b|</table|$)"),
                                        QRegularExpression::CaseInsensitiveOption |
                                            QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression cell(QStringLiteral("<t[dh]\\b[^>]*>(.*?)(?=<t[dh]\\b|</tr|$)"),
                                         QRegularExpression::CaseInsensitiveOption |
                                             QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression tag(QStringLiteral("<[^>]*>"));
    QStringList lines;
    for (auto r = row.globalMatch(html); r.hasNext();) {
        const QString inner = r.next().captured(1);
        QStringList cells;
        for (auto c = cell.globalMatch(inner); c.hasNext();) {
            QString text = c.next().captured(1);
            text.remove(tag);
            text = decodeEntities(text).simplified();
            text.remove(QLatin1Char('\t'));
            cells << text;
        }
        if (!cells.isEmpty())
            lines << cells.join(QLatin1Char('\t'));
    }
    return lines.size() >= 2 ? lines.join(QLatin1Char('\n')) + QLatin1Char('\n') : QString();
}

} // namespace pelkor::feed
