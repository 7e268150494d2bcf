// Texts as stored, compressed or not.
#include <gtest/gtest.h>

#include "jet/storage/TextCoding.h"
#include "support/DatabaseBuilder.h"

namespace tavrel::jet {
namespace {

const ByteVector kTurkish = {0xFF, 0xFE, 0x53, 0x6F, 0x00, 0x1F, 0x01, 0x00,
                             0x75, 0x6B, 0x20, 0x00, 0x30, 0x01, 0x00, 0xE7};

TEST(TextCodingTest, StoredBytesBecomeText) {
    const struct {
        ByteVector stored;
        std::string text;
    } cases[] = {
        {{}, ""},
        {{0x41, 0, 0x42, 0}, "AB"},
        {{0x5C, 0xD5, 0x00, 0xAE}, "한글"},
        {{0x3D, 0xD8, 0x00, 0xDE}, "😀"},
        {{0x3D, 0xD8}, "\xED\xA0\xBD"},  // half a pair keeps its own form
        {{0xFF, 0xFE}, ""},
        {{0xFF, 0xFE, 0x41, 0x42, 0x43}, "ABC"},
        {kTurkish, "Soğuk İç"},
        {{0xFF, 0xFE, 0x00, 0x5C, 0xD5, 0x00, 0x41}, "한A"},
        {{0xFF, 0xFE, 0x41, 0x00}, "A"},        // a switch with nothing behind it
        {{0xFF, 0xFE, 0x00, 0x00, 0x41}, "A"},  // to and fro
    };
    for (const auto& test : cases) {
        EXPECT_EQ(DecodeText(test.stored), test.text);
    }
}

TEST(TextCodingTest, HalfACharacterIsDamage) {
    for (const ByteVector& stored :
         {ByteVector{0x41}, ByteVector{0x41, 0, 0x42}, ByteVector{0xFF, 0xFE, 0, 0x55}}) {
        EXPECT_EQ(testing::ErrorOf([&] { DecodeText(stored); }), errors::kDamaged);
        EXPECT_EQ(testing::ErrorOf([&] { DecodeUnits(stored); }), errors::kDamaged);
    }
}

TEST(TextCodingTest, TextsAreCompressedWhereTheEngineWouldDoIt) {
    constexpr auto kColumn = TextKind::Column;
    constexpr auto kMemo = TextKind::Memo;
    const struct {
        std::u16string text;
        bool compress;
        TextKind kind;
        std::size_t bytes;
    } cases[] = {
        {u"", true, kColumn, 0},
        {u"ab", true, kColumn, 4},  // two characters: never
        {u"abc", true, kColumn, 5},
        {u"abc", false, kColumn, 6},
        {u"한글자", true, kColumn, 6},  // 9 compressed
        {u"abc한de", true, kColumn, 11},
        {u"a한b한cdef", true, kColumn, 16},  // just as long: columns yes, memos no
        {u"a한b한cdef", true, kMemo, 16},
        {u"abcĀ", true, kColumn, 8},  // low byte 0 cannot be expressed
        {std::u16string(u"ab\0c", 4), true, kColumn, 8},
    };
    for (const auto& test : cases) {
        const ByteVector stored = StoreText(test.text, test.compress, test.kind);
        EXPECT_EQ(stored.size(), test.bytes);
        EXPECT_EQ(DecodeUnits(stored), test.text);
    }
    EXPECT_NE(StoreText(u"a한b한cdef", true, kColumn), StoreText(u"a한b한cdef", true, kMemo));
    EXPECT_EQ(StoreText(DecodeUnits(kTurkish), true, kColumn).size(), 16U);
}

}  // namespace
}  // namespace tavrel::jet
