#include <set>

#include <gtest/gtest.h>

#include "jet/check/EntryHash.h"

namespace tavrel::jet::check {
namespace {

ByteVector WithFlipped(ByteVector entry, std::size_t bit) {
    entry[bit / 8] ^= static_cast<std::uint8_t>(1U << bit % 8);
    return entry;
}

TEST(EntryHashTest, EntriesThatDifferInTwoBitsOrInLengthDiffer) {
    const ByteVector entry(27, 0x5A);
    const std::size_t bits = entry.size() * 8;
    std::set<std::uint64_t> hashes;
    std::size_t entries = 0;
    for (std::size_t first = 0; first < bits; ++first) {
        const ByteVector once = WithFlipped(entry, first);
        for (std::size_t second = first; second < bits; ++second) {
            hashes.insert(EntryHash(second == first ? once : WithFlipped(once, second)));
            ++entries;
        }
    }
    for (std::size_t length = 0; length <= entry.size(); ++length) {
        hashes.insert(EntryHash(ByteView(entry).first(length)));
        ++entries;
    }
    EXPECT_EQ(hashes.size(), entries);
}

/// What multiplication alone would let cancel out: the highest bits of the halves of each word.
TEST(EntryHashTest, HighBitsOfNeighbouringWordsDoNotCancelOut) {
    constexpr std::size_t kHalves = 8;
    std::set<std::uint64_t> hashes;
    for (unsigned mask = 0; mask < 1U << kHalves; ++mask) {
        ByteVector entry(kHalves * 4, 0x11);
        for (std::size_t half = 0; half < kHalves; ++half) {
            entry = (mask >> half & 1) != 0 ? WithFlipped(entry, half * 32 + 31) : entry;
        }
        hashes.insert(EntryHash(entry));
    }
    EXPECT_EQ(hashes.size(), std::size_t{1} << kHalves);
}

}  // namespace
}  // namespace tavrel::jet::check
