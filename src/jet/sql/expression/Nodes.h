// Making nodes.  Types are checked here, before any row is read: each function throws 3464 for operands that
// can never go together.
#pragma once

#include <functional>
#include <string_view>

#include "jet/sql/expression/Node.h"
#include "jet/sql/syntax/Ast.h"

namespace tavrel::jet::sql {

NodePtr MakeConstant(Value value);
/// REQUIRES: the cell outlives the node.
NodePtr MakeColumn(Cell& cell, StaticType type);

/// `mismatch` is the number for operands of different families: 3464, in join conditions 3615.
NodePtr MakeComparison(BinaryOperator op, NodePtr left, NodePtr right, const TextComparer& texts,
                       std::int32_t mismatch);
NodePtr MakeBetween(NodeList operands, bool negated, const TextComparer& texts);
/// The first operand is looked for among the others.
NodePtr MakeIn(NodeList operands, bool negated, const TextComparer& texts);
NodePtr MakeIsNull(NodePtr operand, bool negated);
NodePtr MakeLike(NodePtr text, NodePtr pattern, bool negated);

/// OR, XOR, AND.
NodePtr MakeLogic(BinaryOperator op, NodePtr left, NodePtr right);
NodePtr MakeNot(NodePtr operand);

/// + - * / \ MOD &.
NodePtr MakeArithmetic(BinaryOperator op, NodePtr left, NodePtr right);
NodePtr MakeNegation(NodePtr operand);

/// Throws 3085 for a function that is not there, 3075 for a wrong number of arguments.
NodePtr MakeFunction(std::string_view name, std::string_view source, NodeList arguments,
                     const std::function<Date()>& now);

/// The type of two results that stand for one another, as in IIF and UNION.
StaticType CommonType(StaticType a, StaticType b);

}  // namespace tavrel::jet::sql
