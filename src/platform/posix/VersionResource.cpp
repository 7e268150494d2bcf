#include "platform/VersionResource.h"

#include "platform/File.h"
#include "platform/posix/PeVersion.h"
#include "text/Error.h"

namespace tavrel::platform {

std::vector<std::uint8_t> ReadVersionResource(const std::string& path) {
    try {
        const auto file = OpenFile(path, FileAccess::Read);
        return ReadPeVersion(*file);
    } catch (const Error&) {
        return {};
    }
}

}  // namespace tavrel::platform
