// The menus and buttons each kind of instance shows, and the frame's own
// menu entries on a real file.
#include "frame/Controls.h"
#include "base/Instance.h"
#include "file/LoadFixture.h"

using namespace pelkor;
using namespace pelkor::testing;

TEST(Controls, EachInstanceShowsOnlyWhatItMayDo)
{
    Instance f;
    f.progMode = modeFullScreen;
    EXPECT_FALSE(shownControls(f).cmdDelAll);
    EXPECT_TRUE(shownControls(f).mnuOpen);
    // Under an outer host the actions, settings and files are the host's.
    f.isFromKelvanto = true;
    ShownControls s = shownControls(f);
    EXPECT_FALSE(s.mnuActions || s.mnuDefs || s.mnuOpen);
    EXPECT_TRUE(s.mnuReports);
    f.isFromKelvanto = false;
    // A merged file can be neither reconciled nor given a zeroing line.
    f.isMerged = true;
    s = shownControls(f);
    EXPECT_FALSE(s.cmdBankCoordination || s.mnuSetIpusLine);
    f.isMerged = false;

    // A detail child: the forecast button only for a selection by kind or type.
    f.progMode = modeDetail;
    f.detail.kind = detailDay;
    s = shownControls(f);
    EXPECT_FALSE(s.mnuFile || s.cmdIpus || s.cmdBankCoordination || s.cmdTzefi || s.cmdOK);
    EXPECT_TRUE(s.childWindow && s.cmdDel);
    f.detail.kind = detailOfType;
    EXPECT_TRUE(shownControls(f).cmdTzefi);

    // A new-line child deletes its own lines, never bank rows; "delete all"
    // is for bad lines only.
    f.progMode = modeNewLines;
    for (NewLineDialogType t : {lineDialogMultiplePelkorOneBank, lineDialogUnconfirmedBank})
        EXPECT_FALSE(shownControls((f.newLineDialogType = t, f)).cmdDel) << t;
    for (NewLineDialogType t : {lineDialogUnconfirmedPelkor, lineDialogBadLines})
        EXPECT_TRUE(shownControls((f.newLineDialogType = t, f)).cmdDel) << t;
    EXPECT_TRUE(shownControls(f).cmdDelAll && shownControls(f).cmdOK);
    f.newLineDialogType = lineDialogUnconfirmedBank;
    EXPECT_FALSE(shownControls(f).cmdDelAll);
}

TEST_F(LoadTest, TheTraceEntryTogglesAndExitWritesIt)
{
    makeLedger(sampleLines());
    frmMain& f = start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(f.ended());
    EXPECT_FALSE(f.shown().mnuCreateLogFileChecked);
    f.mnuCreateLogFile_Click();
    EXPECT_TRUE(f.shown().mnuCreateLogFileChecked);
    EXPECT_FALSE(f.trace().noTrace());
    f.mnuCreateLogFile_Click();
    f.mnuCreateLogFile_Click();
    f.exitProg();
    platform::ProfileFile ini(platform::Paths::under(dir.path()).iniFile());
    EXPECT_EQ(ini.readString(QStringLiteral("misc"), QStringLiteral("debug")), QStringLiteral("1"));
}

TEST_F(LoadTest, ResettingTheBankDataUnbindsTheFile)
{
    makeLedger(sampleLines());
    {
        store::Connection cn;
        cn.open(file, store::Connection::OpenMode::ReadWrite);
        cn.executeRaw(QStringLiteral("UPDATE Defaults SET iBank=3, accountNum='12-345-678';"));
    }
    frmMain& f = start({QStringLiteral("open"), file}, QString());
    ASSERT_FALSE(f.ended());
    f.mnuResetBankData_Click();
    EXPECT_EQ(f.ledger().iBank, -1);
    EXPECT_EQ(f.ledger().accountNum, QStringLiteral("(none)"));
    EXPECT_EQ(query(QStringLiteral("SELECT iBank, accountNum FROM Defaults")), QStringLiteral("0|(none)"));
    ASSERT_FALSE(prompts().isEmpty());
    EXPECT_EQ(prompts().last(), QStringLiteral("msgbox|פלקור|נתוני החשבון אופסו|OK"));
}
