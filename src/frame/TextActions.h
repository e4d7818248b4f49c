// TextActions: what each text that txtMessage takes runs.
//
// Every text another process (or the outer host) may put into txtMessage,
// in the order it is compared, with the handler it runs; run is null for a
// handler this version does not have yet. A handler that several texts run
// is one entry, so they cannot drift apart: "gotoipus" is cmdIpus_Click
// like "setipus", not cmdGoToIpusLine_Click.
#pragma once

#include <QString>

namespace pelkor {

class frmMain;

struct TextAction {
    const char* texts[2];
    const char* handler;
    void (frmMain::*run)();
};

// The entry of text; null for a text that names no handler.
const TextAction* actionFor(const QString& text);

} // namespace pelkor
