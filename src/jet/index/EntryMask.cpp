#include "jet/index/EntryMask.h"

#include <algorithm>

namespace tavrel::jet {

namespace {

constexpr std::size_t kMaskBytes = kIndexEntries - kIndexMask;
static_assert(EntryMask::kWords == (kMaskBytes + 7) / 8);

/// Words of this machine to the file's little-endian ones, or back.
void ToFileOrder(std::array<std::uint64_t, EntryMask::kWords>& words) {
    if constexpr (std::endian::native != std::endian::little) {
        for (std::uint64_t& word : words) {
            auto* bytes = reinterpret_cast<std::uint8_t*>(&word);
            std::reverse(bytes, bytes + sizeof word);
        }
    }
}

}  // namespace

EntryMask::EntryMask(ByteView page) {
    std::memcpy(words_.data(), page.data() + kIndexMask, kMaskBytes);
    ToFileOrder(words_);
}

void EntryMask::Store(Page& page) const {
    Words bytes = words_;
    ToFileOrder(bytes);
    std::memcpy(page.data() + kIndexMask, bytes.data(), kMaskBytes);
}

unsigned EntryMask::Lowest() const {
    for (std::size_t i = 0; i < kWords; ++i) {
        if (words_[i] != 0) {
            return static_cast<unsigned>(64 * i) + static_cast<unsigned>(std::countr_zero(words_[i]));
        }
    }
    return 0;
}

unsigned EntryMask::Highest() const {
    for (std::size_t i = kWords; i-- > 0;) {
        if (words_[i] != 0) {
            return static_cast<unsigned>(64 * i + 63) - static_cast<unsigned>(std::countl_zero(words_[i]));
        }
    }
    return 0;
}

bool EntryMask::Crowded(unsigned gap) const {
    std::uint64_t close = 0;
    for (unsigned distance = 1; distance < gap; ++distance) {
        for (std::size_t i = 0; i + 1 < kWords; ++i) {
            close |= words_[i] & (words_[i] >> distance | words_[i + 1] << (64 - distance));
        }
        close |= words_[kWords - 1] & words_[kWords - 1] >> distance;
    }
    return close != 0;
}

EntryMask::Words EntryMask::Behind(std::size_t bit) const {
    Words words{};
    const std::size_t first = (bit + 1) / 64;
    for (std::size_t i = first; i < kWords; ++i) {
        words[i] = words_[i];
    }
    if (first < kWords) {
        words[first] &= ~std::uint64_t{0} << (bit + 1) % 64;
    }
    return words;
}

void EntryMask::ClearBehind(std::size_t bit) {
    const std::size_t first = (bit + 1) / 64;
    for (std::size_t i = first + 1; i < kWords; ++i) {
        words_[i] = 0;
    }
    if (first < kWords) {
        words_[first] &= ~(~std::uint64_t{0} << (bit + 1) % 64);
    }
}

void EntryMask::MoveUp(std::size_t bit, std::size_t distance) {
    const Words moved = Behind(bit);
    ClearBehind(bit);
    const std::size_t words = distance / 64;
    const std::size_t bits = distance % 64;
    for (std::size_t i = words; i < kWords; ++i) {
        words_[i] |= moved[i - words] << bits;
        if (bits != 0 && i > words) {
            words_[i] |= moved[i - words - 1] >> (64 - bits);
        }
    }
}

void EntryMask::MoveDown(std::size_t low, std::size_t high, std::size_t distance) {
    const Words moved = Behind(high);
    ClearBehind(low);
    const std::size_t words = distance / 64;
    const std::size_t bits = distance % 64;
    for (std::size_t i = 0; i + words < kWords; ++i) {
        words_[i] |= moved[i + words] >> bits;
        if (bits != 0 && i + words + 1 < kWords) {
            words_[i] |= moved[i + words + 1] << (64 - bits);
        }
    }
}

}  // namespace tavrel::jet
