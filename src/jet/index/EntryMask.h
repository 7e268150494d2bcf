// The entry mask of an index page: bit k says that an entry ends k bytes behind the first one's start.  Taken
// as 64-bit words, so that a page's many ends are found, checked and moved together.
#pragma once

#include <array>
#include <bit>

#include "jet/index/IndexPage.h"

namespace tavrel::jet {

class EntryMask {
  public:
    static constexpr std::size_t kWords = 57;

    EntryMask() = default;
    /// REQUIRES: a whole page.
    explicit EntryMask(ByteView page);
    void Store(Page& page) const;

    [[nodiscard]] std::uint64_t Word(std::size_t word) const { return words_[word]; }
    void Set(std::size_t bit) { words_[bit / 64] |= std::uint64_t{1} << bit % 64; }
    /// The lowest and the highest bit; 0 when none is set.
    [[nodiscard]] unsigned Lowest() const;
    [[nodiscard]] unsigned Highest() const;
    /// The highest bit set at or below `bit`; 0 when none is.
    [[nodiscard]] unsigned AtOrBelow(unsigned bit) const {
        std::size_t word = bit / 64;
        std::uint64_t bits = words_[word] << (63 - bit % 64) >> (63 - bit % 64);
        while (bits == 0 && word > 0) {
            bits = words_[--word];
        }
        return bits == 0
                   ? 0
                   : static_cast<unsigned>(64 * word + 63) - static_cast<unsigned>(std::countl_zero(bits));
    }
    /// The lowest bit set above `bit`.  REQUIRES: there is one.
    [[nodiscard]] unsigned Above(unsigned bit) const {
        std::size_t word = (bit + 1) / 64;
        std::uint64_t bits = words_[word] >> (bit + 1) % 64 << (bit + 1) % 64;
        while (bits == 0 && word + 1 < kWords) {
            bits = words_[++word];
        }
        return static_cast<unsigned>(64 * word) + static_cast<unsigned>(std::countr_zero(bits));
    }
    /// True when two bits are less than `gap` apart.  REQUIRES: gap <= 64.
    [[nodiscard]] bool Crowded(unsigned gap) const;
    /// Moves every bit behind `bit` up by `distance`; what leaves the mask is lost.
    void MoveUp(std::size_t bit, std::size_t distance);
    /// Clears the bits behind `low` up to and with `high` and moves those behind `high` down by `distance`.
    /// REQUIRES: distance <= high - low.
    void MoveDown(std::size_t low, std::size_t high, std::size_t distance);

  private:
    using Words = std::array<std::uint64_t, kWords>;
    [[nodiscard]] Words Behind(std::size_t bit) const;
    void ClearBehind(std::size_t bit);

    Words words_{};
};

}  // namespace tavrel::jet
