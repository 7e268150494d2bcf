// Numbers as text, independent of any locale.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace tavrel::text {

/// Shortest form that reads back to the same double: plain notation for decimal exponents -4..15 (".0" if
/// there is no fraction), else d.ddde±XX; NaN, Infinity, -Infinity as words.
std::string FormatDouble(double value);

/// `scaled` / 10^scale with exactly `scale` decimals: (125000, 4) is "12.5000".
std::string FormatScaled(std::int64_t scaled, int scale);

/// Lower-case hexadecimal digits, two a byte.
std::string Hex(std::span<const std::uint8_t> bytes);

}  // namespace tavrel::text
