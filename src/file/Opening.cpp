#include "file/Opening.h"

#include "base/Format.h"
#include "base/Instance.h"
#include "base/Trace.h"
#include "file/Schema.h"
#include "seams/platform/Paths.h"
#include "seams/store/Probe.h"
#include "seams/ui/Ui.h"
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

QString salvageName(const QString& filePath)
{
    const QFileInfo info(filePath);
    const QString base = info.absolutePath() + QLatin1Char('/') + info.completeBaseName() + QStringLiteral(" - משוחזר");
    QString name = base + QStringLiteral(".pkr");
    for (int n = 2; QFileInfo::exists(name); ++n)
        name = base + QStringLiteral(" %1.pkr").arg(n);
    return name;
}

namespace {

QString writeProblem(const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    switch (store::writeBlock(path)) {
    case store::WriteBlock::FileSystem:
        return QStringLiteral("לא ניתן לעבוד בקובץ \"\u2068%1\u2069\": הכונן שהוא נמצא בו הוא לקריאה בלבד.\n"
                              "העתק את הקובץ לתיקייה שאפשר לכתוב בה ופתח אותו משם.").arg(name);
    case store::WriteBlock::Folder:
        return QStringLiteral("לא ניתן לעבוד בקובץ \"\u2068%1\u2069\": אין הרשאה לכתוב בתיקייה \"\u2068%2\u2069\" שהוא נמצא בה.\n"
                              "העתק את הקובץ לתיקייה שאפשר לכתוב בה ופתח אותו משם.")
            .arg(name, QDir::toNativeSeparators(QFileInfo(path).absolutePath()));
    case store::WriteBlock::File:
        return QStringLiteral("לא ניתן לעבוד בקובץ \"\u2068%1\u2069\": הקובץ מוגדר לקריאה בלבד.\n"
                              "בטל את הגדרת הקריאה בלבד שלו ופתח אותו שוב.").arg(name);
    case store::WriteBlock::None:
        break;
    }
    return {};
}

} // namespace

LedgerFileCheck checkLedgerFile(const QString& filePath, ui::Ui& ui, Trace& trace)
{
    LedgerFileCheck c{filePath, {}};
    const QString name = QFileInfo(filePath).fileName();
    const store::ProbeResult pr = store::probe(filePath);
    if (!pr.detail.isEmpty())
        trace.traceLine(QStringLiteral("OpenCon"), filePath + QStringLiteral(": ") + pr.detail);
    switch (pr.kind) {
    case store::FileKind::Missing:
        c.problem = QStringLiteral("הקובץ \"\u2068%1\u2069\" לא נמצא.").arg(filePath);
        return c;
    case store::FileKind::NotDatabase:
        c.problem = QStringLiteral("הקובץ \"\u2068%1\u2069\" אינו קובץ פלקור: אין בו נתונים שפלקור יודע לקרוא.").arg(filePath);
        return c;
    case store::FileKind::Damaged: {
        const QString saved = salvageName(filePath);
        const QString offer = QStringLiteral("הקובץ \"\u2068%1\u2069\" פגום: חלק מהנתונים שבו אינם ניתנים לקריאה. הקובץ עצמו לא ישתנה.\n\n"
                                             "לשמור את כל מה שעוד ניתן לקרוא ממנו בקובץ חדש לידו, \"\u2068%2\u2069\", ולפתוח אותו?")
                                  .arg(name, QFileInfo(saved).fileName());
        if (ui.msgBox(offer, QStringLiteral("קובץ פגום"), ui::Buttons::YesNo, ui::Icon::Exclamation) != ui::Answer::Yes) {
            c.problem = QStringLiteral("הקובץ \"\u2068%1\u2069\" פגום ולא נפתח. הוא נשאר כפי שהיה.").arg(name);
            return c;
        }
        const store::SalvageResult sr = store::salvage(filePath, saved);
        trace.traceLine(QStringLiteral("OpenCon"), QStringLiteral("salvaged %1 rows to %2 %3").arg(sr.rows).arg(saved, sr.why));
        if (sr.rows < 0) {
            c.problem = QStringLiteral("לא ניתן היה לקרוא דבר מהקובץ הפגום \"\u2068%1\u2069\". הוא נשאר כפי שהיה.").arg(name);
            return c;
        }
        ui.msgBox(QStringLiteral("מה שניתן היה לקרוא נשמר בקובץ \"\u2068%1\u2069\", והוא נפתח עכשיו.\n"
                                 "בדוק את השורות האחרונות מול דף הבנק: ייתכן שחלק מהן אבד.").arg(QFileInfo(saved).fileName()),
                  QStringLiteral("קובץ פגום"), ui::Buttons::OK, ui::Icon::Information);
        c.path = saved;
        return checkLedgerFile(saved, ui, trace);
    }
    case store::FileKind::Database:
        break;
    }
    if (!pr.tables.contains(QStringLiteral("pelkor"), Qt::CaseInsensitive)) {
        c.problem = QStringLiteral("הקובץ \"\u2068%1\u2069\" אינו קובץ פלקור: אין בו טבלת שורות.").arg(filePath);
        return c;
    }
    c.problem = writeProblem(filePath);
    return c;
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
