// Product B's migration list, told by what is different from product A's.
#pragma once

#include "patch/Item.h"

namespace tavrel::patch::kilm {

/// Which steps of product A stand where.
Items Steps();
/// What is different in them, by B's own numbers.
Items DifferencesInSteps();

}  // namespace tavrel::patch::kilm
