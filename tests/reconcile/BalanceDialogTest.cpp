// The opening proof's results and the balance dialog's ways out of a
// disagreement, on whole sessions started from the bank button.
#include "BalanceFixture.h"

#include "reconcile/BalanceParting.h"
#include "reconcile/frmBalance.h"

using namespace pelkor;
using namespace pelkor::reconcile;
using namespace pelkor::testing;

namespace {

const QString opening = QStringLiteral("opening");

TEST(frmBalanceTest, OptionsFollowTheProofAndOkWaitsForAClick)
{
    frmBalance differ(2, false);
    EXPECT_EQ(differ.caption(), QStringLiteral("יתרה לא תואמת"));
    EXPECT_TRUE(differ.isEnabled(QStringLiteral("optBalancingLine")));
    EXPECT_TRUE(differ.isEnabled(QStringLiteral("optPrevDay")));
    EXPECT_FALSE(differ.isEnabled(QStringLiteral("optNewPelkor")));
    EXPECT_FALSE(differ.isEnabled(QStringLiteral("cmdOK")));
    EXPECT_TRUE(ui::Dialog::isOn(differ.control(QStringLiteral("optDoNothing"))));
    EXPECT_TRUE(differ.click(QStringLiteral("optPrevDay")));
    EXPECT_TRUE(differ.click(QStringLiteral("cmdOK")));
    EXPECT_EQ(differ.choice(), QStringLiteral("optPrevDay"));

    frmBalance none(4, true);
    EXPECT_FALSE(none.isEnabled(QStringLiteral("optBalancingLine")));
    EXPECT_FALSE(none.isEnabled(QStringLiteral("optPrevDay")));
    EXPECT_TRUE(none.isEnabled(QStringLiteral("optNewPelkor")));
    EXPECT_FALSE(none.click(QStringLiteral("optPrevDay")));
    EXPECT_TRUE(none.click(QStringLiteral("optNewPelkor")));
    none.dismiss();   // the close box does nothing
    EXPECT_EQ(none.choice(), QStringLiteral("optDoNothing"));
}

TEST(BalancePartingTest, TheRunOfDisagreementEndsAtTheLastAgreeingDay)
{
    const std::vector<DatedBalance> file{{QDate(2025, 4, 10), 1000}, {QDate(2025, 4, 20), 1100},
                                         {QDate(2025, 4, 25), 1110}, {QDate(2025, 4, 30), 1150}};
    const std::vector<DatedBalance> bank{{QDate(2025, 4, 10), 1000}, {QDate(2025, 4, 20), 1100}, {QDate(2025, 4, 30), 1140}};
    const auto p = findParting(file, bank, QDate(2025, 4, 30));
    ASSERT_TRUE(p.has_value());
    EXPECT_EQ(p->date, QDate(2025, 4, 25));
    EXPECT_NEAR(p->diff, -10, 1e-9);
    EXPECT_EQ(partingText(*p), QStringLiteral("היתרות נפרדות ב-25/04/2025: הפרש \u206610.00-\u2069"));
    // Agreeing at the date itself: nothing to tell; a bank that never
    // agrees parts on the first day both sides have.
    EXPECT_FALSE(findParting(file, bank, QDate(2025, 4, 22)).has_value());
    const std::vector<DatedBalance> off{{QDate(2025, 4, 12), 7}, {QDate(2025, 4, 30), 9}};
    EXPECT_EQ(findParting(file, off, QDate(2025, 4, 30))->date, QDate(2025, 4, 12));
    EXPECT_FALSE(findParting(file, {}, QDate(2025, 4, 30)).has_value());
}

class BalanceDialogTest : public AutoSessionTest {
protected:
    // Four lines to the zeroing date (the 25th the bank lacks), and the
    // bank's rows with the zeroing day's balance given.
    void history(const char* agreedDay, double bankOnIpus, const QString& rules)
    {
        scripted(rules);
        begin(fileLine(1, "2025-04-10", opening, 1000, 0) + fileLine(2, "2025-04-20", QStringLiteral("sale"), 100, 0) +
                  fileLine(3, "2025-04-25", QStringLiteral("fee"), 10, 0) +
                  fileLine(4, "2025-04-30", QStringLiteral("last"), 40, 0, true) +
                  fileLine(5, "2025-05-04", QStringLiteral("new"), 5, 0),
              feedRow(1, "2025-04-10", 0, 0, 1000) + feedRow(2, agreedDay, 100, 0, 1100) +
                  feedRow(3, "2025-04-30", 40, 0, bankOnIpus) + feedRow(4, "2025-05-04", 5, 0, bankOnIpus + 5),
              QDate(2025, 5, 10));
        before = query(QStringLiteral("SELECT * FROM pelkor ORDER BY id"));
    }
    QString before;
};

TEST_F(BalanceDialogTest, EachResultOfTheOpeningProof)
{
    // A bank row on the zeroing day that differs: 2, the hint, the dialog.
    history("2025-04-20", 1140, QStringLiteral("frmBalance => Cancel"));
    start();
    EXPECT_FALSE(session->pairing());
    EXPECT_TRUE(session->shown.cmdGoToAutomaticCoordination);
    EXPECT_NEAR(session->balanceDiff, -10, 1e-9);
    EXPECT_EQ(session->iBankRowOnIpus, 3);
    EXPECT_EQ(session->shown.lblParting, QStringLiteral("היתרות נפרדות ב-25/04/2025: הפרש \u206610.00-\u2069"));
    EXPECT_EQ(session->reallyCompareBalances(QDate(2025, 4, 30)), 2);
    EXPECT_TRUE(prompts().join(u'\n').contains(QStringLiteral("יתרה לא תואמת"))) << prompts().join(u'\n').toStdString();
    // No bank row on or before the date: 3; the last one earlier: 4.
    EXPECT_EQ(session->reallyCompareBalances(QDate(2025, 4, 9)), 3);
    EXPECT_EQ(session->reallyCompareBalances(QDate(2025, 4, 12)), 4);
    EXPECT_EQ(session->iBankRowOnIpus, 1);
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before);
}

TEST_F(BalanceDialogTest, NothingNewAtTheBankClosesTheSessionAtOnce)
{
    scripted({});
    begin(fileLine(1, "2025-04-30", opening, 1000, 0, true), feedRow(1, "2025-04-30", 1000, 0, 1000), QDate(2025, 5, 10));
    start();
    EXPECT_FALSE(session->active());
    EXPECT_TRUE(prompts().join(u'\n').contains(QStringLiteral("אין תנועות חדשות בבנק. תאריך האיפוס הוא 30/04/2025")));
    EXPECT_FALSE(led.cn.tableExists(QStringLiteral("tempPelkor")));
}

TEST_F(BalanceDialogTest, PrevDayFindsADayExactlyTenDaysBackPassingADayOfOneGrid)
{
    history("2025-04-20", 1140, QStringLiteral("frmBalance => optPrevDay=1 || Cancel"));
    start();
    EXPECT_EQ(led.ipusDate, QDate(2025, 4, 20));
    EXPECT_TRUE(session->pairing());
    EXPECT_EQ(session->bank.iBankRowAboveRed, 2);
    EXPECT_EQ(query(QStringLiteral("SELECT id FROM pelkor WHERE zee='ZZZZZZZZZZ'")), QStringLiteral("2"));
}

TEST_F(BalanceDialogTest, PrevDayFindsNoneElevenDaysBackAndTheDialogComesAgain)
{
    history("2025-04-19", 1140, QStringLiteral("frmBalance => optPrevDay=1 || Cancel"));
    start();
    const QString all = prompts().join(u'\n');
    EXPECT_TRUE(all.contains(QStringLiteral("לא נמצא ב-10 הימים הקודמים יום בו היו יתרות תואמות"))) << all.toStdString();
    EXPECT_EQ(all.count(QStringLiteral("יתרה לא תואמת")), 2);
    EXPECT_EQ(led.ipusDate, QDate(2025, 4, 30));
    EXPECT_FALSE(session->pairing());
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before);
}

TEST_F(BalanceDialogTest, ABalancingLineOnTheZeroingDateOpensTheSession)
{
    history("2025-04-20", 1140, QStringLiteral("frmBalance => optBalancingLine=1"));
    start();
    EXPECT_TRUE(session->pairing());
    EXPECT_EQ(query(QStringLiteral("SELECT kind, date, [in], out, TypeNum, memo FROM pelkor WHERE detail='שורת איזון יתרה'")),
              QStringLiteral("-0|30/04/2025|0|10|2|ללא צבע"));
    // The session opened after the disagreement is finished by the button,
    // not left by it.
    EXPECT_EQ(session->shown.mnuPerformBankCoordinationCaption, QStringLiteral("השלם התאמה"));
    EXPECT_TRUE(session->shown.cmdBankCoordinationCaption.isEmpty());
}

TEST_F(BalanceDialogTest, ABalancingLineOnTheIncomeSideWhenTheBankHasMore)
{
    history("2025-04-20", 1162.5, QStringLiteral("frmBalance => optBalancingLine=1"));
    start();
    EXPECT_TRUE(session->pairing());
    EXPECT_EQ(query(QStringLiteral("SELECT kind, [in], out, TypeNum FROM pelkor WHERE detail='שורת איזון יתרה'")),
              QStringLiteral("+0|12.5|0|1"));
}

TEST_F(BalanceDialogTest, AnOptionThatIsOffChangesNothing)
{
    // The bank's last row before the zeroing date is earlier: 4.
    scripted(QStringLiteral("frmBalance => optBalancingLine=1"));
    begin(fileLine(1, "2025-04-30", opening, 1000, 0, true), feedRow(1, "2025-04-28", 1000, 0, 1000) + feedRow(2, "2025-05-02", 5, 0, 1005),
          QDate(2025, 5, 10));
    before = query(QStringLiteral("SELECT * FROM pelkor ORDER BY id"));
    start();
    EXPECT_FALSE(session->pairing());
    EXPECT_TRUE(session->shown.cmdGoToAutomaticCoordination);
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before);
}

TEST_F(BalanceDialogTest, ANewFileTakesTheBanksRowsUpToTheTargetAndTheMarkOnTheLast)
{
    scripted(QStringLiteral("frmBalance => optNewPelkor=1"));
    begin(fileLine(1, "2025-04-30", QStringLiteral("יתרה התחלתית"), 0, 0, true),
          feedRow(1, "2025-05-02", 100, 0, 600, "77", "in") + feedRow(2, "2025-05-05", 0, 50, 550, "", "out") +
              feedRow(3, "2025-05-08", 0, 0, 550, "9", "") + feedRow(4, "2025-05-20", 30, 0, 580),
          QDate(2025, 5, 10));
    start();
    EXPECT_TRUE(session->pairing()) << prompts().join(u'\n').toStdString();
    EXPECT_EQ(led.ipusDate, QDate(2025, 5, 8));
    EXPECT_EQ(query(QStringLiteral("SELECT kind, date, confirm, detail, [in], out, TypeNum, zee FROM pelkor ORDER BY id")),
              QStringLiteral("+0|01/05/2025| |יתרה התחלתית|500|0|1| ;"
                             "+0|02/05/2025|77|in|100|0|1| ;"
                             "-0|05/05/2025| |out|0|50|2| ;"
                             "+0|08/05/2025|9| |0|0|1|ZZZZZZZZZZ"));
}

} // namespace
