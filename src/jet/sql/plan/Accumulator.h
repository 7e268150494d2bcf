// Aggregates while they are being computed: one value for each group.
#pragma once

#include <memory>

#include "jet/sql/plan/Grouping.h"

namespace tavrel::jet::sql {

class Accumulator {
  public:
    virtual ~Accumulator() = default;
    virtual void Clear() = 0;
    /// A group more, the next number.
    virtual void AddGroup() = 0;
    /// Takes the present row into a group.
    virtual void Add(std::size_t group) = 0;
    virtual void Result(std::size_t group, Value& out) const = 0;
};

/// REQUIRES: the aggregate outlives the accumulator.
std::unique_ptr<Accumulator> MakeAccumulator(Aggregate& aggregate, const TextComparer& texts);

}  // namespace tavrel::jet::sql
