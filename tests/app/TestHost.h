// A small outer host for process tests: it owns the host's two text boxes,
// starts the program with their ids in front of the verb ("host <h1> <h2>
// ..."), and records what reaches them, in order.
//
// The program tells the host something by a focus notice to box 1, the
// text to box 1, and a focus notice to box 2 (on which a real host reads
// box 1). sent() gives one "focus|<text>|focus" per such word; anything
// that breaks that pattern shows as it came, so a test sees it.
#pragma once

#include "base/CommandLine.h"
#include "seams/bus/Mailbox.h"

#include <QStringList>

namespace pelkor::proctest {

class TestHost {
public:
    TestHost()
    {
        box1.setFocusHandler([this] { events << QStringLiteral("focus 1"); });
        box1.setHandler([this](const QString& t) { events << QStringLiteral("text 1 ") + t; });
        box2.setFocusHandler([this] { events << QStringLiteral("focus 2"); });
        box2.setHandler([this](const QString& t) { events << QStringLiteral("text 2 ") + t; });
    }

    // The arguments that start the program under this host.
    QStringList arguments(const QStringList& verb) const
    {
        return QStringList{QStringLiteral("host"), idText(box1.id()), idText(box2.id())} + verb;
    }

    // The words the program sent, "focus|<text>|focus" each.
    QStringList sent() const
    {
        QStringList out;
        qsizetype i = 0;
        while (i < events.size()) {
            if (i + 2 < events.size() && events[i] == QLatin1String("focus 1")
                && events[i + 1].startsWith(QLatin1String("text 1 ")) && events[i + 2] == QLatin1String("focus 2")) {
                out << QStringLiteral("focus|%1|focus").arg(events[i + 1].mid(7));
                i += 3;
            } else {
                out << events[i++];
            }
        }
        return out;
    }

    bus::Mailbox box1, box2;
    QStringList events;
};

} // namespace pelkor::proctest
