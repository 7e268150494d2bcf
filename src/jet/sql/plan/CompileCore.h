// One SELECT made ready: its sources, its groups, its stages.
#pragma once

#include <optional>

#include "jet/sql/plan/Binder.h"
#include "jet/sql/plan/OutputStages.h"

namespace tavrel::jet::sql {

/// The place of the column that an ORDER BY expression names by its number or its alias; nothing when it is
/// none of these.
std::optional<std::size_t> OutputColumn(const Expression& expression,
                                        const std::vector<ResultColumn>& columns);

/// Adds the sources of a FROM clause to a scope, from the left to the right.  Throws 3078, 3035 beyond 64 of
/// them.
void AddSources(Context& context, const TableReference& table, Scope& scope);

class CompiledCore {
  public:
    /// The stage ends up in `stage`, for the caller to take; it speaks of this object.
    CompiledCore(Context& context, const SelectCore& core, const std::vector<OrderItem>& orderBy,
                 Scope* outer);

    [[nodiscard]] bool Correlated() const { return scope_.reachedOut; }

    std::vector<ResultColumn> columns;
    std::vector<StaticType> types;
    OutputStagePtr stage;

  private:
    /// One key of ORDER BY: a column of the output, or an expression over the rows.
    struct OrderKey {
        std::optional<std::size_t> column;
        NodePtr node;
        bool descending = false;
    };

    RowStreamPtr PlanRows(const SelectCore& core);
    static bool IsGrouped(const SelectCore& core, const std::vector<OrderItem>& orderBy);
    void BindGroupKeys(const SelectCore& core);
    NodeList BindItems(const SelectCore& core);
    void AddItem(NodeList& nodes, const SelectItem& item);
    void AddAll(NodeList& nodes, std::string_view qualifier);
    void AddOutput(NodeList& nodes, NodePtr node, const ResultColumn& column, std::string qualifier);
    void QualifyEqualNames();
    std::vector<OrderKey> BindOrder(const std::vector<OrderItem>& orderBy);
    RowStreamPtr Group(const SelectCore& core, RowStreamPtr rows);
    [[nodiscard]] bool OnlyCountsRows(const SelectCore& core) const;
    void SortAndCut(const SelectCore& core, std::vector<OrderKey> order, OutputStage& projection);

    Context& context_;
    Scope scope_;
    Grouping grouping_;
    Binder binder_;
    std::vector<std::string> qualifiers_;  ///< of each column that is one of a source, else empty
};

}  // namespace tavrel::jet::sql
