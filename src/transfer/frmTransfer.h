// frmTransfer: "העברה מחשבון לחשבון", money moved between two of the
// user's accounts as one event and two lines: an expense in the source
// file, an income in the destination.
//
// One grid, msfg, shows the two lines as two rows (source above,
// destination below) under the ledger's headings, and keeps them in step:
// the date and the sum are one for both rows, the sum an expense in the
// source and an income in the destination, so a transfer cannot be turned
// round by typing. The reference, the detail, the kind and the type are
// each row's own; a kind and a type are checked against that row's file,
// and each file gives its own default types. Choosing a file fills the
// other row's detail with "העברה מ: <file>" / "העברה ל: <file>" while the
// user has not written one.
//
// Nothing is written until OK, which refuses (with the user told, nothing
// written) a transfer to the file it comes from, a sum that is not a
// number, a date on or before either file's zeroing date, and a file that
// cannot take a line. Then one line goes into each file as a pair
// (TransferJournal): if the second file refuses, the first line is taken
// out again and the user is told which file refused.
//
// The dialog's controls: txtFileName0/1 (the files' names), cmdBrowse0/1,
// cmdOK, cmdCancel; the grid is msfg(). The view lays an editor over the
// current cell and hands every key and text here.
#pragma once

#include "file/Lines.h"
#include "seams/grid/GridModel.h"
#include "seams/ui/Dialog.h"

#include <QDate>
#include <QString>
#include <Qt>

#include <array>
#include <functional>
#include <optional>

namespace pelkor {

class Trace;
namespace store { class BusyPolicy; }
namespace ui { class Ui; }

namespace transfer {

// The columns of msfg: the row's name, then the line's columns.
enum TransferColumn { tcName = 0, tcKind, tcDate, tcConfirm, tcDetail, tcIn, tcOut, tcType, tcCount };

// What the dialog needs of the window that opens it.
struct TransferParts {
    ui::Ui& ui;
    Trace& trace;
    QDate today;
    QString startDir;                // where the file dialog starts
    QString mainPath;                // the window's own file; empty when none
    // The kind dialog on a file's kinds, starting on the cell's kind; the
    // chosen code as a grid shows it ("12-"), empty on cancel.
    std::function<QString(const Catalogue&, const QString& cellKind)> kindDialog;
    // The calculator from a value; nullopt on cancel.
    std::function<std::optional<double>(double)> calculator;
    // The window's file took a line: it reads it again.
    std::function<void()> refreshMain;
    // What a file another process holds does to the writes (null: the
    // store's own wait, then a refusal).
    store::BusyPolicy* busy = nullptr;
};

class frmTransfer : public ui::Dialog {
public:
    explicit frmTransfer(TransferParts parts);
    QString name() const override { return QStringLiteral("frmTransfer"); }

    static constexpr int sourceRow = 1;
    static constexpr int destRow = 2;
    // 0 the source, 1 the destination.
    static int indexOfRow(int row) { return row == destRow ? 1 : 0; }
    static int rowOf(int index) { return index == 1 ? destRow : sourceRow; }
    static const QString& rowName(int index);     // "מקור", "יעד"

    grid::GridModel& msfg() { return msfg_; }
    const QString& fileName(int index) const { return fileNames_[size_t(index)]; }
    const Line& transferLine(int index) const { return lines_[size_t(index)]; }
    const Catalogue& catalogue(int index) const { return cats_[size_t(index)]; }
    QDate fileIpusDate(int index) const { return ipus_[size_t(index)]; }
    // The type names of a row's file, incomes first, for the editor's
    // completion.
    QStringList typeNames(int row) const;

    // cmdBrowse(index) after its dialog: the file of a row. False when the
    // file cannot be read as a ledger (the user told, the row unchanged).
    bool chooseFile(int index, const QString& path);

    // ---- the grid ----------------------------------------------------------
    // The cursor to (row, col), committing the cell it leaves first; false
    // when that commit refused and the cursor stayed.
    bool moveTo(int row, int col);
    // Opens the editor on the current cell with its text (keyAscii 0) or
    // with that character; false when the cell takes no input.
    bool gridEdit(QChar keyAscii = QChar());
    bool editorOpen() const { return editorOpen_; }
    const QString& editorText() const { return editorText_; }
    void setEditorText(const QString& text) { editorText_ = text; }
    // The editor's text into the cell, then the cell's rule; false when
    // refused (the cell shows the record again and the cursor stays).
    bool commitEditor();
    // Esc: the editor closes and the cell keeps what it had.
    void cancelEditor() { editorOpen_ = false; }
    // msfg_LeaveCell: the current cell's rule; changes records and cells.
    bool msfg_LeaveCell();
    // A key on the grid, or in the editor when it is open; true when taken.
    bool keyDown(int key, Qt::KeyboardModifiers mods = Qt::NoModifier);
    // A double click on the current cell: the kind dialog, the calculator
    // or the editor.
    void dblClick();
    // A user's whole edit of one cell: the cursor there, the text, the
    // commit; false when refused.
    bool typeInto(int row, int col, const QString& text);

    void set_cmdOKenabled();
    // OK: the checks, then the pair of lines. True when both were written.
    bool cmdOK_Click();

protected:
    void onClick(const QString& name) override;

private:
    void cmdBrowse_Click(int index);
    bool readTransferKindsAndTypes(int index, const QString& path);
    bool commitKind(int index);
    bool commitDate(int index);
    void commitText(int index, bool isDetail);
    bool commitSum(int index, int col);
    bool commitType(int index);
    bool refuse(const QString& message, int col, const QString& recordText);
    bool sumCellTakesInput(int row, int col) const;
    void setCell(int row, int col, const QString& text) { msfg_.setText(row, col, text); }
    QString cell(int row, int col) const { return msfg_.text(row, col); }
    void setDate(const QDate& d);
    void setSum(double v);
    QString insertOf(int index) const;
    // Tab (forward) and Shift+Tab along the two rows, crossing between them.
    bool tabMove(bool forward);

    TransferParts p_;
    grid::GridModel msfg_{3, tcCount, 1, 1};
    std::array<QString, 2> fileNames_, prevFileNames_, autoDetail_;
    std::array<QDate, 2> ipus_;
    std::array<Catalogue, 2> cats_;
    std::array<Line, 2> lines_;
    bool editorOpen_ = false;
    QString editorText_;
};

} // namespace transfer
} // namespace pelkor
