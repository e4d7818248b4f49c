#include "seams/store/Recordset.h"

#include "seams/store/StoreError.h"

namespace pelkor::store {

Rows::~Rows()
{
    for (size_t r = 0; r < count_; ++r) {
        Value* v = row(r);
        for (size_t c = 0; c < width_; ++c)
            v[c].~Value();
    }
    for (Value* b : blocks_)
        ::operator delete(static_cast<void*>(b), std::align_val_t(alignof(Value)));
}

void Rows::grow()
{
    const size_t k = blocks_.size();
    const size_t rows = size_t(1) << (firstShift + k);
    const size_t bytes = rows * width_ * sizeof(Value);
    blocks_.reserve(k + 1);
    // Plain pages: asking for huge pages here made the kernel compact
    // memory in the middle of a load, which cost more than it saved.
    void* block = ::operator new(bytes, std::align_val_t(alignof(Value)));
    blocks_.push_back(static_cast<Value*>(block));
    capacity_ += rows;
}

Recordset::Recordset(QStringList names, std::shared_ptr<const Rows> rows, long recordsAffected)
    : names_(std::move(names)), data_(std::move(rows)), affected_(recordsAffected)
{
    rows_ = data_ && !names_.isEmpty() ? data_->count() : 0;
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
