// Ui: every question the program puts to its user.
//
// Message boxes, input boxes, file dialogs and the program's own modal
// dialogs all pass through this interface, so that the logic never touches a
// widget and whole flows run headless. Two implementations exist: QtUi
// (app/ui, real right-to-left windows) and ScriptedUi (answers from a rules
// file, writes a transcript). The logic receives a Ui& and never knows which.
//
// Not here: the windows of the program themselves (they live in app/), and
// what a dialog does with its controls (Dialog and its subclasses).
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace pelkor::ui {

class Dialog;

// The button sets of a message box. The first button of each set is the
// default: it is what Enter presses and what an unanswered scripted prompt
// takes.
enum class Buttons { OK, OKCancel, AbortRetryIgnore, YesNoCancel, YesNo, RetryCancel };

enum class Icon { None, Critical, Question, Exclamation, Information };

// The button a message box was closed with.
enum class Answer { OK, Cancel, Yes, No, Abort, Retry, Ignore };

// "OK", "Cancel", "Yes", "No", "Abort", "Retry", "Ignore".
QString answerName(Answer a);
// The inverse of answerName, ignoring case and surrounding blanks;
// nullopt for any other text.
std::optional<Answer> parseAnswer(const QString& name);
// The buttons of a set, in order; the first is the default.
std::vector<Answer> buttonsOf(Buttons b);
// The default button of a set (its first).
Answer defaultAnswer(Buttons b);

// What the old common file dialog was given. The filter keeps the old form,
// "description|pattern|description|pattern", e.g. "פלקור (*.pkr)|*.pkr";
// qtNameFilters() turns it into Qt's form.
struct FileDialogOptions {
    QString title;
    QString filter;
    QString defaultExt;   // "pkr" or ".pkr"; added to a chosen name that has no suffix
    QString startDir;
    QString fileName;     // the name proposed in the dialog
    QString fileNameLabel;  // the words before the name box, when not the usual ones
    bool fileMustExist = false;
    bool pathMustExist = false;
    bool multiSelect = false;
};

// "פלקור (*.pkr)|*.pkr|הכל|*.*" -> {"פלקור (*.pkr)", "הכל (*.*)"}.
// A description that already ends in its patterns in brackets is kept as it
// is; any other gets " (patterns)" added, the old ";" between patterns
// becoming a blank. A trailing description without a pattern is dropped.
QStringList qtNameFilters(const QString& oldFilter);
// The same joined by ";;", as QFileDialog::getOpenFileName takes it.
QString qtFilter(const QString& oldFilter);

// The file name with defaultExt added when it has no suffix of its own (the
// old dialog's DefaultExt). With a filter, a suffix none of its patterns
// names (the "2027" of "report 24.01.2027") counts as part of the name, and
// the extension is added too; "*.*" or "*" takes any suffix. An empty name
// stays empty.
QString withDefaultExt(const QString& path, const QString& defaultExt, const QString& filter = {});

class Ui {
public:
    virtual ~Ui() = default;

    // A message box; returns the button pressed.
    virtual Answer msgBox(const QString& text, const QString& title,
                          Buttons buttons = Buttons::OK, Icon icon = Icon::None) = 0;

    // An input box; nullopt when the user cancelled.
    virtual std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                            const QString& defaultText = {}) = 0;

    // The files chosen; empty when cancelled. More than one only with
    // spec.multiSelect.
    virtual QStringList openFileDialog(const FileDialogOptions& spec) = 0;
    // The file chosen; empty when cancelled.
    virtual QString saveFileDialog(const FileDialogOptions& spec) = 0;

    // Shows one of the program's own dialogs modally and returns when it has
    // closed (or was never shown). Returns d.accepted(); the dialog's result
    // is read from the dialog itself.
    virtual bool runDialog(Dialog& d) = 0;

    // A window of this process has become ready for the user. The real
    // program does nothing here (the user will click); a scripted run may
    // answer by calling click with the name of a control of that window.
    virtual void windowReady(const QString& windowName, const QString& text,
                             std::function<void(const QString& control)> click) = 0;
};

} // namespace pelkor::ui
