// The move-or-copy dialog, the transfer between accounts and the invoice
// kinds dialog as a user sees them: the invoice kinds' boxes ticked on the
// engine's page and read back at OK. Screenshots:
// <build>/screenshots/frmMoveOrCopy.png, frmTransfer.png,
// frmInvoiceKinds.png.
#include "app/reports/frmInvoiceKindsView.h"
#include "app/grid/GridView.h"
#include "app/transfer/frmMoveOrCopyView.h"
#include "app/transfer/frmTransferView.h"
#include "base/Trace.h"
#include "transfer/TransferTestFiles.h"
#include "app/web/QtWebView.h"
#include "file/Lines.h"
#include "seams/ui/DialogRules.h"
#include "seams/ui/ScriptedUi.h"
#include "views/ViewWait.h"

#include <QKeyEvent>
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

TEST(TransferWindows, TheTransferTypedInItsGridWritesBothFiles)
{
    QTemporaryDir dir;
    const QString a = dir.filePath(QStringLiteral("עסק.pkr")), b = dir.filePath(QStringLiteral("חיסכון.pkr"));
    makeTransferPair(a, b);
    ui::ScriptedUi ui(ui::DialogRules::parse(QStringLiteral("בחר קובץ מקור => ") + a + QStringLiteral("\nבחר קובץ יעד => ") + b),
                      QString(), {});
    Trace trace(dir.path(), QStringLiteral("view"));
    transfer::frmTransfer logic({ui, trace, QDate(2025, 6, 1), dir.path(), QString()});
    ui::frmTransferView view(logic);
    view.show();
    view.findChild<QPushButton*>(QStringLiteral("cmdBrowse0"))->click();
    view.findChild<QPushButton*>(QStringLiteral("cmdBrowse1"))->click();
    EXPECT_EQ(view.findChild<QLineEdit*>(QStringLiteral("txtFileName1"))->text(), QStringLiteral("חיסכון.pkr"));
    auto* ok = view.findChild<QPushButton*>(QStringLiteral("cmdOK"));
    EXPECT_FALSE(ok->isEnabled());
    // Keys as a user types them: the sum in the destination's income cell,
    // then the date; the editor opens on the first character.
    auto* grid = view.grid();
    auto typeKeys = [&](const QString& text) {
        for (QChar c : text) {
            QWidget* target = view.editor()->isVisible() ? static_cast<QWidget*>(view.editor()) : static_cast<QWidget*>(grid);
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
            QCoreApplication::sendEvent(target, &press);
        }
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QCoreApplication::sendEvent(view.editor(), &enter);
    };
    logic.moveTo(transfer::frmTransfer::destRow, transfer::tcIn);
    typeKeys(QStringLiteral("750"));
    EXPECT_EQ(logic.msfg().text(transfer::frmTransfer::sourceRow, transfer::tcOut), QStringLiteral("750.00"));
    logic.moveTo(transfer::frmTransfer::sourceRow, transfer::tcDate);
    typeKeys(QStringLiteral("15/05/2025"));
    EXPECT_EQ(logic.msfg().text(transfer::frmTransfer::destRow, transfer::tcDate), QStringLiteral("15/05/2025"));
    pause(100);
    EXPECT_TRUE(ok->isEnabled());
    view.grab().save(shot(QStringLiteral("frmTransfer.png")));
    ok->click();
    EXPECT_TRUE(logic.isClosed());
    EXPECT_EQ(queryRows(b, QStringLiteral("SELECT detail, [In] FROM pelkor WHERE id > 1")), QStringLiteral("העברה מ: עסק.pkr|750"));
}
