#include "reconcile/MatchPasses.h"

#include <QDate>
#include <QLatin1StringView>

#include <charconv>
#include <cstdio>
#include <QHash>

#include <algorithm>

namespace pelkor::reconcile {

QString MatchPair::key() const { return QStringLiteral("%1 %2 %3").arg(grade).arg(iMain).arg(iBank); }
QString MatchPair::rows() const { return QStringLiteral("%1 %2").arg(iMain).arg(iBank); }

QString confirmTail(const QString& confirm, int n) { return confirm.size() <= n ? confirm : confirm.right(n); }

namespace {

// The log, written into one buffer: a search names a date and sums for
// every row it looks at, so nothing here reads a pattern or a locale.
class Log {
public:
    explicit Log(QByteArray* out) : out_(out) {}
    explicit operator bool() const { return out_ != nullptr; }
    Log& operator<<(const char* text)
    {
        out_->append(text);
        return *this;
    }
    Log& operator<<(char c)
    {
        out_->append(c);
        return *this;
    }
    Log& operator<<(qint64 n)
    {
        char buf[24];
        const auto r = std::to_chars(buf, buf + sizeof buf, n);
        out_->append(buf, r.ptr - buf);
        return *this;
    }
    Log& operator<<(int n) { return *this << qint64(n); }
    Log& operator<<(double v)
    {
        char buf[32];
        const auto r = std::to_chars(buf, buf + sizeof buf, v);
        out_->append(buf, r.ptr - buf);
        return *this;
    }
    Log& operator<<(QStringView text)
    {
        for (QChar c : text)
            if (c.unicode() >= 0x80) {
                out_->append(text.toUtf8());
                return *this;
            }
        for (QChar c : text)
            out_->append(char(c.unicode()));
        return *this;
    }
    // A day as dd/mm/yyyy.
    Log& day(qint64 julian)
    {
        int y = 0, m = 0, d = 0;
        QDate::fromJulianDay(julian).getDate(&y, &m, &d);
        char buf[16];
        std::snprintf(buf, sizeof buf, "%02d/%02d/%04d", d, m, y);
        out_->append(buf);
        return *this;
    }

private:
    QByteArray* out_;
};

// A text of blanks only (or none).
bool blank(QStringView text)
{
    for (QChar c : text)
        if (!c.isSpace())
            return false;
    return true;
}

QStringView tailOf(const QString& confirm, int n)
{
    return confirm.size() <= n ? QStringView(confirm) : QStringView(confirm).right(n);
}

const char* const passEnds[] = {"end of 1st bank loop", "end of 2nd bank loop", "end of 3rd bank loop",
                                "end of 4th bank loop", "end of 5th bank loop"};

struct SumsKey {
    double in, out;
    bool operator==(const SumsKey& o) const { return in == o.in && out == o.out; }
};
size_t qHash(const SumsKey& k, size_t seed = 0) { return ::qHash(k.in, seed) ^ (::qHash(k.out, seed) * 31); }

// What the passes read of a line, worked out once.
struct Prepared {
    std::vector<QStringView> tails;   // by line index, into the rows' own texts
    std::vector<char> emptyRef;   // trimmed reference empty
    std::vector<qint64> days;
    // Line indexes (from the first line below the red line) in grid order.
    QHash<QStringView, std::vector<int>> byTail;
    QHash<SumsKey, std::vector<int>> emptyBySums;
    QHash<SumsKey, std::vector<int>> bySums;
};

// The first index in list whose line is dated on or after day.
std::vector<int>::const_iterator firstFrom(const std::vector<int>& list, const std::vector<qint64>& days, qint64 day)
{
    return std::lower_bound(list.begin(), list.end(), day, [&](int i, qint64 d) { return days[size_t(i)] < d; });
}

class Passes {
public:
    Passes(const MatchInput& in, std::vector<char>& mainTaken, std::vector<char>& bankTaken, QByteArray* log)
        : in_(in), lines_(*in.lines), bank_(*in.bank), mainTaken_(mainTaken), bankTaken_(bankTaken), log_(log)
    {
        const int first = std::max(in.iRowAboveRed, 0);
        p_.tails.resize(lines_.size());
        p_.emptyRef.resize(lines_.size());
        p_.days.resize(lines_.size());
        for (size_t i = 0; i < lines_.size(); ++i) {
            p_.days[i] = lines_[i].day;
            if (int(i) < first)
                continue;
            p_.tails[i] = tailOf(lines_[i].confirm, in.nDigits);
            p_.emptyRef[i] = blank(p_.tails[i]);
            p_.bySums[SumsKey{lines_[i].in, lines_[i].out}].push_back(int(i));
            if (!p_.emptyRef[i])
                p_.byTail[p_.tails[i]].push_back(int(i));
            else
                p_.emptyBySums[SumsKey{lines_[i].in, lines_[i].out}].push_back(int(i));
        }
    }

    std::vector<MatchPair> run()
    {
        std::vector<MatchPair> out;
        for (int pass = 0; pass < 5; ++pass) {
            if (log_) {
                log_ << "=== ";
                for (int k = 0; k < 33; ++k)
                    log_ << char('1' + pass) << ' ';
                log_ << "===\n";
            }
            for (int b = std::max(in_.iBankRowAboveRed, 0); b < int(bank_.size()); ++b) {
                if (in_.pause && (b & 255) == 0)
                    in_.pause();
                bankRow(pass, b, out);
            }
            if (log_)
                log_ << passEnds[pass] << '\n';
        }
        return out;
    }

private:
    void bankRow(int pass, int b, std::vector<MatchPair>& out)
    {
        const MatchRow& br = bank_[size_t(b)];
        const int iBank = b + 1;
        if (br.day > in_.targetDay || br.confirmed) {
            if (log_)
                log_ << "iBank=" << iBank << " bank row has V or late date\n";
            return;
        }
        if (bankTaken_[size_t(iBank)]) {
            if (log_)
                log_ << "iBank=" << iBank << " bank row is taken\n";
            return;
        }
        const bool window = pass == 0 || pass == 2 || pass == 3;
        const qint64 minDay = window ? br.day - in_.maxDayDiff : br.day;
        const qint64 maxDay = window ? br.day + in_.maxDayDiff : br.day;
        const QStringView bankConfirm = tailOf(br.confirm, in_.nDigits);
        const bool bankEmpty = blank(bankConfirm);
        if (log_) {
            (log_ << "iBank=" << iBank << " date is ").day(br.day) << " bankMinDate=";
            (log_.day(minDay) << " bankMaxDate=").day(maxDay) << " bankConfirm: -->" << bankConfirm
                                                              << "<-- bankIn=" << br.in << " bankOut=" << br.out << '\n';
        }
        if (window && bankEmpty)
            return;
        if (log_)
            log_ << "--- " << pass + 1 << " ------------------------------------------------\n";
        const std::vector<int>* list = nullptr;
        switch (pass) {
        case 0:
        case 2: {
            auto it = p_.byTail.constFind(bankConfirm);
            list = it == p_.byTail.cend() ? nullptr : &it.value();
            break;
        }
        case 3: {
            auto it = p_.emptyBySums.constFind(SumsKey{br.in, br.out});
            list = it == p_.emptyBySums.cend() ? nullptr : &it.value();
            break;
        }
        default: {
            // The same-day passes want equal sums.
            auto it = p_.bySums.constFind(SumsKey{br.in, br.out});
            list = it == p_.bySums.cend() ? nullptr : &it.value();
            break;
        }
        }
        if (list) {
            for (auto it = firstFrom(*list, p_.days, minDay); it != list->end(); ++it) {
                const int i = *it;
                if (p_.days[size_t(i)] > maxDay) {
                    if (log_)
                        log_ << "main row has late date - exit for\n";
                    break;
                }
                if (tryLine(pass, i, b, br, bankConfirm, bankEmpty)) {
                    out.push_back(MatchPair{pass, i + 1, iBank});
                    mainTaken_[size_t(i) + 1] = bankTaken_[size_t(iBank)] = 1;
                    if (log_)
                        log_ << "want to add pair " << i + 1 << "," << iBank << '\n';
                    break;
                }
            }
        }
        if (log_)
            log_ << "end of main loop\n";
    }

    bool tryLine(int pass, int i, int b, const MatchRow& br, QStringView bankConfirm, bool bankEmpty)
    {
        const MatchRow& ln = lines_[size_t(i)];
        const int iMain = i + 1;
        if (mainTaken_[size_t(iMain)]) {
            if (log_)
                log_ << "iMain=" << iMain << " main row is taken\n";
            return false;
        }
        if (in_.rejected && !in_.rejected->empty() &&
            in_.rejected->contains(QStringLiteral("%1 %2").arg(iMain).arg(b + 1)))
            return false;
        if (ln.confirmed || !ln.visible)
            return false;
        const bool sumsEqual = ln.in == br.in && ln.out == br.out;
        const QStringView mainConfirm = p_.tails[size_t(i)];
        const bool mainEmpty = p_.emptyRef[size_t(i)];
        bool fits = false;
        switch (pass) {
        case 0: fits = mainConfirm == bankConfirm && sumsEqual; break;
        case 1: fits = (mainEmpty || bankEmpty) && sumsEqual; break;
        case 2: fits = mainConfirm == bankConfirm && ((ln.out == 0) == (br.out == 0)); break;
        case 3: fits = !bankEmpty && mainEmpty && sumsEqual; break;
        default: fits = !bankEmpty && !mainEmpty && mainConfirm != bankConfirm && sumsEqual; break;
        }
        if (log_) {
            (log_ << "iMain=" << iMain << " date is ").day(ln.day)
                << " main confirm: -->" << mainConfirm << "<-- in=" << ln.in << " out=" << ln.out << '\n';
            if (!fits)
                log_ << "rows don't match\n";
        }
        return fits;
    }

    const MatchInput& in_;
    const std::vector<MatchRow>& lines_;
    const std::vector<MatchRow>& bank_;
    std::vector<char>& mainTaken_;
    std::vector<char>& bankTaken_;
    Log log_;
    Prepared p_;
};

} // namespace

std::vector<MatchPair> runMatchPasses(const MatchInput& in, std::vector<char>& mainTaken, std::vector<char>& bankTaken,
                                      QByteArray* log)
{
    mainTaken.resize(std::max(mainTaken.size(), in.lines->size() + 1));
    bankTaken.resize(std::max(bankTaken.size(), in.bank->size() + 1));
    return Passes(in, mainTaken, bankTaken, log).run();
}

} // namespace pelkor::reconcile
