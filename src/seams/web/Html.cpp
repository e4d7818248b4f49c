// Html: escaping and writing pages.
#include "seams/web/Html.h"

#include "seams/web/CodePages.h"

#include <QSaveFile>

namespace pelkor::web {

void appendEscaped(QString& out, const QString& text)
{
    const QChar* p = text.constData();
    const qsizetype n = text.size();
    qsizetype plain = 0;   // start of the run not yet copied
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t c = p[i].unicode();
        const char* entity = nullptr;
        switch (c) {
        case u'&': entity = "&amp;"; break;
        case u'<': entity = "&lt;"; break;
        case u'>': entity = "&gt;"; break;
        case u'"': entity = "&quot;"; break;
        case u'\'': entity = "&#39;"; break;
        default: continue;
        }
        out.append(p + plain, i - plain);
        out.append(QLatin1String(entity));
        plain = i + 1;
    }
    out.append(p + plain, n - plain);
}

QString htmlEscape(const QString& text)
{
    QString out;
    out.reserve(text.size() + 8);
    appendEscaped(out, text);
    return out;
}

QByteArray pageBytes(const QString& html)
{
    return codepage::toWindows1255(html, codepage::Unmappable::CharReference);
}

QString writePage(const QString& folder, const QString& fileName, const QString& html)
{
    QString path = folder;
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    path += fileName;
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return {};
    const QByteArray bytes = pageBytes(html);
    if (f.write(bytes) != bytes.size() || !f.commit())
        return {};
    return path;
}

QString fixedPage(const QString& programDir, const QString& fileName)
{
    return programDir.endsWith(QLatin1Char('/')) ? programDir + fileName : programDir + QLatin1Char('/') + fileName;
}

} // namespace pelkor::web
