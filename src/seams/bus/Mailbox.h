// Mailbox: a hidden text box that other processes, and this one, can set.
//
// It stands for the hidden text boxes that receive words from other
// instances and from an outer host (txtMessage), and for the caption of
// frmMessages. Each box has an id, unique on the machine while the box
// lives, and listens on a unix socket named from it (see MailboxId.h for
// the folder, Wire.h for the bytes, Bus.h for sending).
//
// Events. When a text arrives that differs from the box's text, the text
// changes, then changed() is emitted and then the handler runs, before the
// sender's send returns. A text equal to the current one raises nothing. A
// focus notice raises focusReceived() and the focus handler and leaves the
// text alone. setText() from this process behaves exactly like a received
// text. A caption needs no event: its reader polls text().
//
// Serving. The box answers from whatever event loop runs in its thread,
// nested loops included, and also while that thread waits in a send of
// its own (Bus.h), so two processes that send to each other from their
// handlers do not deadlock. Handlers may send, set texts, run nested event
// loops and delete the box. A client that connects and says nothing is
// dropped after a short time and never blocks the box.
//
// Ids. A box draws a random non-zero id and claims it by an exclusive lock
// on "<id>.lock" in the folder; the kernel drops the lock when the process
// dies, so a socket file left by a dead process is replaced, while an id
// held by a live box (or answered by a live socket) is never taken twice:
// the box draws again. The socket file is mode 0600; both files go when the
// box is destroyed.
//
// A box belongs to the thread that made it and must not be moved to
// another. When the folder is unusable the box still keeps its text and
// emits its events for local setText(), but has id 0 and nobody can reach
// it; error() says why.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>

namespace pelkor::bus {

namespace detail {
struct MailboxState;
}

class Mailbox : public QObject {
    Q_OBJECT
public:
    using Handler = std::function<void(const QString& text)>;
    using FocusHandler = std::function<void()>;

    explicit Mailbox(QObject* parent = nullptr);
    // Tries preferredId first (taking it over from a dead process if need
    // be); when a live box holds it, draws a random id as usual.
    explicit Mailbox(quint32 preferredId, QObject* parent = nullptr);
    ~Mailbox() override;

    // 0 when the box could not listen.
    quint32 id() const;
    // The id as eight hexadecimal digits, for command lines.
    QString idText() const;
    bool isListening() const { return id() != 0; }
    // Why the box could not listen; empty when it listens.
    QString error() const;
    // The path of the box's socket; empty when it does not listen.
    QString socketPath() const;

    QString text() const;
    // As if another process had sent text.
    void setText(const QString& text);

    void setHandler(Handler handler);
    void setFocusHandler(FocusHandler handler);

signals:
    void changed(const QString& text);
    void focusReceived();

private:
    friend struct detail::MailboxState;
    std::unique_ptr<detail::MailboxState> d;
};

} // namespace pelkor::bus
