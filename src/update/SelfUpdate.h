// Keeping the update checker current.
#pragma once

#include "platform/Dialogs.h"
#include "update/RunningProgram.h"

namespace tavrel::modAutoUpdateV1_Launcher {

inline constexpr const char* kUpdateChecker = "Sorvane.exe";
inline constexpr const char* kFileReplacer = "Brixel.exe";

/// Compares the revision of the update checker on disk with the number that the update server publishes, and
/// downloads both companion programs when the server's is higher.  True when the checker is current or both
/// have been downloaded.  A server that gives no number is told with a message; an error is shown, and the
/// procedure goes on behind it.
bool AutoUpdaterSelfUpdate(const update::RunningProgram& program, platform::MessageBox& messages);

}  // namespace tavrel::modAutoUpdateV1_Launcher
