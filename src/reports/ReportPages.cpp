#include "reports/ReportPages.h"
#include "reports/ReportTable.h"

#include "base/Format.h"
#include "seams/web/Html.h"

namespace pelkor::reports {

using web::appendEscaped;

namespace {

const QString nbsp4 = QStringLiteral("&nbsp;&nbsp;&nbsp;&nbsp;");

// ---- the lists ---------------------------------------------------------

const char listHead[] =
    "<style>\n"
    "body{font-family:Arial,sans-serif;font-size:10pt;margin:2px}\n"
    "table{border-collapse:collapse}\n"
    "td{white-space:nowrap;padding:1px 2px;font-family:Arial,sans-serif;font-size:10pt}\n"
    "input{margin:0 2px}\n"
    "</style>\n"
    "<script>\n"
    "function event_handler(s){document.all.theID.value=s;document.all.notifier.click();}\n"
    "</script>\n";

QString box(const QString& id, bool checked, const QString& event)
{
    return QStringLiteral("<input type=checkbox id=%1%2 onclick=\"event_handler('%3')\">")
        .arg(id, checked ? QStringLiteral(" checked") : QString(), event);
}

void listBegin(QString& out)
{
    out += QStringLiteral("<html dir=rtl><head>");
    out += QLatin1String(web::charsetMeta);
    out += QLatin1String(listHead);
    out += QStringLiteral("</head><body dir=rtl>\n<input type=hidden id=theID><input type=button style='display: none' id=notifier>\n"
                          "<table id=tbllist align=center style=\"width:171px\">\n");
}

void listRow(QString& out, const QString& colour, const QString& rowId, const QString& cellId, const QString& boxHtml,
             const QString& text, bool indent, const MeasureText& measure, int& widest)
{
    out += QStringLiteral("<tr");
    if (!rowId.isEmpty())
        out += QStringLiteral(" id=") + rowId;
    out += QStringLiteral(" style=\"background:") + colour + QStringLiteral("\"><td id=") + cellId + QLatin1Char('>') + boxHtml
        + QStringLiteral("</td><td>");
    if (indent)
        out += nbsp4;
    appendEscaped(out, text);
    out += QStringLiteral("</td></tr>\n");
    widest = std::max(widest, measure((indent ? QStringLiteral("    ") : QString()) + text));
}

void listEnd(QString& out) { out += QStringLiteral("</table>\n</body></html>\n"); }

// ---- the reports -------------------------------------------------------

const char reportStyle[] =
    "<style>\n"
    "body{font-family:Arial,sans-serif;font-size:10pt;margin:4px}\n"
    "table{border-collapse:collapse}\n"
    "td{white-space:nowrap;height:18px;line-height:18px;padding:0 4px;font-family:Arial,sans-serif;font-size:10pt}\n"
    ".nm{height:18px;overflow:hidden}\n"
    ".titletd{font-size:13pt;font-weight:bold;padding:4px 2px}\n"
    ".hdrtd{background:#2050a0;color:white;font-weight:bold;text-align:center;width:78px;border-left:1px solid white}\n"
    ".hdr0{border-left:2px solid white;border-right:2px solid white}\n"
    ".cornertd{width:1px}\n"
    ".pst td{direction:ltr;text-align:left;width:78px;border-left:1px solid #c8c8c8;border-bottom:1px solid #e4e4e4}\n"
    ".pst0 td{border-left:2px solid #606060;border-right:2px solid #606060;font-weight:bold}\n"
    ".names td{border-bottom:1px solid #e4e4e4}\n"
    ".kindtd,.typetd{padding-right:12px}\n"
    ".totalkindexpensestd,.totaltypeexpensestd,.totalexpensetypecategorytd{background:#ffcece;font-weight:bold}\n"
    ".totalkindincomestd,.totaltypeincomestd,.totalincometypecategorytd{background:#d0ffd0;font-weight:bold}\n"
    ".openingtd,.nettd,.cumulativetd{font-weight:bold;background:#eef2fa}\n"
    ".nonnegbalancetd{color:#008000}\n"
    ".negbalancetd{color:black}\n"
    ".overnegbalancetd{color:#e00000}\n"
    ".nonnegdeficittd{color:#0000c0}\n"
    ".negdeficittd{color:#e00000}\n"
    ".sumlink{color:inherit;text-decoration:none}\n"
    ".sumlink:hover{text-decoration:underline}\n"
    "#sums{overflow:auto}\n"
    "#hdrstopdiv,#topdivkinds,#topdivtypes{overflow:hidden}\n"
    ".printcopy{page-break-after:always}\n"
    ".lastcopy{page-break-after:auto}\n"
    "@media print{.HideOnPrint{display:none}}\n"
    "@media screen{.HideOnScreen{display:none}}\n"
    "</style>\n";

// The scripts: the click on an amount, and the scrolling of the screen
// copy, where the amounts scroll and the headings and names follow them
// (the first element of each id is the screen copy's). The window reads
// the amounts' scroll from the hidden input sumsScroll, "left top", and
// restores it through handle_restore.
const char reportScripts[] =
    "<script>\n"
    "function event_handler(that,i_style,i_kind_or_type,i_Month,is_nonzero){"
    "document.all.theID.value=i_style+' '+i_kind_or_type+' '+i_Month+' '+is_nonzero;document.all.notifier.click();}\n"
    "function el(id){return document.getElementById(id);}\n"
    "function names(){return el('topdivkinds')||el('topdivtypes');}\n"
    "function handle_load(){var s=el('sums'),h=el('hdrstopdiv'),k=names();if(!s)return;"
    "var z=1.1,W=document.documentElement.clientWidth/z,H=document.documentElement.clientHeight/z;"
    "var top=s.getBoundingClientRect().top/z;"
    "var w=Math.max(120,W-k.offsetWidth-16),hh=Math.max(60,H-top-8);"
    "s.style.width=w+'px';h.style.width=(w-18)+'px';s.style.height=hh+'px';k.style.height=(hh-18)+'px';}\n"
    "function handle_sums_scroll(){var s=el('sums');el('hdrstopdiv').scrollLeft=s.scrollLeft;names().scrollTop=s.scrollTop;"
    "el('sumsScroll').value=s.scrollLeft+' '+s.scrollTop;}\n"
    "function handle_kinds_or_types_scroll(){el('sums').scrollTop=names().scrollTop;}\n"
    "function handle_hdrs_scroll(){el('sums').scrollLeft=el('hdrstopdiv').scrollLeft;}\n"
    "function handle_restore(){var v=el('sumsScroll').value.split(' '),s=el('sums');if(v.length==2){"
    "s.scrollLeft=parseInt(v[0]);s.scrollTop=parseInt(v[1]);handle_sums_scroll();}}\n"
    "function loadHandler(){handle_load();}\n"
    "</script>\n";

void writeCell(QString& out, const Cell& c, int row)
{
    out += QStringLiteral("<td");
    if (c.isUpdated)
        out += QStringLiteral(" id=c") + QString::number(row);
    if (!c.linkStyle.isEmpty()) {
        if (!c.bgcolor.isEmpty())
            out += QStringLiteral(" style=\"direction: ltr; text-align: right;\"");
        out += QStringLiteral(" class=sumtd");
        if (!c.bgcolor.isEmpty())
            out += QStringLiteral(" bgcolor=") + c.bgcolor;
        out += QStringLiteral("><a class=sumlink href=javascript:event_handler(this,") + c.linkStyle + QLatin1Char(',')
            + c.linkId + QLatin1Char(',') + QString::number(c.period) + QLatin1Char(',')
            + (c.nz ? QLatin1Char('1') : QLatin1Char('0')) + QStringLiteral(")>") + c.text
            + QStringLiteral("</a></td>");
        return;
    }
    if (!c.cls.isEmpty())
        out += QStringLiteral(" class=") + c.cls;
    out += QLatin1Char('>') + c.text + QStringLiteral("</td>");
}

void rowOpen(QString& out, const Row& r, int i)
{
    out += QStringLiteral("<tr id=r") + QString::number(i);
    if (r.hidden)
        out += QStringLiteral(" style=\"display:none\"");
    out += QLatin1Char('>');
}

// One copy of the table with the columns first..last (0 the total column).
void writeCopy(QString& out, const Report& rep, const Periods& periods, const ReportHead& head, int first, int last, bool screen)
{
    if (rep.titleHtml.isEmpty()) {
        out += QStringLiteral("<table id=tblTitle><tr><td class=titletd>");
        appendEscaped(out, rep.title);
    } else {
        out += QStringLiteral("<table id=tblTitle><tr><td id=tdTitle class=titletd>") + rep.titleHtml;
    }
    out += QStringLiteral("</td></tr></table>\n<table id=toptbl style=\"zoom:1.1\"><tr valign=top>\n");
    // Top right (first in a right-to-left row): the empty corner over the names.
    out += QStringLiteral("<td><div id=hdrsdatetopdiv><table id=tblalldatehdrs><tr><td class=cornertd style=\"width:")
        + QString::number(head.nameWidth) + QStringLiteral("px\">&nbsp;</td></tr></table></div></td>\n");
    out += QStringLiteral("<td><div id=hdrstopdiv");
    if (screen)
        out += QStringLiteral(" onscroll=handle_hdrs_scroll()");
    out += QStringLiteral("><table id=hdrs><tr><td><table id=tblallhdrs><tr>");
    for (int c = first; c <= last; ++c)
        out += (rep.heading ? QStringLiteral("<td><table><tr><td class=hdrtd>") + rep.heading(c)
                : c == 0    ? QStringLiteral("<td><table><tr><td class=\"hdrtd hdr0\">סך הכל")
                            : QStringLiteral("<td><table><tr><td class=hdrtd>") + periods.heading(c - 1))
            + QStringLiteral("</td></tr></table></td>");
    out += QStringLiteral("</tr></table></td></tr></table></div></td></tr>\n<tr valign=top>\n");
    // The names.
    out += QStringLiteral("<td><div id=") + rep.namesDiv;
    if (screen)
        out += QStringLiteral(" onscroll=handle_kinds_or_types_scroll()");
    out += QStringLiteral("><table id=kinds_or_types><tr><td><table id=") + rep.namesAll + QStringLiteral("><tr><td><table id=")
        + rep.namesTable + QStringLiteral(" class=names style=\"width:") + QString::number(head.nameWidth)
        + QStringLiteral("px\">\n");
    for (size_t i = 0; i < rep.rows.size(); ++i) {
        const Row& r = rep.rows[i];
        rowOpen(out, r, int(i));
        // A name's letters may come from a taller font than the amounts':
        // its box keeps the row's height, so names and amounts stay in line.
        out += QStringLiteral("<td class=") + r.nameClass + QStringLiteral("><div class=nm>");
        appendEscaped(out, r.name);
        out += QStringLiteral("</div></td></tr>\n");
    }
    out += QStringLiteral("</table></td></tr></table></td></tr></table></div></td>\n");
    // The amounts: one table per column.
    out += QStringLiteral("<td><div id=sums");
    if (screen)
        out += QStringLiteral(" onscroll=handle_sums_scroll()");
    out += QStringLiteral("><table id=tblallsums><tr valign=top>\n");
    for (int c = first; c <= last; ++c) {
        out += QStringLiteral("<td><table id=tblperiodsums class=\"pst") + (c == 0 && !rep.heading ? QStringLiteral(" pst0") : QString())
            + QStringLiteral("\">\n");
        for (size_t i = 0; i < rep.rows.size(); ++i) {
            rowOpen(out, rep.rows[i], int(i));
            writeCell(out, rep.rows[i].cell(c), int(i));
            out += QStringLiteral("</tr>\n");
        }
        out += QStringLiteral("</table></td>\n");
    }
    out += QStringLiteral("</tr></table></div></td></tr></table>\n");
}

} // namespace

QString writeReport(const Report& rep, const Periods& periods, const ReportHead& head, int columns)
{
    QString out;
    out.reserve(int(rep.rows.size()) * (periods.nPeriods + 1) * 160 + 8000);
    out += QStringLiteral("<html dir=rtl><head>");
    out += QLatin1String(web::charsetMeta);
    out += QStringLiteral("<title>");
    appendEscaped(out, rep.title);
    out += QStringLiteral("</title>\n");
    out += QLatin1String(reportStyle);
    out += rep.extraStyle;
    out += QLatin1String(reportScripts);
    out += QStringLiteral("</head>\n<body dir=rtl onload=loadHandler() onresize=handle_load() style=\"overflow:hidden\">\n"
                          "<input type=hidden id=theID><input type=button style='display: none' id=notifier>"
                          "<input type=hidden id=sumsScroll>\n");
    if (columns <= 0)
        columns = periods.nPeriods + 1;
    out += QStringLiteral("<div id=divscr class=HideOnPrint>\n");
    writeCopy(out, rep, periods, head, 0, columns - 1, true);
    out += QStringLiteral("</div>\n<div id=divprn class=HideOnScreen>\n");
    const int pages = printedPages(columns - 1);
    for (int page = 0; page < pages; ++page) {
        out += QStringLiteral("<div class=") + (page + 1 < pages ? QStringLiteral("printcopy") : QStringLiteral("lastcopy"))
            + QStringLiteral(">\n");
        writeCopy(out, rep, periods, head, page * 11, std::min(columns - 1, page * 11 + 10), false);
        out += QStringLiteral("</div>\n");
    }
    out += QStringLiteral("</div>\n</body></html>\n");
    return out;
}

namespace {

QString titleOf(const ReportHead& head, const Periods& periods, bool byTypes)
{
    return head.shortFileName + QStringLiteral(" - סיכום ") + head.sPeriodic + QStringLiteral(" לפי ")
        + (byTypes ? QStringLiteral("סוגים") : QStringLiteral("סיווגים")) + QStringLiteral(" ל: ")
        + formatTheDate(periods.fromDate) + QLatin1Char('-') + formatTheDate(periods.toDate);
}

Cell amount(double v) { return Cell{formatAmount(v, true), QString(), QString(), QString(), 0, false, v != 0}; }

Cell updated(double v, const QString& cls)
{
    return Cell{formatAmount(v, true), cls, QString(), QString(), 0, true};
}

// The rows every report shares: the opening balance first, the surplus and
// the running balance last.
Row openingRow(const ReportHead& head, const Periods& periods, const SumSet& s)
{
    return Row{QStringLiteral("יתרה התחלתית"), QStringLiteral("openingtd"), false, [&head, &periods, &s](int c) {
                   if (c == 0)
                       return Cell{formatTheDate(periods.fromDate.addDays(-1)), QStringLiteral("openingtd"), {}, {}, 0, true};
                   const double v = s.periodBalance[size_t(c - 1)];
                   return updated(v, nonnegbalancetd(v, head.theCredit));
               }};
}

void closingRows(Report& rep, const ReportHead& head, const SumSet& s)
{
    rep.rows.push_back(Row{QStringLiteral("עודף/גרעון"), QStringLiteral("nettd"), false, [&s](int c) {
                               const double v = c == 0 ? s.totalNet : s.periodNet[size_t(c - 1)];
                               return updated(v, nonnegdeficittd(v));
                           }});
    rep.rows.push_back(Row{QStringLiteral("יתרה מצטברת"), QStringLiteral("cumulativetd"), false, [&head, &s](int c) {
                               if (c == 0)
                                   return Cell{QString(), QStringLiteral("cumulativetd"), {}, {}, 0, true};
                               const double v = s.periodBalance[size_t(c)];
                               return updated(v, nonnegbalancetd(v, head.theCredit));
                           }});
}

Row sectionRow(const QString& name, const QString& cls, bool shown, const double& total, const std::vector<double>& perPeriod)
{
    return Row{name, cls, !shown, [&total, &perPeriod, cls](int c) {
                   return updated(c == 0 ? total : perPeriod[size_t(c - 1)], cls);
               }};
}

} // namespace

int estimatedTextWidth(const QString& text)
{
    // About the average advance of 10-point Arial at 96 dots an inch.
    return int(text.size()) * 7;
}

int kindOfListRow(int r, int n) { return r < n / 2 ? r + n / 2 : r - n / 2; }
int reportRowOfListRow(int r, int n) { return r < n / 2 ? r + 1 : r + 2; }

QString kindListPage(const KindNames& kinds, const SumSet& s, const MeasureText& measure, int& widest)
{
    const int n = kinds.nCategories();
    QString out;
    listBegin(out);
    listRow(out, QStringLiteral("#ff8080"), {}, QStringLiteral("tdExpenses"), box(QStringLiteral("chkExpenses"), s.showExpensesTotal, QStringLiteral("kex")),
            QStringLiteral("הוצאות"), false, measure, widest);
    for (int r = 0; r < n; ++r) {
        if (r == n / 2)
            listRow(out, QStringLiteral("#80e080"), {}, QStringLiteral("tdIncomes"),
                    box(QStringLiteral("chkIncomes"), s.showIncomesTotal, QStringLiteral("kin")), QStringLiteral("הכנסות"), false,
                    measure, widest);
        const int k = kindOfListRow(r, n);
        const bool on = size_t(k) < s.checked.size() && s.checked[size_t(k)];
        listRow(out, r < n / 2 ? QStringLiteral("#ffcece") : QStringLiteral("#d0ffd0"), {}, QStringLiteral("tdKind"),
                box(QStringLiteral("chkKind"), on, QStringLiteral("knd") + QString::number(r)), kinds.descs.value(k), true, measure,
                widest);
    }
    if (n == 0)
        listRow(out, QStringLiteral("#80e080"), {}, QStringLiteral("tdIncomes"), box(QStringLiteral("chkIncomes"), s.showIncomesTotal, QStringLiteral("kin")),
                QStringLiteral("הכנסות"), false, measure, widest);
    listEnd(out);
    return out;
}

QString typeListPage(const TypeTotals& t, const MeasureText& measure, int& widest)
{
    QString out;
    listBegin(out);
    listRow(out, QStringLiteral("#ff8080"), {}, QStringLiteral("tdExpenses"), box(QStringLiteral("chkExpenses"), t.sums.showExpensesTotal, QStringLiteral("tex")),
            QStringLiteral("הוצאות"), false, measure, widest);
    const auto incomesRow = [&] {
        listRow(out, QStringLiteral("#80e080"), {}, QStringLiteral("tdIncomes"), box(QStringLiteral("chkIncomes"), t.sums.showIncomesTotal, QStringLiteral("tin")),
                QStringLiteral("הכנסות"), false, measure, widest);
    };
    for (size_t c = 0; c < t.categories.size(); ++c) {
        const TypeCategory& cat = t.categories[c];
        if (int(c) == t.firstIncomeCategory)
            incomesRow();
        const QString cs = QString::number(c);
        const bool on = c < t.categChecked.size() && t.categChecked[c];
        listRow(out, cat.isIncome ? QStringLiteral("#a0ffa0") : QStringLiteral("#ffa1a1"), {}, QStringLiteral("tdCateg") + cs,
                box(QStringLiteral("chkCateg") + cs, on, QStringLiteral("ctg") + cs), QStringLiteral("סך הכל ") + cat.CategoryName, false,
                measure, widest);
        for (size_t i = 0; i < t.types.size(); ++i) {
            if (t.types[i].CategoryName != cat.CategoryName || t.types[i].isIncome != cat.isIncome)
                continue;
            const bool typeOn = i < t.sums.checked.size() && t.sums.checked[i];
            listRow(out, cat.isIncome ? QStringLiteral("#d0ffd0") : QStringLiteral("#ffcece"), QStringLiteral("ctg") + cs,
                    QStringLiteral("tdType"), box(QStringLiteral("chkType"), typeOn, QStringLiteral("typ") + QString::number(i)),
                    t.types[i].TypeName, true, measure, widest);
        }
    }
    if (t.firstIncomeCategory < 0)
        incomesRow();
    listEnd(out);
    return out;
}

TypeRows typeRowsOf(const TypeTotals& t)
{
    TypeRows rows;
    rows.typeRowIndex.assign(t.types.size(), -1);
    rows.categRowIndex.assign(t.categories.size(), -1);
    int row = 1;
    bool expensesPlaced = false;
    for (size_t c = 0; c < t.categories.size(); ++c) {
        if (t.categories[c].isIncome && !expensesPlaced) {
            rows.expensesTotalRow = row++;
            expensesPlaced = true;
        }
        for (size_t i = 0; i < t.types.size(); ++i)
            if (t.types[i].CategoryName == t.categories[c].CategoryName && t.types[i].isIncome == t.categories[c].isIncome)
                rows.typeRowIndex[i] = row++;
        rows.categRowIndex[c] = row++;
    }
    if (!expensesPlaced)
        rows.expensesTotalRow = row++;
    rows.incomesTotalRow = row++;
    rows.netRow = row++;
    rows.balanceRow = row++;
    return rows;
}

QString kindReportPage(const ReportHead& head, const Periods& periods, const KindNames& kinds, const SumSet& s)
{
    const int n = kinds.nCategories();
    Report rep;
    rep.title = titleOf(head, periods, false);
    rep.namesDiv = QStringLiteral("topdivkinds");
    rep.namesAll = QStringLiteral("tblallkinds");
    rep.namesTable = QStringLiteral("tblperiodkinds");
    rep.rows.push_back(openingRow(head, periods, s));
    const auto kindRow = [&](int k) {
        const QString id = QLatin1Char('\'') + kinds.ids.value(k) + QLatin1Char('\'');
        return Row{kinds.descs.value(k), QStringLiteral("kindtd"), !s.checked[size_t(k)], [&s, k, id](int c) {
                       if (c == 0)
                           return amount(s.totals[size_t(k)]);
                       Cell cell = amount(s.sum(k, c - 1));
                       cell.linkStyle = QStringLiteral("3");
                       cell.linkId = id;
                       cell.period = c - 1;
                       return cell;
                   }};
    };
    for (int k = n / 2; k < n; ++k)
        rep.rows.push_back(kindRow(k));
    rep.rows.push_back(sectionRow(QStringLiteral("סך הכל הוצאות"), QStringLiteral("totalkindexpensestd"), s.showExpensesTotal,
                                  s.totalExpenses, s.periodExpenses));
    for (int k = 0; k < n / 2; ++k)
        rep.rows.push_back(kindRow(k));
    rep.rows.push_back(sectionRow(QStringLiteral("סך הכל הכנסות"), QStringLiteral("totalkindincomestd"), s.showIncomesTotal,
                                  s.totalIncomes, s.periodIncomes));
    closingRows(rep, head, s);
    return writeReport(rep, periods, head);
}

QString typeReportPage(const ReportHead& head, const Periods& periods, const TypeTotals& t, const TypeRows& rows)
{
    const SumSet& s = t.sums;
    Report rep;
    rep.title = titleOf(head, periods, true);
    rep.namesDiv = QStringLiteral("topdivtypes");
    rep.namesAll = QStringLiteral("tblalltypes");
    rep.namesTable = QStringLiteral("tblperiodtypes");
    rep.rows.resize(size_t(rows.balanceRow) + 1);
    rep.rows[0] = openingRow(head, periods, s);
    for (size_t i = 0; i < t.types.size(); ++i) {
        if (rows.typeRowIndex[i] < 0)
            continue;
        const int k = int(i);
        rep.rows[size_t(rows.typeRowIndex[i])] = Row{t.types[i].TypeName, QStringLiteral("typetd"), !s.checked[i], [&s, k](int c) {
                                                         if (c == 0)
                                                             return amount(s.totals[size_t(k)]);
                                                         Cell cell = amount(s.sum(k, c - 1));
                                                         cell.linkStyle = QStringLiteral("4");
                                                         cell.linkId = QString::number(k);
                                                         cell.period = c - 1;
                                                         return cell;
                                                     }};
    }
    for (size_t c = 0; c < t.categories.size(); ++c) {
        const QString cls = t.categories[c].isIncome ? QStringLiteral("totalincometypecategorytd") : QStringLiteral("totalexpensetypecategorytd");
        const int ci = int(c);
        rep.rows[size_t(rows.categRowIndex[c])] =
            Row{QStringLiteral("סך הכל ") + t.categories[c].CategoryName, cls, c < t.categChecked.size() && !t.categChecked[c], [&t, ci, cls](int col) {
                    return updated(col == 0 ? t.categTotals[size_t(ci)] : t.categSum(ci, col - 1), cls);
                }};
    }
    rep.rows[size_t(rows.expensesTotalRow)] = sectionRow(QStringLiteral("סך הכל הוצאות"), QStringLiteral("totaltypeexpensestd"),
                                                         s.showExpensesTotal, s.totalExpenses, s.periodExpenses);
    rep.rows[size_t(rows.incomesTotalRow)] = sectionRow(QStringLiteral("סך הכל הכנסות"), QStringLiteral("totaltypeincomestd"),
                                                        s.showIncomesTotal, s.totalIncomes, s.periodIncomes);
    Report tail;
    closingRows(tail, head, s);
    rep.rows[size_t(rows.netRow)] = tail.rows[0];
    rep.rows[size_t(rows.balanceRow)] = tail.rows[1];
    return writeReport(rep, periods, head);
}

} // namespace pelkor::reports
