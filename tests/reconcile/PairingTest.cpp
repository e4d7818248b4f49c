// Marking rows of both grids, pairing them, undoing pairs, and the loose
// ends at the close of a session: all on the working table, with the table
// of lines untouched.
#include "SessionFixture.h"

using namespace pelkor;
using namespace pelkor::reconcile;
using namespace pelkor::testing;

namespace {

// A line of the file: id, kind, day of May 2025 (0: April 30th, the zeroing
// date), detail, in, out; the first line bears the zeroing mark.
QString line(int id, const char* kind, int day, const char* detail, double in, double out, int relate = 0)
{
    return QStringLiteral("INSERT INTO pelkor (id, kind, date, confirm, detail, \"in\", out, TypeNum, zee, memo, relate, IndTzefi)"
                          " VALUES (%1, '%2', '%3', ' ', '%4', %5, %6, %7, '%8', NULL, %9, 0);")
        .arg(id)
        .arg(QString::fromLatin1(kind), day == 0 ? QStringLiteral("2025-04-30") : QDate(2025, 5, day).toString(Qt::ISODate),
             QString::fromUtf8(detail))
        .arg(in)
        .arg(out)
        .arg(out > 0 ? 2 : 1)
        .arg(QString::fromLatin1(id == 1 ? "ZZZZZZZZZZ" : " "))
        .arg(relate);
}

// A bank row of account 1: transactionID, day of May 2025, in, out, balance.
QString bankRow(int id, int day, double in, double out, double balance)
{
    return QStringLiteral("INSERT INTO poalimOsh VALUES ('1', %1, '%2', 'c%1', 'bank %1', %3, %4, %5, 0);")
        .arg(id)
        .arg(QDate(2025, 5, day).toString(Qt::ISODate))
        .arg(in)
        .arg(out)
        .arg(balance);
}

class PairingTest : public SessionTest {
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        startSession(line(1, "+0", 0, "opening", 1000, 0) + line(2, "+1", 3, "sale", 100, 0) +
                         line(3, "+1", 4, "a", 30, 0) + line(4, "+1", 4, "b", 30, 0) + line(5, "+1", 4, "c", 40, 0) +
                         line(6, "-1", 6, "rent", 0, 500, 99) + line(7, "-2", 7, "salary", 0, 200),
                     bankRow(1, 3, 99.5, 0, 1099.5) + bankRow(2, 5, 100.01, 0, 1199.51) + bankRow(3, 5, 100.02, 0, 1299.53) +
                         bankRow(4, 6, 0, 300, 999.53) + bankRow(5, 6, 0, 200, 799.53) + bankRow(6, 20, 0, 90, 709.53),
                     QDate(2025, 5, 10));
        before = pelkorRows();
    }
    QString before;
};

TEST_F(PairingTest, ClicksMarkAndUnmarkRowsButNotAboveTheRedLineOrAfterTheTargetDate)
{
    ASSERT_TRUE(confirmedLine(QStringLiteral("opening")));   // above the red line: confirmed at the start
    clickLine(QStringLiteral("opening"));
    EXPECT_TRUE(prompts().isEmpty());
    EXPECT_TRUE(confirmedLine(QStringLiteral("opening")));

    clickLine(QStringLiteral("sale"));
    EXPECT_EQ(links.paintedIDs.items(), std::vector<QString>{QStringLiteral("2")});
    EXPECT_EQ(main.msfgMain.style(rowOf(QStringLiteral("sale")), colDetail).back, colors::markCell);
    EXPECT_EQ(links.mainSummary().linesSelected, QStringLiteral("שורה אחת מסומנת"));
    clickLine(QStringLiteral("sale"));
    EXPECT_TRUE(links.paintedIDs.isEmpty());
    EXPECT_NE(main.msfgMain.style(rowOf(QStringLiteral("sale")), colDetail).back, colors::markCell);
    EXPECT_EQ(links.mainSummary().linesSelected, QString());

    // A related line keeps its yellow kind cell when marked.
    clickLine(QStringLiteral("rent"));
    EXPECT_EQ(main.msfgMain.style(rowOf(QStringLiteral("rent")), colKind).back, colors::relateKind);

    clickBank(6);   // after the target date
    EXPECT_TRUE(links.paintedBankRows.isEmpty());
    clickBank(4);
    clickBank(5);
    EXPECT_EQ(bank.lblBankTotalOut, FormatSum(500));
    EXPECT_EQ(bank.lblBankLinesSelected, QStringLiteral("2 שורות מסומנות"));
    clickBank(5);
    clickBank(5);   // the same row twice: the sums as before
    EXPECT_EQ(bank.lblBankTotalOut, FormatSum(500));
}

TEST_F(PairingTest, OneToOneTakesTheBanksSumAndDateAndACancelFromEitherSideRestoresThem)
{
    clickLine(QStringLiteral("sale"));
    clickBank(1);
    coord.cmdCoordinate_Click();
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join(u'\n').toStdString();
    EXPECT_TRUE(confirmedLine(QStringLiteral("sale")));
    EXPECT_TRUE(confirmedBank(1));
    ASSERT_EQ(links.rowLinks.size(), 1u);
    EXPECT_EQ(query(QStringLiteral("SELECT [in], date FROM tempPelkor WHERE id=2")), QStringLiteral("99.5|03/05/2025"));
    EXPECT_EQ(pelkorRows(), before);

    // Undone from the bank's side: the question, then both plain and the sum back.
    answer(QStringLiteral("לבטל התאמה => Yes"));
    clickBank(1);
    EXPECT_TRUE(links.rowLinks.empty());
    EXPECT_FALSE(confirmedLine(QStringLiteral("sale")));
    EXPECT_FALSE(confirmedBank(1));
    EXPECT_EQ(query(QStringLiteral("SELECT [in] FROM tempPelkor WHERE id=2")), QStringLiteral("100"));
    EXPECT_EQ(main.msfgMain.text(rowOf(QStringLiteral("sale")), colIn), FormatSum(100));

    // No keeps the pair.
    clickLine(QStringLiteral("sale"));
    clickBank(1);
    coord.cmdCoordinate_Click();
    answer(QStringLiteral("לבטל התאמה => No"));
    clickLine(QStringLiteral("sale"));
    EXPECT_EQ(links.rowLinks.size(), 1u);
    EXPECT_TRUE(confirmedBank(1));
}

TEST_F(PairingTest, ManyLinesAgainstOneBankRowWithinAnAgoraKeepTheirSumsAndAreUndoneTogether)
{
    for (const char* d : {"a", "b", "c"})
        clickLine(QString::fromLatin1(d));
    clickBank(2);   // 100.01 against 30 + 30 + 40
    coord.cmdCoordinate_Click();
    EXPECT_TRUE(window.asked.isEmpty());
    for (const char* d : {"a", "b", "c"})
        EXPECT_TRUE(confirmedLine(QString::fromLatin1(d)));
    EXPECT_EQ(query(QStringLiteral("SELECT [in], date FROM tempPelkor WHERE id IN (3,4,5) ORDER BY id")),
              QStringLiteral("30|05/05/2025;30|05/05/2025;40|05/05/2025"));

    answer(QStringLiteral("לבטל התאמה => Yes"));
    clickLine(QStringLiteral("b"));
    for (const char* d : {"a", "b", "c"})
        EXPECT_FALSE(confirmedLine(QString::fromLatin1(d)));
    EXPECT_FALSE(confirmedBank(2));
    EXPECT_EQ(query(QStringLiteral("SELECT date FROM tempPelkor WHERE id IN (3,4,5)")),
              QStringLiteral("04/05/2025;04/05/2025;04/05/2025"));
    EXPECT_EQ(pelkorRows(), before);
}

TEST_F(PairingTest, ManyLinesShortOfTheBankRowBringABalancingLineAndADialog)
{
    for (const char* d : {"a", "b", "c"})
        clickLine(QString::fromLatin1(d));
    clickBank(3);   // 100.02: two agorot short
    coord.cmdCoordinate_Click();
    EXPECT_EQ(window.asked, QStringList{QStringLiteral("openNewDialog 0")});
    EXPECT_TRUE(coord.isWaitingForDialog());
    EXPECT_EQ(query(QStringLiteral("SELECT detail, [in], out, kind, TypeNum, zee, date FROM tempPelkor WHERE zee='coord0'")),
              QStringLiteral("(שורת איזון יתרה)|0.02|0|+0|1|coord0|05/05/2025"));
    EXPECT_EQ(query(QStringLiteral("SELECT COUNT(*) FROM tempPelkor WHERE zee='coord9' AND date='2025-05-05'")), QStringLiteral("3"));
    EXPECT_EQ(query(QStringLiteral("SELECT id, date FROM savedPelkor ORDER BY id")),
              QStringLiteral("3|04/05/2025;4|04/05/2025;5|04/05/2025"));

    // The dialog closed: the balancing line goes and the lines' dates come back.
    coord.dialogAnswered(false);
    EXPECT_EQ(query(QStringLiteral("SELECT COUNT(*) FROM tempPelkor WHERE left(zee,5)='coord'")), QStringLiteral("0"));
    EXPECT_EQ(query(QStringLiteral("SELECT date FROM tempPelkor WHERE id IN (3,4,5)")),
              QStringLiteral("04/05/2025;04/05/2025;04/05/2025"));
    EXPECT_TRUE(links.paintedIDs.isEmpty());
    EXPECT_TRUE(links.paintedBankRows.isEmpty());
    EXPECT_EQ(pelkorRows(), before);
}

TEST_F(PairingTest, TheDialogsAnswerCompletesThePairWithTheBalancingLine)
{
    for (const char* d : {"a", "b", "c"})
        clickLine(QString::fromLatin1(d));
    clickBank(3);
    coord.cmdCoordinate_Click();
    // The user accepts the balancing line as it was offered.
    coord.dialogAnswered(true);
    EXPECT_FALSE(coord.isWaitingForDialog());
    ASSERT_EQ(links.rowLinks.size(), 1u);
    EXPECT_EQ(links.rowLinks[0].ids.size(), 4u);
    EXPECT_TRUE(confirmedBank(3));
    EXPECT_TRUE(confirmedLine(QStringLiteral("(שורת איזון יתרה)")));
    EXPECT_EQ(query(QStringLiteral("SELECT COUNT(*) FROM tempPelkor WHERE left(zee,5)='coord'")), QStringLiteral("0"));
    EXPECT_EQ(pelkorRows(), before);

    // Undoing it deletes the balancing line, born in this session.
    answer(QStringLiteral("לבטל התאמה => Yes"));
    clickLine(QStringLiteral("a"));
    EXPECT_EQ(query(QStringLiteral("SELECT COUNT(*) FROM tempPelkor WHERE detail='(שורת איזון יתרה)'")), QStringLiteral("0"));
    EXPECT_TRUE(main.msfgMain.isRowHidden(rowOf(QStringLiteral("(שורת איזון יתרה)"))));
}

TEST_F(PairingTest, LinesOverTheBankRowBalanceOnTheExpenseSide)
{
    clickLine(QStringLiteral("sale"));
    clickLine(QStringLiteral("a"));
    clickBank(2);   // 100.01 against 130
    coord.cmdCoordinate_Click();
    EXPECT_EQ(query(QStringLiteral("SELECT [in], out, kind, TypeNum FROM tempPelkor WHERE zee='coord0'")),
              QStringLiteral("0|29.99|-0|2"));
}

TEST_F(PairingTest, RefusalsSayWhyAndKeepTheMarks)
{
    struct Case {
        std::vector<const char*> lines;
        std::vector<int> bankRows;
        const char* message;
        bool marksStay;
    };
    const Case cases[] = {
        {{}, {}, "יש לבחור לפחות שורה אחת בפלקור ולפחות שורה אחת בבנק\\n(לבחירת", true},
        {{"sale"}, {}, "יש לבחור לפחות שורה אחת בבנק", true},
        {{}, {1}, "יש לבחור לפחות שורה אחת בפלקור", true},
        {{"sale", "a"}, {1, 2}, "לא ניתן להתאים שורות מרובות בפלקור לשורות מרובות בבנק", true},
        {{"sale"}, {1, 2}, "לא ניתן לאחד שורות בבנק בעלות תאריכים שונים", true},
        {{"sale"}, {4}, "לא ניתן להתאים שורת/ות הכנסה לשורת/ות הוצאה", false},
    };
    for (const Case& c : cases) {
        const int asked = int(prompts().size());
        for (const char* d : c.lines)
            clickLine(QString::fromLatin1(d));
        for (int r : c.bankRows)
            clickBank(r);
        coord.cmdCoordinate_Click();
        ASSERT_EQ(prompts().size(), asked + 1) << c.message;
        EXPECT_TRUE(prompts().last().startsWith(QStringLiteral("msgbox|פלקור|") + QString::fromUtf8(c.message)))
            << prompts().last().toStdString();
        EXPECT_EQ(links.paintedIDs.size(), c.marksStay ? int(c.lines.size()) : 0) << c.message;
        EXPECT_EQ(links.paintedBankRows.size(), c.marksStay ? int(c.bankRows.size()) : 0) << c.message;
        EXPECT_TRUE(links.rowLinks.empty());
        // Clear what is left for the next case.
        for (const QString& id : std::vector<QString>(links.paintedIDs.items())) {
            main.msfgMain.setRow(links.getLineIndexByID(id) + 1);
            links.togglePaint(true);
        }
        for (int r : std::vector<int>(links.paintedBankRows.items())) {
            bank.msfgBank.setRow(r);
            links.toggleBankPaint(true);
        }
    }
    EXPECT_EQ(pelkorRows(), before);
}

TEST_F(PairingTest, UnpairedBankRowsUpToTheTargetDateBecomeNewLinesForTheDialog)
{
    clickLine(QStringLiteral("sale"));
    clickBank(1);
    coord.cmdCoordinate_Click();
    clickLine(QStringLiteral("salary"));   // a mark left standing is cleared first
    coord.checkForUnconfirmedBankRows();
    EXPECT_EQ(window.asked, QStringList{QStringLiteral("openNewDialog 1")});
    // Rows 2 to 5; row 6 is after the target date, row 1 is paired.
    EXPECT_EQ(query(QStringLiteral("SELECT memo, kind, TypeNum, [in], out, confirm, detail FROM tempPelkor WHERE zee='coord1' ORDER BY memo")),
              QStringLiteral("2|+0|1|100.01|0|c2|bank 2;3|+0|1|100.02|0|c3|bank 3;4|-0|2|0|300|c4|bank 4;5|-0|2|0|200|c5|bank 5"));
    EXPECT_TRUE(links.paintedIDs.isEmpty());

    // Cancelled: the new lines go, the session stays.
    coord.dialogAnswered(false);
    EXPECT_EQ(query(QStringLiteral("SELECT COUNT(*) FROM tempPelkor WHERE zee='coord1'")), QStringLiteral("0"));
    EXPECT_EQ(pelkorRows(), before);
}

TEST_F(PairingTest, UnpairedLinesMoveToTheDayAfterTheTargetAndKeepInvoiceKindsRelated)
{
    led.theInvoiceCategs = QStringLiteral("-1,");
    clickLine(QStringLiteral("sale"));
    clickBank(1);
    coord.cmdCoordinate_Click();
    store::Connection cn;
    cn.open(file);
    cn.executeRaw(QStringLiteral("UPDATE tempPelkor SET relate=99 WHERE id IN (3, 6);"));
    coord.checkForUnconfirmedRows();
    EXPECT_EQ(window.asked, QStringList{QStringLiteral("openNewDialog 2")});
    EXPECT_EQ(query(QStringLiteral("SELECT id, date, relate FROM tempPelkor WHERE zee='coord2' ORDER BY id")),
              QStringLiteral("3|11/05/2025|0;4|11/05/2025|0;5|11/05/2025|0;6|11/05/2025|99;7|11/05/2025|0"));
    coord.dialogAnswered(false);
    EXPECT_EQ(query(QStringLiteral("SELECT date FROM tempPelkor WHERE id=7")), QStringLiteral("07/05/2025"));
    EXPECT_EQ(pelkorRows(), before);
}

TEST(InvoiceKindsTest, TheListBecomesAnInList)
{
    EXPECT_EQ(invoiceKindsInList(QStringLiteral("+1,-3,")), QStringLiteral("'+1','-3'"));
    EXPECT_EQ(invoiceKindsInList(QString()), QString());
    EXPECT_TRUE(sumsAgree(100.01, 100.00));
    EXPECT_FALSE(sumsAgree(100.0100001, 100.00));
}

} // namespace
