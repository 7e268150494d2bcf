// The start-up update of this very process.
#pragma once

#include "platform/Dialogs.h"

namespace tavrel::update {

/// Runs the start-up update.  False: a newer version takes over (or its replacement failed and has been
/// told); the program is to end at once, without showing its window.
bool RunStartUpUpdate(platform::MessageBox& messages);

}  // namespace tavrel::update
