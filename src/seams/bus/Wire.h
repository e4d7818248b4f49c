// Wire: the bytes that pass between a sender and a mailbox.
//
// One request per connection. The sender connects to the box's socket,
// writes one request, reads the replies, and the box closes the connection
// after its last reply.
//
// Request: an eight-byte header, then the payload.
//   byte 0-1  'P' 'B'
//   byte 2    version, 1
//   byte 3    kind: 'T' set the text, 'F' focus notice, 'G' get the text
//   byte 4-7  payload length in bytes, unsigned, big-endian
//   payload   'T': the text in UTF-8 (at most maxTextBytes); 'F', 'G': none
//
// Replies from the box:
//   'R'                 (to 'T' and 'F') the request is whole and the
//                       handler is about to run. Until this byte the
//                       sender may give up, and a box that then finds its
//                       sender gone drops the request without applying it.
//   'D' len(4, BE) text the request is done, handlers included; text is
//                       the box's text afterwards, in UTF-8.
//   'E' code(1)         the request was refused (a Refusal below); nothing
//                       was applied.
//
// This file only builds and reads bytes; sockets are Mailbox's and Bus's.
#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace pelkor::bus::wire {

// A text box's text is short; a request claiming more than a megabyte is
// no sender of ours, and refusing it keeps a stray client from making a box
// buffer without limit.
inline constexpr quint32 maxTextBytes = 1u << 20;
inline constexpr int headerBytes = 8;

enum class Kind : char { Text = 'T', Focus = 'F', Get = 'G' };

enum class Refusal : quint8 {
    BadHeader = 1,   // not "PB", an unknown version, or a payload on 'F'/'G'
    UnknownKind = 2,
    TooLong = 3,     // payload longer than maxTextBytes
    BadText = 4,     // payload is not valid UTF-8
};

inline constexpr char received = 'R';
inline constexpr char done = 'D';
inline constexpr char refused = 'E';

QByteArray encodeRequest(Kind kind, const QString& text = {});
QByteArray encodeDone(const QString& text);
QByteArray encodeRefusal(Refusal why);

// Reads a request from the bytes received so far.
struct Parsed {
    enum Status { Incomplete, Complete, Refused } status = Incomplete;
    Kind kind = Kind::Text;
    QString text;
    Refusal refusal = Refusal::BadHeader;
};
// A header that is already wrong is refused as soon as its bytes are in, so
// a box does not wait out a stranger's payload.
Parsed parseRequest(const QByteArray& bytes);

// Big-endian 32-bit length at p (four bytes).
quint32 readLength(const char* p);

} // namespace pelkor::bus::wire
