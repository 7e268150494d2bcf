// Who owns each page.  Every page has one owner or is free.
#pragma once

#include <string>
#include <vector>

#include "jet/check/FindingLog.h"
#include "jet/storage/Bytes.h"

namespace tavrel::jet::check {

class PageOwners {
  public:
    using OwnerId = std::uint32_t;

    PageOwners(FindingLog& log, PageNumber pages, const ProgressFn& progress);

    /// A new owner; the text names it in findings.
    OwnerId Register(std::string what);
    /// Gives a page to an owner.  A second claim is a finding and returns false, as does a page outside the
    /// file.
    bool Claim(PageNumber page, OwnerId owner);
    [[nodiscard]] bool IsOwned(PageNumber page) const { return owners_[page] != 0; }
    [[nodiscard]] const std::string& OwnerText(PageNumber page) const { return names_[owners_[page]]; }
    [[nodiscard]] const std::string& TextOf(OwnerId owner) const { return names_[owner]; }
    [[nodiscard]] PageNumber PageCount() const { return static_cast<PageNumber>(owners_.size()); }

  private:
    FindingLog& log_;
    const ProgressFn& progress_;
    std::vector<OwnerId> owners_;     ///< by page; 0 = nobody
    std::vector<std::string> names_;  ///< by owner
    std::uint64_t claimed_ = 0;
};

}  // namespace tavrel::jet::check
