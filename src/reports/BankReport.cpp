#include "reports/BankReport.h"

#include "base/Format.h"
#include "file/Schema.h"
#include "reports/PeriodSums.h"
#include "seams/platform/ProfileFile.h"
#include "seams/store/Connection.h"
#include "seams/store/StoreError.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cmath>

namespace pelkor::reports {

// ---- merge.ini -----------------------------------------------------------

QStringList readMergeIni(const QString& iniPath)
{
    const platform::ProfileFile ini(iniPath);
    QStringList files;
    for (int n = 1; n <= maxMergeKeys; ++n) {
        const QString path = ini.readString(mergeSection, QStringLiteral("file%1").arg(n));
        if (path.isEmpty())
            break;
        files << path;
    }
    return files;
}

bool writeMergeIni(const QString& iniPath, const QStringList& files)
{
    platform::ProfileFile ini(iniPath);
    const int n = int(std::min<qsizetype>(files.size(), maxMergeKeys));
    for (int i = 0; i < n; ++i)
        if (!ini.writeString(mergeSection, QStringLiteral("file%1").arg(i + 1), files[i]))
            return false;
    // An empty key ends the list for the next read.
    if (n < maxMergeKeys)
        return ini.writeString(mergeSection, QStringLiteral("file%1").arg(n + 1), QStringLiteral(""));
    return true;
}

// ---- colours and rates ---------------------------------------------------

std::uint32_t fileColor(int i)
{
    static const std::array<std::uint32_t, 15> first = {
        rgb(0, 0, 255),    rgb(220, 0, 220),  rgb(0, 220, 220),  rgb(235, 200, 57), rgb(153, 38, 153),
        rgb(153, 153, 38), rgb(64, 128, 255), rgb(128, 64, 255), rgb(64, 128, 255), rgb(64, 64, 128),
        rgb(64, 128, 64),  rgb(128, 64, 64),  rgb(192, 0, 255),  rgb(64, 192, 255), rgb(0, 64, 192),
    };
    if (i < 0)
        return first[0];
    if (i < 15)
        return first[size_t(i)];
    // The colour as one number, scaled: channels may bleed into each other,
    // as the series always did.
    return std::uint32_t(std::lround(double(fileColor(i - 15)) * 0.7));
}

QString conversionText(double rate)
{
    if (rate == 0)
        return QStringLiteral("ללא המרה");
    QString n = QString::number(std::fabs(rate), 'f', 4);
    while (n.endsWith(QLatin1Char('0')))
        n.chop(1);
    if (n.endsWith(QLatin1Char('.')))
        n.chop(1);
    return (rate > 0 ? QStringLiteral("מוכפל ב: ") : QStringLiteral("מחולק ב: ")) + n;
}

bool parseRate(const QString& text, double& rate, QString& message)
{
    static const QRegularExpression number(QStringLiteral("^-?(\\d[\\d,]*(\\.\\d*)?|\\.\\d+)$"));
    const QString t = text.trimmed();
    if (t.isEmpty() || !number.match(t).hasMatch()) {
        message = QStringLiteral("יש למלא מספר");
        return false;
    }
    QString plain = t;
    plain.remove(QLatin1Char(','));
    const double v = plain.toDouble();
    if (!(v > 0)) {
        message = QStringLiteral("יש למלא מספר חיובי");
        return false;
    }
    if (v > maxRate) {
        message = QStringLiteral("יש למלא מספר שאינו גדול ממיליון");
        return false;
    }
    rate = v;
    return true;
}

// ---- reading a file --------------------------------------------------------

BankFileSums readBankFile(store::Connection& cn, const QDate& from, const QDate& to)
{
    BankFileSums s;
    const int n = int(from.daysTo(to)) + 1;
    s.dayIns.assign(size_t(std::max(n, 0)), 0.0);
    s.dayOuts.assign(size_t(std::max(n, 0)), 0.0);
    auto credit = cn.execute(QStringLiteral("SELECT Credit FROM Defaults"));
    s.credit = credit.recordCount() ? RemoveSumNull(credit.at(0, 0)) : 0.0;
    s.nKinds = cn.execute(QStringLiteral("SELECT COUNT(id) FROM Category")).at(0, 0).toInt();
    s.opening = readOpeningBalance(cn, from, MergedRates{});
    auto days = cn.execute(QStringLiteral("SELECT [date],sum([in]),sum([out]) FROM pelkor WHERE [date]>=") + formatDateForSQL(from)
                           + QStringLiteral(" AND [date]<=") + formatDateForSQL(to) + QStringLiteral(" GROUP BY [date]"));
    for (long r = 0; r < days.recordCount(); ++r) {
        const QDate date = days.at(r, 0).toDate();
        const qint64 d = date.isValid() ? from.daysTo(date) : -1;
        if (d < 0 || d >= n)
            continue;
        s.dayIns[size_t(d)] += RemoveSumNull(days.at(r, 1));
        s.dayOuts[size_t(d)] += RemoveSumNull(days.at(r, 2));
    }
    auto ipus = cn.execute(QStringLiteral("SELECT [date] FROM pelkor WHERE zee='") + QLatin1String(schema::ipusMark)
                           + QLatin1Char('\''));
    for (long r = 0; r < ipus.recordCount(); ++r) {
        const QDate date = ipus.at(r, 0).toDate();
        const qint64 d = date.isValid() ? from.daysTo(date) : -1;
        if (d >= 0 && d < n)
            s.ipusDayPlus1 = int(d) + 1;
    }
    return s;
}

QString leftOutReason(const store::StoreError& e)
{
    using K = store::StoreError::Kind;
    if (e.kind() == K::Busy || e.message().contains(QLatin1String("locked"), Qt::CaseInsensitive))
        return QStringLiteral("הקובץ תפוס בידי תוכנה אחרת");
    if (e.message().contains(QLatin1String("no such table"), Qt::CaseInsensitive)
        || e.message().contains(QLatin1String("no such column"), Qt::CaseInsensitive))
        return QStringLiteral("הקובץ אינו קובץ פלקור");
    return QStringLiteral("הקובץ פגום ולא ניתן לקרוא אותו");
}

QString missingFileReason() { return QStringLiteral("הקובץ אינו קיים"); }
QString noPasswordReason() { return QStringLiteral("לא הוזנה סיסמה"); }

// ---- the day arrays --------------------------------------------------------

double BankDays::convertedCredit(int f) const { return reallyConvNum(fileCredits[size_t(f)], rates[size_t(f)]); }

BankDays calcBankDays(const std::vector<BankFileSums>& files, const std::vector<double>& rates, const QDate& from,
                      const QDate& to)
{
    BankDays b;
    b.fromDate = from;
    b.toDate = to;
    b.nReportDays = std::max(0, int(from.daysTo(to)) + 1);
    b.nIncluded = int(files.size());
    b.rates = rates;
    b.rates.resize(files.size(), 0.0);
    const size_t cells = size_t(b.nReportDays) * size_t(b.nIncluded);
    for (auto* v : {&b.ins, &b.outs, &b.balances, &b.excesses})
        v->assign(cells, 0.0);
    for (auto* v : {&b.dayTotalIns, &b.dayTotalOuts, &b.dayTotalBalances, &b.dayTotalExcesses})
        v->assign(size_t(b.nReportDays), 0.0);
    b.fileBalances.assign(files.size(), 0.0);
    for (int f = 0; f < b.nIncluded; ++f) {
        const BankFileSums& s = files[size_t(f)];
        const double r = b.rates[size_t(f)];
        b.fileCredits.push_back(s.credit);
        b.totalCredit += s.credit;
        b.ipusDayPlus1.push_back(s.ipusDayPlus1);
        const double credit = reallyConvNum(s.credit, r);
        double balance = reallyConvNum(s.opening, r);
        for (int d = 0; d < b.nReportDays; ++d) {
            const size_t i = b.at(d, f);
            const double in = reallyConvNum(s.dayIns[size_t(d)], r);
            const double out = reallyConvNum(s.dayOuts[size_t(d)], r);
            balance += in - out;
            b.ins[i] = in;
            b.outs[i] = out;
            b.balances[i] = balance;
            b.excesses[i] = balance - credit;
            b.dayTotalIns[size_t(d)] += in;
            b.dayTotalOuts[size_t(d)] += out;
            b.dayTotalBalances[size_t(d)] += balance;
            b.dayTotalExcesses[size_t(d)] += balance - credit;
        }
        b.fileBalances[size_t(f)] = balance;
    }
    return b;
}

// ---- events and charts -----------------------------------------------------

BankEvent parseBankEvent(const QString& theID)
{
    BankEvent e;
    if (theID.isEmpty())
        return e;
    const QStringList f = theID.split(QLatin1Char(' '));
    bool ok = true;
    const auto number = [&ok](const QString& s) {
        bool good = false;
        const int v = s.toInt(&good);
        ok = ok && good;
        return v;
    };
    if (f.size() == 2 && f[0] == QLatin1String("cnv")) {
        e.f = number(f[1]);
        e.kind = ok ? BankEvent::Kind::Conversion : BankEvent::Kind::Invalid;
        return e;
    }
    if (f.size() != 4) {
        e.kind = BankEvent::Kind::WrongFieldCount;
        return e;
    }
    e.t = number(f[0]);
    e.d = number(f[1]);
    e.f = number(f[2]);
    e.nonZero = f[3] != QLatin1String("0");
    e.kind = ok && e.t >= 0 && e.t <= 2 ? BankEvent::Kind::Cell : BankEvent::Kind::Invalid;
    return e;
}

BankChartData bankChartData(const BankDays& days)
{
    BankChartData c;
    c.nGraphs = days.nIncluded;
    c.totalCredit = days.totalCredit;
    for (int d = 0; d < days.nReportDays; ++d)
        c.labels << shortFormatDate(days.fromDate.addDays(d));
    c.totals = days.dayTotalBalances;
    c.separate.reserve(size_t(days.nReportDays) * size_t(days.nIncluded));
    for (int f = 0; f < days.nIncluded; ++f)
        for (int d = 0; d < days.nReportDays; ++d)
            c.separate.push_back(days.balance(d, f));
    return c;
}

QString bankReportTitle(const QStringList& shortNames) { return shortNames.join(QLatin1Char(',')).left(130); }

QString bankExportName(const QString& reportTitle, const QDate& from, const QDate& to)
{
    QString name = reportTitle + QStringLiteral(" - דוח איחוד בנקים מ- ") + formatTheDate(from) + QStringLiteral(" עד ")
        + formatTheDate(to);
    name.replace(QLatin1Char('/'), QLatin1Char('.'));
    return name;
}

} // namespace pelkor::reports
