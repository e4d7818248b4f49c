// Binding a file to the feed's account, and the bank grid filled from it.
#include "reconcile/AccountBinding.h"
#include "reconcile/BankGrid.h"
#include "reconcile/BankText.h"

#include "file/Display.h"
#include "FeedFixture.h"

#include <QFileInfo>

using namespace pelkor;
using namespace pelkor::reconcile;
using namespace pelkor::testing;

namespace {

const char* rowsOfTwoAccounts =
    "INSERT INTO poalimOsh VALUES ('  123456 ', 1, '2025-05-02', 'r1', 'משכורת', 0, 100, 900, 0);"
    "INSERT INTO poalimOsh VALUES ('123456', 2, '2025-05-02', NULL, NULL, 50, 0, 950, 0);"
    "INSERT INTO poalimOsh VALUES ('777', 3, '2025-05-03', 'x', 'y', 1, 0, 1, 0);";

class AccountBindingTest : public FeedTest {
protected:
    std::optional<store::Recordset> bind(const QString& rules)
    {
        BindingParts p{led, feed, scripted(rules), tempPath, dir.path(), QStringLiteral(" shop ")};
        return readBoundAccount(p);
    }
    bool okFileWritten() const { return QFileInfo::exists(tempPath + QStringLiteral("ok")); }
    BankFeed feed;
};

TEST_F(AccountBindingTest, OneAccountIsOneQuestionAndYesBindsTheFile)
{
    makeLedgerBound(0, QStringLiteral("(none)"));
    led.iBank = 0;   // the bank the user chose
    makeFeed(0, QStringLiteral("INSERT INTO poalimOsh VALUES ('55', 7, '2025-05-02', 'a', 'b', 1, 0, 1, 0);"));
    auto rows = bind(QStringLiteral("נמצא חשבון אחד => Yes"));
    ASSERT_TRUE(rows.has_value());
    EXPECT_EQ(rows->recordCount(), 1);
    EXPECT_EQ(prompts(), QStringList{QStringLiteral(
                             "msgbox|פלקור|נמצא חשבון אחד:\\n55\\nהאם ברצונך לשייך את 'shop' לחשבון זה?|Yes")});
    EXPECT_EQ(query(QStringLiteral("SELECT iBank, AccountNum FROM Defaults")), QStringLiteral("1|55"));
    EXPECT_TRUE(feed.isOpen());

    // No leaves the file unbound and ends the road with the importer released.
    makeLedgerBound(0, QStringLiteral("(none)"));
    led.iBank = 0;
    EXPECT_FALSE(bind(QStringLiteral("נמצא חשבון אחד => No")).has_value());
    EXPECT_EQ(query(QStringLiteral("SELECT iBank, AccountNum FROM Defaults")), QStringLiteral("0|(none)"));
    EXPECT_FALSE(feed.isOpen());
    EXPECT_TRUE(okFileWritten());
}

TEST_F(AccountBindingTest, SeveralAccountsAreAListAndCancelKeepsTheFileUnbound)
{
    makeLedgerBound(0, QStringLiteral("(none)"));
    led.iBank = 0;
    makeFeed(0, QString::fromUtf8(rowsOfTwoAccounts));
    auto rows = bind(QStringLiteral("frmSelectAccount => List1=777;cmdOK=1"));
    ASSERT_TRUE(rows.has_value());
    EXPECT_EQ(rows->recordCount(), 1);
    EXPECT_EQ(query(QStringLiteral("SELECT AccountNum FROM Defaults")), QStringLiteral("777"));
    EXPECT_TRUE(prompts().value(0).contains(QStringLiteral("נמצאו 2 חשבונות.\\nלאיזה מהם ברצונך לשייך את 'shop'?")))
        << prompts().join(u'\n').toStdString();

    makeLedgerBound(0, QStringLiteral("(none)"));
    led.iBank = 0;
    EXPECT_FALSE(bind(QStringLiteral("frmSelectAccount => cmdCancel=1")).has_value());
    EXPECT_EQ(query(QStringLiteral("SELECT AccountNum FROM Defaults")), QStringLiteral("(none)"));
}

TEST_F(AccountBindingTest, ARenameInMainIsFollowedOnceAndAVanishedAccountIsBoundAnew)
{
    makeLedgerBound(1, QStringLiteral("old"));
    makeFeed(0, QString::fromUtf8(rowsOfTwoAccounts) +
                    QStringLiteral("INSERT INTO main VALUES ('123456', ' old ');"
                                   "INSERT INTO main VALUES ('999', '123456');"));
    auto rows = bind({});
    ASSERT_TRUE(rows.has_value());
    EXPECT_EQ(rows->recordCount(), 2);   // one rename, not a chain to 999
    EXPECT_EQ(query(QStringLiteral("SELECT AccountNum FROM Defaults")), QStringLiteral("123456"));
    EXPECT_TRUE(prompts().isEmpty());

    // A bound account in neither: the list opens with the rebinding text.
    makeLedgerBound(1, QStringLiteral("gone"));
    rows = bind(QStringLiteral("frmSelectAccount => List1=777;cmdOK=1"));
    ASSERT_TRUE(rows.has_value());
    EXPECT_EQ(rows->recordCount(), 1);
    EXPECT_TRUE(prompts().last().startsWith(QStringLiteral(
        "frmSelectAccount|פלקור|החשבון ששויך לפלקור לא נמצא, או שלא נמצאו תנועות בתשעים הימים האחרונים.נא שייך")));
    EXPECT_EQ(query(QStringLiteral("SELECT AccountNum FROM Defaults")), QStringLiteral("777"));
}

TEST_F(AccountBindingTest, AFeedThatCannotBeReadIsToldInHebrewAndChangesNothing)
{
    makeLedgerBound(12, QStringLiteral("55"));   // bank 11 reads poalimOsh of atl613o11.dll
    QFile bad(reconcile::feedFilePath(11, false, tempPath, dir.path()));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("this is no database at all, just text that an importer left behind");
    bad.close();
    EXPECT_FALSE(bind({}).has_value());
    EXPECT_TRUE(prompts().value(0).startsWith(QStringLiteral("msgbox|פלקור|לא ניתן לקרוא את נתוני הבנק")));
    EXPECT_TRUE(okFileWritten());

    // A database without the bank's table, and one with it but no rows of any account.
    makeFeed(11, {});
    store::Connection cn;
    cn.open(reconcile::feedFilePath(11, false, tempPath, dir.path()));
    cn.executeRaw(QStringLiteral("DROP TABLE poalimOsh;"));
    cn.close();
    EXPECT_FALSE(bind({}).has_value());
    makeFeed(11, {});
    EXPECT_FALSE(bind({}).has_value());
    EXPECT_EQ(prompts().last(), QStringLiteral("msgbox|פלקור|לא נמצאו חשבונות|OK"));
    EXPECT_EQ(query(QStringLiteral("SELECT iBank, AccountNum FROM Defaults")), QStringLiteral("12|55"));
}

TEST_F(AccountBindingTest, TheDemonstrationFileReadsTheDemoFeedAndIsNeverBound)
{
    makeLedgerBound(99, QStringLiteral("(none)"));
    makeFeed(98, QStringLiteral("INSERT INTO demoOsh VALUES ('1', 2, '2025-05-02', 'a', 'b', 1, 0, 1, 5);"
                                "INSERT INTO demoOsh VALUES ('1', 1, '2025-05-02', 'c', 'd', 1, 0, 2, 9);"),
             true);
    auto rows = bind(QStringLiteral("נמצא חשבון אחד => Yes"));
    ASSERT_TRUE(rows.has_value());
    EXPECT_EQ(query(QStringLiteral("SELECT iBank, AccountNum FROM Defaults")), QStringLiteral("99|(none)"));
    EXPECT_EQ(rows->at(0, rows->fieldIndex(QStringLiteral("transactionID"))).toInt(), 1);
}

TEST(BankFeedTest, TablesAndOrdersOfTheBanks)
{
    EXPECT_EQ(feedTable(11, false), QStringLiteral("poalimOsh"));
    EXPECT_EQ(feedTable(8, false), QStringLiteral("poalimOsh"));
    EXPECT_EQ(feedTable(1, false), QStringLiteral("leumiOsh"));
    EXPECT_EQ(feedTable(2, true), QStringLiteral("demoOsh"));
    EXPECT_TRUE(feedFilePath(11, false, QStringLiteral("/t/"), QStringLiteral("/p")).endsWith(QStringLiteral("/t/atl613o11.dll")));
    EXPECT_EQ(accountRowsQuery(2, false, QStringLiteral("5")),
              QStringLiteral("SELECT * FROM discountOsh WHERE trim(accountNum)='5' ORDER BY [date],[part] DESC,transactionID"));
    EXPECT_EQ(accountRowsQuery(2, true, QStringLiteral("5")),
              QStringLiteral("SELECT * FROM demoOsh WHERE trim(accountNum)='5' ORDER BY [date],transactionID"));
    EXPECT_TRUE(accountRowsQuery(9, false, QStringLiteral("5")).endsWith(QStringLiteral("transactionID DESC")));
    EXPECT_EQ(bankInfoCaption(0, QStringLiteral("(none)")), QStringLiteral("פועלים   "));
    EXPECT_EQ(bankInfoCaption(1, QStringLiteral(" 12 ")), QStringLiteral("לאומי    12"));
    EXPECT_EQ(bankInfoCaption(-1, QStringLiteral("12")), QString());
}

TEST(BankTextTest, ScreenOrderedTextsComeBackInReadingOrder)
{
    struct Case { const char* in; const char* out; };
    const Case cases[] = {
        {"abc", "abc"},
        // Hebrew words given left to right on the screen: the runs are reversed.
        {"םולש בר", "בר םולש"},
        // Digits beside Hebrew follow it, a Latin word stands apart.
        {"123 הכישמ", "הכישמ 123"},
        {"ATM ךשמ", "ךשמ ATM"},
        // Brackets outside a Hebrew run are mirrored, for the right-to-left
        // display turns them back.
        {"(12) םולשת", "םולשת )12("},
    };
    for (const Case& c : cases)
        EXPECT_EQ(splitStr(QString::fromUtf8(c.in)), QString::fromUtf8(c.out)) << c.in;
    // The direction marks steer and vanish.
    EXPECT_EQ(splitStr(QStringLiteral("a\u200Fb")), QStringLiteral("ba"));
    EXPECT_EQ(formatText(QStringLiteral("םולש בר"), 1, false), QStringLiteral("בר םולש"));
    EXPECT_EQ(formatText(QStringLiteral("םולש בר"), 1, true), QStringLiteral("םולש בר"));
    EXPECT_EQ(formatText(QStringLiteral("םולש בר"), 0, false), QStringLiteral("םולש בר"));
}

TEST_F(AccountBindingTest, TheBankGridGreysLateRowsAndYellowsEachDaysLastBalance)
{
    makeLedgerBound(1, QStringLiteral("1"));
    makeFeed(0, QStringLiteral(
                    "INSERT INTO poalimOsh VALUES ('1', 1, '2025-05-01', 'a', NULL, 10, 0, 10, 0);"
                    "INSERT INTO poalimOsh VALUES ('1', 2, '2025-05-01', NULL, 'b', 0, 3, 7, 0);"
                    "INSERT INTO poalimOsh VALUES ('1', 3, '2025-05-02', 'c', 'd', 5, 0, 12, 0);"
                    "INSERT INTO poalimOsh VALUES ('1', 4, '2025-05-02', 'e', 'f', 1, 0, 13, 0);"
                    "INSERT INTO poalimOsh VALUES ('1', 5, '2025-05-03', 'g', 'h', 1, 0, 14, 0);"));
    auto rows = bind({});
    ASSERT_TRUE(rows.has_value());
    BankGrid b;
    fillBankGrid(b, *rows, QDate(2025, 5, 2), 0, false);
    const auto& g = b.msfgBank;
    ASSERT_EQ(g.Rows(), 6);
    EXPECT_EQ(g.text(2, colConfirm), QString());
    EXPECT_EQ(g.text(1, colDetail), QString());
    EXPECT_EQ(g.text(2, colOut), FormatSum(3));
    EXPECT_EQ(b.bankTransactionIDs, (std::vector<long long>{1, 2, 3, 4, 5}));
    EXPECT_EQ(b.rowDate(5), QDate(2025, 5, 3));
    // The first row is yellow whatever follows; then the last of each day.
    std::vector<bool> yellow;
    for (int r = 1; r <= 5; ++r)
        yellow.push_back(g.style(r, colBalance).back == bankColors::dayBalance);
    EXPECT_EQ(yellow, (std::vector<bool>{true, true, false, true, true}));
    // On the target date the mark cell is pink; the day after, the whole row is grey.
    EXPECT_EQ(g.style(4, colMark).back, bankColors::mark);
    EXPECT_EQ(g.style(4, colDetail).back, bankColors::white);
    EXPECT_EQ(g.style(5, colMark).back, bankColors::late);
    EXPECT_EQ(g.style(5, colDetail).back, bankColors::late);
}

} // namespace
