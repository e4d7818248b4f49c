// Feeds arbitrary bytes to the statement reader as a CSV export (and, when
// the bytes look like one, a QIF file: readStatement decides), then plans
// the rows into a feed. A refusal with a message is the expected answer to
// nonsense; a crash, a hang, a sanitizer report, or a refusal without a
// message is a bug. So is a usable reading whose rows have invalid dates.
// Inputs that name themselves OFX are passed over: that reader is libofx's
// parser, which keeps a few kilobytes of a malformed file until the process
// ends, and is not ours to fuzz.
#include "FeedRows.h"
#include "Statement.h"

#include <cstdint>
#include <cstdlib>

using namespace pelkor::feed;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    if (detectFormat(bytes) == Format::Ofx)
        return 0;
    const ReadResult r = readStatement(bytes, QStringLiteral("fuzz.csv"));
    if (!r.ok()) {
        if (r.error.isEmpty() || !r.accounts.isEmpty())
            std::abort();
        return 0;
    }
    for (const AccountStatement& a : r.accounts)
        for (const StatementRow& row : a.rows)
            if (!row.date.isValid())
                std::abort();
    const FeedPlan p = planFeed({r}, 90, [](const QString&, const QDate&) { return std::optional<double>(0.0); });
    if (!p.ok() && p.error.isEmpty())
        std::abort();
    return 0;
}
