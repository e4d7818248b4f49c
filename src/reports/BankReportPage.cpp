// The merged bank report's page: one row a day, a group of four columns
// ("הכנסה", "הוצאה", "יתרה", "חריגה") a file and one for the total, once
// for the screen (divscr, its heading and date column held in place while
// the sums scroll) and once per printed page of four groups (divprn).
//
// Ids the window uses: theID and notifier (the events), stl (the style
// sheet that hides the income and expense columns, class incExp), tst (each
// group's head cell, whose span completeIt() sets), tstx (the income and
// expense headings), sums and sumsScroll (the screen copy's scroll, "left
// top"), r<d> (a day's rows), tblGraphImages with imgSep and imgTot (the
// charts, shown only in print and in an exported page), divLeftOut (files
// left out, with the reason).
#include "reports/BankReport.h"
#include "reports/PeriodTotals.h"

#include "base/Format.h"
#include "seams/web/Html.h"

#include <algorithm>

namespace pelkor::reports {

using web::appendEscaped;

namespace {

const char pageStyle[] =
    "<style>\n"
    "body{font-family:Arial,sans-serif;font-size:10pt;margin:4px;"
    "background:linear-gradient(#33476b 0,#8aa0c8 90px,#f4f6fa 260px) no-repeat #f4f6fa}\n"
    "table.rpt{border-collapse:separate;border-spacing:0;background:white}\n"
    "table.rpt td,table.rpt th{white-space:nowrap;padding:1px 6px;font-size:10pt;border-left:1px solid #d0d0d0}\n"
    "table.rpt thead th{background:#2050a0;color:white;font-weight:normal;text-align:center}\n"
    "#divscr thead{position:sticky;top:0;z-index:2}\n"
    "#divscr .datetd,#divscr .datehd{position:sticky;right:0;z-index:1}\n"
    "#divscr .datehd{z-index:3}\n"
    ".datetd{background:#dfe6f2;font-weight:bold;direction:ltr;text-align:center}\n"
    ".grp{border-right:2px solid #606060}\n"
    ".grpname{font-weight:bold;color:#203060;background:white;padding:1px 4px;border-radius:3px}\n"
    ".conversionlink{color:#ffffa0;font-size:9pt}\n"
    ".s{direction:ltr;text-align:right;min-width:60px}\n"
    ".negsumtd{color:#e00000}\n"
    ".nonnegsumtd{color:black}\n"
    ".sumlink,.sumneglink,.sumnonneglink{text-decoration:none}\n"
    ".sumlink{color:#004080}\n"
    ".sumneglink{color:#e00000}\n"
    ".sumnonneglink{color:black}\n"
    ".sumlink:hover,.sumneglink:hover,.sumnonneglink:hover{text-decoration:underline}\n"
    ".total{font-weight:bold}\n"
    "#sums{overflow:auto}\n"
    "#divLeftOut{background:#fff0c0;border:1px solid #c0a040;padding:3px 6px;margin-bottom:4px}\n"
    ".prnhead{font-size:13pt;font-weight:bold;text-decoration:underline}\n"
    ".printcopy{page-break-after:always}\n"
    ".lastcopy{page-break-after:auto}\n"
    "#tblGraphImages{page-break-before:always}\n"
    "@media print{.HideOnPrint{display:none}}\n"
    "@media screen{.HideOnScreen{display:none}}\n"
    "</style>\n";

const char pageScripts[] =
    "<script>\n"
    "function el(id){return document.getElementById(id);}\n"
    "function event_handler(that,i_type,i_date,i_bank,is_nonzero){"
    "el('theID').value=i_type+' '+i_date+' '+i_bank+' '+is_nonzero;el('notifier').click();}\n"
    "function conversion_handler(i_bank){el('theID').value='cnv '+i_bank;el('notifier').click();}\n"
    "function completeIt(){var hide=el('stl').textContent.indexOf('none')>=0,i;"
    "var a=document.querySelectorAll('[id=tst]');for(i=0;i<a.length;i++)a[i].colSpan=hide?2:4;"
    "var b=document.querySelectorAll('[id=tstx]');for(i=0;i<b.length;i++)b[i].style.display=hide?'none':'';}\n"
    "function handle_load(){var s=el('sums');if(!s)return;"
    "var top=s.getBoundingClientRect().top;s.style.height=Math.max(60,document.documentElement.clientHeight-top-6)+'px';}\n"
    "function handle_sums_scroll(){var s=el('sums');el('sumsScroll').value=s.scrollLeft+' '+s.scrollTop;}\n"
    "function handle_restore(){var v=el('sumsScroll').value.split(' '),s=el('sums');if(v.length==2){"
    "s.scrollLeft=parseInt(v[0]);s.scrollTop=parseInt(v[1]);}}\n"
    "</script>\n";

QString amountText(double v) { return formatAmount(v, true); }

QString rowColour(int d) { return d % 2 == 0 ? QStringLiteral("#e9f8ff") : QStringLiteral("#e9e9e9"); }

void headCells(QString& out, const BankDays& days, const BankPageHead& head, int g)
{
    const bool total = g == days.nIncluded;
    const int span = head.showIncomeAndExpense ? 4 : 2;
    out += QStringLiteral("<th id=tst class=grp colspan=%1>").arg(span);
    if (total) {
        out += QStringLiteral("<span class=grpname>סך הכל</span>");
    } else {
        out += QStringLiteral("<span class=grpname style=\"color:") + colorToHtml(fileColor(g)) + QStringLiteral("\">");
        appendEscaped(out, head.shortNames.value(g));
        out += QStringLiteral("</span><br><a class=conversionlink href=javascript:conversion_handler(%1)>").arg(g)
            + conversionText(days.rates[size_t(g)]) + QStringLiteral("</a>");
    }
    out += QStringLiteral("</th>");
}

void subHeadCells(QString& out)
{
    out += QStringLiteral("<th id=tstx class=\"incExp grp\">הכנסה</th><th id=tstx class=incExp>הוצאה</th>"
                          "<th>יתרה</th><th>חריגה</th>");
}

// The four cells of file f on day d.
void fileCells(QString& out, const BankDays& days, int d, int f)
{
    const bool ipusDay = days.ipusDayPlus1[size_t(f)] - 1 == d;
    const QString bg = ipusDay ? QStringLiteral(" bgcolor=#ffcccc") : QString();
    const double in = days.in(d, f), outSum = days.out(d, f), excess = days.excess(d, f);
    const QString ds = QString::number(d), fs = QString::number(f);
    for (int t = 0; t < 2; ++t) {
        const double v = t == 0 ? in : outSum;
        out += QStringLiteral("<td class=\"incExp s") + (t == 0 ? QStringLiteral(" grp") : QString()) + QLatin1Char('"') + bg
            + QStringLiteral("><a class=sumlink href=javascript:event_handler(this,%1,%2,%3,%4)>").arg(t).arg(ds, fs).arg(v != 0 ? 1 : 0)
            + amountText(v) + QStringLiteral("</a></td>");
    }
    const bool negative = excess < 0;
    const QString cls = negative ? QStringLiteral("negsumtd") : QStringLiteral("nonnegsumtd");
    const bool moved = in != 0 || outSum != 0;
    for (double v : {days.balance(d, f), excess}) {
        out += QStringLiteral("<td class=\"s ") + cls + QLatin1Char('"') + bg + QLatin1Char('>');
        if (moved)
            out += QStringLiteral("<a class=") + (negative ? QStringLiteral("sumneglink") : QStringLiteral("sumnonneglink"))
                + QStringLiteral(" href=javascript:event_handler(this,2,%1,%2,1)>").arg(ds, fs) + amountText(v) + QStringLiteral("</a>");
        else
            out += amountText(v);
        out += QStringLiteral("</td>");
    }
}

void totalCells(QString& out, const BankDays& days, int d)
{
    const QString cls = days.dayTotalExcesses[size_t(d)] < 0 ? QStringLiteral("negsumtd") : QStringLiteral("nonnegsumtd");
    out += QStringLiteral("<td class=\"incExp s grp total\">") + amountText(days.dayTotalIns[size_t(d)])
        + QStringLiteral("</td><td class=\"incExp s total\">") + amountText(days.dayTotalOuts[size_t(d)])
        + QStringLiteral("</td><td class=\"s total ") + cls + QStringLiteral("\">") + amountText(days.dayTotalBalances[size_t(d)])
        + QStringLiteral("</td><td class=\"s total ") + cls + QStringLiteral("\">") + amountText(days.dayTotalExcesses[size_t(d)])
        + QStringLiteral("</td>");
}

// One table of the groups first..last (nIncluded is the total's group).
void writeTable(QString& out, const BankDays& days, const BankPageHead& head, int first, int last)
{
    out += QStringLiteral("<table class=rpt><thead><tr><th class=datehd rowspan=2>תאריך</th>");
    for (int g = first; g <= last; ++g)
        headCells(out, days, head, g);
    out += QStringLiteral("</tr><tr>");
    for (int g = first; g <= last; ++g)
        subHeadCells(out);
    out += QStringLiteral("</tr></thead>\n<tbody>\n");
    for (int d = 0; d < days.nReportDays; ++d) {
        out += QStringLiteral("<tr id=r%1 style=\"background:%2\"><td class=datetd>").arg(d).arg(rowColour(d))
            + formatTheDate(days.fromDate.addDays(d)) + QStringLiteral("</td>");
        for (int g = first; g <= last; ++g) {
            if (g == days.nIncluded)
                totalCells(out, days, d);
            else
                fileCells(out, days, d, g);
        }
        out += QStringLiteral("</tr>\n");
    }
    out += QStringLiteral("</tbody></table>\n");
}

} // namespace

QString incExpStyle(bool show)
{
    return show ? QStringLiteral(".incExp {display: }") : QStringLiteral(".incExp {display: none}");
}

QString bankReportPage(const BankDays& days, const BankPageHead& head)
{
    QString out;
    out.reserve(days.nReportDays * (days.nIncluded + 1) * 4 * 110 * 2 + 8000);
    out += QStringLiteral("<html dir=rtl><head>");
    out += QLatin1String(web::charsetMeta);
    out += QStringLiteral("<title>דו\"ח איחוד בנקים</title>\n");
    out += QLatin1String(pageStyle);
    out += QStringLiteral("<style id=stl>") + incExpStyle(head.showIncomeAndExpense) + QStringLiteral("</style>\n");
    out += QLatin1String(pageScripts);
    out += QStringLiteral("</head>\n<body dir=rtl onload=handle_load() onresize=handle_load() style=\"overflow:hidden\">\n"
                          "<input type=hidden id=theID><input type=button style='display: none' id=notifier>"
                          "<input type=hidden id=sumsScroll>\n");
    if (!head.leftOut.isEmpty()) {
        out += QStringLiteral("<div id=divLeftOut class=HideOnPrint>לא נכללו בדוח: ");
        appendEscaped(out, head.leftOut.join(QStringLiteral("; ")));
        out += QStringLiteral("</div>\n");
    }
    out += QStringLiteral("<div id=divscr class=HideOnPrint><div id=sums onscroll=handle_sums_scroll()>\n");
    writeTable(out, days, head, 0, days.nIncluded);
    out += QStringLiteral("</div></div>\n<div id=divprn class=HideOnScreen>\n");
    const int groups = days.nIncluded + 1;
    const int pages = (groups + groupsPerPrintedPage - 1) / groupsPerPrintedPage;
    for (int p = 0; p < pages; ++p) {
        out += QStringLiteral("<div class=") + (p + 1 < pages ? QStringLiteral("printcopy") : QStringLiteral("lastcopy"))
            + QStringLiteral("><span class=prnhead>דו\"ח איחוד בנקים - פלקור מזומנים</span><br>\n");
        writeTable(out, days, head, p * groupsPerPrintedPage, std::min(groups - 1, p * groupsPerPrintedPage + groupsPerPrintedPage - 1));
        out += QStringLiteral("</div>\n");
    }
    out += QStringLiteral("</div>\n<table id=tblGraphImages class=HideOnScreen><tr><td><img id=imgSep src=\"bankReport_files/separateGraphs.bmp\">"
                          "</td></tr><tr><td><img id=imgTot src=\"bankReport_files/totalGraph.bmp\"></td></tr></table>\n");
    out += QStringLiteral("</body></html>\n");
    return out;
}

} // namespace pelkor::reports
