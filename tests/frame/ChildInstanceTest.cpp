// A new-line child and the texts an instance takes from other processes.
#include "file/LoadFixture.h"

using namespace pelkor;
using namespace pelkor::testing;

namespace {

class ChildTest : public LoadTest {
protected:
    frmMain& startWithBus(const QStringList& args, const QString& rules)
    {
        busOverride = &bus;
        return start(args, rules);
    }
    RecordingBus bus;
};

const QString badSums = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','1','a',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
    "(2,'+1','2025-03-02','2','b','12,x',0,1,' ','ללא צבע'),"
    "(3,'-1','2025-03-03','3','c',0,'abc',2,' ','ללא צבע'),"
    "(4,'-77','2025-03-03','4','d',0,'zz',2,' ','ללא צבע');");

} // namespace

TEST_F(ChildTest, BadLinesChildOkZeroesTheSumsAndTellsItsParent)
{
    makeLedger(badSums);
    const QString cmd = QStringLiteral("new3 1234abcd 00000000 00000000 ") + file;
    startWithBus(splitCommand(cmd, 4), QStringLiteral("frmMain.*mode 4 type 3 => cmdOK"));
    EXPECT_EQ(m->instance().progMode, 4);
    EXPECT_EQ(m->instance().newLineDialogType, 3);
    // Only the bad lines of valid kinds, and the label that says why.
    ASSERT_EQ(m->ledger().lines.size(), 2u);
    EXPECT_EQ(m->shown().lblNewLines, QStringLiteral("בתנועות אלה חסר תאריך או סכום ולכן בכל שורה יש למלא תאריך/סכום או למחוק אותה."));
    runUntilEnded();
    EXPECT_EQ(bus.sent, QStringList{QStringLiteral("1234abcd pelkor OK")});
    // Every sum that is no number becomes 0, in lines of any kind.
    EXPECT_EQ(query(QStringLiteral("SELECT id, [in], out FROM pelkor WHERE id IN (2,3,4) ORDER BY id")),
              QStringLiteral("2|0|0;3|0|0;4|0|0"));
    EXPECT_EQ(windows(), QStringList{QStringLiteral("window|frmMain|פלקור - shop | mode 4 type 3|cmdOK")});
}

TEST_F(ChildTest, ChildWithoutDatesCannotConfirmButCanCancel)
{
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+1','2025-03-01','1','a',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(2,'+1','מחר','2','b',5,0,1,' ','ללא צבע');"));
    startWithBus(splitCommand(QStringLiteral("new3 1234abcd 00000000 00000000 ") + file, 4), QString());
    m->cmdOK_Click();
    EXPECT_FALSE(m->ended());
    EXPECT_TRUE(bus.sent.isEmpty());
    EXPECT_EQ(prompts().value(0), QStringLiteral("msgbox|שגיאה|בשורה זו עדיין חסר תאריך ולכן יש למלא בה תאריך או למחוק אותה|OK"));
    m->cmdCancel_Click();
    EXPECT_TRUE(m->ended());
    // A new-line child tells only its parent, never the host, and keeps the file as it was.
    EXPECT_EQ(bus.sent, QStringList{QStringLiteral("1234abcd pelkor CLOSED")});
    EXPECT_EQ(query(QStringLiteral("SELECT date FROM pelkor WHERE id=2")), QStringLiteral("מחר"));
}

TEST_F(ChildTest, TextsTheMainWindowTakes)
{
    makeLedger(sampleLines());
    startWithBus({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(m->ended());
    EXPECT_TRUE(m->txtMessage_Change(QStringLiteral("ltrb 25 300 770 300")));
    EXPECT_EQ(m->shown().ltrb, QRect(25, 300, 770, 300));

    // "refresh" reloads through the load and lands on the same line.
    m->mainGrid().row = 3;
    m->mainGrid().topRow = 2;
    store::Connection cn;
    cn.open(file);
    cn.execute(QStringLiteral("INSERT INTO pelkor (kind,[date],confirm,detail,[in],out,TypeNum,zee,memo) "
                              "VALUES ('+1',#2/1/2025#,'9','קודם',5,0,1,' ','ללא צבע')"));
    cn.close();
    const QString id = m->ledger().lines[2].Id;
    EXPECT_TRUE(m->txtMessage_Change(QStringLiteral("refresh")));
    EXPECT_EQ(m->ledger().lines.size(), 5u);
    EXPECT_EQ(m->ledger().lines[size_t(m->mainGrid().row - 1)].Id, id);
    EXPECT_EQ(m->mainGrid().row - m->mainGrid().topRow, 1);

    // "close" ends the instance; the host (none here) hears nothing.
    EXPECT_TRUE(m->txtMessage_Change(QStringLiteral("close")));
    EXPECT_TRUE(m->ended());
    EXPECT_TRUE(bus.sent.isEmpty());
}

TEST_F(ChildTest, DetailChildTellsWhetherItChangedTheFile)
{
    // A clean file: a load that repairs nothing changes nothing.
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+1','2025-03-01','1','a',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(2,'-1','2025-03-01','2','b',0,4,2,' ','ללא צבע'),"
        "(3,'-1','2025-03-02','3','c',0,4,2,' ','ללא צבע');"));
    const QString cmd = QStringLiteral("detail 0000beef 2 01/03/2025 0.0000 ") + file;
    for (const bool change : {false, true}) {
        bus.sent.clear();
        startWithBus(cmd.split(QLatin1Char(' ')).mid(0, 5) + QStringList{file}, QString());
        ASSERT_FALSE(m->ended());
        EXPECT_EQ(m->instance().progMode, 3);
        EXPECT_EQ(m->shown().lblFileName, QStringLiteral("shop - תנועות לתאריך 01/03/2025 (ללא המרה)"));
        EXPECT_EQ(m->ledger().lines.size(), 2u);
        if (change)
            m->ledger().sql.executeSQL(QStringLiteral("test"), QStringLiteral("UPDATE pelkor SET detail='x' WHERE id=1"));
        m->exitProg();
        EXPECT_EQ(bus.sent, QStringList{QStringLiteral("0000beef ") + (change ? QStringLiteral("closed") : QStringLiteral("nochange"))});
    }
}

// A text from another process must match an entry whole.
TEST(TextTable, OnlyWholeTextsReachAHandler)
{
    EXPECT_EQ(frmMain::txtMessageHandler(QStringLiteral("gotoipus")), frmMain::txtMessageHandler(QStringLiteral("setipus")));
    EXPECT_FALSE(frmMain::txtMessageHandler(QStringLiteral("ltrb 25 300 770 300")).isEmpty());
    for (const char* none : {"nochange", "Refresh", "refresh ", "", "unload"})
        EXPECT_EQ(frmMain::txtMessageHandler(QString::fromUtf8(none)), QString()) << none;
}
