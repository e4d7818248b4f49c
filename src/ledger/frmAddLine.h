// frmAddLine: one line added to a file from outside its grid (a report's
// click on an empty amount, the menu's "add a line to another file").
//
// The target may be the opener's own file (then the opener's connection
// and lines table serve) or another one, which the dialog opens on a
// connection of its own and closes when it ends; the opener's connection
// is never touched. The fields stand in the grid's order (txtKind, txtDate,
// txtConfirm, txtDetails, txtIn, txtOut, txtMyType) and each commits into
// theLine when the focus leaves it, by the grid's rules; a refused value
// keeps the focus. OK writes the line (addOneLine, the zeroing mark moved)
// and tells the opener "closed".
#pragma once

#include "file/Lines.h"
#include "seams/ui/Dialog.h"

#include <QDate>
#include <Qt>

#include <functional>
#include <memory>

namespace pelkor {

namespace ui { class Ui; }
class Trace;
struct Instance;
struct OpenLedger;

class frmAddLine : public ui::Dialog {
public:
    // The opener's open ledger and instance; the target's path; tellOpener
    // carries a text to the opener's message box.
    frmAddLine(OpenLedger& opener, const Instance& instance, const QString& targetPath, ui::Ui& ui, QDate today,
               std::function<void(const QString&)> tellOpener);
    ~frmAddLine() override;

    QString name() const override { return QStringLiteral("frmAddLine"); }

    // Opens the target and reads its kinds, types and zeroing line. False,
    // with the user told, when it cannot: the dialog is then closed.
    bool Form_Load();

    // The fields in the grid's order.
    static const QStringList& fields();

    // A key in a field, with the caret (selStart) and the text's length:
    // Enter goes to the next field (and stops at txtMyType); Left and Right
    // go to the next and the previous field, wrapping round, when the caret
    // stands at the field's edge on that side. True when the key was taken.
    bool keyDown(const QString& field, int key, Qt::KeyboardModifiers mods, int selStart, int textLength);
    // The focus goes to a field or button (a click, Tab): the field left
    // commits first. False when it refused, and the focus stays.
    bool moveFocus(const QString& to);
    // A double click: the kind dialog on txtKind, the calculator on the sums.
    void dblClick(const QString& field);

    const Line& theLine() const { return theLine_; }
    bool ownConnection() const { return own_ != nullptr; }
    // The list of txtMyType: the type names, income first.
    QStringList typeNames() const;

protected:
    void onClick(const QString& name) override;
    void onChange(const QString& name) override;
    void onDismiss() override;

private:
    // The field's commit; false when the value was refused (focus stays).
    bool commit(const QString& field);
    bool commitDate();
    bool commitSum(bool isIn);
    bool commitKind();
    bool canceledBecauseAboveRed(const QDate& date);
    void cmdOK_Click();
    void finish(bool accepted);
    void showLine();

    OpenLedger& opener_;
    const Instance& instance_;
    QString targetPath_;
    ui::Ui& ui_;
    QDate today_;
    std::function<void(const QString&)> tellOpener_;
    std::unique_ptr<Instance> ownInstance_;
    std::unique_ptr<OpenLedger> own_;
    OpenLedger* target_ = nullptr;
    Line theLine_;
};

} // namespace pelkor
