#include "grid/TextPool.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>

#include "text/Case.h"

namespace tavrel::grid {

namespace {

constexpr std::size_t kFirstSlots = 64;
constexpr std::size_t kBlockBytes = std::size_t{64} * 1024;

std::uint32_t HashOf(std::string_view text) {
    const std::size_t hash = std::hash<std::string_view>{}(text);
    return static_cast<std::uint32_t>(hash ^ hash >> 15);
}

/// Most names of databases are ASCII: those that hold no small letter need no second form.
bool IsItsOwnUpperCase(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x80 && (byte < 'a' || byte > 'z');
    });
}

}  // namespace

TextPool::TextPool() {
    Clear();
}

void TextPool::Clear() {
    entries_.clear();
    blocks_.clear();
    blockLeft_ = 0;
    blockEnd_ = nullptr;
    slots_.assign(kFirstSlots, kUnknown);
    Add({}, HashOf({}));
}

TextId TextPool::Intern(std::string_view text) {
    const std::uint32_t hash = HashOf(text);
    const TextId known = slots_[Slot(text, hash)];
    if (known != kUnknown) {
        return known;
    }
    const TextId id = Add(text, hash);
    if (!IsItsOwnUpperCase(text)) {
        const std::string upper = text::Upper(text);
        const TextId folded = upper == text ? id : Intern(upper);
        entries_[id].folded = folded;
    }
    return id;
}

TextId TextPool::FindFolded(std::string_view text) const {
    const std::string upper = text::Upper(text);
    return slots_[Slot(upper, HashOf(upper))];
}

TextId TextPool::Add(std::string_view text, std::uint32_t hash) {
    if ((entries_.size() + 1) * 2 > slots_.size()) {
        Grow();
    }
    const auto id = static_cast<TextId>(entries_.size());
    entries_.push_back({.text = Store(text), .folded = id, .hash = hash});
    slots_[Slot(text, hash)] = id;
    return id;
}

std::string_view TextPool::Store(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    if (text.size() > blockLeft_) {
        const std::size_t bytes = std::max(kBlockBytes, text.size());
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(bytes));
        blockEnd_ = blocks_.back().get() + bytes;
        blockLeft_ = bytes;
    }
    char* place = blockEnd_ - blockLeft_;
    std::memcpy(place, text.data(), text.size());
    blockLeft_ -= text.size();
    return {place, text.size()};
}

void TextPool::Grow() {
    std::vector<TextId> old(slots_.size() * 2, kUnknown);
    old.swap(slots_);
    const std::size_t mask = slots_.size() - 1;
    for (TextId id = 0; id < entries_.size(); ++id) {
        std::size_t slot = entries_[id].hash & mask;
        while (slots_[slot] != kUnknown) {
            slot = (slot + 1) & mask;
        }
        slots_[slot] = id;
    }
}

std::size_t TextPool::Slot(std::string_view text, std::uint32_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash & mask;
    while (slots_[slot] != kUnknown) {
        const Entry& entry = entries_[slots_[slot]];
        if (entry.hash == hash && entry.text == text) {
            break;
        }
        slot = (slot + 1) & mask;
    }
    return slot;
}

}  // namespace tavrel::grid
