// What the executor reads tables through.  The engine implements it over the file; nothing here knows of
// pages.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/catalog/ColumnType.h"
#include "jet/catalog/Value.h"

namespace tavrel::jet::sql {

/// Names a row of its table as long as the row lives; its content is the implementation's affair.
using RowId = std::uint64_t;

struct TableColumn {
    std::string name;
    ColumnType type = ColumnType::Long;
    unsigned size = 0;            ///< Text: characters (UTF-16 units); Binary: bytes; else unused
    std::uint8_t precision = 18;  ///< Numeric
    std::uint8_t scale = 0;       ///< Numeric
    bool autonumber = false;
    bool required = false;
    bool refusesEmptyText = false;  ///< AllowZeroLength stands there as False
    std::string defaultValue;       ///< expression text as stored; empty when none
};

struct TableIndex {
    struct Part {
        std::size_t column = 0;  ///< place in TableAccess::Columns()
        bool ascending = true;
    };
    std::string name;
    std::vector<Part> parts;
    bool unique = false;
    bool primary = false;
    bool ignoresNulls = false;       ///< rows with a Null in the key are not in the index
    std::uint64_t distinctKeys = 0;  ///< roughly, for choosing between ways; 0 = not known
};

/// Keys wanted from an index: the first parts equal to `equal`, the next part within the bounds.  The bounds
/// speak of values, not of key order: on a descending part the implementation turns them round.
struct KeyRange {
    std::span<const Value> equal;  ///< each of its column's type; Null finds Null keys
    const Value* from = nullptr;   ///< null pointer = open; never a Null value
    bool fromIncluded = true;
    const Value* to = nullptr;
    bool toIncluded = true;
};

/// Walks rows.  Stands before the first one until Next.
class RowReader {
  public:
    virtual ~RowReader() = default;
    /// False at the end.
    virtual bool Next() = 0;
    [[nodiscard]] virtual RowId Id() const = 0;
    /// Decodes one column of the present row into `out`, whose buffer is reused where that can be.
    virtual void Get(std::size_t column, Value& out) = 0;
};

class IndexCursor : public RowReader {
  public:
    /// Goes before the first row of a range; may be called again at any time.  More rows than asked for may
    /// come (every condition is examined once more), fewer may not.  False when the keys cannot be made (a
    /// character of unknown weight): the caller scans then.
    virtual bool Seek(const KeyRange& range) = 0;
};

/// One table while a statement or an open result set works with it.
class TableAccess {
  public:
    virtual ~TableAccess() = default;
    [[nodiscard]] virtual const std::string& Name() const = 0;
    [[nodiscard]] virtual const std::vector<TableColumn>& Columns() const = 0;  ///< in the order users see
    [[nodiscard]] virtual const std::vector<TableIndex>& Indexes() const = 0;
    /// Exact, and without reading rows.
    [[nodiscard]] virtual std::uint64_t RowCount() const = 0;
    /// Cheap, for choosing between ways; may be wrong.
    [[nodiscard]] virtual std::uint64_t RowEstimate() const { return RowCount(); }
    /// All rows in storage order.  `columns` (ascending) are those that Get will be asked for.
    virtual std::unique_ptr<RowReader> Scan(std::span<const std::size_t> columns) = 0;
    /// `index` is a place in Indexes().  Rows come in key order.
    virtual std::unique_ptr<IndexCursor> OpenIndex(std::size_t index,
                                                   std::span<const std::size_t> columns) = 0;
    /// True when a Scan goes on rightly (each row once, new ones not met) while the row it stands on is
    /// updated or deleted.  False makes the executor collect the rows first.
    [[nodiscard]] virtual bool ScanToleratesChanges() const { return false; }
};

class TableChanges;

class Tables {
  public:
    virtual ~Tables() = default;
    /// A local table by name (letter case ignored); null when there is none.
    virtual std::shared_ptr<TableAccess> Find(std::string_view name) = 0;
    /// `updated` (ascending) are the columns that UpdateRow will bring values for.  Throws 3027 on a database
    /// that is open for reading.
    virtual std::unique_ptr<TableChanges> Change(TableAccess& table,
                                                 std::span<const std::size_t> updated) = 0;
};

}  // namespace tavrel::jet::sql
