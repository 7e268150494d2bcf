// The long values of one column: its maps and pages, each value from the descriptor on, and values that
// nobody uses.
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/check/Context.h"
#include "jet/check/PlainTextCount.h"

namespace tavrel::jet::check {

class LongValueCheck {
  public:
    LongValueCheck(Context& context, const std::string& table, const TableDefinition& definition,
                   std::size_t column);

    /// Place of the column in the definition.
    [[nodiscard]] std::size_t Place() const { return place_; }
    /// Takes the pages of the maps.
    void ReadMaps(const LongValueMaps& maps);
    /// REQUIRES: descriptor.size() >= 12.
    void CheckValue(RowPointer row, ByteView descriptor);
    /// REQUIRES: every row has been given to CheckValue.
    void CheckUse();

  private:
    struct Part {
        PageRef page;
        ByteView row;
    };

    void TakePage(PageNumber page);
    void CheckInline(ByteView descriptor);
    void CheckOneRow(ByteView descriptor);
    void CheckChain(ByteView descriptor);
    std::optional<Part> TakePart(RowPointer at);
    void CheckChainPage(PageNumber number, ByteView page, std::uint32_t mark);
    void CheckForm(ByteView stored, bool compress, bool inRow);
    void CheckPlace(std::uint64_t bytes, bool inRow);

    [[nodiscard]] std::string Where() const;

    Context& context_;
    const Column& column_;
    std::size_t place_;
    std::string where_;
    std::vector<PageNumber> pages_;  ///< of the owned map, ascending
    std::vector<std::size_t>
        firstSlots_;                  ///< by page: place of its slot 0 in uses_; one more entry for the end
    std::vector<std::uint8_t> uses_;  ///< by slot, 2 = more than once
    PlainTextCount plainTexts_;
    RowPointer row_{};  ///< of the present value
};

}  // namespace tavrel::jet::check
