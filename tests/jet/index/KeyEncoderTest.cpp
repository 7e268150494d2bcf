// Keys against those that stand in real files, and rules that follow from them.
#include <string>

#include <gmock/gmock.h>

#include "jet/index/KeyEncoder.h"
#include "jet/storage/FileHeader.h"
#include "jet/storage/TextCoding.h"

namespace tavrel::jet {
namespace {

std::string Hex(ByteView bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

std::string TextKey(std::u16string_view text, std::uint16_t sortOrder, bool ascending = true) {
    const auto key = EncodeTextKey(text, sortOrder, ascending);
    return key ? Hex(*key) : "unknown";
}

struct TextCase {
    std::uint16_t sortOrder;
    std::u16string_view text;
    std::string_view key;
};

constexpr TextCase kStoredKeys[] = {
    {0x0409, u"", "7f0100"},
    {0x0412, u"", "7f0100"},
    {0x0409, u"MSysObjects", "7f606b766b644c5b514d6d6b0100"},
    {0x0804, u"MSysObjects", "7f606b766b644c5b514d6d6b0100"},
    {0x0412, u"MSysObjects", "7fd2dde8ddd6becdc3bfdfdd0100"},
    {0x0409, u"ID_Type", "7f594f2b036d7666510100"},
    {0x0409, u"09-00078", "7f3648363636444601010101800f068200"},
    {0x0409, u"Glass Cupboard  6' x 3'",
     "7f555e4a6b6b074d6f664c644a694f0707420775073c01010101804b0680805b068000"},
    {0x0409, u"Köln", "7f5c645e6201021300"},
    {0x0409, u"Forêts d'érables", "7f536469516d6b074f51694a4c5e516b0102020212020202020e0101018027068000"},
    {0x0409, u"Heli Süßwaren GmbH & Co. KG",
     "7f57515e59076b6f6b6b734a6951620755604c570712074d641c075c55010202020202021300"},
    {0x0409, u"\u0003DirData", "7f4f59694f4a6d4a010101018007060500"},
    {0x0409, u"завтрак", "7f7939792f7931794a7948792f79400100"},
    {0x0412, u"건전지A2", "7f4a7766f268b2bc3a0100"},
    {0x0412, u"흰우유(중)", "7f768d658965f9146803160100"},
    {0x0412, u"한우200g", "7f747565893a3636c70100"},
    {0x0804, u"查询1", "7f8609c628380100"},
    {0x0804, u"金庄园－丽景城", "7f9cd7d31fcd3aa3d09d6c878e010101018013068200"},
    {0x0804, u"东门①", "7f8d2aa9d238010202ee00"},
    {0x041A, u"Džakula", "7f50044a5c6f5e4a010400"},
    {0x041F, u"SATISLAR", "7f6b4a6d58066b5e4a690100"},
    {0x0C0A, u"INVCANCEL_AÑO", "7f5962714d4a624d515e2b034a6304640100"},
    // The ends of the Hangul line.
    {0x0412, u"가", "7f4a030100"},
    {0x0412, u"힣", "7f76c00100"},
};

TEST(TextKeyTest, EqualsStoredKeys) {
    for (const TextCase& c : kStoredKeys) {
        EXPECT_EQ(TextKey(c.text, c.sortOrder), c.key) << std::hex << c.sortOrder;
    }
    EXPECT_EQ(TextKey(u"1401300057", 0x0409, false), "80c7c1c9c7c3c9c9c9bfbbfeff00");
}

TEST(TextKeyTest, HangulSyllablesAscendBetweenDigitsAndLetters) {
    std::string last = TextKey(u"9", kSortKorean);
    for (char16_t syllable = 0xAC00; syllable <= 0xD7A3; ++syllable) {
        const std::string key = TextKey(std::u16string(1, syllable), kSortKorean);
        ASSERT_EQ(key.size(), 10U) << static_cast<int>(syllable);
        ASSERT_LT(last, key) << static_cast<int>(syllable);
        last = key;
    }
    EXPECT_LT(last, TextKey(u"A", kSortKorean));
}

TEST(TextKeyTest, OnlyEastAsianOrdersIgnoreWidth) {
    EXPECT_EQ(TextKey(u"Ａｂ２－（", kSortKorean), TextKey(u"aB2-(", kSortKorean));
    EXPECT_EQ(TextKey(u"Ａ", 0x0409), "unknown");
}

TEST(TextKeyTest, CaseAndTrailingSpacesDoNotCount) {
    EXPECT_EQ(TextKey(u"Agud  ", kSortGeneral), TextKey(u"aGUD", kSortGeneral));
    EXPECT_NE(TextKey(u" Agud", kSortGeneral), TextKey(u"Agud", kSortGeneral));
    EXPECT_EQ(TextKey(u"   ", kSortGeneral), "7f0100");
    EXPECT_EQ(TextKey(u"Ñ", 0x0C0A), TextKey(u"ñ", 0x0C0A));
    EXPECT_EQ(TextKey(u"lJ", 0x041A), TextKey(u"Lj", 0x041A));
    EXPECT_NE(TextKey(u"lj", 0x041A), TextKey(u"lj", kSortGeneral));
}

TEST(TextKeyTest, UnknownWeightsGiveNothing) {
    static const TextCase kCases[] = {
        {0x0409, u"가", ""},            // Hangul is known in the Korean order only
        {0x0412, u"A\u3131", ""},       // a letter by itself
        {0x0412, u"завтрак", ""},       // weights of the general order
        {0x0404, u"\u304B", ""},        // kana
        {0x0409, u"\xD83D\xDE00", ""},  // beyond the basic plane
        {0x0409, u"a\xD800", ""},       // half a pair
        {0x040A, u"chico", ""},         // a pair that has a weight of its own, not known which
        {0x040C, u"é", ""},             // a common row that this order hides
        {0x0407, u"A", ""},             // nothing known of the order
        {0x0000, u"", ""},
    };
    for (const TextCase& c : kCases) {
        EXPECT_EQ(TextKey(c.text, c.sortOrder), "unknown") << std::hex << c.sortOrder;
    }
    EXPECT_NE(TextKey(u"cico", 0x040A), "unknown");
    EXPECT_NE(TextKey(u"é", kSortGeneral), "unknown");
    EXPECT_FALSE(IsKnownSortOrder(0x0407));
    EXPECT_TRUE(IsKnownSortOrder(kSortKorean));
}

TEST(TextKeyTest, PositionalCharacterBeyondTheFieldIsUnknown) {
    const std::u16string reach(8190, u'a');
    EXPECT_NE(TextKey(reach + u"-", kSortGeneral), "unknown");
    EXPECT_EQ(TextKey(reach + u"a-", kSortGeneral), "unknown");
}

Column ColumnOf(ColumnType type) {
    Column column;
    column.type = type;
    column.sortOrder = kSortGeneral;
    return column;
}

struct ValueCase {
    ColumnType type;
    ByteVector stored;
    std::string_view key;
};

ByteVector DoubleBytes(double value) {
    ByteVector bytes;
    AppendU64(bytes, BitsOf(value));
    return bytes;
}

TEST(KeyEncoderTest, ValuesOfEveryType) {
    const ByteVector guid{0xB7, 0x93, 0x00, 0xF1, 0xFE, 0x9D, 0x47, 0x47,
                          0x9E, 0x5B, 0xAB, 0x1E, 0x07, 0x70, 0xBB, 0x97};
    const ValueCase cases[] = {
        {ColumnType::Boolean, {1}, "7f00"},
        {ColumnType::Boolean, {0}, "7fff"},
        {ColumnType::Byte, {0x9C}, "7f9c"},
        {ColumnType::Integer, {0xFE, 0xFF}, "7f7ffe"},
        {ColumnType::Long, {17, 0, 0, 0}, "7f80000011"},
        {ColumnType::Long, {0, 0, 0, 0x80}, "7f00000000"},
        {ColumnType::Currency, {0x10, 0x27, 0, 0, 0, 0, 0, 0}, "7f8000000000002710"},
        {ColumnType::Single, {0, 0, 0x80, 0x3F}, "7fbf800000"},
        {ColumnType::Single, {0, 0, 0x80, 0xBF}, "7f407fffff"},
        {ColumnType::Double, DoubleBytes(1), "7fbff0000000000000"},
        {ColumnType::Double, DoubleBytes(0), "7f8000000000000000"},
        {ColumnType::Date, DoubleBytes(-1), "7f400fffffffffffff"},
        {ColumnType::Binary, {0, 0, 0, 6}, "7f000000060000000004"},
        {ColumnType::Binary, {}, "7f000000000000000000"},
        {ColumnType::Binary, {1, 2, 3, 4, 5, 6, 7, 8}, "7f010203040506070808"},
        {ColumnType::Binary, {1, 2, 3, 4, 5, 6, 7, 8, 9}, "7f010203040506070809090000000000000001"},
        {ColumnType::Guid, guid, "7ff10093b79dfe4747099e5bab1e0770bb9708"},
        {ColumnType::Numeric,
         {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xE0, 0x22, 2, 0},
         "7fff000000000000000000000000000222e0"},
        {ColumnType::Numeric,
         {0x80, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0},
         "7f00fefffffffffffffffffffffffffffffd"},
        {ColumnType::Text, PlainText(u"ID_Type"), "7f594f2b036d7666510100"},
        {ColumnType::Memo, PlainText(u"ID_Type"), "7f594f2b036d7666510100"},
    };
    for (const ValueCase& c : cases) {
        const Column column = ColumnOf(c.type);
        const auto key = EncodeKeyColumn(column, ByteView(c.stored), true);
        ASSERT_TRUE(key) << c.key;
        EXPECT_EQ(Hex(*key), c.key);
        ByteVector inverted(*key);
        for (std::uint8_t& byte : inverted) {
            byte ^= 0xFF;
        }
        if (IsText(c.type)) {
            inverted.push_back(0);
        }
        EXPECT_EQ(EncodeKeyColumn(column, ByteView(c.stored), false), inverted) << c.key;
    }
}

TEST(KeyEncoderTest, NullsAndWhatCannotBeAKey) {
    const Column column = ColumnOf(ColumnType::Long);
    EXPECT_EQ(EncodeKeyColumn(column, std::nullopt, true), ByteVector{0x00});
    EXPECT_EQ(EncodeKeyColumn(column, std::nullopt, false), ByteVector{0xFF});
    const ByteVector three(3);
    EXPECT_THROW(EncodeKeyColumn(column, ByteView(three), true), Error);
    EXPECT_EQ(EncodeKeyColumn(ColumnOf(ColumnType::Ole), ByteView(three), true), std::nullopt);
}

}  // namespace
}  // namespace tavrel::jet
