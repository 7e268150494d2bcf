// Goes over the pages of a table and finds its live rows; moved rows and their pointers are one to one.
#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "jet/check/FindingLog.h"
#include "jet/check/RowList.h"

namespace tavrel::jet::check {

class RowScan {
  public:
    /// Gets a row's name and bytes; false: the row exists but cannot be read.
    using Visitor = std::function<bool(RowPointer slot, ByteView row)>;

    /// `slots`: of the pages whose row tables are sound.  All of these must outlive the scan, `slots` the
    /// list of rows too.
    RowScan(Pager& pager, FindingLog& log, const std::string& table, const SlotNumbers& slots)
        : pager_(pager), log_(log), table_(table), slots_(slots), rows_(slots) {}

    RowList Run(const Visitor& visitor);

  private:
    void ScanPage(std::size_t place, const Visitor& visitor);
    void FollowPointer(RowPointer slot, std::size_t number, ByteView row, const Visitor& visitor);
    bool IsFirstPointer(RowPointer target);
    void Visit(RowPointer slot, std::size_t number, ByteView row, const Visitor& visitor);
    void CheckTargets();
    void CheckTargets(std::size_t place);

    Pager& pager_;
    FindingLog& log_;
    std::string table_;
    const SlotNumbers& slots_;
    RowList rows_;
    std::uint64_t hidden_ = 0;  ///< slots that hold moved rows
    std::uint64_t moved_ = 0;   ///< of them those that a pointer has led to
    std::vector<bool> target_;  ///< by number: a pointer leads there; empty: none yet
    /// How many lead to places that have no number, or that others lead to as well: damage.
    std::unordered_map<std::uint32_t, std::uint32_t> strange_;
};

}  // namespace tavrel::jet::check
