// DemoFeed: the demonstration feed. See DemoFeed.h.
#include "DemoFeed.h"

#include "FeedRows.h"
#include "FeedWriter.h"
#include "TextInput.h"

#include "file/Schema.h"
#include "seams/store/Connection.h"

#include <random>

namespace pelkor::feed {

namespace {

struct LedgerLine {
    QDate date;
    QString confirm, detail;
    double in = 0, out = 0;
};

// The bank's words for a line of the ledger.
QString bankWords(const QString& detail)
{
    if (detail.startsWith(QStringLiteral("הפקדת שיקים")))
        return QStringLiteral("הפקדת שיקים בסניף");
    if (detail.startsWith(QStringLiteral("זיכוי כרטיסי")))
        return QStringLiteral("זיכוי מחברת אשראי");
    if (detail.startsWith(QStringLiteral("העברה מלקוח")))
        return QStringLiteral("העברה בנקאית - ") + detail.section(QStringLiteral(" - "), 1);
    if (detail.startsWith(QStringLiteral("ספק")))
        return QStringLiteral("שיק ") + detail.section(QStringLiteral(" - "), 1);
    if (detail.startsWith(QStringLiteral("משכורות")))
        return QStringLiteral("העברת משכורות");
    if (detail.startsWith(QStringLiteral("משיכת מזומן")))
        return QStringLiteral("משיכה מכספומט");
    if (detail.startsWith(QStringLiteral("עמלות")))
        return QStringLiteral("עמלת פעולות בערוץ ישיר");
    return detail;
}

} // namespace

QString generateDemoFeed(const QString& ledgerPath, const QString& path)
{
    QList<LedgerLine> lines;
    QDate ipus;
    double before = 0;  // the ledger's balance before the feed's first day
    try {
        store::Connection cn;
        cn.open(ledgerPath, store::Connection::OpenMode::ReadOnly);
        auto rs = cn.execute(QStringLiteral("SELECT [date], confirm, detail, [in], out, IndTzefi, zee FROM pelkor "
                                            "ORDER BY [date], id"));
        for (long r = 0; r < rs.recordCount(); ++r) {
            if (rs.at(r, 5).toBool())
                continue;  // forecast lines are not the bank's
            LedgerLine l{rs.at(r, 0).toDate(), rs.at(r, 1).toString().trimmed(), rs.at(r, 2).toString(),
                         rs.at(r, 3).toDouble(), rs.at(r, 4).toDouble()};
            if (rs.at(r, 6).toString() == QLatin1String(schema::ipusMark))
                ipus = l.date;
            lines << l;
        }
    } catch (const store::StoreError& e) {
        return QStringLiteral("קריאת הקובץ %1 נכשלה: %2").arg(ledgerPath, e.message());
    }
    if (lines.isEmpty())
        return QStringLiteral("בקובץ %1 אין שורות").arg(ledgerPath);
    const QDate today = lines.last().date;
    const QDate first = today.addDays(-90);
    if (!ipus.isValid())
        ipus = today.addDays(-21);
    std::mt19937 rng(unsigned(today.toJulianDay()));

    QList<FeedRow> rows;
    auto add = [&](const QDate& d, const QString& confirm, const QString& words, double in, double out) {
        FeedRow r;
        r.account = QString::fromLatin1(demoAccount);
        r.date = d;
        r.confirm = confirm;
        r.description = words;
        r.in = toCents(in);
        r.out = toCents(out);
        rows << r;
    };
    QDate lastMonthCharged;
    for (const LedgerLine& l : lines) {
        if (l.date < first) {
            before += l.in - l.out;
            continue;
        }
        const bool open = l.date > ipus;  // not reconciled yet: room for differences
        const unsigned roll = rng() % 100;
        // The newest cheques deposited have not cleared yet.
        if (open && l.date > today.addDays(-3) && l.detail.startsWith(QStringLiteral("הפקדת שיקים")))
            continue;
        QDate d = l.date;
        double in = l.in, out = l.out;
        if (open && roll < 8)
            d = d.addDays(1);  // the bank's value date a day later
        else if (open && roll < 14 && l.detail.startsWith(QStringLiteral("זיכוי כרטיסי")))
            in = in * (1.0 - 0.008);  // the card company's fee taken off
        add(d, l.confirm, bankWords(l.detail), in, out);
        // Charges of the bank's own that the ledger has no line for.
        if (open && l.date.day() >= 25 && lastMonthCharged.month() != l.date.month()) {
            lastMonthCharged = l.date;
            add(l.date, QString(), QStringLiteral("ריבית חובה"), 0, 38.0 + rng() % 40);
            add(l.date, QString(), QStringLiteral("עמלת הקצאת אשראי"), 0, 25.0);
        }
    }
    std::stable_sort(rows.begin(), rows.end(), [](const FeedRow& a, const FeedRow& b) { return a.date < b.date; });
    double balance = toCents(before);
    qint64 id = 1;
    for (FeedRow& r : rows) {
        balance = toCents(balance + r.in - r.out);
        r.balance = balance;
        r.transactionID = id++;
    }
    return writeFeed(path, QStringLiteral("demoOsh"), rows);
}

} // namespace pelkor::feed
