#include "platform/Http.h"

#include <cerrno>
#include <curl/curl.h>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileSystem.h"
#include "platform/Url.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/SystemError.h"
#include "text/Error.h"

namespace tavrel::platform {
namespace {

constexpr const char* kAgent = "VB OpenUrl";
constexpr long kMostRedirections = 10;
/// No program of the update service is larger; a server that sends without end fills no disk.
constexpr std::uint64_t kLargestDownload = 256U << 20U;

struct CurlFree {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

/// Takes a piece of the answer; false ends the transfer.
using Taker = std::function<bool(const char* bytes, std::size_t size)>;

std::size_t PassOn(const char* bytes, std::size_t, std::size_t size, void* taker) {
    return (*static_cast<Taker*>(taker))(bytes, size) ? size : CURL_WRITEFUNC_ERROR;
}

/// Fetches the URL from the server; true when all of the answer has arrived and been taken.
bool Fetch(const std::string& url, Taker taker) {
    static const bool ready = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    const std::unique_ptr<CURL, CurlFree> request(ready ? curl_easy_init() : nullptr);
    const std::unique_ptr<curl_slist, CurlFree> headers(
        curl_slist_append(curl_slist_append(nullptr, "Cache-Control: no-cache"), "Pragma: no-cache"));
    if (!request || !headers) {
        return false;
    }
    CURL* handle = request.get();
    const auto set = [handle](CURLoption option, auto value) {
        return curl_easy_setopt(handle, option, value) == CURLE_OK;
    };
    return set(CURLOPT_URL, EncodeUrl(url).c_str()) && set(CURLOPT_PROTOCOLS_STR, "http,https") &&
           set(CURLOPT_USERAGENT, kAgent) && set(CURLOPT_HTTPHEADER, headers.get()) &&
           set(CURLOPT_FAILONERROR, 1L) && set(CURLOPT_FOLLOWLOCATION, 1L) &&
           set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https") && set(CURLOPT_MAXREDIRS, kMostRedirections) &&
           set(CURLOPT_NOSIGNAL, 1L) && set(CURLOPT_WRITEFUNCTION, &PassOn) &&
           set(CURLOPT_WRITEDATA, &taker) && curl_easy_perform(handle) == CURLE_OK;
}

bool WriteAll(const Descriptor& file, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(file.Number(), bytes, size);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        if (written > 0) {
            bytes += written;
            size -= static_cast<std::size_t>(written);
        }
    }
    return true;
}

/// A file that takes another's place and keeps its rights; a new one has the usual ones.
Descriptor CreateBeside(const std::string& aside, const std::string& path) {
    Descriptor file(::open(aside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    struct stat status = {};
    if (file.IsOpen() && ::stat(path.c_str(), &status) == 0) {
        // Where that is refused the new file has the usual rights.
        static_cast<void>(::fchmod(file.Number(), status.st_mode & 07777U));
    }
    return file;
}

bool FetchInto(const std::string& url, const Descriptor& file) {
    std::uint64_t total = 0;
    return Fetch(url, [&](const char* bytes, std::size_t size) {
        total += size;
        return total <= kLargestDownload && WriteAll(file, bytes, size);
    });
}

bool MoveIntoPlace(const std::string& aside, const std::string& path) {
    try {
        ReplaceFile(aside, path);
        return true;
    } catch (const Error&) {
        return false;
    }
}

}  // namespace

std::string FetchBeginning(const std::string& url, std::size_t limit) {
    std::string beginning;
    const bool whole = Fetch(url, [&](const char* bytes, std::size_t size) {
        beginning.append(bytes, std::min(size, limit - beginning.size()));
        return beginning.size() < limit;
    });
    return whole || beginning.size() == limit ? beginning : std::string();
}

bool DownloadToFile(const std::string& url, const std::string& path) {
    const std::string aside = path + "." + std::to_string(::getpid()) + ".part";
    const Descriptor file = CreateBeside(aside, path);
    if (!file.IsOpen()) {
        return false;
    }
    if (FetchInto(url, file) && ::fsync(file.Number()) == 0 && MoveIntoPlace(aside, path)) {
        return true;
    }
    ::unlink(aside.c_str());
    return false;
}

}  // namespace tavrel::platform
