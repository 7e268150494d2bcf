// Runs lists of items on the session.
#pragma once

#include <cstdint>
#include <functional>

#include "patch/Script.h"

namespace tavrel::patch {

/// Runs every step up to `last` whose gate the stored version passes, in order.  Throws the Error of the
/// first item that fails and does not report it itself; the items before it stay.
void RunSteps(const Script& steps, const Script& procedures, std::int16_t version,
              std::int16_t last = INT16_MAX);

/// Called at the beginning of each step that runs.  An empty function takes the listener away.
using StepListener = std::function<void(std::int16_t step)>;
void ListenToSteps(StepListener listener);

}  // namespace tavrel::patch
