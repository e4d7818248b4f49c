// Bus: sending to mailboxes by id, in this process or another.
//
// A send is synchronous: it returns once the box's handler has run (see
// Mailbox.h), or with the reason it could not be delivered. It never throws
// and never pops anything up; the caller traces a failure if it cares.
//
// Time. timeoutMs bounds how long a send waits for the box to take the
// text: connecting, writing, and the box's "received" reply. A box whose
// process is gone fails at once (NoSuchBox); one whose process is alive
// but not serving (stopped, or busy outside any event loop) fails after
// timeoutMs (TimedOut), and the text is then dropped, not applied later.
// Once the box has taken the text the send waits for the handler however
// long it runs (a handler may ask the user something), unless the box's
// process ends first (Lost). While it waits, the sending thread goes on
// serving its own boxes, so handlers that send to each other across
// processes do not deadlock. A negative timeoutMs waits without limit.
//
// A box made by the sending thread is reached by a direct call: sending to
// one's own box works the same, only without a socket.
#pragma once

#include <QString>
#include <QtGlobal>

namespace pelkor::bus {

enum class SendResult {
    Delivered,    // the box took the request and its handlers have run
    Nobody,       // id 0: nothing was sent, as intended
    MalformedId,  // the id text is not an id (MailboxId.h)
    NoSuchBox,    // no box answers to the id: never was, or its process ended
    TimedOut,     // a box is there but did not take the text within the time
    Refused,      // the box refused the request as malformed (too long, say)
    Lost,         // the box's side closed the connection before it answered
    SystemError,  // no socket could be made, or the socket path is too long
};

// A few words for the trace: "delivered", "no such box", ...
QString describe(SendResult result);

inline constexpr int defaultTimeoutMs = 2000;

// Sets the text of box id (events as Mailbox.h says).
SendResult send(quint32 id, const QString& text, int timeoutMs = defaultTimeoutMs);
// The same with the id as written on a command line.
SendResult send(const QString& id, const QString& text, int timeoutMs = defaultTimeoutMs);

// A focus notice: the box's focus events run, its text stays.
SendResult sendFocus(quint32 id, int timeoutMs = defaultTimeoutMs);

// The outer host's two boxes: a focus notice to box1, the text to box1,
// a focus notice to box2 (the host's box fires when it loses the focus).
// Nothing when box1 is 0 (Nobody); no last notice when box2 is 0. Stops at
// the first failure and returns it; else Delivered.
SendResult sendToHost(quint32 box1, quint32 box2, const QString& text, int timeoutMs = defaultTimeoutMs);

// Reads a box's current text without changing it (a caption, say); no
// event runs. text is set only when the result is Delivered.
struct Reading {
    SendResult result = SendResult::Nobody;
    QString text;
};
Reading get(quint32 id, int timeoutMs = defaultTimeoutMs);

} // namespace pelkor::bus
