// frmMain's forecast buttons: the ledger room's Tzefi does the work; the
// window traces the handler.
#include "frame/frmMain.h"

namespace pelkor {

void frmMain::cmdTzefi_Click()
{
    TraceScope t(trace_, QStringLiteral("cmdTzefi_Click"));
    tzefi_.cmdTzefi_Click();
}

void frmMain::cmdSubtractFromTzefi_Click()
{
    TraceScope t(trace_, QStringLiteral("cmdSubtractFromTzefi_Click"));
    tzefi_.cmdSubtractFromTzefi_Click();
}

} // namespace pelkor
