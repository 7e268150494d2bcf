// One table of a database that is open for changing: rows go in, change and go out one at a time, indexes and
// counters keep in step.  Relations are not looked at here (RelationRules.h).
//
// Every member may throw half-way; the caller then rolls the statement back and forgets the object.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "jet/catalog/Properties.h"
#include "jet/index/BTree.h"
#include "jet/table/LongValueStore.h"
#include "jet/table/RowBuilder.h"
#include "jet/table/RowKeys.h"
#include "jet/table/WriteContext.h"

namespace tavrel::jet {

/// A column's new content.
struct FieldChange {
    std::size_t place = 0;                       ///< in the definition's columns
    std::optional<ByteVector> bytes;             ///< as stored; nothing = null; Booleans one byte
    std::optional<PreparedLongValue> longValue;  ///< Memo and OLE, not null
};

/// What changes in one row of a page.
struct RowChange {
    std::uint8_t row = 0;
    std::vector<FieldChange> fields;
};

class EditedTable {
  public:
    EditedTable(WriteContext& context, std::string name, TableDefinition definition,
                const PropertyBlob& properties);
    EditedTable(const EditedTable&) = delete;
    EditedTable& operator=(const EditedTable&) = delete;

    [[nodiscard]] const std::string& Name() const { return name_; }
    [[nodiscard]] const TableDefinition& Definition() const { return definition_; }

    /// Appends a row; `values` by place in the definition's columns, Null in an autonumber column takes a new
    /// number. Throws 3022, 3047, 3058, 3990 and those of RowBuilder.
    RowPointer Insert(std::span<const Value> values);
    /// The number that the last Insert put into the autonumber column; nothing when there is none.
    [[nodiscard]] std::optional<std::int32_t> LastNumber() const { return lastNumber_; }
    /// Throws 3022, 3047, 3058, 3990.
    void Update(RowPointer at, std::span<const FieldChange> changes);
    void Delete(RowPointer at);

    /// True when columns (places) belong to no index and keep their values in the row itself.
    [[nodiscard]] bool HoldsAlone(std::span<const std::size_t> columns) const;
    /// Changes such columns in rows of one page, slots ascending, each once.  Throws 3047, 3428.
    void UpdatePage(PageNumber page, std::span<const RowChange> rows);

    /// A value as a change.  Throws 3163, 3349, 3464.
    [[nodiscard]] FieldChange Encode(std::size_t place, const Value& value) const;
    /// Stored bytes of columns of a row, by place; the others stay unset.  Long values are fetched.
    [[nodiscard]] StoredFields Read(RowPointer at, const std::vector<bool>& wanted);
    /// False when the slot holds no row (any more).
    [[nodiscard]] bool Exists(RowPointer at);

    /// Rows with a key in an index.  One with stand-in weights is looked for in the rows themselves: their
    /// entries may be those of other programs.
    [[nodiscard]] bool HasKey(std::size_t realIndex, const RowKey& key);
    [[nodiscard]] std::vector<RowPointer> RowsWithKey(std::size_t realIndex, const RowKey& key);

    /// Writes the counters into the definition page, if they have changed.
    void SaveCounters();

  private:
    struct Index {
        KeyMaker maker;
        BTree tree;
        std::vector<bool> columns;  ///< by place: the key is made of it
        bool unique, required, ignoresNulls;
    };

    [[nodiscard]] std::size_t PlaceOfAutonumber() const;
    void MakeKey(const Index& index, const StoredFields& fields, RowKey& key) const;
    void CheckKey(std::size_t index, const RowKey& key, RowPointer self);
    void AddEntry(std::size_t index, const RowKey& key, RowPointer at);
    void RemoveEntry(std::size_t index, const StoredFields& fields, RowPointer at);
    ByteVector ReadBytes(RowPointer at);
    bool PatchFixed(RowPointer at, const ByteVector& row, std::span<const FieldChange> changes);
    void UpdateEntries(RowPointer at, const RowView& row, std::span<const FieldChange> changes);
    ByteVector Rebuild(const RowView& row, std::span<const FieldChange> changes);
    [[nodiscard]] std::optional<ByteVector> Fetch(const RowView& row, std::size_t place);
    void DrawNumber(std::vector<Value>& values) const;

    WriteContext& context_;
    std::string name_;
    TableDefinition definition_;
    RowShape shape_;
    RowBuilder builder_;
    TableRows rows_;
    std::map<std::size_t, LongValueStore> longValues_;  ///< by place
    std::vector<Index> indexes_;                        ///< one for each real index
    std::vector<RowKey> keys_;                          ///< of the row at hand, one for each index
    bool randomNumbers_ = false;                        ///< the autonumber column draws its numbers
    std::optional<std::int32_t> lastNumber_;
    bool countersChanged_ = false;
};

}  // namespace tavrel::jet
