#include "reports/PeriodTotals.h"

#include "base/Format.h"

#include <cmath>

namespace pelkor::reports {

QString sPeriodOf(PeriodType t)
{
    switch (t) {
    case PeriodType::Week: return QStringLiteral("w");
    case PeriodType::Day: return QStringLiteral("d");
    case PeriodType::Month: break;
    }
    return QStringLiteral("m");
}

PeriodType periodTypeOf(const QString& s)
{
    if (s == QLatin1String("w"))
        return PeriodType::Week;
    if (s == QLatin1String("d"))
        return PeriodType::Day;
    return PeriodType::Month;
}

QString sPeriodicOf(PeriodType t)
{
    switch (t) {
    case PeriodType::Week: return QStringLiteral("שבועי");
    case PeriodType::Day: return QStringLiteral("יומי");
    case PeriodType::Month: break;
    }
    return QStringLiteral("חודשי");
}

QString reportCaption(PeriodType t)
{
    return QStringLiteral("סיכום ") + sPeriodicOf(t);
}

int weekday(const QDate& d)
{
    return d.dayOfWeek() % 7 + 1;   // Qt: Monday 1 .. Sunday 7
}

namespace {

QDate firstOfMonth(const QDate& d) { return QDate(d.year(), d.month(), 1); }
QDate lastOfMonth(const QDate& d) { return QDate(d.year(), d.month(), d.daysInMonth()); }
int monthNumber(const QDate& d) { return d.year() * 12 + d.month() - 1; }

} // namespace

DateRange initialRange(PeriodType t, const QDate& ipusDate)
{
    DateRange r;
    r.fromDate = ipusDate.addDays(1);
    switch (t) {
    case PeriodType::Month: r.toDate = firstOfMonth(r.fromDate).addMonths(10).addDays(-1); break;
    case PeriodType::Week: r.toDate = r.fromDate.addDays(-(weekday(r.fromDate) - 1) + 363); break;
    case PeriodType::Day: r.toDate = r.fromDate.addDays(59); break;
    }
    return r;
}

QStringList adjustRange(PeriodType t, DateRange& r, const QDate& min, const QDate& max)
{
    QStringList warnings;
    // The start.
    bool moved = false;
    switch (t) {
    case PeriodType::Month:
        if (monthNumber(r.fromDate) < monthNumber(min)) {
            r.fromDate = firstOfMonth(min);
            warnings << QStringLiteral("תאריך ההתחלה יוזז קדימה אל תחילת החודש הראשון בו יש תנועות: ");
            moved = true;
        }
        break;
    case PeriodType::Week:
        if ((r.fromDate < min && weekday(min) < weekday(r.fromDate)) || r.fromDate.daysTo(min) > 6) {
            r.fromDate = min.addDays(1 - weekday(min));
            warnings << QStringLiteral("תאריך ההתחלה יוזז קדימה אל תחילת השבוע הראשון בו יש תנועות: ");
            moved = true;
        }
        break;
    case PeriodType::Day:
        if (r.fromDate < min) {
            r.fromDate = min;
            warnings << QStringLiteral("תאריך ההתחלה יוזז קדימה אל היום הראשון בו יש תנועות: ");
            moved = true;
        }
        break;
    }
    if (moved) {
        warnings.last() += formatTheDate(r.fromDate);
        if (r.toDate < r.fromDate)
            r.toDate = r.fromDate;
    }
    // The end.
    moved = false;
    switch (t) {
    case PeriodType::Month:
        if (monthNumber(r.toDate) > monthNumber(max)) {
            r.toDate = lastOfMonth(max);
            warnings << QStringLiteral("תאריך הסיום יוזז אחורה אל סוף החודש האחרון בו יש תנועות: ");
            moved = true;
        }
        break;
    case PeriodType::Week:
        if ((r.toDate > max && weekday(r.toDate) < weekday(max)) || max.daysTo(r.toDate) > 6) {
            r.toDate = max.addDays(7 - weekday(max));
            warnings << QStringLiteral("תאריך הסיום יוזז אחורה אל סוף השבוע האחרון בו יש תנועות: ");
            moved = true;
        }
        break;
    case PeriodType::Day:
        if (r.toDate > max) {
            r.toDate = max;
            warnings << QStringLiteral("תאריך הסיום יוזז אחורה אל היום האחרון בו יש תנועות: ");
            moved = true;
        }
        break;
    }
    if (moved) {
        warnings.last() += formatTheDate(r.toDate);
        if (r.fromDate > r.toDate)
            r.fromDate = r.toDate;
    }
    return warnings;
}

Periods Periods::make(PeriodType t, const QDate& from, const QDate& to)
{
    Periods p;
    p.type = t;
    p.fromDate = from;
    p.toDate = to;
    p.lastSundayNotLaterThanFromDate = from.addDays(1 - weekday(from));
    switch (t) {
    case PeriodType::Month: p.nPeriods = monthNumber(to) - monthNumber(from) + 1; break;
    case PeriodType::Week: p.nPeriods = p.indexOf(to) + 1; break;
    case PeriodType::Day: p.nPeriods = int(from.daysTo(to)) + 1; break;
    }
    if (p.nPeriods < 1)
        p.nPeriods = 1;
    return p;
}

int Periods::indexOf(const QDate& d) const
{
    switch (type) {
    case PeriodType::Month: return monthNumber(d) - monthNumber(fromDate);
    case PeriodType::Week: {
        // Int() rounds down, so a day before the first Sunday is -1.
        const qint64 days = lastSundayNotLaterThanFromDate.daysTo(d);
        return int(days >= 0 ? days / 7 : -((-days + 6) / 7));
    }
    case PeriodType::Day: return int(fromDate.daysTo(d));
    }
    return -1;
}

QDate Periods::startOf(int p) const
{
    if (p <= 0)
        return fromDate;
    switch (type) {
    case PeriodType::Month: return firstOfMonth(fromDate).addMonths(p);
    case PeriodType::Week: return lastSundayNotLaterThanFromDate.addDays(7 * qint64(p));
    case PeriodType::Day: return fromDate.addDays(p);
    }
    return fromDate;
}

QDate Periods::endOf(int p) const
{
    if (p >= nPeriods - 1)
        return toDate;
    const QDate start = startOf(p);
    switch (type) {
    case PeriodType::Month: return lastOfMonth(start);
    case PeriodType::Week: return start.addDays(7 - weekday(start));
    case PeriodType::Day: return start;
    }
    return start;
}

QString Periods::heading(int p) const
{
    const QDate start = startOf(p);
    switch (type) {
    case PeriodType::Month: return QStringLiteral("%1/%2").arg(start.month()).arg(start.year());
    case PeriodType::Week: return QStringLiteral("מ-") + shortFormatDate(start);
    case PeriodType::Day: return shortFormatDate(start);
    }
    return QString();
}

void SumSet::reset(int rows, int periods)
{
    if (rows != nRows)
        checked.assign(size_t(rows), 1);
    nRows = rows;
    nPeriods = periods;
    isExpenseRow.resize(size_t(rows), 0);
    periodSums.assign(size_t(rows) * size_t(periods), 0.0);
    totals.assign(size_t(rows), 0.0);
    periodIncomes.assign(size_t(periods), 0.0);
    periodExpenses.assign(size_t(periods), 0.0);
    periodNet.assign(size_t(periods), 0.0);
    const double opening = periodBalance.empty() ? 0.0 : periodBalance[0];
    periodBalance.assign(size_t(periods) + 1, 0.0);
    periodBalance[0] = opening;
    totalIncomes = totalExpenses = totalNet = 0;
}

void SumSet::sumTotalsAndTick()
{
    for (int r = 0; r < nRows; ++r) {
        double t = 0;
        for (int p = 0; p < nPeriods; ++p)
            t += sum(r, p);
        totals[size_t(r)] = t;
        checked[size_t(r)] = t != 0;
    }
}

int kindIndexOf(const QString& kind, int nCategories)
{
    if (kind.size() < 2 || (kind[0] != u'+' && kind[0] != u'-'))
        return -1;
    bool ok = false;
    const int n = kind.mid(1).toInt(&ok);
    if (!ok || n < 0 || n >= nCategories / 2 || !kind[1].isDigit())
        return -1;
    return kind[0] == u'-' ? n + nCategories / 2 : n;
}

namespace {

// The section sums, net and balance chain from the ticked rows' sums, and
// any extra per-row work (the categories of the type report) on the way.
void chain(SumSet& s, const std::function<void(int row, int p, double v)>& onTicked = {})
{
    s.totalIncomes = s.totalExpenses = 0;
    for (int p = 0; p < s.nPeriods; ++p) {
        double in = 0, out = 0;
        for (int r = 0; r < s.nRows; ++r) {
            if (!s.checked[size_t(r)])
                continue;
            const double v = s.sum(r, p);
            (s.isExpenseRow[size_t(r)] ? out : in) += v;
            if (onTicked)
                onTicked(r, p, v);
        }
        s.periodIncomes[size_t(p)] = in;
        s.periodExpenses[size_t(p)] = out;
        s.totalIncomes += in;
        s.totalExpenses += out;
        s.periodNet[size_t(p)] = in - out;
        if (p > 0)
            s.periodBalance[size_t(p)] = s.periodBalance[size_t(p) - 1] + s.periodNet[size_t(p) - 1];
    }
    if (s.nPeriods > 0)
        s.periodBalance[size_t(s.nPeriods)] = s.periodBalance[size_t(s.nPeriods) - 1] + s.periodNet[size_t(s.nPeriods) - 1];
    s.totalNet = s.totalIncomes - s.totalExpenses;
}

} // namespace

void calcKindTotals(SumSet& s)
{
    chain(s);
}

int TypeTotals::getIndexOfTypeNum(int typeNum) const
{
    for (size_t i = 0; i < types.size(); ++i)
        if (types[i].TypeNum == typeNum)
            return int(i);
    return -1;
}

int TypeTotals::categoryIndexOf(const QString& name) const
{
    for (size_t c = 0; c < categories.size(); ++c)
        if (categories[c].CategoryName == name)
            return int(c);
    return -1;
}

void calcTypeTotals(TypeTotals& t, const std::function<void()>& wrongCategory)
{
    const int nP = t.sums.nPeriods;
    t.categPeriodSums.assign(t.categories.size() * size_t(nP), 0.0);
    t.categTotals.assign(t.categories.size(), 0.0);
    std::vector<int> categOf(t.types.size());
    bool told = false;
    for (size_t i = 0; i < t.types.size(); ++i) {
        categOf[i] = t.categoryIndexOf(t.types[i].CategoryName);
        if (categOf[i] < 0 && !told && wrongCategory) {
            told = true;
            wrongCategory();
        }
    }
    chain(t.sums, [&](int row, int p, double v) {
        const int c = categOf[size_t(row)];
        if (c < 0)
            return;
        t.categPeriodSums[size_t(c) * size_t(nP) + size_t(p)] += v;
        t.categTotals[size_t(c)] += v;
    });
}

QString nonnegbalancetd(double value, double theCredit)
{
    if (value >= 0)
        return QStringLiteral("nonnegbalancetd");
    if (value >= theCredit)
        return QStringLiteral("negbalancetd");
    return QStringLiteral("overnegbalancetd");
}

QString nonnegdeficittd(double value)
{
    return value >= 0 ? QStringLiteral("nonnegdeficittd") : QStringLiteral("negdeficittd");
}

QString formatAmount(double value, bool showZero)
{
    // Whole units, half away from zero.
    const long long whole = std::llround(std::fabs(value));
    if (whole == 0)
        return showZero ? QStringLiteral("0") : QString();
    QString digits = QString::number(whole);
    for (qsizetype i = digits.size() - 3; i > 0; i -= 3)
        digits.insert(i, QLatin1Char(','));
    return value < 0 ? QLatin1Char('-') + digits : digits;
}

QString shortFormatDate(const QDate& d)
{
    return QStringLiteral("%1/%2/%3").arg(d.day()).arg(d.month()).arg(twoDigits(d.year() % 100));
}

} // namespace pelkor::reports
