// The main window's files: the choice at the start of a working run with
// no current file, the File menu's open, new and recent files, and the
// watch that reloads an idle window when another process wrote its file.
#include "frame/frmMain.h"

#include "file/Schema.h"
#include "frame/FrameWords.h"
#include "seams/platform/ProfileFile.h"
#include "seams/store/StoreError.h"
#include "seams/ui/Ui.h"

#include <QDir>
#include <QFileInfo>

namespace pelkor {

using ui::Buttons;
using ui::Icon;
using namespace frameWords;

namespace {

const QString ledgerFilter = QStringLiteral("פלקור (*.pkr)|*.pkr");
const QString recentSection = QStringLiteral("recent files");

QString fullPath(const QString& file) { return QFileInfo(file).absoluteFilePath(); }

} // namespace

QString frmMain::chooseLedger()
{
    TraceScope t(trace_, QStringLiteral("chooseLedger"));
    ui::FileDialogOptions spec;
    spec.title = QStringLiteral("בחר קובץ פלקור, או הקלד שם לקובץ חדש");
    spec.filter = ledgerFilter;
    spec.defaultExt = QStringLiteral("pkr");
    spec.startDir = readParameter(QStringLiteral("directory"));
    spec.pathMustExist = true;
    spec.fileNameLabel = QStringLiteral("שם קובץ קיים, או שם חדש לקובץ חדש:");
    QString refused;
    for (;;) {
        const QStringList chosen = ui_.openFileDialog(spec);
        if (chosen.isEmpty() || chosen.first().isEmpty())
            return {};
        const QString path = fullPath(ui::withDefaultExt(chosen.first(), spec.defaultExt));
        if (QFileInfo::exists(path))
            return path;
        // The same name refused twice: the user has nothing to open.
        if (path == refused)
            return {};
        if (makeLedgerAt(path, true))
            return path;
        refused = path;
    }
}

bool frmMain::makeLedgerAt(const QString& path, bool ask)
{
    const QString name = QFileInfo(path).fileName();
    if (ask
        && ui_.msgBox(QStringLiteral("הקובץ \"\u2068%1\u2069\" אינו קיים.\nליצור בשם זה קובץ פלקור חדש?").arg(name), title,
                      Buttons::YesNo, Icon::Question)
            != ui::Answer::Yes)
        return false;
    try {
        schema::createLedger(path, env_.today);
    } catch (const store::StoreError& e) {
        trace_.traceLine(QStringLiteral("makeLedgerAt"), e.fullText());
        ui_.msgBox(QStringLiteral("יצירת הקובץ \"\u2068%1\u2069\" נכשלה: %2").arg(name, e.message()), title, Buttons::OK,
                   Icon::Critical);
        return false;
    }
    return true;
}

void frmMain::mnuOpen_Click()
{
    const QString file = chooseLedger();
    if (!file.isEmpty())
        switchToFile(file);
}

void frmMain::mnuNew_Click()
{
    ui::FileDialogOptions spec;
    spec.title = QStringLiteral("קובץ פלקור חדש");
    spec.filter = ledgerFilter;
    spec.defaultExt = QStringLiteral("pkr");
    spec.startDir = ledger_.filePath.isEmpty() ? readParameter(QStringLiteral("directory"))
                                               : QFileInfo(ledger_.filePath).absolutePath();
    spec.pathMustExist = true;
    const QString chosen = ui_.saveFileDialog(spec);
    if (chosen.isEmpty())
        return;
    const QString path = fullPath(ui::withDefaultExt(chosen, spec.defaultExt));
    if (QFileInfo::exists(path)) {
        ui_.msgBox(QStringLiteral("הקובץ \"\u2068%1\u2069\" כבר קיים. כדי לעבוד בו בחר \"פתח\".").arg(QFileInfo(path).fileName()),
                   title, Buttons::OK, Icon::Exclamation);
        return;
    }
    if (makeLedgerAt(path, false))
        switchToFile(path);
}

void frmMain::mnuRecent_Click(int n)
{
    const QStringList files = recentFiles();
    if (n < 1 || n > files.size())
        return;
    const QString file = files[n - 1];
    if (!QFileInfo::exists(file)) {
        ui_.msgBox(QStringLiteral("הקובץ \"\u2068%1\u2069\" לא נמצא.").arg(file), title, Buttons::OK, Icon::Exclamation);
        QStringList rest = files;
        rest.removeAt(n - 1);
        platform::ProfileFile ini(recentFilesIni());
        ini.deleteSection(recentSection);
        for (int i = 0; i < rest.size(); ++i)
            ini.writeString(recentSection, QStringLiteral("file%1").arg(i + 1), rest[i]);
        emit changed();
        return;
    }
    switchToFile(file);
}

void frmMain::switchToFile(const QString& file)
{
    TraceScope t(trace_, QStringLiteral("switchToFile"));
    t.line(file);
    if (ledger_.openDBisBusy)
        return;
    // The file this window works on: read it again.
    if (!ledger_.filePath.isEmpty() && fullPath(file) == fullPath(ledger_.filePath)) {
        cmdRefresh_Click();
        return;
    }
    // The open cell and a pending new line are written before the window goes.
    if (edit_.loaded && !ledger_.lines.empty() && !editor_.commitAll())
        return;
    if (!env_.startInstance || !env_.startInstance({QStringLiteral("open"), file})) {
        ui_.msgBox(QStringLiteral("לא ניתן היה לפתוח את הקובץ \"\u2068%1\u2069\".").arg(QFileInfo(file).fileName()), title,
                   Buttons::OK, Icon::Critical);
        return;
    }
    exitProg();
}

QString frmMain::recentFilesIni() const
{
    return env_.paths.dataDir + QStringLiteral("/recent.ini");
}

QStringList frmMain::recentFiles() const
{
    const platform::ProfileFile ini(recentFilesIni());
    QStringList out;
    for (int i = 1; i <= maxRecentFiles; ++i) {
        const QString f = ini.readString(recentSection, QStringLiteral("file%1").arg(i));
        if (!f.isEmpty() && !out.contains(f))
            out << f;
    }
    return out;
}

void frmMain::rememberRecent(const QString& file)
{
    if (file.isEmpty())
        return;
    QStringList files = recentFiles();
    const QString path = fullPath(file);
    files.removeAll(path);
    files.prepend(path);
    QDir().mkpath(env_.paths.dataDir);
    platform::ProfileFile ini(recentFilesIni());
    for (int i = 0; i < maxRecentFiles; ++i)
        ini.writeString(recentSection, QStringLiteral("file%1").arg(i + 1), files.value(i));
    emit changed();
}

void frmMain::watchFileAgain()
{
    seenDataVersion_ = ledger_.cn.dataVersion();
    fileChangedOutside_ = false;
}

void frmMain::timerWatchFile_Timer()
{
    // Only an idle working run on its whole grid: a child's answer, a
    // report and a reconciliation bring their own reloads.
    if (ended_ || instance_.progMode != modeFullScreen || !shown_.visible || !shown_.enabled || ledger_.openDBisBusy
        || checker_.isActive() || !ledger_.isCnOpen || ledger_.linesTable != QLatin1String("pelkor"))
        return;
    const long long v = ledger_.cn.dataVersion();
    if (v < 0)
        return;   // a writer holds the file now: the next tick asks again
    if (seenDataVersion_ < 0)
        seenDataVersion_ = v;
    if (v != seenDataVersion_)
        fileChangedOutside_ = true;
    // What the user is typing is not thrown away: the reload waits for it.
    if (!fileChangedOutside_ || edit_.editorOpen() || edit_.cmbTypesVisible || edit_.isThereNewLine)
        return;
    trace_.traceLine(QStringLiteral("timerWatchFile"), QStringLiteral("another process changed the file"));
    cmdRefresh_Click();
}

} // namespace pelkor
