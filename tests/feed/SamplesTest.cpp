// The sample statements of tests/feed/fixtures, each read and planned into
// feed rows. Every expected value below was read off the file by a person
// (the line or element named in the comment), not produced by the reader.
#include "FeedTestSupport.h"

#include <QFileInfo>

using namespace pelkor;
using namespace pelkor::feed;
using namespace pelkor::feedtest;

namespace {

struct Expected {
    const char* file;
    const char* account;
    int rows;
    const char* first;  // ISO
    const char* last;
    double credits, debits, closing;
    const char* where;  // where the values stand in the file
};

// Statements without any balance are given this closing balance.
constexpr double askedClosing = -1234.56;

const Expected samples[] = {
    // CSV: the footer "Kontostand;04.09.2010;;;575,21"; no account number in
    // the file, so the account is named after it.
    {"csv/gnc_sample_csv.csv", "gnc_sample_csv", 5, "2010-08-26", "2010-09-04", 1376.97, 1554.30, 575.21,
     "Haben 376,97 + 1000,00; Soll 42,33 + 511,97 + 1000,00"},
    // CSV: "Account Number : 08088804068"; "Balance at end of period" +31070,11.
    {"csv/meta_data_separated_credit_debit.csv", "08088804068", 4, "2020-04-01", "2020-04-02", 1300.00, 230.68,
     31070.11, "Debit 50,00 + 100,00 + 80,68; Credit 1300,00"},
    // CSV: the running Balance column, last row "1,510.00"; US dates 12/15/2018.
    {"csv/balance.csv", "balance", 2, "2018-12-15", "2018-12-15", 1533.50, 33.50, 1510.00,
     "Amount -33.50 and 1,533.50"},
    // OFX 1.02: ACCTID 1452687~7, TRNAMT 0.01, -34.51, -25.00, LEDGERBAL 100.99.
    {"ofx/checking.ofx", "1452687~7", 3, "2011-03-31", "2011-04-07", 0.01, 59.51, 100.99, "STMTTRN x3"},
    // OFX 2 XML: one TRNAMT -16.85, LEDGERBAL 1234.12.
    {"ofx/suncorp.ofx", "123456789", 1, "2013-12-15", "2013-12-15", 0, 16.85, 1234.12, "STMTTRN x1"},
    // XML header, SGML body; card: TRNAMT -5.50, LEDGERBAL -123.45.
    {"ofx/anzcc.ofx", "1234123412341234", 1, "2017-05-08", "2017-05-08", 0, 5.50, -123.45, "CCSTMTRS"},
    // TRNAMT 239.55 (DEP), LEDGERBAL 239.35.
    {"ofx/ofxdata-bb.ofx", "455000-5", 1, "2015-11-03", "2015-11-03", 239.55, 0, 239.35, "STMTTRN x1"},
    // One line; TRNAMT +200.00 and -1.55 -383.00 -1.55 -80.00 -600.00 -1000.00 -111.00; LEDGERBAL 100.00.
    {"ofx/ofxdata-oneline.ofx", "XXXXXXXXXXX", 8, "2016-02-16", "2016-07-19", 200.00, 2177.10, 100.00,
     "newest first"},
    // 16 TRNAMT: credits 600 + 127.87 + 400, the 13 debits sum to 734.05; LEDGERBAL -734.05.
    {"ofx/ofxdata-memoWithAmpersand.ofx", "99999999-9999-9999-9999-999999999999", 16, "2018-09-13", "2018-10-05",
     1127.87, 734.05, -734.05, "CCSTMTRS"},
    // Decimal commas: TRNAMT -200,00 and -300,00; BALAMT 200,29.
    {"ofx/stmtrs_euro.ofx", "999988", 2, "2005-10-04", "2005-10-20", 0, 500.00, 200.29, "STMTTRN x2"},
    // QFX: TRNAMT -10.00, LEDGERBAL -10.00.
    {"qfx/chase_cc.qfx", "0123012301230123", 1, "2020-01-01", "2020-01-01", 0, 10.00, -10.00, "CCSTMTRS"},
    // camt.053: 4 DBIT entries 0.29 0.29 28.19 152.24, CLBD 125.52; the first
    // entry's ValDt is 2016-01-01.
    {"camt053/simple.xml", "LT000000000000000000", 4, "2015-12-31", "2016-01-01", 0, 181.01, 125.52, "Ntry x4"},
    // camt.053: 15 DBIT and one CRDT 368, CLBD 5753.46; ValDt 2017-04-03 to 2017-04-11.
    {"camt053/davider80.xml", "CHxxxxxxxxxxxxxxxxxxx", 16, "2017-04-03", "2017-04-11", 368.00, 4047.85, 5753.46,
     "Ntry x16"},
    // QIF, month first (8/15/13): T-1,000.00 -75.46 -379.00 -20.28 -421.35, no balance.
    {"qif/test_qif.qif", "test_qif", 5, "2013-03-03", "2013-08-15", 0, 1896.09, askedClosing, "!Type:Bank"},
    // QIF, day first: the Girokonto's 19 records after "Anfangsbestand" T1000.00
    // (the opening balance); credits 600 + 600 + 700; closing 1000 + 1900 - 3491.99.
    {"qif/gnc_Sample_QIF.qif", "Aktiva:Barvermögen:Girokonto", 19, "2010-01-12", "2010-03-28", 1900.00, 3491.99,
     -591.99, "!Type:Bank"},
    // QIF: the Kreditkarte's 7 records, no balance.
    {"qif/gnc_Sample_QIF.qif", "Fremdkapital:Barverbindlichkeiten:Kreditkarte", 7, "2010-01-01", "2010-03-12", 0,
     3517.74, askedClosing, "!Type:CCard"},
};

} // namespace

TEST(FeedSamples, EveryFileImportsWithTheValuesReadOffIt)
{
    ASSERT_TRUE(QFileInfo::exists(samplesDir())) << samplesDir().toStdString();
    for (const Expected& e : samples) {
        SCOPED_TRACE(e.file);
        const ReadResult r = readStatementFile(samplesDir() + QLatin1Char('/') + QString::fromUtf8(e.file));
        ASSERT_TRUE(r.ok()) << r.error.toStdString();
        const FeedPlan p = planOf({r}, askedClosing);
        ASSERT_TRUE(p.ok()) << p.error.toStdString();
        const AccountSummary* a = accountIn(p, QString::fromUtf8(e.account));
        ASSERT_NE(a, nullptr) << "account " << e.account;
        EXPECT_EQ(a->rows, e.rows);
        EXPECT_EQ(a->first.toString(Qt::ISODate).toStdString(), e.first);
        EXPECT_EQ(a->last.toString(Qt::ISODate).toStdString(), e.last);
        EXPECT_NEAR(a->credits, e.credits, 0.001) << e.where;
        EXPECT_NEAR(a->debits, e.debits, 0.001) << e.where;
        EXPECT_NEAR(a->closing, e.closing, 0.001);
    }
}

TEST(FeedSamples, FilesThatSayOneThingAndHoldAnotherAreReadAndReported)
{
    ASSERT_TRUE(QFileInfo::exists(samplesDir())) << samplesDir().toStdString();
    // Header CHARSET:1252 over UTF-8 bytes: "DOC CRÉDITO EM CONTA" keeps its É.
    const ReadResult bb = readStatementFile(samplesDir() + QStringLiteral("/ofx/ofxdata-bb.ofx"));
    ASSERT_TRUE(bb.ok());
    EXPECT_EQ(bb.accounts[0].rows[0].description, QStringLiteral("DOC CRÉDITO EM CONTA"));
    EXPECT_FALSE(bb.warnings.isEmpty());
    // ISO-8859-1 text: "KLEINHOLZ 3077/09" and the header "Währung" read right.
    const ReadResult gnc = readStatementFile(samplesDir() + QStringLiteral("/csv/gnc_sample_csv.csv"));
    ASSERT_TRUE(gnc.ok());
    EXPECT_TRUE(gnc.details.startsWith(QStringLiteral("windows-1252")));
    EXPECT_EQ(gnc.accounts[0].currency, QStringLiteral("EUR"));
    // The French file's start balance plus its rows is 31070,09, not the
    // stated 31070,11: a warning names the 0.02.
    const ReadResult fr = readStatementFile(samplesDir() + QStringLiteral("/csv/meta_data_separated_credit_debit.csv"));
    const FeedPlan p = planOf({fr});
    ASSERT_EQ(p.warnings.size(), 1);
    EXPECT_TRUE(p.warnings[0].contains(QStringLiteral("0.02"))) << p.warnings[0].toStdString();
}

TEST(FeedSamples, OfxReferencesAndWordsComeFromTheRightElements)
{
    ASSERT_TRUE(QFileInfo::exists(samplesDir())) << samplesDir().toStdString();
    const ReadResult r = readStatementFile(samplesDir() + QStringLiteral("/ofx/checking.ofx"));
    ASSERT_TRUE(r.ok());
    const QList<StatementRow>& rows = r.accounts[0].rows;
    ASSERT_EQ(rows.size(), 3);
    // NAME is cut at 32 characters; MEMO has the whole text.
    EXPECT_EQ(rows[0].description,
              QStringLiteral("DIVIDEND EARNED FOR PERIOD OF 03/01/2011 THROUGH 03/31/2011 ANNUAL PERCENTAGE YIELD EARNED IS 0.05%"));
    EXPECT_EQ(rows[0].reference, QStringLiteral("0000486"));  // FITID
    EXPECT_EQ(rows[2].reference, QStringLiteral("319"));      // CHECKNUM
    // Unescaped & and quotes in MEMO survive.
    const ReadResult amp = readStatementFile(samplesDir() + QStringLiteral("/ofx/ofxdata-memoWithAmpersand.ofx"));
    ASSERT_TRUE(amp.ok());
    EXPECT_EQ(amp.accounts[0].rows[0].description, QStringLiteral("Amazon.Com.Br Amazon & Cloud 3/3"));
    // camt: AcctSvcrRef and the Lithuanian Ustrd.
    const ReadResult camt = readStatementFile(samplesDir() + QStringLiteral("/camt053/simple.xml"));
    ASSERT_TRUE(camt.ok());
    EXPECT_EQ(camt.accounts[0].rows[0].reference, QStringLiteral("FC1261858984"));
    EXPECT_TRUE(camt.accounts[0].rows[0].description.contains(QStringLiteral("Sąskaitos aptarnavimo mokestis")));
}
