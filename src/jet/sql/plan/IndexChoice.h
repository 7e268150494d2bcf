// Which index, if any, brings the rows of a table that a condition wants.
#pragma once

#include "jet/sql/plan/Conjunct.h"
#include "jet/sql/plan/RowStream.h"

namespace tavrel::jet::sql {

struct IndexChoice {
    bool found = false;
    IndexLookup lookup;
    double rows = 0;  ///< estimate for one lookup
};

/// `available` are the sources whose rows are known when the lookup is made.  When nothing suits, `rows` is
/// that of the whole table.
IndexChoice ChooseIndex(Binder& binder, std::size_t source, const std::vector<Conjunct>& conjuncts,
                        SourceMask available);

}  // namespace tavrel::jet::sql
