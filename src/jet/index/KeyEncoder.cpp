#include "jet/index/KeyEncoder.h"

#include <algorithm>

#include "jet/storage/TextCoding.h"

namespace tavrel::jet {

namespace {

constexpr std::uint8_t kNull = 0x00;
constexpr std::uint8_t kNotNull = 0x7F;
constexpr std::uint8_t kSignBit = 0x80;
constexpr std::size_t kGroupBytes = 8;
constexpr std::uint8_t kGroupFollows = 9;

std::uint8_t Inverted(std::uint8_t byte) {
    return static_cast<std::uint8_t>(~byte);
}

void Invert(std::span<std::uint8_t> bytes) {
    std::ranges::transform(bytes, bytes.begin(), Inverted);
}

void AppendReversed(ByteVector& out, ByteView bytes) {
    out.insert(out.end(), bytes.rbegin(), bytes.rend());
}

void AppendByte(ByteVector& key, ByteView value) {
    AppendBytes(key, value);
}

void AppendBoolean(ByteVector& key, ByteView value) {
    AppendU8(key, value[0] != 0 ? 0x00 : 0xFF);
}

void AppendInteger(ByteVector& key, ByteView value) {
    const std::size_t start = key.size();
    AppendReversed(key, value);
    key[start] ^= kSignBit;
}

void AppendFloat(ByteVector& key, ByteView value) {
    const std::size_t start = key.size();
    AppendReversed(key, value);
    if ((key[start] & kSignBit) != 0) {
        Invert(std::span(key).subspan(start));
    } else {
        key[start] ^= kSignBit;
    }
}

/// `value`: sign byte, then four little-endian words, highest first.
void AppendNumeric(ByteVector& key, ByteView value) {
    const bool negative = value[0] != 0;
    AppendU8(key, negative ? 0x00 : 0xFF);
    const std::size_t start = key.size();
    for (std::size_t word = 1; word < value.size(); word += 4) {
        AppendReversed(key, value.subspan(word, 4));
    }
    if (negative) {
        Invert(std::span(key).subspan(start));
    }
}

void AppendBinary(ByteVector& key, ByteView value) {
    do {
        const ByteView group = value.first(std::min(value.size(), kGroupBytes));
        value = value.subspan(group.size());
        AppendBytes(key, group);
        key.insert(key.end(), kGroupBytes - group.size(), 0);
        AppendU8(key, value.empty() ? static_cast<std::uint8_t>(group.size()) : kGroupFollows);
    } while (!value.empty());
}

void AppendGuid(ByteVector& key, ByteView value) {
    ByteVector text;
    AppendReversed(text, value.first(4));
    AppendReversed(text, value.subspan(4, 2));
    AppendReversed(text, value.subspan(6, 2));
    AppendBytes(text, value.subspan(8));
    AppendBinary(key, text);
}

struct TypeRule {
    ColumnType type;
    std::size_t length;  ///< of the stored value; 0 = any
    void (*append)(ByteVector& key, ByteView value);
};

constexpr TypeRule kTypeRules[] = {
    {ColumnType::Boolean, 1, AppendBoolean},  {ColumnType::Byte, 1, AppendByte},
    {ColumnType::Integer, 2, AppendInteger},  {ColumnType::Long, 4, AppendInteger},
    {ColumnType::Currency, 8, AppendInteger}, {ColumnType::Single, 4, AppendFloat},
    {ColumnType::Double, 8, AppendFloat},     {ColumnType::Date, 8, AppendFloat},
    {ColumnType::Binary, 0, AppendBinary},    {ColumnType::Guid, 16, AppendGuid},
    {ColumnType::Numeric, 17, AppendNumeric},
};

}  // namespace

bool AppendKeyColumn(ByteVector& key, const Column& column, const std::optional<ByteView>& stored,
                     bool ascending, UnknownWeights unknown) {
    if (!stored) {
        key.push_back(ascending ? kNull : Inverted(kNull));
        return true;
    }
    if (IsText(column.type)) {
        return AppendTextKey(key, DecodeUnits(*stored), column.sortOrder, ascending, unknown);
    }
    const auto rule = std::ranges::find(kTypeRules, column.type, &TypeRule::type);
    if (rule == std::end(kTypeRules)) {
        return false;
    }
    if (rule->length != 0 && stored->size() != rule->length) {
        ThrowDamaged("인덱스 필드 값의 길이가 형식과 다름");
    }
    const std::size_t begin = key.size();
    key.push_back(kNotNull);
    rule->append(key, *stored);
    if (!ascending) {
        Invert(std::span(key).subspan(begin));
    }
    return true;
}

std::optional<ByteVector> EncodeKeyColumn(const Column& column, const std::optional<ByteView>& stored,
                                          bool ascending, UnknownWeights unknown) {
    ByteVector key;
    return AppendKeyColumn(key, column, stored, ascending, unknown) ? std::optional(std::move(key))
                                                                    : std::nullopt;
}

}  // namespace tavrel::jet
