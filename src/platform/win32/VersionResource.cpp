#include "platform/VersionResource.h"

#include "platform/AnsiText.h"
#include "platform/win32/Windows.h"

namespace tavrel::platform {

std::vector<std::uint8_t> ReadVersionResource(const std::string& path) {
    const std::string name = AnsiText(path);
    DWORD handle = 0;
    const DWORD size = ::GetFileVersionInfoSizeA(name.c_str(), &handle);
    std::vector<std::uint8_t> resource(size);
    if (size == 0 || !::GetFileVersionInfoA(name.c_str(), handle, size, resource.data())) {
        return {};
    }
    return resource;
}

}  // namespace tavrel::platform
