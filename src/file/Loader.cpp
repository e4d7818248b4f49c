#include "file/Loader.h"

#include "base/Format.h"
#include "base/Instance.h"
#include "base/Modes.h"
#include "base/Shown.h"
#include "base/Trace.h"
#include "base/WindowCalls.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "file/Schema.h"
#include "file/Upgrades.h"
#include "seams/ui/Ui.h"
#include "seams/ui/dialogs/TypedDate.h"
#include "seams/ui/dialogs/frmNoIpus.h"

#include <cmath>
#include <cstring>

namespace pelkor {

using store::Recordset;
using store::Value;
using ui::Buttons;
using ui::Icon;

namespace {

const QString ipusMark = QString::fromLatin1(schema::ipusMark);
const QString title = QStringLiteral("פלקור");

void status(LoadParts& p, const QString& s)
{
    p.shown.lblStatus = s;
    p.window.shownChanged();
}

// ---- reading the catalogue and the settings ---------------------------------

void readMergedBanks(OpenLedger& led)
{
    auto rs = led.cn.execute(QStringLiteral("SELECT * FROM mergedBanks ORDER BY index"));
    led.bankFileNames.clear();
    led.convs.clear();
    const int f = rs.fieldIndex(QStringLiteral("fileName"));
    const int c = rs.fieldIndex(QStringLiteral("conv"));
    for (long r = 0; r < rs.recordCount(); ++r) {
        led.bankFileNames << RemoveNull(rs.at(r, f));
        led.convs.push_back(RemoveSumNull(rs.at(r, c)));
    }
}

void readTypes(LoadParts& p)
{
    if (!readTypeList(p.ledger) && !p.instance.isMerged)
        p.ui.msgBox(QStringLiteral("error: no types"), title, Buttons::OK, Icon::Critical);
}

// The selection a detail child shows beside the file's name.
void addSelectionText(LoadParts& p)
{
    const DetailSelection& d = p.instance.detail;
    const Catalogue& c = p.ledger.catalogue;
    QString s;
    if (d.kind == detailOfKind) {
        const int i = int(c.categories.indexOf(d.kindText));
        s = QStringLiteral("תנועות בסיווג ") + FormatKind(d.kindText) + QLatin1Char(' ') + c.getKindDesc(i);
    } else if (d.kind == detailOfType) {
        s = QStringLiteral("תנועות מסוג ") + c.getTypeName(d.typeIndex);
    } else {
        return;
    }
    if (d.fromDate != d.toDate)
        s += QStringLiteral(" מ: ") + formatDate224(d.fromDate) + QStringLiteral(" עד: ") + formatDate224(d.toDate);
    else
        s += QStringLiteral(" לתאריך ") + formatDate224(d.fromDate);
    p.shown.lblFileName += s;
}

void readDefaults(OpenLedger& led)
{
    auto rs = led.cn.execute(QStringLiteral("SELECT * FROM Defaults"));
    led.theCredit = rs.eof() ? 0 : RemoveSumNull(rs.field(QStringLiteral("Credit")));
    led.nDays = 90;
    for (int i = 0; i < rs.fieldCount() && !rs.eof(); ++i)
        if (rs.fieldName(i).compare(QLatin1String("NDays"), Qt::CaseInsensitive) == 0 && !rs.field(i).isNull())
            led.nDays = int(rs.field(i).toInt());
}

void readIpusLine(LoadParts& p)
{
    OpenLedger& led = p.ledger;
    auto rs = led.cn.execute(QStringLiteral("SELECT id,date FROM %1 WHERE zee='%2'").arg(led.linesTable, ipusMark));
    if (rs.recordCount() != 1)
        p.ui.msgBox(QStringLiteral("number of ipus lines in DB is %1").arg(rs.recordCount()), title);
    if (!rs.eof()) {
        led.ipusID = RemoveNull(rs.field(0));
        led.ipusDate = rs.field(1).toDate();
    }
}

// ---- the zeroing mark and the bad lines, before the lines are read ----------

void ipusMessage(LoadParts& p, const QDate& set, const QString& why)
{
    p.ui.msgBox(QStringLiteral("תאריך האיפוס נקבע ל-") + formatDate224(set) + QStringLiteral(",\n") + why,
                QStringLiteral("תאריך איפוס"), Buttons::OK, Icon::Exclamation);
}

// Makes sure one line bears the marker, asking the user where the last
// zeroing was when none does. False when the user gave no answer (the
// instance is ending).
bool ensureIpusLine(LoadParts& p)
{
    OpenLedger& led = p.ledger;
    TraceScope t(led.trace, QStringLiteral("ensureIpusLine"));
    const QString& tb = led.linesTable;
    auto rs = led.cn.execute(QStringLiteral("SELECT date FROM %1 WHERE zee='%2'").arg(tb, ipusMark));
    if (rs.recordCount() != 0)
        return true;
    ui::frmNoIpus dlg;
    p.ui.runDialog(dlg);
    const QString noIpusReply = dlg.noIpusReply();
    if (noIpusReply.isEmpty()) {
        p.window.exitProg();
        return false;
    }
    QString id;
    if (noIpusReply == QLatin1String("*")) {
        auto first = led.cn.execute(QStringLiteral("SELECT %1.id FROM %1 WHERE isdate(date) ORDER BY %2").arg(tb, orderBy(tb)));
        if (first.eof()) {
            // No line with a date at all: the first line in any order.
            first = led.cn.execute(QStringLiteral("SELECT %1.id FROM %1 ORDER BY %2").arg(tb, orderBy(tb)));
        }
        if (!first.eof())
            id = RemoveNull(first.field(0));
    } else {
        const QDate asked = ui::readTypedDate(noIpusReply).value_or(QDate());
        led.ipusDate = asked;
        auto before = led.cn.execute(QStringLiteral("SELECT %1.id,[date] FROM %1 WHERE [date]<=%2 ORDER BY %3")
                                         .arg(tb, formatDateForSQL(asked), orderBy(tb)));
        if (!before.eof()) {
            before.moveLast();
            id = RemoveNull(before.field(0));
            const QDate d = before.field(1).toDate();
            if (d < led.ipusDate)
                ipusMessage(p, d, QStringLiteral("מכיוון שאין שורות בתאריך ") + formatDate224(asked));
            led.ipusDate = d;
        } else {
            auto min = led.cn.execute(QStringLiteral("SELECT min(date) FROM %1").arg(tb));
            led.ipusDate = min.eof() ? QDate() : min.field(0).toDate();
            if (led.ipusDate.isValid()) {
                auto on = led.cn.execute(QStringLiteral("SELECT %1.id,[date] FROM %1 WHERE [date]=%2 ORDER BY %3")
                                             .arg(tb, formatDateForSQL(led.ipusDate), orderBy(tb)));
                if (!on.eof())
                    id = RemoveNull(on.field(0));
                ipusMessage(p, led.ipusDate, QStringLiteral("מכיוון שהשורה הראשונה היא מתאריך זה"));
            }
        }
    }
    if (!id.isEmpty())
        led.sql.executeSQL(t.proc(), QStringLiteral("UPDATE %1 set zee = '%2' WHERE id = %3").arg(tb, ipusMark, id));
    return true;
}

// What the lines read by linesStatement, every line of the file, tell of
// the two checks before a load takes them in. markSeen: a line bears the
// zeroing mark as written. maybeBadLines: some line's date is no stored
// date or a sum no number, so a bad line may be among them. Without a read
// (the defaults) nothing is ruled out.
struct ReadHints {
    bool markSeen = false;
    bool maybeBadLines = true;
};

ReadHints hintsOf(const Recordset& rs)
{
    const Value mark = Value::utf8(schema::ipusMark, qsizetype(std::strlen(schema::ipusMark)));
    const auto isSum = [](const Value& v) {
        return v.type() == Value::Type::Integer || (v.type() == Value::Type::Double && std::isfinite(v.toDouble()));
    };
    ReadHints h;
    h.maybeBadLines = false;
    for (long r = 0; r < rs.recordCount(); ++r) {
        if (!h.markSeen && rs.at(r, 8) == mark)
            h.markSeen = true;
        if (!h.maybeBadLines && (!rs.at(r, 2).isDate() || !isSum(rs.at(r, 5)) || !isSum(rs.at(r, 6))))
            h.maybeBadLines = true;
        if (h.markSeen && h.maybeBadLines)
            break;
    }
    return h;
}

// Lines with a valid kind but text in date, in or out go to a new-line
// child. True when they did (the load stops here until it answers).
bool handOverBadLines(LoadParts& p)
{
    auto rs = p.ledger.cn.execute(badLinesStatement(p.ledger.linesTable));
    if (rs.recordCount() == 0)
        return false;
    p.ledger.trace.traceLine(QStringLiteral("openDB"), QStringLiteral("%1 bad lines handed over").arg(rs.recordCount()));
    p.instance.newLineDialogType = lineDialogBadLines;
    p.shown.gridVisible = false;
    p.shown.enabled = false;
    p.window.shownChanged();
    p.window.openNewDialog(lineDialogBadLines);
    return true;
}

// ---- reading the lines --------------------------------------------------------

// The few texts a column repeats (kinds, colour words, marks) made into
// strings once and shared by every line that holds them: a load of many
// lines then costs neither the conversions nor the memory of copies. Each
// text carries a tag its reader may set once, for what it found out about
// the text (a kind's validity).
class RecentTexts {
public:
    struct Entry {
        QString text;
        int tag = -1;   // -1: not set
    };

    Entry& operator()(const Value& v)
    {
        if (v.isNull()) {
            null_.text.clear();
            return null_;
        }
        for (int i = 0; i < used_; ++i) {
            if (keys_[i] == v) {
                if (i > 0) {   // to the front: the common ones are found first
                    std::swap(keys_[i], keys_[0]);
                    std::swap(entries_[i], entries_[0]);
                }
                return entries_[0];
            }
        }
        const int slot = used_ < size ? used_++ : size - 1;
        keys_[slot] = v;
        entries_[slot] = Entry{v.toString(), -1};
        std::swap(keys_[slot], keys_[0]);
        std::swap(entries_[slot], entries_[0]);
        return entries_[0];
    }

private:
    // More than the kinds, colour words and marks of a usual file hold;
    // a rarer text is simply made again.
    static constexpr int size = 24;
    Value keys_[size];
    Entry entries_[size];
    int used_ = 0;
    Entry null_;
};

QDate dateOf(const Value& v)
{
    if (v.isNull())
        return nullDate();
    const QDate d = v.toDate();
    return d.isValid() ? d : nullDate();
}

// Reads the lines of the statement into the ledger, repairing each on the
// way (a line of no valid kind is told and deleted; an empty reference
// becomes one blank; the "newline" prefix goes). In a main mode it finds
// the mark and the row above the red line. Returns the grid row the cursor
// should land on (-1: none asked), in landOn.
void readLines(LoadParts& p, Recordset& rs, int& landOn)
{
    OpenLedger& led = p.ledger;
    Instance& inst = p.instance;
    const QString& tb = led.linesTable;
    const QString proc = QStringLiteral("openDB");
    const bool mainMode = inst.isMainMode();
    const long n = rs.recordCount();
    led.lines.clear();
    led.balances.clear();
    led.lines.reserve(size_t(n));
    // Only a merged file's lines come from several banks.
    led.mergedBankIndexes.assign(inst.isMerged ? size_t(n) : 0, 0);
    if (inst.progMode == modeNewLines)
        p.grid.balancingLineID = -1;
    Conversion convert;
    convert.isMerged = inst.isMerged;
    convert.conv = inst.detail.conv;
    convert.convs = led.convs;
    convert.mergedBankIndexes.assign(led.mergedBankIndexes.size(), 0);
    RecentTexts kinds, memos, marks;
    for (long r = 0; r < n; ++r) {
        const int i = int(led.lines.size());
        Line L;
        L.Id = RemoveNull(rs.at(r, 0));
        if (!p.grid.theID.isEmpty() && L.Id == p.grid.theID)
            landOn = i + 1;
        QString memo = rs.at(r, 9).isNull() ? colorWords().back() : memos(rs.at(r, 9)).text;
        if (hasNewLinePrefix(memo)) {
            landOn = i + 1;
            led.sql.executeSQL(proc, QStringLiteral("UPDATE %1 set [memo] = mid([memo],%2) WHERE id = %3")
                                         .arg(tb).arg(newLinePrefixLength + 1).arg(L.Id));
            memo = memo.mid(newLinePrefixLength);
        }
        L.Date = dateOf(rs.at(r, 2));
        if (inst.progMode == modeNewLines && inst.newLineDialogType == lineDialogUnconfirmedPelkor)
            led.targetDate = L.Date;
        L.zee = marks(rs.at(r, 8)).text;
        if (inst.progMode == modeNewLines && L.zee == QLatin1String("coord0"))
            p.grid.balancingLineID = L.Id.toLongLong();
        if (inst.isMerged) {
            led.mergedBankIndexes[size_t(i)] = int(rs.at(r, 8).toInt());
            convert.mergedBankIndexes[size_t(i)] = led.mergedBankIndexes[size_t(i)];
        }
        if (mainMode) {
            if (led.zeeFound && L.Date > led.ipusDate && led.iRowAboveRed == -1) {
                led.iRowAboveRed = i;
                if (i == 0)
                    p.ui.msgBox(QStringLiteral("ipus line problem in openDB"), title);
            }
            if (L.zee == ipusMark) {
                if (led.zeeFound)
                    p.ui.msgBox(QStringLiteral("more than one line with zee in database"), title);
                led.ipusDate = L.Date;
                led.IDWithFoundZee = L.Id;
                led.zeeFound = true;
            }
        }
        RecentTexts::Entry& kind = kinds(rs.at(r, 1));
        if (kind.tag < 0)
            kind.tag = led.catalogue.isCategory(kind.text) ? 1 : 0;
        L.kind = kind.text;
        if (kind.tag == 0) {
            p.ui.msgBox(QStringLiteral("נמצאה שורה ללא סיווג חוקי. השורה תמחק מהפלקור\n") + FormatKind(L.kind),
                        QStringLiteral("סיווג לא חוקי"), Buttons::OK, Icon::Exclamation);
            // By the id alone: a Null kind, or one with a quote in it,
            // must go as the box promised.
            led.sql.executeSQL(proc, QStringLiteral("DELETE FROM %1 WHERE id = %2").arg(tb, L.Id));
            continue;
        }
        L.confirm = fixString(RemoveNull(rs.at(r, 3)));
        if (L.confirm.isEmpty()) {
            led.sql.executeSQL(proc, QStringLiteral("UPDATE %1 set confirm = ' ' WHERE id = %2").arg(tb, L.Id));
            L.confirm = QStringLiteral(" ");
        }
        L.detail = fixString(RemoveNull(rs.at(r, 4)));
        L.In = convNum(RemoveSumNull(rs.at(r, 5)), i, convert);
        L.out = convNum(RemoveSumNull(rs.at(r, 6)), i, convert);
        if (!rs.at(r, 7).isNull()) {
            L.TypeNum = int(rs.at(r, 7).toInt());
            L.Type = led.catalogue.getTypeName(L.TypeNum);
        }
        L.Memo = memo;
        L.isTzefi = RemoveSumNull(rs.at(r, 11)) != 0;
        L.relate = int(RemoveSumNull(rs.at(r, 10)));
        led.lines.push_back(std::move(L));
    }
    if (inst.isMerged)
        led.mergedBankIndexes.resize(led.lines.size());
}

// Main modes: the mark moves to the line above the red line (the last line
// of the zeroing date); where it stands there already the file is left as
// it is (no write, no sync). Clearing the old mark and setting the new one
// are one transaction.
void placeZeroingMark(LoadParts& p)
{
    OpenLedger& led = p.ledger;
    const QString& tb = led.linesTable;
    if (led.iRowAboveRed == -1)
        led.iRowAboveRed = led.rows() - 1;
    // The mark stood on a line that the load deleted (no valid kind), and
    // every line left is later than its date: the first line takes it.
    if (led.iRowAboveRed < 1)
        led.iRowAboveRed = 1;
    led.ipusID = led.lines[size_t(led.iRowAboveRed - 1)].Id;
    if (led.IDWithFoundZee != led.ipusID) {
        const QString proc = QStringLiteral("openDB");
        store::Transaction tx(led.cn);
        if (!led.IDWithFoundZee.isEmpty())
            led.sql.executeSQL(proc, QStringLiteral("UPDATE %1 set zee = ' ' WHERE id = %2").arg(tb, led.IDWithFoundZee));
        led.sql.executeSQL(proc, QStringLiteral("UPDATE %1 set zee = '%2' WHERE id = %3").arg(tb, ipusMark, led.ipusID));
        tx.commit();
    }
    for (Line& L : led.lines)
        if (L.zee == ipusMark || L.Id == led.ipusID)
            L.zee = L.Id == led.ipusID ? ipusMark : QStringLiteral(" ");
}

// Draws the lines with their running balance and date bands; a merged file
// says in its label which lines are converted.
void drawLines(LoadParts& p)
{
    status(p, QStringLiteral("מעדכן תצוגה..."));
    grid::GridModel& g = p.grid.msfgMain;
    g.setRedraw(false);
    const int converted = drawLoad(p.ledger, p.instance, g, p.grid.balancingLineID, nullptr);
    if (p.instance.isMainMode() && !p.ledger.zeeFound)
        p.ui.msgBox(QStringLiteral("no line with zee found"), title);
    if (p.instance.isMerged) {
        const int n = int(p.ledger.lines.size());
        const QString what = converted == 0 ? QStringLiteral("ללא המרה")
            : converted == n                ? QStringLiteral("עם המרה")
            : converted == 1                ? QStringLiteral("השורה הורודה מומרת")
                                            : QStringLiteral("השורות הורודות מומרות");
        p.shown.lblFileName += QStringLiteral(" (") + what + QLatin1Char(')');
    }
}

// Puts the cursor on landOn (the first row when none was asked): a reload
// keeps the landing line's distance from the top; a first load shows the
// red line. The cursor stands in the kind column unless a reload left it
// further on.
void placeCursor(LoadParts& p, int landOn, bool reasonIsRefresh)
{
    grid::GridModel& g = p.grid.msfgMain;
    if (landOn == -1)
        landOn = 1;
    if (reasonIsRefresh) {
        g.setTopRow(clipRowNum(landOn - p.grid.theOffset, g.Rows()));
        g.setRow(clipRowNum(landOn, g.Rows()));
    } else {
        if (p.instance.isMainMode()) {
            const int red = clipRowNum(p.ledger.iRowAboveRed, g.Rows());
            if (!g.RowIsVisible(red))
                g.setTopRow(red);
        }
        g.setRow(clipRowNum(landOn, g.Rows()));
    }
    if (!reasonIsRefresh || g.Col() < colKind)
        g.setCol(colKind);
    p.grid.row = g.Row();
    p.grid.topRow = g.TopRow();
    g.setRedraw(true);
    updateCursorCells(p.ledger, p.instance, g, p.grid.msfgMainMarks, p.grid.balancingLineID);
    if (p.instance.progMode == modeDetail) {
        const Totals t = calcTotals(p.ledger);
        p.grid.lblTotalIncome = t.lblTotalIncome;
        p.grid.lblTotalExpense = t.lblTotalExpense;
    }
}

// The end of a load that found nothing to show.
LoadResult noLines(LoadParts& p)
{
    p.ledger.lines.clear();
    p.ledger.balances.clear();
    p.ledger.openDBisBusy = false;
    p.window.handleZeroLines();
    return LoadResult::NoLines;
}

} // namespace

QString orderBy(const QString& table)
{
    QString o = QString::fromLatin1(schema::lineOrder);
    o.chop(2);   // the trailing "id"
    return o + table + QStringLiteral(".id");
}

QString badLinesStatement(const QString& table)
{
    return QStringLiteral("SELECT date FROM %1,category where kind=category.id and "
                          "(not isdate([date]) or not isnumeric([in]) or not isnumeric(out))").arg(table);
}

QString linesStatement(const OpenLedger& led, const Instance& inst)
{
    const QString& tb = led.linesTable;
    const DetailSelection& d = inst.detail;
    QString where;
    if (inst.progMode == modeDetail) {
        switch (d.kind) {
        case detailIncome: where = QStringLiteral(" WHERE [date]=%1 AND left(kind,1)='+'").arg(formatDateForSQL(d.fromDate)); break;
        case detailExpense: where = QStringLiteral(" WHERE [date]=%1 AND left(kind,1)='-'").arg(formatDateForSQL(d.fromDate)); break;
        case detailDay: where = QStringLiteral(" WHERE [date]=%1").arg(formatDateForSQL(d.fromDate)); break;
        case detailOfKind:
            where = QStringLiteral(" WHERE [date]>=%1 AND [date]<=%2 AND kind='%3'")
                        .arg(formatDateForSQL(d.fromDate), formatDateForSQL(d.toDate), fixString(d.kindText));
            break;
        case detailOfType:
            where = QStringLiteral(" WHERE [date]>=%1 AND [date]<=%2 AND TypeNum=%3")
                        .arg(formatDateForSQL(d.fromDate), formatDateForSQL(d.toDate)).arg(d.typeIndex);
            break;
        case detailNone: break;
        }
    } else if (inst.progMode == modeNewLines) {
        where = inst.newLineDialogType == lineDialogBadLines
            ? QStringLiteral(",category where kind=category.id and "
                             "(not isdate([date]) or not isnumeric([in]) or not isnumeric(out))")
            : QStringLiteral(" WHERE left(zee,5)='coord'");
    }
    // detail AS detail: see schema::lineColumns.
    return QStringLiteral("SELECT %1.id, kind, date, confirm, detail AS detail, [in], out, TypeNum, zee, memo, "
                          "[relate], IndTzefi FROM %1")
               .arg(tb)
        + where + QStringLiteral(" ORDER BY ") + orderBy(tb);
}

// Phases of a load, in order. Each reads what the ones before it left in
// the open ledger; a phase that ends the load returns how it ended.
//
// beginLoad: the ledger is busy (the window refuses to close) and the
// frame's buttons are off; the zeroing state and the cursor's marks of the
// last load are forgotten.
//
// readSettings: the file's settings, upgraded in place where a column or
// table is missing; the kinds, the merged banks, the types; a detail
// child's selection text; the bank binding and Defaults; a child's view of
// the zeroing line. Reads only, but for the upgrades.
//
// prepareLines: a main mode makes sure a line bears the zeroing mark
// (asking the user; no answer ends the instance); lines with no valid date
// or sum go to a new-line child (the load resumes when it answers).
//
// readLines, placeZeroingMark, drawLines, placeCursor: see each.
//
// endLoad: not busy, buttons on, "מוכן", and the window hears that the
// lines are new.
void readCategories(OpenLedger& led)
{
    auto rs = led.cn.execute(QStringLiteral(
        "SELECT * FROM category ORDER BY Left(id,1) DESC, Len(Mid(id,2)), Mid(id,2)"));
    led.catalogue.categories.clear();
    led.catalogue.categoryDescs.clear();
    const int id = rs.fieldIndex(QStringLiteral("id"));
    const int desc = rs.fieldIndex(QStringLiteral("category"));
    for (long r = 0; r < rs.recordCount(); ++r) {
        led.catalogue.categories << RemoveNull(rs.at(r, id));
        led.catalogue.categoryDescs << fixString(RemoveNull(rs.at(r, desc)));
    }
}

bool readTypeList(OpenLedger& led)
{
    auto rs = led.cn.execute(QStringLiteral(
        "SELECT TypeNum,TypeName,types.CategoryNum,InOut,TypesCategories.CategoryNum,CategoryName "
        "FROM types,TypesCategories WHERE types.CategoryNum=TypesCategories.CategoryNum "
        "ORDER BY CategoryName,TypeName"));
    auto& c = led.catalogue;
    c.types.clear();
    c.types.reserve(size_t(rs.recordCount()));
    for (long r = 0; r < rs.recordCount(); ++r) {
        TypeRec t;
        t.TypeNum = int(RemoveSumNull(rs.at(r, 0)));
        t.TypeName = fixString(RemoveNull(rs.at(r, 1)));
        t.isIncome = RemoveSumNull(rs.at(r, 3)) == 1;
        t.CategoryName = RemoveNull(rs.at(r, 5));
        c.types.push_back(t);
    }
    c.typeName1 = c.getTypeName(1);
    c.typeName2 = c.getTypeName(2);
    return !c.types.empty();
}

LoadResult openDB(LoadParts& p, bool reasonIsRefresh)
{
    OpenLedger& led = p.ledger;
    Instance& inst = p.instance;
    TraceScope t(led.trace, QStringLiteral("openDB"));

    // beginLoad
    led.openDBisBusy = true;
    p.shown.frameButtonsEnabled = false;
    led.iRowAboveRed = -1;
    led.zeeFound = false;
    led.IDWithFoundZee.clear();
    p.grid.msfgMainMarks = {};

    // readSettings
    handleAuto(led);
    p.shown.mnuAutomaticBankCoordinationChecked = led.isAutomatic;
    readInvoiceCategs(led);
    status(p, QStringLiteral("קורא סיווגים..."));
    readCategories(led);
    if (inst.isMerged) {
        status(p, QStringLiteral("קורא בנקים..."));
        readMergedBanks(led);
    }
    status(p, QStringLiteral("קורא סוגים..."));
    readTypes(p);
    if (inst.progMode == modeDetail)
        addSelectionText(p);
    if (const auto moveDates = checkBankNum(led))
        p.shown.mnuMoveDatesVisible = *moveDates;
    handleBankInfo(led);
    readDefaults(led);
    if ((inst.progMode == modeDetail && !inst.isMerged)
        || (inst.progMode == modeNewLines
            && (inst.newLineDialogType == lineDialogUnconfirmedBank || inst.newLineDialogType == lineDialogBadLines)))
        readIpusLine(p);

    // prepareLines
    status(p, QStringLiteral("קורא שורות..."));
    const QString statement = linesStatement(led, inst);
    // Where the statement reads every line, what it read tells first
    // whether the two checks below can find anything; a check it cannot
    // rule out runs as its own query, in the same order as ever.
    const bool readsEveryLine = inst.progMode != modeDetail && inst.progMode != modeNewLines;
    Recordset rs;
    ReadHints hints;
    if (readsEveryLine) {
        rs = led.cn.execute(statement);
        hints = hintsOf(rs);
    }
    if (inst.isMainMode() && !hints.markSeen) {
        if (!ensureIpusLine(p))
            return LoadResult::Ended;
        if (readsEveryLine) {   // the mark may have just been written
            rs = led.cn.execute(statement);
            hints = hintsOf(rs);
        }
    }
    if (!inst.isBadLinesChild() && hints.maybeBadLines && handOverBadLines(p))
        return LoadResult::HandedOver;

    // readLines
    if (!readsEveryLine)
        rs = led.cn.execute(statement);
    if (rs.recordCount() == 0)
        return noLines(p);
    int landOn = -1;
    readLines(p, rs, landOn);
    if (led.lines.empty())
        return noLines(p);

    if (inst.isMainMode())
        placeZeroingMark(p);
    drawLines(p);
    placeCursor(p, landOn, reasonIsRefresh);

    // endLoad
    led.openDBisBusy = false;
    p.shown.frameButtonsEnabled = true;
    p.shown.lblStatus = QStringLiteral("מוכן");
    p.window.linesLoaded();
    p.window.shownChanged();
    return LoadResult::Loaded;
}

} // namespace pelkor
