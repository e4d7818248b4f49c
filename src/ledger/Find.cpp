#include "ledger/Find.h"

#include "base/Format.h"
#include "file/Display.h"
#include "file/MainGrid.h"
#include "file/OpenLedger.h"
#include "seams/grid/GridModel.h"
#include "seams/store/TextForms.h"
#include "seams/ui/Ui.h"

namespace pelkor {

using ui::Answer;
using ui::Buttons;
using ui::Icon;

Finder::Finder(EditParts parts, LedgerEditor& editor, FindState& state) : p_(parts), editor_(editor), s_(state) {}

bool Finder::showFind()
{
    const grid::GridModel& g = p_.grid.msfgMain;
    if (g.Col() < colKind || g.Col() > colType || p_.ledger.lines.empty())
        return false;
    s_.findInMainGrid = true;
    s_.findCol = g.Col();
    s_.findRow = g.Row();
    s_.everOpened = true;
    return true;
}

QString Finder::signToFront(const QString& s)
{
    if (s.endsWith(QLatin1Char('+')) || s.endsWith(QLatin1Char('-')))
        return s.right(1) + s.left(s.size() - 1);
    return s;
}

bool Finder::isFindMatch(const QString& cell, const QString& sought)
{
    if (cell.contains(sought, Qt::CaseInsensitive))
        return true;
    double v = 0;
    if (!store::text::parseNumber(cell.trimmed(), v))
        return false;
    if (signToFront(cell.trimmed()).contains(sought, Qt::CaseInsensitive))
        return true;
    // Two decimals and no grouping, with the sign behind as the grid writes it.
    QString plain = QString::number(std::abs(v), 'f', 2);
    if (v < 0)
        plain += QLatin1Char('-');
    return plain.contains(sought, Qt::CaseInsensitive) || signToFront(plain).contains(sought, Qt::CaseInsensitive);
}

grid::GridModel& Finder::searched()
{
    return !s_.findInMainGrid && other_.model ? *other_.model : p_.grid.msfgMain;
}

void Finder::reportNotFound(bool isTextFind, const QString& text)
{
    const grid::GridModel& g = searched();
    const QString header = g.text(0, s_.findCol);
    const QString msg = (isTextFind ? QStringLiteral("לא נמצא הטקסט ") : QStringLiteral("לא נמצאה התאמה ל- "))
        + QLatin1Char('"') + isolated(text) + QLatin1Char('"') + QStringLiteral(" בטור ה") + header + QStringLiteral(" ב")
        + (s_.findInMainGrid ? QStringLiteral("פלקור") : QStringLiteral("בנק"));
    p_.ui.msgBox(msg, isTextFind ? QStringLiteral("חיפוש") : QStringLiteral("חיפוש התאמה"), Buttons::OK, Icon::Exclamation);
}

Finder::Outcome Finder::doFind(bool forward, bool isTextFind)
{
    grid::GridModel& g = searched();
    const bool inMain = &g == &p_.grid.msfgMain;
    const int lastRow = g.Rows() - 1;
    if (lastRow < 1 || s_.findCol < colKind)
        return Outcome::NotFound;
    const int redRow = inMain ? p_.ledger.iRowAboveRed : (other_.rowAboveRed ? other_.rowAboveRed() : 0);
    const int firstRow = s_.onlyBelowRed && redRow >= 1 ? std::min(redRow + 1, lastRow) : 1;
    s_.findRow += forward ? 1 : -1;
    if (forward && s_.findRow < firstRow)
        s_.findRow = firstRow;
    QString sought = s_.findText;
    if (!isTextFind && s_.findCol == colConfirm)
        sought = sought.right(p_.ledger.nDigitsForConfirmComparison);
    for (;;) {
        if (forward && s_.findRow > lastRow) {
            s_.findRow = lastRow;
            if (!isTextFind || s_.hasWrapped) {
                reportNotFound(isTextFind, s_.findText);
                return Outcome::NotFound;
            }
            s_.hasWrapped = true;
            if (p_.ui.msgBox(QStringLiteral("החיפוש הגיע לשורה האחרונה. האם ברצונך להמשיך מהשורה הראשונה?"),
                             QStringLiteral("חיפוש"), Buttons::OKCancel, Icon::Question) != Answer::OK)
                return Outcome::GivenUp;
            s_.findRow = firstRow;
        } else if (!forward && s_.findRow < firstRow) {
            s_.findRow = firstRow;
            if (!isTextFind || s_.hasWrapped) {
                reportNotFound(isTextFind, s_.findText);
                return Outcome::NotFound;
            }
            s_.hasWrapped = true;
            if (p_.ui.msgBox(QStringLiteral("החיפוש הגיע לשורה הראשונה. האם ברצונך להמשיך מהשורה האחרונה?"),
                             QStringLiteral("חיפוש"), Buttons::OKCancel, Icon::Question) != Answer::OK)
                return Outcome::GivenUp;
            s_.findRow = lastRow;
        }
        if (isTextFind || g.peekText(s_.findRow, colMark).trimmed() != QLatin1String("v")) {
            QString cell = g.peekText(s_.findRow, s_.findCol);
            if (!isTextFind && s_.findCol == colConfirm)
                cell = cell.right(sought.size());
            if (isFindMatch(cell, sought))
                break;
        }
        s_.findRow += forward ? 1 : -1;
    }
    // A hit: the cell left is committed, the cursor goes to the hit, and the
    // hit shows with a few rows above it.
    s_.hasWrapped = false;
    if (inMain)
        editor_.msfgMainLeaveCell();
    g.setRow(s_.findRow);
    g.setCol(s_.findCol);
    const int above = std::max(1, s_.findRow - 1), below = std::min(lastRow, s_.findRow + 1);
    const int page = std::max(1, g.visibleRows());
    if (s_.findRow < g.TopRow() || below >= g.TopRow() + page || above < g.TopRow())
        g.setTopRow(std::clamp(s_.findRow - 5, 1, lastRow));
    if (inMain)
        editor_.msfgMain_EnterCell();
    else if (other_.entered)
        other_.entered();
    return Outcome::Hit;
}

} // namespace pelkor
