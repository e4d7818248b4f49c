// Zeroing: the mark of the last line the bank agreed with, kept where it
// belongs when lines move around it.
//
// updateIpus moves the mark to the last line on or before the zeroing
// date in the file's order; it runs after a date is changed, a line is
// written or deleted. Clearing the old mark and setting the new one are
// one transaction, so the file never holds two marks or none; a change
// of several statements that moves lines around the mark (a delete of a
// range) runs moveIpusMark inside its own transaction instead.
//
// The editor's cmdIpus_Click and cmdGoToIpusLine_Click (Zeroing.cpp) set
// the zeroing line by hand and bring it into view.
#pragma once

namespace pelkor {

struct Instance;
struct OpenLedger;

void updateIpus(OpenLedger& ledger, const Instance& instance);
// The same statements inside the caller's transaction.
void moveIpusMark(OpenLedger& ledger, const Instance& instance);
// The grid row above the red line as the loaded lines stand: the last line
// on or before the zeroing date (the first row when none is).
int rowAboveRed(const OpenLedger& ledger);

} // namespace pelkor
