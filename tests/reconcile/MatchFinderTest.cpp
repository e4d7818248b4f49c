// The match finder: the five passes against a direct reading of them on
// generated rows, a stronger proof winning a row, and decisions on the page
// kept, refused and applied across searches.
#include "reconcile/MatchFinder.h"
#include "reconcile/frmMatchSettings.h"

#include "SessionFixture.h"
#include "seams/web/ScriptedWebView.h"

#include <QFile>

#include <random>

using namespace pelkor;
using namespace pelkor::reconcile;
using namespace pelkor::testing;

namespace {

// The passes read plainly: every bank row, every line from the top, the
// first that fits; no indexes.
std::vector<MatchPair> directReading(const MatchInput& in, std::vector<char> mainTaken, std::vector<char> bankTaken)
{
    std::vector<MatchPair> out;
    const auto& lines = *in.lines;
    const auto& bank = *in.bank;
    for (int pass = 0; pass < 5; ++pass)
        for (size_t b = size_t(in.iBankRowAboveRed); b < bank.size(); ++b) {
            const MatchRow& br = bank[b];
            if (br.day > in.targetDay || br.confirmed || bankTaken[b + 1])
                continue;
            const bool window = pass == 0 || pass == 2 || pass == 3;
            const qint64 lo = window ? br.day - in.maxDayDiff : br.day, hi = window ? br.day + in.maxDayDiff : br.day;
            const QString bc = confirmTail(br.confirm, in.nDigits);
            const bool bEmpty = bc.trimmed().isEmpty();
            if (window && bEmpty)
                continue;
            for (size_t i = size_t(in.iRowAboveRed); i < lines.size(); ++i) {
                const MatchRow& ln = lines[i];
                if (ln.day > hi)
                    break;
                if (mainTaken[i + 1] || ln.day < lo || ln.confirmed || !ln.visible)
                    continue;
                if (in.rejected && in.rejected->contains(QStringLiteral("%1 %2").arg(i + 1).arg(b + 1)))
                    continue;
                const QString mc = confirmTail(ln.confirm, in.nDigits);
                const bool mEmpty = mc.trimmed().isEmpty();
                const bool sums = ln.in == br.in && ln.out == br.out;
                const bool fits = pass == 0   ? mc == bc && sums
                                  : pass == 1 ? (mEmpty || bEmpty) && sums
                                  : pass == 2 ? mc == bc && (ln.out == 0) == (br.out == 0)
                                  : pass == 3 ? !bEmpty && mEmpty && sums
                                              : !bEmpty && !mEmpty && mc != bc && sums;
                if (fits) {
                    out.push_back({pass, int(i) + 1, int(b) + 1});
                    mainTaken[i + 1] = bankTaken[b + 1] = 1;
                    break;
                }
            }
        }
    return out;
}

TEST(MatchPassesTest, GeneratedRowsPairExactlyAsTheDirectReading)
{
    std::mt19937 rng(20250501);
    const qint64 start = QDate(2025, 1, 1).toJulianDay();
    for (int round = 0; round < 6; ++round) {
        std::vector<MatchRow> lines, bank;
        const int nLines = 400, nBank = 150;
        qint64 day = start;
        auto sum = [&] { return double(rng() % 40) * 12.5; };
        auto ref = [&]() -> QString {
            switch (rng() % 4) {
            case 0: return QStringLiteral(" ");
            case 1: return QString();
            default: return QString::number(100000 + rng() % 60);
            }
        };
        for (int i = 0; i < nLines; ++i) {
            day += rng() % 3 == 0 ? 1 : 0;
            const bool income = rng() % 2;
            const double s = sum();
            lines.push_back({day, ref(), income ? s : 0, income ? 0 : s, rng() % 20 == 0, rng() % 25 != 0});
        }
        day = start;
        for (int b = 0; b < nBank; ++b) {
            day += rng() % 2;
            if (rng() % 2) {
                // A copy of some line, its reference with other leading digits.
                MatchRow r = lines[rng() % lines.size()];
                r.day += qint64(rng() % 7) - 3;
                if (!r.confirm.trimmed().isEmpty())
                    r.confirm = QStringLiteral("9") + r.confirm;
                r.confirmed = rng() % 30 == 0;
                r.visible = true;
                bank.push_back(r);
                day = std::max(day, r.day);
            } else {
                const bool income = rng() % 2;
                const double s = sum();
                bank.push_back({day, ref(), income ? s : 0, income ? 0 : s, false, true});
            }
        }
        std::sort(bank.begin(), bank.end(), [](const MatchRow& a, const MatchRow& b) { return a.day < b.day; });
        QSet<QString> rejected{QStringLiteral("5 3"), QStringLiteral("40 20")};
        MatchInput in;
        in.lines = &lines;
        in.bank = &bank;
        in.iRowAboveRed = 3;
        in.iBankRowAboveRed = 2;
        in.targetDay = day - 10;
        in.nDigits = 3 + round % 4;
        in.maxDayDiff = round == 0 ? 0 : 2 * round;
        in.rejected = round % 2 ? &rejected : nullptr;
        std::vector<char> mainTaken(lines.size() + 1), bankTaken(bank.size() + 1);
        mainTaken[10] = bankTaken[9] = 1;   // kept from an earlier search
        const auto expected = directReading(in, mainTaken, bankTaken);
        const auto got = runMatchPasses(in, mainTaken, bankTaken);
        EXPECT_GT(expected.size(), 10u);
        EXPECT_EQ(got, expected) << "round " << round;
    }
}

TEST(MatchPassesTest, AStrongerProofWinsTheRowAndTheUpperOfTwoEqualBankRowsTakesTheLine)
{
    const qint64 d = QDate(2025, 5, 5).toJulianDay();
    // Line 1: the same day, no reference (a pass-2 fit); line 2: three days
    // on, the same reference's right end (a pass-1 fit).
    std::vector<MatchRow> lines{{d, QStringLiteral(" "), 100, 0}, {d + 3, QStringLiteral("001234"), 100, 0}, {d + 4, QStringLiteral(" "), 0, 70}};
    std::vector<MatchRow> bank{{d, QStringLiteral("551234"), 100, 0}, {d + 4, QStringLiteral(" "), 0, 70}, {d + 4, QStringLiteral(" "), 0, 70}};
    MatchInput in;
    in.lines = &lines;
    in.bank = &bank;
    in.targetDay = d + 10;
    std::vector<char> mt, bt;
    const auto pairs = runMatchPasses(in, mt, bt);
    ASSERT_EQ(pairs.size(), 2u);
    EXPECT_EQ(pairs[0].key(), QStringLiteral("0 2 1"));
    EXPECT_EQ(pairs[1].key(), QStringLiteral("1 3 2"));
    // With no day of leeway the reference cannot reach, and the same-day
    // line takes the row in the second pass.
    in.maxDayDiff = 0;
    std::vector<char> mt0, bt0;
    EXPECT_EQ(runMatchPasses(in, mt0, bt0).front().key(), QStringLiteral("1 1 1"));
}

class MatchFinderTest : public SessionTest {
protected:
    static QString fileLine(int id, const char* date, const char* confirm, double in, double out, bool mark = false)
    {
        return QStringLiteral("INSERT INTO pelkor (id, kind, date, confirm, detail, \"in\", out, TypeNum, zee, memo, relate, IndTzefi)"
                              " VALUES (%1, '+0', '%2', '%3', 'line %1', %4, %5, 1, '%6', NULL, 0, 0);")
            .arg(id)
            .arg(QString::fromLatin1(date), QString::fromLatin1(confirm))
            .arg(in)
            .arg(out)
            .arg(QString::fromLatin1(mark ? "ZZZZZZZZZZ" : " "));
    }
    static QString bankLine(int id, const char* date, const char* confirm, double in, double balance)
    {
        return QStringLiteral("INSERT INTO poalimOsh VALUES ('1', %1, '%2', '%3', 'bank %1', %4, 0, %5, 0);")
            .arg(id)
            .arg(QString::fromLatin1(date), QString::fromLatin1(confirm))
            .arg(in)
            .arg(balance);
    }
    void SetUp() override
    {
        SessionTest::SetUp();
        startSession(fileLine(1, "2025-04-30", " ", 1000, 0, true) + fileLine(2, "2025-05-03", "c1", 100, 0) +
                         fileLine(3, "2025-05-04", " ", 50, 0),
                     bankLine(1, "2025-05-03", "c1", 100, 1100) + bankLine(2, "2025-05-04", "c2", 50, 1150), QDate(2025, 5, 10));
        bank.iBankRowAboveRed = 0;
    }
    std::vector<QString> keys() const
    {
        std::vector<QString> k;
        for (const auto& m : finder.matches)
            k.push_back(m.key());
        return k;
    }
    void decide(const char* picture, int i) { web.setDisplay(QString::fromLatin1(picture), QString(), i - 1); }

    web::ScriptedWebView web;
    // The folder is the fixture's own, made before this member.
    MatchFinder finder{MatchParts{led, main, bank, links, coord, forward, [this]() -> web::WebView& { return web; },
                                  dir.path() + QLatin1Char('/'), dir.path() + QLatin1Char('/')}};
};

TEST_F(MatchFinderTest, ARejectedPairIsNotProposedAgainWhileAnAcceptedOneStays)
{
    finder.findMatchesNow();
    ASSERT_EQ(keys(), (std::vector<QString>{QStringLiteral("0 2 1"), QStringLiteral("1 3 2")}));
    EXPECT_TRUE(finder.frmMatchesVisible);
    EXPECT_EQ(web.location(), tempPath + QStringLiteral("matchPage.htm"));
    EXPECT_EQ(web.count(QStringLiteral("trPelkor")), 2);
    EXPECT_FALSE(finder.isAcceptedMatch(1));
    EXPECT_FALSE(finder.isRejectedMatch(1));
    QFile log(tempPath + QStringLiteral("match_log.txt"));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QString logText = QString::fromUtf8(log.readAll());
    EXPECT_TRUE(logText.startsWith(QStringLiteral("iRowAboveRed=1\n")));
    EXPECT_TRUE(logText.contains(QStringLiteral("want to add pair 2,1")));
    EXPECT_TRUE(logText.contains(QStringLiteral("end of 5th bank loop")));

    decide("imgAcceptPressed", 1);
    decide("imgRejectPressed", 2);
    finder.refreshMatchesNow();
    EXPECT_EQ(keys(), (std::vector<QString>{QStringLiteral("0 2 1")}));
    EXPECT_EQ(finder.nNew, 0);
    EXPECT_TRUE(finder.isAcceptedMatch(1));   // written accepted, and hidden
    EXPECT_EQ(web.display(QStringLiteral("trPelkor"), 0), QStringLiteral("none"));

    // A fresh search forgets both decisions.
    finder.findMatchesNow();
    EXPECT_EQ(keys(), (std::vector<QString>{QStringLiteral("0 2 1"), QStringLiteral("1 3 2")}));
}

TEST_F(MatchFinderTest, OkPairsTheAcceptedRowsAsByHandAndLeavesTheRest)
{
    finder.findMatchesNow();
    decide("imgAcceptPressed", 2);
    finder.cmdOK_Click();
    EXPECT_TRUE(confirmedBank(2));
    EXPECT_TRUE(main.msfgMain.text(3, colMark) == QStringLiteral("v"));
    EXPECT_FALSE(confirmedBank(1));
    EXPECT_EQ(links.rowLinks.size(), 1u);
    EXPECT_FALSE(finder.frmMatchesVisible);
    EXPECT_TRUE(finder.matches.empty());
    // Nothing left on one side after both are paired.
    finder.findMatchesNow();
    decide("imgAcceptPressed", 1);
    finder.cmdOK_Click();
    answer({});
    finder.findMatchesNow();
    EXPECT_TRUE(prompts().join(u'\n').contains(QStringLiteral("לא נמצאו התאמות")));
}

} // namespace

namespace {

// The two settings refuse what is not a whole number in range and keep
// the dialog open until the value is good.
TEST_F(FeedTest, MatchSettingsStayOpenUntilTheValueIsGood)
{
    scripted(QString());
    auto days = frmMatchSetting::maxDayDiff(30, forward);
    EXPECT_EQ(days.control(QStringLiteral("txtMaxDiff")), QStringLiteral("30"));
    for (const char* bad : {"abc", "", "4.5", "41", "-1"}) {
        days.setControl(QStringLiteral("txtMaxDiff"), QString::fromLatin1(bad));
        days.click(QStringLiteral("cmdOK"));
        EXPECT_FALSE(days.isClosed()) << bad;
    }
    days.setControl(QStringLiteral("txtMaxDiff"), QStringLiteral("0"));
    days.click(QStringLiteral("cmdOK"));
    EXPECT_TRUE(days.accepted());
    EXPECT_EQ(days.value(), 0);

    auto digits = frmMatchSetting::nDigits(4, forward);
    digits.setControl(QStringLiteral("txtNDigits"), QStringLiteral("9"));
    digits.click(QStringLiteral("cmdOK"));
    digits.setControl(QStringLiteral("txtNDigits"), QStringLiteral("2"));
    digits.click(QStringLiteral("cmdOK"));
    EXPECT_FALSE(digits.isClosed());
    digits.click(QStringLiteral("cmdCancel"));
    EXPECT_EQ(digits.value(), 4);

    const QString said = prompts().join(u'\n');
    EXPECT_EQ(said.count(QStringLiteral("יש למלא מספר")), 3);
    EXPECT_EQ(said.count(QStringLiteral("על המספר להיות בין 0 ל- 40")), 2);
    EXPECT_EQ(said.count(QStringLiteral("על המספר להיות בין 3 ל- 8")), 2);
}

} // namespace
