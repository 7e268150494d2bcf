// What a statement works with, and what it calls the columns of its answer.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "jet/catalog/Value.h"
#include "jet/sql/expression/TableAccess.h"
#include "jet/sql/syntax/SchemaChanges.h"

namespace tavrel::jet::sql {

class TextComparer;

/// Everything a statement works with.  The parts must outlive the results.
struct Workspace {
    Tables& tables;
    SchemaChanges& schema;
    Transactions& transactions;
    const TextComparer& texts;
    std::function<Date()> now;             ///< local clock, whole seconds; none = the system's
    std::optional<std::int32_t> identity;  ///< the last counter value handed out: @@IDENTITY
    std::uint64_t maxRowVisits = 0;  ///< 3035 beyond so many rows looked at by one statement; 0 = no limit
};

struct ResultColumn {
    std::string name;
    ColumnType type = ColumnType::Text;
    unsigned size = 0;  ///< Text: characters, 0 when an expression gives it
};

}  // namespace tavrel::jet::sql
