#include "reconcile/MatchFinder.h"

#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "reconcile/BankGrid.h"
#include "reconcile/Coordination.h"
#include "reconcile/RowLinks.h"
#include "seams/ui/Ui.h"
#include "seams/web/Html.h"
#include "seams/web/WebView.h"

#include <QElapsedTimer>

#include <QFile>
#include <QSaveFile>

namespace pelkor::reconcile {

namespace {

const QString matchesTitle = QStringLiteral("התאמות");
constexpr int twipsPerPixel = 15;

// A column's width on the page: the grid's own, or, where the window sized
// the column to its texts and told the grid nothing, one that holds them.
int columnPixels(const grid::GridModel& g, int c)
{
    if (g.ColWidth(c) > 0)
        return g.ColWidth(c) / twipsPerPixel;
    switch (c) {
    case colKind: return 40;
    case colDate: return 80;
    case colConfirm: return 70;
    case colDetail: return 260;
    default: return 85;   // the sums
    }
}

// The pictures of a pair's decision, drawn in the page itself.
QString picture(const QString& id, const QString& fill, const QString& mark, const QString& onclick, int i, bool hidden)
{
    return QStringLiteral("<svg id=\"%1\" onclick=\"%2(%3)\" width=\"18\" height=\"18\" style=\"cursor:pointer;%4\">"
                          "<rect x=\"1\" y=\"1\" width=\"16\" height=\"16\" rx=\"3\" fill=\"%5\" stroke=\"#555\"/>"
                          "<text x=\"9\" y=\"13\" font-size=\"12\" text-anchor=\"middle\">%6</text></svg>")
        .arg(id, onclick)
        .arg(i)
        .arg(hidden ? QStringLiteral("display:none") : QString(), fill, mark);
}

const char* const pageScript = R"(<script>
function el(id, i) { return document.querySelectorAll('[id=' + id + ']')[i]; }
function showAll() { return document.getElementById('chkShowAllRows').checked; }
function shrinkRow(rw) {
  var steps = ['13px', '9px', '7px', '3px', '2px'];
  rw.style.height = steps[0];
  for (var k = 1; k < steps.length; k++) (function (h, t) { setTimeout(function () { rw.style.height = h; }, t); })(steps[k], 50 * k);
  setTimeout(function () { rw.style.display = 'none'; }, 250);
}
function expandRow(rw) {
  var steps = ['2px', '3px', '7px', '9px', '13px'];
  rw.style.display = '';
  for (var k = 0; k < steps.length; k++) (function (h, t) { setTimeout(function () { rw.style.height = h; }, t); })(steps[k], 50 * (k + 1));
}
function toggleRow(rw, isAccept, isPressing) {
  if (isPressing) {
    rw.style.background = isAccept ? ACCEPT : REJECT;
    if (!showAll()) {
      if (rw.id == 'trPelkor') { var d = rw.querySelector('#divImgs'); if (d) d.style.display = 'none'; }
      shrinkRow(rw);
    }
  } else rw.style.background = rw.getAttribute('bgclr');
}
function toggleMatch(i, isAccept, isPressing) {
  toggleRow(el('trPelkor', i - 1), isAccept, isPressing);
  toggleRow(el('trBank', i - 1), isAccept, isPressing);
  if (!showAll()) el('trSpace', i - 1).style.display = isPressing ? 'none' : '';
}
function acceptClicked(i) { el('imgAccept', i - 1).style.display = 'none'; el('imgRejectPressed', i - 1).style.display = 'none';
  el('imgAcceptPressed', i - 1).style.display = ''; el('imgReject', i - 1).style.display = ''; toggleMatch(i, true, true); }
function acceptPressedClicked(i) { el('imgAccept', i - 1).style.display = ''; el('imgAcceptPressed', i - 1).style.display = 'none'; toggleMatch(i, true, false); }
function rejectClicked(i) { el('imgAccept', i - 1).style.display = ''; el('imgRejectPressed', i - 1).style.display = '';
  el('imgAcceptPressed', i - 1).style.display = 'none'; el('imgReject', i - 1).style.display = 'none'; toggleMatch(i, false, true); }
function rejectPressedClicked(i) { el('imgReject', i - 1).style.display = ''; el('imgRejectPressed', i - 1).style.display = 'none'; toggleMatch(i, false, false); }
</script>)";

} // namespace

void MatchFinder::findMatchesNow()
{
    QFile::remove(pagePath());
    rejectedMatches.clear();
    refreshMatchesNow();
}

void MatchFinder::nothingFound()
{
    p_.ui.msgBox(QStringLiteral("לא נמצאו התאמות"), matchesTitle);
    frmMatchesVisible = false;
    if (changed)
        changed();
}

void MatchFinder::refreshMatchesNow()
{
    if (p_.ledger.iRowAboveRed >= p_.main.msfgMain.Rows() - 1 || p_.bank.iBankRowAboveRed >= p_.bank.lastRow()) {
        nothingFound();
        return;
    }
    reallyRefreshMatchesNow();
}

bool MatchFinder::isAcceptedMatch(int i)
{
    auto& wb = p_.wb();
    return i >= 1 && i <= wb.count(QStringLiteral("imgAcceptPressed")) && wb.display(QStringLiteral("imgAcceptPressed"), i - 1).isEmpty();
}

bool MatchFinder::isRejectedMatch(int i)
{
    auto& wb = p_.wb();
    return i >= 1 && i <= wb.count(QStringLiteral("imgRejectPressed")) && wb.display(QStringLiteral("imgRejectPressed"), i - 1).isEmpty();
}

void MatchFinder::reallyRefreshMatchesNow()
{
    OpenLedger& led = p_.ledger;
    previousMatches = std::move(matches);
    matches.clear();
    const auto& g = p_.main.msfgMain;
    const auto& bg = p_.bank.msfgBank;

    QSaveFile logFile(p_.logDirectory + QStringLiteral("match_log.txt"));
    const bool logging = logFile.open(QIODevice::WriteOnly);
    QByteArray log;
    if (logging)
        log = QStringLiteral("iRowAboveRed=%1\nmsfgMain.Rows=%2\niBankRowAboveRed=%3\nmsfgBank.Rows=%4\ntargetDate=%5\n\n")
                  .arg(led.iRowAboveRed)
                  .arg(g.Rows())
                  .arg(p_.bank.iBankRowAboveRed)
                  .arg(bg.Rows())
                  .arg(p_.links.targetDate.toString(QStringLiteral("dd/MM/yyyy")))
                  .toUtf8();
    searching = true;
    if (changed)
        changed();

    std::vector<char> mainTaken(size_t(g.Rows()) + 1, 0), bankTaken(size_t(bg.Rows()) + 1, 0);
    const bool pageThere = QFile::exists(pagePath());
    if (pageThere)
        for (size_t k = 0; k < previousMatches.size(); ++k) {
            const MatchPair& m = previousMatches[k];
            if (isAcceptedMatch(int(k) + 1))
                mainTaken[size_t(m.iMain)] = bankTaken[size_t(m.iBank)] = 1;
            else if (isRejectedMatch(int(k) + 1))
                rejectedMatches.insert(m.rows());
        }

    std::vector<MatchRow> lines, bank;
    lines.reserve(led.lines.size());
    for (size_t i = 0; i < led.lines.size(); ++i) {
        const int r = int(i) + 1;
        const Line& L = led.lines[i];
        lines.push_back(MatchRow{L.Date.toJulianDay(), g.text(r, colConfirm), L.In, L.out,
                                 g.text(r, colMark) == QLatin1String("v"), !g.isRowHidden(r)});
    }
    for (int r = 1; r <= p_.bank.lastRow(); ++r) {
        const BankRow& b = p_.bank.row(r);
        bank.push_back(MatchRow{b.date.toJulianDay(), bg.text(r, colConfirm), b.in, b.out, bg.text(r, colMark) == QLatin1String("v"), true});
    }
    MatchInput in;
    in.lines = &lines;
    in.bank = &bank;
    in.iRowAboveRed = led.iRowAboveRed;
    in.iBankRowAboveRed = p_.bank.iBankRowAboveRed;
    in.targetDay = p_.links.targetDate.toJulianDay();
    in.nDigits = led.nDigitsForConfirmComparison;
    in.maxDayDiff = led.maxDayDiffForMatch;
    in.rejected = pageThere ? &rejectedMatches : nullptr;
    // The wait notice comes when a search has run a second; from then on the
    // window paints between bank rows.
    QElapsedTimer running;
    running.start();
    in.pause = [this, &running] {
        if (!p_.letEventsRun || running.elapsed() < 1000)
            return;
        if (!waitNotice) {
            waitNotice = true;
            if (changed)
                changed();
        }
        p_.letEventsRun();
    };
    matches = runMatchPasses(in, mainTaken, bankTaken, logging ? &log : nullptr);

    searching = waitNotice = false;
    if (logging) {
        logFile.write(log);
        logFile.commit();
    }
    nNew = int(matches.size());
    if (pageThere)
        for (size_t k = 0; k < previousMatches.size(); ++k)
            if (isAcceptedMatch(int(k) + 1))
                matches.push_back(previousMatches[k]);
    if (matches.empty()) {
        nothingFound();
        return;
    }
    web::writePage(p_.tempPath, QStringLiteral("matchPage.htm"), pageHtml(nNew));
    frmMatchesVisible = true;
    p_.wb().navigate(pagePath());
    if (changed)
        changed();
}

int MatchFinder::pageWidth() const
{
    int w = (630 + 1725 + (matches.size() > 9 ? 325 : 0)) / twipsPerPixel;
    for (int c = colKind; c <= colOut; ++c)
        w += columnPixels(p_.main.msfgMain, c);
    return w;
}

int MatchFinder::pageHeight() const { return int(std::min<size_t>(9, matches.size())) * 45 + 72; }

QString MatchFinder::pageHtml(int n) const
{
    const auto& g = p_.main.msfgMain;
    const auto& bg = p_.bank.msfgBank;
    QString h;
    h.reserve(4096 + int(matches.size()) * 1500);
    h += QStringLiteral("<html><head>") + QString::fromLatin1(web::charsetMeta);
    h += QStringLiteral("<style>.toptbl{font-family:Tahoma;font-size:9pt;color:white;text-align:center}"
                        ".tdPelkor{font-family:Arial;font-size:9pt}.tdBank{font-family:Arial;font-size:9pt}"
                        "table{border-collapse:collapse}</style>");
    h += QString::fromUtf8(pageScript).replace(QStringLiteral("ACCEPT"), QLatin1Char('\'') + acceptColor + QLatin1Char('\''))
             .replace(QStringLiteral("REJECT"), QLatin1Char('\'') + rejectColor + QLatin1Char('\''));
    h += QStringLiteral("</head><body dir=rtl style=\"background:#FFF9BD;margin:0\">"
                        "<input type=hidden id=theID><button id=notifier style=\"display:none\"></button>");
    h += QStringLiteral("<input type=radio id=chkShowAllRows style=\"display:none\"%1>").arg(chkShowAll ? QStringLiteral(" checked") : QString());
    // The band: arrows drawn at both ends, the words between.
    const QString arrows = QStringLiteral("<svg width=\"99\" height=\"55\"><polygon points=\"10,27 40,10 40,20 90,20 90,34 40,34 40,44\" fill=\"#ddd\"/></svg>");
    h += QStringLiteral("<table class=toptbl style=\"position:absolute;top:0;width:100%;height:55px;background:black\"><tr><td width=99>") + arrows +
         QStringLiteral("</td><td>מוצגות השורות להן מצאה תוכנת הפלקור התאמה אל מול השורות בבנק.<br>"
                        "ככל שצבע הרקע כהה יותר איכות ההתאמה טובה יותר.<br><br>יש לקבל או לדחות כל הצעת התאמה.</td><td width=99>") +
         arrows + QStringLiteral("</td></tr></table>");
    h += QStringLiteral("<table style=\"position:absolute;top:56px\">");
    h += QStringLiteral("<tr id=headerTR class=pelkorheaderTR style=\"height:17px;background:#7777c0;color:white\"><td width=%1>מיקום</td>")
             .arg(630 / twipsPerPixel);
    for (int c = colKind; c <= colOut; ++c) {
        h += QStringLiteral("<td width=%1>").arg(columnPixels(g, c));
        web::appendEscaped(h, g.text(0, c));
        h += QStringLiteral("</td>");
    }
    h += QStringLiteral("<td width=%1></td></tr>").arg(1725 / twipsPerPixel);
    for (size_t k = 0; k < matches.size(); ++k) {
        const MatchPair& m = matches[k];
        const int i = int(k) + 1;
        const bool isNew = i <= n;
        const QString colour = isNew ? qualityColors[std::clamp(m.grade, 0, 4)] : acceptColor;
        const QString hide = !isNew && !chkShowAll ? QStringLiteral(";display:none") : QString();
        h += QStringLiteral("<tr id=trPelkor class=pelkorMaybeTR bgclr=\"%1\" style=\"height:17px;background:%1%2\"><td class=tdPelkor>פלקור</td>")
                 .arg(colour, hide);
        for (int c = colKind; c <= colOut; ++c) {
            h += QStringLiteral("<td class=tdPelkor>");
            web::appendEscaped(h, g.text(m.iMain, c));
            h += QStringLiteral("&nbsp;</td>");
        }
        h += QStringLiteral("<td rowspan=2><div id=divImgs>");
        h += picture(QStringLiteral("imgAccept"), QStringLiteral("#e8ffe8"), QStringLiteral("&#10003;"), QStringLiteral("acceptClicked"), i, !isNew);
        h += picture(QStringLiteral("imgAcceptPressed"), QStringLiteral("#44bb44"), QStringLiteral("&#10003;"), QStringLiteral("acceptPressedClicked"), i, isNew);
        h += picture(QStringLiteral("imgReject"), QStringLiteral("#ffe8e8"), QStringLiteral("&#10007;"), QStringLiteral("rejectClicked"), i, false);
        h += picture(QStringLiteral("imgRejectPressed"), QStringLiteral("#dd4444"), QStringLiteral("&#10007;"), QStringLiteral("rejectPressedClicked"), i, true);
        h += QStringLiteral("</div></td></tr>");
        h += QStringLiteral("<tr id=trBank class=bankMaybeTR bgclr=\"%1\" style=\"height:17px;background:%1%2\"><td class=tdBank>בנק</td>").arg(colour, hide);
        for (int c = colKind; c <= colOut; ++c) {
            h += QStringLiteral("<td class=tdBank>");
            web::appendEscaped(h, bg.text(m.iBank, c));
            h += QStringLiteral("&nbsp;</td>");
        }
        h += QStringLiteral("</tr><tr id=trSpace style=\"height:11px%1\"><td></td></tr>").arg(hide);
    }
    h += QStringLiteral("</table></body></html>");
    return h;
}

void MatchFinder::unload()
{
    matches.clear();
    previousMatches.clear();
    rejectedMatches.clear();
    frmMatchesVisible = false;
    if (changed)
        changed();
}

void MatchFinder::cmdOK_Click()
{
    frmMatchesVisible = false;
    applyConfirmedMatches();
    unload();
}

void MatchFinder::cmdCancel_Click() { unload(); }

void MatchFinder::chkShowAll_Click(bool on)
{
    chkShowAll = on;
    auto& wb = p_.wb();
    if (on)
        wb.click(QStringLiteral("chkShowAllRows"));
    for (size_t k = 0; k < matches.size(); ++k) {
        const int i = int(k) + 1;
        if (!isAcceptedMatch(i) && !isRejectedMatch(i))
            continue;
        for (const char* id : {"trPelkor", "trBank", "trSpace", "divImgs"})
            wb.setDisplay(QString::fromLatin1(id), on ? QString() : QStringLiteral("none"), i - 1);
    }
}

void MatchFinder::applyConfirmedMatches()
{
    RowLinks& links = p_.links;
    links.suppressSummary = true;
    links.isMainGridBusy = p_.bank.isBankGridBusy = true;
    auto& g = p_.main.msfgMain;
    auto& bg = p_.bank.msfgBank;
    for (const QString& id : std::vector<QString>(links.paintedIDs.items())) {
        for (size_t i = 0; i < p_.ledger.lines.size(); ++i)
            if (p_.ledger.lines[i].Id == id) {
                g.setRow(int(i) + 1);
                links.togglePaint(true);
                break;
            }
    }
    for (int r : std::vector<int>(links.paintedBankRows.items())) {
        bg.setRow(r);
        links.toggleBankPaint(true);
    }
    for (size_t k = 0; k < matches.size(); ++k) {
        if (!isAcceptedMatch(int(k) + 1))
            continue;
        // A pair whose sums differ waits on its own dialog: the rest wait
        // for another search.
        if (p_.coord.isWaitingForDialog())
            break;
        const MatchPair& m = matches[k];
        g.setRow(m.iMain);
        links.togglePaint(false);
        bg.setRow(m.iBank);
        links.toggleBankPaint(false);
        p_.coord.cmdCoordinate_Click();
    }
    links.suppressSummary = false;
    links.isMainGridBusy = p_.bank.isBankGridBusy = false;
    links.refreshMainSummaryLabels();
    links.refreshBankSummaryLabels();
    g.setRedraw(true);
    bg.setRedraw(true);
}

} // namespace pelkor::reconcile
