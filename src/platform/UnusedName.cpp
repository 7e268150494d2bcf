#include "platform/UnusedName.h"

#include "platform/FileSystem.h"
#include "text/Error.h"

namespace tavrel::platform {

std::string UnusedNameBeside(const std::string& path) {
    constexpr int kMost = 10'000;
    for (int number = 0; number < kMost; ++number) {
        std::string name = path + ".new" + std::to_string(number);
        if (!FileExists(name) && !FolderExists(name)) {
            return name;
        }
    }
    throw MakeError(errors::kFileExists, {}, path + ".new…");
}

}  // namespace tavrel::platform
