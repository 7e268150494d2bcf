// RC4, the format's only cipher: header block, pages, owners and SIDs.
#pragma once

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

/// Enciphers or deciphers in place with a 4-byte key given as a little-endian number; the stream starts anew.
void Rc4(std::uint32_t key, std::span<std::uint8_t> bytes);

}  // namespace tavrel::jet
