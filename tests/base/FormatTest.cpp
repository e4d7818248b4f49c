// The text forms that statements, grids and command lines rely on.
#include "base/Format.h"

#include <gtest/gtest.h>

#include "QtPrinters.h"

using namespace pelkor;

TEST(Format, DatesForStatementsCommandLinesAndShortForm)
{
    const QDate d(2004, 4, 3);
    EXPECT_EQ(formatDateForSQL(d), QStringLiteral("#4/3/2004#"));
    EXPECT_EQ(formatDateForSQL(QDate(2025, 12, 31)), QStringLiteral("#12/31/2025#"));
    EXPECT_EQ(formatDate224(d), QStringLiteral("03/04/2004"));
    EXPECT_EQ(formatDate8(d), QStringLiteral("03/04/04"));
    EXPECT_EQ(formatDate8(QDate(2100, 1, 9)), QStringLiteral("09/01/00"));
}

TEST(Format, SumsGroupRoundAndPutTheSignBehind)
{
    EXPECT_EQ(FormatSum(0), QStringLiteral("0.00"));
    EXPECT_EQ(FormatSum(-1234.5), QStringLiteral("1,234.50-"));
    EXPECT_EQ(FormatSum(999.999), QStringLiteral("1,000.00"));
    EXPECT_EQ(FormatSum(100000), QStringLiteral("100,000.00"));
    // A tiny negative rounds to zero but keeps its sign.
    EXPECT_EQ(FormatSum(-0.001), QStringLiteral("0.00-"));
    // Sums that are no exact binary fraction (0.29 is 0.28999...) keep their cents.
    EXPECT_EQ(FormatSum(0.29), QStringLiteral("0.29"));
    EXPECT_EQ(FormatSum(-12.1), QStringLiteral("12.10-"));
}

TEST(Format, SumsBeyondWholeCentsKeepTheirGrouping)
{
    // Either side of the largest sum whose cents fit 64 bits.
    EXPECT_EQ(FormatSum(9999999999999998.0), QStringLiteral("9,999,999,999,999,998.00"));
    EXPECT_EQ(FormatSum(1e16), QStringLiteral("10,000,000,000,000,000.00"));
    EXPECT_EQ(FormatSum(1.23e17), QStringLiteral("123,000,000,000,000,000.00"));
    EXPECT_EQ(FormatSum(-1.23e17), QStringLiteral("123,000,000,000,000,000.00-"));
    EXPECT_EQ(FormatSum(1e20), QStringLiteral("100,000,000,000,000,000,000.00"));
    // The form reads back as the number it came from.
    EXPECT_EQ(RemoveSumNull(store::Value::text(FormatSum(-1.23e17))), -1.23e17);
    // A sum of 301 digits: a group of one, then a hundred groups of three.
    const QString huge = FormatSum(1e300);
    ASSERT_TRUE(huge.endsWith(QStringLiteral(".00")));
    const QStringList groups = huge.chopped(3).split(QLatin1Char(','));
    ASSERT_EQ(groups.size(), 101);
    EXPECT_EQ(groups.front(), QStringLiteral("1"));
    for (const QString& g : groups.mid(1))
        EXPECT_EQ(g.size(), 3) << qPrintable(g);
}

TEST(Format, NullsBecomeZeroOrEmpty)
{
    EXPECT_EQ(RemoveSumNull(store::Value::null()), 0.0);
    EXPECT_EQ(RemoveSumNull(store::Value::text(QStringLiteral("1,234.50-"))), -1234.5);
    EXPECT_EQ(RemoveNull(store::Value::null()), QString());
    EXPECT_EQ(RemoveNull(store::Value::integer(12)), QStringLiteral("12"));
}

TEST(Format, ConversionBySignOfTheFactor)
{
    EXPECT_EQ(reallyConvNum(10, 0), 10);
    EXPECT_EQ(reallyConvNum(10, -4), 2.5);
    EXPECT_EQ(reallyConvNum(10, 3.5), 35);

    Conversion window;
    window.conv = -2;
    EXPECT_EQ(convNum(10, 5, window), 5);

    // A merged file converts each line by the factor of the file it came from.
    Conversion merged;
    merged.isMerged = true;
    merged.conv = 100;   // ignored when merged
    merged.convs = {0, 4, -5};
    merged.mergedBankIndexes = {0, 1, 2};
    EXPECT_EQ(convNum(10, 0, merged), 10);
    EXPECT_EQ(convNum(10, 1, merged), 40);
    EXPECT_EQ(convNum(10, 2, merged), 2);
}

TEST(Format, KindsMoveTheirSign)
{
    EXPECT_EQ(FormatKind(QStringLiteral("+12")), QStringLiteral("12+"));
    EXPECT_EQ(FormatKind(QStringLiteral("12+")), QStringLiteral("+12"));
    EXPECT_EQ(FormatKind(FormatKind(QStringLiteral("-0"))), QStringLiteral("-0"));
    EXPECT_EQ(FormatKind(QString()), QString());
    EXPECT_EQ(FormatKind(QStringLiteral("abc")), QStringLiteral("abc"));
}

TEST(Format, TextHelpers)
{
    EXPECT_EQ(fixString(QStringLiteral("it's Dani's")), QStringLiteral("it`s Dani`s"));
    EXPECT_EQ(getFileName(QStringLiteral("C:\\data\\a.pkr")), QStringLiteral("a.pkr"));
    EXPECT_EQ(getFileName(QStringLiteral("/home/u/חנות.pkr")), QStringLiteral("חנות.pkr"));
    EXPECT_EQ(getFileName(QStringLiteral("a.pkr")), QString());
    EXPECT_EQ(getShortFileName(QStringLiteral("/x/a.pkr")), QStringLiteral("a"));
    EXPECT_EQ(StrZToStr(QStringLiteral("abc")), QStringLiteral("ab"));
}

TEST(Format, RowsClipToTheBodyAndColoursTurnToRgb)
{
    EXPECT_EQ(clipRowNum(0, 10), 1);
    EXPECT_EQ(clipRowNum(10, 10), 9);
    EXPECT_EQ(clipRowNum(5, 1), 1);
    EXPECT_EQ(colorToHtml(rgb(255, 128, 10)), QStringLiteral("#FF800A"));
}
