#include "platform/OpenWithProgram.h"

#include "platform/FileSystem.h"
#include "platform/Processes.h"
#include "text/Error.h"

namespace tavrel::platform {

void OpenWithAssociatedProgram(const std::string& path) {
    try {
        // In full, so that a name that begins with a hyphen is no option.
        StartProgram("xdg-open", FullPath(path), ShowCommand::NormalWithFocus);
    } catch (const Error&) {
        // A desktop without the opener: nothing is opened, as with a file that no program is for.
    }
}

}  // namespace tavrel::platform
