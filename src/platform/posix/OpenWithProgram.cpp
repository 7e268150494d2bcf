#include "platform/OpenWithProgram.h"

#include "platform/FileSystem.h"
#include "platform/Processes.h"
#include "text/Error.h"

namespace tavrel::platform {

bool OpenWithAssociatedProgram(const std::string& path) {
    try {
        // In full, so that a name that begins with a hyphen is no option.
        StartProgram("xdg-open", FullPath(path), ShowCommand::NormalWithFocus);
        return true;
    } catch (const Error&) {
        return false;  // a desktop without the opener
    }
}

}  // namespace tavrel::platform
