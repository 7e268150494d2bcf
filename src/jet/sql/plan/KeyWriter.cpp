#include "jet/sql/plan/KeyWriter.h"

#include <algorithm>

#include "jet/catalog/NumberConversion.h"
#include "jet/sql/values/DecimalArithmetic.h"

namespace tavrel::jet::sql {

namespace {

constexpr std::uint8_t kNull = 0x00;
constexpr std::uint8_t kNumber = 0x01;
constexpr std::uint8_t kText = 0x02;
constexpr std::uint8_t kBytes = 0x03;
constexpr std::uint8_t kGuid = 0x04;
constexpr std::uint64_t kSign = std::uint64_t{1} << 63;

void AppendOrdered(std::uint64_t bits, ByteVector& out) {
    std::array<std::uint8_t, 8> bytes;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(bits >> (56 - 8 * i));
    }
    out.insert(out.end(), bytes.begin(), bytes.end());
}

void AppendDouble(double number, ByteVector& out) {
    const std::uint64_t bits = BitsOf(number == 0 ? 0.0 : number);  // -0 is 0
    AppendOrdered((bits & kSign) != 0 ? ~bits : bits | kSign, out);
}

/// Tells decimals apart whose nearest doubles are the same; 1.50 and 1.5 stay equal.
void AppendExactly(const Decimal& decimal, ByteVector& out) {
    const std::string text = DecimalText(decimal);
    std::size_t end = text.size();
    if (text.find('.') != std::string::npos) {
        end = text.find_last_not_of('0') + 1;
        end -= text[end - 1] == '.' ? 1 : 0;
    }
    out.insert(out.end(), text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end));
    AppendU8(out, 0);
}

/// Groups of eight, each followed by how many of them count: 9 when another group follows.
void AppendBinary(ByteView bytes, ByteVector& out) {
    constexpr std::size_t kGroup = 8;
    while (bytes.size() > kGroup) {
        AppendBytes(out, bytes.first(kGroup));
        AppendU8(out, kGroup + 1);
        bytes = bytes.subspan(kGroup);
    }
    AppendBytes(out, bytes);
    out.insert(out.end(), kGroup - bytes.size(), 0);
    AppendU8(out, static_cast<std::uint8_t>(bytes.size()));
}

}  // namespace

KeyMode KeyModeOf(StaticType a, StaticType b) {
    if (a == b && a == ColumnType::Currency) {
        return KeyMode::Currency;
    }
    return a == b && a == ColumnType::Numeric ? KeyMode::Decimal : KeyMode::General;
}

void AppendKey(const Value& value, KeyMode mode, const TextComparer& texts, ByteVector& out) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        AppendU8(out, kNumber);
        AppendDouble(static_cast<double>(*whole), out);
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        AppendU8(out, kText);
        texts.AppendKey(*text, out);
    } else if (IsNull(value)) {
        AppendU8(out, kNull);
    } else if (const auto* bytes = std::get_if<ByteVector>(&value)) {
        AppendU8(out, kBytes);
        AppendBinary(*bytes, out);
    } else if (const auto* guid = std::get_if<Guid>(&value)) {
        AppendU8(out, kGuid);
        const std::string spelled = GuidText(*guid);
        out.insert(out.end(), spelled.begin(), spelled.end());
    } else if (const auto* money = std::get_if<Currency>(&value);
               money != nullptr && mode == KeyMode::Currency) {
        AppendU8(out, kNumber);
        AppendOrdered(static_cast<std::uint64_t>(money->scaled) ^ kSign, out);
    } else {
        AppendU8(out, kNumber);
        AppendDouble(ToDouble(value), out);
        if (const auto* decimal = std::get_if<Decimal>(&value);
            decimal != nullptr && mode == KeyMode::Decimal) {
            AppendExactly(*decimal, out);
        }
    }
}

void KeyWriter::Add(NodePtr node, KeyMode mode, bool descending) {
    parts_.push_back({std::move(node), mode, descending});
}

ByteView KeyWriter::Write() {
    key_.clear();
    hadNull_ = false;
    for (const Part& part : parts_) {
        const std::size_t start = key_.size();
        const Value& value = part.node->Evaluate();
        hadNull_ |= IsNull(value);
        AppendKey(value, part.mode, *texts_, key_);
        if (part.descending) {
            std::transform(key_.begin() + static_cast<std::ptrdiff_t>(start), key_.end(),
                           key_.begin() + static_cast<std::ptrdiff_t>(start),
                           [](std::uint8_t byte) { return static_cast<std::uint8_t>(~byte); });
        }
    }
    return key_;
}

}  // namespace tavrel::jet::sql
