#include "transfer/frmMoveOrCopy.h"

#include "base/Format.h"
#include "base/Titles.h"
#include "seams/ui/Ui.h"

#include <QFileInfo>

namespace pelkor::transfer {

frmMoveOrCopy::frmMoveOrCopy(ui::Ui& ui, QString sourcePath, QString startDir,
                             std::function<void(const QString&, bool)> run)
    : Dialog(QStringLiteral("העברת/העתקת תנועות"), QString()), ui_(ui), sourcePath_(std::move(sourcePath)),
      startDir_(std::move(startDir)), run_(std::move(run))
{
    addControl(QStringLiteral("optCopy"), Kind::Option, QStringLiteral("העתק (השורות ישארו בקובץ המקור)"),
               QStringLiteral("1"))
        .group = QStringLiteral("op");
    addControl(QStringLiteral("optMove"), Kind::Option, QStringLiteral("העבר (השורות ימחקו מקובץ המקור)"),
               QStringLiteral("0"))
        .group = QStringLiteral("op");
    addControl(QStringLiteral("txtFileName"), Kind::TextBox, QStringLiteral("קובץ יעד:"));
    setEnabled(QStringLiteral("txtFileName"), false);
    addControl(QStringLiteral("cmdBrowse"), Kind::Button, QStringLiteral("עיון..."));
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    setEnabled(QStringLiteral("cmdOK"), false);
    setFocus(QStringLiteral("cmdBrowse"));
}

void frmMoveOrCopy::onClick(const QString& name)
{
    if (name == QLatin1String("cmdBrowse")) {
        ui::FileDialogOptions spec;
        spec.title = QStringLiteral("בחר קובץ יעד:");
        spec.filter = QStringLiteral("פלקור (*.pkr)|*.pkr");
        spec.defaultExt = QStringLiteral("pkr");
        spec.startDir = startDir_;
        spec.fileMustExist = spec.pathMustExist = true;
        const QStringList chosen = ui_.openFileDialog(spec);
        if (chosen.isEmpty() || chosen.first().isEmpty())
            return;
        const QFileInfo c(chosen.first()), s(sourcePath_);
        if (c.absoluteFilePath() == s.absoluteFilePath()
            || (c.exists() && c.canonicalFilePath() == s.canonicalFilePath())) {
            ui_.msgBox(QStringLiteral("קובץ המקור הוא גם קובץ היעד"), errorTitle);
            setFocus(QStringLiteral("cmdBrowse"));
            return;
        }
        destPath_ = chosen.first();
        setValue(QStringLiteral("txtFileName"), getFileName(destPath_));
        setEnabled(QStringLiteral("cmdOK"), true);
        setFocus(QStringLiteral("cmdOK"));
    } else if (name == QLatin1String("cmdOK")) {
        if (destPath_.isEmpty())
            return;
        if (run_)
            run_(destPath_, isMove());
        close(true);
    } else if (name == QLatin1String("cmdCancel")) {
        close(false);
    }
}

} // namespace pelkor::transfer
