#include "jet/engine/compact/DefinitionRepair.h"

#include <algorithm>
#include <set>

#include "jet/catalog/Catalog.h"
#include "jet/catalog/NewSystemTables.h"

namespace tavrel::jet::compact {

namespace {

constexpr RowPointer kNowhere{0, 0};

void RequirePlausibleColumns(const TableDefinition& table) {
    std::set<std::uint16_t> numbers;
    std::set<std::uint16_t> variables;
    std::set<std::string> names;
    for (const Column& column : table.columns) {
        const bool fixedFits = !column.Fixed() || column.fixedOffset + std::size_t{column.length} < kPageSize;
        const bool variableFits = column.Fixed() || (column.variableIndex < table.variableNumbers &&
                                                     variables.insert(column.variableIndex).second);
        const unsigned length = FixedLength(column.type);
        const bool lengthFits =
            !column.Fixed() || column.type == ColumnType::Boolean || length == 0 || column.length == length;
        if (!numbers.insert(column.number).second || column.number >= table.columnNumbers || !fixedFits ||
            !variableFits || !lengthFits || column.name.empty() || !names.insert(column.name).second ||
            (column.Fixed() && IsLong(column.type))) {
            ThrowDamaged("열 " + column.name + "의 정의가 잘못됨");
        }
    }
    if (table.columns.empty() || table.columns.size() > kMaxColumns) {
        ThrowDamaged("열의 수가 잘못됨");
    }
}

bool IsUsable(const TableDefinition& table, const RealIndex& index) {
    return !index.columns.empty() && std::ranges::all_of(index.columns, [&](const IndexColumn& column) {
        return table.FindColumn(column.number) != TableDefinition::npos;
    });
}

/// Trees that no name uses go; the others are numbered anew.
void DropUnnamedTrees(TableDefinition& table) {
    std::vector<RealIndex> kept;
    for (std::uint32_t real = 0; real < table.realIndexes.size(); ++real) {
        const auto place = static_cast<std::uint32_t>(kept.size());
        bool named = false;
        for (LogicalIndex& index : table.logicalIndexes) {
            if (index.real == real) {
                index.real = place;
                named = true;
            }
        }
        if (named) {
            kept.push_back(table.realIndexes[real]);
        }
    }
    table.realIndexes = std::move(kept);
}

/// One pair of maps for each long-value column.
bool RepairTrailer(TableDefinition& table) {
    std::vector<LongValueMaps> trailer;
    for (const LongValueMaps& maps : table.trailer) {
        const std::size_t place = table.FindColumn(maps.column);
        if (place != TableDefinition::npos && IsLong(table.columns[place].type) &&
            std::ranges::find(trailer, maps.column, &LongValueMaps::column) == trailer.end()) {
            trailer.push_back(maps);
        }
    }
    bool whole = trailer.size() == table.trailer.size();
    for (Column& column : table.columns) {
        if (IsLong(column.type) &&
            std::ranges::find(trailer, column.number, &LongValueMaps::column) == trailer.end()) {
            trailer.push_back({column.number, {1, 0}, {1, 0}});
            column.hasMaps = true;
            whole = false;
        }
    }
    table.trailer = std::move(trailer);
    return whole;
}

}  // namespace

bool RepairDefinition(TableDefinition& table, const std::string& name, LossLog& losses) {
    RequirePlausibleColumns(table);
    bool whole = RepairTrailer(table);
    const std::size_t trees = table.realIndexes.size();
    std::set<std::string> names;
    std::set<std::uint32_t> numbers;
    std::erase_if(table.logicalIndexes, [&](const LogicalIndex& index) {
        if (index.real < trees && IsUsable(table, table.realIndexes[index.real]) && index.rawSide <= 2 &&
            index.rawKind <= 2 && names.insert(index.name).second && numbers.insert(index.number).second) {
            return false;
        }
        losses.Add("테이블 " + name, "인덱스 " + index.name + "의 정의가 잘못됨");
        whole = false;
        return true;
    });
    DropUnnamedTrees(table);
    table.kind = table.page <= kRelationshipsPage ? 'S' : 'N';
    return whole && table.realIndexes.size() == trees && table.constantsRight;
}

void RemoveIndex(TableDefinition& table, std::uint32_t number) {
    std::erase_if(table.logicalIndexes, [&](const LogicalIndex& index) { return index.number == number; });
    DropUnnamedTrees(table);
}

TableDefinition SystemDefinition(Pager& pager, PageNumber page, std::uint16_t sortOrder, bool& intact) {
    TableDefinition expected = NewSystemTables(sortOrder)[page - kObjectsPage];
    try {
        TableDefinition table = ReadTableDefinition(pager, page);
        const auto isExpected = [&](const Column& column) {
            const std::size_t place = expected.FindColumnByName(column.name);
            return place != TableDefinition::npos && expected.columns[place].number == column.number &&
                   expected.columns[place].type == column.type &&
                   (!column.Fixed() || column.type == ColumnType::Boolean ||
                    expected.columns[place].fixedOffset == column.fixedOffset);
        };
        LossLog ignored;
        intact = std::ranges::count_if(table.columns, isExpected) == std::ssize(expected.columns) &&
                 table.columns.size() == expected.columns.size() &&
                 table.realIndexes.size() == expected.realIndexes.size() &&
                 table.logicalIndexes.size() == expected.logicalIndexes.size() &&
                 RepairDefinition(table, "", ignored);
        if (intact) {
            return table;
        }
    } catch (const Error&) {
        intact = false;
    }
    expected.page = page;
    expected.ownedMap = kNowhere;
    for (LongValueMaps& maps : expected.trailer) {
        maps.free = {1, 0};  // shared pages
        expected.columns[expected.FindColumn(maps.column)].hasMaps = true;
    }
    return expected;
}

}  // namespace tavrel::jet::compact
