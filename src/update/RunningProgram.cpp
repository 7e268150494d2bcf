#include "update/RunningProgram.h"

#include <string_view>

#include "platform/FileSystem.h"
#include "platform/ProgramFile.h"
#include "platform/ProgramFolder.h"

namespace tavrel::update {
namespace {

constexpr std::string_view kFileVersion = TAVREL_FILE_VERSION;

std::string WithoutLeadingZeros(std::string_view digits) {
    const std::size_t first = digits.find_first_not_of('0');
    return std::string(first == std::string_view::npos ? "0" : digits.substr(first));
}

/// The name without the suffix of programs, however that is cased.
std::string BaseName(const std::string& path) {
    const std::size_t separator = path.find_last_of(platform::kPathSeparator);
    const std::string name = path.substr(separator + 1);
    const std::size_t suffix = platform::kExecutableSuffix.size();
    return name.size() > suffix ? name.substr(0, name.size() - suffix) : name;
}

}  // namespace

std::string RunningProgram::PathOf(const std::string& name) const {
    return folder + platform::kPathSeparator + name;
}

RunningProgram ThisProgram() {
    return {.updateHost = TAVREL_UPDATE_HOST,
            .folder = platform::ProgramFolder(),
            .baseName = BaseName(platform::ProgramPath()),
            .revision = WithoutLeadingZeros(kFileVersion.substr(kFileVersion.find_last_of('.') + 1))};
}

}  // namespace tavrel::update
