// What a query does with its rows on their way out: compute, leave out, sort, cut off, unite.
#pragma once

#include <optional>

#include "jet/sql/plan/RowStream.h"
#include "jet/sql/syntax/Ast.h"

namespace tavrel::jet::sql {

class OutputStage {
  public:
    virtual ~OutputStage() = default;
    virtual void Open() = 0;
    virtual bool Next() = 0;
    /// Good until the next Next.
    [[nodiscard]] virtual const Value& Output(std::size_t column) = 0;
};
using OutputStagePtr = std::unique_ptr<OutputStage>;

/// The values of the select list.
OutputStagePtr MakeProjection(RowStreamPtr rows, NodeList items);
/// The first of equal rows.  A mode for each column.
OutputStagePtr MakeDistinct(OutputStagePtr rows, std::vector<KeyMode> modes, const TextComparer& texts);
/// One behind the other; values become texts where `asText` says so.
OutputStagePtr MakeUnion(std::vector<OutputStagePtr> parts, std::vector<bool> asText);
/// By the key, and equal keys in the order of arrival.  `top` keeps the first so many, and those equal to the
/// last of them.  Keys may speak of the cells below and of outputs (MakeOutputNode).
OutputStagePtr MakeSort(OutputStagePtr rows, KeyWriter key, std::size_t columns, std::optional<Top> top);
/// The first so many.
OutputStagePtr MakeLimit(OutputStagePtr rows, std::uint64_t count);

/// A column of a stage's present row.  REQUIRES: the stage outlives the node.
NodePtr MakeOutputNode(OutputStage& stage, std::size_t column, StaticType type);

}  // namespace tavrel::jet::sql
