// One value of a row, as callers see it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <variant>

#include "jet/storage/Bytes.h"

namespace tavrel::jet {

/// Its copying is not trivial, on purpose: of a variant whose alternatives are all trivial, texts or vectors, some
/// standard libraries believe that it always holds a value, and destroy one that a copy without memory never got.
struct Null {
    Null() = default;
    Null(const Null& /*other*/) noexcept {}                            // NOLINT(modernize-use-equals-default)
    Null& operator=(const Null& /*other*/) noexcept { return *this; }  // NOLINT(modernize-use-equals-default)
    ~Null() = default;
    bool operator==(const Null&) const = default;
};
/// Value x 10,000.
struct Currency {
    std::int64_t scaled = 0;
    bool operator==(const Currency&) const = default;
};
/// Days since 1899-12-30; before that day the fraction counts forward all the same.
struct Date {
    double days = 0;
    bool operator==(const Date&) const = default;
};
/// The 16 bytes as stored.
struct Guid {
    std::array<std::uint8_t, 16> bytes{};
    bool operator==(const Guid&) const = default;
};
/// Magnitude as four 32-bit words, highest first; value = magnitude / 10^scale.
struct Decimal {
    std::array<std::uint32_t, 4> words{};
    bool negative = false;
    std::uint8_t scale = 0;
    bool operator==(const Decimal&) const = default;
};

/// Boolean: bool; Byte, Integer, Long: int64; Single: float; Double: double; Text, Memo: UTF-8 string;
/// Binary, OLE: bytes.
using Value = std::variant<Null, bool, std::int64_t, float, double, Currency, Date, std::string, ByteVector,
                           Guid, Decimal>;

inline bool IsNull(const Value& value) {
    return std::holds_alternative<Null>(value);
}

/// {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}, upper case.
std::string GuidText(const Guid& guid);
/// Decimal digits with exactly `scale` decimals, "-" if negative and not zero.
std::string DecimalText(const Decimal& decimal);

}  // namespace tavrel::jet
