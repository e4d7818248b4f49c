// The web seam on the real engine: a page the program wrote, loaded in
// WebEngine, a row clicked by the page's own script; the click reaches the
// handler only once the page is complete and the handler attached, and
// the handler reads the row synchronously. Also the wait notice and the
// recurring-transaction dialog as a user sees them, saved as screenshots
// (<build>/screenshots/frmWaitMessage.png, frmConstantTransactions.png).
#include "app/ui/frmConstantTransactionsView.h"
#include "app/web/QtWebView.h"
#include "app/web/frmWaitMessageView.h"
#include "ledger/GridFixture.h"
#include "seams/web/Html.h"
#include "views/ViewWait.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QLineEdit>
#include <QWebEngineView>

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::web;
using namespace pelkor::testing;

TEST(WebEngineView, ARowClickReachesTheHandlerOnlyOnceThePageIsComplete)
{
    QTemporaryDir dir;
    // The page clicks its notifier while it is still loading, before any
    // handler is attached: that click must reach nobody.
    QString html = QStringLiteral("<html dir=rtl><head>") + QLatin1String(charsetMeta)
        + QStringLiteral("</head><body><input type=hidden id=theRowIndx>"
                         "<input type=button style='display: none' id=notifier><table id=t1>");
    for (const QString& d : {QStringLiteral("שכר דירה"), QStringLiteral("<script>window.pwned=1</script> & ü")})
        html += QStringLiteral("<tr onclick='theRowIndx.value=this.rowIndex;document.all.notifier.click()'><td>")
            + htmlEscape(d) + QStringLiteral("</td></tr>");
    html += QStringLiteral("</table><script>theRowIndx.value='early';document.all.notifier.click();</script></body></html>");
    const QString page = writePage(dir.path(), QStringLiteral("rows.htm"), html);

    QtWebView wb;
    wb.resize(400, 200);
    wb.show();
    QStringList heard;
    bool attached = false;
    wb.setDocumentComplete([&](const QString&) {
        attached = wb.attachNotifier(clsForward([&] { heard << wb.value(QStringLiteral("theRowIndx")); }));
    });
    EXPECT_FALSE(wb.attachNotifier(clsForward([&] { heard << QStringLiteral("too soon"); })));
    wb.navigate(page + QStringLiteral("?auto=true"));
    ASSERT_TRUE(waitFor([&] { return wb.isComplete(); })) << "WebEngine did not load the page";
    ASSERT_TRUE(attached);
    // The early click came and went while nobody listened.
    waitFor([] { return false; }, 300);
    EXPECT_TRUE(heard.isEmpty()) << heard.join(QLatin1Char(',')).toStdString();
    EXPECT_EQ(wb.value(QStringLiteral("theRowIndx")), QStringLiteral("early"));

    // The user's click on the second row, as the row's own script runs it.
    wb.execScript(QStringLiteral("document.getElementById('t1').rows[1].click()"));
    ASSERT_TRUE(waitFor([&] { return !heard.isEmpty(); }));
    EXPECT_EQ(heard, QStringList{QStringLiteral("1")});
    // The detail is text on the page, written whole, and ran nothing.
    EXPECT_EQ(wb.evaluate(QStringLiteral("document.getElementById('t1').rows[1].innerText")).toString().trimmed(),
              QStringLiteral("<script>window.pwned=1</script> & ü"));
    EXPECT_FALSE(wb.evaluate(QStringLiteral("'pwned' in window")).toBool());

    // A new page drops the handler: its clicks go unheard until attached anew.
    wb.setDocumentComplete({});
    wb.navigate(page);
    ASSERT_TRUE(waitFor([&] { return wb.isComplete(); }));
    wb.execScript(QStringLiteral("document.getElementById('t1').rows[0].click()"));
    waitFor([] { return false; }, 300);
    EXPECT_EQ(heard.size(), 1);
}

TEST(WebEngineView, WaitNoticeShowsCentredWithItsWords)
{
    frmWaitMessageView w(QStringLiteral(PELKOR_BINARY_DIR));
    w.logic().showMessage(QStringLiteral("מחפש התאמות"));
    EXPECT_FALSE(w.logic().isVisible());
    ASSERT_TRUE(waitFor([&] { return w.logic().isVisible(); }));
    EXPECT_TRUE(w.isVisible());
    EXPECT_EQ(w.windowOpacity(), 1.0);
    EXPECT_EQ(w.wb().text(QStringLiteral("msg")), QStringLiteral("מחפש התאמות"));
    pause(500);   // the first frames painted
    w.grab().save(shot(QStringLiteral("frmWaitMessage.png")));
    w.logic().close();
    EXPECT_FALSE(w.isVisible());
}

class ConstantTransactionsWindow : public pelkor::testing::GridTest {};

TEST_F(ConstantTransactionsWindow, EveryControlIsNamedAndTheTypeListDropsOnAKey)
{
    openOn(QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
                          "(1,'+1','2025-03-01','11','מכירה',1000,0,1,'ZZZZZZZZZZ','ללא צבע');"),
           QString());
    ConstantLasts lasts;
    frmConstantTransactions logic(ConstantParts{m->ledger(), m->ui(), m->editState(), lasts, QDate(2025, 6, 1)});
    ui::frmConstantTransactionsView view(logic);
    view.show();
    QCoreApplication::processEvents();
    for (const QString& name : frmConstantTransactions::enterOrder())
        EXPECT_NE(view.findChild<QWidget*>(name), nullptr) << name.toStdString();
    // Typed as a user types: the field takes the focus, then the text.
    const auto type = [&](const char* name, const QString& text) {
        auto* edit = view.findChild<QLineEdit*>(QString::fromLatin1(name));
        edit->setFocus();
        QCoreApplication::processEvents();
        edit->setText(text);
    };
    type("txtFromDate", QStringLiteral("08/04/2025"));
    type("txtToDate", QStringLiteral("08/10/2025"));
    type("txtDetails", QStringLiteral("שכר דירה <משרד>"));
    type("txtOut", QStringLiteral("1250"));
    type("txtChangeInPercents", QStringLiteral("2.5"));
    type("txtJump", QStringLiteral("ח"));
    QCoreApplication::processEvents();
    // The jump list is open under its field, the first row that begins so chosen.
    EXPECT_TRUE(logic.isListOpen(QStringLiteral("txtJump")));
    EXPECT_EQ(logic.control(QStringLiteral("txtJump")), QStringLiteral("חודש"));
    view.grab().save(shot(QStringLiteral("frmConstantTransactions.png")));
}
