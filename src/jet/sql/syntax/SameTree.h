// Whether two queries are written alike.
#pragma once

#include "jet/sql/syntax/Ast.h"

namespace tavrel::jet::sql {

/// True when the trees are equal but for the letter case of names: inside one query both then find the same
/// rows.  One meaning written in two ways counts as different.
bool SameQuery(const Query& a, const Query& b);

}  // namespace tavrel::jet::sql
