#include "reconcile/Coordination.h"

#include "base/Format.h"
#include "base/Instance.h"
#include "base/Titles.h"
#include "base/Trace.h"
#include "base/WindowCalls.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "file/Schema.h"
#include "reconcile/BankGrid.h"
#include "seams/store/StoreError.h"
#include "seams/ui/Ui.h"

#include <cmath>

namespace pelkor::reconcile {

bool sumsAgree(double a, double b)
{
    // An agora, and a margin far below the next representable difference a
    // user could type (0.0100001 must not agree).
    return std::fabs(a - b) <= 0.01 + 1e-9;
}

QString invoiceKindsInList(const QString& theInvoiceCategs)
{
    QStringList quoted;
    for (const QString& k : theInvoiceCategs.split(QLatin1Char(','), Qt::SkipEmptyParts))
        if (!k.trimmed().isEmpty())
            quoted << QLatin1Char('\'') + fixString(k.trimmed()) + QLatin1Char('\'');
    return quoted.join(QLatin1Char(','));
}

namespace {

QString sqlNumber(double x) { return QString::number(x, 'g', 15); }

const QString incomeAgainstExpense = QStringLiteral("לא ניתן להתאים שורת/ות הכנסה לשורת/ות הוצאה");
const QString cannotJoinDirections = QStringLiteral("לא ניתן לאחד שורת/ות הכנסה עם שורת/ות הוצאה");

// A bank row's or a line's text for a new line: trimmed, escaped, and one
// blank for nothing.
QString lineText(const QString& s)
{
    const QString t = fixString(s.trimmed());
    return t.isEmpty() ? QStringLiteral(" ") : t;
}

} // namespace

bool Coordination::refuse(const QString& text)
{
    p_.links.ui.msgBox(text, pelkorTitle, ui::Buttons::OK, ui::Icon::Exclamation);
    return false;
}

void Coordination::putBackRows()
{
    auto& g = p_.links.main.msfgMain;
    auto& bg = p_.links.bank.msfgBank;
    g.setRow(std::min(savedMainRow_, g.Rows() - 1));
    bg.setRow(std::min(savedBankRow_, bg.Rows() - 1));
}

void Coordination::cmdCoordinate_Click()
{
    TraceScope t(p_.links.ledger.trace, QStringLiteral("cmdCoordinate_Click"));
    RowLinks& L = p_.rowLinks;
    savedMainRow_ = p_.links.main.msfgMain.Row();
    savedBankRow_ = p_.links.bank.msfgBank.Row();
    wasMainGridActive = isMainGridActive ? isMainGridActive() : true;
    if (p_.focusGrid)
        p_.focusGrid(true);
    const int m = L.paintedIDs.size(), b = L.paintedBankRows.size();
    const QString chooseLine = QStringLiteral("יש לבחור לפחות שורה אחת בפלקור");
    if (m == 0 && b == 0) {
        refuse(chooseLine + QStringLiteral(" ולפחות שורה אחת בבנק") + u'\n' +
               QStringLiteral("(לבחירת שורה לצורך התאמה יש ללחוץ על המשבצת הורודה)"));
    } else if (m == 0) {
        refuse(chooseLine);
    } else if (b == 0) {
        refuse(QStringLiteral("יש לבחור לפחות שורה אחת בבנק"));
    } else if (m == 1 && b == 1) {
        oneToOne();
        return;
    } else if (m == 1) {
        oneToMany();
        return;
    } else if (b == 1) {
        manyToOne();
        return;
    } else {
        refuse(QStringLiteral("לא ניתן להתאים שורות מרובות בפלקור לשורות מרובות בבנק"));
    }
    putBackRows();
}

void Coordination::oneToOne()
{
    RowLinks& L = p_.rowLinks;
    OpenLedger& led = p_.links.ledger;
    const int k = L.getLineIndexByID(L.paintedIDs[0]);
    const int r = L.paintedBankRows[0];
    if (k < 0) {
        putBackRows();
        return;
    }
    p_.links.main.msfgMain.setRow(k + 1);
    p_.links.bank.msfgBank.setRow(r);
    const BankRow& bank = p_.links.bank.row(r);
    const bool lineIncome = led.lines[size_t(k)].out <= 0, bankIncome = bank.out <= 0;
    if (lineIncome != bankIncome) {
        refuse(incomeAgainstExpense);
        L.togglePaint(true);
        L.toggleBankPaint(true);
        putBackRows();
        return;
    }
    store::Transaction tx(led.cn);
    L.setInOutAndDate(k, bank.in, bank.out, bank.date);
    confirmMarked({});
    tx.commit();
    if (L.chkShowCoordinatedRows)
        putBackRows();
}

void Coordination::oneToMany()
{
    RowLinks& L = p_.rowLinks;
    OpenLedger& led = p_.links.ledger;
    BankGrid& bank = p_.links.bank;
    const int k = L.getLineIndexByID(L.paintedIDs[0]);
    if (k < 0) {
        putBackRows();
        return;
    }
    const BankRow& first = bank.row(L.paintedBankRows[0]);
    const bool firstIncome = first.out == 0;
    if ((led.lines[size_t(k)].out == 0) != firstIncome) {
        refuse(incomeAgainstExpense);
        putBackRows();
        return;
    }
    coordDate = first.date;
    double in = 0, out = 0;
    for (int j = 1; j < L.paintedBankRows.size(); ++j) {
        const BankRow& other = bank.row(L.paintedBankRows[j]);
        if (other.date != coordDate) {
            refuse(QStringLiteral("לא ניתן לאחד שורות בבנק בעלות תאריכים שונים"));
            putBackRows();
            return;
        }
        if ((other.out == 0) != firstIncome) {
            refuse(cannotJoinDirections);
            putBackRows();
            return;
        }
        in += other.in;
        out += other.out;
    }
    in += first.in;
    out += first.out;
    store::Transaction tx(led.cn);
    L.setInOutAndDate(k, in, out, coordDate);
    confirmMarked({});
    tx.commit();
    if (L.chkShowCoordinatedRows)
        putBackRows();
}

void Coordination::manyToOne()
{
    RowLinks& L = p_.rowLinks;
    OpenLedger& led = p_.links.ledger;
    const BankRow& bank = p_.links.bank.row(L.paintedBankRows[0]);
    std::vector<int> idx;
    for (const QString& id : L.paintedIDs) {
        const int k = L.getLineIndexByID(id);
        if (k < 0) {
            putBackRows();
            return;
        }
        idx.push_back(k);
    }
    const Line& first = led.lines[size_t(idx[0])];
    const bool firstIncome = first.out == 0;
    if (firstIncome != (bank.out <= 0)) {
        refuse(incomeAgainstExpense);
        putBackRows();
        return;
    }
    coordDate = bank.date;
    double in = 0, out = 0;
    const QString balancingId = balancingLineID < 0 ? QString() : QString::number(balancingLineID);
    for (size_t j = 1; j < idx.size(); ++j) {
        const Line& other = led.lines[size_t(idx[j])];
        if ((other.out == 0) != firstIncome && other.Id != balancingId) {
            refuse(cannotJoinDirections);
            putBackRows();
            return;
        }
        in += other.In;
        out += other.out;
    }
    balancingLineID = -1;
    in += first.In;
    out += first.out;
    const double diff = (bank.in - in) - (bank.out - out);
    if (sumsAgree(diff, 0)) {
        completeHandlingMultiplePelkorLines();
        return;
    }

    // The lines do not reach the bank's sum: a balancing line is born and
    // the user completes it in a dialog.
    const QString proc = QStringLiteral("cmdCoordinate_Click");
    const QString date = formatDateForSQL(coordDate);
    {
        store::Transaction tx(led.cn);
        // Sums are whole agorot; the difference of two sums of doubles is
        // one too, less a trace of binary fractions.
        const double amount = std::round(std::fabs(diff) * 100) / 100;
        const QString values = diff > 0
            ? QStringLiteral("%1,0,%2,'+0',1,'coord0')").arg(sqlNumber(amount), date)
            : QStringLiteral("0,%1,%2,'-0',2,'coord0')").arg(sqlNumber(amount), date);
        led.sql.executeSQL(proc, QStringLiteral("INSERT INTO tempPelkor([detail],[in],[out],[date],[kind],[TypeNum],[zee]) "
                                                "values('(שורת איזון יתרה)',") + values);
        for (const QString& id : L.paintedIDs)
            led.sql.executeSQL(proc, QStringLiteral("UPDATE tempPelkor SET zee='coord9' WHERE id=") + id);
        tx.commit();
    }
    saveCopy();
    {
        store::Transaction tx(led.cn);
        for (const QString& id : L.paintedIDs)
            led.sql.executeSQL(proc, QStringLiteral("UPDATE tempPelkor SET [date]=%1 WHERE id=%2").arg(date, id));
        tx.commit();
    }
    copyOfPaintedIDs = L.paintedIDs;
    startDialog(lineDialogMultiplePelkorOneBank);
}

int Coordination::confirmMarked(const std::function<void(int lineIndex)>& beforeLine)
{
    RowLinks& L = p_.rowLinks;
    const int link = L.addLinkOfMarked();
    const std::vector<QString> ids = L.paintedIDs.items();
    const std::vector<int> rows = L.paintedBankRows.items();
    L.suppressSummary = true;
    for (const QString& id : ids) {
        const int k = L.getLineIndexByID(id);
        if (beforeLine)
            beforeLine(k);
        p_.links.main.msfgMain.setRow(k + 1);
        L.togglePaint(true);   // marked: cleared ...
        L.togglePaint(true);   // ... then confirmed
    }
    for (int r : rows) {
        p_.links.bank.msfgBank.setRow(r);
        L.toggleBankPaint(true);
        L.toggleBankPaint(true);
    }
    L.suppressSummary = false;
    L.refreshMainSummaryLabels();
    L.highlightRowLink(link);
    L.maybeHideNewRowLink(link);
    return link;
}

void Coordination::completeHandlingMultiplePelkorLines()
{
    RowLinks& L = p_.rowLinks;
    OpenLedger& led = p_.links.ledger;
    {
        // The lines take the bank row's date as they are confirmed.
        store::Transaction tx(led.cn);
        confirmMarked([&](int k) { L.setTheDate(k, coordDate); });
        tx.commit();
    }
    if (L.chkShowCoordinatedRows) {
        putBackRows();
        if (p_.focusGrid)
            p_.focusGrid(wasMainGridActive);
    }
}

void Coordination::saveCopy()
{
    OpenLedger& led = p_.links.ledger;
    const QString proc = QStringLiteral("saveCopy");
    try {
        led.sql.executeSQL(proc, QStringLiteral("DROP TABLE savedPelkor"));
    } catch (const store::StoreError&) {
        // No copy was left by an earlier step.
    }
    if (p_.closeCn)
        p_.closeCn();
    if (p_.reopenCon)
        p_.reopenCon();
    store::Transaction tx(led.cn);
    led.sql.executeSQL(proc, QStringLiteral("SELECT * INTO savedPelkor from tempPelkor WHERE zee in ('coord9','coord2')"));
    led.sql.executeSQL(proc, QStringLiteral("UPDATE savedPelkor SET zee=' ' WHERE zee in ('coord2','coord9')"));
    tx.commit();
    if (p_.closeCn)
        p_.closeCn();
    if (p_.reopenCon)
        p_.reopenCon();
}

void Coordination::startDialog(NewLineDialogType type)
{
    pendingType_ = type;
    if (p_.closeCn)
        p_.closeCn();
    if (p_.enableWindow)
        p_.enableWindow(false);
    p_.window.openNewDialog(type);
}

void Coordination::checkForUnconfirmedBankRows()
{
    RowLinks& L = p_.rowLinks;
    OpenLedger& led = p_.links.ledger;
    BankGrid& bank = p_.links.bank;
    TraceScope t(led.trace, QStringLiteral("checkForUnconfirmedBankRows"));
    // Every mark cleared first.
    L.suppressSummary = true;
    for (const QString& id : std::vector<QString>(L.paintedIDs.items())) {
        const int k = L.getLineIndexByID(id);
        if (k < 0)
            continue;
        p_.links.main.msfgMain.setRow(k + 1);
        L.togglePaint(true);
    }
    for (int r : std::vector<int>(L.paintedBankRows.items())) {
        bank.msfgBank.setRow(r);
        L.toggleBankPaint(true);
    }
    L.suppressSummary = false;
    L.refreshMainSummaryLabels();

    int count = 0;
    {
        store::Transaction tx(led.cn);
        const auto& g = bank.msfgBank;
        for (int r = 1; r < g.Rows(); ++r) {
            const BankRow& row = bank.row(r);
            if ((L.targetDate.isValid() && row.date > L.targetDate) || g.text(r, colMark) == QLatin1String("v"))
                continue;
            ++count;
            const QString kindAndType = row.out > 0 ? QStringLiteral("'-0',2,") : QStringLiteral("'+0',1,");
            led.sql.executeSQL(t.proc(),
                               QStringLiteral("INSERT INTO tempPelkor([in],[out],[memo],[kind],[typeNum],[confirm],[detail],[date],[zee]) "
                                              "values(%1,%2,%3,%4'%5','%6',%7,'coord1')")
                                   .arg(sqlNumber(row.in), sqlNumber(row.out), QString::number(r), kindAndType,
                                        lineText(g.text(r, colConfirm)), lineText(g.text(r, colDetail)),
                                        formatDateForSQL(row.date)));
        }
        tx.commit();
    }
    if (count == 0)
        checkForUnconfirmedRows();
    else
        startDialog(lineDialogUnconfirmedBank);
}

void Coordination::checkForUnconfirmedRows()
{
    OpenLedger& led = p_.links.ledger;
    BankGrid& bank = p_.links.bank;
    const auto& g = p_.links.main.msfgMain;
    const QDate target = p_.rowLinks.targetDate;
    TraceScope t(led.trace, QStringLiteral("checkForUnconfirmedRows"));
    int count = 0;
    {
        store::Transaction tx(led.cn);
        const int n = std::min(int(led.lines.size()), g.Rows() - 1);
        for (int i = 0; i < n; ++i) {
            const Line& line = led.lines[size_t(i)];
            if ((target.isValid() && line.Date > target) || g.text(i + 1, colMark) == QLatin1String("v") ||
                g.isRowHidden(i + 1))
                continue;
            led.sql.executeSQL(t.proc(), QStringLiteral("UPDATE tempPelkor SET zee='coord2' WHERE id=") + line.Id);
            ++count;
        }
        tx.commit();
    }
    if (count == 0) {
        if (p_.compareFinalBalances)
            p_.compareFinalBalances();
        return;
    }
    saveCopy();
    QDate theNewIpusDate;
    for (int r = bank.lastRow(); r >= 1 && !theNewIpusDate.isValid(); --r)
        if (!target.isValid() || bank.rowDate(r) <= target)
            theNewIpusDate = bank.rowDate(r);
    {
        store::Transaction tx(led.cn);
        if (theNewIpusDate.isValid()) {
            QString clear = QStringLiteral("UPDATE tempPelkor SET [relate]=0 WHERE zee='coord2' AND [date]<=") +
                            formatDateForSQL(theNewIpusDate);
            const QString invoice = invoiceKindsInList(led.theInvoiceCategs);
            if (!invoice.isEmpty())
                clear += QStringLiteral(" AND NOT [kind] IN (") + invoice + QLatin1Char(')');
            led.sql.executeSQL(t.proc(), clear);
        }
        led.sql.executeSQL(t.proc(), QStringLiteral("UPDATE tempPelkor SET [date]=%1 WHERE zee='coord2'")
                                         .arg(formatDateForSQL(target.addDays(1))));
        tx.commit();
    }
    startDialog(lineDialogUnconfirmedPelkor);
}

// ---- the dialog's answer --------------------------------------------------------------

namespace {

// A line of the working table as a load reads it (the rows a dialog added).
Line lineOfRow(const OpenLedger& led, const store::Recordset& rs, long r)
{
    auto f = [&](const char* name) { return rs.at(r, rs.fieldIndex(QString::fromLatin1(name))); };
    Line L;
    L.Id = RemoveNull(f("id"));
    L.kind = RemoveNull(f("kind"));
    L.Date = f("date").isNull() ? nullDate() : f("date").toDate();
    L.confirm = fixString(RemoveNull(f("confirm")));
    if (L.confirm.isEmpty())
        L.confirm = QStringLiteral(" ");
    L.detail = fixString(RemoveNull(f("detail")));
    L.In = RemoveSumNull(f("in"));
    L.out = RemoveSumNull(f("out"));
    if (!f("TypeNum").isNull()) {
        L.TypeNum = int(f("TypeNum").toInt());
        L.Type = led.catalogue.getTypeName(L.TypeNum);
    }
    L.Memo = RemoveNull(f("memo"));
    L.zee = RemoveNull(f("zee"));
    L.relate = int(RemoveSumNull(f("relate")));
    L.isTzefi = RemoveSumNull(f("IndTzefi")) != 0;
    return L;
}

} // namespace

void Coordination::addNewLinesOfDialog(NewLineDialogType type)
{
    RowLinks& L = p_.rowLinks;
    OpenLedger& led = p_.links.ledger;
    auto& g = p_.links.main.msfgMain;
    auto rs = led.cn.execute(QStringLiteral("SELECT * FROM tempPelkor WHERE left(zee,5)='coord' AND zee<>'coord9' ORDER BY ") +
                             QString::fromLatin1(schema::lineOrder));
    if (rs.recordCount() == 0)
        p_.links.ui.msgBox(QStringLiteral("nNewLines=0"), QStringLiteral("תקלה"), ui::Buttons::OK, ui::Icon::Exclamation);
    L.suppressSummary = true;
    L.isMainGridBusy = true;
    p_.links.bank.isBankGridBusy = true;
    g.setRedraw(false);
    for (long r = 0; r < rs.recordCount(); ++r) {
        Line line = lineOfRow(led, rs, r);
        if (!led.catalogue.isCategory(line.kind)) {
            p_.links.ui.msgBox(QStringLiteral("invalid kind in database"), pelkorTitle);
            continue;
        }
        if (line.zee == QLatin1String("coord0")) {
            balancingLineID = line.Id.toLongLong();
            if (copyOfPaintedIDs)
                copyOfPaintedIDs->add(line.Id);
        }
        const int bankRow = line.Memo.toInt();
        led.lines.push_back(line);
        led.balances.staleFrom(led.lines.size() - 1);
        led.alternatingIndexes.push_back(0);
        const int row = g.addRow();
        g.setRowHeight(row, grid::GridModel::defaultRowHeight);
        g.deferTexts(row, row, colKind, g.Cols() - 1);
        restyleLineRow(led, p_.links.instance, g, row - 1);
        g.setRow(row);
        L.togglePaint(false);
        if (type == lineDialogUnconfirmedBank) {
            p_.links.bank.msfgBank.setRow(bankRow);
            L.toggleBankPaint(false);
            cmdCoordinate_Click();
            led.lines[size_t(row) - 1].Memo.clear();
        }
    }
    L.suppressSummary = false;
    L.isMainGridBusy = false;
    p_.links.bank.isBankGridBusy = false;
    L.refreshMainSummaryLabels();
    g.setRedraw(true);
}

void Coordination::dialogAnswered(bool ok)
{
    const NewLineDialogType type = pendingType_;
    pendingType_ = lineDialogNone;
    RowLinks& L = p_.rowLinks;
    OpenLedger& led = p_.links.ledger;
    const QString proc = QStringLiteral("timerCoordinationMessageChecker");
    if (p_.enableWindow)
        p_.enableWindow(true);
    if (p_.reopenCon)
        p_.reopenCon();
    if (!ok) {
        // The dialog was closed: its lines go, the saved lines come back.
        store::Transaction tx(led.cn);
        led.sql.executeSQL(proc, QStringLiteral("DELETE FROM tempPelkor WHERE left(zee,5)='coord'"));
        if (type != lineDialogUnconfirmedBank)
            led.sql.executeSQL(proc, QStringLiteral("INSERT INTO tempPelkor SELECT * FROM savedPelkor"));
        tx.commit();
        L.suppressSummary = L.forcePaint = L.alreadyAsked = true;
        for (const QString& id : std::vector<QString>(L.paintedIDs.items())) {
            const int k = L.getLineIndexByID(id);
            if (k < 0)
                continue;
            p_.links.main.msfgMain.setRow(k + 1);
            L.togglePaint(true);
        }
        for (int r : std::vector<int>(L.paintedBankRows.items())) {
            p_.links.bank.msfgBank.setRow(r);
            L.toggleBankPaint(true);
        }
        L.suppressSummary = L.forcePaint = L.alreadyAsked = false;
        L.refreshMainSummaryLabels();
        L.refreshBankSummaryLabels();
        copyOfPaintedIDs.reset();
        // The working table changed under the grid: read it again.
        p_.window.refresh();
        return;
    }

    if (type == lineDialogUnconfirmedPelkor) {
        const auto& g = p_.links.main.msfgMain;
        for (int r = 1; r < g.Rows() && r - 1 < int(led.lines.size()); ++r)
            if (g.text(r, colMark) != QLatin1String("v") && !g.isRowHidden(r))
                if (!L.refreshRow(led.lines[size_t(r) - 1].Id))
                    break;
    } else {
        addNewLinesOfDialog(type);
    }
    led.sql.executeSQL(proc, QStringLiteral("UPDATE tempPelkor SET zee=' ' WHERE left(zee,5)='coord'"));
    if (p_.closeCn)
        p_.closeCn();
    if (p_.reopenCon)
        p_.reopenCon();
    switch (type) {
    case lineDialogUnconfirmedPelkor:
        copyOfPaintedIDs.reset();
        if (p_.compareFinalBalances)
            p_.compareFinalBalances();
        return;
    case lineDialogUnconfirmedBank:
        p_.window.refresh();
        copyOfPaintedIDs.reset();
        checkForUnconfirmedRows();
        return;
    default:
        p_.window.refresh();
        L.toggleCoordinatedRowsVisibility(L.chkShowCoordinatedRows);
        cmdCoordinate_Click();
        copyOfPaintedIDs.reset();
        return;
    }
}

} // namespace pelkor::reconcile
