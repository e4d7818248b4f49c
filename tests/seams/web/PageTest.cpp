// Pages as the program writes them and the seam's event path: user text
// shown as text whatever it holds, every character kept through the code
// page, a click reaching the handler only once the page is complete and
// only on the page it was attached to, and the wait notice showing only
// with its words in.
#include "seams/web/CodePages.h"
#include "seams/web/Html.h"
#include "seams/web/ScriptedWebView.h"
#include "seams/web/frmWaitMessage.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::web;

namespace {

// A row page of the kind the pick lists use, one row per detail.
QString rowPage(const QStringList& details)
{
    QString html = QStringLiteral("<html dir=rtl><head>") + QLatin1String(charsetMeta)
        + QStringLiteral("</head><body><input type=hidden id=theRowIndx>"
                         "<input type=button style='display: none' id=notifier><table id=t1>");
    for (const QString& d : details) {
        html += QStringLiteral("<tr onclick='theRowIndx.value=this.rowIndex;notifier.click()'><td>");
        appendEscaped(html, d);
        html += QStringLiteral("</td></tr>");
    }
    return html + QStringLiteral("</table></body></html>");
}

} // namespace

TEST(Pages, UserTextShowsAsTextAndRunsNothing)
{
    QTemporaryDir dir;
    const QStringList details{QStringLiteral("<script>alert('x')</script>"), QStringLiteral("A & B \"quoted\" 'single'"),
                              QStringLiteral("<img src=x onerror=alert(1)>"), QStringLiteral("שכר דירה</td><td>פריצה")};
    const QString path = writePage(dir.path(), QStringLiteral("list.htm"), rowPage(details));
    ASSERT_FALSE(path.isEmpty());
    ScriptedWebView wb;
    wb.navigate(path);
    const auto rows = wb.rows(QStringLiteral("t1"));
    ASSERT_EQ(rows.size(), size_t(details.size()));
    for (int i = 0; i < details.size(); ++i)
        EXPECT_EQ(rows[size_t(i)], QStringList{details[i]}) << i;   // one cell each, the text whole
    EXPECT_TRUE(wb.scripts().isEmpty());
    EXPECT_EQ(wb.count(QStringLiteral("notifier")), 1);
    EXPECT_EQ(htmlEscape(QStringLiteral("a<b>&\"'")), QStringLiteral("a&lt;b&gt;&amp;&quot;&#39;"));
}

TEST(Pages, WrittenInWindows1255WithReferencesForTheRest)
{
    // Hebrew, the shekel sign and "€" are in the code page; "ü", Arabic and
    // an emoji (a surrogate pair) are not.
    const QString text = QStringLiteral("שלום ₪5 €3 ü ش ") + QString::fromUcs4(U"\U0001F600");
    const QByteArray bytes = pageBytes(text);
    EXPECT_TRUE(bytes.startsWith("\xF9\xEC\xE5\xED \xA4" "5 \x80" "3 "));
    EXPECT_TRUE(bytes.endsWith("&#252; &#1588; &#128512;"));
    EXPECT_FALSE(bytes.contains('?'));
    // Read back as a browser reads the page, every character is there.
    ScriptedWebView wb;
    wb.load(QStringLiteral("<div id=d>") + codepage::fromWindows1255(bytes) + QStringLiteral("</div>"));
    EXPECT_EQ(wb.text(QStringLiteral("d")), text);
    // The plain form, for files that are no pages, still says "?".
    EXPECT_EQ(codepage::toWindows1255(QStringLiteral("üש")), QByteArray("?\xF9"));
}

TEST(Pages, ClickReachesTheHandlerOnlyOnceThePageIsCompleteAndOnlyThatPage)
{
    QTemporaryDir dir;
    const QString path = writePage(dir.path(), QStringLiteral("list.htm"), rowPage({QStringLiteral("a"), QStringLiteral("b")}));
    ScriptedWebView wb(false);
    QStringList heard;
    const clsForward forward([&] { heard << wb.value(QStringLiteral("theRowIndx")); });
    wb.setDocumentComplete([&](const QString& target) {
        EXPECT_EQ(target, path + QStringLiteral("?x=1"));
        EXPECT_TRUE(wb.attachNotifier(forward));
    });
    wb.navigate(path + QStringLiteral("?x=1"));
    EXPECT_FALSE(wb.attachNotifier(forward));        // loading: nothing attaches
    EXPECT_TRUE(wb.clickRow(QStringLiteral("t1"), 1)); // the row is there, nobody hears it
    EXPECT_TRUE(heard.isEmpty());
    wb.finishLoading();
    EXPECT_TRUE(wb.clickRow(QStringLiteral("t1"), 1));
    EXPECT_FALSE(wb.clickRow(QStringLiteral("t1"), 2));
    EXPECT_EQ(heard, QStringList{QStringLiteral("1")});
    // A new navigation drops the handler until that page is complete.
    wb.setDocumentComplete({});
    wb.navigate(path);
    wb.finishLoading();
    wb.clickRow(QStringLiteral("t1"), 0);
    EXPECT_EQ(heard.size(), 1);
}

TEST(Pages, WaitNoticeShowsWithItsWordsOnlyWhenThePageIsComplete)
{
    QTemporaryDir dir;
    QFile anim(dir.filePath(QStringLiteral("anim.html")));
    ASSERT_TRUE(anim.open(QIODevice::WriteOnly));
    anim.write("<html><body><div id=spinner></div><div id=msg></div></body></html>");
    anim.close();
    ScriptedWebView wb(false);
    frmWaitMessage wait(wb, dir.path());
    QList<bool> shown;
    wait.visibilityChanged = [&](bool v) { shown << v; };
    wait.showMessage(QStringLiteral("מחפש התאמות"));
    EXPECT_FALSE(wait.isVisible());
    EXPECT_TRUE(wb.text(QStringLiteral("msg")).isEmpty());
    wb.finishLoading();
    EXPECT_TRUE(wait.isVisible());
    EXPECT_EQ(wb.text(QStringLiteral("msg")), QStringLiteral("מחפש התאמות"));
    wait.close();
    EXPECT_EQ(shown, (QList<bool>{true, false}));
    EXPECT_EQ(wb.navigations().last(), QStringLiteral("about:blank"));
}
