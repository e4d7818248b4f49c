// The move-or-copy dialog and the invoice kinds dialog as a user sees
// them: the invoice kinds' boxes ticked on the engine's page and read back
// at OK. Screenshots: <build>/screenshots/frmMoveOrCopy.png,
// frmInvoiceKinds.png.
#include "app/reports/frmInvoiceKindsView.h"
#include "app/transfer/frmMoveOrCopyView.h"
#include "app/web/QtWebView.h"
#include "file/Lines.h"
#include "seams/ui/DialogRules.h"
#include "seams/ui/ScriptedUi.h"
#include "views/ViewWait.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

TEST(TransferWindows, MoveOrCopyEnablesOKOnceATargetIsChosen)
{
    QTemporaryDir dir;
    const QString target = dir.filePath(QStringLiteral("שני.pkr"));
    ui::ScriptedUi ui(ui::DialogRules::parse(QStringLiteral("בחר קובץ יעד => ") + target), QString(), {});
    transfer::frmMoveOrCopy logic(ui, dir.filePath(QStringLiteral("ראשי.pkr")), dir.path(), {});
    ui::frmMoveOrCopyView view(logic);
    view.show();
    auto* ok = view.findChild<QPushButton*>(QStringLiteral("cmdOK"));
    ASSERT_NE(ok, nullptr);
    EXPECT_FALSE(ok->isEnabled());
    view.findChild<QRadioButton*>(QStringLiteral("optMove"))->click();
    view.findChild<QPushButton*>(QStringLiteral("cmdBrowse"))->click();
    EXPECT_TRUE(ok->isEnabled());
    EXPECT_TRUE(logic.isMove());
    EXPECT_EQ(view.findChild<QLineEdit*>(QStringLiteral("txtFileName"))->text(), QStringLiteral("שני.pkr"));
    EXPECT_EQ(ok->accessibleName().isEmpty() ? ok->text() : ok->accessibleName(), QStringLiteral("אישור"));
    pause(200);
    view.grab().save(shot(QStringLiteral("frmMoveOrCopy.png")));
}

TEST(TransferWindows, InvoiceKindsReadsTheTicksOfTheEnginesPages)
{
    QTemporaryDir dir;
    Catalogue c;
    c.categories = QStringList{QStringLiteral("+0"), QStringLiteral("+1"), QStringLiteral("+2"),
                               QStringLiteral("-0"), QStringLiteral("-1"), QStringLiteral("-2")};
    c.categoryDescs = QStringList{QStringLiteral("איזון ועיגול"), QStringLiteral("מכירות"), QStringLiteral("לקוחות"),
                                  QStringLiteral("איזון ועיגול"), QStringLiteral("ספקים וחומרים"), QStringLiteral("משכורות")};
    reports::frmInvoiceKinds logic(c, QStringLiteral("+2,"), dir.path());
    ui::frmInvoiceKindsView view(logic);
    ASSERT_TRUE(logic.Form_Load());
    view.show();
    auto* wb1 = view.findChild<web::QtWebView*>(QStringLiteral("wbKinds1"));
    ASSERT_NE(wb1, nullptr);
    ASSERT_TRUE(waitFor([&] { return wb1->isComplete(); }, 60000));
    auto* wb0 = view.findChild<web::QtWebView*>(QStringLiteral("wbKinds0"));
    ASSERT_TRUE(waitFor([&] { return wb0->isComplete(); }, 60000));
    EXPECT_TRUE(wb0->checked(QStringLiteral("knd2")));
    // The user ticks ספקים on the expense page.
    wb1->execScript(QStringLiteral("document.getElementById('knd4').click();"));
    ASSERT_TRUE(waitFor([&] { return wb1->checked(QStringLiteral("knd4")); }));
    pause(300);
    view.grab().save(shot(QStringLiteral("frmInvoiceKinds.png")));
    view.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    EXPECT_EQ(logic.invoiceCategs(), QStringLiteral("+2,-1,"));
}
