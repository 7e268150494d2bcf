#include "jet/check/RelationFacts.h"

#include <algorithm>
#include <tuple>

#include "text/Case.h"

namespace tavrel::jet::check {

namespace {

using text::Lower;

bool RowsAgree(const std::vector<RelationRow>& rows) {
    const auto common = [](const RelationRow& row) {
        return std::tie(row.grbit, row.columnCount, row.childTable, row.parentTable);
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].column != static_cast<std::int32_t>(i) || common(rows[i]) != common(rows[0])) {
            return false;
        }
    }
    return rows[0].columnCount == static_cast<std::int32_t>(rows.size());
}

/// The only entry with that number, or null.
const LogicalIndex* EntryByNumber(const TableDefinition& table, std::uint32_t number) {
    const LogicalIndex* found = nullptr;
    for (const LogicalIndex& index : table.logicalIndexes) {
        if (index.number == number) {
            if (found != nullptr) {
                return nullptr;
            }
            found = &index;
        }
    }
    return found;
}

/// Lower-case names of an index's columns.
std::vector<std::string> ColumnNames(const TableDefinition& table, const LogicalIndex& index) {
    std::vector<std::string> names;
    if (index.real < table.realIndexes.size()) {
        for (const IndexColumn& column : table.realIndexes[index.real].columns) {
            const std::size_t place = table.FindColumn(column.number);
            names.push_back(place == TableDefinition::npos ? "" : Lower(table.columns[place].name));
        }
    }
    return names;
}

}  // namespace

bool ArrangeRelationRows(std::vector<RelationRow>& rows) {
    std::ranges::stable_sort(rows, {}, &RelationRow::column);
    return RowsAgree(rows);
}

std::vector<const LogicalIndex*> ChildEntries(const TableDefinition& table, const std::string& relation) {
    std::vector<const LogicalIndex*> entries;
    for (const LogicalIndex& index : table.logicalIndexes) {
        if (index.kind == LogicalKind::Relation && index.side == RelationSide::Child &&
            Lower(index.name) == Lower(relation)) {
            entries.push_back(&index);
        }
    }
    return entries;
}

const LogicalIndex* PartnerOf(const TableDefinition& child, const LogicalIndex& entry,
                              const TableDefinition& parent) {
    const LogicalIndex* partner = EntryByNumber(parent, entry.partner);
    const bool mutual = partner != nullptr && entry.partnerPage == parent.page &&
                        partner->side == RelationSide::Parent && partner->kind == LogicalKind::Relation &&
                        partner->partnerPage == child.page && partner->partner == entry.number;
    return mutual ? partner : nullptr;
}

bool IndexesMatch(const TableDefinition& child, const LogicalIndex& childEntry, const TableDefinition& parent,
                  const LogicalIndex& parentEntry, const std::vector<RelationRow>& rows) {
    const std::vector<std::string> childColumns = ColumnNames(child, childEntry);
    const std::vector<std::string> parentColumns = ColumnNames(parent, parentEntry);
    std::vector<std::pair<std::string, std::string>> have;
    for (std::size_t i = 0; i < std::min(childColumns.size(), parentColumns.size()); ++i) {
        have.emplace_back(childColumns[i], parentColumns[i]);
    }
    std::vector<std::pair<std::string, std::string>> wanted;
    for (const RelationRow& row : rows) {
        wanted.emplace_back(Lower(row.childColumn), Lower(row.parentColumn));
    }
    std::sort(have.begin(), have.end());
    std::sort(wanted.begin(), wanted.end());
    return have == wanted;
}

bool CascadesMatch(const LogicalIndex& entry, std::uint32_t grbit) {
    return (entry.cascadeUpdates != 0) == ((grbit & relationFlags::kCascadeUpdates) != 0) &&
           (entry.cascadeDeletes != 0) == ((grbit & relationFlags::kCascadeDeletes) != 0);
}

}  // namespace tavrel::jet::check
