// Texts as stored: UTF-16LE, or compressed behind FF FE in runs of single bytes (U+0001..U+00FF) and UTF-16LE
// characters, a zero byte switching between them.
#pragma once

#include <optional>
#include <string>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

/// Stored bytes to UTF-8.  Throws 3428 when an odd byte is left over.
std::string DecodeText(ByteView stored);
/// UTF-16 units of a stored text.
std::u16string DecodeUnits(ByteView stored);

/// UTF-16LE bytes of a text.
ByteVector PlainText(std::u16string_view units);
/// The compressed form, or nothing when a character cannot be expressed in it.
std::optional<ByteVector> CompressText(std::u16string_view units);

enum class TextKind { Column, Memo };
/// The bytes that the engine stores: compressed if `compress` is set, the text has at least three units, and
/// the compressed form is not longer (memo: is shorter).
ByteVector StoreText(std::u16string_view units, bool compress, TextKind kind);

}  // namespace tavrel::jet
