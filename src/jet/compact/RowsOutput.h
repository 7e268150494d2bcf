// Rows and long values of a new database: pages filled one after the other.
#pragma once

#include <vector>

#include "jet/compact/PageOutput.h"
#include "jet/storage/DataPage.h"

namespace tavrel::jet::compact {

/// Pages of a table or a column, as its two maps will name them.
struct WrittenPages {
    std::vector<PageNumber> owned;     ///< ascending
    std::vector<PageNumber> withRoom;  ///< ascending
};

/// The rows of one table, in order.
class RowsOutput {
  public:
    RowsOutput(PageOutput& out, PageNumber table) : out_(out), table_(table) {}

    /// REQUIRES: row.size() <= kMaxRowBytes.
    RowPointer Append(ByteView row);
    WrittenPages Finish();

  private:
    PageOutput& out_;
    PageNumber table_;
    Page page_{};
    PageNumber number_ = 0;  ///< of page_; 0 = none yet
    WrittenPages written_;
};

/// The long values of one column.
class LongValuesOutput {
  public:
    /// `mayShare` false: each value has a page to itself, as in columns without a free-space map.
    LongValuesOutput(PageOutput& out, bool mayShare) : out_(out), mayShare_(mayShare) {}

    /// A value of one row.
    RowPointer AppendRow(ByteView value);
    /// Begins a chain; its parts follow, all but the last of kLongPartBytes.  Returns where it begins.
    RowPointer BeginChain(std::uint32_t mark);
    void AppendPart(ByteView data, bool last);
    WrittenPages Finish();

  private:
    struct OpenPage {
        PageNumber number = 0;
        Page page;
    };

    PageNumber Take();
    OpenPage& PageFor(std::size_t length);
    void CloseFullest();

    PageOutput& out_;
    bool mayShare_;
    std::vector<OpenPage> open_;
    PageNumber part_ = 0;  ///< page of the chain's next part
    std::uint32_t mark_ = 0;
    WrittenPages written_;
};

}  // namespace tavrel::jet::compact
