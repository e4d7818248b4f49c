// LocalBoxes: what the sender needs from the mailboxes of its own thread.
//
// Internal to the bus: Bus.cpp sends, Mailbox.cpp keeps the boxes. A send
// to a box of the sending thread is delivered by a direct call (a socket
// would wait on a thread that is busy sending), and a sender that waits on
// a socket keeps serving its thread's boxes, as the old desktop's
// synchronous send did.
#pragma once

#include "seams/bus/Wire.h"

#include <QDeadlineTimer>
#include <QString>

namespace pelkor::bus::detail {

// When id is a listening box made by the calling thread, applies the
// request to it directly (handlers run now), sets *after to the box's text
// afterwards, and returns true. Otherwise returns false and does nothing.
bool deliverHere(quint32 id, wire::Kind kind, const QString& text, QString* after);

// Waits until fd (ignored when negative) has one of events or the deadline
// passes, serving requests to the calling thread's boxes meanwhile.
// Returns fd's poll events, or 0 when the deadline passed first.
short waitServing(int fd, short events, QDeadlineTimer deadline);

// How writeAll ended.
enum class Written { All, TimedOut, Lost };
// Writes all of bytes to a non-blocking socket by the deadline. While the
// socket is full it waits, serving this thread's boxes when serving is set
// (a sender), else only waiting (a box answering its sender).
Written writeAll(int fd, const QByteArray& bytes, QDeadlineTimer deadline, bool serving);

} // namespace pelkor::bus::detail
