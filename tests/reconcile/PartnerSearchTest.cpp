// The search for a partner during a pairing: the current cell's text is
// looked for in the other grid's column below its red line, paired rows
// passed over, references compared by their last digits.
#include "DemoSessionFiles.h"

#include "seams/web/ScriptedWebView.h"

using namespace pelkor;
using namespace pelkor::testing;

namespace {

class PartnerSearch : public GridTest {
protected:
    void SetUp() override
    {
        GridTest::SetUp();
        const QString feed = dir.filePath(QStringLiteral("feed.mdb"));
        makeFiles(file, feed);
        placeProgramFiles(dir.filePath(QStringLiteral("program")), feed);
        start({QStringLiteral("open"), file}, QStringLiteral("נמצא חשבון אחד => Yes\n"));
        ASSERT_FALSE(m->ended());
        m->setBankPage(&page);
        m->cmdBankCoordination_Click();
        page.sendEvent(QStringLiteral("0"));
        ASSERT_TRUE(m->session().pairing());
    }
    grid::GridModel& bank() { return m->session().bank.msfgBank; }
    web::ScriptedWebView page;
};

TEST_F(PartnerSearch, ALinesReferenceFindsItsBankRowAndTheSearchWalksOn)
{
    // Line 12's reference "12" is in bank row 12's reference column, and
    // (by its last digits) nowhere else below the red line but row 12.
    go(12, colConfirm);
    m->setBankGridActive(false);
    m->cmdSpecialFind_Click();
    EXPECT_TRUE(m->session().shown.cmdNext);
    EXPECT_EQ(bank().Row(), 12);
    EXPECT_EQ(bank().Col(), colConfirm);

    // From the bank's side, the detail's words look in the file.
    m->setBankGridActive(true);
    bank().setRow(20);
    bank().setCol(colIn);
    m->session().shown.cmdNext = false;
    m->cmdSpecialFind_Click();
    EXPECT_TRUE(m->session().shown.cmdNext);
    EXPECT_EQ(g().Row(), 20);

    // A paired row is passed over: pair line 20 with bank row 20, then
    // search its sum again.
    m->msfgMainMarkClicked();
    bank().setRow(20);
    m->msfgBankMarkClicked();
    m->cmdCoordinate_Click();
    ASSERT_EQ(m->session().links.rowLinks.size(), 1u);
    m->session().shown.cmdNext = false;
    bank().setRow(20);
    m->cmdSpecialFind_Click();
    EXPECT_FALSE(m->session().shown.cmdNext);
    EXPECT_TRUE(prompts().last().contains(QStringLiteral("לא נמצאה התאמה ל-"))) << prompts().last().toStdString();
}

} // namespace
