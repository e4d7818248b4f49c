// frmNoIpus: asks for the date of the last zeroing when a file has no ipus
// line (the load's step that makes sure of one).
//
// Controls: opt1stLine, optDate, txtDate, cmdOK (disabled until there is
// something to accept). opt1stLine on enables cmdOK; optDate on moves the
// focus to txtDate; each change of txtDate enables cmdOK exactly while its
// text is a date (readTypedDate). cmdOK gives the reply "*" when opt1stLine
// is on and the text of txtDate otherwise, and closes. Closing any other
// way leaves the reply empty, on which the caller ends the program.
//
// What the reply leads to (the first line, or the last line on or before the
// date) is the loader's, not this dialog's.
#pragma once

#include "seams/ui/Dialog.h"

namespace pelkor::ui {

class frmNoIpus : public Dialog {
public:
    frmNoIpus();

    QString name() const override { return QStringLiteral("frmNoIpus"); }

    // "*", a date's text, or empty when the dialog closed without OK.
    const QString& noIpusReply() const { return reply_; }

protected:
    void onClick(const QString& name) override;
    void onChange(const QString& name) override;

private:
    QString reply_;
};

} // namespace pelkor::ui
