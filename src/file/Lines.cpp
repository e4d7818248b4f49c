#include "file/Lines.h"

#include "base/Format.h"

namespace pelkor {

QString Catalogue::getTypeName(int typeNum) const
{
    for (const TypeRec& t : types)
        if (t.TypeNum == typeNum)
            return t.TypeName;
    return QStringLiteral("[not found]");
}

const TypeRec* Catalogue::findType(const QString& name) const
{
    for (const TypeRec& t : types)
        if (t.TypeName == name)
            return &t;
    return nullptr;
}

bool Catalogue::isCategory(const QString& kind) const
{
    return categories.contains(kind);
}

const QStringList& colorWords()
{
    static const QStringList words{QStringLiteral("אדום"), QStringLiteral("סגול"), QStringLiteral("ירוק"),
                                   QStringLiteral("ללא צבע")};
    return words;
}

const std::vector<std::uint32_t>& colorValues()
{
    static const std::vector<std::uint32_t> values{rgb(255, 0, 0), rgb(192, 0, 192), rgb(0, 192, 0), rgb(0, 0, 0)};
    return values;
}

int getColorNum(const QString& word)
{
    const int i = int(colorWords().indexOf(word));
    return i < 0 ? 3 : i;
}

const QStringList& jumpWords()
{
    static const QStringList words{QStringLiteral("יום"), QStringLiteral("שבוע"), QStringLiteral("חודש"),
                                   QStringLiteral("חודשיים"), QStringLiteral("רבעון")};
    return words;
}

int getJumpNum(const QString& word)
{
    const int i = int(jumpWords().indexOf(word));
    return i < 0 ? 2 : i;
}

} // namespace pelkor
