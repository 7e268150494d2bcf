#include "jet/catalog/Value.h"

#include <algorithm>

#include "text/Format.h"

namespace tavrel::jet {

std::string GuidText(const Guid& guid) {
    // Stored: u32, u16, u16 little-endian, then 8 bytes in order.
    static constexpr std::array<int, 16> kOrder = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    static constexpr const char* kDigits = "0123456789ABCDEF";
    std::string text = "{";
    for (std::size_t i = 0; i < kOrder.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) {
            text += '-';
        }
        const std::uint8_t byte = guid.bytes[static_cast<std::size_t>(kOrder[i])];
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text + "}";
}

std::string DecimalText(const Decimal& decimal) {
    std::array<std::uint32_t, 4> words = decimal.words;
    const auto isZero = [&words] {
        return std::all_of(words.begin(), words.end(), [](std::uint32_t word) { return word == 0; });
    };
    const bool negative = decimal.negative && !isZero();
    std::string digits;  // last digit first
    while (!isZero() || digits.size() <= decimal.scale) {
        std::uint64_t rest = 0;
        for (std::uint32_t& word : words) {
            const std::uint64_t part = rest << 32 | word;
            word = static_cast<std::uint32_t>(part / 10);
            rest = part % 10;
        }
        digits += static_cast<char>('0' + rest);
    }
    if (decimal.scale > 0) {
        digits.insert(decimal.scale, 1, '.');
    }
    if (negative) {
        digits += '-';
    }
    std::reverse(digits.begin(), digits.end());
    return digits;
}

}  // namespace tavrel::jet
