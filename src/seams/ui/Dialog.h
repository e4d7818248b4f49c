// Dialog: the logic of one of the program's own modal dialogs.
//
// A dialog is a caption, a text and named controls (cmdX buttons, optX
// option buttons, chkX check boxes, txtX text boxes), each with a label, a
// value, an enabled state and a visible state. The user's acts arrive as
// setControl() and click(); the subclass's handlers (onClick, onChange)
// answer them as the old form's Click and Change events did, enabling and
// disabling controls, moving the focus, storing a result and closing.
//
// The Qt view (app/ui) draws the controls, forwards each widget change here
// and mirrors the values, enabled states and focus back; the scripted Ui
// sets controls by name. Neither knows what the dialog means: that is the
// subclass's, together with its result accessor.
//
// Values are text. An option or check box is "1" when on and "0" when off;
// setControl accepts "1", "-1", "true" and "yes" (any case) as on.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace pelkor::ui {

class Dialog {
public:
    enum class Kind { Button, Option, CheckBox, TextBox, Label, ListBox };

    struct Control {
        QString name;
        Kind kind = Kind::Label;
        QString label;
        QString value;
        bool enabled = true;
        bool visible = true;
        bool secret = false;  // a text box whose text is not shown (a password)
        QString group;        // option buttons of one group exclude each other
        QStringList items;    // a list box's rows; its value is the selected row
    };

    virtual ~Dialog() = default;

    // A list box takes a row by its text, or by the text before its first
    // blank (a code): the row is selected and its Click handler runs.
    // The form's name, e.g. "frmNoIpus": the scripted Ui's transcript kind,
    // and what QtUi picks the view by.
    virtual QString name() const = 0;
    const QString& caption() const { return caption_; }
    const QString& text() const { return text_; }

    const std::vector<Control>& controls() const { return controls_; }
    bool hasControl(const QString& name) const;
    // The control's value; empty for a control that does not exist.
    QString control(const QString& name) const;
    Kind kind(const QString& name) const;
    // The text shown on or beside the control.
    QString label(const QString& name) const;
    bool isEnabled(const QString& name) const;
    // The control that has the focus; empty when none was given it.
    const QString& focus() const { return focus_; }

    // As a user would: a text box takes the text (its Change handler runs
    // when the text differs); an option turned on turns the others of its
    // group off and runs its Click handler; a check box changes and runs its
    // Click handler; a button given an "on" value is clicked.
    // Returns false, changing nothing, when the control does not exist, is
    // disabled or hidden, or the dialog has closed.
    bool setControl(const QString& name, const QString& value);

    // A user's click: an option is turned on, a check box toggled, a button
    // pressed. Returns false as setControl does.
    bool click(const QString& name);

    // The window's close box: closes without acceptance. A subclass may
    // store a result for it (onDismiss).
    void dismiss();

    bool isClosed() const { return closed_; }
    bool accepted() const { return accepted_; }

    static bool isOn(const QString& value);

protected:
    Dialog(QString caption, QString text);

    Control& addControl(const QString& name, Kind kind, const QString& label = {},
                        const QString& value = {});
    void setEnabled(const QString& name, bool enabled);
    // A control shown or hidden (a list that drops down under its field).
    void setVisible(const QString& name, bool visible);
    // A list box's rows, refilled (its value is left alone).
    void setItems(const QString& name, const QStringList& items);
    void setFocus(const QString& name) { focus_ = name; }
    // Sets a value without running any handler (the form's own code setting
    // a control, as at load).
    void setValue(const QString& name, const QString& value);
    void close(bool accepted);

    // Handlers: a click on a button, an option turned on, a check box
    // changed; and a text box's text changed.
    virtual void onClick(const QString& /*name*/) {}
    virtual void onChange(const QString& /*name*/) {}
    virtual void onDismiss() {}

private:
    Control* find(const QString& name);
    const Control* find(const QString& name) const;
    bool usable(const Control* c) const;

    QString caption_;
    QString text_;
    std::vector<Control> controls_;
    QString focus_;
    bool closed_ = false;
    bool accepted_ = false;
};

} // namespace pelkor::ui
