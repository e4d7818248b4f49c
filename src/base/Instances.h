// Instances: what frmMain needs to start a child instance of the program
// and to hear its answer.
//
// Messages is the hidden window whose caption a new-line child sets to
// "pelkor OK" or "pelkor CLOSED"; its id goes on the child's command line.
// Children starts this same program with a verb and watches the process,
// so a parent learns when a child died without a word.
//
// The program binds Messages to a mailbox of the bus, so another process
// can set it; LocalMessages keeps the caption in this process, for tests
// in which the child is played by the test itself.
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>

namespace pelkor {

class Messages {
public:
    virtual ~Messages() = default;
    virtual std::uint32_t id() const = 0;
    virtual QString caption() const = 0;
    virtual void setCaption(const QString& caption) = 0;
};

class LocalMessages : public Messages {
public:
    explicit LocalMessages(std::uint32_t id = 0) : id_(id) {}
    std::uint32_t id() const override { return id_; }
    QString caption() const override { return caption_; }
    void setCaption(const QString& c) override { caption_ = c; }
private:
    std::uint32_t id_;
    QString caption_;
};

class Children {
public:
    virtual ~Children() = default;
    // Starts the program with theCommand (the verb line), minimised with the
    // focus where the desktop allows (WindowShow below). False when it could
    // not be started.
    virtual bool start(const QString& theCommand) = 0;
    // True while the last child started is still running.
    virtual bool running() const = 0;
};

// Texts to other processes' boxes: a parent's txtMessage or frmMessages,
// the outer host's two boxes. A send returns once the receiver's handler
// has run; one to an id that does not answer fails quietly (false).
class Bus {
public:
    virtual ~Bus() = default;
    virtual bool send(std::uint32_t id, const QString& text) = 0;
    // The outer host: focus to box1, the text to box1, focus to box2 (the
    // host's box fires on leaving). Nothing when box1 is 0.
    virtual bool sendToHost(std::uint32_t box1, std::uint32_t box2, const QString& text) = 0;
    // False once no box answers to id (its process ended); true while one
    // may, and for a bus that cannot tell.
    virtual bool alive(std::uint32_t id) { (void)id; return true; }
};

// How a started instance shows its window. The verb lines are fixed, so a
// parent says it in the child's environment: PELKOR_SHOW is "minimized" or
// "maximized". An instance started any other way shows itself as usual.
enum class WindowShow { Normal, Minimized, Maximized };
inline constexpr char windowShowVariable[] = "PELKOR_SHOW";
// Reads PELKOR_SHOW and removes it from this process's environment, so an
// instance this one starts gets only what it is told.
WindowShow takeWindowShow();

// Starts the program's own executable with the verb line split into its
// fields (a file path at the end stays one argument, blanks and all).
std::unique_ptr<Children> processChildren(const QString& program);

// Starts another main instance of the program, with no arguments (the
// repair run's file dialog) and maximised. False when it could not start.
// With arguments: a working run of another file ("open <file>").
bool startAnotherInstance(const QString& program, const QStringList& arguments = {});

// The arguments that give back theCommand when the child joins them with
// blanks: the fields before the file, then the file whole. fieldsBeforeFile
// is how many blank-separated fields precede the file.
QStringList splitCommand(const QString& theCommand, int fieldsBeforeFile);

} // namespace pelkor
