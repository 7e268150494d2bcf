// What characters weigh in text index keys, as rows.  The tables themselves are generated: TextWeights.cpp.
//
// A sort order's rows are laid over the common ones.  Looking up is the work of Collation.
#pragma once

#include <cstdint>
#include <span>

namespace tavrel::jet {

inline constexpr std::uint8_t kNoMark = 2;

enum class WeightKind : std::uint8_t {
    Normal,      ///< one weight: `primary`, one byte when below 0x100, else two
    Expansion,   ///< two weights of one byte each: the bytes of `primary`
    Positional,  ///< no weight; `primary` goes into the positional section
    Unknown      ///< hides the common row
};

struct TextWeight {
    char16_t unit = 0;
    std::uint16_t primary = 0;
    std::uint8_t mark = kNoMark;  ///< diacritic value
    WeightKind kind = WeightKind::Normal;
};

/// Units whose two-byte weights run on with the code, 254 to a first byte: 02..FF.
struct WeightRange {
    char16_t first, last;
    std::uint16_t primary;  ///< of `first`
};

struct UnitRange {
    char16_t first, last;
};

/// Two units with one weight.
struct Contraction {
    char16_t first, second;
    std::uint16_t primary;  ///< 0 = not known
    std::uint8_t mark = kNoMark;
};

struct SortOrderRows {
    std::uint16_t sortOrder;  ///< LCID; 0 = the common rows
    std::span<const TextWeight> weights;
    std::span<const WeightRange> ranges;
    std::span<const UnitRange> unknown;
    std::span<const Contraction> contractions;
};

extern const SortOrderRows kCommonRows;
/// The sort orders whose weights are known, ascending.
std::span<const SortOrderRows> KnownSortOrders();

}  // namespace tavrel::jet
