// From trees to nodes: names become columns of the sources in reach.
#pragma once

#include <utility>

#include "jet/sql/expression/Nodes.h"
#include "jet/sql/plan/Grouping.h"

namespace tavrel::jet::sql {

/// Sources of a scope, a bit each.
using SourceMask = std::uint64_t;
inline constexpr std::size_t kMaxSources = 64;

class Binder {
  public:
    Binder(Context& context, Scope& scope) : context_(context), scope_(scope) {}

    /// Throws 3464 and 3615 for types that do not go together, 3079, 3085, 3096, 3122; unknown names are
    /// noted in the context.
    NodePtr Bind(const Expression& expression);
    /// The sources of the scope that were spoken of since the last call.
    SourceMask TakeMask() { return std::exchange(mask_, 0); }
    /// Whether a query round this one was, or may have been, spoken of since the last call: masks tell of
    /// this scope only.
    bool TakeOutside() { return std::exchange(outside_, false); }

    /// From now on expressions speak of groups.  REQUIRES: the grouping outlives the binder's nodes.
    void BindGroups(Grouping& grouping) { scope_.grouping = &grouping; }
    /// The number for operands of a comparison that do not go together.
    void SetMismatch(std::int32_t error) { mismatch_ = error; }

    [[nodiscard]] Context& GetContext() const { return context_; }
    [[nodiscard]] Scope& GetScope() const { return scope_; }
    /// The table's column that an expression is, when it is just that.
    [[nodiscard]] FoundColumn ColumnOf(const Expression& expression) const;

  private:
    NodeList BindArguments(const Expression& expression);
    NodePtr BindColumn(const Expression& expression);
    NodePtr BindBinary(const Expression& expression);
    NodePtr BindAggregate(const Expression& expression);
    NodePtr BindQuery(const Expression& expression);
    NodePtr BindGroupKey(const Expression& expression);
    [[nodiscard]] bool Same(const Expression& a, const Expression& b) const;

    Context& context_;
    Scope& scope_;
    SourceMask mask_ = 0;
    bool outside_ = false;
    std::int32_t mismatch_ = errors::kTypeMismatch;
};

}  // namespace tavrel::jet::sql
