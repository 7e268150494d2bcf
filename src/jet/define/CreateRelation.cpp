#include "jet/define/CreateRelation.h"

#include <algorithm>

#include "jet/catalog/NewDefinitionPages.h"
#include "jet/define/CreateDefinition.h"
#include "jet/define/CreateNames.h"
#include "jet/index/IndexBuilder.h"
#include "text/Case.h"

namespace tavrel::jet {

namespace {

constexpr std::uint32_t kAdminMask = 0xF00FE;
constexpr std::uint32_t kGroupMask = 0xFFFFF;

std::uint32_t NextLogicalNumber(const TableDefinition& table) {
    std::uint32_t next = 0;
    for (const LogicalIndex& index : table.logicalIndexes) {
        next = std::max(next, index.number + 1);
    }
    return next;
}

std::size_t PlaceOf(const TableDefinition& table, const std::string& column, const std::string& relation) {
    const std::size_t place = table.FindColumnByName(column);
    if (place == TableDefinition::npos) {
        throw MakeError(definitionErrors::kInvalidFieldDefinition, {column}, relation);
    }
    return place;
}

bool SameType(const Column& a, const Column& b) {
    return a.type == b.type && (a.type != ColumnType::Numeric || a.scale == b.scale);
}

}  // namespace

void RelationMaker::Make() {
    CheckName(relation_.name);
    NameKey(relation_.name, writer_.sortOrder_);
    FindTables();
    FindColumns();
    CheckPairs();
    if (relation_.enforced) {
        FindParentTree();
    }
    CheckNames();
    if (relation_.enforced) {
        FindChildTree();
        CheckIndexCounts();
        CheckRows();
    }
    writer_.Atomically([this] {
        if (relation_.enforced) {
            WriteDefinitions();
        }
        WriteRows();
    });
}

void RelationMaker::FindTables() {
    const Writer::ObjectPlace* child = writer_.FindTable(relation_.table);
    const Writer::ObjectPlace* parent = writer_.FindTable(relation_.referencedTable);
    if (child == nullptr || parent == nullptr) {
        throw MakeError(definitionErrors::kNoTableOrConstraint, {},
                        child == nullptr ? relation_.table : relation_.referencedTable);
    }
    for (const Writer::ObjectPlace* table : {child, parent}) {
        if (writer_.open_.contains(static_cast<PageNumber>(table->id))) {
            throw MakeError(definitionErrors::kTableInUse, {table->name});
        }
    }
    self_ = child->id == parent->id;
    childName_ = child->name;
    parentName_ = parent->name;
    Pager& pager = writer_.Context().pager;
    child_ = ReadTableDefinition(pager, static_cast<PageNumber>(child->id));
    if (!self_) {
        otherParent_ = ReadTableDefinition(pager, static_cast<PageNumber>(parent->id));
    }
}

void RelationMaker::FindColumns() {
    std::vector<std::size_t> parents;
    for (const std::string& column : relation_.referencedColumns) {
        parents.push_back(PlaceOf(Parent(), column, relation_.name));
    }
    if (parents.empty()) {
        parents = PrimaryKeyPlaces();
    }
    if (parents.size() != relation_.columns.size()) {
        throw MakeError(definitionErrors::kFieldsDiffer);
    }
    for (std::size_t i = 0; i < parents.size(); ++i) {
        pairs_.push_back({PlaceOf(child_, relation_.columns[i], relation_.name), parents[i]});
    }
}

std::vector<std::size_t> RelationMaker::PrimaryKeyPlaces() const {
    const auto& indexes = Parent().logicalIndexes;
    const auto primary = std::ranges::find(indexes, LogicalKind::Primary, &LogicalIndex::kind);
    if (primary == indexes.end()) {
        throw MakeError(definitionErrors::kNoPrimaryKey, {parentName_});
    }
    std::vector<std::size_t> places;
    for (const IndexColumn& column : Parent().realIndexes[primary->real].columns) {
        places.push_back(Parent().FindColumn(column.number));
    }
    return places;
}

void RelationMaker::CheckPairs() const {
    for (const Pair& pair : pairs_) {
        if (!SameType(child_.columns[pair.child], Parent().columns[pair.parent])) {
            throw MakeError(definitionErrors::kFieldsDiffer, {}, child_.columns[pair.child].name);
        }
        if (self_ && pair.child == pair.parent) {
            throw MakeError(definitionErrors::kFieldOfItself);
        }
    }
}

/// The parent's unique tree over the referenced columns, the primary key before others.  Its order of columns
/// becomes that of the pairs.
void RelationMaker::FindParentTree() {
    for (const bool primary : {true, false}) {
        for (const LogicalIndex& index : Parent().logicalIndexes) {
            const bool wanted =
                index.side == RelationSide::None && (index.kind == LogicalKind::Primary) == primary;
            if (wanted && Parent().realIndexes[index.real].Unique() &&
                OrderByTree(Parent().realIndexes[index.real])) {
                parentTree_ = index.real;
                return;
            }
        }
    }
    throw MakeError(definitionErrors::kNoUniqueIndex);
}

/// Brings the pairs into the order of a tree's columns; false when the tree has others.
bool RelationMaker::OrderByTree(const RealIndex& tree) {
    treePairs_.clear();
    for (const IndexColumn& column : tree.columns) {
        const auto pair = std::ranges::find_if(
            pairs_, [&](const Pair& p) { return Parent().columns[p.parent].number == column.number; });
        if (pair == pairs_.end()) {
            return false;
        }
        treePairs_.push_back(*pair);
    }
    return treePairs_.size() == pairs_.size();
}

void RelationMaker::CheckNames() const {
    if (writer_.Find(kRelationshipsContainer, relation_.name) != nullptr) {
        throw MakeError(errors::kRelationExists, {relation_.name});
    }
    const auto sameName = [this](const LogicalIndex& index) {
        return text::EqualIgnoringCase(index.name, relation_.name);
    };
    if (relation_.enforced && std::ranges::any_of(child_.logicalIndexes, sameName)) {
        throw MakeError(definitionErrors::kIndexExists, {childName_, relation_.name});
    }
}

std::uint16_t RelationMaker::WantedFlags() const {
    return indexFlags::kAlways | (relation_.oneToOne ? indexFlags::kUnique : std::uint16_t{0});
}

/// A plain index of the child over the same columns serves, if its tree has just the flags that a new one
/// would get.
void RelationMaker::FindChildTree() {
    const std::vector<std::uint16_t> wanted = ChildColumns();
    for (const LogicalIndex& index : child_.logicalIndexes) {
        const RealIndex& tree = child_.realIndexes[index.real];
        const bool same =
            std::ranges::equal(tree.columns, wanted, [](const IndexColumn& column, std::uint16_t number) {
                return column.ascending && column.number == number;
            });
        if (index.kind == LogicalKind::Plain && tree.flags == WantedFlags() && same) {
            childTree_ = index.real;
            return;
        }
    }
}

void RelationMaker::CheckIndexCounts() const {
    const std::size_t inChild = child_.logicalIndexes.size() + (self_ ? 2 : 1);
    if (inChild > kMaxIndexes) {
        throw MakeError(errors::kTooManyIndexes, {childName_});
    }
    if (!self_ && otherParent_.logicalIndexes.size() + 1 > kMaxIndexes) {
        throw MakeError(errors::kTooManyIndexes, {parentName_});
    }
}

void RelationMaker::CheckRows() const {
    Pager& pager = writer_.Context().pager;
    const EntryArena children = KeysWithoutNull(pager, child_, ChildColumns());
    if (!EveryKeyFound(children, KeysWithoutNull(pager, Parent(), ParentColumns()))) {
        throw MakeError(definitionErrors::kDataViolatesRelation, {childName_, parentName_});
    }
    if (relation_.oneToOne && children.FirstDuplicate()) {
        throw MakeError(errors::kDuplicateKey, {}, childName_);
    }
}

std::vector<std::uint16_t> RelationMaker::ChildColumns() const {
    std::vector<std::uint16_t> numbers;
    for (const Pair& pair : treePairs_) {
        numbers.push_back(child_.columns[pair.child].number);
    }
    return numbers;
}

std::vector<std::uint16_t> RelationMaker::ParentColumns() const {
    std::vector<std::uint16_t> numbers;
    for (const Pair& pair : treePairs_) {
        numbers.push_back(Parent().columns[pair.parent].number);
    }
    return numbers;
}

// ---- writing

void RelationMaker::WriteDefinitions() {
    WriteContext& context = writer_.Context();
    if (childTree_ == kNoNumber) {
        AddChildTree();
    }
    LinkSides();
    SortLogicalIndexes(child_, writer_.sortOrder_);
    StoreDefinition(context.pager, context.allocator, child_);
    if (!self_) {
        SortLogicalIndexes(otherParent_, writer_.sortOrder_);
        StoreDefinition(context.pager, context.allocator, otherParent_);
    }
}

void RelationMaker::AddChildTree() {
    WriteContext& context = writer_.Context();
    RealIndex tree;
    tree.flags = WantedFlags();
    for (const std::uint16_t number : ChildColumns()) {
        tree.columns.push_back({number, true});
    }
    const KeyMaker maker(child_, tree.columns, context.unknown);
    std::vector<bool> wanted(child_.columns.size());
    maker.MarkColumns(wanted);
    EntryArena entries;
    RowKey key;
    ScanFields(context.pager, child_, wanted, [&](RowPointer row, const StoredFields& fields) {
        maker.Make(fields, key);
        entries.Add(key.bytes, row, key.hasNull);
        if (key.standIn) {
            context.standIns.insert(childName_);
        }
    });
    PageNumber mapPage = child_.ownedMap.page;
    tree.map = context.allocator.NewMap(mapPage);
    tree.root = context.allocator.Allocate();
    context.allocator.Add(tree.map, tree.root);
    tree.distinctKeys =
        BuildIndex(context.pager, context.allocator, child_.page, tree.map, tree.root, entries).distinctKeys;
    childTree_ = static_cast<std::uint32_t>(child_.realIndexes.size());
    child_.realIndexes.push_back(std::move(tree));
}

void RelationMaker::LinkSides() {
    LogicalIndex child;
    child.name = relation_.name;
    child.number = NextLogicalNumber(child_);
    child.real = childTree_;
    child.kind = LogicalKind::Relation;
    child.side = RelationSide::Child;
    child.partnerPage = Parent().page;
    child.cascadeUpdates = relation_.updateCascade ? 1 : 0;
    child.cascadeDeletes = relation_.deleteCascade ? 1 : 0;
    LogicalIndex parent = child;
    parent.number = self_ ? child.number + 1 : NextLogicalNumber(otherParent_);
    parent.name = std::string(".r") + static_cast<char>('A' + parent.number);
    parent.real = parentTree_;
    parent.side = RelationSide::Parent;
    parent.partnerPage = child_.page;
    parent.partner = child.number;
    child.partner = parent.number;
    child_.logicalIndexes.push_back(std::move(child));
    Parent().logicalIndexes.push_back(std::move(parent));
}

void RelationMaker::WriteRows() {
    RelationRow row;
    row.name = relation_.name;
    row.grbit = (relation_.oneToOne ? relationFlags::kOneToOne : 0) |
                (relation_.enforced ? 0 : relationFlags::kNotEnforced) |
                (relation_.updateCascade ? relationFlags::kCascadeUpdates : 0) |
                (relation_.deleteCascade ? relationFlags::kCascadeDeletes : 0) |
                (relation_.deleteSetsNull ? relationFlags::kDeletesSetNull : 0);
    row.columnCount = static_cast<std::int32_t>(pairs_.size());
    row.childTable = childName_;
    row.parentTable = parentName_;
    for (const Pair& pair : pairs_) {
        row.childColumn = child_.columns[pair.child].name;
        row.parentColumn = Parent().columns[pair.parent].name;
        writer_.system_.Add(row);
        ++row.column;
    }
    const std::int32_t id = writer_.nextObjectId_;
    const Permission permissions[] = {{id, &accounts::kAdmin, kAdminMask, false},
                                      {id, &accounts::kAdmins, kGroupMask, false},
                                      {id, &accounts::kUsers, kGroupMask, false}};
    writer_.AddObject({id,
                       kRelationshipsContainer,
                       relation_.name,
                       ObjectType::Relation,
                       0,
                       accounts::kAdmin,
                       writer_.Now(),
                       {}},
                      permissions);
}

}  // namespace tavrel::jet
