// Where the rows of one table have gone: four bytes for each slot of the pages that were met.  What is more
// than a few megabytes lies in a scratch place of the new file, behind its end.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "jet/storage/Bytes.h"
#include "platform/File.h"

namespace tavrel::jet::compact {

/// Numbers in a file's unused room; the most recently used ones are kept in memory.
class ScratchNumbers {
  public:
    /// `at`: where the room begins.  The file must outlive this; its owner truncates it in the end.
    ScratchNumbers(platform::File& file, std::uint64_t at, std::size_t residentBlocks);

    void Clear();
    void Append(std::size_t count);  ///< zeros
    [[nodiscard]] std::size_t Size() const { return size_; }
    std::uint32_t Get(std::size_t index);
    void Set(std::size_t index, std::uint32_t value);

  private:
    static constexpr std::size_t kBlockNumbers = 1024;
    using Block = std::array<std::uint32_t, kBlockNumbers>;
    struct Frame {
        std::size_t block = 0;
        bool dirty = false;
        bool used = false;  ///< since the hand went by
        std::unique_ptr<Block> numbers;
    };
    static constexpr std::uint32_t kNotResident = 0xFFFFFFFF;

    Frame& Load(std::size_t block);
    std::size_t FreeFrame();
    void Evict(Frame& frame);

    platform::File& file_;
    std::uint64_t at_;
    std::size_t limit_;
    std::size_t size_ = 0;
    std::vector<std::uint32_t> frameOf_;  ///< by block
    std::vector<bool> stored_;            ///< blocks that are in the file
    std::vector<Frame> frames_;
    std::size_t hand_ = 0;
};

class RowMap {
  public:
    /// `pages`: number of pages of the source.
    RowMap(ScratchNumbers& numbers, PageNumber pages);

    /// Forgets the rows of the table before.
    void Clear();
    [[nodiscard]] bool Knows(PageNumber page) const { return first_[page] != 0; }
    /// REQUIRES: not Knows(page), page lies in the source, slots <= 255.
    void AddPage(PageNumber page, unsigned slots);
    /// REQUIRES: the page is known and has the slot.
    void Set(RowPointer from, RowPointer to);
    /// Where the row is now; page 0 when that slot has not gone anywhere.
    RowPointer Get(RowPointer from);

  private:
    ScratchNumbers& numbers_;
    std::vector<std::uint32_t> first_;  ///< by page: place of its slot 0 in numbers_, plus 1; 0 = not met
    std::vector<std::uint8_t> slots_;   ///< by page
    std::vector<PageNumber> pages_;     ///< pages met
};

}  // namespace tavrel::jet::compact
