// The structure of a database as far as two of them are compared in detail: tables, columns, indexes,
// relations.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "jet/catalog/ColumnType.h"
#include "jet/catalog/Schema.h"

namespace tavrel::details {

struct Column {
    std::string name;
    jet::ColumnType type = jet::ColumnType::Long;
    unsigned size = 0;           ///< Text: characters; Binary: bytes; else unused
    std::uint8_t precision = 0;  ///< Numeric only
    std::uint8_t scale = 0;      ///< Numeric only
    bool autonumber = false;
    bool fixedWidth = false;  ///< Text and Binary: every value fills the size
    bool compressed = false;  ///< how texts are stored; no difference that anybody sees
    std::string defaultValue;
    bool required = false;
    std::optional<bool> zeroLength;  ///< the rule as it is written down; nothing: allowed

    [[nodiscard]] bool TakesEmptyText() const { return jet::IsText(type) && zeroLength.value_or(true); }
};

struct Table {
    std::string name;
    bool ofEngine = false;  ///< marked as a system table: statements do not change it
    std::uint32_t rows = 0;
    std::vector<Column> columns;          ///< in the order that users see
    std::vector<jet::IndexInfo> indexes;  ///< by name; those that relations brought along are left out
};

struct Schema {
    std::uint16_t sortOrder = 0;  ///< of the database: names of new objects are entered by it
    std::vector<Table> tables;    ///< the local ones, by name
    std::vector<jet::RelationInfo> relations;
    std::set<std::string>
        otherNames;  ///< of linked tables and queries, in upper case: no table can have them
};

}  // namespace tavrel::details
