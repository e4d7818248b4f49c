// The statement importer under the session's control, played by the test:
// the two starts, the wait and its answer, the time limit, an importer that
// gives up, crashes or never starts, and a feed that is not what the bank
// should have left. Every failing road tells the user in Hebrew and leaves
// the table of lines as it was.
#include "reconcile/Session.h"

#include "SessionFixture.h"
#include "base/Instances.h"
#include "seams/bus/MailboxId.h"
#include "seams/web/ScriptedWebView.h"

#include <QFile>

using namespace pelkor;
using namespace pelkor::reconcile;
using namespace pelkor::testing;

namespace {

// runIt as the session sees it: what it was started with, and what it does.
struct PlayedImporter : Importer {
    QList<QStringList> starts;
    bool prepares = true, starting = true, alive = false, crash = false;
    int code = 0, closes = 0;
    QString raised;
    std::function<void()> onStart;   // what the importer does once started

    QString program() const override { return QStringLiteral("/opt/pelkor/runIt"); }
    bool prepare(const QStringList& args) override
    {
        starts << args;
        return prepares;
    }
    bool start(const QStringList& args) override
    {
        starts << args;
        alive = starting;
        if (starting && onStart)
            onStart();
        return starting;
    }
    bool running() const override { return alive; }
    bool crashed() const override { return crash; }
    int exitCode() const override { return code; }
    bool bringToFront(const QString& title) override
    {
        raised = title;
        return true;
    }
    void close() override
    {
        ++closes;
        alive = false;
    }
};

QString line(int id, const char* kind, const char* date, const char* detail, double in, double out, bool mark = false)
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

// The bank's statement of account 1, as the importer leaves it (mizrahiOsh).
const QString statement = QStringLiteral(
    "INSERT INTO mizrahiOsh VALUES ('1', 1, '2025-04-30', 'a', 'opening', 0, 0, 1000, 0);"
    "INSERT INTO mizrahiOsh VALUES ('1', 2, '2025-05-03', 'b', 'sale', 100, 0, 1100, 0);"
    "INSERT INTO mizrahiOsh VALUES ('1', 3, '2025-05-07', 'c', 'salary', 0, 200, 900, 0);");

constexpr int mizrahi = 4;

class DownloadTest : public FeedTest {
protected:
    void SetUp() override
    {
        FeedTest::SetUp();
        makeLedgerBound(mizrahi + 1, QStringLiteral("1"),
                        line(1, "+0", "2025-04-30", "opening", 1000, 0, true) + line(2, "+1", "2025-05-03", "sale", 100, 0) +
                            line(3, "-2", "2025-05-07", "salary", 0, 200));
        store::Connection cn;
        cn.open(file);
        cn.executeRaw(QStringLiteral("UPDATE Defaults SET isAuto=1, NDays=45;"));
        cn.close();
        QFile::copy(QStringLiteral(PELKOR_SOURCE_DIR "/share/BankMenu.html"), dir.filePath(QStringLiteral("bankMenu.html")));
        led.filePath = file;
        led.isCnOpen = true;
        led.isAutomatic = true;
        led.nDays = 45;
        led.targetDate = QDate(2025, 5, 10);
        shown.mnuAutomaticBankCoordinationChecked = true;
        shown.lblFileName = QStringLiteral(" shop ");
        inst.progMode = modeFullScreen;
        scripted({});
        load(false);
        window.onRefresh = [this] { load(true); };
        session = std::make_unique<Session>(SessionParts{
            led, inst, main, shown, forward, window, [this]() -> web::WebView& { return web; }, tempPath, dir.path(), QDate(2025, 5, 11),
            [this] { led.cn.close(); },
            [this] { if (!led.cn.isOpen()) led.cn.open(file); },
            {}, {}, {}, [this](const QString& t) { toHost << t; }, {}, &importer, {}, &messages, {}});
        before = pelkorRows();
        // By default the importer leaves the statement and answers OK.
        importer.onStart = [this] {
            makeFeed(mizrahi, statement);
            messages.setCaption(QStringLiteral("pelkor OK"));
        };
    }
    void load(bool refresh)
    {
        LoadParts p{led, inst, main, shown, *ui_, window};
        ASSERT_EQ(openDB(p, refresh), LoadResult::Loaded);
        if (session)
            session->afterLoad(refresh);
    }
    QString pelkorRows() { return query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")); }
    // The bank button as frmMain presses it: the form from the menu's mark.
    void pressBank()
    {
        if (inst.progMode != modeSplitScreen)
            led.isAutomatic = shown.mnuAutomaticBankCoordinationChecked;
        session->cmdBankCoordination_Click();
    }
    // The file fell back to the visual form, told why, and kept its choice.
    void expectVisualFallBack(const QString& reason)
    {
        const QString told = prompts().join(u'\n');
        // The transcript writes a line break as "\n".
        EXPECT_TRUE(told.contains(QStringLiteral("עדכון הנתונים עבור 'shop' נכשל.\\n") + reason)) << told.toStdString();
        EXPECT_TRUE(told.contains(QStringLiteral("הינך מועבר להתאמה ויזואלית."))) << told.toStdString();
        EXPECT_FALSE(session->downloading());
        EXPECT_TRUE(session->shown.cmdBankCoordinationEnabled);
        EXPECT_FALSE(session->shown.lblWait);
        EXPECT_TRUE(session->shown.split);
        EXPECT_FALSE(session->shown.bankGridVisible);
        EXPECT_EQ(web.navigations().value(web.navigations().size() - 1), dir.filePath(QStringLiteral("bankMenu.html")));
        EXPECT_EQ(session->shown.mnuPerformBankCoordinationCaption, QStringLiteral("יציאה"));
        EXPECT_TRUE(led.isAutomatic) << "the fall-back keeps the file's choice of form";
        EXPECT_TRUE(toHost.contains(QStringLiteral("visual")));
        EXPECT_EQ(led.linesTable, QStringLiteral("pelkor"));
        EXPECT_EQ(pelkorRows(), before);
        EXPECT_EQ(query(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE name='tempPelkor'")), QStringLiteral("0"));
    }
    // A session that fails on what the importer left: told, back to the
    // full screen, the file as it was, the importer released.
    void expectRefusedFeed(const QString& words)
    {
        const QString told = prompts().join(u'\n');
        EXPECT_TRUE(told.contains(words)) << told.toStdString();
        EXPECT_FALSE(session->active());
        EXPECT_FALSE(session->downloading());
        EXPECT_TRUE(session->shown.cmdBankCoordinationEnabled);
        EXPECT_EQ(inst.progMode, modeFullScreen);
        EXPECT_EQ(pelkorRows(), before);
        EXPECT_TRUE(QFile::exists(tempPath + QStringLiteral("ok")));
    }

    Instance inst;
    MainGrid main;
    Shown shown;
    RecordingWindow window;
    web::ScriptedWebView web;
    PlayedImporter importer;
    LocalMessages messages{0x00c0ffee};
    QStringList toHost;
    std::unique_ptr<Session> session;
    QString before;
};

TEST_F(DownloadTest, TheImporterIsStartedForTheBankAndItsAnswerOpensTheSession)
{
    importer.onStart = {};
    pressBank();
    ASSERT_EQ(importer.starts.size(), 2);
    EXPECT_EQ(importer.starts[0], QStringList{QStringLiteral("f4")});
    EXPECT_EQ(importer.starts[1], (QStringList{QStringLiteral("c"), QStringLiteral("+4"), QStringLiteral("00c0ffee"),
                                               QStringLiteral("45")}));
    EXPECT_EQ(messages.caption(), QStringLiteral("pelkor messages"));
    // The wait: the button held, the label shown, the screen not yet split.
    EXPECT_TRUE(session->downloading());
    EXPECT_FALSE(session->shown.cmdBankCoordinationEnabled);
    EXPECT_TRUE(session->shown.lblWait);
    EXPECT_FALSE(session->shown.split);
    EXPECT_EQ(inst.progMode, modeFullScreen);
    session->timerBankDataDownloaderWindowFinder_Timer();
    EXPECT_EQ(importer.raised, QStringLiteral("עידכון נתונים"));

    // A caption the session does not know means nothing has happened yet.
    for (const char* caption : {"pelkor messages", "pelkor ok", "something else"}) {
        messages.setCaption(QString::fromLatin1(caption));
        session->timerMessageChecker_Timer();
        EXPECT_TRUE(session->downloading()) << caption;
    }
    EXPECT_EQ(session->nSeconds, 3);

    makeFeed(mizrahi, statement);
    messages.setCaption(QStringLiteral("pelkor OK"));
    session->timerMessageChecker_Timer();
    EXPECT_FALSE(session->downloading());
    EXPECT_TRUE(session->shown.cmdBankCoordinationEnabled);
    EXPECT_FALSE(session->shown.lblWait);
    EXPECT_TRUE(session->pairing());
    EXPECT_EQ(session->bank.lastRow(), 3);
    EXPECT_EQ(led.linesTable, QStringLiteral("tempPelkor"));
    // The feed was read, then emptied: the bank grid holds the rows now.
    EXPECT_EQ(queryRows(tempPath + QStringLiteral("atl613o4.dll"), QStringLiteral("SELECT count(*) FROM mizrahiOsh")),
              QStringLiteral("0"));
    EXPECT_EQ(pelkorRows(), before);
}

TEST_F(DownloadTest, TheTimeLimitClosesTheImporterAndFallsBackToTheVisualForm)
{
    importer.onStart = {};
    session->downloadLimitSeconds = 3;
    pressBank();
    for (int i = 0; i < 3; ++i)
        session->timerMessageChecker_Timer();
    EXPECT_TRUE(session->downloading()) << "the limit itself is still waited";
    EXPECT_EQ(importer.closes, 0);
    session->timerMessageChecker_Timer();
    EXPECT_EQ(importer.closes, 1);
    expectVisualFallBack(QStringLiteral("לא התקבלו נתונים בתוך 1 דקות."));

    // Leaving the visual form; the next session tries the download anew.
    pressBank();
    EXPECT_FALSE(session->active());
    pressBank();
    EXPECT_EQ(importer.starts.size(), 4);
    EXPECT_TRUE(session->downloading());
}

TEST_F(DownloadTest, AnAnswerAtTheLastTickCountsAsSuccess)
{
    importer.onStart = {};
    session->downloadLimitSeconds = 2;
    pressBank();
    session->timerMessageChecker_Timer();
    session->timerMessageChecker_Timer();
    makeFeed(mizrahi, statement);
    messages.setCaption(QStringLiteral("pelkor OK"));
    // Written just before the importer ended: still an answer.
    importer.alive = false;
    session->timerMessageChecker_Timer();
    EXPECT_TRUE(session->pairing());
    EXPECT_EQ(importer.closes, 0);
}

TEST_F(DownloadTest, AnImporterThatGivesUpCrashesOrNeverStartsLeadsToTheVisualForm)
{
    struct Case {
        const char* name;
        std::function<void()> play;
        QString reason;
        int closes;
    };
    const QList<Case> cases{
        {"closed", [this] { importer.onStart = [this] { messages.setCaption(QStringLiteral("pelkor CLOSED")); }; }, QString(), 0},
        {"crashed", [this] { importer.onStart = [this] { importer.alive = false; importer.crash = true; }; },
         QStringLiteral("תוכנת קליטת דפי החשבון קרסה."), 0},
        {"ended silently", [this] { importer.onStart = [this] { importer.alive = false; importer.code = 2; }; },
         QStringLiteral("תוכנת קליטת דפי החשבון הסתיימה בלי למסור נתונים (קוד 2)."), 0},
        {"never started", [this] { importer.starting = false; },
         QStringLiteral("תוכנת קליטת דפי החשבון לא הופעלה (\u2068/opt/pelkor/runIt\u2069)."), 0},
        {"not prepared", [this] { importer.prepares = false; },
         QStringLiteral("תוכנת קליטת דפי החשבון לא הופעלה (\u2068/opt/pelkor/runIt\u2069)."), 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        importer = PlayedImporter{};
        toHost.clear();
        QFile::remove(transcript());
        scripted({});
        c.play();
        pressBank();
        if (session->downloading())
            session->timerMessageChecker_Timer();
        expectVisualFallBack(c.reason);
        EXPECT_EQ(importer.closes, c.closes);
        pressBank();   // "יציאה": back to the full screen for the next case
        ASSERT_FALSE(session->active());
    }
}

TEST_F(DownloadTest, AFeedThatIsNotTheBanksIsToldAndTheFileStaysAsItWas)
{
    // A feed of another bank's table.
    importer.onStart = [this] {
        const QString path = tempPath + QStringLiteral("atl613o4.dll");
        QFile::remove(path);
        store::Connection cn;
        cn.open(path, store::Connection::OpenMode::ReadWriteCreate);
        cn.executeRaw(schema::feedScript({QStringLiteral("poalimOsh")}));
        messages.setCaption(QStringLiteral("pelkor OK"));
    };
    pressBank();
    session->timerMessageChecker_Timer();
    expectRefusedFeed(QStringLiteral("בקובץ נתוני הבנק אין טבלה mizrahiOsh"));
}

TEST_F(DownloadTest, AnAnswerWithoutAFeedIsToldAndTheFileStaysAsItWas)
{
    importer.onStart = [this] { messages.setCaption(QStringLiteral("pelkor OK")); };
    QFile::remove(tempPath + QStringLiteral("atl613o4.dll"));
    pressBank();
    session->timerMessageChecker_Timer();
    expectRefusedFeed(QStringLiteral("לא נמצא"));
}

TEST_F(DownloadTest, ABankRowWithoutABalanceIsToldAndTheFileStaysAsItWas)
{
    importer.onStart = [this] {
        makeFeed(mizrahi, statement + QStringLiteral("INSERT INTO mizrahiOsh VALUES ('1', 4, '2025-05-08', 'd', 'fee', 0, 5, NULL, 0);"));
        messages.setCaption(QStringLiteral("pelkor OK"));
    };
    pressBank();
    session->timerMessageChecker_Timer();
    expectRefusedFeed(QStringLiteral("בשורה 4 של נתוני הבנק שהתקבלו (מתאריך 08/05/2025) חסרה היתרה שבבנק"));
    EXPECT_FALSE(session->bank.lastRow() > 0 && session->shown.bankGridVisible);
}

TEST_F(DownloadTest, AFeedEmptiedOrRemovedDuringTheSessionLeavesTheBankGridItsRows)
{
    pressBank();
    session->timerMessageChecker_Timer();
    ASSERT_TRUE(session->pairing());
    // Another run took the feed away; the closing proof fails (a sum of
    // the working table changed) and reads the feed again for the
    // disagreement screen.
    QFile::remove(tempPath + QStringLiteral("atl613o4.dll"));
    led.cn.execute(QStringLiteral("UPDATE tempPelkor SET out=250 WHERE id=3"));
    session->compareFinalBalances();
    EXPECT_TRUE(prompts().join(u'\n').contains(QStringLiteral("ההתאמה האוטומטית נכשלה")));
    EXPECT_TRUE(session->shown.cmdGoToAutomaticCoordination);
    EXPECT_EQ(session->bank.lastRow(), 3);
    EXPECT_EQ(pelkorRows(), before);
}

// ---- a session killed before it ended ----------------------------------------------

TEST_F(DownloadTest, AWorkingTableLeftByAKilledSessionIsToldOnceWithHowToBringTheStatementAgain)
{
    {
        store::Connection cn;
        cn.open(file);
        cn.executeRaw(QStringLiteral("CREATE TABLE tempPelkor AS SELECT * FROM pelkor; UPDATE tempPelkor SET zee='coord2';"));
    }
    session->noticeInterruptedSession();
    const QString told = prompts().join(u'\n');
    EXPECT_TRUE(told.contains(QStringLiteral("התאמת הבנק הקודמת של 'shop' נקטעה לפני שהושלמה. הקובץ נשאר כפי שהיה לפניה")))
        << told.toStdString();
    EXPECT_TRUE(told.contains(QStringLiteral("וקלוט שוב את דף החשבון בחלון \"עידכון נתונים\""))) << told.toStdString();
    EXPECT_EQ(query(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE name='tempPelkor'")), QStringLiteral("0"));
    EXPECT_EQ(pelkorRows(), before);
    QFile::remove(transcript());
    session->noticeInterruptedSession();
    EXPECT_TRUE(prompts().isEmpty()) << "told once";
}

TEST_F(DownloadTest, AnotherRunsLiveSessionIsNoInterruptedOne)
{
    // The other run: a session open on the same file, its lock held.
    pressBank();
    session->timerMessageChecker_Timer();
    ASSERT_TRUE(session->pairing());
    Instance otherInst;
    MainGrid otherMain;
    Shown otherShown;
    Trace otherTrace{QString(), QString()};
    OpenLedger other{otherTrace};
    other.filePath = file;
    other.cn.open(file);
    other.isCnOpen = true;
    RecordingWindow otherWindow;
    web::ScriptedWebView otherWeb;
    Session second(SessionParts{other, otherInst, otherMain, otherShown, forward, otherWindow,
                                [&]() -> web::WebView& { return otherWeb; }, tempPath, dir.path(), QDate(2025, 5, 11)});
    QFile::remove(transcript());
    second.noticeInterruptedSession();
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join(u'\n').toStdString();
    EXPECT_FALSE(second.mayDropWorkingTables());
    EXPECT_EQ(query(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE name='tempPelkor'")), QStringLiteral("1"));
    EXPECT_TRUE(session->mayDropWorkingTables());
}

} // namespace
