#include "grid/GridLayout.h"

namespace tavrel::grid {

namespace {

constexpr ColumnLayout Plain(std::string_view caption, double width) {
    return {caption, width, false, colours::kWhite, colours::kBlack};
}

constexpr std::array<ColumnLayout, kSideColumns> kSide = {{
    Plain("테이블명", 11),
    Plain("P", 2),
    Plain("F", 2),
    Plain("I", 2),
    Plain("필드명", 12),
    Plain("Type", 6),
    Plain("Size", 3),
    Plain("Def", 3),
    Plain("Null", 3),
    Plain("Zro", 3),
    {"RKEY", 0, true, colours::kWhite, colours::kBlack},
}};

constexpr ColumnLayout kRowNumbers = Plain("", 5);
constexpr ColumnLayout kCompare = {"비교", 4.75, false, colours::kCompareBack, colours::kRed};

}  // namespace

const ColumnLayout& LayoutOf(int column) {
    if (column == 0) {
        return kRowNumbers;
    }
    if (column == kCompareColumn) {
        return kCompare;
    }
    const int place = column < kCompareColumn ? column : column - kSideBOffset;
    return kSide[static_cast<std::size_t>(place - 1)];
}

}  // namespace tavrel::grid
