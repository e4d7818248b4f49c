// frmMonthReportMain: the lists' ticks and the pages' updates in place.
//
// A click in a list changes its own report only, and never rebuilds its
// page: the rows of unticked kinds or types are hidden in every table of
// the page, and the totals, the surplus and the running balance of every
// column are rewritten. A section's or a category's box walks its rows in
// a batch, so the totals are computed and written once at its end.
//
// The boxes: a user's click has already flipped the box, so the logic
// flips its state; a box the logic sets is written anew into its cell.
#include "reports/frmMonthReportMain.h"

#include "file/OpenLedger.h"
#include "seams/web/WebView.h"

namespace pelkor::reports {

namespace {

// The amount of a rewritten cell, in a span carrying the cell's class.
void setCell(web::WebView& v, int row, int index, double value, const QString& cls)
{
    v.setInnerHtml(QStringLiteral("c") + QString::number(row),
                   QStringLiteral("<span class=") + cls + QLatin1Char('>') + formatAmount(value, true) + QStringLiteral("</span>"), index);
}

QString boxMarkup(const QString& boxId, bool on, const QString& event)
{
    return QStringLiteral("<input type=checkbox id=%1%2 onclick=\"event_handler('%3')\">")
        .arg(boxId, on ? QStringLiteral(" checked") : QString(), event);
}

} // namespace

void frmMonthReportMain::setBox(int which, const QString& cellId, const QString& boxId, bool on, const QString& event, int index)
{
    web::WebView* v = views_.wbList[which];
    if (v && v->isComplete())
        v->setInnerHtml(cellId, boxMarkup(boxId, on, event), index);
}

void frmMonthReportMain::syncListBoxes()
{
    const int n = names_.nCategories();
    setBox(1, QStringLiteral("tdExpenses"), QStringLiteral("chkExpenses"), kinds_.showExpensesTotal, QStringLiteral("kex"));
    setBox(1, QStringLiteral("tdIncomes"), QStringLiteral("chkIncomes"), kinds_.showIncomesTotal, QStringLiteral("kin"));
    for (int r = 0; r < n; ++r)
        setBox(1, QStringLiteral("tdKind"), QStringLiteral("chkKind"), kinds_.checked[size_t(kindOfListRow(r, n))],
               QStringLiteral("knd") + QString::number(r), r);
    if (!isTypeReportIncluded_)
        return;
    const SumSet& s = types_.sums;
    setBox(0, QStringLiteral("tdExpenses"), QStringLiteral("chkExpenses"), s.showExpensesTotal, QStringLiteral("tex"));
    setBox(0, QStringLiteral("tdIncomes"), QStringLiteral("chkIncomes"), s.showIncomesTotal, QStringLiteral("tin"));
    for (size_t c = 0; c < types_.categories.size(); ++c) {
        const QString cs = QString::number(c);
        setBox(0, QStringLiteral("tdCateg") + cs, QStringLiteral("chkCateg") + cs, types_.categChecked[c], QStringLiteral("ctg") + cs);
    }
    // tdType members stand in the list's order, which is the types' order.
    for (size_t i = 0; i < types_.types.size(); ++i)
        setBox(0, QStringLiteral("tdType"), QStringLiteral("chkType"), s.checked[i], QStringLiteral("typ") + QString::number(i), int(i));
}

void frmMonthReportMain::setRowDisplay(int which, int row, bool show)
{
    web::WebView* v = views_.wbReport[which];
    if (!v || !v->isComplete())
        return;
    const QString id = QStringLiteral("r") + QString::number(row);
    const QString display = show ? QString() : QStringLiteral("none");
    for (int i = 0, n = v->count(id); i < n; ++i)
        v->setDisplay(id, display, i);
}


namespace {

// The rows of a report that follow the ticks, and their classes.
struct ChainRows {
    int expenses, incomes, net, balance;
    QString expensesClass, incomesClass;
};

// Rewrites the section totals, the surplus and the balances of every
// column of a page: member i of each shared cell id is in amount table i,
// which shows column i modulo nPeriods + 1 (0 the total column, c the
// period c - 1). extra(i, c) writes a report's own rows.
void rewriteChain(web::WebView& v, const SumSet& s, const ChainRows& rows, double credit,
                  const std::function<void(int i, int c)>& extra = {})
{
    const auto put = [&v](int row, int i, double value, const QString& cls) { setCell(v, row, i, value, cls); };
    for (int i = 0; i < 2 * (s.nPeriods + 1); ++i) {
        const int c = i % (s.nPeriods + 1);
        const double net = c == 0 ? s.totalNet : s.periodNet[size_t(c - 1)];
        put(rows.expenses, i, c == 0 ? s.totalExpenses : s.periodExpenses[size_t(c - 1)], rows.expensesClass);
        put(rows.incomes, i, c == 0 ? s.totalIncomes : s.periodIncomes[size_t(c - 1)], rows.incomesClass);
        put(rows.net, i, net, nonnegdeficittd(net));
        if (extra)
            extra(i, c);
        if (c > 0) {
            put(0, i, s.periodBalance[size_t(c - 1)], nonnegbalancetd(s.periodBalance[size_t(c - 1)], credit));
            put(rows.balance, i, s.periodBalance[size_t(c)], nonnegbalancetd(s.periodBalance[size_t(c)], credit));
        }
    }
}

} // namespace

void frmMonthReportMain::updateKindDisplayedTotals()
{
    web::WebView* v = views_.wbReport[1];
    if (!v || !v->isComplete())
        return;
    const int n = names_.nCategories();
    rewriteChain(*v, kinds_,
                 {kindExpensesRow(n), kindIncomesRow(n), kindNetRow(n), kindBalanceRow(n), QStringLiteral("totalkindexpensestd"),
                  QStringLiteral("totalkindincomestd")},
                 parts_.ledger.theCredit);
}

void frmMonthReportMain::updateTypeDisplayedTotals()
{
    web::WebView* v = views_.wbReport[0];
    if (!isTypeReportIncluded_ || !v || !v->isComplete())
        return;
    const TypeRows& r = typeRows_;
    rewriteChain(*v, types_.sums,
                 {r.expensesTotalRow, r.incomesTotalRow, r.netRow, r.balanceRow, QStringLiteral("totaltypeexpensestd"),
                  QStringLiteral("totaltypeincomestd")},
                 parts_.ledger.theCredit, [&](int i, int c) {
                     // Each category's total holds its ticked types.
                     for (size_t k = 0; k < types_.categories.size(); ++k)
                         setCell(*v, r.categRowIndex[k], i, c == 0 ? types_.categTotals[k] : types_.categSum(int(k), c - 1),
                                 types_.categories[k].isIncome ? QStringLiteral("totalincometypecategorytd")
                                                               : QStringLiteral("totalexpensetypecategorytd"));
                 });
}

// ---- the verbs ---------------------------------------------------------

void frmMonthReportMain::listEventHandler(int which)
{
    web::WebView* v = views_.wbList[which];
    if (!v)
        return;
    const QString s = v->value(QStringLiteral("theID"));
    if (suspendCheckHandler_) {
        // The click flipped a box the window does not follow yet: put it back.
        syncListBoxes();
        return;
    }
    const QString verb = s.left(3);
    bool ok = false;
    const int n = s.mid(3).toInt(&ok);
    const int nCat = names_.nCategories();
    if (which == 1 && verb == QLatin1String("knd") && ok && n >= 0 && n < nCat)
        kindClicked(n, !kinds_.checked[size_t(kindOfListRow(n, nCat))]);
    else if (which == 1 && verb == QLatin1String("kex"))
        kindExpensesClicked();
    else if (which == 1 && verb == QLatin1String("kin"))
        kindIncomesClicked();
    else if (which == 0 && verb == QLatin1String("typ") && ok && n >= 0 && size_t(n) < types_.types.size())
        typeClicked(n, !types_.sums.checked[size_t(n)]);
    else if (which == 0 && verb == QLatin1String("ctg") && ok && n >= 0 && size_t(n) < types_.categories.size())
        categClicked(n);
    else if (which == 0 && verb == QLatin1String("tex"))
        typeExpensesClicked();
    else if (which == 0 && verb == QLatin1String("tin"))
        typeIncomesClicked();
}

void frmMonthReportMain::kindClicked(int row, bool checked)
{
    const int n = names_.nCategories();
    const int k = kindOfListRow(row, n);
    kinds_.checked[size_t(k)] = checked;
    setRowDisplay(1, reportRowOfListRow(row, n), checked);
    if (batchUpdate_)
        return;
    // The section follows its kinds: on while one of them is ticked.
    const bool expenses = row < n / 2;
    bool any = false;
    for (int r = expenses ? 0 : n / 2; r < (expenses ? n / 2 : n); ++r)
        any = any || kinds_.checked[size_t(kindOfListRow(r, n))];
    bool& section = expenses ? kinds_.showExpensesTotal : kinds_.showIncomesTotal;
    if (section != any) {
        section = any;
        setBox(1, expenses ? QStringLiteral("tdExpenses") : QStringLiteral("tdIncomes"),
               expenses ? QStringLiteral("chkExpenses") : QStringLiteral("chkIncomes"), any,
               expenses ? QStringLiteral("kex") : QStringLiteral("kin"));
        setRowDisplay(1, expenses ? kindExpensesRow(n) : kindIncomesRow(n), any);
    }
    calcKindTotals(kinds_);
    updateKindDisplayedTotals();
}

void frmMonthReportMain::kindSideClicked(bool expenses)
{
    const int n = names_.nCategories();
    bool& section = expenses ? kinds_.showExpensesTotal : kinds_.showIncomesTotal;
    section = !section;
    setRowDisplay(1, expenses ? kindExpensesRow(n) : kindIncomesRow(n), section);
    batchUpdate_ = true;
    for (int r = expenses ? 0 : n / 2; r < (expenses ? n / 2 : n); ++r) {
        setBox(1, QStringLiteral("tdKind"), QStringLiteral("chkKind"), section, QStringLiteral("knd") + QString::number(r), r);
        kindClicked(r, section);
    }
    batchUpdate_ = false;
    calcKindTotals(kinds_);
    updateKindDisplayedTotals();
}

void frmMonthReportMain::kindExpensesClicked() { kindSideClicked(true); }
void frmMonthReportMain::kindIncomesClicked() { kindSideClicked(false); }

bool frmMonthReportMain::anyTypeTicked(bool expenses) const
{
    for (size_t i = 0; i < types_.types.size(); ++i)
        if (types_.types[i].isIncome != expenses && types_.sums.checked[i])
            return true;
    return false;
}

// The category's box and total row follow its types: on while one of them
// is ticked.
void frmMonthReportMain::setCategoryFromTypes(int c)
{
    const TypeCategory& cat = types_.categories[size_t(c)];
    bool any = false;
    for (size_t i = 0; i < types_.types.size(); ++i)
        if (types_.types[i].CategoryName == cat.CategoryName && types_.types[i].isIncome == cat.isIncome)
            any = any || types_.sums.checked[i];
    if (bool(types_.categChecked[size_t(c)]) == any)
        return;
    types_.categChecked[size_t(c)] = any;
    const QString cs = QString::number(c);
    setBox(0, QStringLiteral("tdCateg") + cs, QStringLiteral("chkCateg") + cs, any, QStringLiteral("ctg") + cs);
    setRowDisplay(0, typeRows_.categRowIndex[size_t(c)], any);
}

void frmMonthReportMain::typeClicked(int index, bool checked)
{
    types_.sums.checked[size_t(index)] = checked;
    setRowDisplay(0, typeRows_.typeRowIndex[size_t(index)], checked);
    const ReportType& t = types_.types[size_t(index)];
    if (batchUpdate_)
        return;
    const int c = types_.categoryIndexOf(t.CategoryName);
    if (c >= 0)
        setCategoryFromTypes(c);
    const bool expenses = !t.isIncome;
    const bool any = anyTypeTicked(expenses);
    bool& section = expenses ? types_.sums.showExpensesTotal : types_.sums.showIncomesTotal;
    if (section != any) {
        section = any;
        setBox(0, expenses ? QStringLiteral("tdExpenses") : QStringLiteral("tdIncomes"),
               expenses ? QStringLiteral("chkExpenses") : QStringLiteral("chkIncomes"), any,
               expenses ? QStringLiteral("tex") : QStringLiteral("tin"));
        setRowDisplay(0, expenses ? typeRows_.expensesTotalRow : typeRows_.incomesTotalRow, any);
    }
    calcTypeTotals(types_, {});
    updateTypeDisplayedTotals();
}

void frmMonthReportMain::categClicked(int c)
{
    const TypeCategory cat = types_.categories[size_t(c)];
    const bool on = !types_.categChecked[size_t(c)];
    types_.categChecked[size_t(c)] = on;
    setRowDisplay(0, typeRows_.categRowIndex[size_t(c)], on);
    const bool wasBatch = batchUpdate_;
    batchUpdate_ = true;
    for (size_t i = 0; i < types_.types.size(); ++i) {
        if (types_.types[i].CategoryName != cat.CategoryName || types_.types[i].isIncome != cat.isIncome)
            continue;
        setBox(0, QStringLiteral("tdType"), QStringLiteral("chkType"), on, QStringLiteral("typ") + QString::number(i), int(i));
        typeClicked(int(i), on);
    }
    batchUpdate_ = wasBatch;
    if (batchUpdate_)
        return;
    const bool expenses = !cat.isIncome;
    bool any = false;
    for (size_t k = 0; k < types_.categories.size(); ++k)
        if (types_.categories[k].isIncome != expenses)
            any = any || types_.categChecked[k];
    bool& section = expenses ? types_.sums.showExpensesTotal : types_.sums.showIncomesTotal;
    section = any;
    setBox(0, expenses ? QStringLiteral("tdExpenses") : QStringLiteral("tdIncomes"),
           expenses ? QStringLiteral("chkExpenses") : QStringLiteral("chkIncomes"), any, expenses ? QStringLiteral("tex") : QStringLiteral("tin"));
    setRowDisplay(0, expenses ? typeRows_.expensesTotalRow : typeRows_.incomesTotalRow, any);
    calcTypeTotals(types_, {});
    updateTypeDisplayedTotals();
}

void frmMonthReportMain::typeSideClicked(bool expenses)
{
    bool& section = expenses ? types_.sums.showExpensesTotal : types_.sums.showIncomesTotal;
    section = !section;
    const bool on = section;
    setRowDisplay(0, expenses ? typeRows_.expensesTotalRow : typeRows_.incomesTotalRow, on);
    batchUpdate_ = true;
    for (size_t c = 0; c < types_.categories.size(); ++c) {
        if (types_.categories[c].isIncome == expenses)
            continue;
        // The category's box is set to the section's state; its click
        // flips it, so it starts from the other state.
        types_.categChecked[c] = !on;
        const QString cs = QString::number(c);
        setBox(0, QStringLiteral("tdCateg") + cs, QStringLiteral("chkCateg") + cs, on, QStringLiteral("ctg") + cs);
        categClicked(int(c));
    }
    batchUpdate_ = false;
    calcTypeTotals(types_, {});
    updateTypeDisplayedTotals();
}

void frmMonthReportMain::typeExpensesClicked() { typeSideClicked(true); }
void frmMonthReportMain::typeIncomesClicked() { typeSideClicked(false); }

} // namespace pelkor::reports
