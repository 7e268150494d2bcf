// A set of pages of the file, one bit each.
#pragma once

#include <vector>

#include "jet/storage/Bytes.h"

namespace tavrel::jet::check {

class PageSet {
  public:
    explicit PageSet(PageNumber pages) : bits_(pages) {}

    /// False for pages outside the file.
    [[nodiscard]] bool Has(PageNumber page) const { return page < bits_.size() && bits_[page]; }
    /// False when the page was in the set already, or is outside the file.
    bool Insert(PageNumber page) {
        if (page >= bits_.size() || bits_[page]) {
            return false;
        }
        bits_[page] = true;
        return true;
    }

  private:
    std::vector<bool> bits_;
};

}  // namespace tavrel::jet::check
