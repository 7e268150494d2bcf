// One table of a new database: rows first, then its indexes, then its definition, which names the places of
// all.
#pragma once

#include <map>
#include <optional>

#include "jet/catalog/TableDefinition.h"
#include "jet/compact/IndexOutput.h"
#include "jet/compact/MapRows.h"
#include "jet/compact/RowsOutput.h"

namespace tavrel::jet::compact {

class TableOutput {
  public:
    /// Takes the pages of the definition and of the maps.  `maps`, when given, are shared rows from
    /// `firstMap` on; `page` 0 = a new page for the definition.
    TableOutput(PageOutput& out, TableDefinition definition, PageNumber page = 0, MapRows* maps = nullptr,
                std::size_t firstMap = 0);
    TableOutput(const TableOutput&) = delete;
    TableOutput& operator=(const TableOutput&) = delete;
    /// Number of map rows that a table takes.
    static std::size_t MapCount(const TableDefinition& definition);

    [[nodiscard]] const TableDefinition& Definition() const { return definition_; }
    /// For what is not known before other tables are written; its length must stay.
    [[nodiscard]] TableDefinition& Definition() { return definition_; }

    RowPointer Append(ByteView row) {
        ++rows_;
        if (autonumber_) {
            NoteAutonumber(row);
        }
        return data_->Append(row);
    }
    /// Long values of a column (place in the definition).
    [[nodiscard]] LongValuesOutput& LongValues(std::size_t place) { return longValues_.at(place); }
    /// No more rows.
    void FinishRows();
    [[nodiscard]] IndexOutput BeginIndex() { return {out_, definition_.page}; }
    void EndIndex(std::size_t index, IndexOutput& written);
    /// No more indexes: the maps are written.
    void FinishIndexes();
    /// Writes the definition.
    void PutDefinition();

  private:
    void GiveMaps();
    void NoteAutonumber(ByteView row);
    void RaiseAutonumber();
    void SetMaps(std::size_t map, const WrittenPages& pages, bool shares);

    PageOutput& out_;
    TableDefinition definition_;
    std::optional<MapRows> ownMaps_;
    MapRows* maps_;
    std::size_t firstMap_;
    std::size_t firstIndexMap_ = 0;
    std::optional<RowsOutput> data_;
    std::map<std::size_t, LongValuesOutput> longValues_;  ///< by place
    std::uint32_t rows_ = 0;
    std::optional<std::size_t> autonumber_;  ///< place of the column with running numbers
    std::uint32_t highestAutonumber_ = 0;
    RowShape shape_;
};

}  // namespace tavrel::jet::compact
