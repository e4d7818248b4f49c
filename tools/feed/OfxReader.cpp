// OfxReader: OFX 1.x (SGML), OFX 2.x (XML) and QFX through libofx.
//
// libofx parses; this file prepares what it is given and checks what it
// gives back. Before parsing, the file is rewritten into a private
// temporary copy as OFX 1 SGML in UTF-8: the bytes are decoded by what they
// are rather than what the header claims (files that say 1252 and hold
// UTF-8 are common), the header is replaced by one that says UTF-8, CDATA
// sections become plain text, and decimal commas in amounts become dots.
// Writing every dialect as SGML lets the SGML parser take both closed and
// unclosed leaf elements, so a file with an XML header and an SGML body
// reads like any other.
//
// Refused: a file without </OFX> (truncated, with the line it stops at), a
// header that claims UTF-8 over bytes that are not, duplicate FITIDs within
// one account, a file libofx finds no statement in.
//
// Dates are taken from the DTPOSTED texts themselves (the bank's day),
// matched to libofx's transactions in document order, since its time_t
// depends on the zone the program runs in.
#include "OtherReaders.h"

#include "TextInput.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <libofx/libofx.h>

namespace pelkor::feed {

namespace {

QString at(const QString& fileName) { return QFileInfo(fileName).fileName(); }

struct Collected {
    QList<AccountStatement> accounts;
    QHash<QString, int> indexOf;  // account id -> index in accounts
    QHash<QString, QSet<QString>> fitids;
    QStringList postedDates;      // DTPOSTED texts in document order
    int transactions = 0;
    QString error;
    QString fileName;
};

QString text(const char* s) { return QString::fromUtf8(s).trimmed(); }

AccountStatement& accountFor(Collected& c, const QString& id)
{
    auto it = c.indexOf.find(id);
    if (it == c.indexOf.end()) {
        AccountStatement st;
        st.account = id;
        c.accounts << st;
        it = c.indexOf.insert(id, int(c.accounts.size() - 1));
    }
    return c.accounts[*it];
}

// The account as the bank numbers it: libofx's account_id joins the bank
// and account ids; the number alone is what a user knows.
QString accountName(const OfxAccountData& a)
{
    if (a.account_number_valid)
        return text(a.account_number);
    return text(a.account_id);
}

int onAccount(const OfxAccountData data, void* p)
{
    auto& c = *static_cast<Collected*>(p);
    if (data.account_id_valid) {
        const QString id = text(data.account_id);
        AccountStatement& st = accountFor(c, id);
        st.account = accountName(data);
        if (data.currency_valid)
            st.currency = text(data.currency);
    }
    return 0;
}

int onTransaction(const OfxTransactionData data, void* p)
{
    auto& c = *static_cast<Collected*>(p);
    const int n = c.transactions++;
    if (!c.error.isEmpty())
        return 0;
    if (!data.account_id_valid || !data.amount_valid) {
        c.error = QStringLiteral("%1: בתנועה %2 (STMTTRN) חסר סכום (TRNAMT)").arg(at(c.fileName)).arg(n + 1);
        return 0;
    }
    AccountStatement& st = accountFor(c, text(data.account_id));
    StatementRow r;
    r.line = n + 1;
    r.amount = toCents(data.amount);
    const QString posted = c.postedDates.value(n);
    if (posted.size() >= 8)
        r.date = QDate::fromString(posted.left(8), QStringLiteral("yyyyMMdd"));
    if (!r.date.isValid() && data.date_posted_valid)
        r.date = QDateTime::fromSecsSinceEpoch(data.date_posted, Qt::UTC).date();
    if (!r.date.isValid()) {
        c.error = QStringLiteral("%1: בתנועה %2 התאריך (DTPOSTED) \"%3\" אינו תאריך קיים")
                      .arg(at(c.fileName)).arg(n + 1).arg(posted);
        return 0;
    }
    const QString fitid = data.fi_id_valid ? text(data.fi_id) : QString();
    if (!fitid.isEmpty()) {
        QSet<QString>& seen = c.fitids[st.account];
        if (seen.contains(fitid)) {
            c.error = QStringLiteral("%1: המזהה FITID \"%2\" מופיע פעמיים (בתנועה %3); הקובץ אינו אמין")
                          .arg(at(c.fileName), fitid).arg(n + 1);
            return 0;
        }
        seen.insert(fitid);
        r.identity = fitid;
    }
    const QString check = data.check_number_valid ? text(data.check_number) : QString();
    r.reference = !check.isEmpty() && check != QLatin1String("0") ? check : fitid;
    const QString name = data.name_valid ? text(data.name) : QString();
    const QString memo = data.memo_valid ? text(data.memo) : QString();
    // A NAME cut at its length limit is the start of MEMO; otherwise both
    // are the bank's words.
    if (memo.isEmpty())
        r.description = name;
    else if (name.isEmpty() || memo.startsWith(name))
        r.description = memo;
    else
        r.description = name + QLatin1Char(' ') + memo;
    st.rows << r;
    return 0;
}

int onStatement(const OfxStatementData data, void* p)
{
    auto& c = *static_cast<Collected*>(p);
    if (!data.account_id_valid)
        return 0;
    AccountStatement& st = accountFor(c, text(data.account_id));
    if (data.account_ptr && data.account_ptr->account_id_valid)
        st.account = accountName(*data.account_ptr);
    if (data.currency_valid && st.currency.isEmpty())
        st.currency = text(data.currency);
    if (data.ledger_balance_valid)
        st.closing = toCents(data.ledger_balance);
    if (data.ledger_balance_date_valid)
        st.closingDate = QDateTime::fromSecsSinceEpoch(data.ledger_balance_date, Qt::UTC).date();
    return 0;
}

// The line on which the text stops (for a truncated file).
int lineCount(const QString& t) { return int(t.count(QLatin1Char('\n'))) + 1; }

QString escapeSgml(QString s)
{
    s.replace(QLatin1Char('&'), QStringLiteral("&amp;"));
    s.replace(QLatin1Char('<'), QStringLiteral("&lt;"));
    return s;
}

} // namespace

ReadResult readOfx(const QByteArray& bytes, const QString& fileName)
{
    // The claim of the header: OFX 1 "CHARSET:"/"ENCODING:", OFX 2 the XML
    // declaration.
    const QString head = QString::fromLatin1(bytes.left(2048));
    static const QRegularExpression charset(QStringLiteral("CHARSET:\\s*([^\\s<]+)"));
    static const QRegularExpression encoding(QStringLiteral("ENCODING:\\s*([^\\s<]+)"));
    static const QRegularExpression xmlEnc(QStringLiteral("<\\?xml[^>]*encoding=\"([^\"]+)\""));
    QString declared;
    if (auto m = xmlEnc.match(head); m.hasMatch())
        declared = m.captured(1);
    else if (auto e = encoding.match(head); e.hasMatch() && e.captured(1).contains(QLatin1String("UTF"), Qt::CaseInsensitive))
        declared = QStringLiteral("UTF-8");
    else if (auto cs = charset.match(head); cs.hasMatch())
        declared = cs.captured(1);
    if (declared.contains(QLatin1String("utf-8"), Qt::CaseInsensitive) && !isValidUtf8(bytes)) {
        int line = 1;
        for (const QByteArray& l : bytes.split('\n')) {
            if (!isValidUtf8(l))
                break;
            ++line;
        }
        return ReadResult::refused(Format::Ofx,
                                   QStringLiteral("%1, שורה %2: הקובץ מצהיר על קידוד UTF-8 אך התוכן בקידוד אחר")
                                       .arg(at(fileName)).arg(line));
    }
    const DecodedText decoded = decodeText(bytes, declared);
    QString t = decoded.text;
    const qsizetype start = t.indexOf(QLatin1String("<OFX>"), 0, Qt::CaseInsensitive);
    if (start < 0)
        return ReadResult::refused(Format::Ofx, QStringLiteral("%1: אין בקובץ את האלמנט <OFX>").arg(at(fileName)));
    const qsizetype end = t.lastIndexOf(QLatin1String("</OFX>"), -1, Qt::CaseInsensitive);
    if (end < start) {
        static const QRegularExpression lastTag(QStringLiteral("<([A-Za-z0-9.]+)>[^<]*$"));
        const auto m = lastTag.match(t);
        return ReadResult::refused(Format::Ofx,
                                   QStringLiteral("%1, שורה %2: הקובץ קטוע: הוא נגמר %3בלי </OFX>")
                                       .arg(at(fileName)).arg(lineCount(t))
                                       .arg(m.hasMatch() ? QStringLiteral("באלמנט <%1> ").arg(m.captured(1)) : QString()));
    }
    QString body = t.mid(start, end + 6 - start);
    static const QRegularExpression cdata(QStringLiteral("<!\\[CDATA\\[(.*?)\\]\\]>"),
                                          QRegularExpression::DotMatchesEverythingOption);
    for (auto m = cdata.match(body); m.hasMatch(); m = cdata.match(body))
        body.replace(m.capturedStart(), m.capturedLength(), escapeSgml(m.captured(1)));
    static const QRegularExpression decimalComma(QStringLiteral("(<(TRNAMT|BALAMT)>\\s*[-+]?\\d+),(\\d+)"),
                                                 QRegularExpression::CaseInsensitiveOption);
    body.replace(decimalComma, QStringLiteral("\\1.\\3"));

    Collected c;
    c.fileName = fileName;
    static const QRegularExpression posted(QStringLiteral("<DTPOSTED>\\s*([0-9]{8})"),
                                           QRegularExpression::CaseInsensitiveOption);
    for (auto it = posted.globalMatch(body); it.hasNext();)
        c.postedDates << it.next().captured(1);

    QTemporaryDir dir;
    const QString copy = dir.filePath(QStringLiteral("statement.ofx"));
    {
        QFile f(copy);
        const QByteArray header = "OFXHEADER:100\r\nDATA:OFXSGML\r\nVERSION:102\r\nSECURITY:NONE\r\nENCODING:UTF-8\r\n"
                                  "CHARSET:NONE\r\nCOMPRESSION:NONE\r\nOLDFILEUID:NONE\r\nNEWFILEUID:NONE\r\n\r\n";
        if (!dir.isValid() || !f.open(QIODevice::WriteOnly) || f.write(header + body.toUtf8()) < 0)
            return ReadResult::refused(Format::Ofx, QStringLiteral("%1: לא ניתן להכין עותק לקריאה").arg(at(fileName)));
    }
    // libofx reports its progress and the SGML parser's complaints on the
    // console; the user hears of problems from us.
    ofx_PARSER_msg = ofx_DEBUG_msg = ofx_DEBUG1_msg = ofx_DEBUG2_msg = ofx_DEBUG3_msg = ofx_DEBUG4_msg =
        ofx_DEBUG5_msg = ofx_STATUS_msg = ofx_INFO_msg = ofx_WARNING_msg = ofx_ERROR_msg = 0;
    LibofxContextPtr ctx = libofx_get_new_context();
    ofx_set_account_cb(ctx, onAccount, &c);
    ofx_set_transaction_cb(ctx, onTransaction, &c);
    ofx_set_statement_cb(ctx, onStatement, &c);
    libofx_proc_file(ctx, QFile::encodeName(copy).constData(), OFX);
    libofx_free_context(ctx);

    if (!c.error.isEmpty())
        return ReadResult::refused(Format::Ofx, c.error);
    // libofx keeps 22 characters of ACCTID, the standard's limit; some banks
    // write longer ones, which the file itself still has in full.
    QStringList acctids;
    static const QRegularExpression acctid(QStringLiteral("<ACCTID>\\s*([^<\\r\\n]+)"),
                                           QRegularExpression::CaseInsensitiveOption);
    for (auto it = acctid.globalMatch(body); it.hasNext();)
        acctids << it.next().captured(1).trimmed();
    ReadResult r;
    r.format = Format::Ofx;
    for (AccountStatement st : c.accounts) {
        for (const QString& full : acctids)
            if (full.size() > st.account.size() && full.startsWith(st.account) && !st.account.isEmpty())
                st.account = full;
        if (!st.rows.isEmpty())
            r.accounts << st;
    }
    if (r.accounts.isEmpty())
        return ReadResult::refused(Format::Ofx,
                                   QStringLiteral("%1: לא נמצאו בקובץ תנועות (STMTTRN) של חשבון").arg(at(fileName)));
    r.details = encodingName(decoded.encoding);
    bool nonAscii = false;
    for (char ch : bytes)
        nonAscii = nonAscii || static_cast<unsigned char>(ch) >= 0x80;
    if (nonAscii && decoded.encoding == Encoding::Utf8 && !declared.isEmpty() &&
        !declared.contains(QLatin1String("utf"), Qt::CaseInsensitive))
        r.warnings << QStringLiteral("%1: הכותרת מצהירה על קידוד %2 אך התוכן כתוב ב-UTF-8, וכך נקרא")
                          .arg(at(fileName), declared);
    return r;
}

} // namespace pelkor::feed
