#include "text/Utf.h"

namespace tavrel::text {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// UnitAt(i) gives the UTF-16 unit at i < count.
template <typename UnitAt>
std::string Utf8FromUnits(std::size_t count, UnitAt unitAt) {
    std::string out;
    out.reserve(count + count / 2);
    for (std::size_t i = 0; i < count; ++i) {
        char32_t codePoint = unitAt(i);
        if (IsHighSurrogate(codePoint) && i + 1 < count && IsLowSurrogate(unitAt(i + 1))) {
            codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (unitAt(i + 1) - 0xDC00);
            ++i;
        }
        AppendUtf8(out, codePoint);
    }
    return out;
}

struct LeadByte {
    std::size_t length;  ///< bytes of the sequence; 0: this byte cannot start one
    char32_t bits;       ///< the code point's bits that it holds
    char32_t lowest;     ///< a smaller code point would have had a shorter form
};

LeadByte ReadLeadByte(unsigned char byte) {
    if (byte < 0x80) {
        return {1, byte, 0};
    }
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {2, byte & 0x1FU, 0x80};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {3, byte & 0x0FU, 0x800};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {4, byte & 0x07U, 0x10000};
    }
    return {0, 0, 0};
}

}  // namespace

std::string Utf8FromUtf16Le(std::span<const std::uint8_t> bytes) {
    return Utf8FromUnits(bytes.size() / 2, [bytes](std::size_t i) {
        return static_cast<char32_t>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
    });
}

std::string Utf8FromUtf16(std::u16string_view units) {
    return Utf8FromUnits(units.size(), [units](std::size_t i) { return static_cast<char32_t>(units[i]); });
}

std::u16string Utf16FromUtf8(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        const char32_t codePoint = NextCodePoint(utf8, at);
        if (codePoint < 0x10000) {
            out.push_back(static_cast<char16_t>(codePoint));
        } else {
            out.push_back(static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF)));
        }
    }
    return out;
}

std::size_t Utf16Length(std::string_view utf8) {
    std::size_t units = 0;
    for (std::size_t at = 0; at < utf8.size();) {
        units += NextCodePoint(utf8, at) < 0x10000 ? 1 : 2;
    }
    return units;
}

void AppendUtf8(std::string& out, char32_t codePoint) {
    const auto trailing = [codePoint](int shift) {
        return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    };
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += {static_cast<char>(0xC0 | (codePoint >> 6)), trailing(0)};
    } else if (codePoint < 0x10000) {
        out += {static_cast<char>(0xE0 | (codePoint >> 12)), trailing(6), trailing(0)};
    } else {
        out += {static_cast<char>(0xF0 | (codePoint >> 18)), trailing(12), trailing(6), trailing(0)};
    }
}

char32_t NextCodePoint(std::string_view utf8, std::size_t& at) {
    const std::size_t start = at++;
    const LeadByte lead = ReadLeadByte(static_cast<unsigned char>(utf8[start]));
    if (lead.length == 0 || utf8.size() - start < lead.length) {
        return kReplacement;
    }
    char32_t codePoint = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(utf8[start + i]);
        if ((byte & 0xC0) != 0x80) {
            return kReplacement;
        }
        codePoint = (codePoint << 6) | (byte & 0x3FU);
    }
    if (codePoint < lead.lowest || codePoint > 0x10FFFF) {
        return kReplacement;
    }
    at = start + lead.length;
    return codePoint;
}

}  // namespace tavrel::text
