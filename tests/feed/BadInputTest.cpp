// Files that are no usable statement: each is refused as a whole with a
// Hebrew message that names the file and the line or element at fault.
#include "FeedTestSupport.h"
#include "TextInput.h"

using namespace pelkor;
using namespace pelkor::feed;
using namespace pelkor::feedtest;

namespace {

// Refused, and the message holds every one of the words.
void expectRefused(const QByteArray& bytes, const QString& name, const QStringList& words)
{
    const ReadResult r = readStatement(bytes, QStringLiteral("/some/where/") + name);
    ASSERT_FALSE(r.ok()) << name.toStdString();
    EXPECT_TRUE(r.accounts.isEmpty());
    EXPECT_TRUE(r.error.startsWith(name)) << r.error.toStdString();
    for (const QString& w : words)
        EXPECT_TRUE(r.error.contains(w)) << r.error.toStdString() << " lacks " << w.toStdString();
}

const char* ofxHead = "OFXHEADER:100\nDATA:OFXSGML\nVERSION:102\nSECURITY:NONE\nENCODING:USASCII\nCHARSET:1252\n"
                      "COMPRESSION:NONE\nOLDFILEUID:NONE\nNEWFILEUID:NONE\n\n";

QByteArray ofxWith(const QByteArray& transactions, bool closed = true)
{
    QByteArray body = "<OFX><SIGNONMSGSRSV1><SONRS><STATUS><CODE>0<SEVERITY>INFO</STATUS><DTSERVER>20250301"
                      "<LANGUAGE>ENG</SONRS></SIGNONMSGSRSV1><BANKMSGSRSV1><STMTTRNRS><TRNUID>1<STATUS><CODE>0"
                      "<SEVERITY>INFO</STATUS><STMTRS><CURDEF>ILS<BANKACCTFROM><BANKID>20<ACCTID>555"
                      "<ACCTTYPE>CHECKING</BANKACCTFROM><BANKTRANLIST><DTSTART>20250101<DTEND>20250301\n" +
                      transactions +
                      "</BANKTRANLIST><LEDGERBAL><BALAMT>100.00<DTASOF>20250301</LEDGERBAL></STMTRS></STMTTRNRS>"
                      "</BANKMSGSRSV1>";
    if (closed)
        body += "</OFX>\n";
    return QByteArray(ofxHead) + body;
}

QByteArray trn(const char* fitid, const char* amount, const char* date = "20250201")
{
    return QByteArray("<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>") + date + "<TRNAMT>" + amount + "<FITID>" + fitid +
           "<NAME>x</STMTTRN>\n";
}

} // namespace

TEST(BadInput, NoTextAtAll)
{
    expectRefused("", QStringLiteral("empty.csv"), {QStringLiteral("ריק")});
    expectRefused("   \r\n\n", QStringLiteral("blank.csv"), {QStringLiteral("ריק")});
    expectRefused(QByteArray("PK\x03\x04\x14\x00\x06\x00", 8) + QByteArray(200, '\x01'), QStringLiteral("report.xlsx"),
                  {QStringLiteral("בינארי")});
    expectRefused("<!DOCTYPE html>\n<html><head><title>Session expired</title></head><body>...</body></html>",
                  QStringLiteral("statement.csv"), {QStringLiteral("HTML"), QStringLiteral("Session expired")});
}

TEST(BadInput, CsvFaultsNameTheLineAndColumn)
{
    // A header without any amount column: the message lists what it saw.
    expectRefused("תאריך,תיאור,אסמכתא\n01/01/2025,עמלה,1\n02/01/2025,שיק,2\n", QStringLiteral("noamount.csv"),
                  {QStringLiteral("תאריך, תיאור, אסמכתא")});
    // A row that lacks the balance column.
    expectRefused("תאריך,תיאור,זכות,חובה,יתרה\n01/01/2025,עמלה,,5,95\n02/01/2025,שיק,,10\n",
                  QStringLiteral("short.csv"), {QStringLiteral("שורה 3"), QStringLiteral("יתרה")});
    // A date of 31/02.
    expectRefused("תאריך,תיאור,סכום\n01/02/2024,א,1\n31/02/2024,ב,2\n", QStringLiteral("feb.csv"),
                  {QStringLiteral("שורה 3"), QStringLiteral("31/02/2024")});
    // A date in no form we know, among good ones: refused, not left out.
    expectRefused("תאריך,תיאור,סכום\n01/02/2024,א,1\n2024.02.03.1,ב,2\n", QStringLiteral("odd.csv"),
                  {QStringLiteral("שורה 3"), QStringLiteral("2024.02.03.1")});
    // A word where an amount should be, in row 5,000 (line 5,001).
    QByteArray big = "Date,Description,Amount\n";
    for (int i = 1; i <= 6000; ++i)
        big += "03/01/2025,row " + QByteArray::number(i) + "," + (i == 5000 ? "12.x0" : "-1.25") + "\n";
    expectRefused(big, QStringLiteral("big.csv"), {QStringLiteral("שורה 5001"), QStringLiteral("12.x0"),
                                                   QStringLiteral("Amount")});
}

TEST(BadInput, OfxFaultsNameTheElement)
{
    // Truncated: no </OFX>, stops inside a transaction.
    QByteArray cut = ofxWith(trn("1", "-5.00") + trn("2", "-6.00"));
    cut = cut.left(cut.indexOf("<FITID>2") + 8);
    expectRefused(cut, QStringLiteral("cut.ofx"), {QStringLiteral("קטוע"), QStringLiteral("</OFX>")});
    // The same FITID twice in one account.
    expectRefused(ofxWith(trn("A1", "-5.00") + trn("A1", "-6.00")), QStringLiteral("dup.ofx"),
                  {QStringLiteral("FITID"), QStringLiteral("A1"), QStringLiteral("תנועה 2")});
    // A header that says UTF-8 over windows-1255 bytes.
    QByteArray lying = ofxWith(trn("1", "-5.00"));
    lying.replace("ENCODING:USASCII", "ENCODING:UTF-8");
    lying.replace("<NAME>x", "<NAME>" + toWindows1255(QStringLiteral("עמלה")));
    expectRefused(lying, QStringLiteral("lying.ofx"), {QStringLiteral("UTF-8"), QStringLiteral("שורה 12")});
    // A well-formed file reads: the control for the cases above.
    const ReadResult good = readStatement(ofxWith(trn("1", "-5.00") + trn("2", "-6,50")), QStringLiteral("g.ofx"));
    ASSERT_TRUE(good.ok()) << good.error.toStdString();
    EXPECT_EQ(good.accounts[0].rows.size(), 2);
    EXPECT_DOUBLE_EQ(good.accounts[0].rows[1].amount, -6.50);
}

TEST(BadInput, CamtAndQifFaults)
{
    const QByteArray camt = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                            "<Document xmlns=\"urn:iso:std:iso:20022:tech:xsd:camt.053.001.02\"><BkToCstmrStmt><Stmt>\n"
                            "<Acct><Id><IBAN>IL000</IBAN></Id></Acct>\n"
                            "<Ntry><Amt Ccy=\"ILS\">12.00</Amt><CdtDbtInd>DBIT</CdtDbtInd>"
                            "<ValDt><Dt>2025-02-31</Dt></ValDt></Ntry>\n"
                            "</Stmt></BkToCstmrStmt></Document>\n";
    expectRefused(camt, QStringLiteral("feb.xml"), {QStringLiteral("שורה 4"), QStringLiteral("2025-02-31")});
    QByteArray latin = camt;
    latin.replace("2025-02-31", "2025-02-03");
    latin.replace("IL000", "IL\xE9\xE9");
    expectRefused(latin, QStringLiteral("latin.xml"), {QStringLiteral("שורה 3"), QStringLiteral("UTF-8")});
    expectRefused("!Type:Bank\nD01/02/2025\nT-5.00\n^\nD02/02/2025\nTfive\n^\n", QStringLiteral("bad.qif"),
                  {QStringLiteral("שורה 5"), QStringLiteral("five")});
    expectRefused("!Type:Bank\nD30/02/2025\nT-5.00\n^\n", QStringLiteral("feb.qif"), {QStringLiteral("30/02/2025")});
}
