// Statement: what a reader makes of one statement file, before it becomes a
// feed.
//
// Every reader (CSV, QIF, OFX, camt) turns the bytes of a file into a list of
// accounts, each with its rows in the order the file gives them, the
// balances the file states, and the problems it noticed. A reader either
// succeeds, possibly with warnings that the user sees before confirming, or
// refuses the whole file with one message in Hebrew that says what is wrong
// and where (file, line or element). A refused file contributes nothing:
// there is no partial statement.
//
// Not here: turning rows into feed rows (FeedRows.h), writing the feed
// (FeedWriter.h), the window (RunItWindow.h).
#pragma once

#include <QByteArray>
#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace pelkor::feed {

// One row of a statement as the bank wrote it.
struct StatementRow {
    QDate date;                     // value date where the file has one, else booking date
    QString reference;              // the bank's reference (cheque number, FITID, ...)
    QString description;            // the bank's words, in full
    double amount = 0;              // signed: credit positive, debit negative
    std::optional<double> balance;  // balance after the row, when the file states it
    QString identity;               // a key that names the row across statements (FITID); may be empty
    int line = 0;                   // line (or element number) in the file, for messages
};

// One account's part of a statement file.
struct AccountStatement {
    QString account;                     // the account number as the file gives it
    QString currency;                    // "ILS", "EUR", ... where stated
    QList<StatementRow> rows;            // in the file's order
    std::optional<double> opening;       // balance before the first row
    std::optional<double> closing;       // balance after the last row
    QDate closingDate;                   // the date the closing balance stands at, if given
};

enum class Format { Unknown, Csv, Qif, Ofx, Camt };
QString formatName(Format f);

struct ReadResult {
    Format format = Format::Unknown;
    QList<AccountStatement> accounts;
    QString details;       // how the file was read: encoding, layout, separator
    QStringList warnings;  // shown before confirming; the import may go on
    QString error;         // non-empty: the file is refused, accounts is empty

    bool ok() const { return error.isEmpty(); }
    static ReadResult refused(Format f, const QString& message)
    {
        ReadResult r;
        r.format = f;
        r.error = message;
        return r;
    }
};

// Reads a statement file of any supported format, deciding the format from
// the content. fileName is used in messages only (and by the OFX reader, which
// hands libofx a file). Never throws.
ReadResult readStatement(const QByteArray& bytes, const QString& fileName);
// The same from a path: a file that cannot be read is refused.
ReadResult readStatementFile(const QString& path);

// The format of the content: an OFX header or <OFX> element, camt's
// BkToCstmrStmt/BkToCstmrAcctRpt, a QIF "!Type:" or "!Account" line, else a
// CSV when the text has a separator on most lines. Unknown otherwise.
Format detectFormat(const QByteArray& bytes);

} // namespace pelkor::feed
