// frmPassword: asks for a file's password; and getPassword, the loop that
// asks until the text is right or the user cancels.
//
// Controls: txtPassw (a secret text box), cmdOK, cmdCancel. cmdOK stores the
// text of txtPassw, cmdCancel stores "(canceled)"; each closes. The close
// box counts as cancel, so that a closed window cannot be taken for a
// password. The caption carries the file's name.
#pragma once

#include "seams/ui/Dialog.h"

namespace pelkor::ui {

class Ui;

class frmPassword : public Dialog {
public:
    explicit frmPassword(const QString& fileName);

    QString name() const override { return QStringLiteral("frmPassword"); }

    // What the dialog returned: the typed text, or "(canceled)".
    const QString& result() const { return result_; }

    static QString canceledText() { return QStringLiteral("(canceled)"); }

protected:
    void onClick(const QString& name) override;
    void onDismiss() override;

private:
    QString result_;
};

// True when the file may be opened: at once when storedPassword is Null or
// empty; otherwise frmPassword opens again and again until its text equals
// storedPassword (true) or it is cancelled (false), each wrong text being
// told with "הסיסמה שגויה" under the title "פלקור". fileName is shown in the
// dialog's caption.
bool getPassword(Ui& ui, const QString& storedPassword, const QString& fileName);

} // namespace pelkor::ui
