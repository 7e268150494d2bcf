#include "jet/compact/RelationSalvage.h"

#include <algorithm>

#include "jet/check/RelationFacts.h"
#include "jet/compact/DefinitionRepair.h"
#include "text/Case.h"

namespace tavrel::jet::compact {

using text::Lower;

void RelationNames::Add(ObjectType type, const std::string& name) {
    switch (type) {
        case ObjectType::Relation:
            objects.insert(Lower(name));
            break;
        case ObjectType::LinkedTable:
        case ObjectType::LinkedOdbc:
        case ObjectType::Query:
            elsewhere.insert(Lower(name));
            break;
        default:
            break;
    }
}

RelationSalvage::RelationSalvage(std::vector<SourceTable>& tables, LossLog& losses)
    : tables_(tables), losses_(losses) {
    for (SourceTable& table : tables_) {
        byName_[Lower(table.name)] = &table;
    }
}

bool RelationSalvage::Settle(const std::vector<RelationRow>& rows, const RelationNames& names) {
    std::map<std::string, std::vector<RelationRow>> relations;
    for (const RelationRow& row : rows) {
        relations[Lower(row.name)].push_back(row);
    }
    for (auto& [name, its] : relations) {
        if (!IsWhole(its, names)) {
            Break(its.front().name, "행과 개체와 두 테이블의 인덱스가 서로 맞지 않음");
        }
    }
    for (const std::string& object : names.objects) {
        if (!relations.contains(object)) {
            Break(object, "관계의 행을 잃음");
        }
    }
    DropOtherEntries();
    return broken_.empty();
}

TableDefinition* RelationSalvage::Find(const std::string& table) {
    const auto found = byName_.find(Lower(table));
    return found == byName_.end() ? nullptr : &found->second->definition;
}

bool RelationSalvage::HasColumn(const std::string& table, const std::string& column,
                                const RelationNames& names) {
    const TableDefinition* definition = Find(table);
    return definition != nullptr ? definition->FindColumnByName(column) != TableDefinition::npos
                                 : names.elsewhere.contains(Lower(table));
}

bool RelationSalvage::IsWhole(std::vector<RelationRow>& rows, const RelationNames& names) {
    const auto hasColumns = [&](const RelationRow& row) {
        return HasColumn(row.childTable, row.childColumn, names) &&
               HasColumn(row.parentTable, row.parentColumn, names);
    };
    return names.objects.contains(Lower(rows.front().name)) && check::ArrangeRelationRows(rows) &&
           std::ranges::all_of(rows, hasColumns) && HasEntries(rows);
}

/// One that is enforced has an entry in each of its tables; what cascades, the rows say.
bool RelationSalvage::HasEntries(const std::vector<RelationRow>& rows) {
    const RelationRow& relation = rows.front();
    const TableDefinition* child = Find(relation.childTable);
    const TableDefinition* parent = Find(relation.parentTable);
    if (child == nullptr || parent == nullptr) {
        return true;
    }
    const auto entries = check::ChildEntries(*child, relation.name);
    if ((relation.grbit & relationFlags::kNotEnforced) != 0) {
        return entries.empty();
    }
    if (entries.size() != 1) {
        return false;
    }
    const LogicalIndex& ours = *entries.front();
    const LogicalIndex* theirs = check::PartnerOf(*child, ours, *parent);
    if (theirs == nullptr || !check::IndexesMatch(*child, ours, *parent, *theirs, rows) ||
        !parent->realIndexes.at(theirs->real).Unique() || !check::CascadesMatch(ours, relation.grbit) ||
        !check::CascadesMatch(*theirs, relation.grbit)) {
        return false;
    }
    used_.emplace(child->page, ours.number);
    used_.emplace(parent->page, theirs->number);
    return true;
}

void RelationSalvage::Break(const std::string& relation, const std::string& why) {
    if (broken_.insert(Lower(relation)).second) {
        losses_.Add("관계 " + relation, why);
    }
}

void RelationSalvage::DropOtherEntries() {
    const auto isOther = [&](const SourceTable& table, const LogicalIndex& index) {
        return (index.kind == LogicalKind::Relation || index.side != RelationSide::None) &&
               !used_.contains({table.definition.page, index.number});
    };
    for (SourceTable& table : tables_) {
        const std::vector<LogicalIndex> indexes = table.definition.logicalIndexes;
        for (const LogicalIndex& index : indexes) {
            if (isOther(table, index)) {
                // The relation itself is told of once; the parent's entry has a name of its own.
                if (broken_.insert(Lower(index.name)).second && index.side != RelationSide::Parent) {
                    losses_.Add("테이블 " + table.name, "관계 " + index.name + "의 다른 쪽이 없음");
                }
                RemoveIndex(table.definition, index.number);
                table.intact = false;
            }
        }
    }
}

}  // namespace tavrel::jet::compact
