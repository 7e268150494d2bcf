#include "jet/sql/plan/KeyTable.h"

#include <algorithm>
#include <cstring>

#include "jet/sql/values/SqlErrors.h"

namespace tavrel::jet::sql {

namespace {

constexpr std::size_t kFirstSlots = 64;
constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;

std::uint64_t Mix(std::uint64_t hash, std::uint64_t part) {
    hash = (hash ^ part) * kMultiplier;
    return hash ^ hash >> 32;
}

std::uint32_t HashOf(ByteView key) {
    std::uint64_t hash = key.size();
    while (key.size() >= sizeof(std::uint64_t)) {
        std::uint64_t part = 0;
        std::memcpy(&part, key.data(), sizeof part);
        hash = Mix(hash, part);
        key = key.subspan(sizeof part);
    }
    std::uint64_t rest = 0;
    if (!key.empty()) {
        std::memcpy(&rest, key.data(), key.size());
    }
    return static_cast<std::uint32_t>(Mix(Mix(hash, rest), kMultiplier) >> 16);
}

}  // namespace

std::size_t KeyTable::SlotOf(ByteView key, std::uint32_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = hash & mask;
    while (slots_[at].number != kNone &&
           (slots_[at].hash != hash || !std::ranges::equal(Key(slots_[at].number), key))) {
        at = (at + 1) & mask;
    }
    return at;
}

KeyTable::Inserted KeyTable::Insert(ByteView key) {
    if (ends_.size() * 2 >= slots_.size()) {
        Grow();
    }
    const std::uint32_t hash = HashOf(key);
    Slot& slot = slots_[SlotOf(key, hash)];
    if (slot.number != kNone) {
        return {slot.number, false};
    }
    if (ends_.size() >= kNone) {
        throw MakeError(sqlErrors::kTooComplex);
    }
    slot = {hash, static_cast<std::uint32_t>(ends_.size())};
    AppendBytes(bytes_, key);
    ends_.push_back(bytes_.size());
    return {slot.number, true};
}

std::uint32_t KeyTable::Find(ByteView key) const {
    return slots_.empty() ? kNone : slots_[SlotOf(key, HashOf(key))].number;
}

ByteView KeyTable::Key(std::uint32_t number) const {
    const std::uint64_t start = number == 0 ? 0 : ends_[number - 1];
    return ByteView(bytes_).subspan(start, ends_[number] - start);
}

void KeyTable::Clear() {
    slots_.clear();
    bytes_.clear();
    ends_.clear();
}

void KeyTable::Grow() {
    std::vector<Slot> old(slots_.empty() ? kFirstSlots : slots_.size() * 2);
    old.swap(slots_);
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& slot : old) {
        if (slot.number != kNone) {
            std::size_t at = slot.hash & mask;
            while (slots_[at].number != kNone) {
                at = (at + 1) & mask;
            }
            slots_[at] = slot;
        }
    }
}

}  // namespace tavrel::jet::sql
