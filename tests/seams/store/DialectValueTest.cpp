// The translator's output for the forms whose SQLite text matters, and the
// reading of texts as numbers and dates shared by Value and the converter.
#include "seams/store/Dialect.h"
#include "seams/store/JetFunctions.h"
#include "seams/store/StoreError.h"
#include "seams/store/TextForms.h"
#include "seams/store/Value.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>

namespace pelkor::store {
namespace {

std::string sql(const char* s) { return translate(QString::fromUtf8(s)).sql.toStdString(); }

// The forms no statement of the program's own shows the effect of; the
// others are checked by what they do (StatementsTest).
TEST(Dialect, RewritesNamesLiteralsAndFunctions)
{
    EXPECT_EQ(sql("SELECT MID(kind,2,3) FROM t WHERE zee='coord9' ORDER BY 1 DESC"),
              "SELECT substr(kind, 2, 3) FROM t WHERE zee = 'coord9' COLLATE JETTEXT ORDER BY 1 DESC");
    EXPECT_EQ(sql("SELECT a & \"b\" FROM t WHERE n LIKE 'x*'"), "SELECT a || 'b' FROM t WHERE n LIKE 'x%'");
    EXPECT_EQ(sql("SELECT x FROM (SELECT a FROM t ORDER BY a) ORDER BY x"),
              "SELECT x FROM (SELECT a FROM t ORDER BY a COLLATE JETTEXT) ORDER BY x COLLATE JETTEXT");
    EXPECT_EQ(sql("SELECT 'it''s' FROM t;"), "SELECT 'it''s' FROM t");
}

TEST(Dialect, DescribesMultiStepForms)
{
    Translation into = translate(QStringLiteral("SELECT * INTO pelkor3 IN \"/tmp/x.pkr\" FROM pelkor WHERE [id]=5"));
    EXPECT_EQ(into.form, Translation::Form::SelectInto);
    EXPECT_EQ(into.target, QStringLiteral("pelkor3"));
    EXPECT_EQ(into.attachFile, QStringLiteral("/tmp/x.pkr"));
    EXPECT_EQ(into.sql.toStdString(), "SELECT * FROM pelkor WHERE \"id\" = 5");
    EXPECT_FALSE(into.derivedSource);
    EXPECT_TRUE(translate(QStringLiteral("SELECT * INTO p FROM (SELECT a FROM b UNION SELECT a FROM c)")).derivedSource);

    Translation up = translate(QStringLiteral("UPDATE p IN 'f.pkr' SET ZEE='3', [in] = '1,2', x = 'a' & 'b'"));
    EXPECT_EQ(up.sql.toStdString(), "UPDATE pk_in . \"p\" SET ZEE = ?1, \"in\" = ?2, x = 'a' COLLATE JETTEXT || 'b'");
    ASSERT_EQ(up.assigned.size(), 2u);
    EXPECT_EQ(up.assigned[1].column, QStringLiteral("in"));
    EXPECT_EQ(up.assigned[1].text, QStringLiteral("1,2"));

    Translation ins = translate(QStringLiteral("INSERT INTO t VALUES (1, 'a', ('b'), 'c')"));
    ASSERT_EQ(ins.assigned.size(), 2u);
    EXPECT_EQ(ins.assigned[0].position, 1);
    EXPECT_EQ(ins.assigned[1].position, 3);
}

TEST(Dialect, RefusesWhatItDoesNotSpeak)
{
    for (const char* s : {"PRAGMA x", "ATTACH 'f' AS y", "SELECT ?", "SELECT #2/30/2025#", "SELECT 1; SELECT 2",
                          "SELECT ((1)", "SELECT 1)", "UPDATE t", "INSERT t VALUES (1)", "ALTER TABLE t RENAME TO u",
                          "SELECT * INTO FROM t", "SELECT iif(1,2) FROM t", "SELECT 12abc"}) {
        EXPECT_THROW(translate(QString::fromUtf8(s)), StoreError) << s;
    }
}

TEST(TextForms, NumbersOfTheOldEngine)
{
    struct { const char* text; bool ok; double v; } cases[] = {
        {"1,234.50", true, 1234.5}, {"1,234.50-", true, -1234.5}, {"  12 ", true, 12}, {"-3", true, -3},
        {"(5)", true, -5},          {"+7.25", true, 7.25},        {"1e3", true, 1000}, {".5", true, 0.5},
        {"", false, 0},             {"abc", false, 0},            {"1-2", false, 0},   {",12", false, 0},
        {"--1", false, 0},          {"1e", false, 0},             {"-", false, 0},     {"1.2.3", false, 0},
    };
    for (const auto& c : cases) {
        double v = 0;
        EXPECT_EQ(text::parseNumber(QString::fromUtf8(c.text), v), c.ok) << c.text;
        if (c.ok) {
            EXPECT_DOUBLE_EQ(v, c.v) << c.text;
        }
    }
}

TEST(TextForms, Dates)
{
    QDate d;
    EXPECT_TRUE(text::parseDate(QStringLiteral("15/03/2025"), d));
    EXPECT_EQ(d, QDate(2025, 3, 15));
    EXPECT_TRUE(text::parseDate(QStringLiteral("2025-03-15"), d));
    EXPECT_EQ(d, QDate(2025, 3, 15));
    EXPECT_TRUE(text::parseDate(QStringLiteral("1.4.2025"), d));
    EXPECT_EQ(d, QDate(2025, 4, 1));
    for (const char* bad : {"31/02/2025", "2025-13-01", "15/03/25", "15/03-2025", "x", ""})
        EXPECT_FALSE(text::parseDate(QString::fromUtf8(bad), d)) << bad;
}

TEST(ValueTest, ConversionsAndEquality)
{
    EXPECT_EQ(Value::real(12.0).toString(), QStringLiteral("12"));
    EXPECT_EQ(Value::real(12.5).toString(), QStringLiteral("12.5"));
    EXPECT_EQ(Value::real(0.1).toString(), QStringLiteral("0.1"));
    EXPECT_EQ(Value::real(1e7).toString(), QStringLiteral("10000000"));
    EXPECT_EQ(Value::date(QDate(2025, 3, 5)).toString(), QStringLiteral("05/03/2025"));
    EXPECT_EQ(Value().toString(), QString());
    EXPECT_EQ(Value::real(2.5).toInt(), 2);
    EXPECT_EQ(Value::real(3.5).toInt(), 4);
    EXPECT_EQ(Value::text(QStringLiteral("1,234.50-")).toDouble(), -1234.5);
    EXPECT_EQ(Value::text(QStringLiteral("abc")).toDouble(), 0.0);
    EXPECT_EQ(Value::text(QStringLiteral("2025-03-15")).toDate(), QDate(2025, 3, 15));
    EXPECT_FALSE(Value::integer(5).toDate().isValid());
    EXPECT_TRUE(Value::integer(2) == Value::real(2.0));
    EXPECT_FALSE(Value::integer(2) == Value::text(QStringLiteral("2")));
    EXPECT_TRUE(Value() == Value::null());
    EXPECT_FALSE(Value() == Value::text(QString()));
}

TEST(ValueTest, ShortAndLongTextsAreTheSameTexts)
{
    // A text read from the file is held inline up to 14 bytes and shared
    // beyond; both must behave as the one QString they stand for.
    const QByteArray shortHebrew = QStringLiteral("ירוק").toUtf8();              // 8 bytes
    const QByteArray edge = QByteArray("12345678901234");                        // 14 bytes
    const QByteArray longHebrew = QStringLiteral("ללא צבע - כהן בע״מ").toUtf8();  // well over 14
    for (const QByteArray& bytes : {shortHebrew, edge, longHebrew, QByteArray()}) {
        const Value read = Value::utf8(bytes.constData(), bytes.size());
        const Value made = Value::text(QString::fromUtf8(bytes));
        EXPECT_TRUE(read.isText());
        EXPECT_EQ(read.toString(), QString::fromUtf8(bytes));
        EXPECT_TRUE(read == made) << bytes.constData();
        Value copy = read;
        Value moved = std::move(copy);
        EXPECT_TRUE(moved == read);
        EXPECT_TRUE(copy.isNull());  // a moved-from Value is Null, never a dangling text
        copy = moved;
        moved = Value::integer(1);
        EXPECT_EQ(copy.toString(), QString::fromUtf8(bytes));
    }
    EXPECT_FALSE(Value::utf8("ab", 2) == Value::utf8("abc", 3));
    EXPECT_EQ(Value::utf8("1,234.50-", 9).toDouble(), -1234.5);
    EXPECT_EQ(Value::utf8(" 1,234,567.50-", 14).toDouble(), -1234567.5);
    EXPECT_EQ(Value::utf8("15/03/2025", 10).toDate(), QDate(2025, 3, 15));
    EXPECT_EQ(sizeof(Value), 16u);
}

TEST(TextForms, DayNumbersAgreeWithQDate)
{
    // The reader computes day numbers itself; they must be QDate's.
    for (QDate d(1, 1, 1); d.year() < 3000; d = d.addDays(d.year() < 1900 ? 97 : 1)) {
        ASSERT_TRUE(text::isValidDate(d.year(), d.month(), d.day())) << d.toString().toStdString();
        ASSERT_EQ(text::julianDay(d.year(), d.month(), d.day()), d.toJulianDay()) << d.toString().toStdString();
    }
    for (auto [y, m, dd] : {std::array{2025, 2, 29}, {1900, 2, 29}, {2025, 4, 31}, {2025, 13, 1}, {0, 1, 1},
                            {2025, 0, 10}, {2025, 1, 0}})
        EXPECT_EQ(text::isValidDate(y, m, dd), QDate::isValid(y, m, dd)) << y << "-" << m << "-" << dd;
    EXPECT_TRUE(text::isValidDate(2000, 2, 29));
    EXPECT_TRUE(text::isValidDate(2024, 2, 29));
}

TEST(Collation, MinusBelowPlusCaseIgnored)
{
    auto cmp = [](const char* a, const char* b) { return jetTextCompare(a, int(strlen(a)), b, int(strlen(b))); };
    EXPECT_LT(cmp("-", "+"), 0);
    EXPECT_LT(cmp("-10", "+1"), 0);
    EXPECT_EQ(cmp("Coord", "cOORD"), 0);
    EXPECT_LT(cmp("abc", "abd"), 0);
    EXPECT_LT(cmp("ab", "abc"), 0);
    EXPECT_LT(cmp("z", "א"), 0);      // Hebrew after Latin
    EXPECT_LT(cmp("אב", "אג"), 0);
}

TEST(Collation, AgreesWithByteByByteOrderOnLongTexts)
{
    // The comparison skips equal runs a word at a time; it must order as a
    // plain walk over the weights does, wherever in a long text the first
    // difference, a case difference or a sign falls.
    auto weight = [](unsigned char c) -> int {
        if (c >= 'A' && c <= 'Z')
            return c - 'A' + 'a';
        return c == '-' ? '+' : c == '+' ? '-' : c;
    };
    auto reference = [&](const std::string& a, const std::string& b) {
        const size_t n = std::min(a.size(), b.size());
        for (size_t i = 0; i < n; ++i)
            if (weight(static_cast<unsigned char>(a[i])) != weight(static_cast<unsigned char>(b[i])))
                return weight(static_cast<unsigned char>(a[i])) - weight(static_cast<unsigned char>(b[i]));
        return int(a.size()) - int(b.size());
    };
    auto sign = [](int v) { return (v > 0) - (v < 0); };
    std::mt19937 rng(7);
    const std::string alphabet = "aAbB+-,0 \xd7\x90";
    for (int k = 0; k < 20000; ++k) {
        std::string a;
        for (size_t n = rng() % 40; n > 0; --n)
            a += alphabet[rng() % alphabet.size()];
        std::string b = a;
        if (!b.empty() && rng() % 4 != 0)
            b[rng() % b.size()] = alphabet[rng() % alphabet.size()];
        if (rng() % 3 == 0)
            b += alphabet[rng() % alphabet.size()];
        ASSERT_EQ(sign(jetTextCompare(a.data(), int(a.size()), b.data(), int(b.size()))), sign(reference(a, b)))
            << a << " / " << b;
    }
}

} // namespace
} // namespace pelkor::store
