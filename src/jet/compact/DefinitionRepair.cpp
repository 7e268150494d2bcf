#include "jet/compact/DefinitionRepair.h"

#include <algorithm>
#include <set>

#include "jet/catalog/Catalog.h"
#include "jet/catalog/NewSystemTables.h"
#include "jet/compact/SourcePages.h"

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

constexpr std::uint16_t kLongestText = 510;
constexpr std::uint16_t kKnownFlags =
    indexFlags::kUnique | indexFlags::kIgnoreNulls | indexFlags::kRequired | indexFlags::kAlways;

/// Lengths, marks and flags that contradict the rest get the value that goes with it.
bool RepairFields(TableDefinition& table) {
    const auto set = [](auto& field, auto value) {
        const bool same = field == value;
        field = value;
        return same;
    };
    bool whole = true;
    for (Column& column : table.columns) {
        const bool text = column.type == ColumnType::Text || column.type == ColumnType::Binary;
        const bool odd = column.type == ColumnType::Text && column.length % 2 != 0;
        if (text && !column.Fixed() && (column.length == 0 || column.length > kLongestText || odd)) {
            whole = set(column.length, kLongestText) && whole;
        }
        if (IsLong(column.type)) {
            whole = set(column.length, std::uint16_t{0}) && whole;
        }
        if ((column.flags & columnFlags::kAutonumber) != 0 && column.type != ColumnType::Long) {
            whole = set(column.flags, static_cast<std::uint8_t>(column.flags & ~columnFlags::kAutonumber)) &&
                    whole;
        }
    }
    for (LogicalIndex& index : table.logicalIndexes) {
        if (index.side == RelationSide::None) {
            const LogicalIndex none;
            whole = set(index.partner, none.partner) && whole;
            whole = set(index.partnerPage, none.partnerPage) && whole;
            whole = set(index.cascadeUpdates, none.cascadeUpdates) && whole;
            whole = set(index.cascadeDeletes, none.cascadeDeletes) && whole;
        }
    }
    for (RealIndex& index : table.realIndexes) {
        const bool primary = std::ranges::any_of(table.logicalIndexes, [&](const LogicalIndex& name) {
            return name.kind == LogicalKind::Primary && name.real < table.realIndexes.size() &&
                   &table.realIndexes[name.real] == &index;
        });
        unsigned flags = (index.flags & kKnownFlags) | indexFlags::kAlways;
        if (primary) {
            flags =
                (flags | indexFlags::kUnique | indexFlags::kRequired) & ~unsigned{indexFlags::kIgnoreNulls};
        }
        if (table.kind == 'N') {
            whole = set(index.flags, static_cast<std::uint16_t>(flags)) && whole;
        }
        whole = whole && index.constantsRight;
    }
    return whole;
}

/// The same columns and indexes, wherever their pages are.
bool HasSameStructure(const TableDefinition& table, const TableDefinition& expected) {
    const auto sameColumn = [](const Column& a, const Column& b) {
        const bool placed = !a.Fixed() || a.type == ColumnType::Boolean || a.fixedOffset == b.fixedOffset;
        return a.name == b.name && a.number == b.number && a.type == b.type && a.flags == b.flags && placed &&
               a.variableIndex == b.variableIndex && a.length == b.length;
    };
    const auto sameTree = [](const RealIndex& a, const RealIndex& b) {
        const auto sameKey = [](const IndexColumn& x, const IndexColumn& y) {
            return x.number == y.number && x.ascending == y.ascending;
        };
        return a.flags == b.flags && a.constantsRight && std::ranges::equal(a.columns, b.columns, sameKey);
    };
    const auto sameName = [](const LogicalIndex& a, const LogicalIndex& b) {
        return a.name == b.name && a.number == b.number && a.real == b.real && a.kind == b.kind &&
               a.side == b.side && a.partner == b.partner && a.partnerPage == b.partnerPage &&
               a.cascadeUpdates == b.cascadeUpdates && a.cascadeDeletes == b.cascadeDeletes;
    };
    return std::ranges::equal(table.columns, expected.columns, sameColumn) &&
           std::ranges::equal(table.realIndexes, expected.realIndexes, sameTree) &&
           std::ranges::equal(table.logicalIndexes, expected.logicalIndexes, sameName);
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
    whole = RepairFields(table) && whole;
    return whole && table.realIndexes.size() == trees && table.constantsRight;
}

bool RemoveTree(TableDefinition& table, std::size_t real) {
    const auto uses = [real](const LogicalIndex& index) { return index.real == real; };
    if (std::ranges::any_of(table.logicalIndexes, [&](const LogicalIndex& index) {
            return uses(index) && index.side != RelationSide::None;
        })) {
        return false;
    }
    std::erase_if(table.logicalIndexes, uses);
    DropUnnamedTrees(table);
    return true;
}

void RemoveIndex(TableDefinition& table, std::uint32_t number) {
    std::erase_if(table.logicalIndexes, [&](const LogicalIndex& index) { return index.number == number; });
    DropUnnamedTrees(table);
}

TableDefinition SystemDefinition(Pager& pager, PageNumber page, std::uint16_t sortOrder, bool& intact) {
    TableDefinition expected = NewSystemTables(sortOrder)[page - kObjectsPage];
    try {
        TableDefinition table = ReadTableDefinition(pager, page);
        LossLog ignored;
        intact = HasSameStructure(table, expected) && RepairDefinition(table, "", ignored);
        if (intact) {
            return table;
        }
    } catch (const Error& error) {
        RequireDamage(error);
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
