// A row's bytes with some fields changed, made from its old bytes without taking the other fields apart.
#pragma once

#include <span>

#include "jet/storage/RowLayout.h"

namespace tavrel::jet {

/// A column (place in RowShape::Columns) and what it is to hold; a null pointer = null, Booleans one byte.
struct FieldBytes {
    std::size_t place = 0;
    const ByteVector* bytes = nullptr;
};

/// True when the fields can be written into the row as it lies: fixed columns that it has room for, none of
/// them null.
bool FitsInPlace(const RowShape& shape, const RowView& row, std::span<const FieldBytes> fields);
/// Writes them there.  REQUIRES: FitsInPlace.
void PatchInPlace(const RowShape& shape, std::span<std::uint8_t> row, std::span<const FieldBytes> fields);

/// Appends the row to `out`.  A row that is older than one of the fields' columns is brought up to the
/// present number of columns.  Throws 3047 when it is too long for a page, 3428 when the old row's frame is
/// impossible.
void AppendPatchedRow(const RowShape& shape, const RowView& row, ByteView bytes,
                      std::span<const FieldBytes> fields, ByteVector& out);

}  // namespace tavrel::jet
