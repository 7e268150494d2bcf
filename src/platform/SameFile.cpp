#include "platform/SameFile.h"

#include <filesystem>

namespace tavrel::platform {

namespace fs = std::filesystem;

bool IsSameFile(const std::string& a, const std::string& b) {
    const auto pathOf = [](const std::string& utf8) {
        return fs::path(std::u8string(utf8.begin(), utf8.end()));
    };
    std::error_code missing;  // A file that is not there is the same as no other.
    return fs::equivalent(pathOf(a), pathOf(b), missing);
}

}  // namespace tavrel::platform
