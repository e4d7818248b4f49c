// CamtReader: ISO 20022 bank-to-customer statements (camt.053, Stmt) and
// account reports (camt.052, Rpt), read with QXmlStreamReader.
//
// Each Stmt or Rpt is one account (Acct/Id/IBAN or Acct/Id/Othr/Id, and
// Acct/Ccy). Balances: OPBD (or PRCD) opening, CLBD closing, each signed by
// its CdtDbtInd. Entries (Ntry): the unsigned Amt signed by CdtDbtInd, the
// value date (ValDt) or else the booking date (BookgDt), either as Dt or
// DtTm, a zone after the date ignored; the first AcctSvcrRef within the
// entry as the reference; AddtlNtryInf and the unstructured remittance
// lines (Ustrd) as the row's words. Pending entries (Sts PDNG) are not yet
// the bank's rows and are left out.
//
// Refused: XML that does not parse (with the line and the parser's words;
// this covers bytes that are not in the declared encoding), an entry
// without an amount or date, or with an amount or date that is none.
#include "OtherReaders.h"

#include "TextInput.h"

#include <QFileInfo>
#include <QXmlStreamReader>

namespace pelkor::feed {

namespace {

struct Entry {
    QString amount, indicator, bookDate, valueDate, reference, status;
    QStringList words;
    int line = 0;
};

struct Balance {
    QString code, amount, indicator;
};

} // namespace

ReadResult readCamt(const QByteArray& bytes, const QString& fileName)
{
    const QString name = QFileInfo(fileName).fileName();
    auto refuse = [&](qint64 line, const QString& what) {
        return ReadResult::refused(Format::Camt, QStringLiteral("%1, שורה %2: %3").arg(name).arg(line).arg(what));
    };
    // Bytes that are not in the declared encoding (UTF-8 unless declared
    // otherwise) are named by their line; the XML parser would only say
    // that something is wrong.
    const QString head = QString::fromLatin1(bytes.left(200));
    const bool utf8 = !head.contains(QLatin1String("encoding=")) || head.contains(QLatin1String("UTF-8"), Qt::CaseInsensitive);
    if (utf8 && !isValidUtf8(bytes)) {
        int line = 1;
        for (const QByteArray& l : bytes.split('\n')) {
            if (!isValidUtf8(l))
                break;
            ++line;
        }
        return refuse(line, QStringLiteral("הקובץ אינו בקידוד UTF-8 שהוא מצהיר עליו; יש בשורה תווים בקידוד אחר"));
    }
    QXmlStreamReader xml(bytes);
    ReadResult result;
    result.format = Format::Camt;
    QStringList path;
    AccountStatement st;
    bool inStatement = false;
    Entry e;
    bool inEntry = false;
    Balance bal;
    bool inBalance = false;
    auto parent = [&](int up) { return path.size() > up ? path[path.size() - 1 - up] : QString(); };

    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            const QString el = xml.name().toString();
            path << el;
            if (el == QLatin1String("Stmt") || el == QLatin1String("Rpt")) {
                st = AccountStatement();
                inStatement = true;
            } else if (inStatement && el == QLatin1String("Ntry")) {
                e = Entry();
                e.line = int(xml.lineNumber());
                inEntry = true;
            } else if (inStatement && !inEntry && el == QLatin1String("Bal")) {
                bal = Balance();
                inBalance = true;
            }
            continue;
        }
        if (token == QXmlStreamReader::Characters && !xml.isWhitespace() && !path.isEmpty()) {
            const QString el = path.last();
            const QString text = xml.text().toString().trimmed();
            if (inEntry) {
                if (el == QLatin1String("Amt") && parent(1) == QLatin1String("Ntry"))
                    e.amount = text;
                else if (el == QLatin1String("CdtDbtInd") && parent(1) == QLatin1String("Ntry"))
                    e.indicator = text;
                else if ((el == QLatin1String("Dt") || el == QLatin1String("DtTm")) && parent(1) == QLatin1String("BookgDt"))
                    e.bookDate = text;
                else if ((el == QLatin1String("Dt") || el == QLatin1String("DtTm")) && parent(1) == QLatin1String("ValDt"))
                    e.valueDate = text;
                else if (el == QLatin1String("AcctSvcrRef") && e.reference.isEmpty())
                    e.reference = text;
                else if (el == QLatin1String("Sts") || (el == QLatin1String("Cd") && parent(1) == QLatin1String("Sts")))
                    e.status = text;
                else if (el == QLatin1String("AddtlNtryInf") || el == QLatin1String("Ustrd") ||
                         (el == QLatin1String("Nm") && parent(2) == QLatin1String("RltdPties")))
                    e.words << text.simplified();
            } else if (inBalance) {
                if (el == QLatin1String("Cd") && parent(2) == QLatin1String("Tp"))
                    bal.code = text;
                else if (el == QLatin1String("Amt"))
                    bal.amount = text;
                else if (el == QLatin1String("CdtDbtInd"))
                    bal.indicator = text;
            } else if (inStatement && path.contains(QLatin1String("Acct")) && !path.contains(QLatin1String("Svcr")) &&
                       !path.contains(QLatin1String("Ownr"))) {
                if ((el == QLatin1String("IBAN") || (el == QLatin1String("Id") && parent(1) == QLatin1String("Othr"))) &&
                    st.account.isEmpty())
                    st.account = text;
                else if (el == QLatin1String("Ccy"))
                    st.currency = text;
            }
            continue;
        }
        if (token != QXmlStreamReader::EndElement)
            continue;
        const QString el = path.isEmpty() ? QString() : path.takeLast();
        if (inEntry && el == QLatin1String("Ntry")) {
            inEntry = false;
            if (e.status == QLatin1String("PDNG"))
                continue;
            const auto amount = parseAmount(e.amount);
            if (!amount)
                return refuse(e.line, QStringLiteral("בתנועה (Ntry) הסכום \"%1\" באלמנט Amt אינו מספר").arg(e.amount));
            const QString dateText = (e.valueDate.isEmpty() ? e.bookDate : e.valueDate).left(10);
            const QDate date = QDate::fromString(dateText, Qt::ISODate);
            if (!date.isValid())
                return refuse(e.line, QStringLiteral("בתנועה (Ntry) התאריך \"%1\" אינו תאריך קיים").arg(dateText));
            StatementRow r;
            r.line = e.line;
            r.date = date;
            r.amount = toCents(e.indicator == QLatin1String("DBIT") ? -*amount : *amount);
            r.reference = e.reference;
            r.identity = e.reference;
            e.words.removeDuplicates();
            r.description = e.words.join(QLatin1Char(' ')).simplified();
            st.rows << r;
        } else if (inBalance && el == QLatin1String("Bal")) {
            inBalance = false;
            const auto amount = parseAmount(bal.amount);
            if (!amount)
                return refuse(xml.lineNumber(), QStringLiteral("ביתרה (Bal) הסכום \"%1\" אינו מספר").arg(bal.amount));
            const double v = toCents(bal.indicator == QLatin1String("DBIT") ? -*amount : *amount);
            if (bal.code == QLatin1String("OPBD") || bal.code == QLatin1String("PRCD"))
                st.opening = v;
            else if (bal.code == QLatin1String("CLBD"))
                st.closing = v;
        } else if (inStatement && (el == QLatin1String("Stmt") || el == QLatin1String("Rpt"))) {
            inStatement = false;
            if (st.account.isEmpty())
                st.account = QFileInfo(fileName).completeBaseName();
            if (!st.rows.isEmpty())
                result.accounts << st;
        }
    }
    if (xml.hasError())
        return refuse(xml.lineNumber(), QStringLiteral("הקובץ אינו XML תקין (%1)").arg(xml.errorString()));
    if (result.accounts.isEmpty())
        return ReadResult::refused(Format::Camt, QStringLiteral("%1: לא נמצאו בקובץ תנועות (Ntry) של חשבון").arg(name));
    result.details = QStringLiteral("XML");
    return result;
}

} // namespace pelkor::feed
