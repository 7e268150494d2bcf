// The table behind FindErrorText and MakeError.
#pragma once

#include <span>

#include "text/Error.h"

namespace tavrel {

/// Every known number once, ascending.
std::span<const ErrorText> ErrorTable();

}  // namespace tavrel
