#include "jet/index/EntryArena.h"

#include <algorithm>

namespace tavrel::jet {

namespace {

/// The first 8 bytes, big-endian; zeros behind the end of a shorter entry.
std::uint64_t HeadOf(ByteView entry) {
    std::uint64_t head = 0;
    for (std::size_t i = 0; i < 8; ++i) {
        head = head << 8 | (i < entry.size() ? entry[i] : 0U);
    }
    return head;
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
    items_.push_back({HeadOf(ByteView(bytes_).subspan(offset)), offset, length, hasNull});
}

RowPointer EntryArena::Row(std::size_t index) const {
    const ByteView entry = Entry(index);
    return {U24Be(entry, entry.size() - kRowBytes), entry.back()};
}

void EntryArena::Sort() {
    const auto less = [this](const Item& left, const Item& right) {
        if (left.head != right.head) {
            return left.head < right.head;
        }
        const ByteView bytes(bytes_);
        return CompareBytes(bytes.subspan(left.offset, left.length),
                            bytes.subspan(right.offset, right.length)) < 0;
    };
    if (!std::is_sorted(items_.begin(), items_.end(), less)) {
        std::sort(items_.begin(), items_.end(), less);
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
