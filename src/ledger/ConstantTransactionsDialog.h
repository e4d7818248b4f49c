// frmConstantTransactions: the dialog of a recurring transaction,
// "הכנסת פעולות קבועות".
//
// It holds one line's values (theLine) and the rule's own fields (first and
// last date, jump, percent, end of month, forecast, keep the rule), each
// text field committed when it loses the focus by its own check, the focus
// staying on a refused field. The type, colour and jump fields are closed
// text boxes over a list (cmbTypes, cmbColors, cmbJumps) that opens on a
// key or a click and completes what is typed from its rows, as the grid's
// type pair does. cmdOK runs the dialog's checks and then addLines.
//
// The focus moves as a user moves it: setting a control other than the one
// that has the focus is the user going there, so the field left commits
// first; a refused commit stops the act. The view reports focus and keys
// (gotFocus, lostFocus, keyDown) and mirrors the controls; scripted runs
// set controls by name and click cmdOK.
#pragma once

#include "ledger/ConstantTransactions.h"
#include "seams/ui/Dialog.h"

#include <QDate>
#include <QHash>
#include <Qt>

#include <functional>
#include <vector>

namespace pelkor {

struct EditState;

// The last colour and jump chosen in the dialog, kept by the main window
// across its openings (they start empty).
struct ConstantLasts {
    QString lastColor;
    QString lastJump;
};

struct ConstantParts {
    OpenLedger& ledger;
    ui::Ui& ui;
    EditState& edit;          // lastInType, lastOutType, lastValues
    ConstantLasts& lasts;
    QDate today;
    // Hebrew (true) or English for the field that took the focus; may be empty.
    std::function<void(bool hebrew)> keyboardLanguage = {};
};

class frmConstantTransactions : public ui::Dialog {
public:
    explicit frmConstantTransactions(ConstantParts parts);

    QString name() const override { return QStringLiteral("frmConstantTransactions"); }

    // The fields in the order Enter walks them (it wraps round).
    static const QStringList& enterOrder();

    // ---- the view's side ------------------------------------------------
    // The field took the focus / lost it (its commit runs; false when it
    // refused and took the focus back).
    void gotFocus(const QString& field);
    bool lostFocus(const QString& field);
    // A key in a field or its open list; true when the dialog used it.
    bool keyDown(const QString& field, int key, Qt::KeyboardModifiers mods = Qt::NoModifier);
    // A click or double click in a field; the arrow beside a list field
    // (imgType, imgColor, imgJump); a click on the form outside the fields.
    void fieldClick(const QString& field);
    void fieldDoubleClick(const QString& field);
    void arrowClick(const QString& field);
    void Form_Click();
    // The selected part of a field's text (a completion), start and length.
    std::pair<int, int> selection(const QString& field) const;
    // The list a field opens ("cmbTypes"...), empty for other fields.
    static QString listOf(const QString& field);
    bool isListOpen(const QString& field) const;

    // ---- what it made -----------------------------------------------------
    const ConstantRule& rule() const { return rule_; }
    const AddLinesOutcome& outcome() const { return outcome_; }
    // True when lines may have been written: the caller reloads the file.
    bool wrote() const { return accepted() && outcome_.result != AddLinesResult::NothingToWrite; }

protected:
    void onClick(const QString& name) override;
    void onChange(const QString& name) override;

private:
    // A closed text box over its list.
    struct ListField {
        QString field;            // txtMyType, txtColor, txtJump
        QString list;             // cmbTypes, cmbColors, cmbJumps
        bool open = false;
        int index = -1;           // the list's selected row
        int selStart = 0, selLength = 0;
        bool suspendCompletion = false;   // Backspace or Delete over a completion
        bool openOnChange = false;        // after Backspace or Delete in the closed field
    };
    ListField* listField(const QString& field);
    const ListField* listField(const QString& field) const;

    // Leaves the focused field for target: its commit; false when refused.
    bool moveFocus(const QString& target);
    bool commit(const QString& field);
    bool refuse(const QString& field, const QString& message);
    void show(const QString& field, const QString& text);
    void focusNext(const QString& field);

    // The lists: open (built for the field), the typed completion
    // (doSearch and its twins doSearchColor, doSearchJump), close.
    void openList(ListField& l, bool keepText);
    void doSearch(ListField& l);
    void closeList(ListField& l);
    // Enter or a chosen row: the commit, newSetFocus (or its twin), and the
    // focus on next (the field itself for Tab).
    bool takeList(ListField& l, bool toNext);
    void newSetFocus(ListField& l);
    QString lastValueOf(const ListField& l) const;
    QStringList typeRows(const QString& currentName) const;
    QStringList rowsOf(const QString& list) const;

    void cmdOK_Click();

    ConstantParts p_;
    ConstantRule rule_;
    AddLinesOutcome outcome_;
    std::vector<ListField> lists_;
    QHash<QString, QString> shown_;   // each text field's text after the last handler
    bool busy_ = false;               // a handler is running (messages, moves)
};

} // namespace pelkor
