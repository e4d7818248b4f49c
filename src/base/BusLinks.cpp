#include "base/BusLinks.h"

#include "base/CommandLine.h"
#include "base/Trace.h"
#include "seams/bus/Bus.h"
#include "seams/bus/Mailbox.h"

namespace pelkor {

MailboxMessages::MailboxMessages() : box_(std::make_unique<bus::Mailbox>()) {}
MailboxMessages::~MailboxMessages() = default;
std::uint32_t MailboxMessages::id() const { return box_->id(); }
QString MailboxMessages::caption() const { return box_->text(); }
void MailboxMessages::setCaption(const QString& caption) { box_->setText(caption); }

bool MailboxBus::send(std::uint32_t id, const QString& text)
{
    const bus::SendResult r = bus::send(id, text);
    if (r != bus::SendResult::Delivered && trace_)
        trace_->traceLine(QStringLiteral("send"), QStringLiteral("%1 to %2: %3").arg(text, idText(id), bus::describe(r)));
    return r == bus::SendResult::Delivered;
}

bool MailboxBus::sendToHost(std::uint32_t box1, std::uint32_t box2, const QString& text)
{
    const bus::SendResult r = bus::sendToHost(box1, box2, text);
    if (r != bus::SendResult::Delivered && r != bus::SendResult::Nobody && trace_)
        trace_->traceLine(QStringLiteral("sendToExcel"), text + QStringLiteral(": ") + bus::describe(r));
    return r == bus::SendResult::Delivered || r == bus::SendResult::Nobody;
}

bool MailboxBus::alive(std::uint32_t id)
{
    // Reading the box's text runs nothing on its side; a box that is there
    // but slow to answer counts as alive.
    return bus::get(id, 500).result != bus::SendResult::NoSuchBox;
}

} // namespace pelkor
