#include "jet/table/RelationRules.h"

#include <algorithm>

#include "jet/index/KeyEncoder.h"
#include "jet/storage/TextCoding.h"
#include "jet/table/UnknownWeight.h"
#include "text/Case.h"

namespace tavrel::jet {

namespace {

/// Marks the columns of the table's own index behind a link.
std::vector<bool> ColumnsOf(const TableDefinition& table, const LogicalIndex& link) {
    std::vector<bool> columns(table.columns.size());
    for (const IndexColumn& column : table.realIndexes.at(link.real).columns) {
        const std::size_t place = table.FindColumn(column.number);
        if (place == TableDefinition::npos) {
            ThrowDamaged("관계 " + link.name + "의 열이 없음");
        }
        columns[place] = true;
    }
    return columns;
}

bool Overlap(const std::vector<bool>& columns, std::span<const FieldChange> changes) {
    return std::ranges::any_of(changes,
                               [&](const FieldChange& change) { return bool{columns[change.place]}; });
}

/// Links of one side of a table's relations.
std::vector<const LogicalIndex*> LinksOf(const TableDefinition& table, RelationSide side) {
    std::vector<const LogicalIndex*> links;
    for (const LogicalIndex& link : table.logicalIndexes) {
        if (link.side == side) {
            if (link.real >= table.realIndexes.size()) {
                ThrowDamaged("관계 " + link.name + "의 트리가 없음");
            }
            links.push_back(&link);
        }
    }
    return links;
}

}  // namespace

void RelationRules::Begin() {
    deleting_.clear();
    updating_.clear();
}

RelationRules::PartnerIndex RelationRules::Partner(const LogicalIndex& link) {
    EditedTable& table = find_(link.partnerPage);
    for (const LogicalIndex& other : table.Definition().logicalIndexes) {
        if (other.number == link.partner && other.real < table.Definition().realIndexes.size()) {
            return {&table, &other};
        }
    }
    ThrowDamaged("관계 " + link.name + "의 상대 인덱스가 없음");
}

/// The key that a row of this table asks for in the partner's index; nothing when a column is null.
std::optional<RowKey> RelationRules::PartnerKey(const EditedTable& table, const LogicalIndex& link,
                                                const PartnerIndex& partner, const StoredFields& fields) {
    const TableDefinition& own = table.Definition();
    const TableDefinition& other = partner.table->Definition();
    const std::vector<IndexColumn>& ownColumns = own.realIndexes[link.real].columns;
    const std::vector<IndexColumn>& otherColumns = other.realIndexes[partner.link->real].columns;
    if (ownColumns.size() != otherColumns.size()) {
        ThrowDamaged("관계 " + link.name + "의 열 수가 다름");
    }
    RowKey key;
    for (std::size_t i = 0; i < ownColumns.size(); ++i) {
        const std::optional<ByteVector>& field = fields[own.FindColumn(ownColumns[i].number)];
        if (!field) {
            return std::nullopt;
        }
        const std::size_t place = other.FindColumn(otherColumns[i].number);
        if (place == TableDefinition::npos ||
            other.columns[place].type != own.columns[own.FindColumn(ownColumns[i].number)].type) {
            ThrowDamaged("관계 " + link.name + "의 열 형식이 다름");
        }
        const bool ascending = otherColumns[i].ascending;
        auto part = EncodeKeyColumn(other.columns[place], ByteView(*field), ascending);
        if (!part) {
            key.standIn = true;
            part =
                EncodeKeyColumn(other.columns[place], ByteView(*field), ascending, UnknownWeights::StandIn);
        }
        if (!part) {
            ThrowUnknownWeight(DecodeUnits(*field), other.columns[place].sortOrder,
                               other.columns[place].name);
        }
        AppendBytes(key.bytes, *part);
    }
    key.standIn = key.standIn || key.bytes.size() > kLongestKnownKey;
    return key;
}

/// Child side.  `changed` limits the check to relations with a changed column.
void RelationRules::CheckParents(EditedTable& table, RowPointer at, const std::vector<bool>* changed) {
    for (const LogicalIndex* link : LinksOf(table.Definition(), RelationSide::Child)) {
        const std::vector<bool> columns = ColumnsOf(table.Definition(), *link);
        if (changed != nullptr) {
            bool touched = false;
            for (std::size_t place = 0; place < columns.size(); ++place) {
                touched = touched || (columns[place] && (*changed)[place]);
            }
            if (!touched) {
                continue;
            }
        }
        const PartnerIndex parent = Partner(*link);
        const std::optional<RowKey> key = PartnerKey(table, *link, parent, table.Read(at, columns));
        if (key && !parent.table->HasKey(parent.link->real, *key)) {
            throw MakeError(errors::kNoParentRecord, {parent.table->Name()});
        }
    }
}

RowPointer RelationRules::Insert(EditedTable& table, std::span<const Value> values) {
    const RowPointer at = table.Insert(values);
    CheckParents(table, at, nullptr);  // the row may be its own parent
    return at;
}

/// Parent side: the children that a change of keys takes along.  Throws 3200 where they may not be.
std::vector<RelationRules::Cascade> RelationRules::PlanUpdate(EditedTable& table, RowPointer at,
                                                              std::span<const FieldChange> changes) {
    std::vector<Cascade> cascades;
    for (const LogicalIndex* link : LinksOf(table.Definition(), RelationSide::Parent)) {
        const std::vector<bool> columns = ColumnsOf(table.Definition(), *link);
        if (!Overlap(columns, changes)) {
            continue;
        }
        const StoredFields before = table.Read(at, columns);
        StoredFields after = before;
        for (const FieldChange& change : changes) {
            if (columns[change.place]) {
                after[change.place] = change.bytes;
            }
        }
        if (after == before) {
            continue;
        }
        const PartnerIndex child = Partner(*link);
        const std::optional<RowKey> key = PartnerKey(table, *link, child, before);
        const std::optional<RowKey> newKey = PartnerKey(table, *link, child, after);
        if (!key || (newKey && key->bytes == newKey->bytes)) {
            continue;
        }
        Cascade cascade{child.table, child.table->RowsWithKey(child.link->real, *key), {}};
        if (cascade.rows.empty()) {
            continue;
        }
        if (link->cascadeUpdates != 1) {
            throw MakeError(errors::kChildRecords, {child.table->Name()});
        }
        const TableDefinition& own = table.Definition();
        const TableDefinition& other = child.table->Definition();
        for (std::size_t i = 0; i < own.realIndexes[link->real].columns.size(); ++i) {
            const std::size_t from = own.FindColumn(own.realIndexes[link->real].columns[i].number);
            const std::size_t to = other.FindColumn(other.realIndexes[child.link->real].columns[i].number);
            cascade.changes.push_back({to, after[from], std::nullopt});
        }
        cascades.push_back(std::move(cascade));
    }
    return cascades;
}

bool RelationRules::Update(EditedTable& table, RowPointer at, std::span<const FieldChange> changes) {
    if (!table.Exists(at)) {
        return false;
    }
    const auto self = std::pair(table.Definition().page, at);
    const std::vector<Cascade> cascades = PlanUpdate(table, at, changes);
    table.Update(at, changes);
    if (!cascades.empty() && updating_.insert(self).second) {
        for (const Cascade& cascade : cascades) {
            for (const RowPointer child : cascade.rows) {
                Update(*cascade.child, child, cascade.changes);
            }
        }
        updating_.erase(self);
    }
    std::vector<bool> changed(table.Definition().columns.size());
    for (const FieldChange& change : changes) {
        changed[change.place] = true;
    }
    CheckParents(table, at, &changed);
    return true;
}

/// The parent of a row goes: the row loses its key, if the relation says so.
void RelationRules::Release(EditedTable& child, RowPointer row, const LogicalIndex& link) {
    if (!DeletesSetNull(link.name)) {
        throw MakeError(errors::kChildRecords, {child.Name()});
    }
    const TableDefinition& table = child.Definition();
    std::vector<FieldChange> changes;
    for (const IndexColumn& column : table.realIndexes.at(link.real).columns) {
        changes.push_back(child.Encode(table.FindColumn(column.number), Null{}));
    }
    Update(child, row, changes);
}

bool RelationRules::DeletesSetNull(const std::string& relation) const {
    return std::ranges::any_of(catalog_.RelationRows(), [&](const RelationRow& row) {
        return (row.grbit & relationFlags::kDeletesSetNull) != 0 &&
               text::EqualIgnoringCase(row.name, relation);
    });
}

bool RelationRules::Delete(EditedTable& table, RowPointer at) {
    const auto self = std::pair(table.Definition().page, at);
    if (!table.Exists(at) || !deleting_.insert(self).second) {
        return false;
    }
    for (const LogicalIndex* link : LinksOf(table.Definition(), RelationSide::Parent)) {
        const PartnerIndex child = Partner(*link);
        const std::optional<RowKey> key =
            PartnerKey(table, *link, child, table.Read(at, ColumnsOf(table.Definition(), *link)));
        if (!key) {
            continue;
        }
        for (const RowPointer row : child.table->RowsWithKey(child.link->real, *key)) {
            if (deleting_.contains({child.table->Definition().page, row})) {
                continue;  // the row itself, or one that is on its way out
            }
            if (link->cascadeDeletes == 1) {
                Delete(*child.table, row);
            } else {
                Release(*child.table, row, *child.link);
            }
        }
    }
    table.Delete(at);
    deleting_.erase(self);
    return true;
}

}  // namespace tavrel::jet
