// Forms of the structured formats that the samples do not hold: a camt.052
// report with a debit closing balance and a pending entry, QIF with years
// after an apostrophe and an account named by its block, OFX with two
// accounts in one file.
#include "FeedTestSupport.h"

using namespace pelkor;
using namespace pelkor::feed;
using namespace pelkor::feedtest;

TEST(MoreFormats, Camt052ReportSignsAndSkipsPending)
{
    const QByteArray xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:camt.052.001.02\"><BkToCstmrAcctRpt><Rpt>\n"
        "<Acct><Id><Othr><Id>12-800-99</Id></Othr></Id><Ccy>ILS</Ccy><Svcr><FinInstnId><Othr><Id>BANK</Id></Othr>"
        "</FinInstnId></Svcr></Acct>\n"
        "<Bal><Tp><CdOrPrtry><Cd>CLBD</Cd></CdOrPrtry></Tp><Amt Ccy=\"ILS\">250.00</Amt><CdtDbtInd>DBIT</CdtDbtInd>"
        "<Dt><Dt>2025-03-03</Dt></Dt></Bal>\n"
        "<Ntry><Amt Ccy=\"ILS\">100.00</Amt><CdtDbtInd>CRDT</CdtDbtInd><Sts>BOOK</Sts>"
        "<BookgDt><Dt>2025-03-01</Dt></BookgDt><AcctSvcrRef>R1</AcctSvcrRef>"
        "<AddtlNtryInf>הפקדה</AddtlNtryInf></Ntry>\n"
        "<Ntry><Amt Ccy=\"ILS\">50.00</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts>BOOK</Sts>"
        "<BookgDt><DtTm>2025-03-03T10:00:00</DtTm></BookgDt><ValDt><Dt>2025-03-02</Dt></ValDt>"
        "<AcctSvcrRef>R2</AcctSvcrRef></Ntry>\n"
        "<Ntry><Amt Ccy=\"ILS\">999.00</Amt><CdtDbtInd>DBIT</CdtDbtInd><Sts>PDNG</Sts>"
        "<BookgDt><Dt>2025-03-03</Dt></BookgDt></Ntry>\n"
        "</Rpt></BkToCstmrAcctRpt></Document>\n";
    const ReadResult r = readStatement(xml, QStringLiteral("report.xml"));
    ASSERT_TRUE(r.ok()) << r.error.toStdString();
    ASSERT_EQ(r.accounts.size(), 1);
    const AccountStatement& a = r.accounts[0];
    EXPECT_EQ(a.account, QStringLiteral("12-800-99"));  // not the servicer's id
    EXPECT_EQ(a.currency, QStringLiteral("ILS"));
    ASSERT_EQ(a.rows.size(), 2);
    EXPECT_EQ(a.rows[1].date, QDate(2025, 3, 2));  // the value date
    EXPECT_EQ(a.rows[0].description, QStringLiteral("הפקדה"));
    const FeedPlan p = planOf({r});
    ASSERT_TRUE(p.ok());
    EXPECT_DOUBLE_EQ(p.rows[1].balance, -250.00);
    EXPECT_DOUBLE_EQ(p.rows[0].balance, -200.00);
}

TEST(MoreFormats, QifApostropheYearsAndNamedAccounts)
{
    const QByteArray qif = "!Account\nN20-433\nTBank\n^\n!Type:Bank\n"
                           "D12/25'24\nT-1,250.00\nN88\nPחברת החשמל\nMחשבון דצמבר\n^\n"
                           "D 1/ 3'25\nT400\nPהפקדה\n^\n";
    const ReadResult r = readStatement(qif, QStringLiteral("x.qif"));
    ASSERT_TRUE(r.ok()) << r.error.toStdString();
    ASSERT_EQ(r.accounts.size(), 1);
    const AccountStatement& a = r.accounts[0];
    EXPECT_EQ(a.account, QStringLiteral("20-433"));
    ASSERT_EQ(a.rows.size(), 2);
    EXPECT_EQ(a.rows[0].date, QDate(2024, 12, 25));  // 25 > 12: month first for the whole file
    EXPECT_EQ(a.rows[1].date, QDate(2025, 1, 3));
    EXPECT_EQ(a.rows[0].reference, QStringLiteral("88"));
    EXPECT_EQ(a.rows[0].description, QStringLiteral("חברת החשמל - חשבון דצמבר"));
    EXPECT_DOUBLE_EQ(a.rows[0].amount, -1250.00);
}

TEST(MoreFormats, OfxWithTwoAccountsGivesTwo)
{
    auto statement = [](const char* acct, const char* amount, const char* fitid, const char* bal) {
        return QByteArray("<STMTTRNRS><TRNUID>1<STATUS><CODE>0<SEVERITY>INFO</STATUS><STMTRS><CURDEF>ILS"
                          "<BANKACCTFROM><BANKID>12<ACCTID>") + acct +
               "<ACCTTYPE>CHECKING</BANKACCTFROM><BANKTRANLIST><DTSTART>20250101<DTEND>20250131"
               "<STMTTRN><TRNTYPE>OTHER<DTPOSTED>20250115<TRNAMT>" + amount + "<FITID>" + fitid +
               "<NAME>x</STMTTRN></BANKTRANLIST><LEDGERBAL><BALAMT>" + bal +
               "<DTASOF>20250131</LEDGERBAL></STMTRS></STMTTRNRS>";
    };
    const QByteArray ofx = "OFXHEADER:100\nDATA:OFXSGML\nVERSION:102\nSECURITY:NONE\nENCODING:USASCII\n"
                           "CHARSET:1252\nCOMPRESSION:NONE\nOLDFILEUID:NONE\nNEWFILEUID:NONE\n\n"
                           "<OFX><SIGNONMSGSRSV1><SONRS><STATUS><CODE>0<SEVERITY>INFO</STATUS><DTSERVER>20250131"
                           "<LANGUAGE>ENG</SONRS></SIGNONMSGSRSV1><BANKMSGSRSV1>" +
                           statement("111", "-10.00", "F1", "90.00") + statement("222", "25.00", "F1", "25.00") +
                           "</BANKMSGSRSV1></OFX>\n";
    const ReadResult r = readStatement(ofx, QStringLiteral("two.ofx"));
    ASSERT_TRUE(r.ok()) << r.error.toStdString();
    const FeedPlan p = planOf({r});
    ASSERT_TRUE(p.ok());
    ASSERT_EQ(p.accounts.size(), 2);
    // The same FITID in two accounts is no duplicate.
    ASSERT_NE(accountIn(p, QStringLiteral("111")), nullptr);
    ASSERT_NE(accountIn(p, QStringLiteral("222")), nullptr);
    EXPECT_DOUBLE_EQ(accountIn(p, QStringLiteral("111"))->closing, 90.00);
    EXPECT_DOUBLE_EQ(accountIn(p, QStringLiteral("222"))->credits, 25.00);
    EXPECT_NE(p.rows[0].transactionID, p.rows[1].transactionID);
}
