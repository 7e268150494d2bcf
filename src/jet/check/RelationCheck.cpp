#include "jet/check/RelationCheck.h"

#include <algorithm>

#include "jet/check/Places.h"
#include "jet/check/RelationFacts.h"
#include "jet/check/SystemTable.h"
#include "text/Case.h"

namespace tavrel::jet::check {

using text::Lower;

RelationCheck::RelationCheck(Context& context, const std::vector<CatalogObject>& objects,
                             const std::vector<CheckedTable>& tables)
    : context_(context), log_(context.log), objects_(objects), tables_(tables) {
    for (const CheckedTable& table : tables) {
        byName_[Lower(table.object->name)] = &table.definition;
    }
    for (const CatalogObject& object : objects) {
        if (object.IsLinked() || object.type == static_cast<std::int16_t>(ObjectType::Query)) {
            linked_.insert(Lower(object.name));
        }
    }
}

void RelationCheck::Run() {
    ReadRows();
    CheckObjects();
    for (auto& [name, rows] : relations_) {
        CheckRelation(name, rows);
    }
    CheckOrphans();
    log_.Count("relations", relations_.size());
}

void RelationCheck::ReadRows() {
    SystemTable(context_.pager, kRelationshipsPage, context_.header.ownerKey)
        .ForEach([&](RowPointer, const SystemTable::Row& row) {
            RelationRow relation;
            relation.name = row.Text("szRelationship");
            relation.grbit = static_cast<std::uint32_t>(row.Long("grbit"));
            relation.columnCount = row.Long("ccolumn");
            relation.column = row.Long("icolumn");
            relation.childTable = row.Text("szObject");
            relation.childColumn = row.Text("szColumn");
            relation.parentTable = row.Text("szReferencedObject");
            relation.parentColumn = row.Text("szReferencedColumn");
            relations_[relation.name].push_back(std::move(relation));
        });
}

/// Each relation is an object too.
void RelationCheck::CheckObjects() {
    std::set<std::string> objects;
    std::set<std::string> withRows;
    for (const CatalogObject& object : objects_) {
        if (object.type == static_cast<std::int16_t>(ObjectType::Relation)) {
            objects.insert(Lower(object.name));
        }
    }
    for (const auto& [name, rows] : relations_) {
        withRows.insert(Lower(name));
        if (objects.count(Lower(name)) == 0) {
            log_.Add(FindingKind::RelationObject, "관계 " + name);
        }
    }
    for (const std::string& object : objects) {
        if (withRows.count(object) == 0) {
            log_.Add(FindingKind::RelationNoRows, "관계 " + object);
        }
    }
}

void RelationCheck::CheckRelation(const std::string& name, std::vector<RelationRow>& rows) {
    const std::string where = "관계 " + name;
    if (!ArrangeRelationRows(rows)) {
        log_.Add(FindingKind::RelationRowsDiffer, where);
        return;
    }
    const Side child = FindSide(where, rows[0].childTable);
    const Side parent = FindSide(where, rows[0].parentTable);
    for (const RelationRow& row : rows) {
        CheckColumn(where, child, row.childColumn);
        CheckColumn(where, parent, row.parentColumn);
    }
    if (child.definition != nullptr && parent.definition != nullptr) {
        CheckEntries(where, rows[0], child, parent, rows);
    }
}

RelationCheck::Side RelationCheck::FindSide(const std::string& where, const std::string& table) {
    const auto found = byName_.find(Lower(table));
    if (found == byName_.end() && linked_.count(Lower(table)) == 0) {
        log_.Add(FindingKind::RelationTable, where, {table});
    }
    return {table, found == byName_.end() ? nullptr : found->second};
}

void RelationCheck::CheckColumn(const std::string& where, const Side& side, const std::string& column) {
    if (side.definition == nullptr) {
        return;
    }
    const std::string wanted = Lower(column);
    if (std::none_of(side.definition->columns.begin(), side.definition->columns.end(),
                     [&](const Column& c) { return Lower(c.name) == wanted; })) {
        log_.Add(FindingKind::RelationColumn, where, {side.table + "." + column});
    }
}

/// An enforced relation has an entry in each definition; the two name each other.
void RelationCheck::CheckEntries(const std::string& where, const RelationRow& relation, const Side& child,
                                 const Side& parent, const std::vector<RelationRow>& rows) {
    const std::vector<const LogicalIndex*> entries = ChildEntries(*child.definition, relation.name);
    if ((relation.grbit & relationFlags::kNotEnforced) != 0) {
        if (!entries.empty()) {
            log_.Add(FindingKind::RelationNotEnforced, where);
        }
        return;
    }
    if (entries.size() != 1) {
        log_.Add(FindingKind::RelationChild, where, {Number(entries.size())});
        return;
    }
    const LogicalIndex& ours = *entries.front();
    const LogicalIndex* theirs = PartnerOf(*child.definition, ours, *parent.definition);
    if (theirs == nullptr) {
        log_.Add(FindingKind::RelationPartner, where);
        return;
    }
    used_.emplace(child.definition->page, ours.number);
    used_.emplace(parent.definition->page, theirs->number);
    CheckIndexes(where, *child.definition, ours, *parent.definition, *theirs, rows);
}

void RelationCheck::CheckIndexes(const std::string& where, const TableDefinition& child,
                                 const LogicalIndex& childEntry, const TableDefinition& parent,
                                 const LogicalIndex& parentEntry, const std::vector<RelationRow>& rows) {
    for (const LogicalIndex* entry : {&childEntry, &parentEntry}) {
        if (!CascadesMatch(*entry, rows[0].grbit)) {
            log_.Add(FindingKind::RelationCascade, where);
        }
    }
    if (!IndexesMatch(child, childEntry, parent, parentEntry, rows)) {
        log_.Add(FindingKind::RelationIndex, where);
    }
    if (parentEntry.real < parent.realIndexes.size() && !parent.realIndexes[parentEntry.real].Unique()) {
        log_.Add(FindingKind::RelationUnique, where);
    }
}

void RelationCheck::CheckOrphans() {
    for (const CheckedTable& table : tables_) {
        for (const LogicalIndex& index : table.definition.logicalIndexes) {
            const bool ofRelation = index.kind == LogicalKind::Relation || index.rawSide != 0;
            if (ofRelation && used_.count({table.definition.page, index.number}) == 0) {
                log_.Add(FindingKind::RelationOrphan, TablePlace(table.object->name), {index.name});
            }
        }
    }
}

}  // namespace tavrel::jet::check
