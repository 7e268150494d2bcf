// The slots of a table's pages, numbered, so that something can be kept of each in a bit or two.
#pragma once

#include <cstddef>
#include <vector>

#include "jet/storage/Bytes.h"

namespace tavrel::jet::check {

/// Eight bytes a page.
class SlotNumbers {
  public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    /// REQUIRES: pages come in ascending order.
    void AddPage(PageNumber page, unsigned slots);

    [[nodiscard]] const std::vector<PageNumber>& Pages() const { return pages_; }
    /// Numbers given out.
    [[nodiscard]] std::size_t Size() const { return firsts_.back(); }
    /// Numbers of the page in a place of Pages(): from First(place) up to, but without, First(place + 1).
    [[nodiscard]] std::size_t First(std::size_t place) const { return firsts_[place]; }
    /// npos when there is no such slot.
    [[nodiscard]] std::size_t Find(RowPointer slot) const;

  private:
    std::vector<PageNumber> pages_;
    std::vector<std::uint32_t> firsts_ = {0};  ///< by page; one more for the end
};

}  // namespace tavrel::jet::check
