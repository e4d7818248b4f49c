// BusyFile: what the user sees while another process holds the open file.
//
// Every statement the window runs goes through the store, whose busy
// policy this is: while the engine waits, the status line says that the
// file is held and by whom it may be; when the wait is over, a question
// names the file and offers "נסה שוב" (wait again) or "ביטול" (give up:
// the statement fails having changed nothing). The engine's own words go
// to the trace only.
#pragma once

#include "seams/store/Connection.h"

#include <QString>

namespace pelkor {

namespace ui { class Ui; }
class Trace;
class WindowCalls;
struct Shown;

class BusyFile : public store::BusyPolicy {
public:
    BusyFile(ui::Ui& ui, Shown& shown, WindowCalls& window, Trace& trace)
        : ui_(ui), shown_(shown), window_(window), trace_(trace) {}

    void waiting(const QString& file, int waitedMs) override;
    bool retry(const QString& file) override;
    void done(const QString& file) override;

    // The question's words for file.
    static QString question(const QString& file);

private:
    ui::Ui& ui_;
    Shown& shown_;
    WindowCalls& window_;
    Trace& trace_;
    QString statusBefore_;
    bool showing_ = false;
};

} // namespace pelkor
