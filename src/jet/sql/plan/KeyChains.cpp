#include "jet/sql/plan/KeyChains.h"

namespace tavrel::jet::sql {

void KeyChains::Add(ByteView key) {
    const auto row = static_cast<std::uint32_t>(next_.size());
    next_.push_back(kNone);
    const auto [number, isNew] = keys_.Insert(key);
    if (isNew) {
        chains_.push_back({row, row});
    } else {
        next_[chains_[number].last] = row;
        chains_[number].last = row;
    }
}

std::uint32_t KeyChains::First(ByteView key) const {
    const std::uint32_t number = keys_.Find(key);
    return number == kNone ? kNone : chains_[number].first;
}

void KeyChains::Clear() {
    keys_.Clear();
    chains_.clear();
    next_.clear();
}

}  // namespace tavrel::jet::sql
