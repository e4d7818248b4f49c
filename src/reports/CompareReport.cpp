#include "reports/CompareReport.h"

#include "base/Format.h"
#include "reports/ReportTable.h"
#include "seams/store/Connection.h"

#include <cmath>

namespace pelkor::reports {

const std::array<std::uint32_t, 6> cmpColors = {rgb(255, 255, 128), rgb(193, 193, 255), rgb(255, 206, 206),
                                                rgb(255, 187, 187), rgb(208, 255, 208), rgb(140, 255, 140)};

const char kindsLargerWarning[] = "הסיווגים בשני הקבצים אינם זהים, ולכן תבוצע השוואה לפי רשימת הסיווגים הגדולה יותר";
const char kindsFirstWarning[] = "הסיווגים בשני הקבצים אינם זהים, ולכן תבוצע השוואה לפי רשימת הסיווגים הראשונה";
const char typesDifferWarning[] = "הסוגים בשני הקבצים אינם זהים, ולכן לא תבוצע השוואה לפי סוגים";

QString periodWord(int i) { return i == 0 ? QStringLiteral("ראשון") : QStringLiteral("שני"); }
QString frameFileCaption(int i) { return i == 0 ? QStringLiteral("תקופה א") : QStringLiteral("תקופה ב"); }

QString colourText(std::uint32_t bgr)
{
    return QStringLiteral("#%1%2%3")
        .arg(bgr & 0xff, 2, 16, QLatin1Char('0'))
        .arg((bgr >> 8) & 0xff, 2, 16, QLatin1Char('0'))
        .arg((bgr >> 16) & 0xff, 2, 16, QLatin1Char('0'));
}

std::array<DateRange, 2> defaultCompareRanges(const QDate& today)
{
    std::array<DateRange, 2> r;
    const QDate firstOfThis(today.year(), today.month(), 1);
    r[0].toDate = firstOfThis.addDays(-1);
    r[0].fromDate = QDate(r[0].toDate.year(), r[0].toDate.month(), 1).addDays(-365);
    r[1].toDate = r[0].fromDate.addDays(-1);
    r[1].fromDate = QDate(r[1].toDate.year(), r[1].toDate.month(), 1).addDays(-500);
    return r;
}

QStringList adjustCompareRange(int i, DateRange& r, const QDate& min, const QDate& max)
{
    QStringList warnings;
    if (r.fromDate < min) {
        r.fromDate = min;
        if (r.toDate < r.fromDate)
            r.toDate = r.fromDate;
        warnings << QStringLiteral("תאריך ההתחלה ה") + periodWord(i) + QStringLiteral(" יוזז קדימה אל היום הראשון בו יש תנועות: ")
                + formatTheDate(min);
    }
    if (r.toDate > max) {
        r.toDate = max;
        if (r.fromDate > r.toDate)
            r.fromDate = r.toDate;
        warnings << QStringLiteral("תאריך הסיום ה") + periodWord(i) + QStringLiteral(" יוזז אחורה אל היום האחרון בו יש תנועות: ")
                + formatTheDate(max);
    }
    return warnings;
}

QString percentText(double a, double b)
{
    if (b == 0 || !std::isfinite(a) || !std::isfinite(b))
        return QString();
    // The sign says whether a lies below b; the size is against b's size.
    const QString size = formatAmount(std::fabs(a - b) * 100 / std::fabs(b), true);
    return (a < b ? QStringLiteral("-") : QString()) + size + QLatin1Char('%');
}

QString nodifftd(double x)
{
    if (x == 0)
        return QStringLiteral("nodifftd");
    return x < 0 ? QStringLiteral("posdifftd") : QStringLiteral("negdifftd");
}

KindNames readKindNames(store::Connection& cn)
{
    auto rs = cn.execute(QStringLiteral("SELECT * FROM category ORDER BY Left(id,1) DESC, Len(Mid(id,2)), Mid(id,2)"));
    const int id = rs.fieldIndex(QStringLiteral("id"));
    const int desc = rs.fieldIndex(QStringLiteral("category"));
    KindNames k;
    for (long r = 0; r < rs.recordCount(); ++r) {
        k.ids << RemoveNull(rs.at(r, id));
        k.descs << fixString(RemoveNull(rs.at(r, desc)));
    }
    return k;
}

KindChoice chooseKinds(const KindNames& first, const KindNames* second)
{
    KindChoice c{first, QString()};
    if (!second)
        return c;
    if (second->nCategories() != first.nCategories()) {
        c.warning = QString::fromUtf8(kindsLargerWarning);
        if (second->nCategories() > first.nCategories())
            c.names = *second;
        return c;
    }
    for (int k = 0; k < first.nCategories(); ++k)
        if (first.ids[k] != second->ids[k] || first.descs[k] != second->descs[k]) {
            c.warning = QString::fromUtf8(kindsFirstWarning);
            break;
        }
    return c;
}

bool typesAgree(const TypeTotals& a, const TypeTotals& b)
{
    if (a.categories.size() != b.categories.size() || a.types.size() != b.types.size())
        return false;
    for (size_t c = 0; c < a.categories.size(); ++c)
        if (a.categories[c].CategoryName != b.categories[c].CategoryName)
            return false;
    for (size_t t = 0; t < a.types.size(); ++t)
        if (a.types[t].TypeName != b.types[t].TypeName || a.types[t].CategoryName != b.types[t].CategoryName)
            return false;
    return true;
}

int readComparePeriod(store::Connection& cn, int i, const DateRange& range, const TypeTotals* catalogue, CompareSums& s)
{
    const int n = s.names.nCategories();
    if (s.kinds.nRows != n || s.kinds.nPeriods != 2)
        s.kinds.reset(n, 2);
    for (int k = 0; k < n; ++k) {
        s.kinds.isExpenseRow[size_t(k)] = k >= n / 2;
        s.kinds.sum(k, i) = 0;
    }
    const bool byTypes = s.typesIncluded && catalogue;
    if (byTypes) {
        const int nt = int(s.types.types.size());
        if (s.types.sums.nRows != nt || s.types.sums.nPeriods != 2)
            s.types.sums.reset(nt, 2);
        for (int t = 0; t < nt; ++t) {
            s.types.sums.isExpenseRow[size_t(t)] = !s.types.types[size_t(t)].isIncome;
            s.types.sums.sum(t, i) = 0;
        }
    }
    s.opening[size_t(i)] = readOpeningBalance(cn, range.fromDate, MergedRates{});
    // The period reports' one grouped statement over the range, a day a
    // column, folded into this period's column.
    const Periods days = Periods::make(PeriodType::Day, range.fromDate, range.toDate);
    SumSet kinds;
    TypeTotals types;
    if (byTypes)
        types = *catalogue;
    const int skipped = readPeriodSums(cn, days, n, MergedRates{}, kinds, byTypes ? &types : nullptr);
    for (int k = 0; k < n; ++k)
        for (int p = 0; p < days.nPeriods; ++p)
            s.kinds.sum(k, i) += kinds.sum(k, p);
    if (byTypes)
        for (int t = 0; t < types.sums.nRows && t < s.types.sums.nRows; ++t)
            for (int p = 0; p < days.nPeriods; ++p)
                s.types.sums.sum(t, i) += types.sums.sum(t, p);
    return skipped;
}

void calcCompareTotals(CompareSums& s, bool retick)
{
    if (retick)
        s.kinds.sumTotalsAndTick();
    calcKindTotals(s.kinds);
    if (retick) {
        s.kinds.showIncomesTotal = s.kinds.totalIncomes != 0;
        s.kinds.showExpensesTotal = s.kinds.totalExpenses != 0;
    }
    if (!s.typesIncluded)
        return;
    if (retick)
        s.types.sums.sumTotalsAndTick();
    calcTypeTotals(s.types, {});
    if (retick) {
        s.types.categChecked.assign(s.types.categories.size(), 0);
        for (size_t c = 0; c < s.types.categories.size(); ++c)
            s.types.categChecked[c] = s.types.categTotals[c] != 0;
        s.types.sums.showIncomesTotal = s.types.sums.totalIncomes != 0;
        s.types.sums.showExpensesTotal = s.types.sums.totalExpenses != 0;
    }
}

// ---- the pages ---------------------------------------------------------

namespace {

const char compareStyle[] =
    "<style>\n"
    ".difftd,.percenttd,.nodifftd,.negdifftd,.posdifftd{direction: ltr; text-align: right}\n"
    ".pst td.sumtd,.pst td.difftd,.pst td.percenttd,.pst td.nodifftd,.pst td.negdifftd,.pst td.posdifftd{direction:ltr;text-align:right}\n"
    ".negdifftd{background:#ffbbbb}\n"
    ".posdifftd{background:#bbffbb}\n"
    ".percenttd{color:#404040}\n"
    "</style>\n";

Cell plain(const QString& text, const QString& cls) { return Cell{text, cls, {}, {}, 0, false, false, {}}; }

// The four cells of a row of two values: the values (a link when linkStyle
// is set), the difference classed by sign (negated on an income row), the
// percent.
Cell pairCell(int col, double a, double b, bool income, const QString& valueClass, const QString& linkStyle = {},
              const QString& linkId = {})
{
    switch (col) {
    case 0:
    case 1: {
        const double v = col == 0 ? a : b;
        if (linkStyle.isEmpty())
            return plain(formatAmount(v, true), valueClass);
        Cell c{formatAmount(v, false), QString(), linkStyle, linkId, col, false, v != 0, colourText(cmpColors[size_t(col)])};
        return c;
    }
    case 2: return plain(formatAmount(a - b, true), nodifftd(income ? b - a : a - b));
    default: return plain(percentText(a, b), QStringLiteral("percenttd"));
    }
}

Row openingRow(const CompareSums& s)
{
    return Row{QStringLiteral("יתרה התחלתית"), QStringLiteral("openingtd"), false, [&s](int col) {
                   if (col > 1)
                       return plain(QStringLiteral("&nbsp;"), QString());
                   const double v = s.opening[size_t(col)];
                   return plain(formatAmount(v, true), nonnegbalancetd(v, s.credit[size_t(col)]));
               }};
}

void closingRows(std::vector<Row>& rows, const CompareSums& s, const SumSet& set)
{
    rows.push_back(Row{QStringLiteral("עודף/גרעון"), QStringLiteral("nettd"), false, [&set](int col) {
                           const double a = set.periodNet[0], b = set.periodNet[1];
                           if (col <= 1)
                               return plain(formatAmount(col == 0 ? a : b, true), nonnegdeficittd(col == 0 ? a : b));
                           return pairCell(col, a, b, true, QString());
                       }});
    rows.push_back(Row{QStringLiteral("יתרה מצטברת"), QStringLiteral("cumulativetd"), false, [&s, &set](int col) {
                           if (col > 1)
                               return plain(QString(), QString());
                           const double v = s.opening[size_t(col)] + set.periodNet[size_t(col)];
                           return plain(formatAmount(v, true), nonnegbalancetd(v, s.credit[size_t(col)]));
                       }});
}

Row sectionRow(const QString& name, const QString& cls, bool shown, const std::vector<double>& perPeriod, bool income)
{
    return Row{name, cls, !shown, [&perPeriod, cls, income](int col) { return pairCell(col, perPeriod[0], perPeriod[1], income, cls); }};
}

QString writeCompare(Report& rep, const CompareHead& head, bool byTypes)
{
    rep.title = compareTitle(head, byTypes);
    rep.titleHtml = QString(rep.title).toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>"));
    rep.extraStyle = QLatin1String(compareStyle);
    rep.heading = [](int c) {
        switch (c) {
        case 0:
        case 1: return frameFileCaption(c);
        case 2: return QStringLiteral("הפרש");
        default: return QStringLiteral("אחוז");
        }
    };
    const ReportHead rh{QString(), QString(), 0, head.nameWidth};
    const Periods none = Periods::make(PeriodType::Day, head.range[0].fromDate, head.range[0].fromDate);
    return writeReport(rep, none, rh, 4);
}

} // namespace

QString compareTitle(const CompareHead& head, bool byTypes)
{
    QString t = byTypes ? QStringLiteral("השוואה לפי סוגים") : QStringLiteral("השוואה לפי סיווגים");
    for (int i = 0; i < 2; ++i)
        t += QLatin1Char('\n') + frameFileCaption(i) + QStringLiteral(": ") + head.shortFileName[size_t(i)] + QLatin1Char(' ')
            + formatTheDate(head.range[size_t(i)].fromDate) + QLatin1Char('-') + formatTheDate(head.range[size_t(i)].toDate);
    return t;
}

QString compareKindPage(const CompareHead& head, const CompareSums& s)
{
    const SumSet& set = s.kinds;
    const int n = s.names.nCategories();
    Report rep;
    rep.namesDiv = QStringLiteral("topdivkinds");
    rep.namesAll = QStringLiteral("tblallkinds");
    rep.namesTable = QStringLiteral("tblperiodkinds");
    rep.rows.push_back(openingRow(s));
    const auto kindRow = [&](int k) {
        const QString id = QLatin1Char('\'') + s.names.ids.value(k) + QLatin1Char('\'');
        const bool income = k < n / 2;
        return Row{s.names.descs.value(k), QStringLiteral("kindtd"), !set.checked[size_t(k)], [&set, k, id, income](int col) {
                       return pairCell(col, set.sum(k, 0), set.sum(k, 1), income, QString(), QStringLiteral("3"), id);
                   }};
    };
    for (int k = n / 2; k < n; ++k)
        rep.rows.push_back(kindRow(k));
    rep.rows.push_back(sectionRow(QStringLiteral("סך הכל הוצאות"), QStringLiteral("totalkindexpensestd"), set.showExpensesTotal,
                                  set.periodExpenses, false));
    for (int k = 0; k < n / 2; ++k)
        rep.rows.push_back(kindRow(k));
    rep.rows.push_back(sectionRow(QStringLiteral("סך הכל הכנסות"), QStringLiteral("totalkindincomestd"), set.showIncomesTotal,
                                  set.periodIncomes, true));
    closingRows(rep.rows, s, set);
    return writeCompare(rep, head, false);
}

QString compareTypePage(const CompareHead& head, const CompareSums& s, const TypeRows& rows)
{
    const TypeTotals& t = s.types;
    const SumSet& set = t.sums;
    Report rep;
    rep.namesDiv = QStringLiteral("topdivtypes");
    rep.namesAll = QStringLiteral("tblalltypes");
    rep.namesTable = QStringLiteral("tblperiodtypes");
    rep.rows.resize(size_t(rows.balanceRow) + 1);
    rep.rows[0] = openingRow(s);
    for (size_t i = 0; i < t.types.size(); ++i) {
        if (rows.typeRowIndex[i] < 0)
            continue;
        const int k = int(i);
        const bool income = t.types[i].isIncome;
        rep.rows[size_t(rows.typeRowIndex[i])] =
            Row{t.types[i].TypeName, QStringLiteral("typetd"), !set.checked[i], [&set, k, income](int col) {
                    return pairCell(col, set.sum(k, 0), set.sum(k, 1), income, QString(), QStringLiteral("4"), QString::number(k));
                }};
    }
    for (size_t c = 0; c < t.categories.size(); ++c) {
        const bool income = t.categories[c].isIncome;
        const QString cls = income ? QStringLiteral("totalincometypecategorytd") : QStringLiteral("totalexpensetypecategorytd");
        const int ci = int(c);
        rep.rows[size_t(rows.categRowIndex[c])] =
            Row{QStringLiteral("סך הכל ") + t.categories[c].CategoryName, cls, c < t.categChecked.size() && !t.categChecked[c],
                [&t, ci, cls, income](int col) { return pairCell(col, t.categSum(ci, 0), t.categSum(ci, 1), income, cls); }};
    }
    rep.rows[size_t(rows.expensesTotalRow)] = sectionRow(QStringLiteral("סך הכל הוצאות"), QStringLiteral("totaltypeexpensestd"),
                                                         set.showExpensesTotal, set.periodExpenses, false);
    rep.rows[size_t(rows.incomesTotalRow)] = sectionRow(QStringLiteral("סך הכל הכנסות"), QStringLiteral("totaltypeincomestd"),
                                                        set.showIncomesTotal, set.periodIncomes, true);
    std::vector<Row> tail;
    closingRows(tail, s, set);
    rep.rows[size_t(rows.netRow)] = tail[0];
    rep.rows[size_t(rows.balanceRow)] = tail[1];
    return writeCompare(rep, head, true);
}

ChartSeries kindChartSeries(const CompareSums& s, bool expenses)
{
    ChartSeries c;
    const int n = s.names.nCategories();
    for (int k = expenses ? n / 2 : 0; k < (expenses ? n : n / 2); ++k) {
        if (size_t(k) >= s.kinds.checked.size() || !s.kinds.checked[size_t(k)])
            continue;
        c.labels << s.names.descs.value(k);
        c.a.push_back(s.kinds.sum(k, 0));
        c.b.push_back(s.kinds.sum(k, 1));
    }
    return c;
}

ChartSeries typeChartSeries(const CompareSums& s, bool expenses)
{
    ChartSeries c;
    const TypeTotals& t = s.types;
    if (!s.typesIncluded || t.categPeriodSums.size() < t.categories.size() * 2)
        return c;
    const int first = t.firstIncomeCategory < 0 ? int(t.categories.size()) : t.firstIncomeCategory;
    for (int k = expenses ? 0 : first; k < (expenses ? first : int(t.categories.size())); ++k) {
        if (size_t(k) >= t.categChecked.size() || !t.categChecked[size_t(k)])
            continue;
        c.labels << t.categories[size_t(k)].CategoryName;
        c.a.push_back(t.categSum(k, 0));
        c.b.push_back(t.categSum(k, 1));
    }
    return c;
}

} // namespace pelkor::reports
