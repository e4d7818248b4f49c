// The match figure: a fresh search over 10,000 bank rows against 100,000
// lines, its log written, against a plain loop that visits, for each bank
// row, only the lines inside its date window once.
#include "BenchSupport.h"

#include "reconcile/MatchPasses.h"

#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <random>

using namespace pelkor;
using namespace pelkor::reconcile;
using namespace pelkor::bench;

int matchFigure(int runs)
{
    std::mt19937 rng(7);
    const int nLines = 100000, nBank = 10000;
    const qint64 start = QDate(2020, 1, 1).toJulianDay();
    std::vector<MatchRow> lines, bank;
    lines.reserve(nLines);
    // About 55 lines a day over five years; references of six to nine
    // digits on two lines of three; sums in agorot.
    for (int i = 0; i < nLines; ++i) {
        const qint64 day = start + qint64(i) * 1826 / nLines;
        const bool income = rng() % 3 == 0;
        const double sum = double(rng() % 500000) / 100.0;
        const QString ref = rng() % 3 ? QString::number(100000 + rng() % 900000000) : QStringLiteral(" ");
        lines.push_back({day, ref, income ? sum : 0, income ? 0 : sum, false, true});
    }
    // Half the bank rows copy a line (its reference with another prefix,
    // its date a few days off); the rest stand alone.
    for (int b = 0; b < nBank; ++b) {
        if (b % 2 == 0) {
            MatchRow r = lines[size_t(rng() % nLines)];
            r.day += qint64(rng() % 7) - 3;
            if (!r.confirm.trimmed().isEmpty())
                r.confirm = QStringLiteral("7") + r.confirm;
            bank.push_back(r);
        } else {
            const double sum = double(rng() % 500000) / 100.0;
            bank.push_back({start + rng() % 1826, QString::number(rng() % 100000000), 0, sum, false, true});
        }
    }
    std::sort(bank.begin(), bank.end(), [](const MatchRow& a, const MatchRow& b) { return a.day < b.day; });
    MatchInput in;
    in.lines = &lines;
    in.bank = &bank;
    in.targetDay = start + 1826;
    QTemporaryDir dir;
    std::vector<qint64> days(lines.size());
    for (size_t i = 0; i < lines.size(); ++i)
        days[i] = lines[i].day;
    size_t pairs = 0;
    volatile double sink = 0;
    const auto mine = [&] {
        QElapsedTimer t0;
        t0.start();
        QFile f(dir.filePath(QStringLiteral("match_log.txt")));
        f.open(QIODevice::WriteOnly);
        QByteArray log;
        std::vector<char> mt, bt;
        pairs = runMatchPasses(in, mt, bt, &log).size();
        f.write(log);
        return double(t0.nsecsElapsed()) / 1e6;
    };
    const auto base = [&] {
        QElapsedTimer t0;
        t0.start();
        double s = 0;
        for (const MatchRow& b : bank) {
            auto it = std::lower_bound(days.begin(), days.end(), b.day - in.maxDayDiff);
            for (size_t i = size_t(it - days.begin()); i < lines.size() && days[i] <= b.day + in.maxDayDiff; ++i)
                s += lines[i].in == b.in && lines[i].out == b.out ? 1 : lines[i].out;
        }
        sink = s;
        return double(t0.nsecsElapsed()) / 1e6;
    };
    const auto [mineMs, baseMs] = bestOf(runs > 0 ? runs : 3, mine, base);
    std::fprintf(stderr, "match: %zu pairs\n", pairs);
    printFigure(QStringLiteral("match 10k x 100k ms"), mineMs, baseMs, "3.00");
    return 0;
}
