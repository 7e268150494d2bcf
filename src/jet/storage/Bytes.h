// Reading bytes that came from a file: every access is checked against the end, whatever a field claims.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "text/Error.h"

namespace tavrel::jet {

inline constexpr std::size_t kPageSize = 4096;
using PageNumber = std::uint32_t;
using Page = std::array<std::uint8_t, kPageSize>;
using ByteView = std::span<const std::uint8_t>;
using ByteVector = std::vector<std::uint8_t>;

/// Throws error 3428 (damaged) with a reason.
[[noreturn]] void ThrowDamaged(std::string_view reason);

/// Little-endian fields at an offset; all throw ThrowDamaged when the field is not wholly inside.
inline ByteView Slice(ByteView bytes, std::size_t offset, std::size_t length) {
    if (offset > bytes.size() || length > bytes.size() - offset) {
        ThrowDamaged("필드가 영역을 벗어남");
    }
    return bytes.subspan(offset, length);
}
inline std::uint8_t U8(ByteView bytes, std::size_t offset) {
    return Slice(bytes, offset, 1)[0];
}
inline std::uint16_t U16(ByteView bytes, std::size_t offset) {
    const ByteView b = Slice(bytes, offset, 2);
    return static_cast<std::uint16_t>(b[0] | b[1] << 8);
}
inline std::uint32_t U32(ByteView bytes, std::size_t offset) {
    const ByteView b = Slice(bytes, offset, 4);
    return b[0] | std::uint32_t{b[1]} << 8 | std::uint32_t{b[2]} << 16 | std::uint32_t{b[3]} << 24;
}
inline std::uint64_t U64(ByteView bytes, std::size_t offset) {
    return U32(bytes, offset) | std::uint64_t{U32(bytes, offset + 4)} << 32;
}
inline std::uint32_t U24Be(ByteView bytes, std::size_t offset) {
    const ByteView b = Slice(bytes, offset, 3);
    return std::uint32_t{b[0]} << 16 | std::uint32_t{b[1]} << 8 | b[2];
}
inline std::uint32_t U32Be(ByteView bytes, std::size_t offset) {
    return std::uint32_t{U8(bytes, offset)} << 24 | U24Be(bytes, offset + 1);
}

/// Writing fields; the caller owns the room.  REQUIRES: the field lies inside `bytes`.
inline void PutU16(std::span<std::uint8_t> bytes, std::size_t offset, std::uint16_t value) {
    bytes[offset] = static_cast<std::uint8_t>(value);
    bytes[offset + 1] = static_cast<std::uint8_t>(value >> 8);
}
inline void PutU32(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value) {
    PutU16(bytes, offset, static_cast<std::uint16_t>(value));
    PutU16(bytes, offset + 2, static_cast<std::uint16_t>(value >> 16));
}
inline void PutU64(std::span<std::uint8_t> bytes, std::size_t offset, std::uint64_t value) {
    PutU32(bytes, offset, static_cast<std::uint32_t>(value));
    PutU32(bytes, offset + 4, static_cast<std::uint32_t>(value >> 32));
}
inline void AppendU8(ByteVector& out, std::uint8_t value) {
    out.push_back(value);
}
inline void AppendU16(ByteVector& out, std::uint16_t value) {
    out.push_back(static_cast<std::uint8_t>(value));
    out.push_back(static_cast<std::uint8_t>(value >> 8));
}
inline void AppendU32(ByteVector& out, std::uint32_t value) {
    AppendU16(out, static_cast<std::uint16_t>(value));
    AppendU16(out, static_cast<std::uint16_t>(value >> 16));
}
inline void AppendU64(ByteVector& out, std::uint64_t value) {
    AppendU32(out, static_cast<std::uint32_t>(value));
    AppendU32(out, static_cast<std::uint32_t>(value >> 32));
}
inline void AppendU24Be(ByteVector& out, std::uint32_t value) {
    out.push_back(static_cast<std::uint8_t>(value >> 16));
    out.push_back(static_cast<std::uint8_t>(value >> 8));
    out.push_back(static_cast<std::uint8_t>(value));
}
inline void AppendU32Be(ByteVector& out, std::uint32_t value) {
    out.push_back(static_cast<std::uint8_t>(value >> 24));
    AppendU24Be(out, value);
}
inline void AppendBytes(ByteVector& out, ByteView bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

/// Byte by byte, then the shorter one first: below 0, 0, or above 0.  Either may be empty.
inline int CompareBytes(ByteView a, ByteView b) {
    const std::size_t common = std::min(a.size(), b.size());
    const int order = common == 0 ? 0 : std::memcmp(a.data(), b.data(), common);
    if (order != 0) {
        return order;
    }
    return a.size() < b.size() ? -1 : static_cast<int>(a.size() > b.size());
}

inline std::uint64_t BitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}
inline double DoubleOf(std::uint64_t bits) {
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

/// Where a row lies: stored as page << 8 | row.
struct RowPointer {
    PageNumber page = 0;
    std::uint8_t row = 0;

    static RowPointer FromU32(std::uint32_t raw) { return {raw >> 8, static_cast<std::uint8_t>(raw)}; }
    [[nodiscard]] std::uint32_t ToU32() const { return page << 8 | row; }
    auto operator<=>(const RowPointer&) const = default;  // NOLINT(modernize-use-nullptr): there is none
};

}  // namespace tavrel::jet
