// Index keys: each column gives a flag byte and its value so that comparing bytes compares keys.
//
//            | ascending        | descending
//   null     | 00               | FF
//   not null | 7F + value       | 80 + value, all bits inverted (text: a further 00)
//
//   Byte                    the byte
//   Integer, Long, Currency big-endian, sign bit inverted
//   Single, Double, Date    big-endian; sign bit inverted when clear, all bits when set
//   Boolean                 00 true, FF false
//   Numeric                 FF + magnitude big-endian; negative: 00 + inverted magnitude
//   GUID, Binary            groups of 8 bytes padded with zeros, each followed by 9, or by the number of bytes
//                           used in the last; a GUID in the order of its text
//   Text, Memo              weights | 01 | marks | [01 01 01 | positional characters] | 00, see TextKey.cpp
#pragma once

#include <optional>

#include "jet/catalog/TableDefinition.h"
#include "jet/storage/Bytes.h"

namespace tavrel::jet {

/// Keys up to this length, all columns together, are the same for every program.  Whether and where the
/// engine cuts longer ones is not known.
inline constexpr std::size_t kLongestKnownKey = 255;

/// What becomes of a character whose weight is not known in a sort order, and of a key longer than
/// kLongestKnownKey, which is written whole where stand-ins are.
enum class UnknownWeights {
    Refuse,
    /// It weighs FF and three bytes that spell its upper-case code, seven bits each plus 2: behind all known
    /// characters, in the order of their codes, and equal texts stay equal.
    StandIn
};

/// The key of one column, flag byte included.  `stored` is the column's stored value (memos fetched), nothing
/// for null; Booleans one byte.  Nothing is returned when a text holds a character whose weight is not known
/// in the column's sort order (and no stand-in is wanted), and for types that no index can hold.  Throws 3428
/// when the value's length does not fit the type.
std::optional<ByteVector> EncodeKeyColumn(const Column& column, const std::optional<ByteView>& stored,
                                          bool ascending, UnknownWeights unknown = UnknownWeights::Refuse);

/// The same, behind what `key` holds; false, and `key` as it was, where EncodeKeyColumn returns nothing.
bool AppendKeyColumn(ByteVector& key, const Column& column, const std::optional<ByteView>& stored,
                     bool ascending, UnknownWeights unknown = UnknownWeights::Refuse);

/// The key of a text by itself, as EncodeKeyColumn gives it for a Text column of that sort order (LCID).
std::optional<ByteVector> EncodeTextKey(std::u16string_view text, std::uint16_t sortOrder,
                                        bool ascending = true,
                                        UnknownWeights unknown = UnknownWeights::Refuse);

/// The same, behind what `key` holds; false, and `key` as it was, where EncodeTextKey returns nothing.
bool AppendTextKey(ByteVector& key, std::u16string_view text, std::uint16_t sortOrder, bool ascending = true,
                   UnknownWeights unknown = UnknownWeights::Refuse);

/// True when the sort order's weights are known at all.
bool IsKnownSortOrder(std::uint16_t sortOrder);

}  // namespace tavrel::jet
