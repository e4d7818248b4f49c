// Feeds arbitrary text to the QIF reader, behind a "!Type:Bank" line so
// that every input reaches the record parser. A refusal with a message is
// the expected answer to nonsense; a crash, a hang or a sanitizer report is
// a bug, as is a row with an invalid date.
#include "OtherReaders.h"
#include "TextInput.h"

#include <cstdint>
#include <cstdlib>

using namespace pelkor::feed;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString text = QStringLiteral("!Type:Bank\n") + decodeText(bytes).text;
    const ReadResult r = readQif(text, QStringLiteral("fuzz.qif"), QStringLiteral("fuzz"));
    if (!r.ok() && r.error.isEmpty())
        std::abort();
    for (const AccountStatement& a : r.accounts)
        for (const StatementRow& row : a.rows)
            if (!row.date.isValid())
                std::abort();
    return 0;
}
