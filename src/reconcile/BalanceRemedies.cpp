// The session's ways out of an opening disagreement: the zeroing line back
// to an agreeing day, a balancing line, or a new file filled from the bank;
// and the hint of where the balances part.
#include "reconcile/Session.h"

#include "base/Format.h"
#include "base/Trace.h"
#include "base/WindowCalls.h"
#include "file/Display.h"
#include "file/OpenLedger.h"
#include "file/Schema.h"
#include "reconcile/BalanceParting.h"
#include "seams/ui/Ui.h"

#include <cmath>

namespace pelkor::reconcile {

namespace {

QString sqlNumber(double x) { return QString::number(x, 'g', 15); }

// A text for a statement: apostrophes turned, an empty text one blank.
QString cellText(const QString& s)
{
    const QString t = fixString(s);
    return t.isEmpty() ? QStringLiteral(" ") : t;
}

} // namespace

bool Session::isNewPelkorFile() const
{
    const auto& lines = p_.ledger.lines;
    return lines.size() == 1 && lines.front().detail.left(12) == QStringLiteral("יתרה התחלתית");
}

QString Session::partingHint(int lastRow) const
{
    const OpenLedger& led = p_.ledger;
    if (lastRow < 1)
        return {};
    std::vector<DatedBalance> file, bankSide;
    const int above = std::min(led.iRowAboveRed, int(led.lines.size()));
    file.reserve(size_t(std::max(above, 0)));
    for (int i = 0; i < above; ++i)
        file.push_back({led.lines[size_t(i)].Date, led.balances[size_t(i)]});
    for (int r = 1; r <= lastRow && r <= bank.lastRow(); ++r)
        bankSide.push_back({bank.row(r).date, bank.row(r).balance});
    const auto p = findParting(file, bankSide, led.ipusDate);
    return p ? partingText(*p) : QString();
}

bool Session::optPrevDay()
{
    OpenLedger& led = p_.ledger;
    TraceScope t(led.trace, QStringLiteral("optPrevDay"));
    // Both grids are walked up from the zeroing date together; the first
    // rows met on a date are that date's last in each grid, and each date
    // is tested once, on them.
    int iMain = led.iRowAboveRed, iBank = iBankRowOnIpus;
    if (iMain < 1 || iBank < 1 || size_t(iMain) > led.lines.size())
        return false;
    const QDate ipus = led.ipusDate;
    QDate mainDate = ipus, bankDate = ipus, lastDate = ipus;
    for (;;) {
        if (mainDate > bankDate) {
            if (iMain == 1)
                return false;
            --iMain;
            mainDate = led.lines[size_t(iMain) - 1].Date;
            if (mainDate < ipus.addDays(-10)) {
                p_.ui.msgBox(QStringLiteral("לא נמצא ב-10 הימים הקודמים יום בו היו יתרות תואמות"), QStringLiteral("יתרה"),
                             ui::Buttons::OK, ui::Icon::Exclamation);
                return false;
            }
            continue;
        }
        if (mainDate == bankDate && mainDate < lastDate) {
            if (std::fabs(led.balances[size_t(iMain) - 1] - bank.row(iBank).balance) <= 0.01 + 1e-9) {
                t.line(QStringLiteral("agreed on ") + formatDate224(mainDate));
                led.ipusDate = mainDate;
                if (p_.updateIpus)
                    p_.updateIpus();
                if (p_.closeCn)
                    p_.closeCn();
                if (p_.reopenCon)
                    p_.reopenCon();
                p_.window.refresh();
                return true;
            }
            lastDate = mainDate;
        }
        if (iBank == 1)
            return false;
        --iBank;
        bankDate = bank.rowDate(iBank);
    }
}

void Session::optBalancingLine()
{
    OpenLedger& led = p_.ledger;
    TraceScope t(led.trace, QStringLiteral("optBalancingLine"));
    const bool income = balanceDiff > 0;
    led.sql.executeSQL(t.proc(),
                       QStringLiteral("INSERT into %1([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) "
                                      "Values('%2',%3,' ','שורת איזון יתרה',%4,%5,%6,' ','newline ללא צבע')")
                           .arg(led.linesTable, income ? QStringLiteral("+0") : QStringLiteral("-0"), formatDateForSQL(led.ipusDate),
                                sqlNumber(income ? balanceDiff : 0), sqlNumber(income ? 0 : -balanceDiff),
                                income ? QStringLiteral("1") : QStringLiteral("2")));
    if (p_.closeCn)
        p_.closeCn();
    if (p_.reopenCon)
        p_.reopenCon();
    p_.window.refresh();
}

void Session::optNewPelkor()
{
    OpenLedger& led = p_.ledger;
    TraceScope t(led.trace, QStringLiteral("optNewPelkor"));
    if (bank.lastRow() < 1)
        return;
    const auto& g = bank.msfgBank;
    const BankRow& first = bank.row(1);
    const double opening = first.balance - first.in + first.out;
    const QDate target = links.targetDate.isValid() ? links.targetDate : led.targetDate;
    const QString mark = QString::fromLatin1(schema::ipusMark);
    QDate newIpus = first.date.addDays(-1);
    {
        // The opening line and the bank's rows go in together, or nothing
        // does.
        store::Transaction tx(led.cn);
        int lastCopied = 0;
        for (int r = 1; r <= bank.lastRow() && bank.rowDate(r) <= target; ++r)
            lastCopied = r;
        led.sql.executeSQL(t.proc(), QStringLiteral("UPDATE %1 SET [in]=%2,[out]=%3,[date]=%4,zee='%5',kind='%6',typeNum=%7")
                                         .arg(led.linesTable, sqlNumber(opening > 0 ? opening : 0),
                                              sqlNumber(opening > 0 ? 0 : -opening), formatDateForSQL(newIpus),
                                              lastCopied == 0 ? mark : QStringLiteral(" "),
                                              opening < 0 ? QStringLiteral("-0") : QStringLiteral("+0"),
                                              opening < 0 ? QStringLiteral("2") : QStringLiteral("1")));
        for (int r = 1; r <= lastCopied; ++r) {
            const BankRow& row = bank.row(r);
            const bool income = row.out == 0;
            led.sql.executeSQL(t.proc(), QStringLiteral("INSERT into %1([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee]) "
                                                        "Values('%2',%3,'%4','%5',%6,%7,%8,'%9')")
                                             .arg(led.linesTable, income ? QStringLiteral("+0") : QStringLiteral("-0"),
                                                  formatDateForSQL(row.date), cellText(g.text(r, colConfirm)),
                                                  cellText(g.text(r, colDetail)), sqlNumber(row.in), sqlNumber(row.out),
                                                  income ? QStringLiteral("1") : QStringLiteral("2"),
                                                  r == lastCopied ? mark : QStringLiteral(" ")));
            if (r == lastCopied)
                newIpus = row.date;
        }
        tx.commit();
    }
    if (p_.closeCn)
        p_.closeCn();
    if (p_.reopenCon)
        p_.reopenCon();
    p_.window.refresh();
    led.ipusDate = newIpus;
    if (p_.updateIpus)
        p_.updateIpus();
}

void Session::mnuFindMatches_Click()
{
    if (!pairing() || finder.searching)
        return;
    if (shown.chkShowCoordinatedRowsValue)
        chkShowCoordinatedRows_Click(false);
    finder.findMatchesNow();
}

} // namespace pelkor::reconcile
