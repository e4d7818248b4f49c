#include "reports/PeriodSums.h"

#include "base/Format.h"
#include "seams/store/Connection.h"

#include <algorithm>

namespace pelkor::reports {

namespace {

// The range's bounds as the statements write them.
QString rangeWhere(const Periods& periods)
{
    return QStringLiteral("[date]>=") + formatDateForSQL(periods.fromDate) + QStringLiteral(" AND [date]<=")
        + formatDateForSQL(periods.toDate);
}

// A member file's index as zee holds it (digits, maybe padded with blanks).
int zeeIndex(const store::Value& v)
{
    bool ok = false;
    const int i = v.toString().trimmed().toInt(&ok);
    return ok ? i : -1;
}

} // namespace

DateSpan readDateSpan(store::Connection& cn)
{
    auto rs = cn.execute(QStringLiteral("SELECT min([date]),max([date]) FROM pelkor"));
    DateSpan s;
    if (rs.recordCount() > 0) {
        s.min = rs.at(0, 0).toDate();
        s.max = rs.at(0, 1).toDate();
    }
    return s;
}

double readOpeningBalance(store::Connection& cn, const QDate& fromDate, const MergedRates& m)
{
    const QString date = formatDateForSQL(fromDate);
    if (!m.isMerged) {
        auto rs = cn.execute(QStringLiteral("SELECT sum([in]),sum([out]) FROM pelkor WHERE [date]<") + date);
        return rs.recordCount() ? RemoveSumNull(rs.at(0, 0)) - RemoveSumNull(rs.at(0, 1)) : 0.0;
    }
    // Each member file's part converted by its own rate (the rates are read
    // with the lines, so mergedBanks and the loaded rates cannot disagree).
    auto rs = cn.execute(QStringLiteral("SELECT zee,sum([in]),sum([out]) FROM pelkor WHERE [date]<") + date
                         + QStringLiteral(" GROUP BY zee"));
    double total = 0;
    for (long r = 0; r < rs.recordCount(); ++r)
        total += reallyConvNum(RemoveSumNull(rs.at(r, 1)) - RemoveSumNull(rs.at(r, 2)), m.rateOf(zeeIndex(rs.at(r, 0))));
    return total;
}

int readPeriodSums(store::Connection& cn, const Periods& periods, int nCategories, const MergedRates& m, SumSet& kinds,
                   TypeTotals* types)
{
    kinds.reset(nCategories, periods.nPeriods);
    for (int k = 0; k < nCategories; ++k)
        kinds.isExpenseRow[size_t(k)] = k >= nCategories / 2;
    if (types) {
        types->sums.reset(int(types->types.size()), periods.nPeriods);
        for (size_t i = 0; i < types->types.size(); ++i)
            types->sums.isExpenseRow[i] = !types->types[i].isIncome;
    }
    // One pass over the range serves both reports: the store groups the
    // lines by day, kind and type, and each group lands in its period.
    const QString zee = m.isMerged ? QStringLiteral(",zee") : QString();
    auto rs = cn.execute(QStringLiteral("SELECT [date],kind,TypeNum,sum([in]),sum([out])") + zee + QStringLiteral(" FROM pelkor WHERE ")
                         + rangeWhere(periods) + QStringLiteral(" GROUP BY [date],kind,TypeNum") + zee);
    int skipped = 0;
    QString lastKind;
    int k = -1;
    for (long r = 0; r < rs.recordCount(); ++r) {
        const int p = periods.indexOf(rs.at(r, 0).toDate());
        if (p < 0 || p >= periods.nPeriods)
            continue;
        double amount = RemoveSumNull(rs.at(r, 3)) - RemoveSumNull(rs.at(r, 4));
        if (m.isMerged)
            amount = reallyConvNum(amount, m.rateOf(zeeIndex(rs.at(r, 5))));
        const QString kind = rs.at(r, 1).toString();
        if (kind != lastKind || r == 0) {
            lastKind = kind;
            k = kindIndexOf(kind, nCategories);
        }
        if (k < 0)
            ++skipped;
        else
            kinds.sum(k, p) += k >= nCategories / 2 ? -amount : amount;
        if (!types || rs.at(r, 2).isNull())
            continue;
        const int i = types->getIndexOfTypeNum(int(rs.at(r, 2).toInt()));
        if (i >= 0)
            types->sums.sum(i, p) += types->types[size_t(i)].isIncome ? amount : -amount;
    }
    return skipped;
}

void readTypeCatalogue(store::Connection& cn, TypeTotals& t)
{
    t.categories.clear();
    t.types.clear();
    auto cats = cn.execute(QStringLiteral("SELECT * FROM TypesCategories ORDER BY InOut DESC,CategoryName"));
    const int num = cats.fieldIndex(QStringLiteral("CategoryNum"));
    const int name = cats.fieldIndex(QStringLiteral("CategoryName"));
    const int inOut = cats.fieldIndex(QStringLiteral("InOut"));
    for (long r = 0; r < cats.recordCount(); ++r)
        t.categories.push_back({int(cats.at(r, num).toInt()), RemoveNull(cats.at(r, name)), cats.at(r, inOut).toInt() == 1});
    // Expenses first whatever number a file gives them (2, or 0 in newer
    // files): the lists and the reports open with the expenses.
    std::stable_partition(t.categories.begin(), t.categories.end(), [](const TypeCategory& c) { return !c.isIncome; });
    t.firstIncomeCategory = -1;
    for (size_t c = 0; c < t.categories.size(); ++c)
        if (t.categories[c].isIncome) {
            t.firstIncomeCategory = int(c);
            break;
        }

    auto rs = cn.execute(QStringLiteral(
        "SELECT TypeNum,TypeName,types.CategoryNum,InOut,TypesCategories.CategoryNum,CategoryName FROM types,TypesCategories "
        "WHERE types.CategoryNum=TypesCategories.CategoryNum ORDER BY InOut DESC,CategoryName,TypeName"));
    std::vector<ReportType> types;
    for (long r = 0; r < rs.recordCount(); ++r)
        types.push_back({int(rs.at(r, 0).toInt()), RemoveNull(rs.at(r, 1)), RemoveNull(rs.at(r, 5)), rs.at(r, 3).toInt() == 1});
    // In the categories' order, so each category's types stand under it.
    for (const TypeCategory& c : t.categories)
        for (const ReportType& ty : types)
            if (ty.CategoryName == c.CategoryName && ty.isIncome == c.isIncome)
                t.types.push_back(ty);
    for (const ReportType& ty : types)
        if (t.getIndexOfTypeNum(ty.TypeNum) < 0)
            t.types.push_back(ty);
}

} // namespace pelkor::reports
