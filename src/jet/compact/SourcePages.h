// The database that is being compacted, as its copier reads it.
#pragma once

#include <functional>
#include <vector>

#include "jet/storage/Pager.h"

namespace tavrel::jet::compact {

/// For handlers that go on after damage: a page that the system does not give is none.  What it holds would
/// be given up, and the next attempt may read it.  Throws the error again when it is 3040.
inline void RequireDamage(const Error& error) {
    if (error.Number() == errors::kReadFault) {
        throw Error(error);
    }
}

/// An order-independent fingerprint of a set of rows, to tell that two sets are one.
class RowTally {
  public:
    void Add(RowPointer row) {
        std::uint64_t mixed = row.ToU32() + 0x9E3779B97F4A7C15U;
        mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBU;
        sum_ += mixed ^ mixed >> 31;
        ++count_;
    }
    [[nodiscard]] std::uint64_t Count() const { return count_; }
    bool operator==(const RowTally&) const = default;

  private:
    std::uint64_t sum_ = 0;
    std::uint64_t count_ = 0;
};

/// Reads pages and keeps account of which ones were met.
class SourcePages {
  public:
    using ProgressFn = std::function<void(std::uint64_t done, std::uint64_t total)>;

    /// Reports pages met of all pages.
    SourcePages(Pager& pager, ProgressFn progress)
        : pager_(pager), progress_(std::move(progress)), met_(pager.PageCount()) {}

    PageRef Read(PageNumber number);
    /// The page is accounted for without being read here.
    void Mark(PageNumber number);
    [[nodiscard]] bool Met(PageNumber number) const { return met_[number]; }
    [[nodiscard]] PageNumber Count() const { return static_cast<PageNumber>(met_.size()); }
    [[nodiscard]] Pager& Cache() { return pager_; }
    /// Reports that all is done.
    void Finish();

  private:
    Pager& pager_;
    ProgressFn progress_;
    std::vector<bool> met_;
    std::uint64_t done_ = 0;
};

}  // namespace tavrel::jet::compact
