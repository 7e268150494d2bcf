#include "jet/index/EntryArena.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tavrel::jet {

namespace {

constexpr std::size_t kHeadBytes = 8;

/// The 8 bytes at a depth, big-endian; zeros behind the end of a shorter entry.
std::uint64_t HeadAt(ByteView entry, std::size_t depth) {
    std::array<std::uint8_t, kHeadBytes> bytes{};
    if (depth < entry.size()) {
        std::memcpy(bytes.data(), entry.data() + depth, std::min(kHeadBytes, entry.size() - depth));
    }
    return std::uint64_t{U32Be(bytes, 0)} << 32 | U32Be(bytes, 4);
}

}  // namespace

void EntryArena::Reserve(std::size_t entries, std::size_t keyBytes) {
    items_.reserve(entries);
    bytes_.reserve(keyBytes + entries * kRowBytes);
}

void EntryArena::Add(ByteView key, RowPointer row, bool hasNull) {
    if (key.size() > kMaxKeyBytes) {
        throw MakeError(errors::kRecordTooLarge, {}, "인덱스 키 " + std::to_string(key.size()) + "바이트");
    }
    const std::size_t offset = bytes_.size();
    AppendBytes(bytes_, key);
    AppendU24Be(bytes_, row.page);
    AppendU8(bytes_, row.row);
    const auto length = static_cast<std::uint32_t>(bytes_.size() - offset);
    items_.push_back({offset, length, hasNull, 0});
}

RowPointer EntryArena::Row(std::size_t index) const {
    const ByteView entry = Entry(index);
    return {U24Be(entry, entry.size() - kRowBytes), entry.back()};
}

void EntryArena::Sort() {
    const auto less = [this](const Item& left, const Item& right) {
        return CompareBytes(BytesOf(left), BytesOf(right)) < 0;
    };
    if (!std::ranges::is_sorted(items_, less)) {
        SortBehind(items_, 0);
    }
}

/// Sorts items whose first `depth` bytes are the same: by the next 8, and those that share these by what
/// follows.  The bytes of an entry lie far from one another, and so each is fetched once, not for every
/// comparison.
void EntryArena::SortBehind(std::span<Item> items, std::size_t depth) {
    constexpr std::size_t kFew = 8;
    const bool ends = std::ranges::any_of(items, [depth](const Item& item) { return item.length <= depth; });
    if (items.size() <= kFew || ends) {
        std::ranges::sort(items, [this](const Item& left, const Item& right) {
            return CompareBytes(BytesOf(left), BytesOf(right)) < 0;
        });
        return;
    }
    for (Item& item : items) {
        item.head = HeadAt(BytesOf(item), depth);
    }
    std::ranges::sort(items, {}, &Item::head);
    while (!items.empty()) {
        const auto other = std::ranges::find_if(
            items, [head = items.front().head](const Item& item) { return item.head != head; });
        const auto same = static_cast<std::size_t>(other - items.begin());
        if (same > 1) {
            SortBehind(items.first(same), depth + kHeadBytes);
        }
        items = items.subspan(same);
    }
}

bool EntryArena::SameKey(std::size_t left, std::size_t right) const {
    return std::ranges::equal(Key(left), Key(right));
}

std::uint32_t EntryArena::DistinctKeys() const {
    std::uint32_t distinct = items_.empty() ? 0 : 1;
    for (std::size_t i = 1; i < items_.size(); ++i) {
        distinct += SameKey(i - 1, i) ? 0 : 1;
    }
    return distinct;
}

std::optional<std::size_t> EntryArena::FirstDuplicate() const {
    for (std::size_t i = 1; i < items_.size(); ++i) {
        if (!items_[i].hasNull && SameKey(i - 1, i)) {
            return i;
        }
    }
    return std::nullopt;
}

}  // namespace tavrel::jet
