// Columns of the result grid and what belongs to each: one table, from which every reader takes its facts.
//
// Side A has columns 1 to 11, side B columns 13 to 23 in the same order, the compare column 12 lies between.
// Column 0 shows the row numbers.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "grid/CellRoles.h"

namespace tavrel::grid {

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

enum class Align : std::uint8_t { Left, Centre, Right };

/// All that is known of a column, for the window and for the reports.
struct ColumnLayout {
    std::string_view caption;     ///< text of the second header row
    std::string_view name;        ///< of the cell in reports; empty: reports leave the column out
    double width;                 ///< in the window, grid units (characters)
    int share;                    ///< of a page's width
    Align align;                  ///< right only where digits stand
    bool ofIndexes = false;       ///< compared, too, when only indexes are
    int freeShare = 0;            ///< of the room that the window has over; 0: takes none
    std::string_view usual = {};  ///< a common text that is longer than the caption
    bool hidden = false;
    CellRole role = CellRole::Plain;  ///< of a cell without mark
};

/// Columns 1 to 11, and 13 to 23.
inline constexpr std::array<ColumnLayout, kSideColumns> kSideLayout = {{
    {.caption = "테이블명",
     .name = "table",
     .width = 11,
     .share = 12,
     .align = Align::Left,
     .ofIndexes = true,
     .freeShare = 4},
    {.caption = "P", .name = "P", .width = 2, .share = 2, .align = Align::Centre, .ofIndexes = true},
    {.caption = "F", .name = "F", .width = 2, .share = 2, .align = Align::Centre, .ofIndexes = true},
    {.caption = "I", .name = "I", .width = 2, .share = 2, .align = Align::Centre, .ofIndexes = true},
    {.caption = "필드명",
     .name = "field",
     .width = 12,
     .share = 13,
     .align = Align::Left,
     .ofIndexes = true,
     .freeShare = 4},
    {.caption = "Type", .name = "type", .width = 6, .share = 8, .align = Align::Left, .usual = "Currency"},
    {.caption = "Size", .name = "size", .width = 3, .share = 5, .align = Align::Right},
    {.caption = "Def",
     .name = "def",
     .width = 3,
     .share = 6,
     .align = Align::Left,
     .freeShare = 2,
     .usual = "False"},
    {.caption = "Null", .name = "null", .width = 3, .share = 5, .align = Align::Centre},
    {.caption = "Zro", .name = "zro", .width = 3, .share = 4, .align = Align::Centre},
    {.caption = "RKEY", .name = "", .width = 0, .share = 0, .align = Align::Centre, .hidden = true},
}};
inline constexpr ColumnLayout kRowNumberLayout = {
    .caption = "", .name = "", .width = 5, .share = 4, .align = Align::Centre};
inline constexpr ColumnLayout kCompareLayout = {.caption = "비교",
                                                .name = "",
                                                .width = 4.75,
                                                .share = 6,
                                                .align = Align::Centre,
                                                .role = CellRole::Compare};

/// The columns of a side, from the first on, that a comparison of indexes looks at.
inline constexpr int kIndexColumns =
    static_cast<int>(std::ranges::count(kSideLayout, true, &ColumnLayout::ofIndexes));
static_assert(std::ranges::is_partitioned(kSideLayout, &ColumnLayout::ofIndexes),
              "a comparison looks at the first columns, however many they are");

/// REQUIRES: 0 <= column <= kColumnCount.
constexpr const ColumnLayout& LayoutOf(int column) {
    if (column == 0) {
        return kRowNumberLayout;
    }
    if (column == kCompareColumn) {
        return kCompareLayout;
    }
    const int place = column < kCompareColumn ? column : column - kSideBOffset;
    return kSideLayout[static_cast<std::size_t>(place - 1)];
}

}  // namespace tavrel::grid
