// A working run's files: the start with no current file, the File menu,
// the setting written at exit, and another process's writes seen.
#include "file/LoadFixture.h"

#include <QDir>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

const QString fourLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo,relate,IndTzefi) VALUES "
    "(1,'+1','2025-03-01','11','מכירה',1000,0,1,' ','ללא צבע',0,0),"
    "(2,'-1','2025-03-02','12','ספק',0,300,2,'ZZZZZZZZZZ','ללא צבע',0,0),"
    "(3,'+2','2025-03-05','13','שירות',200,0,1,' ','ללא צבע',0,0),"
    "(4,'-2','2025-03-10','14','משכורת',0,500,2,' ','ללא צבע',0,0);");

const QString chooseTitle = QStringLiteral("בחר קובץ פלקור, או הקלד שם לקובץ חדש");

} // namespace

TEST_F(LoadTest, ExitWritesTheCheckMarkOverAnyStoredIsAuto)
{
    makeLedger(fourLines);
    store::Connection cn;
    cn.open(file);
    cn.executeRaw(QStringLiteral("UPDATE Defaults SET isAuto=5; INSERT INTO Defaults (Credit, isAuto) VALUES (0, NULL);"));
    cn.close();
    start({QStringLiteral("open"), file}, QString());
    ASSERT_TRUE(m->shown().visible);
    EXPECT_FALSE(m->shown().mnuAutomaticBankCoordinationChecked);
    m->exitProg();
    EXPECT_EQ(query(QStringLiteral("SELECT isAuto FROM Defaults")), QStringLiteral("0;0"));
}

TEST_F(LoadTest, AStartWithNoCurrentFileAsksForALedgerOrMakesOne)
{
    // Cancelled: the run ends, nothing is written.
    start({QStringLiteral("open")}, QString());
    EXPECT_TRUE(m->ended());
    EXPECT_EQ(endCode, 0);
    EXPECT_EQ(prompts(), QStringList{QStringLiteral("open|%1|פלקור (*.pkr)|*.pkr|Cancel").arg(chooseTitle)});

    // A ledger chosen: the working run goes on on it.
    makeLedger(fourLines);
    start({QStringLiteral("open")}, QStringLiteral("בחר קובץ פלקור => ") + file);
    ASSERT_FALSE(m->ended());
    EXPECT_EQ(m->instance().progMode, modeFullScreen);
    EXPECT_EQ(m->ledger().filePath, file);
    EXPECT_EQ(m->ledger().lines.size(), 4u);
    EXPECT_TRUE(m->shown().visible);
    EXPECT_EQ(m->recentFiles(), QStringList{file});

    // A name with no file: after a yes, a new ledger under it.
    const QString fresh = dir.filePath(QStringLiteral("חדש.pkr"));
    start({QStringLiteral("open")},
          QStringLiteral("בחר קובץ פלקור => %1\nאינו קיים => Yes\n").arg(dir.filePath(QStringLiteral("חדש"))));
    ASSERT_FALSE(m->ended());
    EXPECT_EQ(m->ledger().filePath, fresh);
    ASSERT_EQ(m->ledger().lines.size(), 1u);
    EXPECT_EQ(m->ledger().lines[0].detail, QStringLiteral("יתרה התחלתית"));
    EXPECT_EQ(m->recentFiles(), (QStringList{fresh, file}));
    EXPECT_TRUE(prompts().contains(
        QStringLiteral("msgbox|פלקור|הקובץ \"\u2068חדש.pkr\u2069\" אינו קיים.\\nליצור בשם זה קובץ פלקור חדש?|Yes")))
        << prompts().join(QLatin1Char('\n')).toStdString();
}

TEST_F(LoadTest, TheFileMenuStartsAWorkingRunOnTheChosenFileInPlaceOfThisOne)
{
    makeLedger(fourLines);
    const QString other = dir.filePath(QStringLiteral("other.pkr"));
    schema::createLedger(other, QDate(2025, 6, 1));
    const QString rules = QStringLiteral("בחר קובץ פלקור => %1\nקובץ פלקור חדש => %2\n")
                              .arg(other, dir.filePath(QStringLiteral("third")));
    start({QStringLiteral("open"), other}, rules);
    start({QStringLiteral("open"), file}, rules);
    EXPECT_EQ(m->recentFiles(), (QStringList{file, other}));
    m->mnuOpen_Click();
    EXPECT_TRUE(m->ended());

    start({QStringLiteral("open"), file}, rules);
    m->mnuNew_Click();
    const QString third = dir.filePath(QStringLiteral("third.pkr"));
    EXPECT_TRUE(QFileInfo::exists(third));
    EXPECT_TRUE(m->ended());

    start({QStringLiteral("open"), file}, rules);
    m->mnuRecent_Click(2);
    // The menu's own file is read again; no other run starts for it.
    start({QStringLiteral("open"), file}, rules);
    m->mnuRecent_Click(1);
    EXPECT_FALSE(m->ended());
    EXPECT_EQ(startedInstances, (QList<QStringList>{{QStringLiteral("open"), other},
                                                    {QStringLiteral("open"), third},
                                                    {QStringLiteral("open"), other}}));
}

TEST_F(LoadTest, AnIdleWindowReloadsWhenAnotherProcessWritesItsFileKeepingItsLine)
{
    makeLedger(fourLines);
    start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    grid::GridModel& g = m->mainGrid().msfgMain;
    g.setRow(3);
    g.setCol(colDetail);
    m->msfgMain_EnterCell();
    const QString id = m->ledger().lines[2].Id;

    // Another process adds a line above the cursor's.
    store::Connection other;
    other.open(file);
    const auto addLine = [&](const QString& detail) {
        other.execute(QStringLiteral("INSERT INTO pelkor (kind,[date],confirm,detail,[in],out,TypeNum,zee,memo) "
                                     "VALUES ('+1',#2/1/2025#,'9','%1',5,0,1,' ','ללא צבע')").arg(detail));
    };
    addLine(QStringLiteral("ראשון"));
    QElapsedTimer t;
    t.start();
    while (m->ledger().lines.size() == 4 && t.elapsed() < 20000)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    ASSERT_EQ(m->ledger().lines.size(), 5u);
    EXPECT_EQ(m->ledger().lines[size_t(g.Row() - 1)].Id, id);

    // An open editor keeps its text; the reload comes when it closes.
    m->editor().GridEdit(QChar(u'ש'));
    ASSERT_TRUE(m->editState().txtCell.visible);
    addLine(QStringLiteral("שני"));
    m->timerWatchFile_Timer();
    EXPECT_EQ(m->ledger().lines.size(), 5u);
    EXPECT_TRUE(m->editState().txtCell.visible);
    m->editor().txtCell_KeyDown(Qt::Key_Escape, Qt::NoModifier);
    m->timerWatchFile_Timer();
    EXPECT_EQ(m->ledger().lines.size(), 6u);
    EXPECT_EQ(m->ledger().lines[size_t(g.Row() - 1)].Id, id);

    // Its own writes are no news.
    int loads = 0;
    QObject::connect(m.get(), &frmMain::loaded, [&] { ++loads; });
    m->ledger().cn.execute(QStringLiteral("UPDATE pelkor SET detail='x' WHERE id=1"));
    m->timerWatchFile_Timer();
    EXPECT_EQ(loads, 0);
}
