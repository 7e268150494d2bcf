// Columns of the result grid and what belongs to each: one table, from which every reader takes its facts.
//
// Side A has columns 1 to 11, side B columns 13 to 23 in the same order, the compare column 12 lies between.
// Column 0 shows the row numbers.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace tavrel::grid {

/// Windows colour value, 0x00BBGGRR.
using Colour = std::uint32_t;

constexpr Colour Rgb(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return red | green << 8 | blue << 16;
}

inline constexpr int kColumnCount = 23;
inline constexpr int kSideColumns = 11;
inline constexpr int kCompareColumn = 12;
/// Column of side B minus the same column of side A.
inline constexpr int kSideBOffset = 12;

/// Columns of one side, for side A; side B's are kSideBOffset further.
namespace cell {
inline constexpr int kTable = 1;
inline constexpr int kPrimary = 2;
inline constexpr int kForeign = 3;
inline constexpr int kIndexed = 4;
inline constexpr int kField = 5;
inline constexpr int kType = 6;
inline constexpr int kSize = 7;
inline constexpr int kDefault = 8;
inline constexpr int kNull = 9;
inline constexpr int kZeroLength = 10;
inline constexpr int kKey = 11;
}  // namespace cell

/// Rows of the header, as the operations that take a row name them.
inline constexpr int kTopHeaderRow = -1000;
inline constexpr int kCaptionHeaderRow = -999;

struct ColumnLayout {
    std::string_view caption;  ///< text of the second header row
    double width;              ///< grid units (characters)
    bool hidden;
    Colour back;
    Colour text;
};

/// REQUIRES: 0 <= column <= kColumnCount.
const ColumnLayout& LayoutOf(int column);

namespace colours {
inline constexpr Colour kWhite = Rgb(255, 255, 255);
inline constexpr Colour kBlack = Rgb(0, 0, 0);
inline constexpr Colour kCompareBack = Rgb(128, 255, 255);
inline constexpr Colour kRed = Rgb(255, 0, 0);           ///< differing cells, text of the compare column
inline constexpr Colour kOneSided = Rgb(192, 192, 255);  ///< field name of a row that one side has alone
}  // namespace colours

}  // namespace tavrel::grid
