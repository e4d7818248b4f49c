#include "base/Modes.h"

namespace pelkor {

const QStringList& bankNames()
{
    static const QStringList names{
        QStringLiteral("poalim"),   QStringLiteral("leumi"),  QStringLiteral("discount"),
        QStringLiteral("mercantile"), QStringLiteral("mizrahi"), QStringLiteral("beinleumi"),
        QStringLiteral("otsar"),    QStringLiteral("igud"),   QStringLiteral("massad"),
        QStringLiteral("arab"),     QStringLiteral("poalimBusinesses"), QStringLiteral("yahav")};
    return names;
}

const QStringList& bankDisplayNames()
{
    static const QStringList names{
        QStringLiteral("פועלים"), QStringLiteral("לאומי"), QStringLiteral("דיסקונט"),
        QStringLiteral("מרכנתיל"), QStringLiteral("מזרחי"), QStringLiteral("בינלאומי"),
        QStringLiteral("אוצר החייל"), QStringLiteral("אגוד"), QStringLiteral("מסד"),
        QStringLiteral("ערבי ישראלי"), QStringLiteral("פועלים באינטרנט לעסקים"), QStringLiteral("יהב")};
    return names;
}

} // namespace pelkor
