// A text as the engine stores it, with the one exception that its own rule does not provide for.
#pragma once

#include "jet/storage/TextCoding.h"

namespace tavrel::jet {

/// StoreText, but a text that begins with U+FEFF is always compressed: stored plainly its first two bytes
/// would say that it is.  Throws 3421 when such a text cannot be compressed (it holds a character whose low
/// byte is zero).
ByteVector StoredText(std::u16string_view units, bool compress, TextKind kind);

}  // namespace tavrel::jet
