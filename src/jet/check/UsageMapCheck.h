// Usage maps: each row is read once and has one user; afterwards the pages that hold the rows, and the pages
// that nobody owns.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "jet/check/PageOwners.h"
#include "jet/storage/Pager.h"
#include "jet/storage/UsageMap.h"

namespace tavrel::jet::check {

class UsageMapCheck {
  public:
    UsageMapCheck(Pager& pager, FindingLog& log, PageOwners& owners)
        : pager_(pager), log_(log), owners_(owners) {}

    /// The two maps of page 1.
    void ReadGlobalMaps();
    /// The pages of a map, ascending, those outside the file left out; none when it cannot be read.  `what`
    /// names the map in findings.
    std::vector<PageNumber> Read(RowPointer at, const std::string& what);
    /// REQUIRES: every map has been read.  The pages that hold map rows, and rows that no map uses.
    void CheckMapPages();
    /// REQUIRES: every page has been claimed.  Pages in use and free at once, and pages that are neither.
    void CheckUnownedPages();

  private:
    UsageMap ReadMap(RowPointer at, const std::string& what);
    bool ClaimRow(RowPointer at, const std::string& what);
    bool ClaimBitmaps(RowPointer at, const std::string& what);
    void CheckMapPage(PageNumber page, const std::vector<bool>& used);
    void CheckFreeMapReach();
    void CheckUnownedPage(PageNumber page);

    Pager& pager_;
    FindingLog& log_;
    PageOwners& owners_;
    std::map<std::uint32_t, std::string> rows_;  ///< users of map rows, by row pointer
    UsageMap free_;
    UsageMap pending_;
};

}  // namespace tavrel::jet::check
