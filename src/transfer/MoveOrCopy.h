// MoveOrCopy: selected lines of the open file sent to another data file,
// as a copy or as a move.
//
// Each file has its own kinds and types, so every line is translated: a
// type the target lacks becomes the target's default type of the line's
// direction (1 income, 2 expense) and the closing message says so; a kind
// the target lacks is asked for once (doMoveKindDlg) and the answer holds
// for the rest of the run, a cancelled kind leaving all its lines behind.
// Lines on or before the target's zeroing date stay out, and for a move
// also those on or before the source's: history never leaves a file.
// Confirmed lines ("v") are written to the target and stay in the source.
//
// Every decision is taken before anything is written; then the lines go
// to the target in one transaction and, for a move, leave the source in
// another, guarded by MoveJournal, so a crash never doubles or loses a
// line. Both files may be open in other instances: they see the change at
// their next load.
#pragma once

#include "file/Lines.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <functional>

namespace pelkor {

struct OpenLedger;
struct Instance;
namespace grid { class GridModel; }
namespace ui { class Ui; }

namespace transfer {

// What the run needs of the window: the file, the grid's selection and
// marks, the ui, the kind dialog and the reload.
struct MoveParts {
    OpenLedger& ledger;
    const Instance& instance;
    grid::GridModel& grid;
    ui::Ui& ui;
    // Whether grid row r holds a confirmed line.
    std::function<bool(int row)> isConfirmedRow;
    // The kind dialog on the target's kinds with the given text: the
    // chosen code as the grid shows it ("12+"), empty on cancel.
    std::function<QString(const Catalogue& dest, const QString& text)> kindDialog;
    std::function<void()> commitCell;   // msfgMainLeaveCell
    std::function<void()> enterCell;    // msfgMain_EnterCell
    std::function<void()> reload;       // the file read again after a move
    bool hasNewLine = false;            // the grid's last row is unsaved
};

// How a run ended.
struct MoveReport {
    int written = 0;          // lines written to the target
    int deleted = 0;          // lines deleted from the source (a move)
    int leftByDate = 0;       // left out by either zeroing date
    int leftByKind = 0;       // left out by a cancelled kind
    bool typeWasChanged = false;
    QString problem;          // not empty: nothing was written, and why
};

// The target's side, read once per run.
struct DestFile {
    QDate ipusDate;
    int ipusLines = 0;
    Catalogue catalogue;
};

// Why the ledger at path cannot take lines, or "" when it can; nothing is
// written while this is found out. role names the file in the message
// ("יעד": "קובץ היעד ... לא נמצא.").
QString ledgerWriteProblem(const QString& path, const QString& role);

// isDestCategory: the code is one of the target's kinds exactly.
bool isDestCategory(const QString& kind, const Catalogue& dest);
// GetMoveTypeBigIndex: the target's number of the type of that exact
// name; 999 when it has none.
int GetMoveTypeBigIndex(const QString& name, const Catalogue& dest);

// Translates kinds for one run: mappedKinds and skippedKinds live as long
// as it does.
class KindTranslation {
public:
    KindTranslation(const Catalogue& dest, std::function<QString(const Catalogue&, const QString&)> dialog)
        : dest_(dest), dialog_(std::move(dialog)) {}
    // The target's kind for a line of this kind; empty when its lines stay out.
    QString translate(const QString& kind);
    // doMoveKindDlg: asks until a kind of the line's direction is chosen;
    // empty on cancel.
    QString doMoveKindDlg(const QString& kind, ui::Ui& ui);
    void setUi(ui::Ui& ui) { ui_ = &ui; }
    int questions() const { return questions_; }

private:
    const Catalogue& dest_;
    std::function<QString(const Catalogue&, const QString&)> dialog_;
    ui::Ui* ui_ = nullptr;
    QStringList mappedKinds_;   // "<old> <new>"
    QStringList skippedKinds_;
    int questions_ = 0;
};

// The kind dialog's text for a kind the target lacks.
QString moveKindText(const QString& kind);

// moveOrCopyRows: the grid's selected rows (Row to RowSel) to destPath.
// Tells the user how it ended and reloads after a move.
MoveReport moveOrCopyRows(MoveParts& p, const QString& destPath, bool isMove);

// The closing message for a count of lines and the run's word.
QString moveMessage(int count, bool isMove, bool typeWasChanged);

} // namespace transfer
} // namespace pelkor
