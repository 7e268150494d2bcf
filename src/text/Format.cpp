#include "text/Format.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tavrel::text {
namespace {

/// Decimal exponents from -4 to 15 are written without one.
bool FitsPlainNotation(std::string_view scientific) {
    const std::size_t mark = scientific.find('e');
    const char* digits = scientific.data() + mark + (scientific[mark + 1] == '+' ? 2 : 1);
    int exponent = 0;
    std::from_chars(digits, scientific.data() + scientific.size(), exponent);
    return exponent >= -4 && exponent <= 15;
}

std::string Shortest(double value, std::chars_format format) {
    std::array<char, 64> buffer;  // the longest: sign, "0.000", 17 digits, exponent
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format);
    return {buffer.data(), result.ptr};
}

}  // namespace

std::string FormatDouble(double value) {
    if (std::isnan(value)) {
        return "NaN";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-Infinity" : "Infinity";
    }
    std::string scientific = Shortest(value, std::chars_format::scientific);
    if (!FitsPlainNotation(scientific)) {
        return scientific;
    }
    std::string plain = Shortest(value, std::chars_format::fixed);
    if (plain.find('.') == std::string::npos) {
        plain += ".0";
    }
    return plain;
}

std::string FormatScaled(std::int64_t scaled, int scale) {
    const auto bits = static_cast<std::uint64_t>(scaled);
    std::string digits = std::to_string(scaled < 0 ? 0 - bits : bits);
    const auto decimals = static_cast<std::size_t>(scale < 0 ? 0 : scale);
    if (digits.size() <= decimals) {
        digits.insert(0, decimals + 1 - digits.size(), '0');
    }
    if (decimals > 0) {
        digits.insert(digits.size() - decimals, 1, '.');
    }
    return scaled < 0 ? "-" + digits : digits;
}

std::string Hex(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string out;
    out.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        out += kDigits[byte >> 4];
        out += kDigits[byte & 15];
    }
    return out;
}

}  // namespace tavrel::text
