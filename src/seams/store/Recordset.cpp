#include "seams/store/Recordset.h"

#include "seams/store/StoreError.h"

namespace pelkor::store {

Recordset::Recordset(QStringList names, std::vector<Value> cells, long recordsAffected)
    : names_(std::move(names)), cells_(std::move(cells)), affected_(recordsAffected)
{
    rows_ = names_.isEmpty() ? 0 : long(cells_.size() / size_t(names_.size()));
}

int Recordset::fieldIndex(const QString& name) const
{
    for (int i = 0; i < names_.size(); ++i)
        if (names_[i].compare(name, Qt::CaseInsensitive) == 0)
            return i;
    // A column named twice in a join is held as "table.column"; a bare
    // name then finds the first of them, as the old engine did.
    if (!name.contains(QLatin1Char('.'))) {
        for (int i = 0; i < names_.size(); ++i) {
            const QString& n = names_[i];
            const qsizetype dot = n.lastIndexOf(QLatin1Char('.'));
            if (dot >= 0 && QStringView(n).mid(dot + 1).compare(name, Qt::CaseInsensitive) == 0)
                return i;
        }
    }
    return -1;
}

const Value& Recordset::field(int i) const
{
    if (i < 0 || i >= fieldCount())
        throw StoreError(StoreError::Kind::Statement,
                         QStringLiteral("Item cannot be found in the collection: field %1").arg(i));
    if (pos_ < 0 || pos_ >= rows_)
        throw StoreError(StoreError::Kind::Statement,
                         QStringLiteral("Either BOF or EOF is True, or the current record has been deleted"));
    return at(pos_, i);
}

const Value& Recordset::field(const QString& name) const
{
    const int i = fieldIndex(name);
    if (i < 0)
        throw StoreError(StoreError::Kind::Statement,
                         QStringLiteral("Item cannot be found in the collection: field %1").arg(name));
    return field(i);
}

} // namespace pelkor::store
