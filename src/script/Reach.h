// What statements can make of one structure so that it is like another.
#pragma once

#include "details/Schema.h"

namespace tavrel::script {

enum class DataLoss { Refused, Accepted };

/// What A can be made by statements, as near to B as they come.  With losses refused, no table or column of A
/// goes and none narrows.
details::Schema Reach(const details::Schema& a, const details::Schema& b, DataLoss loss);

}  // namespace tavrel::script
