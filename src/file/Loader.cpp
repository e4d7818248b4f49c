#include "file/Loader.h"

#include "file/Display.h"

#include "file/Schema.h"
#include "file/Upgrades.h"
#include "frame/Format.h"
#include "frame/Modes.h"
#include "frame/frmMain.h"
#include "seams/ui/Ui.h"
#include "seams/ui/dialogs/TypedDate.h"
#include "seams/ui/dialogs/frmNoIpus.h"

namespace pelkor {

using store::Recordset;
using store::Value;
using ui::Buttons;
using ui::Icon;

namespace {

const QString ipusMark = QString::fromLatin1(schema::ipusMark);

void status(frmMain& m, const QString& s)
{
    m.lblStatus = s;
    emit m.changed();
}

void readCategories(frmMain& m)
{
    auto rs = m.cn.execute(QStringLiteral(
        "SELECT * FROM category ORDER BY Left(id,1) DESC, Len(Mid(id,2)), Mid(id,2)"));
    m.catalogue.categories.clear();
    m.catalogue.categoryDescs.clear();
    const int id = rs.fieldIndex(QStringLiteral("id"));
    const int desc = rs.fieldIndex(QStringLiteral("category"));
    for (long r = 0; r < rs.recordCount(); ++r) {
        m.catalogue.categories << RemoveNull(rs.at(r, id));
        m.catalogue.categoryDescs << fixString(RemoveNull(rs.at(r, desc)));
    }
}

void readMergedBanks(frmMain& m)
{
    auto rs = m.cn.execute(QStringLiteral("SELECT * FROM mergedBanks ORDER BY index"));
    m.bankFileNames.clear();
    m.convs.clear();
    const int f = rs.fieldIndex(QStringLiteral("fileName"));
    const int c = rs.fieldIndex(QStringLiteral("conv"));
    for (long r = 0; r < rs.recordCount(); ++r) {
        m.bankFileNames << RemoveNull(rs.at(r, f));
        m.convs.push_back(RemoveSumNull(rs.at(r, c)));
    }
}

void readTypes(frmMain& m)
{
    auto rs = m.cn.execute(QStringLiteral(
        "SELECT TypeNum,TypeName,types.CategoryNum,InOut,TypesCategories.CategoryNum,CategoryName "
        "FROM types,TypesCategories WHERE types.CategoryNum=TypesCategories.CategoryNum "
        "ORDER BY CategoryName,TypeName"));
    auto& c = m.catalogue;
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
    if (c.types.empty() && !m.isMerged)
        m.ui.msgBox(QStringLiteral("error: no types"), QStringLiteral("פלקור"), Buttons::OK, Icon::Critical);
}

// The selection a detail child shows beside the file's name.
void addSelectionText(frmMain& m)
{
    QString s;
    if (m.detailKind == 3) {
        const int i = int(m.catalogue.categories.indexOf(m.detailKindText));
        s = QStringLiteral("תנועות בסיווג ") + FormatKind(m.detailKindText) + QLatin1Char(' ')
            + m.catalogue.getKindDesc(i);
    } else if (m.detailKind == 4) {
        s = QStringLiteral("תנועות מסוג ") + m.catalogue.getTypeName(m.detailTypeIndex);
    } else {
        return;
    }
    if (m.fromDate != m.toDate)
        s += QStringLiteral(" מ: ") + formatDate224(m.fromDate) + QStringLiteral(" עד: ") + formatDate224(m.toDate);
    else
        s += QStringLiteral(" לתאריך ") + formatDate224(m.fromDate);
    m.lblFileName += s;
}

void readDefaults(frmMain& m)
{
    auto rs = m.cn.execute(QStringLiteral("SELECT * FROM Defaults"));
    m.theCredit = rs.eof() ? 0 : RemoveSumNull(rs.field(QStringLiteral("Credit")));
    m.nDays = 90;
    for (int i = 0; i < rs.fieldCount() && !rs.eof(); ++i)
        if (rs.fieldName(i).compare(QLatin1String("NDays"), Qt::CaseInsensitive) == 0 && !rs.field(i).isNull())
            m.nDays = int(rs.field(i).toInt());
}

void readIpusLine(frmMain& m)
{
    auto rs = m.cn.execute(QStringLiteral("SELECT id,date FROM %1 WHERE zee='%2'").arg(m.linesTable, ipusMark));
    if (rs.recordCount() != 1)
        m.ui.msgBox(QStringLiteral("number of ipus lines in DB is %1").arg(rs.recordCount()), QStringLiteral("פלקור"));
    if (!rs.eof()) {
        m.ipusID = RemoveNull(rs.field(0));
        m.ipusDate = rs.field(1).toDate();
    }
}

void ipusMessage(frmMain& m, const QDate& set, const QString& why)
{
    m.ui.msgBox(QStringLiteral("תאריך האיפוס נקבע ל-") + formatDate224(set) + QStringLiteral(",\n") + why,
                QStringLiteral("תאריך איפוס"), Buttons::OK, Icon::Exclamation);
}

// Makes sure one line bears the marker, asking the user where the last
// zeroing was when none does. False when the user gave no answer.
bool ensureIpusLine(frmMain& m)
{
    TraceScope t(m.trace, QStringLiteral("ensureIpusLine"));
    const QString& tb = m.linesTable;
    auto rs = m.cn.execute(QStringLiteral("SELECT date FROM %1 WHERE zee='%2'").arg(tb, ipusMark));
    if (rs.recordCount() != 0)
        return true;
    ui::frmNoIpus dlg;
    m.ui.runDialog(dlg);
    const QString noIpusReply = dlg.noIpusReply();
    if (noIpusReply.isEmpty()) {
        m.exitProg();
        return false;
    }
    QString id;
    if (noIpusReply == QLatin1String("*")) {
        auto first = m.cn.execute(QStringLiteral("SELECT %1.id FROM %1 WHERE isdate(date) ORDER BY %2").arg(tb, orderBy(tb)));
        if (first.eof()) {
            // No line with a date at all: the first line in any order.
            first = m.cn.execute(QStringLiteral("SELECT %1.id FROM %1 ORDER BY %2").arg(tb, orderBy(tb)));
        }
        if (!first.eof())
            id = RemoveNull(first.field(0));
    } else {
        const QDate asked = ui::readTypedDate(noIpusReply).value_or(QDate());
        m.ipusDate = asked;
        auto before = m.cn.execute(QStringLiteral("SELECT %1.id,[date] FROM %1 WHERE [date]<=%2 ORDER BY %3")
                                       .arg(tb, formatDateForSQL(asked), orderBy(tb)));
        if (!before.eof()) {
            before.moveLast();
            id = RemoveNull(before.field(0));
            const QDate d = before.field(1).toDate();
            if (d < m.ipusDate)
                ipusMessage(m, d, QStringLiteral("מכיוון שאין שורות בתאריך ") + formatDate224(asked));
            m.ipusDate = d;
        } else {
            auto min = m.cn.execute(QStringLiteral("SELECT min(date) FROM %1").arg(tb));
            m.ipusDate = min.eof() ? QDate() : min.field(0).toDate();
            if (m.ipusDate.isValid()) {
                auto on = m.cn.execute(QStringLiteral("SELECT %1.id,[date] FROM %1 WHERE [date]=%2 ORDER BY %3")
                                           .arg(tb, formatDateForSQL(m.ipusDate), orderBy(tb)));
                if (!on.eof())
                    id = RemoveNull(on.field(0));
                ipusMessage(m, m.ipusDate, QStringLiteral("מכיוון שהשורה הראשונה היא מתאריך זה"));
            }
        }
    }
    if (!id.isEmpty())
        m.sql.executeSQL(t.proc(), QStringLiteral("UPDATE %1 set zee = '%2' WHERE id = %3").arg(tb, ipusMark, id));
    return true;
}

// Lines with a valid kind but text in date, in or out go to a new-line
// child. True when they did (the load stops here until it answers).
bool handOverBadLines(frmMain& m)
{
    auto rs = m.cn.execute(badLinesStatement(m.linesTable));
    if (rs.recordCount() == 0)
        return false;
    m.trace.traceLine(QStringLiteral("openDB"), QStringLiteral("%1 bad lines handed over").arg(rs.recordCount()));
    m.newLineDialogType = lineDialogBadLines;
    m.gridVisible = false;
    m.enabled = false;
    emit m.changed();
    m.openNewDialog(lineDialogBadLines);
    return true;
}

// The few texts a column repeats (kinds, colour words, marks) made into
// strings once and shared by every line that holds them: a load of many
// lines then costs neither the conversions nor the memory of copies.
class RecentTexts {
public:
    QString operator()(const Value& v)
    {
        if (v.isNull())
            return QString();
        for (int i = 0; i < used_; ++i) {
            if (keys_[i] == v) {
                if (i > 0) {   // to the front: the common ones are found first
                    std::swap(keys_[i], keys_[0]);
                    std::swap(texts_[i], texts_[0]);
                }
                return texts_[0];
            }
        }
        const int slot = used_ < size ? used_++ : size - 1;
        keys_[slot] = v;
        texts_[slot] = v.toString();
        std::swap(keys_[slot], keys_[0]);
        std::swap(texts_[slot], texts_[0]);
        return texts_[0];
    }

private:
    static constexpr int size = 24;
    Value keys_[size];
    QString texts_[size];
    int used_ = 0;
};

QDate dateOf(const Value& v)
{
    if (v.isNull())
        return nullDate();
    const QDate d = v.toDate();
    return d.isValid() ? d : nullDate();
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

QString linesStatement(const frmMain& m)
{
    const QString& tb = m.linesTable;
    QString where;
    if (m.progMode == modeDetail) {
        switch (m.detailKind) {
        case 0: where = QStringLiteral(" WHERE [date]=%1 AND left(kind,1)='+'").arg(formatDateForSQL(m.fromDate)); break;
        case 1: where = QStringLiteral(" WHERE [date]=%1 AND left(kind,1)='-'").arg(formatDateForSQL(m.fromDate)); break;
        case 2: where = QStringLiteral(" WHERE [date]=%1").arg(formatDateForSQL(m.fromDate)); break;
        case 3:
            where = QStringLiteral(" WHERE [date]>=%1 AND [date]<=%2 AND kind='%3'")
                        .arg(formatDateForSQL(m.fromDate), formatDateForSQL(m.toDate), fixString(m.detailKindText));
            break;
        case 4:
            where = QStringLiteral(" WHERE [date]>=%1 AND [date]<=%2 AND TypeNum=%3")
                        .arg(formatDateForSQL(m.fromDate), formatDateForSQL(m.toDate)).arg(m.detailTypeIndex);
            break;
        }
    } else if (m.progMode == modeNewLines) {
        where = m.newLineDialogType == lineDialogBadLines
            ? QStringLiteral(",category where kind=category.id and "
                             "(not isdate([date]) or not isnumeric([in]) or not isnumeric(out))")
            : QStringLiteral(" WHERE left(zee,5)='coord'");
    }
    return QStringLiteral("SELECT %1.id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], "
                          "IndTzefi FROM %1")
               .arg(tb)
        + where + QStringLiteral(" ORDER BY ") + orderBy(tb);
}

LoadResult openDB(frmMain& m, bool reasonIsRefresh)
{
    TraceScope t(m.trace, QStringLiteral("openDB"));
    const QString& tb = m.linesTable;
    const bool mainMode = m.progMode != modeDetail && m.progMode != modeNewLines && !m.isMerged;

    // 1.
    m.openDBisBusy = true;
    m.frameButtonsEnabled = false;
    m.iRowAboveRed = -1;
    m.iBankRowAboveRed = -1;
    m.zeeFound = false;
    m.IDWithFoundZee.clear();
    m.msfgMainMarks = {};
    // 2.
    handleAuto(m);
    readInvoiceCategs(m);
    // 3-5.
    status(m, QStringLiteral("קורא סיווגים..."));
    readCategories(m);
    if (m.isMerged) {
        status(m, QStringLiteral("קורא בנקים..."));
        readMergedBanks(m);
    }
    status(m, QStringLiteral("קורא סוגים..."));
    readTypes(m);
    // 6-8.
    if (m.progMode == modeDetail)
        addSelectionText(m);
    checkBankNum(m);
    handleBankInfo(m);
    readDefaults(m);
    // 9.
    if ((m.progMode == modeDetail && !m.isMerged)
        || (m.progMode == modeNewLines
            && (m.newLineDialogType == lineDialogUnconfirmedBank || m.newLineDialogType == lineDialogBadLines)))
        readIpusLine(m);
    // 10-11.
    status(m, QStringLiteral("קורא שורות..."));
    const QString statement = linesStatement(m);
    if (mainMode && !ensureIpusLine(m))
        return LoadResult::Ended;
    // 12.
    if (!(m.progMode == modeNewLines && m.newLineDialogType == lineDialogBadLines) && handOverBadLines(m))
        return LoadResult::HandedOver;
    // 13.
    Recordset rs = m.cn.execute(statement);
    if (rs.recordCount() == 0) {
        m.lines.clear();
        m.openDBisBusy = false;
        m.handleZeroLines();
        return LoadResult::NoLines;
    }
    // 14-15.
    const long n = rs.recordCount();
    m.lines.clear();
    m.lines.reserve(size_t(n));
    m.mergedBankIndexes.assign(size_t(n), 0);
    if (m.progMode == modeNewLines)
        m.balancingLineID = -1;
    Conversion convert;
    convert.isMerged = m.isMerged;
    convert.conv = m.conv;
    convert.convs = m.convs;
    int theRow = -1;
    RecentTexts kinds, memos, marks;
    for (long r = 0; r < n; ++r) {
        const int i = int(m.lines.size());
        Line L;
        L.Id = RemoveNull(rs.at(r, 0));
        if (!m.theID.isEmpty() && L.Id == m.theID)
            theRow = i + 1;
        QString memo = rs.at(r, 9).isNull() ? colorWords().back() : memos(rs.at(r, 9));
        if (memo.startsWith(QLatin1String("newline"))) {
            theRow = i + 1;
            m.sql.executeSQL(t.proc(), QStringLiteral("UPDATE %1 set [memo] = mid([memo],9) WHERE id = %2").arg(tb, L.Id));
            memo = memo.mid(8);
        }
        L.Date = dateOf(rs.at(r, 2));
        if (m.progMode == modeNewLines && m.newLineDialogType == lineDialogUnconfirmedPelkor)
            m.targetDate = L.Date;
        L.zee = marks(rs.at(r, 8));
        if (m.progMode == modeNewLines && L.zee == QLatin1String("coord0"))
            m.balancingLineID = L.Id.toLongLong();
        if (m.isMerged) {
            m.mergedBankIndexes[size_t(i)] = int(rs.at(r, 8).toInt());
            convert.mergedBankIndexes = m.mergedBankIndexes;
        }
        if (mainMode) {
            if (m.zeeFound && L.Date > m.ipusDate && m.iRowAboveRed == -1) {
                m.iRowAboveRed = i;
                if (i == 0)
                    m.ui.msgBox(QStringLiteral("ipus line problem in openDB"), QStringLiteral("פלקור"));
            }
            if (L.zee == ipusMark) {
                if (m.zeeFound)
                    m.ui.msgBox(QStringLiteral("more than one line with zee in database"), QStringLiteral("פלקור"));
                m.ipusDate = L.Date;
                m.IDWithFoundZee = L.Id;
                m.zeeFound = true;
            }
        }
        L.kind = kinds(rs.at(r, 1));
        if (!m.catalogue.isCategory(L.kind)) {
            m.ui.msgBox(QStringLiteral("נמצאה שורה ללא סיווג חוקי. השורה תמחק מהפלקור\n") + FormatKind(L.kind),
                        QStringLiteral("סיווג לא חוקי"), Buttons::OK, Icon::Exclamation);
            m.sql.executeSQL(t.proc(), QStringLiteral("DELETE FROM %1 WHERE id = %2 AND kind = '%3'")
                                           .arg(tb, L.Id, fixString(L.kind)));
            continue;
        }
        L.confirm = fixString(RemoveNull(rs.at(r, 3)));
        if (L.confirm.isEmpty()) {
            m.sql.executeSQL(t.proc(), QStringLiteral("UPDATE %1 set confirm = ' ' WHERE id = %2").arg(tb, L.Id));
            L.confirm = QStringLiteral(" ");
        }
        L.detail = fixString(RemoveNull(rs.at(r, 4)));
        L.In = convNum(RemoveSumNull(rs.at(r, 5)), i, convert);
        L.out = convNum(RemoveSumNull(rs.at(r, 6)), i, convert);
        if (!rs.at(r, 7).isNull()) {
            L.TypeNum = int(rs.at(r, 7).toInt());
            L.Type = m.catalogue.getTypeName(L.TypeNum);
        }
        L.Memo = memo;
        L.isTzefi = RemoveSumNull(rs.at(r, 11)) != 0;
        L.relate = int(RemoveSumNull(rs.at(r, 10)));
        m.lines.push_back(std::move(L));
    }
    m.mergedBankIndexes.resize(m.lines.size());
    if (m.lines.empty()) {
        m.openDBisBusy = false;
        m.handleZeroLines();
        return LoadResult::NoLines;
    }
    // 16.
    if (mainMode) {
        if (m.iRowAboveRed == -1)
            m.iRowAboveRed = m.rows() - 1;
        m.ipusID = m.lines[size_t(m.iRowAboveRed - 1)].Id;
        // The mark moves to the line above the red line; where it stands
        // there already the file is left as it is (no write, no sync).
        if (m.IDWithFoundZee != m.ipusID) {
            store::Transaction tx(m.cn);
            if (!m.IDWithFoundZee.isEmpty())
                m.sql.executeSQL(t.proc(), QStringLiteral("UPDATE %1 set zee = ' ' WHERE id = %2").arg(tb, m.IDWithFoundZee));
            m.sql.executeSQL(t.proc(), QStringLiteral("UPDATE %1 set zee = '%2' WHERE id = %3").arg(tb, ipusMark, m.ipusID));
            tx.commit();
        }
        for (Line& L : m.lines)
            if (L.zee == ipusMark || L.Id == m.ipusID)
                L.zee = L.Id == m.ipusID ? ipusMark : QStringLiteral(" ");
    }
    // 17: the grid, with the running balance and the alternating backgrounds.
    status(m, QStringLiteral("מעדכן תצוגה..."));
    grid::GridModel& g = m.msfgMain;
    g.setRedraw(false);
    const int converted = drawLoad(m, g, m.balancingLineID, nullptr);
    // 18.
    if (mainMode && !m.zeeFound)
        m.ui.msgBox(QStringLiteral("no line with zee found"), QStringLiteral("פלקור"));
    // 19.
    if (m.isMerged) {
        const QString what = converted == 0 ? QStringLiteral("ללא המרה")
            : converted == int(m.lines.size()) ? QStringLiteral("עם המרה")
            : converted == 1                   ? QStringLiteral("השורה הורודה מומרת")
                                               : QStringLiteral("השורות הורודות מומרות");
        m.lblFileName += QStringLiteral(" (") + what + QLatin1Char(')');
    }
    // 21.
    if (theRow == -1)
        theRow = 1;
    if (reasonIsRefresh) {
        g.setTopRow(clipRowNum(theRow - m.theOffset, g.Rows()));
        g.setRow(clipRowNum(theRow, g.Rows()));
    } else {
        if (mainMode) {
            const int red = clipRowNum(m.iRowAboveRed, g.Rows());
            if (!g.RowIsVisible(red))
                g.setTopRow(red);
        }
        g.setRow(clipRowNum(theRow, g.Rows()));
    }
    if (!reasonIsRefresh || g.Col() < colKind)
        g.setCol(colKind);
    m.row = g.Row();
    m.topRow = g.TopRow();
    g.setRedraw(true);
    updateCursorCells(m, g, m.msfgMainMarks, m.balancingLineID);
    if (m.progMode == modeDetail) {
        const Totals t = calcTotals(m);
        m.lblTotalIncome = t.lblTotalIncome;
        m.lblTotalExpense = t.lblTotalExpense;
    }
    // 23.
    m.openDBisBusy = false;
    m.frameButtonsEnabled = true;
    m.lblStatus = QStringLiteral("מוכן");
    emit m.loaded();
    emit m.changed();
    return LoadResult::Loaded;
}

} // namespace pelkor
