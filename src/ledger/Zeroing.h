// Zeroing: the mark of the last line the bank agreed with, kept where it
// belongs when lines move around it.
//
// updateIpus moves the mark to the last line on or before the zeroing
// date in the file's order; it runs after a date is changed, a line is
// written or deleted. Clearing the old mark and setting the new one are
// one transaction, so the file never holds two marks or none.
#pragma once

namespace pelkor {

struct Instance;
struct OpenLedger;

void updateIpus(OpenLedger& ledger, const Instance& instance);

} // namespace pelkor
