// Product B-Pro's migration list: it begins where product A's stood at step 53.
#pragma once

#include "patch/Item.h"

namespace tavrel::patch::kilmpro {

Items Steps();
/// What is different in the steps taken from product A, by B-Pro's own numbers.
Items DifferencesInSteps();

}  // namespace tavrel::patch::kilmpro
