// ScriptedUi: a Ui that answers from rules and writes a transcript, so that
// whole flows, child instances included, run without a user.
//
// Rules (DialogRules) come from the file named in PELKOR_DIALOGS, the
// transcript (Transcript) goes to the file named in PELKOR_TRANSCRIPT. The
// answers:
//   msgbox   a button's name. No rule, or a button the box does not have:
//            the box's default (its first) button; the transcript names the
//            button actually used.
//   input    the text typed; "OK" takes the proposed text, "Cancel" (or no
//            rule) cancels.
//   open     a path, or several separated by ";" (only the first unless the
//            dialog allows a multiple selection); save: one path. The
//            dialog's DefaultExt is added to a name without a suffix.
//            "Cancel" or no rule cancels. Matched against the title alone.
//   dialog   "name=value" pairs separated by ";", naming the dialog's
//            controls. They are set in order (a "cmdX=1" pair, or a bare
//            "cmdX", clicks cmdX); then cmdOK is clicked unless a pair
//            clicked a button. "OK" alone just clicks cmdOK. A dialog
//            still open after that is closed with its close box, as is one
//            with no rule or the answer "Cancel". Matched against
//            "<caption> | <text>" and against the dialog's name
//            ("frmNoIpus"), so a rule may name either.
//   window   the name of a control to click; no rule: nothing is clicked.
//
// A prompt asked more than repeatLimit times with the same kind, title and
// text is taken as a loop that no scripted answer will end (a rule giving a
// wrong password for ever): from then on it is cancelled, or takes its
// default button, and a warning goes to stderr.
#pragma once

#include "seams/ui/DialogRules.h"
#include "seams/ui/Transcript.h"
#include "seams/ui/Ui.h"

#include <QHash>

#include <memory>

namespace pelkor::ui {

class ScriptedUi : public Ui {
public:
    // Identical prompts after which a scripted answer is taken for a loop.
    static constexpr int kDefaultRepeatLimit = 1000;

    // rulesPath empty: no rules (every prompt takes its default). Writes the
    // start record with commandLine, or with the application's arguments
    // when commandLine is empty and a QCoreApplication exists.
    ScriptedUi(const QString& rulesPath, const QString& transcriptPath,
               const QStringList& commandLine = {});
    ScriptedUi(DialogRules rules, const QString& transcriptPath,
               const QStringList& commandLine = {});
    // Records exit code 0 unless recordExit was called.
    ~ScriptedUi() override;

    ScriptedUi(const ScriptedUi&) = delete;
    ScriptedUi& operator=(const ScriptedUi&) = delete;

    // Writes the exit record; only the first call writes.
    void recordExit(int code);

    // Lines of the rules file that were skipped, with the reason.
    const QStringList& ruleErrors() const { return ruleErrors_; }
    void setRepeatLimit(int n) { repeatLimit_ = n; }

    Answer msgBox(const QString& text, const QString& title, Buttons buttons = Buttons::OK,
                  Icon icon = Icon::None) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                    const QString& defaultText = {}) override;
    QStringList openFileDialog(const FileDialogOptions& spec) override;
    QString saveFileDialog(const FileDialogOptions& spec) override;
    bool runDialog(Dialog& d) override;
    void windowReady(const QString& windowName, const QString& text,
                     std::function<void(const QString& control)> click) override;

private:
    void start(const QStringList& commandLine);
    // The rule's answer for the subjects, or nullopt for no rule or for a
    // prompt that has repeated past the limit.
    std::optional<QString> answerFor(const QString& kind, const QString& title,
                                     const QString& text, const QStringList& subjects);
    QStringList chooseFiles(const QString& kind, const FileDialogOptions& spec, bool multi);

    DialogRules rules_;
    Transcript transcript_;
    QStringList ruleErrors_;
    QHash<QString, int> asked_;
    int repeatLimit_ = kDefaultRepeatLimit;
    bool exitRecorded_ = false;
};

// The scripted Ui when PELKOR_DIALOGS or PELKOR_TRANSCRIPT is set (either
// may be missing), else nullptr: the program then uses its real windows.
std::unique_ptr<ScriptedUi> makeUiFromEnvironment();

} // namespace pelkor::ui
