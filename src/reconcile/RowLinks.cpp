#include "reconcile/RowLinks.h"

#include "base/Format.h"
#include "base/Instance.h"
#include "base/Titles.h"
#include "base/Trace.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "reconcile/BankGrid.h"
#include "seams/store/StoreError.h"
#include "seams/ui/Ui.h"

#include <algorithm>

namespace pelkor::reconcile {

namespace {

const QString v = QStringLiteral("v");

// A sum as the old engine turned a number into text: fifteen digits.
QString sqlNumber(double x) { return QString::number(x, 'g', 15); }

// Puts the grid's redraw back as it was when the object ends, unless the
// batch keeps it off.
class RedrawScope {
public:
    RedrawScope(grid::GridModel& g, bool busy) : g_(g), busy_(busy) { g_.setRedraw(false); }
    ~RedrawScope() { if (!busy_) g_.setRedraw(true); }
    RedrawScope(const RedrawScope&) = delete;
    RedrawScope& operator=(const RedrawScope&) = delete;
private:
    grid::GridModel& g_;
    bool busy_;
};

} // namespace

void RowLinks::reset()
{
    rowLinks.clear();
    paintedIDs.clear();
    paintedBankRows.clear();
    litLink_ = -1;
    indexById_.clear();
    mainSummary_ = bankSummary_ = {};
}

bool RowLinks::isConfirmedMain(int row) const
{
    const auto& g = p_.main.msfgMain;
    return row >= 1 && row < g.Rows() && g.text(row, colMark) == v;
}

bool RowLinks::isConfirmedBank(int row) const
{
    const auto& g = p_.bank.msfgBank;
    return row >= 1 && row < g.Rows() && g.text(row, colMark) == v;
}

// ---- marking ----------------------------------------------------------------

void RowLinks::restyleMain(int row)
{
    auto& g = p_.main.msfgMain;
    restyleLineRow(p_.ledger, p_.instance, g, row - 1, p_.main.balancingLineID);
    // The cursor's cell keeps the cursor's colours.
    CursorMarks& marks = p_.main.msfgMainMarks;
    if (marks.litRow == row && g.Row() == row) {
        marks.litRow = marks.litCol = -99;
        updateCursorCells(p_.ledger, p_.instance, g, marks, p_.main.balancingLineID);
    }
}

void RowLinks::togglePaint(bool isConfirmed)
{
    OpenLedger& led = p_.ledger;
    auto& g = p_.main.msfgMain;
    const int row = g.Row();
    const int i = row - 1;
    if (i < 0 || i >= int(led.lines.size()) || row >= g.Rows())
        return;
    if (row <= led.iRowAboveRed && !forcePaint)
        return;
    const bool hadText = !g.text(row, colMark).isEmpty();
    if (hadText && !alreadyAsked) {
        if (p_.ui.msgBox(QStringLiteral("האם ברצונך לבטל התאמה זו"), pelkorTitle, ui::Buttons::YesNo) != ui::Answer::Yes)
            return;
        const int k = linkOfLine(led.lines[size_t(i)].Id);
        if (k < 0) {
            p_.ui.msgBox(QStringLiteral("there's a problem"), pelkorTitle);
            return;
        }
        alreadyAsked = true;
        cancelRowLink(k);
        alreadyAsked = false;
        return;
    }
    RedrawScope redraw(g, isMainGridBusy);
    Line& L = led.lines[size_t(i)];
    L.isPainted = !L.isPainted;
    L.isConfirmed = L.isPainted && isConfirmed;
    L.isLit = false;
    if (!L.isPainted) {
        if (!hadText)
            paintedIDs.remove(L.Id);
    } else if (!isConfirmed) {
        paintedIDs.add(L.Id);
    }
    g.setText(row, colMark, L.isConfirmed ? v : QString());
    restyleMain(row);
    if (!suppressSummary)
        refreshMainSummaryLabels();
}

void RowLinks::paintBankRow(int row, bool painted, bool isConfirmed, bool lit)
{
    auto& g = p_.bank.msfgBank;
    const std::uint32_t back = !painted ? bankColors::white
                               : !isConfirmed ? bankColors::mark
                               : lit ? colors::confirmedLit
                                     : colors::confirmed;
    const grid::CellStyle look{back, bankColors::markText, false};
    g.setStyle(row, painted ? colMark : colMark + 1, colType, look);
    if (!painted)
        g.setStyle(row, colMark, grid::CellStyle{bankColors::mark, bankColors::markText, false});
}

void RowLinks::toggleBankPaint(bool isConfirmed)
{
    BankGrid& b = p_.bank;
    auto& g = b.msfgBank;
    const int row = g.Row();
    if (row < 1 || row >= g.Rows() || size_t(row) >= b.bankRowPainted.size())
        return;
    if (row <= b.iBankRowAboveRed && !forcePaint)
        return;
    if (targetDate.isValid() && b.rowDate(row) > targetDate && !isChangingTargetDate)
        return;
    const bool hadText = !g.text(row, colMark).isEmpty();
    if (hadText && !alreadyAsked) {
        if (p_.ui.msgBox(QStringLiteral("האם ברצונך לבטל התאמה זו"), pelkorTitle, ui::Buttons::YesNo) != ui::Answer::Yes)
            return;
        const int k = linkOfBankRow(row);
        if (k < 0) {
            p_.ui.msgBox(QStringLiteral("problem"), pelkorTitle);
            return;
        }
        alreadyAsked = true;
        cancelRowLink(k);
        alreadyAsked = false;
        return;
    }
    RedrawScope redraw(g, b.isBankGridBusy);
    const bool painted = !b.bankRowPainted[size_t(row)];
    b.bankRowPainted[size_t(row)] = painted;
    paintBankRow(row, painted, isConfirmed);
    if (!painted) {
        if (!hadText)
            paintedBankRows.remove(row);
    } else if (!isConfirmed) {
        paintedBankRows.add(row);
    }
    g.setText(row, colMark, painted && isConfirmed ? v : QString());
    refreshBankSummaryLabels();
}

// ---- links -------------------------------------------------------------------

int RowLinks::addLinkOfMarked()
{
    rowLinks.push_back(RowLink{paintedIDs.items(), paintedBankRows.items()});
    return int(rowLinks.size()) - 1;
}

int RowLinks::linkOfLine(const QString& id) const
{
    for (size_t k = 0; k < rowLinks.size(); ++k)
        if (std::find(rowLinks[k].ids.begin(), rowLinks[k].ids.end(), id) != rowLinks[k].ids.end())
            return int(k);
    return -1;
}

int RowLinks::linkOfBankRow(int row) const
{
    for (size_t k = 0; k < rowLinks.size(); ++k)
        if (std::find(rowLinks[k].bankRows.begin(), rowLinks[k].bankRows.end(), row) != rowLinks[k].bankRows.end())
            return int(k);
    return -1;
}

void RowLinks::cancelRowLink(int i)
{
    if (i < 0 || i >= int(rowLinks.size()))
        return;
    OpenLedger& led = p_.ledger;
    auto& g = p_.main.msfgMain;
    auto& bg = p_.bank.msfgBank;
    const RowLink link = rowLinks[size_t(i)];
    const int mainRow = g.Row(), bankRow = bg.Row();
    const bool savedSuppress = suppressSummary, savedAsked = alreadyAsked;
    suppressSummary = true;
    alreadyAsked = true;
    if (litLink_ == i)
        unhighlightRowLinks();

    for (const QString& id : link.ids) {
        const int k = getLineIndexByID(id);
        if (k < 0) {
            // The line vanished from the grid: the walk goes on.
            g.setRowHeight(g.Rows() - 1, 0);
            continue;
        }
        if (!led.cn.execute(QStringLiteral("SELECT id FROM pelkor WHERE id=") + id).eof()) {
            revertRow(id);
        } else {
            // Born in this session (a balancing line): it goes with the pair.
            g.setRowHeight(k + 1, 0);
            led.sql.executeSQL(QStringLiteral("cancelRowLink"), QStringLiteral("DELETE FROM tempPelkor WHERE id=") + id);
            Line& L = led.lines[size_t(k)];
            L.In = L.out = 0;
            redrawLine(k);
        }
        g.setRow(k + 1);
        togglePaint(true);
    }
    const bool wasBusy = p_.bank.isBankGridBusy;
    p_.bank.isBankGridBusy = true;
    for (int r : link.bankRows) {
        bg.setRow(r);
        toggleBankPaint(true);
    }
    p_.bank.isBankGridBusy = wasBusy;
    if (!wasBusy)
        bg.setRedraw(true);
    suppressSummary = savedSuppress;
    alreadyAsked = savedAsked;
    refreshMainSummaryLabels();
    refreshBankSummaryLabels();
    g.setRow(std::min(mainRow, g.Rows() - 1));
    bg.setRow(std::min(bankRow, bg.Rows() - 1));
    rowLinks.erase(rowLinks.begin() + i);
    if (litLink_ > i)
        --litLink_;
}

void RowLinks::highlightRowLink(int i)
{
    if (i < 0 || i >= int(rowLinks.size()))
        return;
    auto& g = p_.main.msfgMain;
    auto& bg = p_.bank.msfgBank;
    // Redraw comes back on at the end, unless a batch keeps it off.
    g.setRedraw(false);
    bg.setRedraw(false);
    for (const QString& id : rowLinks[size_t(i)].ids) {
        const int k = getLineIndexByID(id);
        if (k < 0)
            continue;
        p_.ledger.lines[size_t(k)].isLit = p_.ledger.lines[size_t(k)].isConfirmed;
        restyleMain(k + 1);
    }
    for (int r : rowLinks[size_t(i)].bankRows)
        if (isConfirmedBank(r))
            paintBankRow(r, true, true, true);
    litLink_ = i;
    if (!isMainGridBusy)
        g.setRedraw(true);
    if (!p_.bank.isBankGridBusy)
        bg.setRedraw(true);
}

void RowLinks::unhighlightRowLinks()
{
    // Only one pair is ever lit: the one the cursor stood on.
    const int i = litLink_;
    litLink_ = -1;
    if (i < 0 || i >= int(rowLinks.size()))
        return;
    for (const QString& id : rowLinks[size_t(i)].ids) {
        const int k = getLineIndexByID(id);
        if (k < 0)
            continue;
        p_.ledger.lines[size_t(k)].isLit = false;
        restyleMain(k + 1);
    }
    for (int r : rowLinks[size_t(i)].bankRows)
        if (isConfirmedBank(r))
            paintBankRow(r, true, true, false);
}

void RowLinks::followCursor(bool onBankGrid)
{
    unhighlightRowLinks();
    if (onBankGrid) {
        const int r = p_.bank.msfgBank.Row();
        if (isConfirmedBank(r))
            highlightRowLink(linkOfBankRow(r));
    } else {
        const int r = p_.main.msfgMain.Row();
        if (isConfirmedMain(r) && r - 1 < int(p_.ledger.lines.size()))
            highlightRowLink(linkOfLine(p_.ledger.lines[size_t(r) - 1].Id));
    }
}

// ---- lines ------------------------------------------------------------------------

int RowLinks::getLineIndexByID(const QString& id)
{
    const auto& lines = p_.ledger.lines;
    auto it = indexById_.constFind(id);
    if (it != indexById_.constEnd() && *it < int(lines.size()) && lines[size_t(*it)].Id == id)
        return *it;
    // The lines were read anew since the index was made.
    indexById_.clear();
    indexById_.reserve(qsizetype(lines.size()));
    for (size_t k = 0; k < lines.size(); ++k)
        indexById_.insert(lines[k].Id, int(k));
    return indexById_.value(id, -1);
}

void RowLinks::redrawLine(int i)
{
    auto& g = p_.main.msfgMain;
    const int row = i + 1;
    const bool was = g.Redraw();
    g.deferTexts(row, row, colKind, colType);
    sumsChanged(p_.ledger, p_.instance, g, row);
    if (isMainGridBusy)
        g.setRedraw(false);
    else if (was)
        g.setRedraw(true);
}

void RowLinks::revertRow(const QString& id)
{
    OpenLedger& led = p_.ledger;
    auto rs = led.cn.execute(QStringLiteral("SELECT [in],[out],[date] FROM pelkor WHERE id=") + id);
    const int k = getLineIndexByID(id);
    if (rs.eof() || k < 0)
        return;
    const double in = RemoveSumNull(rs.field(0)), out = RemoveSumNull(rs.field(1));
    const QDate date = rs.field(2).isNull() ? nullDate() : rs.field(2).toDate();
    setInOutAndDate(k, in, out, date);
}

bool RowLinks::refreshRow(const QString& id)
{
    OpenLedger& led = p_.ledger;
    const int k = getLineIndexByID(id);
    if (k < 0)
        return true;
    auto rs = led.cn.execute(QStringLiteral("SELECT [date],[kind],[confirm],[detail],[TypeNum] FROM tempPelkor WHERE id=") + id);
    auto& g = p_.main.msfgMain;
    if (rs.eof()) {
        g.setRowHeight(k + 1, 0);
        return true;
    }
    const QString kind = RemoveNull(rs.field(1));
    if (!led.catalogue.categories.contains(kind)) {
        const QString text = QStringLiteral("invalid kind in database: %1, length=%2").arg(kind).arg(kind.size());
        p_.ui.msgBox(text, pelkorTitle);
        led.trace.DBMsgBox(QStringLiteral("refreshRow"), text);
        return false;
    }
    Line& L = led.lines[size_t(k)];
    L.Date = rs.field(0).isNull() ? nullDate() : rs.field(0).toDate();
    L.kind = kind;
    L.confirm = fixString(RemoveNull(rs.field(2)));
    L.detail = fixString(RemoveNull(rs.field(3)));
    L.TypeNum = rs.field(4).isNull() ? -1 : int(rs.field(4).toInt());
    L.Type = L.TypeNum < 0 ? QString() : led.catalogue.getTypeName(L.TypeNum);
    g.deferTexts(k + 1, k + 1, colKind, colType);
    return true;
}

void RowLinks::setInOutAndDate(int i, double in, double out, const QDate& date)
{
    OpenLedger& led = p_.ledger;
    if (i < 0 || i >= int(led.lines.size()))
        return;
    Line& L = led.lines[size_t(i)];
    L.In = in;
    L.out = out;
    L.Date = date;
    redrawLine(i);
    led.sql.executeSQL(QStringLiteral("setInOutAndDate"),
                       QStringLiteral("UPDATE tempPelkor SET [in]=%1,[out]=%2,[date]=%3 WHERE id=%4")
                           .arg(sqlNumber(in), sqlNumber(out), formatDateForSQL(date), L.Id));
}

void RowLinks::setTheDate(int i, const QDate& date)
{
    OpenLedger& led = p_.ledger;
    if (i < 0 || i >= int(led.lines.size()))
        return;
    Line& L = led.lines[size_t(i)];
    L.Date = date;
    p_.main.msfgMain.deferTexts(i + 1, i + 1, colDate, colDate);
    led.sql.executeSQL(QStringLiteral("setTheDate"),
                       QStringLiteral("UPDATE tempPelkor SET [date]=%1 WHERE id=%2").arg(formatDateForSQL(date), L.Id));
}

void RowLinks::restoreLooksAfterLoad(bool isRefresh)
{
    OpenLedger& led = p_.ledger;
    auto& g = p_.main.msfgMain;
    const int row = g.Row();
    const bool wasBusy = isMainGridBusy;
    forcePaint = alreadyAsked = suppressSummary = isMainGridBusy = true;
    g.setRedraw(false);
    litLink_ = -1;
    const int above = std::min(led.iRowAboveRed, g.Rows() - 1);
    for (int r = 1; r <= above; ++r) {
        g.setRow(r);
        togglePaint(true);
    }
    if (led.linesTable != QLatin1String("pelkor")) {
        for (const RowLink& link : rowLinks)
            for (const QString& id : link.ids) {
                const int k = getLineIndexByID(id);
                if (k < 0)
                    continue;
                g.setRow(k + 1);
                togglePaint(true);
            }
    }
    if (isRefresh) {
        for (const QString& id : std::vector<QString>(paintedIDs.items())) {
            const int k = getLineIndexByID(id);
            if (k < 0) {
                paintedIDs.remove(id);
                continue;
            }
            g.setRow(k + 1);
            togglePaint(false);
        }
    } else {
        paintedIDs.clear();
    }
    forcePaint = alreadyAsked = suppressSummary = false;
    isMainGridBusy = wasBusy;
    g.setRow(std::min(std::max(row, 1), g.Rows() - 1));
    g.setRedraw(true);
    refreshMainSummaryLabels();
}

// ---- summaries -----------------------------------------------------------------------

namespace {

QString linesSelected(int n)
{
    return n == 1 ? QStringLiteral("שורה אחת מסומנת") : QString::number(n) + QStringLiteral(" שורות מסומנות");
}

} // namespace

void RowLinks::refreshMainSummaryLabels()
{
    mainSummary_ = {};
    double in = 0, out = 0;
    int n = 0;
    for (const QString& id : paintedIDs) {
        const int k = getLineIndexByID(id);
        if (k < 0)
            continue;
        in += p_.ledger.lines[size_t(k)].In;
        out += p_.ledger.lines[size_t(k)].out;
        ++n;
    }
    if (n > 0)
        mainSummary_ = MarkSummary{FormatSum(in), FormatSum(out), linesSelected(n)};
    if (summariesChanged)
        summariesChanged();
}

void RowLinks::refreshBankSummaryLabels()
{
    bankSummary_ = {};
    if (!paintedBankRows.isEmpty()) {
        double in = 0, out = 0;
        for (int r : paintedBankRows) {
            in += p_.bank.row(r).in;
            out += p_.bank.row(r).out;
        }
        bankSummary_ = MarkSummary{FormatSum(in), FormatSum(out), linesSelected(paintedBankRows.size())};
    }
    p_.bank.lblBankTotalIn = bankSummary_.totalIn;
    p_.bank.lblBankTotalOut = bankSummary_.totalOut;
    p_.bank.lblBankLinesSelected = bankSummary_.linesSelected;
    if (summariesChanged)
        summariesChanged();
}

// ---- visibility ---------------------------------------------------------------------------

void RowLinks::toggleCoordinatedRowsVisibility(bool show)
{
    chkShowCoordinatedRows = show;
    auto& g = p_.main.msfgMain;
    auto& bg = p_.bank.msfgBank;
    const int height = show ? grid::GridModel::defaultRowHeight : 0;
    const bool mainWas = g.Redraw(), bankWas = bg.Redraw();
    g.setRedraw(false);
    bg.setRedraw(false);
    const int n = std::min(int(p_.ledger.lines.size()), g.Rows() - 1);
    for (int i = 0; i < n; ++i)
        if (p_.ledger.lines[size_t(i)].isConfirmed && g.text(i + 1, colMark) == v)
            g.setRowHeight(i + 1, height);
    for (int r = 1; r < bg.Rows(); ++r)
        if (bg.text(r, colMark) == v)
            bg.setRowHeight(r, height);
    if (!show)
        goToVisibleRows();
    g.setRedraw(mainWas);
    bg.setRedraw(bankWas);
}

void RowLinks::maybeHideNewRowLink(int i)
{
    if (chkShowCoordinatedRows || i < 0 || i >= int(rowLinks.size()))
        return;
    for (const QString& id : rowLinks[size_t(i)].ids) {
        const int k = getLineIndexByID(id);
        if (k >= 0)
            p_.main.msfgMain.setRowHeight(k + 1, 0);
    }
    for (int r : rowLinks[size_t(i)].bankRows)
        p_.bank.msfgBank.setRowHeight(r, 0);
    goToVisibleRows();
}

void RowLinks::goToVisibleRows()
{
    for (grid::GridModel* g : {&p_.main.msfgMain, &p_.bank.msfgBank}) {
        const int row = g->Row();
        if (row < 1 || !g->isRowHidden(row))
            continue;
        int to = -1;
        for (int r = row + 1; r < g->Rows() && to < 0; ++r)
            if (!g->isRowHidden(r))
                to = r;
        for (int r = row - 1; r >= 1 && to < 0; --r)
            if (!g->isRowHidden(r))
                to = r;
        if (to > 0)
            g->setRow(to);
    }
}

} // namespace pelkor::reconcile
