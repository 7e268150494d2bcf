#include "platform/Http.h"

#include "platform/AnsiText.h"
#include "platform/Url.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"
// After windows.h, whose types they use.
#include <urlmon.h>
#include <wininet.h>

namespace tavrel::platform {
namespace {

constexpr const char* kAgent = "VB OpenUrl";
constexpr DWORD kFirstHttpError = 400;

class InternetHandle {
  public:
    explicit InternetHandle(HINTERNET handle) : handle_(handle) {}
    InternetHandle(const InternetHandle&) = delete;
    InternetHandle& operator=(const InternetHandle&) = delete;
    ~InternetHandle() {
        if (handle_ != nullptr) {
            ::InternetCloseHandle(handle_);
        }
    }

    [[nodiscard]] HINTERNET Get() const { return handle_; }

  private:
    HINTERNET handle_;
};

std::string Utf8FromAnsi(std::string_view ansi) {
    const int size = static_cast<int>(ansi.size());
    std::wstring wide(ansi.size(), L'\0');  // never more units than bytes
    const int length = ::MultiByteToWideChar(CP_ACP, 0, ansi.data(), size, wide.data(), size);
    return Narrow(std::wstring_view(wide).substr(0, static_cast<std::size_t>(length)));
}

/// An answer like 404 comes with a page for readers, which is no version.
bool IsHttpError(HINTERNET request) {
    DWORD status = 0;
    DWORD size = sizeof status;
    return ::HttpQueryInfoA(request, HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status, &size,
                            nullptr) &&
           status >= kFirstHttpError;
}

}  // namespace

std::string FetchBeginning(const std::string& url, std::size_t limit) {
    const InternetHandle session(::InternetOpenA(kAgent, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
    if (session.Get() == nullptr) {
        return {};
    }
    const InternetHandle request(
        ::InternetOpenUrlA(session.Get(), EncodeUrl(url).c_str(), nullptr, 0, INTERNET_FLAG_RELOAD, 0));
    if (request.Get() == nullptr || IsHttpError(request.Get())) {
        return {};
    }
    std::string bytes(limit, '\0');
    DWORD count = 0;
    if (!::InternetReadFile(request.Get(), bytes.data(), static_cast<DWORD>(limit), &count)) {
        return {};
    }
    return Utf8FromAnsi(std::string_view(bytes).substr(0, count));
}

bool DownloadToFile(const std::string& url, const std::string& path) {
    return ::URLDownloadToFileA(nullptr, EncodeUrl(url).c_str(), AnsiText(path).c_str(), 0, nullptr) == S_OK;
}

}  // namespace tavrel::platform
