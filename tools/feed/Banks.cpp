// Banks: the bank list. See Banks.h.
#include "Banks.h"

namespace pelkor::feed {

Bank bankAt(int i)
{
    struct Entry { const char* internal; const char* display; };
    static const Entry banks[bankCount] = {
        {"poalim", "פועלים"},       {"leumi", "לאומי"},           {"discount", "דיסקונט"},
        {"mercantile", "מרכנתיל"},  {"mizrahi", "מזרחי"},         {"beinleumi", "בינלאומי"},
        {"otsar", "אוצר החייל"},    {"igud", "אגוד"},             {"massad", "מסד"},
        {"arab", "ערבי ישראלי"},    {"poalimBusinesses", "פועלים באינטרנט לעסקים"}, {"yahav", "יהב"},
    };
    if (i < 0 || i >= bankCount)
        return {};
    Bank b;
    b.index = i;
    b.internalName = QString::fromUtf8(banks[i].internal);
    b.displayName = QString::fromUtf8(banks[i].display);
    b.feedTable = b.internalName + QStringLiteral("Osh");
    if (b.feedTable == QLatin1String("poalimBusinessesOsh") || b.feedTable == QLatin1String("massadOsh") ||
        b.feedTable == QLatin1String("yahavOsh"))
        b.feedTable = QStringLiteral("poalimOsh");
    return b;
}

QString feedFileName(int i) { return QStringLiteral("atl613o%1.dll").arg(i); }

} // namespace pelkor::feed
