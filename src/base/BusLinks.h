// BusLinks: frmMain's channels to other processes, on the bus's mailboxes.
//
// MailboxMessages is the hidden frmMessages window: its caption is a
// mailbox a new-line child sets. MailboxBus sends texts to other boxes and
// tells the trace why a send did not arrive.
#pragma once

#include "base/Instances.h"

#include <memory>

namespace pelkor {

namespace bus { class Mailbox; }
class Trace;

class MailboxMessages : public Messages {
public:
    MailboxMessages();
    ~MailboxMessages() override;
    std::uint32_t id() const override;
    QString caption() const override;
    void setCaption(const QString& caption) override;
private:
    std::unique_ptr<bus::Mailbox> box_;
};

class MailboxBus : public Bus {
public:
    explicit MailboxBus(Trace* trace = nullptr) : trace_(trace) {}
    bool send(std::uint32_t id, const QString& text) override;
    bool sendToHost(std::uint32_t box1, std::uint32_t box2, const QString& text) override;
    bool alive(std::uint32_t id) override;
private:
    Trace* trace_;
};

} // namespace pelkor
