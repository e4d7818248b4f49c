// Recordset: the rows a statement returned, all in memory (a client-side
// cursor), so RecordCount is exact at once and the connection is free again
// as soon as execute() returns.
//
// Rows are kept in one flat vector of Values (row-major) to keep a load of a
// million lines in a few allocations. Field lookup by name is
// case-insensitive, as the old engine's was; an unknown name throws
// StoreError. A statement that returns no rows (UPDATE, INSERT ...) gives an
// empty recordset with no fields; recordsAffected() tells how many rows it
// changed.
#pragma once

#include "seams/store/Value.h"

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

namespace pelkor::store {

class Recordset {
public:
    Recordset() = default;
    Recordset(QStringList names, std::vector<Value> cells, long recordsAffected = 0);

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
    // Any row, for a fast walk that needs no cursor.
    const Value& at(long row, int col) const { return cells_[static_cast<size_t>(row) * names_.size() + col]; }

    long recordsAffected() const { return affected_; }

private:
    QStringList names_;
    std::vector<Value> cells_;
    long rows_ = 0;
    long pos_ = 0;
    long affected_ = 0;
};

} // namespace pelkor::store
