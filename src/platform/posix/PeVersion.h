// Version resources straight from Windows' program files (PE, 32 and 64 bit), on systems that have no call
// for it.  The file is not trusted: every offset, count and length is checked where it is read.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/File.h"

namespace tavrel::platform {

/// The raw bytes of the version resource; empty when the file is no PE file, has none or is damaged there.
/// Throws only what the file throws for a read within its size.
std::vector<std::uint8_t> ReadPeVersion(File& file);

}  // namespace tavrel::platform
