// MailboxId: the names of mailboxes and where their sockets live.
//
// A mailbox id stands where the old desktop passed a window handle: a
// 32-bit number, written as eight hexadecimal digits with leading zeros
// (lower case when we write it, either case when we read it). Id 0 is
// "nobody": a send to it sends nothing.
//
// Every mailbox of this user on this machine is a unix-domain socket in one
// folder: $XDG_RUNTIME_DIR/pelkor when XDG_RUNTIME_DIR is set, else
// /tmp/pelkor-<uid>. The folder is private to the user (mode 0700, owned by
// the user); a folder that is not ours, or not a plain folder, is refused
// rather than repaired, since someone else may be listening there.
//
// This file does not open sockets; Mailbox.h and Bus.h do.
#pragma once

#include <QString>
#include <QtGlobal>
#include <optional>

namespace pelkor::bus {

// How strictly an id is read. Loose: one to eight hexadecimal digits after
// leading and trailing blanks are trimmed, read as if padded with leading
// zeros ("1f" is 0000001f); a box's text or a listing file. Exact: exactly
// eight digits and nothing else, as a command line writes them at fixed
// positions.
enum class IdForm { Loose, Exact };

// Either case of hexadecimal digits, in the given form. Anything else
// (empty, a sign, "0x", nine digits, other characters) is refused with
// nullopt. "00000000" parses, to 0.
std::optional<quint32> parseId(const QString& text, IdForm form = IdForm::Loose);

// Eight lower-case hexadecimal digits with leading zeros.
QString idToText(quint32 id);

// The folder that holds this user's mailbox sockets, read from the
// environment on each call (tests point XDG_RUNTIME_DIR elsewhere).
QString mailboxDirectory();

// The socket path of id in mailboxDirectory().
QString socketPathFor(quint32 id);

// Creates mailboxDirectory() when it is missing (mode 0700) and checks that
// it is a folder owned by this user that no one else may enter; group or
// other permission bits on our own folder are taken away. Returns an empty
// string when the folder is fit for use, else why it is not.
QString prepareMailboxDirectory();

} // namespace pelkor::bus
