// StoreError: the one failure of the store seam.
//
// Every failed open, translation or statement throws it with the engine's
// message and, where known, the statement or file that failed. The logic
// catches it exactly where a failure is expected (a missing column found by
// the statement that needs it, a DROP TABLE of a missing table); anywhere
// else it reaches the program's top-level handler.
#pragma once

#include <QString>
#include <stdexcept>

namespace pelkor::store {

class StoreError : public std::runtime_error {
public:
    enum class Kind {
        Open,        // the file could not be opened as a database
        Translate,   // the statement is not in the dialect the store speaks
        Statement,   // the engine refused the statement
        Conversion,  // a text assigned to a numeric or date column is no number or date
        Busy,        // another process held the file and the wait for it was given up;
                     // the statement changed nothing
    };

    StoreError(Kind kind, const QString& message, const QString& subject = {})
        : std::runtime_error((subject.isEmpty() ? message : message + QStringLiteral(" [") + subject + QStringLiteral("]")).toStdString()),
          kind_(kind), message_(message), subject_(subject) {}

    Kind kind() const { return kind_; }
    // The engine's (or translator's) own message, without the subject.
    const QString& message() const { return message_; }
    // The statement or file path the failure is about.
    const QString& subject() const { return subject_; }
    QString fullText() const { return QString::fromStdString(what()); }

private:
    Kind kind_;
    QString message_;
    QString subject_;
};

} // namespace pelkor::store
