#include "platform/Http.h"

#include <algorithm>
#include <cstdint>
#include <span>

#include "platform/File.h"
#include "platform/FileSystem.h"
#include "platform/HttpTransfer.h"

namespace tavrel::platform {
namespace {

using std::chrono::seconds;

constexpr HttpPatience kTextPatience = {.silence = seconds(10), .whole = seconds(20)};
constexpr HttpPatience kFilePatience = {.silence = seconds(10), .whole = seconds(300)};
/// No program of the update service is larger; a server that sends without end fills no disk.
constexpr std::uint64_t kLargestDownload = 256U << 20U;

std::string AsideOf(const std::string& path) {
    return path + ".part";
}

bool FetchInto(const std::string& url, File& file) {
    std::uint64_t total = 0;
    const HttpAnswer answer = FetchFromServer(url, kFilePatience, [&](const char* bytes, std::size_t size) {
        if (size > kLargestDownload - total) {
            return false;
        }
        file.WriteAt(total, {reinterpret_cast<const std::uint8_t*>(bytes), size});
        total += size;
        return true;
    });
    file.Sync();
    return answer.isWhole && answer.saysItsLength && total > 0;
}

/// Throws when the file cannot be made, written or put into its place.
bool DownloadBeside(const std::string& url, const std::string& aside, const std::string& path) {
    {
        const auto file = OpenFile(aside, FileAccess::CreateNew);
        if (!FetchInto(url, *file)) {
            return false;
        }
    }
    if (FileExists(path)) {
        CopyPermissions(path, aside);
    }
    ReplaceFile(aside, path);
    return true;
}

}  // namespace

std::string FetchBeginning(const std::string& url, std::size_t limit) {
    std::string beginning;
    const HttpAnswer answer = FetchFromServer(url, kTextPatience, [&](const char* bytes, std::size_t size) {
        beginning.append(bytes, std::min(size, limit - beginning.size()));
        return beginning.size() < limit;
    });
    return TextOfBytes(answer.isWhole || beginning.size() == limit ? beginning : std::string());
}

bool DownloadToFile(const std::string& url, const std::string& path) {
    RemoveBrokenDownload(path);
    bool downloaded = false;
    try {
        downloaded = DownloadBeside(url, AsideOf(path), path);
    } catch (const Error&) {
        downloaded = false;
    }
    if (!downloaded) {
        RemoveBrokenDownload(path);
    }
    return downloaded;
}

void RemoveBrokenDownload(const std::string& path) {
    try {
        const std::string aside = AsideOf(path);
        if (!FileExists(aside)) {
            return;
        }
        // Whoever downloads holds the file: it cannot be opened then.
        static_cast<void>(OpenFile(aside, FileAccess::ReadWrite));
        DeleteFileIfThere(aside);
    } catch (const Error&) {
        return;  // in use, or not to be deleted: the next start tries again
    }
}

}  // namespace tavrel::platform
