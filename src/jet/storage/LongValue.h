// Memo and OLE values.  The row holds a descriptor of 12 bytes:
//
// | offset | size | content                                                                            |
// |--------|------|------------------------------------------------------------------------------------|
// | 0      | u32  | length (low 30 bits) and kind: 80000000 inline, 40000000 one row, 00000000 chain   |
// | 4      | u32  | row pointer of the value or the first part; 0 if inline                            |
// | 8      | u32  | chain mark, equal to the u32 at 08 of the first page; 0 if inline or one row       |
// | 12     |      | the value, if inline                                                               |
//
// A chain part is u32 pointer of the next part (0 = last), then data; it is the only row of its page.
#pragma once

#include "jet/storage/Pager.h"

namespace tavrel::jet {

inline constexpr std::uint32_t kLongInline = 0x80000000;
inline constexpr std::uint32_t kLongOneRow = 0x40000000;
inline constexpr std::uint32_t kLongLengthMask = 0x3FFFFFFF;
inline constexpr std::size_t kLongMaxInline = 64;
inline constexpr std::size_t kLongMaxOneRow = 3815;
inline constexpr std::size_t kLongPartBytes = 4072;  ///< data in a full chain part

/// The whole stored value.  Throws 3428 when a part is missing, the chain runs in a circle, or the parts do
/// not make up the length.
ByteVector ReadLongValue(Pager& pager, ByteView descriptor);

/// Length in bytes as stored, without reading the value.
std::uint32_t LongValueLength(ByteView descriptor);

}  // namespace tavrel::jet
