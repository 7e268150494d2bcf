// The terms of a condition that are joined by AND, each with what a plan can make of it.
#pragma once

#include "jet/sql/plan/Binder.h"

namespace tavrel::jet::sql {

/// A column of a table met with values that other sources, or none, provide: what an index could look up.
struct ColumnTerm {
    enum class Kind : std::uint8_t { Equal, Null, Among, From, To } kind = Kind::Equal;
    std::size_t source = 0;
    std::size_t column = 0;
    bool included = true;                   ///< From, To: the bound itself fits
    std::vector<const Expression*> values;  ///< Null: none; Among: all candidates; else one
    SourceMask mask = 0;                    ///< the sources that the values speak of
};

struct Conjunct {
    const Expression* expression = nullptr;
    std::int32_t mismatch = errors::kTypeMismatch;
    NodePtr node;
    SourceMask mask = 0;  ///< the sources that it speaks of; 0: none of this scope
    std::vector<ColumnTerm> terms;
    bool equality = false;  ///< two sides that must be equal
    /// An equality of two sides that each speak of other sources: keys of a join.
    bool joins = false;
    SourceMask leftMask = 0, rightMask = 0;
    bool leftOutside = false, rightOutside = false;  ///< a side speaks of a query round this one, too
    StaticType leftType, rightType;
};

/// Takes a condition apart and appends its terms.  `mismatch` is the number for comparisons that can never
/// be.
void AppendConjuncts(Binder& binder, const Expression& condition, std::int32_t mismatch,
                     std::vector<Conjunct>& out);

}  // namespace tavrel::jet::sql
