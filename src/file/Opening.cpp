#include "file/Opening.h"

#include "base/Format.h"
#include "base/Instance.h"
#include "base/Trace.h"
#include "file/Schema.h"
#include "seams/platform/Paths.h"
#include "seams/store/Connection.h"

#include <QDir>
#include <QFileInfo>

namespace pelkor {

using store::StoreError;

OpenTitles openTitles(const Instance& inst, const QString& filePath)
{
    OpenTitles o;
    o.lblFileName = getShortFileName(QDir::toNativeSeparators(QFileInfo(filePath).absoluteFilePath())
                                         .replace(QLatin1Char('\\'), QLatin1Char('/')))
        + QStringLiteral("   ");
    const QString shortName = o.lblFileName.trimmed();
    if (inst.progMode != modeDetail) {
        o.caption = QStringLiteral("פלקור - ") + shortName;
        return o;
    }
    const DetailSelection& d = inst.detail;
    QString s = shortName + QStringLiteral(" - ");
    s += d.kind == detailIncome ? QStringLiteral("הכנסות") : d.kind == detailExpense ? QStringLiteral("הוצאות") : QStringLiteral("תנועות");
    if (d.kind >= detailIncome && d.kind <= detailDay) {
        s += QStringLiteral(" לתאריך ") + formatDate224(d.fromDate);
        if (d.conv == 0)
            s += QStringLiteral(" (ללא המרה)");
        else if (d.conv > 0)
            s += QStringLiteral(" (מוכפל ב: %1)").arg(d.conv, 0, 'f', 4);
        else
            s += QStringLiteral(" (מחולק ב: %1)").arg(-d.conv, 0, 'f', 4);
    }
    o.lblFileName = s;
    o.caption = QStringLiteral("פירוט תנועות - ") + shortName;
    return o;
}

QString ledgerFileProblem(const QString& filePath, Trace& trace)
{
    if (filePath.isEmpty() || !QFileInfo(filePath).isFile())
        return QStringLiteral("הקובץ \"%1\" לא נמצא.").arg(filePath);
    try {
        store::Connection look;
        look.open(filePath, store::Connection::OpenMode::ReadOnly);
        if (!look.tableExists(QStringLiteral("pelkor")))
            return QStringLiteral("הקובץ \"%1\" אינו קובץ פלקור: אין בו טבלת שורות.").arg(filePath);
    } catch (const StoreError& e) {
        trace.traceLine(QStringLiteral("OpenCon"), e.message());
        return QStringLiteral("הקובץ \"%1\" אינו קובץ פלקור ולא ניתן לפתוח אותו.").arg(filePath);
    }
    return {};
}

QString readParameter(const platform::Paths& paths, const QString& key, Trace& trace)
{
    const QString path = paths.paramsFile();
    try {
        store::Connection cn1;
        if (!QFileInfo::exists(path)) {
            // First start on this machine: the open dialogs start in the
            // data directory, where the demo ledger lies too.
            QDir().mkpath(QFileInfo(path).absolutePath());
            schema::createParams(path, paths.dataDir, QString());
        }
        cn1.open(path, store::Connection::OpenMode::ReadOnly);
        auto rs = cn1.execute(QStringLiteral("SELECT T FROM PARAMETER WHERE PARAMETER='%1'").arg(fixString(key)));
        return rs.eof() ? QString() : RemoveNull(rs.field(0));
    } catch (const StoreError& e) {
        trace.traceLine(QStringLiteral("readParameter"), e.message());
        return {};
    }
}

} // namespace pelkor
