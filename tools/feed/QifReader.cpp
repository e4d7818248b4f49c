// QifReader: Quicken interchange files.
//
// Sections start with "!Type:<kind>": Bank, Cash, CCard, "Oth A", "Oth L"
// hold transactions; Cat, Class, Memorized and the rest are lists we pass
// over. "!Account" blocks (N name, T type, ending "^") name the account of
// the sections that follow. A record is lines of one-letter fields ended by
// "^": D date, T (or U) amount, P payee, M memo, N number, and fields we do
// not need (C cleared, L category, S/E/$ splits). A line of "^^" ends a
// record like "^".
//
// QIF has no date-format marker: whether 12/01/2010 is the 12th of January
// or the 1st of December is decided from all the file's dates together
// (TextInput's dateOrderOf). "'" before a two-digit year (12/25'10) reads
// as "/". A first record whose payee is an opening balance ("Opening
// Balance", "Anfangsbestand", "יתרת פתיחה") or whose category is the
// account itself ("[Name]") is the opening balance, not a row.
//
// Refused, with the line: a record without a date, a date that names no
// day, an amount that is no number.
#include "OtherReaders.h"

#include "TextInput.h"

#include <QFileInfo>

namespace pelkor::feed {

namespace {

bool transactionKind(const QString& kind)
{
    const QString k = kind.trimmed().toLower();
    return k == QLatin1String("bank") || k == QLatin1String("cash") || k == QLatin1String("ccard") ||
           k == QLatin1String("oth a") || k == QLatin1String("oth l");
}

bool openingPayee(const QString& payee)
{
    const QString p = payee.trimmed().toLower();
    return p == QLatin1String("opening balance") || p == QLatin1String("anfangsbestand") ||
           p == QStringLiteral("יתרת פתיחה") || p == QLatin1String("solde initial");
}

QString normalisedDate(QString d)
{
    d.replace(QLatin1Char('\''), QLatin1Char('/'));
    d.remove(QLatin1Char(' '));
    return d;
}

struct Raw {
    QString date, amount, payee, memo, number, category;
    int line = 0;
    bool any = false;
};

} // namespace

ReadResult readQif(const QString& text, const QString& fileName, const QString& fallbackAccount)
{
    const QString name = QFileInfo(fileName).fileName();
    const QStringList lines = text.split(QLatin1Char('\n'));
    // First pass: every date and amount, for the file's date order and
    // decimal mark.
    QStringList dates, amounts;
    for (const QString& l0 : lines) {
        const QString l = l0.trimmed();
        if (l.startsWith(QLatin1Char('D')))
            dates << normalisedDate(l.mid(1));
        else if (l.startsWith(QLatin1Char('T')) || l.startsWith(QLatin1Char('U')))
            amounts << l.mid(1);
    }
    const DateOrder order = dateOrderOf(dates);
    const QChar mark = decimalMarkOf(amounts);

    ReadResult result;
    result.format = Format::Qif;
    QString accountName;     // from the last !Account block
    bool inAccountBlock = false, inTransactions = false;
    int unnamed = 0;
    AccountStatement* st = nullptr;
    Raw rec;
    auto endRecord = [&]() -> QString {
        if (!rec.any || !inTransactions || !st)
            return {};
        const Raw r = rec;
        rec = Raw();
        if (r.date.isEmpty())
            return QStringLiteral("%1, שורה %2: לרשומה אין תאריך (שדה D)").arg(name).arg(r.line);
        bool invalid = false;
        const auto date = parseDate(normalisedDate(r.date), order, &invalid);
        if (!date)
            return QStringLiteral("%1, שורה %2: התאריך \"%3\" אינו תאריך %4")
                .arg(name).arg(r.line).arg(r.date, invalid ? QStringLiteral("קיים") : QStringLiteral("מוכר"));
        const auto amount = r.amount.isEmpty() ? std::optional<double>(0.0) : parseAmount(r.amount, mark);
        if (!amount)
            return QStringLiteral("%1, שורה %2: הסכום \"%3\" אינו מספר").arg(name).arg(r.line).arg(r.amount);
        const bool first = st->rows.isEmpty() && !st->opening;
        if (first && (openingPayee(r.payee) ||
                      (!st->account.isEmpty() && r.category == QLatin1Char('[') + st->account + QLatin1Char(']')))) {
            st->opening = toCents(*amount);
            return {};
        }
        StatementRow row;
        row.line = r.line;
        row.date = *date;
        row.amount = toCents(*amount);
        row.reference = r.number;
        QStringList words{r.payee.simplified()};
        if (!r.memo.isEmpty() && !r.payee.contains(r.memo))
            words << r.memo.simplified();
        words.removeAll(QString());
        row.description = words.join(QStringLiteral(" - "));
        st->rows << row;
        return {};
    };

    for (int i = 0; i < lines.size(); ++i) {
        const QString l = lines[i].trimmed();
        if (l.isEmpty())
            continue;
        if (l.startsWith(QLatin1Char('!'))) {
            if (const QString err = endRecord(); !err.isEmpty())
                return ReadResult::refused(Format::Qif, err);
            const QString head = l.toLower();
            if (head.startsWith(QLatin1String("!account"))) {
                inAccountBlock = true;
                inTransactions = false;
                accountName.clear();
            } else if (head.startsWith(QLatin1String("!type:"))) {
                inAccountBlock = false;
                inTransactions = transactionKind(l.mid(6));
                if (inTransactions) {
                    AccountStatement s;
                    s.account = !accountName.isEmpty() ? accountName
                                : unnamed++ == 0      ? fallbackAccount
                                                      : QStringLiteral("%1-%2").arg(fallbackAccount, l.mid(6).trimmed());
                    result.accounts << s;
                    st = &result.accounts.last();
                    accountName.clear();
                }
            }
            continue;
        }
        if (inAccountBlock) {
            if (l.startsWith(QLatin1Char('N')))
                accountName = l.mid(1).trimmed();
            else if (l.startsWith(QLatin1Char('^')))
                inAccountBlock = false;
            continue;
        }
        if (!inTransactions)
            continue;
        if (l.startsWith(QLatin1Char('^'))) {
            if (const QString err = endRecord(); !err.isEmpty())
                return ReadResult::refused(Format::Qif, err);
            continue;
        }
        if (!rec.any) {
            rec.line = i + 1;
            rec.any = true;
        }
        const QChar f = l[0];
        const QString v = l.mid(1).trimmed();
        switch (f.unicode()) {
        case 'D': rec.date = v; break;
        case 'T': case 'U': if (rec.amount.isEmpty()) rec.amount = v; break;
        case 'P': rec.payee = v; break;
        case 'M': rec.memo = v; break;
        case 'N': rec.number = v; break;
        case 'L': rec.category = v; break;
        default: break;
        }
    }
    if (const QString err = endRecord(); !err.isEmpty())
        return ReadResult::refused(Format::Qif, err);
    QList<AccountStatement> kept;
    for (const AccountStatement& s : result.accounts)
        if (!s.rows.isEmpty())
            kept << s;
    result.accounts = kept;
    if (result.accounts.isEmpty())
        return ReadResult::refused(Format::Qif, QStringLiteral("%1: אין בקובץ רשומות של חשבון (!Type:Bank וכדומה)").arg(name));
    result.details = order == DateOrder::MonthFirst ? QStringLiteral("תאריכים חודש/יום/שנה")
                                                    : QStringLiteral("תאריכים יום/חודש/שנה");
    return result;
}

} // namespace pelkor::feed
