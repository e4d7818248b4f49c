#include "reports/frmInvoiceKinds.h"

#include "file/Lines.h"
#include "seams/web/Html.h"

#include <QDir>

#include <algorithm>

namespace pelkor::reports {

namespace {

const char pageHead[] =
    "<style>\n"
    "body{font-family:Arial,sans-serif;font-size:10pt;margin:2px}\n"
    "table{border-collapse:collapse}\n"
    "</style>\n"
    "<script>\n"
    "function event_handler(s){document.all.theID.value=s;document.all.notifier.click();}\n"
    "</script>\n";

} // namespace

QString invoiceKindsPage(const QStringList& ids, const QStringList& descs, const std::vector<int>& kinds,
                         const QString& invoiceCategs, const QString& colour)
{
    QString out;
    out.reserve(256 + int(kinds.size()) * 260);
    out += QStringLiteral("<html dir=rtl><head>");
    out += QLatin1String(web::charsetMeta);
    out += QLatin1String(pageHead);
    out += QStringLiteral("</head><body dir=rtl>\n<input type=hidden id=theID><input type=button style='display: none' id=notifier>\n"
                          "<table id=tbllist align=center style=\"width:171px\">\n");
    for (int k : kinds) {
        const QString id = ids.value(k);
        const QString knd = QStringLiteral("knd") + QString::number(k);
        out += QStringLiteral("<tr><td style=\"font-size: 12; font-family: arial; background-color: ");
        out += colour;
        out += QStringLiteral("; padding-left:7\">&nbsp;&nbsp;&nbsp;&nbsp;<input id=");
        out += knd;
        out += QStringLiteral(" type=checkbox ");
        if (isInvoiceKind(invoiceCategs, id))
            out += QStringLiteral("checked ");
        out += QStringLiteral("onclick=event_handler('") + knd + QStringLiteral("')><span dir=ltr width=50px>&nbsp;&nbsp;&nbsp;&nbsp;");
        web::appendEscaped(out, id);
        out += QStringLiteral("</span>");
        web::appendEscaped(out, descs.value(k));
        out += QStringLiteral("</input></td></tr>\n");
    }
    out += QStringLiteral("</table>\n</body></html>\n");
    return out;
}

frmInvoiceKinds::frmInvoiceKinds(const Catalogue& c, QString invoiceCategs, QString tempPath)
    : Dialog(QStringLiteral("בחר את הסיווגים המשמשים לחשבוניות פתוחות (לקוחות וספקים)"), QString()),
      ids_(c.categories), descs_(c.categoryDescs), categs_(std::move(invoiceCategs)), tempPath_(std::move(tempPath))
{
    // Income kinds (a "+" in front) on the first page, the others on the
    // second, each in the file's order.
    for (int k = 0; k < int(ids_.size()); ++k)
        pageKinds_[ids_[k].startsWith(QLatin1Char('+')) ? 0 : 1].push_back(k);
    for (int i = 0; i < 2; ++i)
        for (int k : pageKinds_[i])
            addControl(QStringLiteral("knd") + QString::number(k), Kind::CheckBox,
                       ids_[k] + QLatin1Char(' ') + descs_.value(k),
                       isInvoiceKind(categs_, ids_[k]) ? QStringLiteral("1") : QStringLiteral("0"));
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    pageText_[0] = invoiceKindsPage(ids_, descs_, pageKinds_[0], categs_, QStringLiteral("#d0ffd0"));
    pageText_[1] = invoiceKindsPage(ids_, descs_, pageKinds_[1], categs_, QStringLiteral("#ffcece"));
}

void frmInvoiceKinds::attachViews(web::WebView& wb0, web::WebView& wb1)
{
    wb_[0] = &wb0;
    wb_[1] = &wb1;
}

void frmInvoiceKinds::detachViews() { wb_[0] = wb_[1] = nullptr; }

bool frmInvoiceKinds::Form_Load()
{
    if (!wb_[0]) {
        for (int i = 0; i < 2; ++i) {
            scripted_[i] = std::make_unique<web::ScriptedWebView>();
            wb_[i] = scripted_[i].get();
        }
    }
    QDir().mkpath(tempPath_);
    for (int i = 0; i < 2; ++i) {
        pagePath_[i] = web::writePage(tempPath_, pageName(i), pageText_[i]);
        if (pagePath_[i].isEmpty())
            return false;
    }
    // Without a window nothing waits for one: the pages load at once.
    if (scripted_[0])
        timerKindLists_Timer();
    return true;
}

void frmInvoiceKinds::timerKindLists_Timer()
{
    if (navigated_ || !wb_[0] || pagePath_[0].isEmpty())
        return;
    navigated_ = true;
    for (int i = 0; i < 2; ++i)
        wb_[i]->navigate(pagePath_[i]);
}

void frmInvoiceKinds::onClick(const QString& name)
{
    if (name.startsWith(QLatin1String("knd"))) {
        // A box ticked by name: the box on its page follows.
        const int k = name.mid(3).toInt();
        const int i = std::find(pageKinds_[0].begin(), pageKinds_[0].end(), k) != pageKinds_[0].end() ? 0 : 1;
        if (wb_[i] && wb_[i]->checked(name) != isOn(control(name)))
            wb_[i]->click(name);
        return;
    }
    if (name == QLatin1String("cmdOK")) {
        QString text;
        for (int i = 0; i < 2; ++i)
            for (int k : pageKinds_[i])
                if (wb_[i] && wb_[i]->checked(QStringLiteral("knd") + QString::number(k)))
                    text += ids_[k] + QLatin1Char(',');
        categs_ = text;
        close(true);
    } else if (name == QLatin1String("cmdCancel")) {
        close(false);
    }
}

} // namespace pelkor::reports
