// CsvReader: reading delimited bank exports. See CsvReader.h.
#include "CsvReader.h"

#include <QFileInfo>
#include <QHash>
#include <QMap>
#include <QRegularExpression>

namespace pelkor::feed {

namespace {

// The header words of the layouts we know, each normalised (lower case,
// without quotes, geresh and gershayim, trailing colons or dots). Israeli
// banks' exports, the German and French layouts of the samples, and the
// common English words.
struct HeaderWord {
    const char* word;
    Column column;
};
const HeaderWord headerWords[] = {
    // Hebrew bank layouts
    {"תאריך", Column::Date}, {"תאריך תנועה", Column::Date}, {"תאריך רישום", Column::Date},
    {"תאריך ערך", Column::ValueDate}, {"ערך", Column::ValueDate},
    {"אסמכתא", Column::Reference}, {"אסמכתה", Column::Reference}, {"מספר אסמכתא", Column::Reference},
    {"תיאור", Column::Description}, {"פרטים", Column::Description}, {"תיאור התנועה", Column::Description},
    {"הפעולה", Column::Description}, {"תאור", Column::Description},
    {"פרטים נוספים", Column::Detail}, {"הערות", Column::Detail},
    {"זכות", Column::Credit}, {"בזכות", Column::Credit}, {"זכות בשח", Column::Credit},
    {"חובה", Column::Debit}, {"בחובה", Column::Debit}, {"חובה בשח", Column::Debit},
    {"סכום", Column::Amount}, {"סכום בשח", Column::Amount}, {"סכום התנועה", Column::Amount},
    {"יתרה", Column::Balance}, {"יתרה בשח", Column::Balance}, {"יתרה משוערכת", Column::Balance},
    {"מטבע", Column::Currency},
    // German
    {"buchungstag", Column::Date}, {"buchungsdatum", Column::Date}, {"datum", Column::Date},
    {"wert", Column::ValueDate}, {"valuta", Column::ValueDate}, {"wertstellung", Column::ValueDate},
    {"verwendungszweck", Column::Description}, {"buchungstext", Column::Description},
    {"soll", Column::Debit}, {"haben", Column::Credit}, {"betrag", Column::Amount},
    {"saldo", Column::Balance}, {"kontostand", Column::Balance}, {"währung", Column::Currency},
    // French
    {"date opération", Column::Date}, {"date de valeur", Column::ValueDate}, {"libellé", Column::Description},
    {"débit", Column::Debit}, {"crédit", Column::Credit}, {"montant", Column::Amount}, {"solde", Column::Balance},
    {"devise", Column::Currency},
    // English
    {"date", Column::Date}, {"booking date", Column::Date}, {"transaction date", Column::Date},
    {"posted date", Column::Date}, {"posting date", Column::Date}, {"value date", Column::ValueDate},
    {"reference", Column::Reference}, {"ref", Column::Reference}, {"operation number", Column::Reference},
    {"check number", Column::Reference}, {"cheque number", Column::Reference}, {"transaction id", Column::Reference},
    {"description", Column::Description}, {"label", Column::Description}, {"payee", Column::Description},
    {"narrative", Column::Description}, {"details", Column::Description}, {"memo", Column::Detail},
    {"detail", Column::Detail}, {"partner name", Column::Detail},
    {"credit", Column::Credit}, {"credits", Column::Credit}, {"deposit", Column::Credit}, {"deposits", Column::Credit},
    {"paid in", Column::Credit}, {"debit", Column::Debit}, {"debits", Column::Debit},
    {"withdrawal", Column::Debit}, {"withdrawals", Column::Debit}, {"paid out", Column::Debit},
    {"amount", Column::Amount}, {"balance", Column::Balance}, {"running balance", Column::Balance},
    {"currency", Column::Currency},
};

QString normalised(const QString& header)
{
    QString h = header.toLower();
    for (QChar c : {QChar(u'"'), QChar(u'\''), QChar(0x05F3), QChar(0x05F4), QChar(u'*')})
        h.remove(c);
    h = h.simplified();
    while (h.endsWith(QLatin1Char(':')) || h.endsWith(QLatin1Char('.')))
        h.chop(1);
    return h.trimmed();
}

// Metadata words: a line whose label has one of these states a balance or
// the account. The opening words are tried first: "letzter kontostand" is
// the balance before the period, "kontostand" alone the one after it.
const char* const openingWords[] = {"balance at start", "opening balance", "letzter kontostand", "anfangssaldo",
                                    "alter kontostand", "solde initial", "solde début", "יתרת פתיחה", "יתרה קודמת",
                                    "יתרה בתחילת"};
const char* const closingWords[] = {"balance at end", "closing balance", "kontostand", "endsaldo", "neuer kontostand",
                                    "solde final", "solde fin", "יתרת סגירה", "יתרה סופית", "יתרה נוכחית",
                                    "יתרה לסוף", "יתרה בסוף"};
const char* const accountWords[] = {"account number", "account no", "account", "kontonummer", "konto", "iban",
                                    "numéro de compte", "מספר חשבון", "חשבון", "מס חשבון"};

bool hasAny(const QString& label, const char* const* words, size_t n)
{
    for (size_t i = 0; i < n; ++i)
        if (label.contains(QString::fromUtf8(words[i])))
            return true;
    return false;
}

struct Record {
    int line = 0;      // first line of the record in the file, from 1
    QStringView text;  // into the file's text, which outlives the records
};

// Lines of the file, a quoted cell running over a line break kept whole.
QList<Record> recordsOf(const QString& text)
{
    QList<Record> out;
    out.reserve(text.size() / 40);
    bool quoted = false;
    QChar before = QLatin1Char('\n');  // the last character outside blanks
    int line = 1, startLine = 1;
    qsizetype start = 0;
    const QChar* p = text.constData();
    const qsizetype n = text.size();
    auto push = [&](qsizetype end) {
        qsizetype e = end;
        if (e > start && p[e - 1] == u'\r')
            --e;
        out.append({startLine, QStringView(text).mid(start, e - start)});
    };
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = p[i];
        // A quote opens a quoted cell only at the start of a cell; inside a
        // word (מע"מ, בע"מ) it is a letter of the word.
        if (c == u'"' && (quoted || before == u'\n' || before == u',' || before == u';' || before == u'\t' ||
                          before == u'|'))
            quoted = !quoted;
        if (c != u' ' && c != u'\r')
            before = c;
        if (c == u'\n') {
            ++line;
            if (!quoted) {
                push(i);
                start = i + 1;
                startLine = line;
            }
        }
    }
    if (start < n)
        push(n);
    return out;
}

// The separator that gives the most records of one width of three or more.
QChar separatorOf(const QList<Record>& records)
{
    QChar best;
    int bestScore = 0;
    for (QChar sep : {QChar(u','), QChar(u';'), QChar(u'\t'), QChar(u'|')}) {
        QHash<qsizetype, int> widths;
        for (const Record& r : records.mid(0, 200)) {
            const qsizetype w = splitDelimited(r.text, sep).size();
            if (w >= 3)
                ++widths[w];
        }
        int score = 0;
        for (int v : widths)
            score = std::max(score, v);
        if (score > bestScore) {
            bestScore = score;
            best = sep;
        }
    }
    return bestScore >= 2 ? best : QChar();
}

struct Mapping {
    QMap<Column, int> first;  // the first column of each role
    QList<int> details;       // further description columns, in order
    bool usable() const
    {
        return (first.contains(Column::Date) || first.contains(Column::ValueDate)) &&
               (first.contains(Column::Amount) || first.contains(Column::Credit) || first.contains(Column::Debit));
    }
};

Mapping mappingOf(const QStringList& cells)
{
    Mapping m;
    for (int i = 0; i < cells.size(); ++i) {
        const Column c = columnOf(cells[i]);
        if (c == Column::None)
            continue;
        if (c == Column::Detail || (c == Column::Description && m.first.contains(Column::Description)))
            m.details << i;
        else if (!m.first.contains(c))
            m.first.insert(c, i);
    }
    return m;
}

QString columnName(const QStringList& header, int i) { return header.value(i).trimmed(); }

QString roleName(Column c)
{
    switch (c) {
    case Column::Date: return QStringLiteral("תאריך");
    case Column::ValueDate: return QStringLiteral("תאריך ערך");
    case Column::Reference: return QStringLiteral("אסמכתא");
    case Column::Description: return QStringLiteral("תיאור");
    case Column::Detail: return QStringLiteral("פרטים");
    case Column::Credit: return QStringLiteral("זכות");
    case Column::Debit: return QStringLiteral("חובה");
    case Column::Amount: return QStringLiteral("סכום");
    case Column::Balance: return QStringLiteral("יתרה");
    case Column::Currency: return QStringLiteral("מטבע");
    case Column::None: break;
    }
    return {};
}

QString at(const QString& fileName, int line)
{
    return QStringLiteral("%1, שורה %2").arg(QFileInfo(fileName).fileName()).arg(line);
}

// The amount of a metadata line: the last cell that is a number and not a date.
std::optional<double> metadataAmount(const QStringList& cells, QChar mark)
{
    for (qsizetype i = cells.size() - 1; i >= 0; --i) {
        const QString c = cells[i].trimmed();
        if (c.isEmpty() || parseDate(c, DateOrder::DayFirst) || c.count(QLatin1Char('.')) > 1 ||
            c.count(QLatin1Char('/')) > 0)
            continue;
        if (auto v = parseAmount(c, mark))
            return v;
    }
    return std::nullopt;
}

// "Account Number : 08088804068" in one cell, or the label in one cell and
// the number in the next.
QString metadataAccount(const QStringList& cells)
{
    static const QRegularExpression number(QStringLiteral("[0-9]([0-9 /-]*[0-9])?"));
    for (qsizetype i = 0; i < cells.size(); ++i) {
        const QString label = normalised(cells[i].section(QLatin1Char(':'), 0, 0));
        // The whole label must be an account word: "Kontostand" is no "Konto".
        bool isAccount = false;
        for (const char* w : accountWords)
            isAccount = isAccount || label == QString::fromUtf8(w);
        if (!isAccount)
            continue;
        const QString rest = cells[i].contains(QLatin1Char(':')) ? cells[i].section(QLatin1Char(':'), 1)
                                                                 : cells.value(i + 1);
        const auto m = number.match(rest);
        if (m.hasMatch())
            return m.captured(0).trimmed();
    }
    return {};
}

} // namespace

Column columnOf(const QString& header)
{
    static const QHash<QString, Column> table = [] {
        QHash<QString, Column> t;
        for (const HeaderWord& w : headerWords)
            t.insert(QString::fromUtf8(w.word), w.column);
        return t;
    }();
    return table.value(normalised(header), Column::None);
}

ReadResult readCsv(const QString& text, const QString& fileName, const QString& fallbackAccount)
{
    const QList<Record> records = recordsOf(text);
    const QChar sep = separatorOf(records);
    // A record's cells, split when needed: the rows are split once more
    // only while the date order or decimal mark is undecided.
    auto split = [&](qsizetype i) { return splitDelimited(records[i].text, sep); };
    if (sep.isNull())
        return ReadResult::refused(Format::Csv, QStringLiteral("%1: לא נמצאו עמודות (אין מפריד קבוע בין השדות)")
                                                    .arg(QFileInfo(fileName).fileName()));
    // The header: the first record that names a date and an amount column.
    int headerAt = -1;
    Mapping map;
    QStringList header;
    for (int i = 0; i < records.size() && i < 60; ++i) {
        const QStringList cells = split(i);
        const Mapping m = mappingOf(cells);
        if (m.usable()) {
            headerAt = i;
            map = m;
            header = cells;
            break;
        }
    }
    if (headerAt < 0) {
        // Name the columns of the widest early record: most likely the header.
        QStringList seen;
        for (int i = 0; i < records.size() && i < 60; ++i) {
            const QStringList cells = split(i);
            if (cells.size() > seen.size())
                seen = cells;
        }
        seen.removeAll(QString());
        return ReadResult::refused(
            Format::Csv, QStringLiteral("%1: אף מבנה מוכר אינו מתאים לקובץ. נדרשות עמודת תאריך ועמודת סכום "
                                        "(או זכות וחובה); העמודות שנמצאו: %2")
                             .arg(QFileInfo(fileName).fileName(), seen.join(QStringLiteral(", "))));
    }
    const int dateCol = map.first.value(Column::ValueDate, map.first.value(Column::Date));
    const int bookCol = map.first.value(Column::Date, dateCol);
    int needed = dateCol;
    for (int c : map.first)
        needed = std::max(needed, c);

    // First pass: the order of the dates and the decimal mark, decided for
    // the file as a whole.
    // Each is decided by the first text that tells (TextInput.h).
    std::optional<DateOrder> order;
    std::optional<QChar> mark;
    QList<int> amountCols;
    for (Column c : {Column::Amount, Column::Credit, Column::Debit, Column::Balance})
        if (map.first.contains(c))
            amountCols << map.first.value(c);
    for (int i = 0; i < headerAt && !mark; ++i)
        for (const QString& c : split(i))
            if (!mark)
                mark = decimalMarkOfOne(c);
    for (int i = headerAt + 1; i < records.size() && (!order || !mark); ++i) {
        const QStringList cells = split(i);
        if (!order)
            order = dateOrderOfOne(cells.value(dateCol));
        if (!order)
            order = dateOrderOfOne(cells.value(bookCol));
        for (int c : amountCols)
            if (!mark)
                mark = decimalMarkOfOne(cells.value(c));
    }
    if (!order)
        order = DateOrder::DayFirst;
    if (!mark)
        mark = QLatin1Char('.');

    AccountStatement st;
    st.rows.reserve(records.size() - headerAt);
    ReadResult result;
    result.format = Format::Csv;
    auto readMetadata = [&](const QStringList& cells) {
        QString label;
        for (const QString& c : cells)
            if (!c.trimmed().isEmpty()) {
                label = normalised(c);
                break;
            }
        if (st.account.isEmpty())
            st.account = metadataAccount(cells);
        if (hasAny(label, openingWords, std::size(openingWords))) {
            if (auto v = metadataAmount(cells, *mark))
                st.opening = v;
        } else if (hasAny(label, closingWords, std::size(closingWords))) {
            if (auto v = metadataAmount(cells, *mark))
                st.closing = v;
        }
    };
    for (int i = 0; i < headerAt; ++i)
        readMetadata(split(i));

    for (int i = headerAt + 1; i < records.size(); ++i) {
        const Record& rec = records[i];
        const QStringList cells = split(i);
        bool blank = true;
        for (const QString& c : cells)
            blank = blank && c.trimmed().isEmpty();
        if (blank)
            continue;
        const QString dateText = cells.value(dateCol).trimmed();
        bool invalid = false;
        std::optional<QDate> date = parseDate(dateText, *order, &invalid);
        if (!date && !invalid && dateText.isEmpty() && dateCol != bookCol)
            date = parseDate(cells.value(bookCol), *order, &invalid);
        if (invalid)
            return ReadResult::refused(Format::Csv, QStringLiteral("%1: התאריך \"%2\" בעמודה \"%3\" אינו תאריך קיים")
                                                        .arg(at(fileName, rec.line), dateText,
                                                             columnName(header, dateCol)));
        // Digits without words where the date stands were meant as a date:
        // a row we cannot place is refused rather than left out.
        bool digits = false, letters = false;
        for (QChar c : dateText) {
            digits = digits || c.isDigit();
            letters = letters || c.isLetter();
        }
        if (!date && digits && !letters)
            return ReadResult::refused(Format::Csv, QStringLiteral("%1: התאריך \"%2\" בעמודה \"%3\" אינו מובן")
                                                        .arg(at(fileName, rec.line), dateText,
                                                             columnName(header, dateCol)));
        // Words in the booking date's place make a footer even when the
        // value date beside them is a date ("Kontostand;04.09.2010;;;575,21").
        const QString bookText = cells.value(bookCol).trimmed();
        if (date && bookCol != dateCol && !bookText.isEmpty() && !parseDate(bookText, *order))
            date.reset();
        if (!date) {
            // Words where the date stands: a footer or a note, not a row.
            readMetadata(cells);
            continue;
        }
        if (cells.size() <= needed) {
            int missing = needed;
            for (int c : map.first)
                if (c >= cells.size())
                    missing = std::min(missing, c);
            return ReadResult::refused(Format::Csv, QStringLiteral("%1: בשורה רק %2 שדות, חסרה העמודה \"%3\"")
                                                        .arg(at(fileName, rec.line))
                                                        .arg(cells.size())
                                                        .arg(columnName(header, missing)));
        }
        StatementRow row;
        row.line = rec.line;
        row.date = *date;
        QString badCell;
        int badCol = -1;
        auto amountOf = [&](Column c) -> std::optional<double> {
            if (!map.first.contains(c))
                return std::nullopt;
            const int col = map.first.value(c);
            const QString t = cells.value(col).trimmed();
            if (t.isEmpty())
                return std::nullopt;
            auto v = parseAmount(t, *mark);
            if (!v && badCol < 0) {
                badCell = t;
                badCol = col;
            }
            return v;
        };
        const auto amount = amountOf(Column::Amount);
        const auto credit = amountOf(Column::Credit);
        const auto debit = amountOf(Column::Debit);
        row.balance = amountOf(Column::Balance);
        if (badCol >= 0)
            return ReadResult::refused(Format::Csv, QStringLiteral("%1: הסכום \"%2\" בעמודה \"%3\" אינו מספר")
                                                        .arg(at(fileName, rec.line), badCell,
                                                             columnName(header, badCol)));
        if (amount)
            row.amount = *amount;
        else
            row.amount = credit.value_or(0.0) - std::abs(debit.value_or(0.0));
        row.amount = toCents(row.amount);
        if (row.balance)
            row.balance = toCents(*row.balance);
        if (map.first.contains(Column::Reference))
            row.reference = cells.value(map.first.value(Column::Reference)).trimmed();
        QStringList words;
        if (map.first.contains(Column::Description))
            words << cells.value(map.first.value(Column::Description)).simplified();
        for (int d : map.details)
            words << cells.value(d).simplified();
        words.removeAll(QString());
        row.description = words.join(QStringLiteral(" - "));
        if (st.currency.isEmpty() && map.first.contains(Column::Currency))
            st.currency = cells.value(map.first.value(Column::Currency)).trimmed();
        st.rows.append(std::move(row));
    }
    if (st.rows.isEmpty())
        return ReadResult::refused(Format::Csv, QStringLiteral("%1: אחרי שורת הכותרת (שורה %2) אין אף שורת תנועה")
                                                    .arg(QFileInfo(fileName).fileName())
                                                    .arg(records[headerAt].line));
    if (st.account.isEmpty()) {
        st.account = fallbackAccount;
        result.warnings << QStringLiteral("%1: מספר החשבון אינו מופיע בקובץ; החשבון נקרא \"%2\"")
                               .arg(QFileInfo(fileName).fileName(), fallbackAccount);
    }
    const QString sepName = sep == QLatin1Char('\t') ? QStringLiteral("טאב") : QStringLiteral("\"%1\"").arg(sep);
    result.details = QStringLiteral("מפריד %1, כותרת בשורה %2, תאריכים %3, נקודה עשרונית \"%4\"")
                         .arg(sepName)
                         .arg(records[headerAt].line)
                         .arg(*order == DateOrder::MonthFirst ? QStringLiteral("חודש/יום/שנה")
                              : *order == DateOrder::YearFirst ? QStringLiteral("שנה-חודש-יום")
                                                              : QStringLiteral("יום/חודש/שנה"))
                         .arg(*mark);
    // How each header was taken, so the user can see a column mistaken.
    QStringList taken;
    for (int i = 0; i < header.size(); ++i) {
        const Column c = columnOf(header[i]);
        if (c != Column::None && roleName(c) != header[i].trimmed())
            taken << QStringLiteral("%1=%2").arg(header[i].trimmed(), roleName(c));
    }
    if (!taken.isEmpty())
        result.details += QStringLiteral(", עמודות: ") + taken.join(QStringLiteral(", "));
    result.accounts << st;
    return result;
}

} // namespace pelkor::feed
