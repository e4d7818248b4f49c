#include "ledger/dlgKind.h"

#include "base/Format.h"
#include "file/Lines.h"

namespace pelkor {

dlgKind::dlgKind(const Catalogue& c, const QString& cellKind, const QString& text)
    : Dialog(QStringLiteral("בחר סיווג"), text)
{
    QStringList rows[2];   // 0: expense, 1: income
    for (int i = 0; i < int(c.categories.size()); ++i) {
        const QString code = c.getKindID(i);
        rows[code.startsWith(QLatin1Char('+')) ? 1 : 0] << FormatKind(code) + QLatin1Char(' ') + c.getKindDesc(i);
    }
    // The row of the cell's kind, lstKind(0) searched first.
    QString selected[2];
    bool found = false;
    for (int l = 0; l < 2 && !found && !cellKind.isEmpty(); ++l) {
        for (const QString& row : rows[l]) {
            if (row.section(QLatin1Char(' '), 0, 0) == cellKind) {
                selected[l] = row;
                found = true;
                setFocus(QStringLiteral("lstKind%1").arg(l));
                break;
            }
        }
    }
    addControl(QStringLiteral("lstKind0"), Kind::ListBox, QStringLiteral("הוצאות"), selected[0]).items = rows[0];
    addControl(QStringLiteral("lstKind1"), Kind::ListBox, QStringLiteral("הכנסות"), selected[1]).items = rows[1];
}

void dlgKind::onClick(const QString& name)
{
    const QString row = control(name);
    if (row.isEmpty())
        return;
    choice_ = row.section(QLatin1Char(' '), 0, 0);
    close(true);
}

} // namespace pelkor
