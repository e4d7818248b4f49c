// dlgKind: the kind dialog, "בחר סיווג".
//
// Two lists: lstKind(1) holds the income kinds (code beginning with "+"),
// lstKind(0) the others, each row the kind's code as the grid shows it, a
// blank and the kind's name, in the file's order. The row of the kind the
// cell holds is selected, lstKind(0) searched first. A click on a row
// closes the dialog with the row's code; closing it any other way chooses
// nothing. What the choice may do to the line is the caller's.
#pragma once

#include "seams/ui/Dialog.h"

namespace pelkor {

struct Catalogue;

class dlgKind : public ui::Dialog {
public:
    // text: a line above the lists (empty: none).
    dlgKind(const Catalogue& catalogue, const QString& cellKind, const QString& text = {});

    QString name() const override { return QStringLiteral("dlgKind"); }

    // The chosen row's code as the grid shows it ("12+"); empty when none.
    const QString& choice() const { return choice_; }

protected:
    void onClick(const QString& name) override;

private:
    QString choice_;
};

} // namespace pelkor
