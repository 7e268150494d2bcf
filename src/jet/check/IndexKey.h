// What an index takes of a row.
#pragma once

#include <vector>

#include "jet/catalog/TableDefinition.h"
#include "jet/storage/RowLayout.h"

namespace tavrel::jet::check {

struct KeyColumn {
    std::size_t place;  ///< in the definition
    bool ascending;
};

/// Columns that the definition does not have are left out.
std::vector<KeyColumn> KeyColumns(const TableDefinition& table, const RealIndex& index);

struct KeyNulls {
    bool any = false;
    bool all = true;

    void Add(bool isNull) {
        any |= isNull;
        all &= isNull;
    }
};

}  // namespace tavrel::jet::check
