// Whether another definition of a column can lose what its rows hold.
#pragma once

#include "details/Schema.h"

namespace tavrel::script {

/// True unless every value of the one type and size has an equal one in the other.
bool Narrows(const details::Column& from, const details::Column& to);

}  // namespace tavrel::script
