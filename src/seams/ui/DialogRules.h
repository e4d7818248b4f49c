// DialogRules: the answers of a scripted run, read from the file named in
// PELKOR_DIALOGS.
//
// One rule a line, "<regular expression> => <answer>". Blank lines and lines
// whose first non-blank character is "#" are ignored; a line without "=>" or
// with an expression that does not compile is reported and skipped. The
// line is cut at its last "=>", and both sides are trimmed.
//
// A prompt is matched by searching (not full matching) each expression, in
// the file's order, in the prompt's subject: "<title> | <text>" for most
// prompts, the title alone for a file dialog. The first rule that matches
// answers. An answer may list answers for the rule's successive matches,
// separated by "||": the first match takes the first, the next the next,
// and the last one stays once the list is used up (a wrong password, then
// the right one).
//
// What an answer means depends on the prompt; that is ScriptedUi's.
#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace pelkor::ui {

class DialogRules {
public:
    struct Rule {
        int line = 0;                    // 1-based line in the file, for messages
        QRegularExpression expression;
        QStringList answers;             // at least one
        int used = 0;                    // how many prompts this rule has answered
    };

    DialogRules() = default;

    // Parses the text of a rules file. Each line that is no rule and no
    // comment adds a message to errors (if given).
    static DialogRules parse(const QString& text, QStringList* errors = nullptr);
    // Reads a file as UTF-8 (a byte-order mark is skipped). A file that
    // cannot be read gives no rules and a message.
    static DialogRules load(const QString& path, QStringList* errors = nullptr);

    // The answer of the first rule whose expression is found in one of the
    // subjects, advancing that rule's sequence; nullopt when none matches.
    std::optional<QString> answer(const QStringList& subjects);

    // The same without using the answer up: what answer() would return.
    std::optional<QString> peek(const QStringList& subjects) const;

    const std::vector<Rule>& rules() const { return rules_; }

private:
    // The index of the first rule found in one of the subjects, or -1.
    int match(const QStringList& subjects) const;

    std::vector<Rule> rules_;
};

} // namespace pelkor::ui
