// Usage maps and long values on hand-made pages, sound and damaged.
#include <gtest/gtest.h>

#include "jet/storage/DataPage.h"
#include "jet/storage/LongValue.h"
#include "jet/storage/UsageMap.h"
#include "support/DatabaseBuilder.h"
#include "support/MemoryFile.h"

namespace tavrel::jet {
namespace {

using testing::ErrorOf;

class StoredPages : public ::testing::Test {
  protected:
    static constexpr PageNumber kPages = 20;

    StoredPages() : pager_(std::make_unique<PageFile>(std::make_unique<testing::MemoryFile>(), 0)) {
        for (PageNumber page = 0; page < kPages; ++page) {
            DataPageEditor(pager_.Fresh(page)).Format(kOwnerLongValues);
        }
    }

    RowPointer Put(PageNumber page, const ByteVector& row, std::uint16_t flags = 0) {
        return {page, DataPageEditor(pager_.Write(page)).Append(row, flags)};
    }

    Pager pager_;
};

class UsageMapTest : public StoredPages {
  protected:
    RowPointer PutBitmaps(const std::vector<PageNumber>& bitmaps) {
        ByteVector row(kMapRowBytes, 0);
        row[0] = 1;
        for (std::size_t i = 0; i < bitmaps.size(); ++i) {
            PutU32(row, 1 + 4 * i, bitmaps[i]);
        }
        return Put(1, row);
    }
    void MakeBitmap(PageNumber page) {
        Page& bytes = pager_.Fresh(page);
        bytes[0] = kPageTypeMap;
        bytes[1] = 1;
    }
};

TEST_F(UsageMapTest, InlineMapsCountFromTheirFirstPage) {
    ByteVector row(kMapRowBytes, 0);
    PutU32(row, 1, 400);
    row[5] = 0x81;
    row[kMapRowBytes - 1] = 0x80;
    const UsageMap map = ReadUsageMap(pager_, Put(1, row), 10000);
    EXPECT_EQ(map.pages, (std::vector<PageNumber>{400, 407, 911}));
    EXPECT_EQ(map.capacity, 912U);
    EXPECT_TRUE(map.bitmapPages.empty());
    EXPECT_EQ(ReadUsageMap(pager_, {1, 0}, 407).pages, std::vector<PageNumber>{400});
}

TEST_F(UsageMapTest, EachBitmapPageCoversItsOwnRange) {
    MakeBitmap(5);
    MakeBitmap(7);
    pager_.Write(5)[4] = 0x04;
    pager_.Write(7)[kPageSize - 1] = 0x80;
    const UsageMap map = ReadUsageMap(pager_, PutBitmaps({5, 0, 7}), 1U << 30);
    EXPECT_EQ(map.pages, (std::vector<PageNumber>{2, 3 * kMapPagesPerBitmap - 1}));
    EXPECT_EQ(map.bitmapPages, (std::vector<PageNumber>{5, 7}));
    EXPECT_EQ(map.capacity, 3 * std::uint64_t{kMapPagesPerBitmap});
}

TEST_F(UsageMapTest, DamagedMapsAreRefused) {
    const RowPointer cases[] = {
        PutBitmaps({3}),          // a data page
        PutBitmaps({kPages}),     // outside the file
        Put(1, {7, 0, 0, 0, 0}),  // a kind that is not known
        Put(1, {0, 1, 2}),        // too short for its first page
        {1, 200},                 // no such row
        {kPages, 0},              // no such page
    };
    for (const RowPointer at : cases) {
        EXPECT_EQ(ErrorOf([&] { ReadUsageMap(pager_, at); }), errors::kDamaged)
            << at.page << ":" << int{at.row};
    }
}

TEST_F(UsageMapTest, ARowIsFollowedOverOneMove) {
    const RowPointer target = Put(2, {9, 9}, kSlotHidden);
    ByteVector pointer(4);
    PutU32(pointer, 0, target.ToU32());
    const RowPointer moved = Put(1, pointer, kSlotMoved);
    EXPECT_EQ(ReadRowAt(pager_, moved), (ByteVector{9, 9}));
    PutU32(pointer, 0, moved.ToU32());
    const RowPointer twice = Put(1, pointer, kSlotMoved);
    EXPECT_EQ(ErrorOf([&] { ReadRowAt(pager_, twice); }), errors::kDamaged);
}

class LongValueTest : public StoredPages {
  protected:
    static ByteVector Descriptor(std::uint32_t kind, std::uint32_t length, RowPointer at,
                                 const ByteVector& tail = {}) {
        ByteVector bytes;
        AppendU32(bytes, kind | length);
        AppendU32(bytes, at.ToU32());
        AppendU32(bytes, 0);
        AppendBytes(bytes, tail);
        return bytes;
    }
    /// A part of a chain on its own page.
    RowPointer PutPart(PageNumber page, RowPointer next, std::size_t data) {
        ByteVector row;
        AppendU32(row, next.ToU32());
        row.insert(row.end(), data, static_cast<std::uint8_t>(page));
        return Put(page, row);
    }
};

TEST_F(LongValueTest, InTheRowInARowAndInAChain) {
    EXPECT_EQ(ReadLongValue(pager_, Descriptor(kLongInline, 3, {}, {1, 2, 3})), (ByteVector{1, 2, 3}));
    EXPECT_EQ(ReadLongValue(pager_, Descriptor(kLongInline, 0, {})), ByteVector());
    EXPECT_EQ(ReadLongValue(pager_, Descriptor(kLongOneRow, 200, Put(3, ByteVector(200, 7)))),
              ByteVector(200, 7));
    const RowPointer last = PutPart(5, {}, 10);
    ByteVector value = ReadLongValue(pager_, Descriptor(0, 4072 + 10, PutPart(4, last, 4072)));
    EXPECT_EQ(value.size(), 4082U);
    EXPECT_EQ(value[4071], 4);
    EXPECT_EQ(value[4072], 5);
}

TEST_F(LongValueTest, DamagedValuesAreRefused) {
    constexpr std::uint32_t kUnknownKind = 0xC0000000;
    const RowPointer row = Put(3, ByteVector(50, 7));
    const RowPointer deleted = Put(3, ByteVector(50, 7), kSlotDeleted);
    const RowPointer circle = PutPart(6, {6, 0}, 100);
    const RowPointer broken = PutPart(7, {8, 200}, 100);
    const RowPointer empty = PutPart(9, PutPart(10, {}, 100), 0);
    const RowPointer shortChain = PutPart(11, {}, 100);
    const struct {
        const char* what;
        ByteVector descriptor;
    } cases[] = {
        {"descriptor cut", {1, 0, 0, 0x40, 0, 0}},
        {"unknown kind", Descriptor(kUnknownKind, 10, row)},
        {"in the row, too short", Descriptor(kLongInline, 5, {}, {1, 2})},
        {"row too short", Descriptor(kLongOneRow, 51, row)},
        {"row deleted", Descriptor(kLongOneRow, 50, deleted)},
        {"no such row", Descriptor(kLongOneRow, 50, {3, 99})},
        {"no such page", Descriptor(kLongOneRow, 50, {kPages, 0})},
        {"chain too short", Descriptor(0, 101, shortChain)},
        {"chain broken", Descriptor(0, 200, broken)},
        {"chain part empty", Descriptor(0, 100, empty)},
        {"chain in a circle", Descriptor(0, kLongLengthMask, circle)},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(ErrorOf([&] { ReadLongValue(pager_, test.descriptor); }), errors::kDamaged) << test.what;
    }
}

}  // namespace
}  // namespace tavrel::jet
