#include "app/logic/DatabasePath.h"

#include "platform/FileSystem.h"
#include "text/Case.h"
#include "text/ProcedureError.h"

namespace tavrel::app {

namespace {

constexpr const char* kNoPath = "DB경로가 입력되지 않았습니다.";
constexpr const char* kNoDatabase = "mdb파일이 아닙니다.\r\n\r\n";
constexpr const char* kNoFile = "파일을 찾을 수 없습니다.\r\n\r\n";
constexpr std::string_view kExtension = "mdb";

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool EndsInMdb(std::string_view path) {
    return path.size() >= kExtension.size() &&
           text::Lower(path.substr(path.size() - kExtension.size())) == kExtension;
}

/// What is wrong with the path; empty when nothing is.
std::string Fault(const std::string& path) {
    if (Trimmed(path).empty()) {
        return kNoPath;
    }
    if (!platform::FileExists(path)) {
        return kNoFile + path;
    }
    return EndsInMdb(path) ? std::string() : kNoDatabase + path;
}

}  // namespace

bool ValidateDbPath(const std::string& path, platform::TextField& field, platform::MessageBox& messages) {
    std::string fault;
    try {
        fault = Fault(path);
    } catch (const Error& error) {
        fault = ProcedureErrorText(error, "ValidateDbPath", "Form Form1");
    }
    if (fault.empty()) {
        return true;
    }
    messages.Say(fault);
    field.SetFocus();
    return false;
}

std::string BrowseStart(const std::string& own, const std::string& other) {
    const std::string start = Trimmed(own);
    return start.empty() ? other : start;
}

std::string FolderOf(std::string_view path) {
    const std::size_t last = path.rfind(platform::kPathSeparator);
    return std::string(path.substr(0, last == std::string_view::npos ? 0 : last));
}

}  // namespace tavrel::app
