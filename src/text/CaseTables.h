// Unicode's case data as ranges, all in ascending order.
#pragma once

#include <cstdint>
#include <span>

namespace tavrel::text {

/// Every step-th code point from first to last (included) lies `delta` before its other case.
struct CaseRange {
    char32_t first;
    char32_t last;
    std::int32_t delta;
    std::uint32_t step;
};

/// Simple mappings, one character for one.
std::span<const CaseRange> UpperRanges();
std::span<const CaseRange> LowerRanges();

// The code points at which a property turns on, off, on again …
/// Cased letters, without those that are case-ignorable too.
std::span<const char32_t> CasedBoundaries();
/// Characters that the final-sigma rule looks through.
std::span<const char32_t> CaseIgnorableBoundaries();

}  // namespace tavrel::text
