// A whole session on the demonstration file, from the bank button to the
// swap, and the roads that leave the table of lines as it was.
#include "reconcile/Session.h"

#include "SessionFixture.h"
#include "ledger/Zeroing.h"
#include "seams/web/ScriptedWebView.h"

#include <QFile>

using namespace pelkor;
using namespace pelkor::reconcile;
using namespace pelkor::testing;

namespace {

QString demoLine(int id, const char* kind, const char* date, const char* detail, double in, double out, bool mark = false)
{
    return QStringLiteral("INSERT INTO pelkor (id, kind, date, confirm, detail, \"in\", out, TypeNum, zee, memo, relate, IndTzefi)"
                          " VALUES (%1, '%2', '%3', ' ', '%4', %5, %6, %7, '%8', NULL, 0, 0);")
        .arg(id)
        .arg(QString::fromLatin1(kind), QString::fromLatin1(date), QString::fromUtf8(detail))
        .arg(in)
        .arg(out)
        .arg(out > 0 ? 2 : 1)
        .arg(QString::fromLatin1(mark ? "ZZZZZZZZZZ" : " "));
}

class WholeSessionTest : public FeedTest {
protected:
    void SetUp() override
    {
        FeedTest::SetUp();
        makeLedgerBound(99, QStringLiteral("(none)"),
                        demoLine(1, "+0", "2025-04-30", "opening", 1000, 0, true) +
                            demoLine(2, "+1", "2025-05-03", "sale", 100, 0) +
                            demoLine(3, "-2", "2025-05-07", "salary", 0, 200));
        store::Connection cn;
        cn.open(file);
        cn.executeRaw(QStringLiteral("UPDATE Defaults SET isAuto=1;"));
        cn.close();
        makeFeed(98, QStringLiteral("INSERT INTO demoOsh VALUES ('1', 1, '2025-04-30', 'a', 'opening', 0, 0, 1000, 0);"
                                    "INSERT INTO demoOsh VALUES ('1', 2, '2025-05-03', 'b', 'sale', 99.5, 0, 1099.5, 0);"
                                    "INSERT INTO demoOsh VALUES ('1', 3, '2025-05-06', 'c', 'salary', 0, 200, 899.5, 0);"),
                 true);
        QFile::copy(QStringLiteral(PELKOR_SOURCE_DIR "/share/BankMenu.html"), dir.filePath(QStringLiteral("BankMenu.html")));
        led.isAutomatic = true;
        led.targetDate = QDate(2025, 5, 10);
        inst.progMode = modeFullScreen;
        scripted({});
        load(false);
        window.onRefresh = [this] { load(true); };
        session = std::make_unique<Session>(SessionParts{
            led, inst, main, shown, forward, window, [this]() -> web::WebView& { return web; }, tempPath, dir.path(), QDate(2025, 5, 11),
            [this] { led.cn.close(); },
            [this] { if (!led.cn.isOpen()) led.cn.open(file); },
            {}, [this] { updateIpus(led, inst); }, {}, {}, {}, {}});
        before = query(QStringLiteral("SELECT * FROM pelkor ORDER BY id"));
    }
    void load(bool refresh)
    {
        LoadParts p{led, inst, main, shown, *ui_, window};
        ASSERT_EQ(openDB(p, refresh), LoadResult::Loaded);
        if (session)
            session->afterLoad(refresh);
    }
    int rowOf(const QString& detail) const
    {
        for (size_t i = 0; i < led.lines.size(); ++i)
            if (led.lines[i].detail == detail)
                return int(i) + 1;
        return -1;
    }
    void pair(const QString& detail, int bankRow)
    {
        main.msfgMain.setRow(rowOf(detail));
        session->links.msfgMainMarkClicked();
        session->bank.msfgBank.setRow(bankRow);
        session->links.msfgBankMarkClicked();
        session->coord.cmdCoordinate_Click();
    }
    // Starts the session and picks the first bank on the menu page.
    void open()
    {
        session->cmdBankCoordination_Click();
        ASSERT_EQ(web.navigations().value(0), dir.filePath(QStringLiteral("BankMenu.html")) + QStringLiteral("?auto=true"));
        ASSERT_TRUE(session->shown.split);
        web.sendEvent(QStringLiteral("0"));
        ASSERT_TRUE(session->pairing());
        ASSERT_EQ(led.linesTable, QStringLiteral("tempPelkor"));
    }

    Instance inst;
    MainGrid main;
    Shown shown;
    RecordingWindow window;
    web::ScriptedWebView web;
    std::unique_ptr<Session> session;
    QString before;
};

TEST_F(WholeSessionTest, PairingThenAbandoningLeavesTheTableOfLinesAsItWas)
{
    open();
    EXPECT_TRUE(session->shown.cmdCoordinate);
    EXPECT_EQ(session->bank.iBankRowAboveRed, 1);
    EXPECT_EQ(session->bank.msfgBank.text(1, colMark), QStringLiteral("v"));   // history confirmed
    EXPECT_EQ(main.msfgMain.text(1, colMark), QStringLiteral("v"));
    pair(QStringLiteral("sale"), 2);
    EXPECT_EQ(main.msfgMain.text(rowOf(QStringLiteral("sale")), colMark), QStringLiteral("v"));
    EXPECT_EQ(session->bank.msfgBank.text(2, colMark), QStringLiteral("v"));

    scripted(QStringLiteral("לשמור שינויים => No"));
    session->cmdExitCoordination_Click();
    EXPECT_FALSE(session->active());
    EXPECT_EQ(led.linesTable, QStringLiteral("pelkor"));
    EXPECT_EQ(inst.progMode, modeFullScreen);
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before);
    EXPECT_EQ(main.msfgMain.text(rowOf(QStringLiteral("sale")), colMark), QString());
}

TEST_F(WholeSessionTest, FinishingProvesTheClosingBalanceSwapsTheTableAndMovesTheZeroingLine)
{
    open();
    pair(QStringLiteral("sale"), 2);
    pair(QStringLiteral("salary"), 3);
    session->cmdBankCoordination_Click();
    EXPECT_FALSE(session->active());
    EXPECT_TRUE(prompts().last().contains(QStringLiteral("ההתאמה האוטומטית הסתיימה בהצלחה. תאריך האיפוס החדש הוא 06/05/2025")))
        << prompts().join(u'\n').toStdString();
    EXPECT_EQ(query(QStringLiteral("SELECT id, [in], out, date, zee FROM pelkor ORDER BY id")),
              QStringLiteral("1|1000|0|30/04/2025| ;2|99.5|0|03/05/2025| ;3|0|200|06/05/2025|ZZZZZZZZZZ"));
    EXPECT_EQ(query(QStringLiteral("SELECT COUNT(*) FROM bckpPelkor")), QStringLiteral("3"));
    EXPECT_EQ(led.linesTable, QStringLiteral("pelkor"));
}

TEST_F(WholeSessionTest, AFileThatDisagreesWithTheBankStaysOnItsTableOfLines)
{
    store::Connection cn;
    cn.open(file);
    cn.executeRaw(QStringLiteral("UPDATE pelkor SET \"in\" = 990 WHERE id = 1;"));
    cn.close();
    load(true);
    before = query(QStringLiteral("SELECT * FROM pelkor ORDER BY id"));
    session->cmdBankCoordination_Click();
    web.sendEvent(QStringLiteral("0"));
    EXPECT_TRUE(session->active());
    EXPECT_FALSE(session->pairing());
    EXPECT_TRUE(session->shown.cmdGoToAutomaticCoordination);
    EXPECT_FALSE(session->shown.cmdCoordinate);
    EXPECT_EQ(led.linesTable, QStringLiteral("pelkor"));
    EXPECT_NEAR(session->balanceDiff, 10, 1e-9);
    scripted(QStringLiteral("לצאת ממסך ההתאמה => OK"));
    session->cmdExitCoordination_Click();
    EXPECT_FALSE(session->active());
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before);
}

// The closing proof's two bounds: an agora short takes a rounding line and
// the session ends; a hair more is a failed proof and the table of lines
// stays as it was.
TEST_F(WholeSessionTest, TheClosingProofRoundsAnAgoraAndFailsPastIt)
{
    open();
    pair(QStringLiteral("sale"), 2);
    pair(QStringLiteral("salary"), 3);
    led.cn.execute(QStringLiteral("UPDATE tempPelkor SET out = 200.0100001 WHERE id = 3"));
    session->cmdBankCoordination_Click();
    EXPECT_TRUE(prompts().join(u'\n').contains(QStringLiteral("ההתאמה האוטומטית נכשלה. הינך מועבר להתאמה ידנית")));
    EXPECT_TRUE(session->shown.cmdGoToAutomaticCoordination);
    EXPECT_EQ(query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")), before);

    scripted(QStringLiteral("לצאת ממסך ההתאמה => OK"));
    session->cmdExitCoordination_Click();
    ASSERT_FALSE(session->active());
    scripted({});
    open();
    pair(QStringLiteral("sale"), 2);
    pair(QStringLiteral("salary"), 3);
    led.cn.execute(QStringLiteral("UPDATE tempPelkor SET out = 200.01 WHERE id = 3"));
    session->cmdBankCoordination_Click();
    EXPECT_FALSE(session->active());
    EXPECT_EQ(query(QStringLiteral("SELECT id, [in], out, date FROM pelkor WHERE id = 4")),
              QStringLiteral("4|0.01|0|06/05/2025"));
    // The mark on the last line, in the file's order, of the bank row's day.
    load(true);
    ASSERT_EQ(led.lines.size(), 4u);
    EXPECT_EQ(led.lines.back().Date, QDate(2025, 5, 6));
    EXPECT_EQ(query(QStringLiteral("SELECT id FROM pelkor WHERE zee = 'ZZZZZZZZZZ'")), led.lines.back().Id);
}

} // namespace
