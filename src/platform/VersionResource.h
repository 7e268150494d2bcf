// The version resource of a program file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tavrel::platform {

/// The raw bytes of the file's version resource (a tree of 32-bit aligned blocks with UTF-16LE texts); empty
/// when the file has none or cannot be read.
std::vector<std::uint8_t> ReadVersionResource(const std::string& path);

}  // namespace tavrel::platform
