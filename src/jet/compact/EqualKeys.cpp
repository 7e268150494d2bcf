#include "jet/compact/EqualKeys.h"

#include <algorithm>

namespace tavrel::jet::compact {

namespace {

/// From here on a bit for each possible row takes less room than a number for each row that there is.
constexpr std::size_t kManyRows = std::size_t{1} << 20;

}  // namespace

void EqualKeys::Add(ByteView key, RowPointer row) {
    if (!any_ || !std::ranges::equal(key, key_)) {
        Write();
        key_.assign(key.begin(), key.end());
        any_ = true;
    }
    if (!bits_.empty()) {
        bits_[row.ToU32()] = true;
        return;
    }
    rows_.push_back(row.ToU32());
    if (rows_.size() == kManyRows) {
        UseBits();
    }
}

void EqualKeys::UseBits() {
    bits_.resize(std::size_t{pages_} << 8);
    for (const std::uint32_t row : rows_) {
        bits_[row] = true;
    }
    rows_ = {};
}

void EqualKeys::Write() {
    if (!any_) {
        return;
    }
    if (!std::ranges::is_sorted(rows_)) {
        std::ranges::sort(rows_);
    }
    for (const std::uint32_t row : rows_) {
        WriteEntry(row);
    }
    rows_.clear();
    for (std::size_t row = 0; row < bits_.size(); ++row) {
        if (bits_[row]) {
            WriteEntry(static_cast<std::uint32_t>(row));
        }
    }
    bits_ = {};
}

void EqualKeys::WriteEntry(std::uint32_t row) {
    entry_.assign(key_.begin(), key_.end());
    AppendU32Be(entry_, row);
    out_.Add(entry_);
}

void EqualKeys::Finish() {
    Write();
}

}  // namespace tavrel::jet::compact
