// The invoice kinds: the pages, the ticks read back at OK, and what the
// menu entry writes to the file.
#include "file/LoadFixture.h"
#include "reports/frmInvoiceKinds.h"

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

class InvoiceKinds : public LoadTest {
protected:
    void open(const QString& rules)
    {
        makeLedger(QStringLiteral(
            "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
            "(1,'+1','2025-03-01','11','מכירה',1000,0,1,'ZZZZZZZZZZ','ללא צבע');"));
        start({QStringLiteral("open"), file}, rules);
    }
    QString stored() { return query(QStringLiteral("SELECT detail FROM invoiceCategs")); }
};

} // namespace

TEST_F(InvoiceKinds, OKWritesTheTickedKindsInPageOrderAndTheNextLoadReadsThem)
{
    // The file's list is "+1" without its comma, so nothing is ticked;
    // the kinds run +0..+8 (indices 0..8), then -0..-8. Ticked in any
    // order, they are written in the pages' order.
    open(QStringLiteral("frmInvoiceKinds => knd12=1;knd2=0;knd4=1;cmdOK=1\n"));
    EXPECT_EQ(m->ledger().theInvoiceCategs, QStringLiteral("+1"));
    m->mnuInvoiceKinds_Click();
    EXPECT_EQ(stored(), QStringLiteral("+4,-3,"));
    m->cmdRefresh_Click();
    EXPECT_EQ(m->ledger().theInvoiceCategs, QStringLiteral("+4,-3,"));
}

TEST_F(InvoiceKinds, CancelOrNoChangeWritesNothing)
{
    open(QStringLiteral("frmInvoiceKinds => knd4=1;cmdCancel=1\n"));
    m->ledger().theInvoiceCategs = QStringLiteral("+1,");
    const QString before = stored();
    m->mnuInvoiceKinds_Click();
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(m->ledger().theInvoiceCategs, QStringLiteral("+1,"));
}

TEST(InvoiceKindsPage, TheTicksFollowThePlainSearchAndAnEmptyListTicksNothing)
{
    Catalogue c;
    c.categories = QStringList{QStringLiteral("+1"), QStringLiteral("+11"), QStringLiteral("-1")};
    c.categoryDescs = QStringList{QStringLiteral("מכירות <א>"), QStringLiteral("אחר"), QStringLiteral("ספקים")};
    QTemporaryDir dir;
    reports::frmInvoiceKinds empty(c, QString(), dir.path());
    ASSERT_TRUE(empty.Form_Load());
    for (int k = 0; k < 3; ++k)
        EXPECT_FALSE(empty.wbKinds(k < 2 ? 0 : 1).checked(QStringLiteral("knd%1").arg(k))) << k;
    // "+11," holds "1,", not "+1,": only +11 is ticked, and -1 by its own entry.
    reports::frmInvoiceKinds some(c, QStringLiteral("+11,-1,"), dir.path());
    ASSERT_TRUE(some.Form_Load());
    EXPECT_FALSE(some.wbKinds(0).checked(QStringLiteral("knd0")));
    EXPECT_TRUE(some.wbKinds(0).checked(QStringLiteral("knd1")));
    EXPECT_TRUE(some.wbKinds(1).checked(QStringLiteral("knd2")));
    // Names are words, never markup; income on the green page.
    const QString page = reports::invoiceKindsPage(c.categories, c.categoryDescs, {0}, QString(), QStringLiteral("#d0ffd0"));
    EXPECT_TRUE(page.contains(QStringLiteral("מכירות &lt;א&gt;")));
    EXPECT_TRUE(page.contains(QStringLiteral("background-color: #d0ffd0; padding-left:7\">&nbsp;&nbsp;&nbsp;&nbsp;<input id=knd0 type=checkbox onclick=event_handler('knd0')>")));
    some.click(QStringLiteral("cmdOK"));
    EXPECT_EQ(some.invoiceCategs(), QStringLiteral("+11,-1,"));
}
