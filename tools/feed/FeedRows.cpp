// FeedRows: from statements to feed rows. See FeedRows.h for the rules.
#include "FeedRows.h"

#include "TextInput.h"

#include <QHash>

#include <algorithm>
#include <cmath>

namespace pelkor::feed {

namespace {

// Two balances agree within half an agora: the files give two decimals.
constexpr double balanceTolerance = 0.005;

// A row of a statement (which outlives the plan's making) with its balance.
struct Placed {
    const StatementRow* row = nullptr;
    double balance = 0;
};

QString keyOf(const StatementRow& r)
{
    if (!r.identity.isEmpty())
        return QStringLiteral("id:") + r.identity;
    return QStringLiteral("%1|%2|%3|%4")
        .arg(r.date.toString(Qt::ISODate))
        .arg(qRound64(r.amount * 100))
        .arg(r.reference.trimmed(), r.description.simplified());
}

QString money(double v) { return QString::number(v, 'f', 2); }

// One statement's rows in date order with the balance after each; error set
// when no balance can be found.
QList<Placed> placeStatement(const AccountStatement& st, const ClosingBalanceAsker& ask, QStringList& warnings,
                             QString& error, bool& noBalanceGiven)
{
    QList<Placed> out;
    out.reserve(st.rows.size());
    for (const StatementRow& r : st.rows)
        out.append({&r, 0});
    if (out.size() > 1 && out.first().row->date > out.last().row->date)
        std::reverse(out.begin(), out.end());
    std::stable_sort(out.begin(), out.end(), [](const Placed& a, const Placed& b) { return a.row->date < b.row->date; });
    if (out.isEmpty())
        return out;
    const qsizetype n = out.size();
    double sum = 0;
    for (const Placed& p : out)
        sum += p.row->amount;

    qsizetype known = -1;
    for (qsizetype i = 0; i < n && known < 0; ++i)
        if (out[i].row->balance)
            known = i;
    if (known >= 0) {
        // The file's balances; rows without one are filled from their
        // neighbours. The first row that disagrees with the one before it
        // is reported once.
        out[known].balance = *out[known].row->balance;
        for (qsizetype i = known - 1; i >= 0; --i)
            out[i].balance = toCents(out[i + 1].balance - out[i + 1].row->amount);
        bool reported = false;
        for (qsizetype i = known + 1; i < n; ++i) {
            const double computed = toCents(out[i - 1].balance + out[i].row->amount);
            out[i].balance = out[i].row->balance ? *out[i].row->balance : computed;
            if (!reported && std::abs(out[i].balance - computed) > balanceTolerance &&
                out[i].row->date != out[i - 1].row->date) {
                warnings << QStringLiteral("חשבון %1: היתרה בשורה %2 (%3) אינה היתרה הקודמת ועוד הסכום (%4)")
                                .arg(st.account).arg(out[i].row->line).arg(money(out[i].balance), money(computed));
                reported = true;
            }
        }
        if (st.closing && std::abs(*st.closing - out.last().balance) > balanceTolerance)
            warnings << QStringLiteral("חשבון %1: היתרה הסוגרת בקובץ (%2) שונה מהיתרה אחרי השורה האחרונה (%3)")
                            .arg(st.account, money(*st.closing), money(out.last().balance));
        return out;
    }
    std::optional<double> closing = st.closing;
    if (!closing && st.opening)
        closing = toCents(*st.opening + sum);
    if (!closing) {
        closing = ask ? ask(st.account, out.last().row->date) : std::nullopt;
        if (!closing) {
            error = QStringLiteral("חשבון %1: בקובץ אין יתרה, ולא ניתנה יתרת סגירה").arg(st.account);
            noBalanceGiven = true;
            return {};
        }
    }
    if (st.opening && st.closing && std::abs(*st.opening + sum - *st.closing) > balanceTolerance)
        warnings << QStringLiteral("חשבון %1: יתרת הפתיחה (%2) ועוד התנועות (%3) נותנות %4, אך יתרת הסגירה בקובץ %5; "
                                   "הפרש %6. היתרות חושבו מיתרת הסגירה.")
                        .arg(st.account, money(*st.opening), money(sum), money(*st.opening + sum),
                             money(*st.closing), money(*st.closing - *st.opening - sum));
    out.last().balance = toCents(*closing);
    for (qsizetype i = n - 2; i >= 0; --i)
        out[i].balance = toCents(out[i + 1].balance - out[i + 1].row->amount);
    return out;
}

} // namespace

FeedPlan planFeed(const QList<ReadResult>& files, int nDays, const ClosingBalanceAsker& ask)
{
    FeedPlan plan;
    // Accounts in the order they first appear; each with its statements.
    QStringList order;
    QHash<QString, QList<const AccountStatement*>> byAccount;
    for (const ReadResult& f : files) {
        if (!f.ok())
            continue;
        for (const AccountStatement& st : f.accounts) {
            const QString a = st.account.trimmed();
            if (!byAccount.contains(a))
                order << a;
            byAccount[a] << &st;
        }
    }
    qint64 nextId = 1;
    for (const QString& account : order) {
        QList<QList<Placed>> statements;
        for (const AccountStatement* st : byAccount.value(account)) {
            QList<Placed> placed = placeStatement(*st, ask, plan.warnings, plan.error, plan.noBalanceGiven);
            if (!plan.ok())
                return plan;
            if (!placed.isEmpty())
                statements << placed;
        }
        std::stable_sort(statements.begin(), statements.end(), [](const QList<Placed>& a, const QList<Placed>& b) {
            return a.first().row->date < b.first().row->date;
        });
        AccountSummary sum;
        sum.account = account;
        for (const AccountStatement* st : byAccount.value(account))
            if (sum.currency.isEmpty())
                sum.currency = st->currency;
        QList<Placed> merged;
        QHash<QString, int> taken;
        // One statement has nothing to overlap with.
        if (statements.size() == 1)
            merged = statements.first();
        for (const QList<Placed>& st : statements.size() > 1 ? statements : QList<QList<Placed>>()) {
            QHash<QString, int> here;
            for (const Placed& p : st) {
                const QString k = keyOf(*p.row);
                const int seen = ++here[k];
                if (seen > taken.value(k)) {
                    taken[k] = seen;
                    merged << p;
                } else {
                    ++sum.duplicates;
                }
            }
        }
        std::stable_sort(merged.begin(), merged.end(),
                         [](const Placed& a, const Placed& b) { return a.row->date < b.row->date; });
        if (merged.isEmpty())
            continue;
        plan.rows.reserve(plan.rows.size() + merged.size());
        const QDate cutoff = nDays > 0 ? merged.last().row->date.addDays(-nDays) : QDate();
        for (const Placed& p : merged) {
            if (cutoff.isValid() && p.row->date < cutoff) {
                ++sum.older;
                continue;
            }
            FeedRow r;
            r.account = account;
            r.transactionID = nextId++;
            r.date = p.row->date;
            r.confirm = p.row->reference;
            r.description = p.row->description;
            r.in = p.row->amount > 0 ? toCents(p.row->amount) : 0.0;
            r.out = p.row->amount < 0 ? toCents(-p.row->amount) : 0.0;
            r.balance = p.balance;
            if (sum.rows == 0)
                sum.first = r.date;
            sum.last = r.date;
            ++sum.rows;
            sum.credits += r.in;
            sum.debits += r.out;
            sum.closing = r.balance;
            plan.rows << r;
        }
        sum.credits = toCents(sum.credits);
        sum.debits = toCents(sum.debits);
        plan.accounts << sum;
    }
    if (plan.rows.isEmpty() && plan.ok())
        plan.error = QStringLiteral("בקבצים שנבחרו אין אף שורת תנועה");
    return plan;
}

} // namespace pelkor::feed
