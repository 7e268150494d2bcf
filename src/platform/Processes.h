// Starting other programs.
#pragma once

#include <cstdint>
#include <string>

namespace tavrel::platform {

/// How a program's window is to appear: Windows' show commands.  Elsewhere a program decides for itself, and
/// only Windows heeds this.
enum class ShowCommand {
    Hidden = 0,
    NormalWithFocus = 1,
    MinimizedWithFocus = 2,
    Normal = 5,
    MinimizedNotActivated = 7
};

/// What the shell is asked to open.
struct ShellExecution {
    std::uintptr_t ownerWindow = 0;  ///< 0: none
    std::string verb = "open";
    std::string file;        ///< a program
    std::string parameters;  ///< outside Windows the program gets them as one argument
    std::string directory;   ///< working folder; empty: that of this program
    ShowCommand show = ShowCommand::Normal;
};

/// Opens the file and returns when the started process has ended, however long that takes.  A file that
/// cannot be started makes it return at once; nothing is reported.
void ShellExecuteAndWait(const ShellExecution& execution);

/// Runs the command line made of the program, a blank and its one argument, without waiting.  The program
/// outlives this one.  Throws Error when it cannot be started: 53 not found, 70 no permission, 5 no program.
void StartProgram(const std::string& program, const std::string& argument, ShowCommand show);

/// Shows the folder to the user in the system's file manager, without waiting.  Throws like StartProgram.
void ShowFolder(const std::string& folder);

}  // namespace tavrel::platform
