#include "platform/HttpTransfer.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <memory>
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
constexpr DWORD kBufferSize = 64U << 10U;

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

/// What passes between the thread that asks the system and the one that waits: the system's own calls do not
/// keep to their time in every case, so the one that waits goes its way when the time is over, and the other
/// ends when its call returns.
class Transfer {
  public:
    /// Of the thread that asks.  False: nobody waits any more.
    bool Arrived(std::string piece) {
        const std::lock_guard lock(mutex_);
        pieces_.push_back(std::move(piece));
        changed_.notify_one();
        return !abandoned_;
    }
    void Ended(HttpAnswer answer) {
        const std::lock_guard lock(mutex_);
        answer_ = answer;
        changed_.notify_one();
    }

    /// Of the thread that waits.
    HttpAnswer Await(HttpPatience patience, const HttpTaker& take) {
        const auto end = std::chrono::steady_clock::now() + patience.whole;
        std::unique_lock lock(mutex_);
        for (;;) {
            const auto silent = std::chrono::steady_clock::now() + patience.silence;
            if (!changed_.wait_until(lock, std::min(silent, end),
                                     [this] { return !pieces_.empty() || answer_; })) {
                abandoned_ = true;
                return {};
            }
            if (pieces_.empty()) {
                return *answer_;
            }
            const std::string piece = std::move(pieces_.front());
            pieces_.pop_front();
            abandoned_ = true;  // should taking it fail
            if (!take(piece.data(), piece.size())) {
                return {};
            }
            abandoned_ = false;
        }
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::string> pieces_;
    std::optional<HttpAnswer> answer_;
    bool abandoned_ = false;
};

HttpAnswer TakeAnswer(HINTERNET request, Transfer& transfer) {
    if (NumberOf(request, HTTP_QUERY_STATUS_CODE) != kStatusOk) {
        return {};
    }
    const std::optional<DWORD> announced = NumberOf(request, HTTP_QUERY_CONTENT_LENGTH);
    std::uint64_t size = 0;
    std::string piece(kBufferSize, '\0');
    for (;;) {
        // What is there is asked for, so that a slow answer is taken as it comes.
        DWORD there = 0;
        DWORD count = 0;
        if (!::InternetQueryDataAvailable(request, &there, 0, 0) ||
            !::InternetReadFile(request, piece.data(), std::clamp<DWORD>(there, 1, kBufferSize), &count)) {
            return {};
        }
        if (count == 0) {
            return {.isWhole = !announced || size == *announced, .saysItsLength = announced.has_value()};
        }
        size += count;
        if (!transfer.Arrived(piece.substr(0, count))) {
            return {};
        }
    }
}

HttpAnswer Ask(const std::string& url, std::chrono::seconds silence, Transfer& transfer) {
    const InternetHandle session(
        ::InternetOpenA(kHttpAgent, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
    if (session.Get() == nullptr) {
        return {};
    }
    SetPatience(session.Get(), silence);
    constexpr DWORD kFromServer = INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE | INTERNET_FLAG_NO_UI;
    const InternetHandle request(::InternetOpenUrlA(session.Get(), url.c_str(), nullptr, 0, kFromServer, 0));
    return request.Get() == nullptr ? HttpAnswer() : TakeAnswer(request.Get(), transfer);
}

}  // namespace

HttpAnswer FetchFromServer(const std::string& url, HttpPatience patience, const HttpTaker& take) {
    const std::string encoded = EncodeUrl(url);
    if (!encoded.starts_with("http://") && !encoded.starts_with("https://")) {
        return {};
    }
    const auto transfer = std::make_shared<Transfer>();
    std::thread([transfer, encoded, patience] {
        transfer->Ended(Ask(encoded, patience.silence, *transfer));
    }).detach();
    return transfer->Await(patience, take);
}

std::string TextOfBytes(const std::string& bytes) {
    const int size = static_cast<int>(bytes.size());
    std::wstring wide(bytes.size(), L'\0');  // never more units than bytes
    const int length = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, wide.data(), size);
    return Narrow(std::wstring_view(wide).substr(0, static_cast<std::size_t>(length)));
}

}  // namespace tavrel::platform
