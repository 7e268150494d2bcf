// Rows as stored: what a row holds when columns came and went after it was written, and rows that cannot be.
#include <numeric>

#include <gtest/gtest.h>

#include "jet/storage/RowLayout.h"
#include "support/DatabaseBuilder.h"

namespace tavrel::jet {
namespace {

using testing::ErrorOf;
using Fields = std::vector<std::optional<ByteVector>>;

ColumnPlace Fixed(std::uint16_t number, std::uint16_t variablesBefore, std::uint16_t offset,
                  std::uint16_t length) {
    return {number, true, false, variablesBefore, offset, length};
}
ColumnPlace Variable(std::uint16_t number, std::uint16_t index) {
    return {number, false, false, index, 0, 100};
}
ColumnPlace Boolean(std::uint16_t number, std::uint16_t variablesBefore) {
    return {number, true, true, variablesBefore, 0, 1};
}

/// The fields of a row; nothing for null.
Fields Read(const RowShape& shape, const ByteVector& row) {
    const RowView view(shape, row);
    Fields fields;
    for (std::size_t i = 0; i < shape.Columns().size(); ++i) {
        const std::optional<ByteView> field = view.Field(i);
        fields.push_back(field ? std::optional(ByteVector(field->begin(), field->end())) : std::nullopt);
    }
    return fields;
}

// A Long, two texts, a Boolean, a Long: numbers in the order of creation.
const RowShape kShape({Fixed(0, 0, 0, 4), Variable(1, 0), Boolean(2, 1), Variable(3, 1), Fixed(4, 2, 4, 4)},
                      5, 2);

TEST(RowLayoutTest, RowsReadBackAsTheyWereBuilt) {
    const Fields cases[] = {
        {ByteVector{1, 2, 3, 4}, ByteVector{5, 6}, ByteVector{1}, ByteVector{7}, ByteVector{8, 9, 10, 11}},
        {std::nullopt, std::nullopt, ByteVector{0}, std::nullopt, std::nullopt},
        {ByteVector{1, 2, 3, 4}, ByteVector{}, ByteVector{0}, std::nullopt,
         std::nullopt},  // empty is not null
    };
    for (const Fields& fields : cases) {
        EXPECT_EQ(Read(kShape, BuildRow(kShape, fields)), fields);
    }
}

TEST(RowLayoutTest, ARowOfARealFile) {
    const RowShape shape({Fixed(0, 0, 0, 4), Variable(1, 0), Fixed(2, 1, 4, 4)}, 3, 1);
    const ByteVector row = {3, 0, 0x11, 0, 0, 0, 0, 0, 0, 0, 0x73, 0x6F, 0x0C, 0, 0x0A, 0, 1, 0, 7};
    EXPECT_EQ(Read(shape, row),
              (Fields{ByteVector{0x11, 0, 0, 0}, ByteVector{0x73, 0x6F}, ByteVector{0, 0, 0, 0}}));
    EXPECT_EQ(BuildRow(shape, Read(shape, row)), row);
}

TEST(RowLayoutTest, ARowOlderThanColumnsHasNullsInThem) {
    const RowShape young({Fixed(0, 0, 0, 4), Variable(1, 0)}, 2, 1);
    const ByteVector row = BuildRow(young, {ByteVector{1, 2, 3, 4}, ByteVector{9}});
    EXPECT_EQ(Read(kShape, row),
              (Fields{ByteVector{1, 2, 3, 4}, ByteVector{9}, ByteVector{0}, std::nullopt, std::nullopt}));
}

TEST(RowLayoutTest, ARowOlderThanTheFirstVariableColumnHasNoOffsetTable) {
    const RowShape young({Fixed(0, 0, 0, 4)}, 1, 0);
    const ByteVector row = BuildRow(young, {ByteVector{1, 2, 3, 4}});
    EXPECT_EQ(row, (ByteVector{1, 0, 1, 2, 3, 4, 1}));
    const RowView view(kShape, row);
    EXPECT_FALSE(view.HasOffsets());
    EXPECT_EQ(Read(kShape, row)[0], (ByteVector{1, 2, 3, 4}));
    EXPECT_EQ(Read(kShape, row)[1], std::nullopt);
}

/// The columns on both sides of the border were dropped: a Long 0, [1 dropped], a text 2 with index 1.
TEST(RowLayoutTest, WhereColumnsWereDroppedTheBytesTellWhetherThereIsAnOffsetTable) {
    const RowShape shape({Fixed(0, 0, 0, 4), Variable(2, 1)}, 3, 2);
    EXPECT_EQ(shape.Bounds(2).low, 0U);
    EXPECT_EQ(shape.Bounds(2).high, 1U);
    const ByteVector without = {2, 0, 1, 0, 0, 0, 3};
    const ByteVector with = {2, 0, 1, 0, 0, 0, 0x41, 7, 0, 6, 0, 1, 0, 3};
    EXPECT_FALSE(RowView(shape, without).HasOffsets());
    EXPECT_TRUE(RowView(shape, with).HasOffsets());
    EXPECT_EQ(Read(shape, without), (Fields{ByteVector{1, 0, 0, 0}, std::nullopt}));
    EXPECT_EQ(Read(shape, with), (Fields{ByteVector{1, 0, 0, 0}, std::nullopt}));
}

TEST(RowLayoutTest, AGapBeforeTheOffsetTableIsNoDamage) {
    const RowShape shape({Variable(0, 0)}, 1, 1);
    const ByteVector row = {1, 0, 0x41, 0x42, 0xEE, 0xEE, 4, 0, 2, 0, 1, 0, 1};
    EXPECT_EQ(Read(shape, row), Fields{(ByteVector{0x41, 0x42})});
}

TEST(RowLayoutTest, ImpossibleRowsAreRefused) {
    const RowShape shape({Fixed(0, 0, 0, 4), Variable(1, 0)}, 2, 1);
    const struct {
        const char* what;
        ByteVector row;
    } cases[] = {
        {"nothing", {}},
        {"half a count", {2}},
        {"no mask", {0xFF, 0}},
        {"no offset table", {2, 0, 3}},
        {"offset table longer than the row", {2, 0, 1, 2, 3, 4, 7, 0, 6, 0, 0xFF, 0xFF, 3}},
        {"value behind the offset table", {2, 0, 1, 2, 3, 4, 9, 0xFF, 0, 6, 0, 1, 0, 3}},
        {"end before the start", {2, 0, 1, 2, 3, 4, 9, 5, 0, 7, 0, 1, 0, 3}},
        {"value in the column count", {2, 0, 1, 2, 3, 4, 9, 7, 0, 1, 0, 1, 0, 3}},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(ErrorOf([&] { Read(shape, test.row); }), errors::kDamaged) << test.what;
    }
    const RowShape far({Fixed(0, 0, 40, 4)}, 1, 0);
    EXPECT_EQ(ErrorOf([&] { Read(far, {1, 0, 1, 2, 3, 4, 1}); }), errors::kDamaged);
    EXPECT_EQ(Read(far, {1, 0, 1, 2, 3, 4, 0}), Fields{std::nullopt});  // a null is nowhere
}

/// A definition from a damaged file never makes a row that is written behind its end.
TEST(RowLayoutTest, ColumnsWithoutAPlaceAreRefused) {
    const std::pair<RowShape, ByteVector> cases[] = {
        {RowShape({Fixed(3000, 0, 0, 4)}, 1, 0), ByteVector(4)},  // bit behind the mask
        {RowShape({Variable(3000, 0)}, 1, 1), ByteVector(4)},
        {RowShape({Variable(0, 3000)}, 1, 1), ByteVector(4)},      // behind the offsets
        {RowShape({Fixed(0, 0, 0, 3000)}, 1, 0), ByteVector(4)}};  // longer than its value
    for (const auto& [shape, value] : cases) {
        EXPECT_EQ(ErrorOf([&, &its = shape, &bytes = value] { BuildRow(its, {bytes}); }), errors::kDamaged);
    }
}

TEST(RowLayoutTest, ARowFillsAPageAtMost) {
    const RowShape shape({Variable(0, 0)}, 1, 1);
    constexpr std::size_t kAround = 2 + 2 + 2 + 2 + 1;  // count, end, offset, number, mask
    EXPECT_EQ(BuildRow(shape, {ByteVector(4080 - kAround)}).size(), 4080U);
    EXPECT_EQ(ErrorOf([&] { BuildRow(shape, {ByteVector(4081 - kAround)}); }), errors::kRecordTooLarge);
}

}  // namespace
}  // namespace tavrel::jet
