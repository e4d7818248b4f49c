// frmMoveOrCopy: "העברת/העתקת תנועות", the choice of a copy or a move and
// of the target file.
//
// cmdBrowse asks for the target (the file must exist); the source itself
// is refused there. cmdOK, enabled once a target is chosen, runs the
// operation given (moveOrCopyRows) and closes. A scripted run answers
// "optMove=1;cmdBrowse=1;cmdOK=1", the file dialog by its own rule.
#pragma once

#include "seams/ui/Dialog.h"

#include <functional>

namespace pelkor {

namespace ui { class Ui; }

namespace transfer {

class frmMoveOrCopy : public ui::Dialog {
public:
    // sourcePath: the open file; startDir: where the file dialog starts;
    // run: what OK does with the chosen path and whether it is a move.
    frmMoveOrCopy(ui::Ui& ui, QString sourcePath, QString startDir,
                  std::function<void(const QString& destPath, bool isMove)> run);
    QString name() const override { return QStringLiteral("frmMoveOrCopy"); }

    const QString& destPath() const { return destPath_; }
    bool isMove() const { return isOn(control(QStringLiteral("optMove"))); }

protected:
    void onClick(const QString& name) override;

private:
    ui::Ui& ui_;
    QString sourcePath_;
    QString startDir_;
    QString destPath_;
    std::function<void(const QString&, bool)> run_;
};

} // namespace transfer
} // namespace pelkor
