// + - * / \ MOD on values, with the types that results take.
#pragma once

#include "jet/sql/syntax/Ast.h"
#include "jet/sql/values/Values.h"

namespace tavrel::jet::sql {

/// Type of `left op right`: texts that meet texts in + are joined, texts elsewhere are read as numbers.
/// Nothing when it shows only with the values.  Throws 3464 for bytes and GUIDs.
StaticType ArithmeticType(BinaryOperator op, StaticType left, StaticType right);

/// Null with Null.  Throws 3464 for a text that is no number, 3349 on overflow, 11 for a division by zero.
void Calculate(BinaryOperator op, const Value& left, const Value& right, Value& out);

/// The value with the other sign, of the same type.
void Negate(const Value& value, Value& out);

}  // namespace tavrel::jet::sql
