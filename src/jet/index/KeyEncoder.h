// Index keys: each column gives a flag byte and its value so that comparing bytes compares keys.
//
//            | ascending        | descending
//   null     | 00               | FF
//   not null | 7F + value       | 80 + value, all bits inverted (text: a further 00)
#pragma once

#include <optional>

#include "jet/catalog/TableDefinition.h"
#include "jet/storage/Bytes.h"

namespace tavrel::jet {

/// The key of one column, flag byte included.  `stored` is the column's stored value (memos fetched), nothing for null;
/// Booleans one byte.  Nothing is returned when a text holds a character whose weight is not known in the column's sort
/// order.
std::optional<ByteVector> EncodeKeyColumn(const Column& column, const std::optional<ByteView>& stored, bool ascending);

/// The key of a text by itself, as EncodeKeyColumn gives it for a Text column of that sort order (LCID).
std::optional<ByteVector> EncodeTextKey(std::u16string_view text, std::uint16_t sortOrder, bool ascending = true);

/// True when the sort order's weights are known at all.
bool IsKnownSortOrder(std::uint16_t sortOrder);

}  // namespace tavrel::jet
