// Statement: deciding a file's format from its content and handing it to
// the reader of that format. See Statement.h.
#include "Statement.h"

#include "CsvReader.h"
#include "HtmlTable.h"
#include "OtherReaders.h"
#include "TextInput.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace pelkor::feed {

QString formatName(Format f)
{
    switch (f) {
    case Format::Csv: return QStringLiteral("CSV");
    case Format::Qif: return QStringLiteral("QIF");
    case Format::Ofx: return QStringLiteral("OFX");
    case Format::Camt: return QStringLiteral("camt.053");
    case Format::Unknown: break;
    }
    return QStringLiteral("?");
}

Format detectFormat(const QByteArray& bytes)
{
    // Only the beginning decides: every format names itself in its first
    // kilobytes (an OFX header, camt's namespace, QIF's first "!" line).
    const QByteArray head = bytes.left(4096);
    const QString start = QString::fromLatin1(head).trimmed();
    static const QRegularExpression ofx(QStringLiteral("^(\\xEF\\xBB\\xBF)?\\s*OFXHEADER\\s*:|<\\?OFX\\s|<OFX>"),
                                        QRegularExpression::CaseInsensitiveOption);
    if (ofx.match(start).hasMatch())
        return Format::Ofx;
    if (start.contains(QLatin1String("BkToCstmrStmt")) || start.contains(QLatin1String("BkToCstmrAcctRpt")) ||
        start.contains(QLatin1String("camt.05")))
        return Format::Camt;
    static const QRegularExpression qif(QStringLiteral("^(\\xEF\\xBB\\xBF)?\\s*!(Type|Account|Option|Clear)"),
                                        QRegularExpression::CaseInsensitiveOption);
    if (qif.match(start).hasMatch())
        return Format::Qif;
    return Format::Csv;
}

ReadResult readStatement(const QByteArray& bytes, const QString& fileName)
{
    const QString name = QFileInfo(fileName).fileName();
    const QString why = notAStatement(bytes);
    const QString fallbackAccount = QFileInfo(fileName).completeBaseName();
    if (!why.isEmpty()) {
        // A bank's table saved as a page (often named .xls) is a statement;
        // any other page is not, and is refused with its title.
        const QString table = why.contains(QLatin1String("HTML")) ? htmlTableText(bytes) : QString();
        if (!table.isEmpty()) {
            ReadResult r = readCsv(table, fileName, fallbackAccount);
            if (r.ok()) {
                r.details = QStringLiteral("טבלת HTML, ") + r.details;
                return r;
            }
        }
        return ReadResult::refused(Format::Unknown, QStringLiteral("%1: %2").arg(name, why));
    }
    ReadResult r;
    switch (const Format f = detectFormat(bytes)) {
    case Format::Ofx:
        r = readOfx(bytes, fileName);
        break;
    case Format::Camt:
        r = readCamt(bytes, fileName);
        break;
    case Format::Qif:
    case Format::Csv:
    case Format::Unknown: {
        const DecodedText t = decodeText(bytes);
        r = f == Format::Qif ? readQif(t.text, fileName, fallbackAccount) : readCsv(t.text, fileName, fallbackAccount);
        r.details = r.details.isEmpty() ? encodingName(t.encoding)
                                        : encodingName(t.encoding) + QStringLiteral(", ") + r.details;
        break;
    }
    }
    if (!r.ok())
        r.accounts.clear();
    return r;
}

ReadResult readStatementFile(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return ReadResult::refused(Format::Unknown,
                                   QStringLiteral("%1: לא ניתן לקרוא את הקובץ (%2)").arg(path, f.errorString()));
    // Statements are small; anything past 200 MB is not one.
    if (f.size() > 200LL * 1024 * 1024)
        return ReadResult::refused(Format::Unknown, QStringLiteral("%1: הקובץ גדול מדי לדף חשבון").arg(path));
    return readStatement(f.readAll(), path);
}

} // namespace pelkor::feed
