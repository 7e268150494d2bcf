// Writing the SQL that makes one of the two compared databases like the other.
#pragma once

#include <array>
#include <span>
#include <string>

#include "app/FileChooser.h"
#include "platform/Dialogs.h"

namespace tavrel::app {

struct ScriptLine {
    std::size_t from;     ///< side that the statements are for: 0 = A, 1 = B
    const char* command;  ///< text of the menu
};

/// In menu order.
std::span<const ScriptLine> ScriptDirections();

/// A database of the finished run.
struct ScriptSide {
    std::string path;
    std::string password;
};

/// Asks for a name and writes the script there, whole or not at all; then a message box says what is left to
/// the user, if anything is.  A failure is told in a message box.  `folder` is where the dialog begins.
void SaveScript(const std::array<ScriptSide, 2>& sides, const ScriptLine& direction,
                const std::string& folder, FileChooser& files, platform::MessageBox& messages);

}  // namespace tavrel::app
