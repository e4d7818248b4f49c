// Recordset: the rows a statement returned, all in memory (a client-side
// cursor), so RecordCount is exact at once and the connection is free again
// as soon as execute() returns.
//
// Rows are kept row-major in a few blocks of Values, each block twice the
// size of the one before, so that a load of a million lines is a few dozen
// allocations and no Value is ever moved once read. The rows are immutable
// and shared: copying a Recordset copies its cursor, not its rows. Field
// lookup by name is case-insensitive, as the old engine's was; an unknown
// name throws StoreError. A statement that returns no rows (UPDATE, INSERT
// ...) gives an empty recordset with no fields; recordsAffected() tells how
// many rows it changed.
#pragma once

#include "seams/store/Value.h"

#include <QString>
#include <QStringList>
#include <bit>
#include <memory>
#include <new>
#include <vector>

namespace pelkor::store {

// The rows of a recordset while they are read, and after.
class Rows {
public:
    explicit Rows(int width) : width_(size_t(width)) {}
    ~Rows();
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;

    // Appends a row of Null Values and returns its first field.
    Value* append()
    {
        if (count_ == capacity_)
            grow();
        Value* r = row(count_);
        for (size_t c = 0; c < width_; ++c)
            new (r + c) Value();
        ++count_;
        return r;
    }
    long count() const { return long(count_); }
    int width() const { return int(width_); }

    // Block k holds firstRows << k rows, so row r lies in block
    // floor(log2(r / firstRows + 1)).
    Value* row(size_t r) const
    {
        const size_t q = (r >> firstShift) + 1;
        const int k = std::bit_width(q) - 1;
        return blocks_[size_t(k)] + (r - (((size_t(1) << k) - 1) << firstShift)) * width_;
    }

private:
    // Most statements return a row or a handful: the first block is small.
    static constexpr int firstShift = 3;
    void grow();

    size_t width_;
    size_t count_ = 0;
    size_t capacity_ = 0;
    std::vector<Value*> blocks_;
};

class Recordset {
public:
    Recordset() = default;
    Recordset(QStringList names, std::shared_ptr<const Rows> rows, long recordsAffected = 0);
    // A recordset of no rows that tells how many rows a statement changed.
    static Recordset affected(long n) { return Recordset({}, nullptr, n); }

    long recordCount() const { return rows_; }
    bool eof() const { return pos_ >= rows_; }
    bool bof() const { return pos_ < 0; }
    void moveNext() { if (pos_ < rows_) ++pos_; }
    void moveFirst() { pos_ = 0; }
    void moveLast() { pos_ = rows_ > 0 ? rows_ - 1 : 0; }
    long position() const { return pos_; }
    void move(long row) { pos_ = row; }

    int fieldCount() const { return static_cast<int>(names_.size()); }
    const QString& fieldName(int i) const { return names_[i]; }
    const QStringList& fieldNames() const { return names_; }
    // -1 when there is no such field.
    int fieldIndex(const QString& name) const;

    // The current row's field. Throws StoreError at EOF or for a bad field.
    const Value& field(int i) const;
    const Value& field(const QString& name) const;
    // Any row, for a fast walk that needs no cursor. Assumes a valid place.
    const Value& at(long row, int col) const { return data_->row(size_t(row))[col]; }

    long recordsAffected() const { return affected_; }

private:
    QStringList names_;
    std::shared_ptr<const Rows> data_;
    long rows_ = 0;
    long pos_ = 0;
    long affected_ = 0;
};

} // namespace pelkor::store
