#include "jet/sql/values/TextComparer.h"

#include <algorithm>
#include <cstring>

#include "jet/index/Collation.h"
#include "jet/index/KeyEncoder.h"
#include "text/Case.h"
#include "text/Utf.h"

namespace tavrel::jet::sql {

namespace {

constexpr std::uint8_t kNotNull = 0x7F;
constexpr std::uint8_t kSectionEnd = 0x01;
constexpr std::uint8_t kKeyEnd = 0x00;
constexpr std::uint8_t kStandIn = 0xFF;

std::string_view WithoutTrailingBlanks(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// Takes one character; those of one byte without looking further.
char32_t TakeCharacter(std::string_view text, std::size_t& at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < 0x80) {
        ++at;
        return byte;
    }
    return text::NextCodePoint(text, at);
}

void AppendWeight(ByteVector& out, std::uint16_t primary) {
    if (primary > 0xFF) {
        AppendU8(out, static_cast<std::uint8_t>(primary >> 8));
    }
    AppendU8(out, static_cast<std::uint8_t>(primary));
}

/// Seven bits to a byte, none of them 00 or 01.
void AppendSpelled(ByteVector& out, char32_t number) {
    for (const int shift : {14, 7, 0}) {
        AppendU8(out, static_cast<std::uint8_t>((number >> shift & 0x7F) + 2));
    }
}

void AppendStandInWeight(ByteVector& out, char16_t unit) {
    const std::u16string upper = text::Utf16FromUtf8(text::Upper(text::Utf8FromUtf16({&unit, 1})));
    AppendU8(out, kStandIn);
    AppendSpelled(out, upper.size() == 1 ? upper.front() : unit);
}

/// Bytes that both begin with, whole characters only.
std::size_t EqualFront(std::string_view a, std::string_view b) {
    const std::size_t limit = std::min(a.size(), b.size());
    std::size_t front = 0;
    std::uint64_t wordA = 0;
    std::uint64_t wordB = 0;
    for (; front + sizeof wordA <= limit; front += sizeof wordA) {
        std::memcpy(&wordA, a.data() + front, sizeof wordA);
        std::memcpy(&wordB, b.data() + front, sizeof wordB);
        if (wordA != wordB) {
            break;
        }
    }
    while (front < limit && a[front] == b[front]) {
        ++front;
    }
    const auto insideCharacter = [](std::string_view text, std::size_t at) {
        return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
    };
    while (front > 0 && (insideCharacter(a, front) || insideCharacter(b, front))) {
        --front;
    }
    return front;
}

}  // namespace

TextComparer::TextComparer(std::uint16_t sortOrder)
    : sortOrder_(sortOrder), collation_(Collation::Find(sortOrder)) {
    for (const SortOrderRows& rows : KnownSortOrders()) {
        for (const Contraction& contraction : rows.contractions) {
            if (rows.sortOrder == sortOrder) {
                contractionStarts_.push_back(contraction.first);
            }
        }
    }
}

int TextComparer::Compare(std::string_view a, std::string_view b) const {
    a = WithoutTrailingBlanks(a);
    b = WithoutTrailingBlanks(b);
    // An equal front weighs the same in both, unless its last character makes one weight with the next.
    std::size_t atA = contractionStarts_.empty() ? EqualFront(a, b) : 0;
    std::size_t atB = atA;
    while (atA < a.size() && atB < b.size()) {
        const SimpleWeight weightA = WeightOf(TakeCharacter(a, atA));
        const SimpleWeight weightB = WeightOf(TakeCharacter(b, atB));
        if (weightA == 0 || weightB == 0) {
            return CompareKeys(a, b);
        }
        if (weightA != weightB) {
            return weightA < weightB ? -1 : 1;
        }
    }
    if (atA == a.size() && atB == b.size()) {
        return 0;
    }
    // What is left of the longer one decides, unless it is nothing but marks.
    const bool longerA = atA < a.size();
    const SimpleWeight next = WeightOf(longerA ? TakeCharacter(a, atA) : TakeCharacter(b, atB));
    return next == 0 ? CompareKeys(a, b) : longerA ? 1 : -1;
}

int TextComparer::CompareKeys(std::string_view a, std::string_view b) const {
    ByteVector keyA;
    ByteVector keyB;
    AppendKey(a, keyA);
    AppendKey(b, keyB);
    return keyA == keyB ? 0 : keyA < keyB ? -1 : 1;
}

void TextComparer::AppendKey(std::string_view text, ByteVector& out) const {
    text = WithoutTrailingBlanks(text);
    if (AppendSimpleKey(text, out)) {
        return;
    }
    const std::u16string units = text::Utf16FromUtf8(text);
    if (const auto key = EncodeTextKey(units, sortOrder_)) {
        AppendBytes(out, *key);
    } else {
        AppendStandIn(units, out);
    }
}

bool TextComparer::AppendSimpleKey(std::string_view text, ByteVector& out) const {
    const std::size_t start = out.size();
    out.resize(start + 2 * text.size() + 3);
    std::uint8_t* to = out.data() + start;
    *to++ = kNotNull;
    for (std::size_t at = 0; at < text.size();) {
        const SimpleWeight weight = WeightOf(TakeCharacter(text, at));
        if (weight == 0) {
            out.resize(start);
            return false;
        }
        *to++ = static_cast<std::uint8_t>(weight >> 8);
        if ((weight & 0xFF) != 0) {
            *to++ = static_cast<std::uint8_t>(weight);
        }
    }
    *to++ = kSectionEnd;
    *to++ = kKeyEnd;
    out.resize(static_cast<std::size_t>(to - out.data()));
    return true;
}

/// The shape of a real key: weights, marks, and what has no weight, parted by 01.
void TextComparer::AppendStandIn(std::u16string_view text, ByteVector& out) const {
    ByteVector marks;
    ByteVector others;
    AppendU8(out, kNotNull);
    while (!text.empty()) {
        const auto match = collation_ == nullptr ? std::nullopt : collation_->At(text);
        if (!match) {
            AppendStandInWeight(out, text.front());
            AppendU8(marks, kNoMark);
        } else if (match->weight.kind == WeightKind::Positional) {
            AppendSpelled(others, static_cast<char32_t>(marks.size()));
            AppendWeight(others, match->weight.primary);
        } else {
            AppendWeight(out, match->weight.primary);
            AppendU8(marks, match->weight.mark);
        }
        text.remove_prefix(match ? match->units : 1);
    }
    AppendU8(out, kSectionEnd);
    AppendBytes(out, marks);
    AppendU8(out, kSectionEnd);
    AppendBytes(out, others);
    AppendU8(out, kKeyEnd);
}

TextComparer::SimpleWeight TextComparer::WeightOf(char32_t codePoint) const {
    if (codePoint > 0xFFFF) {
        return 0;
    }
    std::unique_ptr<Block>& block = blocks_[codePoint / kBlock];
    if (block == nullptr) {
        block = MakeBlock(codePoint / kBlock * kBlock);
    }
    return (*block)[codePoint % kBlock];
}

std::unique_ptr<TextComparer::Block> TextComparer::MakeBlock(char32_t first) const {
    auto block = std::make_unique<Block>();
    for (std::size_t i = 0; i < kBlock; ++i) {
        (*block)[i] = MakeWeight(static_cast<char16_t>(first + i));
    }
    return block;
}

TextComparer::SimpleWeight TextComparer::MakeWeight(char16_t unit) const {
    if (collation_ == nullptr || std::ranges::find(contractionStarts_, unit) != contractionStarts_.end()) {
        return 0;
    }
    const auto match = collation_->At({&unit, 1});
    if (!match || match->weight.kind != WeightKind::Normal || match->weight.mark != kNoMark) {
        return 0;
    }
    const std::uint16_t primary = match->weight.primary;
    return primary > 0xFF ? primary : static_cast<std::uint16_t>(primary << 8);
}

}  // namespace tavrel::jet::sql
