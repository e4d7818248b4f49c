// Published: boxes a process lists under its process id and a name.
//
// A process that started another knows its process id, and nothing else
// about it. On a desktop with windows it finds the other's hidden text box
// by that process and the window's name; here the other lists the box: the
// file "p<pid>.<name>" in the mailbox folder (MailboxId.h), holding the
// box's id as eight hexadecimal digits. The program lists its txtMessage
// this way, so an outer host that started it (or a test that plays one)
// can send it the host's commands.
//
// A listing is written whole (a temporary file renamed into place) and
// removed when its Publication ends. A process killed before that leaves
// its listing behind: a lookup then finds an id that answers no more
// (a send says NoSuchBox), and the next Publication of any process removes
// listings of processes that no longer run. The folder is private to the
// user, as the boxes themselves are.
#pragma once

#include <QString>
#include <QtGlobal>

namespace pelkor::bus {

class Publication {
public:
    // Lists box id under this process and name (letters and digits only).
    // A box that does not listen (id 0), a bad name or an unusable folder
    // lists nothing; error() says why.
    Publication(const QString& name, quint32 id);
    ~Publication();
    Publication(const Publication&) = delete;
    Publication& operator=(const Publication&) = delete;

    bool isListed() const { return !path_.isEmpty(); }
    QString error() const { return error_; }

private:
    QString path_;
    QString error_;
};

// The box that process pid lists under name; 0 when it lists none.
quint32 findPublished(qint64 pid, const QString& name);

} // namespace pelkor::bus
