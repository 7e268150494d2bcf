#include "patch/log/UpdateLog.h"

#include <array>
#include <cstdio>
#include <ctime>

#include "platform/AnsiText.h"
#include "platform/FileSystem.h"
#include "platform/ProgramFolder.h"

namespace tavrel::patch {

namespace {

constexpr const char* kLogName = "DB_UPDATE_LOG.log";

std::string otherFolder;

}  // namespace

std::string UpdateLog::Path() {
    const std::string folder = otherFolder.empty() ? platform::WritableProgramFolder() : otherFolder;
    return folder + platform::kPathSeparator + kLogName;
}

void UpdateLog::UseFolder(const std::string& folder) {
    otherFolder = folder;
}

UpdateLog::UpdateLog() {
    const std::string path = Path();
    file_ = platform::OpenFile(
        path, platform::FileExists(path) ? platform::FileAccess::ReadWrite : platform::FileAccess::CreateNew);
}

void UpdateLog::Line(std::string_view utf8) {
    const std::string line = platform::AnsiText(utf8) + "\r\n";
    file_->WriteAt(file_->Size(), {reinterpret_cast<const std::uint8_t*>(line.data()), line.size()});
}

std::string TimeText(int hour, int minute, int second) {
    constexpr int kNoon = 12;
    const int onTheClock = hour % kNoon == 0 ? kNoon : hour % kNoon;
    std::array<char, 16> clock{};
    std::snprintf(clock.data(), clock.size(), " %02d:%02d:%02d", onTheClock, minute, second);
    return std::string(hour < kNoon ? "오전" : "오후") + clock.data();
}

std::string TimeText() {
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    return TimeText(local->tm_hour, local->tm_min, local->tm_sec);
}

}  // namespace tavrel::patch
