// The usage maps of a new database: sets of pages as rows of map pages.
#pragma once

#include <vector>

#include "jet/compact/PageOutput.h"

namespace tavrel::jet::compact {

/// The row for a set of pages (ascending): inline when they lie close enough together, else with bitmap
/// pages, which are taken and put here.
ByteVector BuildMapRow(PageOutput& out, const std::vector<PageNumber>& pages);

/// The global maps, page 1: every page from `used` on is free.  May take bitmap pages, which are then in use
/// too.
void PutGlobalMaps(PageOutput& out);

/// A fixed number of map rows on pages of their own.
class MapRows {
  public:
    /// Takes the pages.
    MapRows(PageOutput& out, std::size_t count);
    /// Where a row will be.
    [[nodiscard]] RowPointer At(std::size_t index) const;
    void Set(std::size_t index, const std::vector<PageNumber>& pages) {
        rows_[index] = BuildMapRow(out_, pages);
    }
    /// Puts the pages.
    void Finish();

  private:
    PageOutput& out_;
    std::vector<ByteVector> rows_;
    std::vector<PageNumber> pages_;
};

}  // namespace tavrel::jet::compact
