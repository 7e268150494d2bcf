// Copies one sound table.  Rows are taken in the order of the primary key, index entries byte for byte with
// the rows' new places.  Whatever is not as it should be is thrown as 3428: the table then needs repair.
#pragma once

#include <unordered_map>

#include "jet/compact/LongValueCopy.h"
#include "jet/compact/PackedTable.h"
#include "jet/compact/RowMap.h"
#include "jet/compact/TableOutput.h"
#include "jet/index/EntryArena.h"

namespace tavrel::jet::compact {

struct CopyContext {
    SourcePages& source;
    PageOutput& out;
    RowMap& map;
    std::uint32_t nextMark = 1;
};

/// New numbers of the objects whose number is that of a page.
using ObjectIds = std::unordered_map<std::int32_t, std::int32_t>;

/// Columns of a system table that hold object numbers.
struct IdColumns {
    const ObjectIds* ids = nullptr;   ///< null: the table holds none
    std::vector<std::size_t> places;  ///< in the definition
};

class TableCopy {
  public:
    /// Both definitions must outlive the copy.
    TableCopy(CopyContext& context, const TableDefinition& source, const PackedTable& packed,
              TableOutput& out, IdColumns idColumns = {});

    /// Rows, then indexes.  The maps and the definition are left to the caller.
    void Run();

  private:
    struct Nulls {
        std::size_t index = 0;            ///< an index that ignores nulls
        std::vector<std::size_t> places;  ///< its columns
        RowTally rows;                    ///< those with a value
    };

    void CopyRows();
    void CopyBatch(const std::vector<RowPointer>& batch);
    bool FetchBatch(const std::vector<RowPointer>& batch);
    void CopyRow(RowPointer at, ByteView row);
    [[nodiscard]] std::size_t RowsPerBatch() const;
    void CopyLongValues();
    void PatchIds();
    ByteView RowAt(RowPointer at);
    void Meet(PageNumber page, const DataPageView& view);
    void MeetOwnedPages();
    void CountNulls(RowPointer at, ByteView row);
    void CopyIndex(std::size_t index);
    void CopyPatchedIndex(std::size_t index);
    void RequireRows(std::size_t index, const RowTally& entries) const;
    [[nodiscard]] std::optional<std::size_t> PrimaryTree() const;
    [[nodiscard]] bool KeyIsPatched(std::size_t index) const;
    [[nodiscard]] EntryArena PatchedEntries(std::size_t index, RowTally& tally, bool newPlaces);

    CopyContext& context_;
    const TableDefinition& source_;
    const PackedTable& packed_;
    TableOutput& out_;
    IdColumns idColumns_;
    RowShape sourceShape_;
    RowShape packedShape_;
    std::vector<std::size_t> longPlaces_;
    LongValueCopy longValues_;
    std::vector<Nulls> nulls_;

    std::optional<PageRef> page_;  ///< of the row at hand
    PageNumber pageNumber_ = 0;
    std::optional<PageRef> moved_;
    ByteVector row_;
    struct Piece {
        std::size_t start = 0;
        std::size_t length = 0;
    };
    ByteVector fetched_;         ///< rows of a batch
    std::vector<Piece> pieces_;  ///< where each of them lies in fetched_
    std::uint64_t live_ = 0;     ///< rows on the pages met
    std::uint64_t hidden_ = 0;   ///< targets of moved rows on the pages met
    std::uint64_t followed_ = 0;
    RowTally copied_;
};

}  // namespace tavrel::jet::compact
