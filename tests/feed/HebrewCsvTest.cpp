// Hebrew bank exports written for these tests: windows-1255 and UTF-8 (with
// and without a byte-order mark), credit and debit columns and one signed
// column, metadata lines, a running balance or a closing balance only. The
// expected values are those written into each file here.
#include "CsvReader.h"
#include "FeedTestSupport.h"
#include "TextInput.h"

using namespace pelkor;
using namespace pelkor::feed;
using namespace pelkor::feedtest;

namespace {

const char* creditDebit =
    "בנק מזרחי טפחות - תנועות בחשבון\r\n"
    "מספר חשבון: 432-118822\r\n"
    "\r\n"
    "תאריך,תאריך ערך,תיאור,אסמכתא,זכות,חובה,יתרה בש\"ח\r\n"
    "01/03/2025,02/03/2025,העברה מלקוח - דפוס הגליל בע\"מ,10045,\"12,500.00\",,\"15,300.00\"\r\n"
    "03/03/2025,03/03/2025,שיק 4411,4411,,\"1,200.50\",\"14,099.50\"\r\n"
    "03/03/2025,04/03/2025,עמלת פעולה,,,12.40,\"14,087.10\"\r\n"
    "15/03/2025,15/03/2025,מע\"מ תשלום,88,,\"3,087.10\",\"11,000.00\"\r\n";

} // namespace

TEST(HebrewCsv, Windows1255WithCreditAndDebitColumnsKeepsItsHebrew)
{
    const ReadResult r = readStatement(toWindows1255(QString::fromUtf8(creditDebit)), QStringLiteral("/x/mizrahi.csv"));
    ASSERT_TRUE(r.ok()) << r.error.toStdString();
    EXPECT_TRUE(r.details.startsWith(QStringLiteral("windows-1255")));
    ASSERT_EQ(r.accounts.size(), 1);
    const AccountStatement& a = r.accounts[0];
    EXPECT_EQ(a.account, QStringLiteral("432-118822"));
    ASSERT_EQ(a.rows.size(), 4);
    // The value date (תאריך ערך), the reference, the words as written.
    EXPECT_EQ(a.rows[0].date, QDate(2025, 3, 2));
    EXPECT_EQ(a.rows[0].description, QStringLiteral("העברה מלקוח - דפוס הגליל בע\"מ"));
    EXPECT_EQ(a.rows[0].reference, QStringLiteral("10045"));
    EXPECT_DOUBLE_EQ(a.rows[0].amount, 12500.00);
    EXPECT_DOUBLE_EQ(a.rows[1].amount, -1200.50);
    EXPECT_DOUBLE_EQ(*a.rows[3].balance, 11000.00);
    EXPECT_EQ(a.rows[3].line, 8);
    const FeedPlan p = planOf({r});
    ASSERT_TRUE(p.ok());
    EXPECT_TRUE(p.warnings.isEmpty()) << p.warnings.join(QLatin1Char('\n')).toStdString();
    ASSERT_EQ(p.rows.size(), 4);
    EXPECT_DOUBLE_EQ(p.rows[1].out, 1200.50);
    EXPECT_DOUBLE_EQ(p.accounts[0].closing, 11000.00);
}

TEST(HebrewCsv, Utf8SignedColumnWithTrailingMinusAndAClosingBalanceLine)
{
    // A signed amount with the minus behind the digits, ";" between cells, a
    // BOM, and the closing balance on a line after the rows only.
    const QByteArray text = QByteArray("\xEF\xBB\xBF") +
                            QStringLiteral("חשבון;12-600-555\n"
                                           "תאריך;פרטים;אסמכתא;סכום\n"
                                           "05/01/2025;הפקדת מזומן;7;1.000,00\n"
                                           "06/01/2025;חברת החשמל;8;420,55-\n"
                                           "06/01/2025;ארנונה עיריית חיפה;9;-600,00\n"
                                           "יתרת סגירה;;;5.000,00\n")
                                .toUtf8();
    const ReadResult r = readStatement(text, QStringLiteral("leumi.csv"));
    ASSERT_TRUE(r.ok()) << r.error.toStdString();
    EXPECT_TRUE(r.details.startsWith(QStringLiteral("UTF-8 (BOM)")));
    ASSERT_EQ(r.accounts.size(), 1);
    EXPECT_EQ(r.accounts[0].account, QStringLiteral("12-600-555"));
    const FeedPlan p = planOf({r});
    ASSERT_TRUE(p.ok());
    ASSERT_EQ(p.rows.size(), 3);
    EXPECT_DOUBLE_EQ(p.rows[0].in, 1000.00);
    EXPECT_DOUBLE_EQ(p.rows[1].out, 420.55);
    EXPECT_EQ(p.rows[2].description, QStringLiteral("ארנונה עיריית חיפה"));
    // Backward from 5,000.00: 5,000 + 600 = 5,600 after the electricity,
    // 5,600 + 420.55 = 6,020.55 after the deposit.
    EXPECT_DOUBLE_EQ(p.rows[2].balance, 5000.00);
    EXPECT_DOUBLE_EQ(p.rows[1].balance, 5600.00);
    EXPECT_DOUBLE_EQ(p.rows[0].balance, 6020.55);
}

TEST(HebrewCsv, Utf8WithoutBomTabSeparatedAndLatinHeadersMixed)
{
    const QByteArray text = QStringLiteral("Date\tתיאור\tCredit\tDebit\tBalance\n"
                                           "2025-02-01\tמשכורת\t9000\t\t9500\n"
                                           "2025-02-03\tסופר\t\t450.30\t9049.70\n")
                                .toUtf8();
    const ReadResult r = readStatement(text, QStringLiteral("mixed.txt"));
    ASSERT_TRUE(r.ok()) << r.error.toStdString();
    EXPECT_EQ(r.accounts[0].account, QStringLiteral("mixed"));  // named after the file
    EXPECT_EQ(r.accounts[0].rows[1].date, QDate(2025, 2, 3));
    EXPECT_EQ(r.accounts[0].rows[1].description, QStringLiteral("סופר"));
    EXPECT_FALSE(r.warnings.isEmpty());
}

TEST(HebrewCsv, HeaderWordsInTheirOtherSpellings)
{
    EXPECT_EQ(columnOf(QStringLiteral(" תאריך ערך ")), Column::ValueDate);
    EXPECT_EQ(columnOf(QStringLiteral("יתרה בש״ח")), Column::Balance);  // gershayim
    EXPECT_EQ(columnOf(QStringLiteral("מספר לקוח")), Column::None);
}

TEST(TextInput, AmountsAndDatesInTheirForms)
{
    EXPECT_EQ(parseAmount(QStringLiteral("1,234.50")), 1234.50);
    EXPECT_EQ(parseAmount(QStringLiteral("1.234,50"), QLatin1Char(',')), 1234.50);
    EXPECT_EQ(parseAmount(QStringLiteral("1,234.50-")), -1234.50);
    EXPECT_EQ(parseAmount(QStringLiteral("(12.00)")), -12.00);
    EXPECT_EQ(parseAmount(QStringLiteral("₪ 99.90")), 99.90);
    EXPECT_EQ(parseAmount(QStringLiteral("+31070,11"), QLatin1Char(',')), 31070.11);
    EXPECT_FALSE(parseAmount(QStringLiteral("abc")));
    EXPECT_FALSE(parseAmount(QStringLiteral("12.3.4")));
    EXPECT_FALSE(parseAmount(QStringLiteral("-")));
    EXPECT_EQ(decimalMarkOf({QStringLiteral("1000"), QStringLiteral("-42,33")}), QLatin1Char(','));
    EXPECT_EQ(decimalMarkOf({QStringLiteral("1,533.50")}), QLatin1Char('.'));

    EXPECT_EQ(dateOrderOf({QStringLiteral("8/12/13"), QStringLiteral("8/15/13")}), DateOrder::MonthFirst);
    EXPECT_EQ(dateOrderOf({QStringLiteral("01/02/2025")}), DateOrder::DayFirst);
    EXPECT_EQ(parseDate(QStringLiteral("8/12/13"), DateOrder::MonthFirst), QDate(2013, 8, 12));
    EXPECT_EQ(parseDate(QStringLiteral("2017-04-01+02:00"), DateOrder::DayFirst), QDate(2017, 4, 1));
    bool invalid = false;
    EXPECT_FALSE(parseDate(QStringLiteral("31/02/2024"), DateOrder::DayFirst, &invalid));
    EXPECT_TRUE(invalid);
    EXPECT_FALSE(parseDate(QStringLiteral("Kontostand"), DateOrder::DayFirst, &invalid));
    EXPECT_FALSE(invalid);
}

TEST(TextInput, EncodingsAreDecidedFromTheBytes)
{
    const QString hebrew = QStringLiteral("תאריך,תיאור\n01/01/2025,עמלה\n");
    EXPECT_EQ(decodeText(toWindows1255(hebrew)).text, hebrew);
    EXPECT_EQ(decodeText(toWindows1255(hebrew)).encoding, Encoding::Windows1255);
    // Western text with one accented letter per word is not Hebrew.
    EXPECT_EQ(decodeText(QByteArray("Ums\xE4tze pers\xF6nliches Konto")).encoding, Encoding::Windows1252);
    // UTF-16 with no byte-order mark, as some spreadsheets save "Unicode text".
    const QString tab = QStringLiteral("תאריך\tתיאור\tסכום\n01/01/2025\tעמלה\t-5.00\n02/01/2025\tשיק\t-9.00\n");
    QByteArray le;
    for (QChar c : tab)
        le += char(c.unicode() & 0xFF), le += char(c.unicode() >> 8);
    EXPECT_EQ(decodeText(le).text, tab);
    EXPECT_EQ(decodeText(le).encoding, Encoding::Utf16LE);
    EXPECT_TRUE(notAStatement(le).isEmpty());
    EXPECT_TRUE(readStatement(le, QStringLiteral("u16.txt")).ok());
    // A declared Hebrew code page decides for bytes that could be either.
    EXPECT_EQ(decodeText(QByteArray("\xE0"), QStringLiteral("1255")).text, QStringLiteral("א"));
}

TEST(HebrewCsv, ABanksTableSavedAsAPageReadsLikeItsCsv)
{
    // The export some banks' sites give as ".xls": an HTML table in
    // windows-1255, with the header in <th> cells and entities in the words.
    const QString page = QStringLiteral(
        "<html><head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=windows-1255\"></head><body>"
        "<table><tr><td colspan=3>תנועות בחשבון 12-345-678</td></tr>"
        "<tr><th>תאריך</th><th>תיאור</th><th>אסמכתא</th><th>בזכות</th><th>בחובה</th><th>יתרה בש&quot;ח</th></tr>"
        "<tr><td>01/04/2025</td><td>העברה&nbsp;מלקוח</td><td>5</td><td>1,000.00</td><td></td><td>3,000.00</td></tr>"
        "<tr><td>02/04/2025</td><td>שיק &amp; עמלה</td><td>6</td><td></td><td>250.00</td><td>2,750.00</td></tr>"
        "</table></body></html>");
    const ReadResult r = readStatement(toWindows1255(page), QStringLiteral("osh.xls"));
    ASSERT_TRUE(r.ok()) << r.error.toStdString();
    ASSERT_EQ(r.accounts[0].rows.size(), 2);
    EXPECT_EQ(r.accounts[0].rows[0].description, QStringLiteral("העברה מלקוח"));
    EXPECT_EQ(r.accounts[0].rows[1].description, QStringLiteral("שיק & עמלה"));
    EXPECT_DOUBLE_EQ(*r.accounts[0].rows[1].balance, 2750.00);
}
