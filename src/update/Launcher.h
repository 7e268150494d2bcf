// The start-up update: the first thing that the window does while it loads.
#pragma once

#include <functional>

#include "platform/Dialogs.h"
#include "update/RunningProgram.h"

namespace tavrel::modAutoUpdateV1_Launcher {

/// Brings the update checker up to date (unless `skipSelfUpdate`), runs it, and waits for it without a time
/// limit.  When it has left a newer version of the program in the program's folder, starts the file
/// replacement program and calls `endProgram`, after which nothing of the start-up may follow; a missing
/// replacement program is told, the folder shown, and the program ended too.  An error is shown, and the
/// procedure goes on behind it.  Without an update server it ends at once.
void RunAutoUpdate(bool skipSelfUpdate, const update::RunningProgram& program, platform::MessageBox& messages,
                   const std::function<void()>& endProgram);

}  // namespace tavrel::modAutoUpdateV1_Launcher
