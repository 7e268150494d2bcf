// Values to the bytes that a row stores for them, with the checks of type, range and length.
#pragma once

#include "jet/catalog/TableDefinition.h"
#include "jet/catalog/Value.h"

namespace tavrel::jet {

/// The stored bytes of a value for a column that is neither Memo nor OLE (those are LongValueWriter's).
/// Numbers are converted between each other, rounding half to even; everything else must have the column's
/// own type. `ownerKey` enciphers Owner and SID columns.  REQUIRES: the value is not null. Throws 3163 (too
/// long), 3349 (number out of range), 3464 (wrong type).
ByteVector EncodeField(const Column& column, const Value& value, std::uint32_t ownerKey);

/// The text of a value for a Text or Memo column, as UTF-16.  Throws 3464 when the value is no text.
std::u16string TextOf(const Value& value);
/// The bytes of a value for a Binary or OLE column.  Throws 3464 when the value is no such.
const ByteVector& BytesOf(const Value& value);

}  // namespace tavrel::jet
