// Goes over the pages of a table and finds its live rows; moved rows and their pointers are one to one.
#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "jet/engine/check/FindingLog.h"
#include "jet/engine/check/RowList.h"

namespace tavrel::jet::check {

class RowScan {
  public:
    /// Gets a row's name and bytes; false: the row exists but cannot be read.
    using Visitor = std::function<bool(RowPointer slot, ByteView row)>;

    /// `pages`: ascending, their row tables sound.  All of these must outlive the scan.
    RowScan(Pager& pager, FindingLog& log, const std::string& table, const std::vector<PageNumber>& pages)
        : pager_(pager), log_(log), table_(table), pages_(pages) {}

    RowList Run(const Visitor& visitor);

  private:
    void ScanPage(PageNumber number, const Visitor& visitor);
    void FollowPointer(RowPointer slot, ByteView row, const Visitor& visitor);
    void Visit(RowPointer slot, RowPointer at, ByteView row, const Visitor& visitor);
    void CheckTargets();

    Pager& pager_;
    FindingLog& log_;
    std::string table_;
    const std::vector<PageNumber>& pages_;
    RowList rows_;
    std::vector<RowPointer> hidden_;                             ///< slots that hold moved rows, ascending
    std::unordered_map<std::uint32_t, std::uint32_t> pointers_;  ///< how many lead to each place
};

}  // namespace tavrel::jet::check
