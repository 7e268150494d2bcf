#include "jet/catalog/NewSystemTables.h"

#include <span>

#include "jet/catalog/Catalog.h"

namespace tavrel::jet {

namespace {

/// One column.  The lists below are in the order of the records, which is that of the names.
struct SystemColumn {
    std::string_view name;
    ColumnType type;
    std::uint16_t number;
    std::uint16_t variableIndex;  ///< fixed columns: variable columns that were created before
    std::uint16_t offset;         ///< fixed columns only
    bool enciphered = false;
};

struct SystemIndex {
    std::string_view name;
    std::uint32_t number;  ///< logical number
    std::uint32_t real;
    LogicalKind kind;
};

struct SystemTree {
    std::initializer_list<std::uint16_t> columns;
    PageNumber root;
    std::uint16_t flags;
};

struct SystemTable {
    std::string_view name;
    PageNumber page;
    std::span<const SystemColumn> columns;
    std::span<const SystemTree> trees;
    std::span<const SystemIndex> indexes;
    std::span<const std::uint16_t> trailer;  ///< long-value columns in the order of the trailer
};

using enum ColumnType;
constexpr std::uint16_t kUniqueTree = indexFlags::kAlways | indexFlags::kUnique;
constexpr std::uint16_t kRequiredTree = indexFlags::kAlways | indexFlags::kRequired;
constexpr std::uint16_t kIgnoreNullsTree = indexFlags::kAlways | indexFlags::kIgnoreNulls;

constexpr SystemColumn kObjectsColumns[] = {
    {"Connect", Memo, 9, 3, 0},
    {"Database", Memo, 8, 2, 0},
    {"DateCreate", Date, 4, 1, 10},
    {"DateUpdate", Date, 5, 1, 18},
    {"Flags", Long, 7, 2, 26},
    {"ForeignName", Text, 10, 4, 0},
    {"Id", Long, 0, 0, 0},
    {"Lv", Ole, 13, 7, 0},
    {"LvExtra", Ole, 16, 10, 0},
    {"LvModule", Ole, 15, 9, 0},
    {"LvProp", Ole, 14, 8, 0},
    {"Name", Text, 2, 0, 0},
    {"Owner", Binary, 6, 1, 0, true},
    {"ParentId", Long, 1, 0, 4},
    {"RmtInfoLong", Ole, 12, 6, 0},
    {"RmtInfoShort", Binary, 11, 5, 0},
    {"Type", Integer, 3, 1, 8},
};
constexpr std::uint16_t kObjectsTrailer[] = {9, 8, 13, 16, 15, 14, 12};

constexpr SystemColumn kAcesColumns[] = {
    {"ACM", Long, 2, 1, 4},
    {"FInheritable", Boolean, 3, 1, 0},
    {"ObjectId", Long, 0, 0, 0},
    {"SID", Binary, 1, 0, 0, true},
};

constexpr SystemColumn kQueriesColumns[] = {
    {"Attribute", Byte, 1, 0, 4}, {"Expression", Memo, 5, 3, 0}, {"Flag", Integer, 6, 4, 5},
    {"LvExtra", Long, 7, 4, 7},   {"Name1", Text, 3, 1, 0},      {"Name2", Text, 4, 2, 0},
    {"ObjectId", Long, 0, 0, 0},  {"Order", Binary, 2, 0, 0},
};
constexpr std::uint16_t kQueriesTrailer[] = {5};

constexpr SystemColumn kRelationshipsColumns[] = {
    {"ccolumn", Long, 2, 1, 4},
    {"grbit", Long, 1, 1, 0},
    {"icolumn", Long, 3, 1, 8},
    {"szColumn", Text, 5, 2, 0},
    {"szObject", Text, 4, 1, 0},
    {"szReferencedColumn", Text, 7, 4, 0},
    {"szReferencedObject", Text, 6, 3, 0},
    {"szRelationship", Text, 0, 0, 0},
};

const SystemTree kObjectsTrees[] = {{{1, 2}, 7, kUniqueTree}, {{0}, 8, kUniqueTree}};
const SystemTree kAcesTrees[] = {{{0}, 9, kRequiredTree}};
const SystemTree kQueriesTrees[] = {{{0, 1, 2}, 10, kUniqueTree}};
const SystemTree kRelationshipsTrees[] = {
    {{0}, 11, kIgnoreNullsTree}, {{4}, 12, kIgnoreNullsTree}, {{6}, 13, kIgnoreNullsTree}};

constexpr SystemIndex kObjectsIndexes[] = {{"Id", 1, 1, LogicalKind::Primary},
                                           {"ParentIdName", 0, 0, LogicalKind::Plain}};
constexpr SystemIndex kAcesIndexes[] = {{"ObjectId", 0, 0, LogicalKind::Plain}};
constexpr SystemIndex kQueriesIndexes[] = {{"ObjectIdAttribute", 0, 0, LogicalKind::Primary}};
constexpr SystemIndex kRelationshipsIndexes[] = {{"szObject", 1, 1, LogicalKind::Plain},
                                                 {"szReferencedObject", 2, 2, LogicalKind::Plain},
                                                 {"szRelationship", 0, 0, LogicalKind::Plain}};

const SystemTable kTables[] = {
    {"MSysObjects", kObjectsPage, kObjectsColumns, kObjectsTrees, kObjectsIndexes, kObjectsTrailer},
    {"MSysACEs", kAcesPage, kAcesColumns, kAcesTrees, kAcesIndexes, {}},
    {"MSysQueries", kQueriesPage, kQueriesColumns, kQueriesTrees, kQueriesIndexes, kQueriesTrailer},
    {"MSysRelationships",
     kRelationshipsPage,
     kRelationshipsColumns,
     kRelationshipsTrees,
     kRelationshipsIndexes,
     {}},
};

/// Length of every Text and Binary column of these tables, in bytes.
constexpr std::uint16_t kVariableLength = 510;

Column NewSystemColumn(const SystemColumn& facts, std::uint16_t sortOrder) {
    const bool fixed = facts.type <= ColumnType::Date;
    Column column;
    column.name = facts.name;
    column.type = facts.type;
    column.number = facts.number;
    column.variableIndex = facts.variableIndex;
    column.sortOrder = sortOrder;
    column.flags = columnFlags::kEngine | columnFlags::kNullable;
    if (facts.enciphered) {
        // The two enciphered columns are 32, all others 12 or 13: bit 10 means the same tables, bit 20 the
        // cipher.
        column.flags |= columnFlags::kEnciphered;
    }
    column.flags |= fixed ? columnFlags::kFixed : 0;
    column.fixedOffset = facts.offset;
    column.length = IsLong(facts.type) ? 0
                    : fixed            ? static_cast<std::uint16_t>(FixedLength(facts.type))
                                       : kVariableLength;
    return column;
}

TableDefinition NewSystemTable(const SystemTable& facts, std::uint16_t sortOrder) {
    TableDefinition table;
    table.page = facts.page;
    table.kind = 'S';
    for (const SystemColumn& column : facts.columns) {
        table.columns.push_back(NewSystemColumn(column, sortOrder));
        table.variableNumbers =
            static_cast<std::uint16_t>(table.variableNumbers + !table.columns.back().Fixed());
    }
    table.columnNumbers = static_cast<std::uint16_t>(table.columns.size());
    for (const SystemTree& tree : facts.trees) {
        RealIndex& real = table.realIndexes.emplace_back();
        for (const std::uint16_t column : tree.columns) {
            real.columns.push_back({column, true});
        }
        real.root = tree.root;
        real.flags = tree.flags;
    }
    for (const SystemIndex& index : facts.indexes) {
        LogicalIndex& logical = table.logicalIndexes.emplace_back();
        logical.name = index.name;
        logical.number = index.number;
        logical.real = index.real;
        logical.kind = index.kind;
    }
    for (const std::uint16_t column : facts.trailer) {
        table.trailer.push_back({column, {}, {}});
    }
    return table;
}

}  // namespace

std::vector<TableDefinition> NewSystemTables(std::uint16_t sortOrder) {
    std::vector<TableDefinition> tables;
    for (const SystemTable& facts : kTables) {
        tables.push_back(NewSystemTable(facts, sortOrder));
    }
    return tables;
}

std::string_view SystemTableName(PageNumber page) {
    return kTables[page - kObjectsPage].name;
}

}  // namespace tavrel::jet
