#include "platform/HttpTransfer.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/Url.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Windows.h"
// After windows.h, whose types it uses.
#include <wininet.h>

namespace tavrel::platform {
namespace {

constexpr DWORD kStatusOk = 200;
constexpr std::size_t kBufferSize = 64U << 10U;

class InternetHandle {
  public:
    explicit InternetHandle(HINTERNET handle) : handle_(handle) {}
    InternetHandle(const InternetHandle&) = delete;
    InternetHandle& operator=(const InternetHandle&) = delete;
    ~InternetHandle() { Close(); }

    [[nodiscard]] HINTERNET Get() const { return handle_; }
    /// Whatever waits on it, in another thread too, returns with a failure.
    void Close() {
        const HINTERNET handle = handle_.exchange(nullptr);
        if (handle != nullptr) {
            ::InternetCloseHandle(handle);
        }
    }

  private:
    std::atomic<HINTERNET> handle_;
};

/// Closes the session when the time is over; calls that wait on the network return then.
class Deadline {
  public:
    Deadline(InternetHandle& session, std::chrono::seconds time)
        : watcher_([this, &session, time] {
              std::unique_lock lock(mutex_);
              if (!done_.wait_for(lock, time, [this] { return isDone_; })) {
                  session.Close();
              }
          }) {}
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
    ~Deadline() {
        {
            const std::lock_guard lock(mutex_);
            isDone_ = true;
        }
        done_.notify_one();
        watcher_.join();
    }

  private:
    std::mutex mutex_;
    std::condition_variable done_;
    bool isDone_ = false;
    std::thread watcher_;
};

void SetPatience(HINTERNET session, std::chrono::seconds silence) {
    DWORD milliseconds = static_cast<DWORD>(std::chrono::milliseconds(silence).count());
    for (const DWORD option :
         {INTERNET_OPTION_CONNECT_TIMEOUT, INTERNET_OPTION_SEND_TIMEOUT, INTERNET_OPTION_RECEIVE_TIMEOUT}) {
        ::InternetSetOptionA(session, option, &milliseconds, sizeof milliseconds);
    }
    DWORD tries = 1;
    ::InternetSetOptionA(session, INTERNET_OPTION_CONNECT_RETRIES, &tries, sizeof tries);
}

/// A header that is a number; nothing when the answer lacks it.
std::optional<DWORD> NumberOf(HINTERNET request, DWORD header) {
    DWORD value = 0;
    DWORD size = sizeof value;
    return ::HttpQueryInfoA(request, header | HTTP_QUERY_FLAG_NUMBER, &value, &size, nullptr)
               ? std::optional(value)
               : std::nullopt;
}

bool IsChunked(HINTERNET request) {
    std::array<char, 64> value{};
    DWORD size = value.size() - 1;
    return ::HttpQueryInfoA(request, HTTP_QUERY_TRANSFER_ENCODING, value.data(), &size, nullptr) &&
           ::lstrcmpiA(value.data(), "chunked") == 0;
}

/// An answer of that many bytes, taken whole; less when it ended before, failed, or is not wanted.
struct Taken {
    std::uint64_t size = 0;
    bool ended = false;
};

Taken TakeAll(HINTERNET request, const HttpTaker& take) {
    Taken taken;
    std::string piece(kBufferSize, '\0');
    for (;;) {
        // What is there is asked for, so that a slow answer is taken as it comes.
        DWORD there = 0;
        DWORD count = 0;
        if (!::InternetQueryDataAvailable(request, &there, 0, 0) ||
            !::InternetReadFile(request, piece.data(),
                                std::min(std::max<DWORD>(there, 1), static_cast<DWORD>(kBufferSize)), &count)) {
            return taken;
        }
        if (count == 0) {
            taken.ended = true;
            return taken;
        }
        taken.size += count;
        if (!take(piece.data(), count)) {
            return taken;
        }
    }
}

HttpAnswer TakeAnswer(HINTERNET request, const HttpTaker& take) {
    if (NumberOf(request, HTTP_QUERY_STATUS_CODE) != kStatusOk) {
        return {};
    }
    const std::optional<DWORD> announced = NumberOf(request, HTTP_QUERY_CONTENT_LENGTH);
    const Taken taken = TakeAll(request, take);
    return {.isWhole = taken.ended && (!announced || taken.size == *announced),
            .saysItsEnd = announced || IsChunked(request)};
}

}  // namespace

HttpAnswer FetchFromServer(const std::string& url, HttpPatience patience, const HttpTaker& take) {
    InternetHandle session(::InternetOpenA(kHttpAgent, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
    const std::string encoded = EncodeUrl(url);
    if (session.Get() == nullptr || !(encoded.starts_with("http://") || encoded.starts_with("https://"))) {
        return {};
    }
    SetPatience(session.Get(), patience.silence);
    const Deadline deadline(session, patience.whole);
    constexpr DWORD kFromServer = INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE | INTERNET_FLAG_NO_UI;
    InternetHandle request(::InternetOpenUrlA(session.Get(), encoded.c_str(), nullptr, 0, kFromServer, 0));
    return request.Get() == nullptr ? HttpAnswer() : TakeAnswer(request.Get(), take);
}

std::string TextOfBytes(const std::string& bytes) {
    const int size = static_cast<int>(bytes.size());
    std::wstring wide(bytes.size(), L'\0');  // never more units than bytes
    const int length = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, wide.data(), size);
    return Narrow(std::wstring_view(wide).substr(0, static_cast<std::size_t>(length)));
}

}  // namespace tavrel::platform
