#include "frame/TextActions.h"

#include "frame/frmMain.h"

namespace pelkor {

namespace {

const TextAction textActions[] = {
    {{"coordinate", nullptr}, "cmdCoordinate_Click", nullptr},
    {{"add", nullptr}, "cmdAdd_Click", &frmMain::cmdAdd_Click},
    {{"gotoautomatic", nullptr}, "cmdGoToAutomaticCoordination_Click", nullptr},
    {{"setipus", "gotoipus"}, "cmdIpus_Click", &frmMain::cmdIpus_Click},
    {{"refresh", "closed"}, "cmdRefresh_Click", &frmMain::cmdRefresh_Click},
    {{"close", nullptr}, "cmdClose_Click", &frmMain::cmdClose_Click},
    {{"bankcoord", nullptr}, "cmdBankCoordination_Click", nullptr},
    {{"delete", nullptr}, "msfgMain_KeyUp", &frmMain::msfgMain_KeyUp},   // key code 46, no shift
};

} // namespace

const TextAction* actionFor(const QString& text)
{
    for (const TextAction& a : textActions)
        for (const char* t : a.texts)
            if (t && text == QLatin1String(t))
                return &a;
    return nullptr;
}

} // namespace pelkor
