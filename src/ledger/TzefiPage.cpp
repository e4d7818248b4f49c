#include "ledger/TzefiPage.h"

#include "base/Format.h"
#include "seams/web/Html.h"

#include <cmath>

namespace pelkor {

using web::appendEscaped;

namespace {

// The row's colours: white at rest, orange once chosen, a light orange
// under the mouse.
const QString rowEvents = QStringLiteral(
    " onclick=\"if (curRow) curRow.style.backgroundColor='white'; this.style.backgroundColor='orange'; curRow=this;"
    " document.getElementById('theRowIndx').value=this.rowIndex; document.getElementById('notifier').click();\""
    " onmouseover=\"if (this!=curRow) this.style.backgroundColor='#ffe4b5';\""
    " onmouseout=\"if (this!=curRow) this.style.backgroundColor='white';\"");

const QString separator = QStringLiteral("<td width=2 bgcolor=darkgray></td>");

} // namespace

QString tzefiDetail(const QString& detail)
{
    // 25 characters fit the 185-pixel column in 8pt; a longer text keeps
    // 22 and shows that it goes on.
    if (detail.size() < 26)
        return detail;
    return detail.left(22) + QStringLiteral("...");
}

QString tzefiPage(const std::vector<TzefiCandidate>& candidates, const QString& fontName)
{
    QString html;
    html.reserve(600 + int(candidates.size()) * 600);
    html += QStringLiteral("<html dir=rtl>\r\n<head>\r\n");
    html += QLatin1String(web::charsetMeta);
    html += QStringLiteral("\r\n<script>var curRow;</script>\r\n"
                           "<script>function makeNum(str1) { return parseInt(str1, 10); }</script>\r\n"
                           "</head>\r\n"
                           "<body dir=rtl style=\"margin:0;overflow-y:auto;overflow-x:hidden\">\r\n"
                           "<input type=hidden id=theRowIndx value=\"\">\r\n"
                           "<input type=button id=notifier style=\"display:none\">\r\n"
                           "<div id=d1 style=\"position:absolute;left:0;top:0\"></div>\r\n"
                           "<table id=t1 cellspacing=0 cellpadding=1 style=\"cursor:default;font-family:'");
    appendEscaped(html, fontName);
    html += QStringLiteral("';font-size:8pt\">\r\n");
    for (const TzefiCandidate& c : candidates) {
        html += QStringLiteral("<tr style=\"background-color:white\"");
        html += rowEvents;
        html += QStringLiteral("><td width=30 dir=ltr align=right>");
        appendEscaped(html, FormatKind(c.kind));
        html += QStringLiteral("</td>") + separator + QStringLiteral("<td width=70 dir=ltr align=right>");
        appendEscaped(html, formatDate224(c.date));
        html += QStringLiteral("</td>") + separator + QStringLiteral("<td width=185>");
        appendEscaped(html, tzefiDetail(c.detail));
        html += QStringLiteral("</td>") + separator + QStringLiteral("<td width=85 dir=ltr align=left>");
        // Whole shekels: the list is for recognising the line, not for
        // reading its agorot.
        appendEscaped(html, FormatSum(std::round(c.sum)));
        html += QStringLiteral("</td></tr>\r\n");
    }
    html += QStringLiteral("</table>\r\n</body>\r\n</html>\r\n");
    return html;
}

} // namespace pelkor
