#include "ledger/frmAddLine.h"

#include "base/Titles.h"
#include "base/Format.h"
#include "base/Instance.h"
#include "file/Loader.h"
#include "file/OpenLedger.h"
#include "file/Schema.h"
#include "ledger/AddOneLine.h"
#include "ledger/LedgerEditor.h"
#include "ledger/dlgKind.h"
#include "ledger/frmCalc.h"
#include "seams/store/TextForms.h"
#include "seams/ui/Ui.h"
#include "seams/ui/dialogs/TypedDate.h"

#include <QFileInfo>

namespace pelkor {

using ui::Answer;
using ui::Buttons;
using ui::Icon;

namespace {

const QString kKind = QStringLiteral("txtKind");
const QString kDate = QStringLiteral("txtDate");
const QString kConfirm = QStringLiteral("txtConfirm");
const QString kDetails = QStringLiteral("txtDetails");
const QString kIn = QStringLiteral("txtIn");
const QString kOut = QStringLiteral("txtOut");
const QString kType = QStringLiteral("txtMyType");

// The fields whose text reads right to left: Left moves on from the end
// of the text. The numbers read left to right: Left moves on from its
// start.
bool readsRightToLeft(const QString& field) { return field != kConfirm && field != kIn && field != kOut; }

bool hasDate(const QDate& d) { return d.isValid() && d != nullDate(); }

} // namespace

const QStringList& frmAddLine::fields()
{
    static const QStringList f{kKind, kDate, kConfirm, kDetails, kIn, kOut, kType};
    return f;
}

frmAddLine::frmAddLine(OpenLedger& opener, const Instance& instance, const QString& targetPath, ui::Ui& ui, QDate today,
                       std::function<void(const QString&)> tellOpener)
    : Dialog(QStringLiteral("הוספת שורה"), QFileInfo(targetPath).fileName()),
      opener_(opener), instance_(instance), targetPath_(targetPath), ui_(ui), today_(today),
      tellOpener_(std::move(tellOpener))
{
    theLine_.Date = nullDate();
    theLine_.confirm = theLine_.detail = QString();
    const QStringList labels{QStringLiteral("סיווג"), QStringLiteral("תאריך"), QStringLiteral("אסמכתא"),
                             QStringLiteral("פירוט"), QStringLiteral("הכנסה"), QStringLiteral("הוצאה"),
                             QStringLiteral("סוג")};
    for (int i = 0; i < fields().size(); ++i)
        addControl(fields()[i], Kind::TextBox, labels[i]);
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    setFocus(kKind);
}

frmAddLine::~frmAddLine()
{
    if (own_)
        own_->cn.close();
}

bool frmAddLine::Form_Load()
{
    const bool sameFile = targetPath_.toLower() == opener_.filePath.toLower();
    try {
        if (sameFile) {
            target_ = &opener_;
        } else {
            ownInstance_ = std::make_unique<Instance>();
            own_ = std::make_unique<OpenLedger>(opener_.trace);
            own_->filePath = targetPath_;
            own_->cn.open(targetPath_);
            target_ = own_.get();
            // readKindsAndTypes: the zeroing line, the kinds, the types.
            auto rs = own_->cn.execute(QStringLiteral("SELECT id,date FROM %1 WHERE zee='%2'")
                                           .arg(own_->linesTable, QLatin1String(schema::ipusMark)));
            if (!rs.eof()) {
                own_->ipusID = RemoveNull(rs.field(0));
                own_->ipusDate = rs.field(1).toDate();
            }
            readCategories(*own_);
            if (!readTypeList(*own_)) {
                ui_.msgBox(QStringLiteral("error: no types"), QStringLiteral("פלקור"), Buttons::OK, Icon::Critical);
                finish(false);
                return false;
            }
        }
    } catch (const store::StoreError&) {
        ui_.msgBox(QStringLiteral("לא ניתן לפתוח את הקובץ \"%1\" כקובץ פלקור.").arg(isolated(QFileInfo(targetPath_).fileName())),
                   errorTitle, Buttons::OK, Icon::Exclamation);
        finish(false);
        return false;
    }
    return true;
}

QStringList frmAddLine::typeNames() const
{
    QStringList names;
    if (!target_)
        return names;
    for (bool income : {true, false})
        for (const TypeRec& t : target_->catalogue.types)
            if (t.isIncome == income)
                names << t.TypeName;
    return names;
}

// ---- focus and keys ------------------------------------------------------------

bool frmAddLine::moveFocus(const QString& to)
{
    if (isClosed())
        return false;
    const QString from = focus();
    if (from == to)
        return true;
    if (fields().contains(from) && !commit(from))
        return false;
    setFocus(to);
    return true;
}

bool frmAddLine::keyDown(const QString& field, int key, Qt::KeyboardModifiers mods, int selStart, int textLength)
{
    const int i = int(fields().indexOf(field));
    if (i < 0 || isClosed())
        return false;
    const int n = int(fields().size());
    const bool atEnd = selStart >= textLength;
    const bool atStart = selStart == 0;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (i + 1 < n)
            moveFocus(fields()[i + 1]);
        else
            commit(field);
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right: {
        if (mods & Qt::ShiftModifier)
            return false;
        const bool forward = key == Qt::Key_Left;
        // Forward (Left) leaves from the end of right-to-left text and from
        // the start of a number; back (Right) the other way round.
        const bool atEdge = readsRightToLeft(field) == forward ? atEnd : atStart;
        if (!atEdge)
            return false;
        moveFocus(fields()[(i + (forward ? 1 : n - 1)) % n]);
        return true;
    }
    default:
        return false;
    }
}

void frmAddLine::dblClick(const QString& field)
{
    if (isClosed() || !target_)
        return;
    if (field == kKind) {
        dlgKind dlg(target_->catalogue, control(kKind).trimmed());
        ui_.runDialog(dlg);
        if (dlg.accepted() && !dlg.choice().isEmpty()) {
            setValue(kKind, dlg.choice());
            commit(kKind);
        }
    } else if (field == kIn || field == kOut) {
        double v = 0;
        store::text::parseNumber(control(field).trimmed(), v);
        frmCalc calc(v, ui_);
        ui_.runDialog(calc);
        if (!calc.didCancelCalc()) {
            setValue(field, FormatSum(calc.calcValue()));
            commit(field);
        }
    }
}

void frmAddLine::onChange(const QString& name)
{
    // Typing in another field than the focused one is moving there: the
    // field left commits. A refusal keeps the focus where it was.
    if (fields().contains(name) && focus() != name)
        moveFocus(name);
}

// ---- the commits ---------------------------------------------------------------

bool frmAddLine::commit(const QString& field)
{
    if (field == kDate)
        return commitDate();
    if (field == kIn)
        return commitSum(true);
    if (field == kOut)
        return commitSum(false);
    if (field == kKind)
        return commitKind();
    if (field == kConfirm)
        theLine_.confirm = fixString(control(kConfirm));
    else if (field == kDetails)
        theLine_.detail = fixString(control(kDetails));
    else if (field == kType)
        theLine_.Type = control(kType).trimmed();
    return true;
}

bool frmAddLine::canceledBecauseAboveRed(const QDate& date)
{
    const QDate ipus = target_->ipusDate;
    if (!ipus.isValid() || date > ipus)
        return false;
    const QString question = QStringLiteral(".השורה ") + QStringLiteral("החדשה ")
        + QStringLiteral("תהיה לפני שורת האיפוס. עדכון זה עלול לעדכן נתוני היסטוריה");
    return ui_.msgBox(question, QStringLiteral("אזהרה"), Buttons::YesNo, Icon::Question) == Answer::No;
}

bool frmAddLine::commitDate()
{
    const QString text = control(kDate).trimmed();
    const auto shown = [this] { return hasDate(theLine_.Date) ? formatDate224(theLine_.Date) : QString(); };
    QDate d;
    if (text.isEmpty()) {
        if (!hasDate(theLine_.Date))
            return true;
        d = today_;
    } else if (const std::optional<QDate> typed = ui::readTypedDate(text)) {
        d = *typed;
    } else {
        ui_.msgBox(QStringLiteral("התאריך אינו חוקי"), errorTitle, Buttons::OK, Icon::Exclamation);
        return false;
    }
    if (d != theLine_.Date && canceledBecauseAboveRed(d)) {
        setValue(kDate, shown());
        return true;
    }
    theLine_.Date = d;
    setValue(kDate, shown());
    return true;
}

bool frmAddLine::commitSum(bool isIn)
{
    const QString field = isIn ? kIn : kOut;
    const QString text = control(field).trimmed();
    if (text.isEmpty())
        return true;
    double v = 0;
    if (!store::text::parseNumber(text, v)) {
        ui_.msgBox(isIn ? QStringLiteral("המספר בשדה ההכנסה אינו חוקי") : QStringLiteral("המספר בשדה ההוצאה אינו חוקי"),
                   errorTitle, Buttons::OK, Icon::Exclamation);
        return false;
    }
    if (isSumTooLarge(v)) {
        ui_.msgBox(sumTooLargeMessage(), errorTitle, Buttons::OK, Icon::Exclamation);
        return false;
    }
    (isIn ? theLine_.In : theLine_.out) = v;
    if (v != 0) {
        // A sum on one side empties the other and turns the kind and the
        // type to its direction.
        const QString typeBefore = theLine_.Type;
        turnToSide(theLine_, isIn, target_->catalogue);
        setValue(isIn ? kOut : kIn, QString());
        setValue(kKind, FormatKind(theLine_.kind));
        if (theLine_.Type != typeBefore)
            setValue(kType, theLine_.Type);
    }
    setValue(field, FormatSum(v));
    return true;
}

bool frmAddLine::commitKind()
{
    const QString text = control(kKind);
    if (text.trimmed().isEmpty()) {
        if (!theLine_.kind.isEmpty()) {
            theLine_.kind = theLine_.In != 0 || theLine_.out == 0 ? QStringLiteral("+0") : QStringLiteral("-0");
            setValue(kKind, FormatKind(theLine_.kind));
        }
        return true;
    }
    const QString kind = LedgerEditor::storedKind(text);
    if (!target_->catalogue.isCategory(kind)) {
        ui_.msgBox(QStringLiteral("הערך בסיווג אינו תואם את הרשימה"), errorTitle, Buttons::OK, Icon::Exclamation);
        return false;
    }
    theLine_.kind = kind;
    setValue(kKind, FormatKind(kind));
    return true;
}

// ---- OK and Cancel ---------------------------------------------------------------

void frmAddLine::onClick(const QString& name)
{
    if (name == QLatin1String("cmdCancel"))
        finish(false);
    else if (name == QLatin1String("cmdOK"))
        cmdOK_Click();
}

void frmAddLine::onDismiss() { finish(false); }

void frmAddLine::cmdOK_Click()
{
    // The button takes the focus: the field left commits first.
    if (!moveFocus(QStringLiteral("cmdOK")))
        return;
    if (!hasDate(theLine_.Date)) {
        if (ui_.msgBox(QStringLiteral("בשורה החדשה אין תאריך. האם ברצונך לבטל את הוספת השורה?"),
                       QStringLiteral("הוספת שורה"), Buttons::YesNo, Icon::Question)
            == Answer::Yes)
            finish(false);
        else
            setFocus(kDate);
        return;
    }
    const QString& kind = theLine_.kind;
    const QString refusal = kind.startsWith(QLatin1Char('+')) && theLine_.out != 0
        ? QStringLiteral("סיווג חיובי אינו יכול להשתייך להוצאה")
        : kind.startsWith(QLatin1Char('-')) && theLine_.out == 0 ? QStringLiteral("סיווג שלילי אינו יכול להשתייך להכנסה")
                                                                : QString();
    if (!refusal.isEmpty()) {
        ui_.msgBox(refusal, errorTitle, Buttons::OK, Icon::Exclamation);
        setFocus(kKind);
        return;
    }
    if (kind.isEmpty())
        theLine_.kind = theLine_.out == 0 ? QStringLiteral("+0") : QStringLiteral("-0");
    const Catalogue& cat = target_->catalogue;
    if (theLine_.Type.isEmpty())
        theLine_.Type = theLine_.out == 0 ? cat.typeName1 : cat.typeName2;
    if (!cat.findType(theLine_.Type)) {
        ui_.msgBox(QStringLiteral("הסוג שמילאת אינו חוקי"), errorTitle, Buttons::OK, Icon::Exclamation);
        setFocus(kType);
        return;
    }
    addOneLine(*target_, own_ ? *ownInstance_ : instance_, theLine_);
    if (tellOpener_)
        tellOpener_(QStringLiteral("closed"));
    finish(true);
}

void frmAddLine::finish(bool accepted)
{
    if (own_)
        own_->cn.close();
    if (!isClosed())
        close(accepted);
}

} // namespace pelkor
