#include "platform/Settings.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <span>
#include <sys/file.h>
#include <sys/stat.h>

#include "platform/File.h"
#include "platform/FileSystem.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/SettingsText.h"
#include "platform/posix/SystemError.h"

namespace tavrel::platform {
namespace {

constexpr mode_t kOwnerOnlyFolder = 0700;
constexpr mode_t kOwnerOnlyFile = 0600;
/// A settings file that is larger was not written by this program.
constexpr std::uint64_t kLargestFile = 16U << 20U;

/// $XDG_CONFIG_HOME, or ~/.config where that is not set (or not absolute, which the rule says to ignore).
std::string ConfigurationFolder() {
    const char* folder = std::getenv("XDG_CONFIG_HOME");
    if (folder != nullptr && folder[0] == '/') {
        return folder;
    }
    const char* home = std::getenv("HOME");
    return std::string(home == nullptr ? "" : home) + "/.config";
}

void MakeFolders(const std::string& folder) {
    if (FolderExists(folder)) {
        return;
    }
    MakeFolders(std::filesystem::path(folder).parent_path().string());
    if (::mkdir(folder.c_str(), kOwnerOnlyFolder) != 0 && errno != EEXIST) {
        throw LastSystemError(folder);
    }
}

/// Keeps other instances of the program from writing between our reading and our writing.
Descriptor LockFolder(const std::string& folder) {
    Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor.IsOpen()) {
        throw LastSystemError(folder);
    }
    // Where folders cannot be locked, the last writer wins; the file is whole all the same.
    static_cast<void>(::flock(descriptor.Number(), LOCK_EX));
    return descriptor;
}

SettingsText ReadSettings(const std::string& path) {
    if (!FileExists(path)) {
        return {};
    }
    // Not OpenFile: its lock would turn readers away while somebody writes, and the file is only ever
    // replaced.
    const Descriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status = {};
    if (!descriptor.IsOpen() || ::fstat(descriptor.Number(), &status) != 0) {
        throw LastSystemError(path);
    }
    if (static_cast<std::uint64_t>(status.st_size) > kLargestFile) {
        throw MakeError(errors::kPathAccess, {}, path + ": 설정 파일이 너무 큼");
    }
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    const ssize_t count = ::read(descriptor.Number(), text.data(), text.size());
    if (count < 0) {
        throw LastSystemError(path);
    }
    text.resize(static_cast<std::size_t>(count));
    return SettingsText(text);
}

/// Whole or not at all: written aside, then put in the place of the old one.
void WriteSettings(const std::string& path, const std::string& text) {
    const std::string aside = path + "." + std::to_string(::getpid()) + ".new";
    DeleteFileIfThere(aside);
    {
        const Descriptor created(
            ::open(aside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerOnlyFile));
        if (!created.IsOpen()) {
            throw LastSystemError(aside);
        }
    }
    try {
        const auto file = OpenFile(aside, FileAccess::ReadWrite);
        file->WriteAt(0, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
        if (::rename(aside.c_str(), path.c_str()) != 0) {
            throw LastSystemError(path);
        }
    } catch (...) {
        ::unlink(aside.c_str());
        throw;
    }
}

class FileSettings : public SettingsStore {
  public:
    std::string GetSetting(const std::string& application, const std::string& section,
                           const std::string& key) override {
        return ReadSettings(PathOf(application)).Find(section, key).value_or(std::string());
    }

    void SaveSetting(const std::string& application, const std::string& section, const std::string& key,
                     const std::string& value) override {
        const std::string path = PathOf(application);
        const std::string folder = std::filesystem::path(path).parent_path().string();
        MakeFolders(folder);
        const Descriptor lock = LockFolder(folder);
        SettingsText settings = ReadSettings(path);
        settings.Set(section, key, value);
        WriteSettings(path, settings.Text());
        unsynced_.insert(path);
    }

    void Sync() override {
        while (!unsynced_.empty()) {
            const std::string path = unsynced_.extract(unsynced_.begin()).value();
            // Read only, and without OpenFile's lock: others may go on reading and replacing.
            const Descriptor descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
            if (!descriptor.IsOpen() || ::fsync(descriptor.Number()) != 0) {
                throw LastSystemError(path);
            }
        }
    }

  private:
    static std::string PathOf(const std::string& application) {
        return ConfigurationFolder() + "/" + application + "/" + application + ".ini";
    }

    std::set<std::string> unsynced_;  ///< files that were written since the last Sync
};

}  // namespace

SettingsStore& UserSettings() {
    static FileSettings settings;
    return settings;
}

}  // namespace tavrel::platform
