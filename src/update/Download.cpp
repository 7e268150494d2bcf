#include "update/Download.h"

#include "platform/Http.h"

namespace tavrel::modAutoUpdateV1_Launcher {

namespace {

constexpr std::size_t kLongestText = 20;

}  // namespace

std::string OpenUrl(const std::string& url) {
    return platform::FetchBeginning(url, kLongestText);
}

bool DownloadFile(const std::string& url, const std::string& path) {
    return platform::DownloadToFile(url, path);
}

}  // namespace tavrel::modAutoUpdateV1_Launcher
