#include "transfer/frmTransfer.h"

#include "base/Format.h"
#include "base/StoredKind.h"
#include "base/Titles.h"
#include "base/Trace.h"
#include "file/Loader.h"
#include "file/OpenLedger.h"
#include "file/Schema.h"
#include "file/Upgrades.h"
#include "seams/store/Connection.h"
#include "seams/store/Probe.h"
#include "seams/store/TextForms.h"
#include "seams/ui/Ui.h"
#include "seams/ui/dialogs/TypedDate.h"
#include "transfer/MoveOrCopy.h"
#include "transfer/TransferJournal.h"

#include <QFileInfo>

#include <algorithm>

namespace pelkor::transfer {

using ui::Buttons;
using ui::Icon;

namespace {

const QStringList& headers()
{
    static const QStringList h{QString(), QStringLiteral("סיווג"), QStringLiteral("תאריך"), QStringLiteral("אסמכתא"),
                               QStringLiteral("פירוט"), QStringLiteral("הכנסה"), QStringLiteral("הוצאה"),
                               QStringLiteral("סוג")};
    return h;
}

const QString rowPrefix[2] = {QStringLiteral("מ: "), QStringLiteral("ל: ")};
const QString kindBeforeFile = QStringLiteral("לא ניתן לשנות סיווג לפני שנבחר קובץ");
const QString typeBeforeFile = QStringLiteral("לא ניתן לשנות סוג לפני שנבחר קובץ");

QString sqlSum(double v) { return QString::number(v, 'g', 15); }
QString orBlank(const QString& s) { return s.isEmpty() ? QStringLiteral(" ") : s; }
bool sameFile(const QString& a, const QString& b)
{
    const QFileInfo fa(a), fb(b);
    return fa.absoluteFilePath() == fb.absoluteFilePath()
        || (fa.exists() && fb.exists() && fa.canonicalFilePath() == fb.canonicalFilePath());
}

} // namespace

const QString& frmTransfer::rowName(int index)
{
    static const QString names[2] = {QStringLiteral("מקור"), QStringLiteral("יעד")};
    return names[index == 1 ? 1 : 0];
}

frmTransfer::frmTransfer(TransferParts parts)
    : Dialog(QStringLiteral("העברה מחשבון לחשבון"), QString()), p_(std::move(parts))
{
    for (int i = 0; i < 2; ++i) {
        addControl(QStringLiteral("txtFileName%1").arg(i), Kind::TextBox, rowName(i) + QLatin1Char(':'));
        setEnabled(QStringLiteral("txtFileName%1").arg(i), false);
        addControl(QStringLiteral("cmdBrowse%1").arg(i), Kind::Button, QStringLiteral("עיון..."));
    }
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    setEnabled(QStringLiteral("cmdOK"), false);

    for (int c = 0; c < tcCount; ++c)
        setCell(0, c, headers()[c]);
    for (int i = 0; i < 2; ++i) {
        setCell(rowOf(i), tcName, rowName(i));
        Line& L = lines_[size_t(i)];
        L.kind = i == 0 ? QStringLiteral("-0") : QStringLiteral("+0");
        L.confirm = L.detail = QString();
        setCell(rowOf(i), tcKind, FormatKind(L.kind));
    }
    msfg_.setRow(sourceRow);
    msfg_.setCol(tcKind);
    setFocus(QStringLiteral("cmdBrowse0"));
}

QStringList frmTransfer::typeNames(int row) const
{
    QStringList names;
    for (bool income : {true, false})
        for (const TypeRec& t : cats_[size_t(indexOfRow(row))].types)
            if (t.isIncome == income)
                names << t.TypeName;
    return names;
}

// ---- the files ----------------------------------------------------------------

void frmTransfer::onClick(const QString& name)
{
    if (name == QLatin1String("cmdBrowse0") || name == QLatin1String("cmdBrowse1"))
        cmdBrowse_Click(name.back().digitValue());
    else if (name == QLatin1String("cmdOK"))
        cmdOK_Click();
    else if (name == QLatin1String("cmdCancel"))
        close(false);
}

void frmTransfer::cmdBrowse_Click(int index)
{
    ui::FileDialogOptions spec;
    spec.title = QStringLiteral("בחר קובץ ") + rowName(index) + QLatin1Char(':');
    spec.filter = QStringLiteral("פלקור (*.pkr)|*.pkr");
    spec.defaultExt = QStringLiteral("pkr");
    spec.startDir = fileNames_[size_t(index)].isEmpty() ? p_.startDir : QFileInfo(fileNames_[size_t(index)]).absolutePath();
    spec.fileMustExist = spec.pathMustExist = true;
    const QStringList chosen = p_.ui.openFileDialog(spec);
    if (chosen.isEmpty() || chosen.first().isEmpty())
        return;
    chooseFile(index, chosen.first());
}

bool frmTransfer::readTransferKindsAndTypes(int index, const QString& path)
{
    OpenLedger f(p_.trace);
    const QString name = isolated(QFileInfo(path).fileName());
    try {
        f.filePath = path;
        // Only a ledger is opened for writing; an older one is upgraded as
        // any open does.
        const store::ProbeResult pr = store::probe(path);
        if (pr.kind != store::FileKind::Database || !pr.tables.contains(QStringLiteral("pelkor"), Qt::CaseInsensitive)
            || !pr.tables.contains(QStringLiteral("category"), Qt::CaseInsensitive))
            throw store::StoreError(store::StoreError::Kind::Open, QStringLiteral("no ledger"), path);
        f.cn.open(path);
        handleAuto(f);
        readInvoiceCategs(f);
        auto rs = f.cn.execute(QStringLiteral("SELECT date FROM pelkor WHERE zee='%1'").arg(QLatin1String(schema::ipusMark)));
        if (rs.recordCount() != 1)
            p_.ui.msgBox(QStringLiteral("number of ipus transferLines in DB %1 is %2").arg(index).arg(rs.recordCount()),
                         pelkorTitle);
        ipus_[size_t(index)] = rs.eof() ? QDate() : rs.field(0).toDate();
        readCategories(f);
        if (!readTypeList(f)) {
            p_.ui.msgBox(QStringLiteral("error: no types"), pelkorTitle, Buttons::OK, Icon::Critical);
            return false;
        }
    } catch (const store::StoreError& e) {
        p_.trace.traceLine(QStringLiteral("readTransferKindsAndTypes"), e.message());
        p_.ui.msgBox(QStringLiteral("לא ניתן לפתוח את הקובץ \"%1\" כקובץ פלקור.").arg(name), errorTitle, Buttons::OK,
                     Icon::Exclamation);
        return false;
    }
    cats_[size_t(index)] = f.catalogue;
    return true;
}

bool frmTransfer::chooseFile(int index, const QString& path)
{
    const size_t i = size_t(index);
    if (path == fileNames_[i])
        return true;
    const std::array<QDate, 2> ipusBefore = ipus_;
    if (!readTransferKindsAndTypes(index, path)) {
        ipus_ = ipusBefore;
        return false;
    }
    prevFileNames_[i] = fileNames_[i];
    fileNames_[i] = path;
    setValue(QStringLiteral("txtFileName%1").arg(index), QFileInfo(path).fileName());

    // The other row's detail names this file, unless the user wrote one.
    const int other = 1 - index;
    const int otherRow = rowOf(other);
    const QString now = cell(otherRow, tcDetail);
    if (now.trimmed().isEmpty() || now == autoDetail_[i]) {
        const QString detail = fixString(QStringLiteral("העברה ") + rowPrefix[index] + QFileInfo(path).fileName()).left(100);
        autoDetail_[i] = detail;
        setCell(otherRow, tcDetail, detail);
        lines_[size_t(other)].detail = detail;
    }
    set_cmdOKenabled();
    return true;
}

// ---- the grid -------------------------------------------------------------------

bool frmTransfer::sumCellTakesInput(int row, int col) const
{
    return (row == sourceRow && col == tcOut) || (row == destRow && col == tcIn);
}

bool frmTransfer::moveTo(int row, int col)
{
    if (editorOpen_ && !commitEditor())
        return false;
    if (!msfg_LeaveCell())
        return false;
    msfg_.setRow(std::clamp(row, int(sourceRow), int(destRow)));
    msfg_.setCol(std::clamp(col, int(tcKind), int(tcType)));
    return true;
}

bool frmTransfer::gridEdit(QChar keyAscii)
{
    const int row = msfg_.Row(), col = msfg_.Col();
    const int index = indexOfRow(row);
    if (col == tcName)
        return false;
    if ((col == tcIn || col == tcOut) && !sumCellTakesInput(row, col))
        return false;
    if ((col == tcKind || col == tcType) && fileNames_[size_t(index)].isEmpty()) {
        p_.ui.msgBox(col == tcKind ? kindBeforeFile : typeBeforeFile, errorTitle, Buttons::OK, Icon::Exclamation);
        return false;
    }
    editorText_ = keyAscii.isNull() ? cell(row, col) : QString(keyAscii);
    editorOpen_ = true;
    return true;
}

bool frmTransfer::commitEditor()
{
    if (!editorOpen_)
        return msfg_LeaveCell();
    editorOpen_ = false;
    setCell(msfg_.Row(), msfg_.Col(), editorText_);
    return msfg_LeaveCell();
}

bool frmTransfer::typeInto(int row, int col, const QString& text)
{
    if (!moveTo(row, col) || !gridEdit())
        return false;
    editorText_ = text;
    const bool ok = commitEditor();
    set_cmdOKenabled();
    return ok;
}

bool frmTransfer::refuse(const QString& message, int col, const QString& recordText)
{
    p_.ui.msgBox(message, errorTitle, Buttons::OK, Icon::Exclamation);
    setCell(msfg_.Row(), col, recordText);
    return false;
}

bool frmTransfer::msfg_LeaveCell()
{
    const int row = msfg_.Row();
    if (row != sourceRow && row != destRow)
        return true;
    const int index = indexOfRow(row);
    bool ok = true;
    switch (msfg_.Col()) {
    case tcKind: ok = commitKind(index); break;
    case tcDate: ok = commitDate(index); break;
    case tcConfirm: commitText(index, false); break;
    case tcDetail: commitText(index, true); break;
    case tcIn:
    case tcOut: ok = commitSum(index, msfg_.Col()); break;
    case tcType: ok = commitType(index); break;
    default: break;
    }
    set_cmdOKenabled();
    return ok;
}

bool frmTransfer::commitKind(int index)
{
    Line& L = lines_[size_t(index)];
    const int row = rowOf(index);
    QString kind = storedKind(cell(row, tcKind));
    if (kind.isEmpty())
        kind = index == 0 ? QStringLiteral("-0") : QStringLiteral("+0");
    if (kind == L.kind) {
        setCell(row, tcKind, FormatKind(kind));
        return true;
    }
    if (index == 0 && kind.startsWith(QLatin1Char('+')))
        return refuse(QStringLiteral("סיווג חיובי אינו יכול להשתייך להוצאה"), tcKind, FormatKind(L.kind));
    if (index == 1 && kind.startsWith(QLatin1Char('-')))
        return refuse(QStringLiteral("סיווג שלילי אינו יכול להשתייך להכנסה"), tcKind, FormatKind(L.kind));
    if (!cats_[size_t(index)].isCategory(kind))
        return refuse(QStringLiteral("הערך בסיווג אינו תואם את הרשימה"), tcKind, FormatKind(L.kind));
    L.kind = kind;
    setCell(row, tcKind, FormatKind(kind));
    return true;
}

void frmTransfer::setDate(const QDate& d)
{
    for (int i = 0; i < 2; ++i) {
        lines_[size_t(i)].Date = d;
        setCell(rowOf(i), tcDate, d.isValid() ? formatDate224(d) : QString());
    }
}

bool frmTransfer::commitDate(int index)
{
    const Line& L = lines_[size_t(index)];
    const QString text = cell(rowOf(index), tcDate).trimmed();
    if (text.isEmpty()) {
        // An empty cell takes today, once a date was set.
        setDate(L.Date.isValid() ? p_.today : QDate());
        return true;
    }
    const std::optional<QDate> typed = ui::readTypedDate(text);
    if (!typed)
        return refuse(QStringLiteral("התאריך אינו חוקי"), tcDate, L.Date.isValid() ? formatDate224(L.Date) : QString());
    setDate(*typed);
    return true;
}

void frmTransfer::commitText(int index, bool isDetail)
{
    Line& L = lines_[size_t(index)];
    const int col = isDetail ? tcDetail : tcConfirm;
    const int limit = isDetail ? 100 : 50;
    QString text = fixString(cell(rowOf(index), col));
    if (text.size() > limit) {
        p_.ui.msgBox((isDetail ? QStringLiteral("הערך בטור הפירוט ארוך מדי. האורך המירבי המותר הוא ")
                               : QStringLiteral("הערך בטור האסמכתא ארוך מדי. האורך המירבי המותר הוא "))
                         + QString::number(limit) + QStringLiteral(" אותיות. הערך יקוצר"),
                     errorTitle, Buttons::OK, Icon::Exclamation);
        text = text.left(limit);
    }
    setCell(rowOf(index), col, text);
    (isDetail ? L.detail : L.confirm) = text;
}

void frmTransfer::setSum(double v)
{
    lines_[0].out = v;
    lines_[1].In = v;
    const QString shown = v == 0 ? QString() : FormatSum(v);
    setCell(sourceRow, tcOut, shown);
    setCell(destRow, tcIn, shown);
}

bool frmTransfer::commitSum(int index, int col)
{
    const int row = rowOf(index);
    const double record = lines_[0].out;
    const QString recordText = record == 0 ? QString() : FormatSum(record);
    if (!sumCellTakesInput(row, col)) {
        // The other side's cell only ever shows the sum.
        setCell(row, col, QString());
        return true;
    }
    const QString text = cell(row, col).trimmed();
    if (text.isEmpty()) {
        setCell(row, col, recordText);
        return true;
    }
    double v = 0;
    if (!store::text::parseNumber(text, v))
        return refuse(QStringLiteral("הערך בטור ה") + headers()[col] + QStringLiteral(" אינו מספר"), col, recordText);
    if (isSumTooLarge(v))
        return refuse(sumTooLargeMessage(), col, recordText);
    setSum(v);
    return true;
}

bool frmTransfer::commitType(int index)
{
    Line& L = lines_[size_t(index)];
    const QString text = cell(rowOf(index), tcType).trimmed();
    if (text.isEmpty()) {
        L.Type.clear();
        return true;
    }
    if (!cats_[size_t(index)].findType(text))
        return refuse(QStringLiteral("הסוג שמילאת אינו חוקי"), tcType, L.Type);
    L.Type = text;
    setCell(rowOf(index), tcType, text);
    return true;
}

// ---- keys -----------------------------------------------------------------------

bool frmTransfer::tabMove(bool forward)
{
    int row = msfg_.Row(), col = msfg_.Col();
    if (forward) {
        if (col < tcType)
            ++col;
        else if (row == sourceRow)
            row = destRow, col = tcKind;
        else
            return moveTo(row, col);
    } else {
        if (col > tcKind)
            --col;
        else if (row == destRow)
            row = sourceRow, col = tcType;
        else
            return moveTo(row, col);
    }
    return moveTo(row, col);
}

bool frmTransfer::keyDown(int key, Qt::KeyboardModifiers mods)
{
    const int row = msfg_.Row(), col = msfg_.Col();
    if (editorOpen_) {
        switch (key) {
        case Qt::Key_Escape:
            cancelEditor();
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Left:
        case Qt::Key_Tab:
            return tabMove(true), true;
        case Qt::Key_Right:
        case Qt::Key_Backtab:
            return tabMove(false), true;
        case Qt::Key_Down:
        case Qt::Key_Up:
            break;   // as on the grid, below, after the commit
        default:
            return false;
        }
        if (!commitEditor())
            return true;
    }
    switch (key) {
    case Qt::Key_Tab:
        tabMove(!(mods & Qt::ShiftModifier));
        return true;
    case Qt::Key_Backtab:
        tabMove(false);
        return true;
    case Qt::Key_Left:
        // The row reads right to left: Left is the next column.
        if (col < tcType)
            moveTo(row, col + 1);
        return true;
    case Qt::Key_Right:
        if (col > tcKind)
            moveTo(row, col - 1);
        return true;
    case Qt::Key_Down:
        if (row == sourceRow)
            moveTo(destRow, col);
        return true;
    case Qt::Key_Up:
        if (row == destRow)
            moveTo(sourceRow, col);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        gridEdit();
        return true;
    case Qt::Key_Delete:
        if (col == tcName || ((col == tcIn || col == tcOut) && !sumCellTakesInput(row, col)))
            return true;
        setCell(row, col, QString());
        return true;
    case Qt::Key_F8:
        if (lines_[0].Date.isValid()) {
            setDate(lines_[0].Date.addDays(1));
            set_cmdOKenabled();
        }
        return true;
    case Qt::Key_Insert:
    case Qt::Key_F5:
    case Qt::Key_F6:
        return true;
    default:
        return false;
    }
}

void frmTransfer::dblClick()
{
    const int row = msfg_.Row(), col = msfg_.Col();
    const int index = indexOfRow(row);
    if (col == tcKind) {
        if (fileNames_[size_t(index)].isEmpty()) {
            p_.ui.msgBox(kindBeforeFile, errorTitle, Buttons::OK, Icon::Exclamation);
            return;
        }
        if (!p_.kindDialog)
            return;
        const QString chosen = p_.kindDialog(cats_[size_t(index)], cell(row, tcKind));
        if (chosen.isEmpty())
            return;
        setCell(row, tcKind, chosen);
        msfg_LeaveCell();
    } else if (col == tcIn || col == tcOut) {
        if (!sumCellTakesInput(row, col) || !p_.calculator)
            return;
        const std::optional<double> v = p_.calculator(lines_[0].out);
        if (!v)
            return;
        setCell(row, col, FormatSum(*v));
        msfg_LeaveCell();
    } else if (col != tcName) {
        gridEdit();
    }
}

// ---- OK ---------------------------------------------------------------------------

void frmTransfer::set_cmdOKenabled()
{
    double v = 0;
    const bool sum = store::text::parseNumber(cell(sourceRow, tcOut).trimmed(), v);
    const bool date = ui::readTypedDate(cell(sourceRow, tcDate)).has_value();
    setEnabled(QStringLiteral("cmdOK"), !fileNames_[0].isEmpty() && !fileNames_[1].isEmpty() && sum && date);
}

QString frmTransfer::insertOf(int index) const
{
    const Line& L = lines_[size_t(index)];
    return QStringLiteral("INSERT into pelkor ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo],[IndTzefi]) "
                          "Values('%1',%2,'%3','%4',%5,%6,%7,' ',' ',false)")
        .arg(fixString(L.kind), formatDateForSQL(L.Date), fixString(orBlank(L.confirm)), fixString(orBlank(L.detail)),
             sqlSum(L.In), sqlSum(L.out), QString::number(cats_[size_t(index)].typeNumOf(L.Type)));
}

bool frmTransfer::cmdOK_Click()
{
    TraceScope t(p_.trace, QStringLiteral("cmdOK_Click"));
    // 1: the open cell first; a refusal keeps the cursor there.
    if (!commitEditor())
        return false;
    auto stop = [this](const QString& message, int row, int col, Icon icon = Icon::Exclamation) {
        p_.ui.msgBox(message, errorTitle, Buttons::OK, icon);
        if (row > 0) {
            msfg_.setRow(row);
            msfg_.setCol(col);
        }
        setFocus(QStringLiteral("msfg"));
        return false;
    };
    for (int i = 0; i < 2; ++i)
        if (fileNames_[size_t(i)].isEmpty())
            return stop(QStringLiteral("יש לבחור קובץ ") + rowName(i), -1, 0);
    // 2: the same file on both sides.
    if (sameFile(fileNames_[0], fileNames_[1]))
        return stop(QStringLiteral("קובץ המקור הוא גם קובץ היעד"), -1, 0);
    double sum = 0;
    if (!store::text::parseNumber(cell(sourceRow, tcOut).trimmed(), sum))
        return stop(QStringLiteral("הערך בטור ה") + headers()[tcOut] + QStringLiteral(" אינו מספר"), sourceRow, tcOut);
    // 3-4: the date, after both zeroing dates; both checked before any write.
    const QDate date = lines_[0].Date;
    if (!date.isValid())
        return stop(QStringLiteral("התאריך אינו חוקי"), sourceRow, tcDate);
    for (int i = 0; i < 2; ++i)
        if (ipus_[size_t(i)].isValid() && date <= ipus_[size_t(i)]) {
            msfg_.setRow(rowOf(i));
            msfg_.setCol(tcDate);
            p_.ui.msgBox(QStringLiteral("יש למלא תאריך מאוחר מתאריך האיפוס של קובץ ה") + rowName(i) + QStringLiteral(":\n")
                             + formatDate224(ipus_[size_t(i)]),
                         errorTitle, Buttons::OK, Icon::Exclamation);
            return false;
        }
    // 5.1-5.2: empty kinds and types take the defaults of each row's file;
    // each must be of that file (a file chosen again may lack them).
    for (int i = 0; i < 2; ++i) {
        Line& L = lines_[size_t(i)];
        const Catalogue& cat = cats_[size_t(i)];
        if (L.Type.isEmpty())
            L.Type = i == 0 ? cat.typeName2 : cat.typeName1;
        if (L.kind.isEmpty())
            L.kind = i == 0 ? QStringLiteral("-0") : QStringLiteral("+0");
        if (!cat.isCategory(L.kind))
            return stop(QStringLiteral("הערך בסיווג אינו תואם את הרשימה"), rowOf(i), tcKind);
        if (!cat.findType(L.Type))
            return stop(QStringLiteral("הסוג שמילאת אינו חוקי"), rowOf(i), tcType);
    }
    // Each file must take a line before either is written.
    for (int i = 0; i < 2; ++i)
        if (const QString problem = ledgerWriteProblem(fileNames_[size_t(i)], rowName(i)); !problem.isEmpty())
            return stop(problem, -1, 0);

    // 5.3: the pair, the source first.
    PairWrite w;
    {
        store::Connection first;
        try {
            first.setBusyPolicy(p_.busy);
            first.open(fileNames_[0]);
        } catch (const store::StoreError& e) {
            w.refused = 0;
            w.why = e.message();
        }
        if (w.refused < 0)
            w = writeTransferPair(
                first, insertOf(0),
                [this](store::Connection& c) {
                    c.setBusyPolicy(p_.busy);
                    c.open(fileNames_[1]);
                },
                fileNames_[1], insertOf(1));
    }
    if (!w.why.isEmpty())
        p_.trace.traceLine(QStringLiteral("cmdOK_Click"), w.why);
    if (!w.done) {
        const QString name = isolated(QFileInfo(fileNames_[size_t(w.refused)]).fileName());
        QString text = QStringLiteral("ההעברה לא בוצעה: קובץ ה") + rowName(w.refused) + QStringLiteral(" \"") + name
            + QStringLiteral("\" לא קיבל את השורה (הוא תפוס, לקריאה בלבד או שאינו קיים עוד).");
        if (w.refused == 1)
            text += w.firstUndone ? QStringLiteral("\nהשורה שנכתבה בקובץ המקור נמחקה, ודבר לא השתנה באף אחד מהקבצים.")
                                  : QStringLiteral("\nהשורה שנכתבה בקובץ המקור תימחק בפתיחה הבאה שלו.");
        p_.ui.msgBox(text, errorTitle, Buttons::OK, Icon::Exclamation);
        return false;
    }
    // 5.4: the window's own file is read again.
    if (p_.refreshMain && !p_.mainPath.isEmpty()
        && (sameFile(fileNames_[0], p_.mainPath) || sameFile(fileNames_[1], p_.mainPath)))
        p_.refreshMain();
    // 6-7.
    p_.ui.msgBox(QStringLiteral("בוצע בהצלחה"), QStringLiteral("העברה"), Buttons::OK, Icon::Information);
    close(true);
    return true;
}

} // namespace pelkor::transfer
