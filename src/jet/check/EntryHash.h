// A keyed hash of index entries.
#pragma once

#include <cstdint>

#include "jet/storage/Bytes.h"

namespace tavrel::jet::check {

/// SipHash-1-3 with a key that is another one in every run of the program, so that no file can be made to
/// fit.
std::uint64_t EntryHash(ByteView entry);

}  // namespace tavrel::jet::check
