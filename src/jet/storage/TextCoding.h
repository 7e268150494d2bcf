// Texts as stored: UTF-16LE, or compressed behind FF FE in runs of single bytes (U+0001..U+00FF) and UTF-16LE
// characters, a zero byte switching between them.
#pragma once

#include <optional>
#include <string>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

/// Bytes of the mark that a compressed text begins with.
inline constexpr std::size_t kCompressedMark = 2;
bool IsCompressed(ByteView stored);

/// Stored bytes to UTF-8.  Throws 3428 when an odd byte is left over.
std::string DecodeText(ByteView stored);
/// UTF-16 units of a stored text.
std::u16string DecodeUnits(ByteView stored);

/// UTF-16LE bytes of a text.
ByteVector PlainText(std::u16string_view units);
/// The compressed form, or nothing when a character cannot be expressed in it.
std::optional<ByteVector> CompressText(std::u16string_view units);

enum class TextKind { Column, Memo };
/// Whether a text that may be compressed is: it has at least three units, and the compressed form, `bytes`
/// long with its mark, is not longer than the plain one (memo: is shorter).
bool PrefersCompressed(std::size_t units, std::size_t bytes, TextKind kind);
/// The bytes that the engine stores: compressed if `compress` is set and the text prefers it.
ByteVector StoreText(std::u16string_view units, bool compress, TextKind kind);

}  // namespace tavrel::jet
