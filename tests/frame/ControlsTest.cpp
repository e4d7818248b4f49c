// The menus and buttons each kind of instance shows, and the frame's own
// menu entries on a real file.
#include "frame/Controls.h"
#include "base/Instance.h"
#include "file/LoadFixture.h"

using namespace pelkor;
using namespace pelkor::testing;

TEST(Controls, FollowTheInstance)
{
    Instance f;
    f.progMode = modeFullScreen;

    // A working run: the full menus, "יציאה", no child buttons.
    ShownControls s = shownControls(f);
    EXPECT_TRUE(s.mnuFile && s.mnuReports && s.mnuOpenAnotherPelkor && s.mnuActions && s.mnuDefs);
    EXPECT_TRUE(s.cmdBankCoordination && s.mnuPerformBankCoordination && s.cmdIpus);
    EXPECT_EQ(s.mnuCloseCaption, QStringLiteral("יציאה"));
    EXPECT_FALSE(s.cmdOK || s.cmdCancel || s.childWindow);
    EXPECT_TRUE(s.cmdTzefi && s.cmdSubtractFromTzefi);

    // Under an outer host the actions and settings are the host's.
    f.isFromKelvanto = true;
    s = shownControls(f);
    EXPECT_FALSE(s.mnuActions || s.mnuDefs);
    EXPECT_TRUE(s.mnuReports);
    f.isFromKelvanto = false;

    // A merged file cannot be reconciled.
    f.isMerged = true;
    EXPECT_FALSE(shownControls(f).cmdBankCoordination);
    f.isMerged = false;

    // Reconciliation: its own caption for the entry that ends it.
    f.progMode = modeSplitScreen;
    s = shownControls(f);
    EXPECT_TRUE(s.mnuCloseCaption.isEmpty());
    EXPECT_EQ(s.mnuPerformBankCoordinationCaption, QStringLiteral("סיים התאמה"));
    EXPECT_TRUE(s.cmdTzefi && s.cmdSubtractFromTzefi && s.cmdReport);

    // A detail child: no menus, a small window; the forecast button only
    // for a selection by kind or type.
    f.progMode = modeDetail;
    f.detail.kind = detailDay;
    s = shownControls(f);
    EXPECT_FALSE(s.mnuFile || s.mnuHelp || s.mnuReports || s.mnuResetBankData || s.cmdIpus || s.cmdGoToIpusLine
                 || s.cmdReport || s.cmdBankCoordination || s.cmdTzefi || s.cmdOK);
    EXPECT_TRUE(s.childWindow);
    f.detail.kind = detailOfType;
    EXPECT_TRUE(shownControls(f).cmdTzefi);

    // A new-line child: OK and Cancel, and "delete all" for bad lines only.
    f.progMode = modeNewLines;
    f.newLineDialogType = lineDialogUnconfirmedBank;
    s = shownControls(f);
    EXPECT_TRUE(s.cmdOK && s.cmdCancel && s.childWindow);
    EXPECT_FALSE(s.cmdDelAll || s.cmdTzefi);
    f.newLineDialogType = lineDialogBadLines;
    EXPECT_TRUE(shownControls(f).cmdDelAll);
}

TEST(Controls, DeletingAndTheZeroingLineShowWhereTheyWork)
{
    Instance f;
    f.progMode = modeFullScreen;
    ShownControls s = shownControls(f);
    EXPECT_TRUE(s.cmdDel && s.cmdIpus && s.cmdGoToIpusLine && s.mnuSetIpusLine);
    EXPECT_FALSE(s.cmdDelAll);
    // A merged file has no zeroing line to set.
    f.isMerged = true;
    EXPECT_FALSE(shownControls(f).mnuSetIpusLine);
    f.isMerged = false;
    // A child deletes where its lines may go: a detail selection, the
    // unconfirmed and the bad lines of a new-line child, never bank rows.
    f.progMode = modeDetail;
    EXPECT_TRUE(shownControls(f).cmdDel);
    f.progMode = modeNewLines;
    for (NewLineDialogType t : {lineDialogMultiplePelkorOneBank, lineDialogUnconfirmedBank})
        EXPECT_FALSE(shownControls((f.newLineDialogType = t, f)).cmdDel) << t;
    for (NewLineDialogType t : {lineDialogUnconfirmedPelkor, lineDialogBadLines})
        EXPECT_TRUE(shownControls((f.newLineDialogType = t, f)).cmdDel) << t;
    EXPECT_EQ(controlCaption(QStringLiteral("cmdDelAll")), QStringLiteral("מחק הכל"));
    EXPECT_EQ(controlCaption(QStringLiteral("cmdIpus")), controlCaption(QStringLiteral("mnuSetIpusLine")));
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
