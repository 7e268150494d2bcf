// What callers see of a database's structure, and what they hand in to create it.
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/ColumnType.h"
#include "jet/catalog/Value.h"

namespace tavrel::jet {

/// A column as users see it.
struct FieldInfo {
    std::string name;
    int daoType = 0;
    unsigned size = 0;         ///< Text: characters
    std::string defaultValue;  ///< expression text as stored; empty when none
    bool required = false;
    bool allowZeroLength = false;
    bool autonumber = false;
};

struct IndexFieldInfo {
    std::string name;
    bool descending = false;
};

struct IndexInfo {
    std::string name;
    bool primary = false;
    bool unique = false;
    bool foreign = false;
    bool ignoreNulls = false;
    bool required = false;
    std::vector<IndexFieldInfo> fields;
};

/// A table's structure: fields in ordinal order, indexes by name; the hidden parent side of relations is left
/// out.
struct TableInfo {
    std::string name;
    bool system = false;
    std::vector<FieldInfo> fields;
    std::vector<IndexInfo> indexes;
};

struct RelationInfo {
    std::string name;
    std::string table;            ///< child
    std::string referencedTable;  ///< parent
    std::vector<std::string> columns;
    std::vector<std::string> referencedColumns;
    bool updateCascade = false;
    bool deleteCascade = false;
    bool deleteSetsNull = false;  ///< children of a deleted parent lose their key
    bool enforced = true;
    bool oneToOne = false;
};

// ---- creating

struct NewColumn {
    std::string name;
    ColumnType type = ColumnType::Long;
    unsigned size = 0;         ///< Text: characters (0 = 255); Binary: bytes (0 = 255, at most 510)
    std::string defaultValue;  ///< expression text; empty = no property
    bool required = false;     ///< true writes the property
    enum class ZeroLength { Unset, Allowed, Refused } zeroLength = ZeroLength::Unset;
    bool autonumber = false;
    bool compressed = true;    ///< Text and Memo
    bool fixedLength = false;  ///< Text: filled up with blanks to its size
    std::uint8_t precision = 18;
    std::uint8_t scale = 0;
    std::string description;  ///< empty = no property
};

struct NewIndex {
    std::string name;
    std::vector<IndexFieldInfo> fields;
    bool primary = false;
    bool unique = false;
    bool ignoreNulls = false;
    bool required = false;
};

struct NewTable {
    std::string name;
    std::vector<NewColumn> columns;
    std::vector<NewIndex> indexes;
};

}  // namespace tavrel::jet
