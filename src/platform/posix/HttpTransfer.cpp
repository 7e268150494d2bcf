#include "platform/HttpTransfer.h"

#include <curl/curl.h>
#include <exception>
#include <memory>

#include "platform/Url.h"

namespace tavrel::platform {
namespace {

constexpr long kMostRedirections = 10;
constexpr long kStatusOk = 200;

struct CurlFree {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

class Request {
  public:
    explicit Request(const HttpTaker& take) : take_(take) {}

    HttpAnswer Perform(const std::string& url, HttpPatience patience) {
        static const bool ready = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
        handle_.reset(ready ? curl_easy_init() : nullptr);
        headers_.reset(
            curl_slist_append(curl_slist_append(nullptr, "Cache-Control: no-cache"), "Pragma: no-cache"));
        const bool done =
            handle_ && headers_ && Prepare(url, patience) && curl_easy_perform(handle_.get()) == CURLE_OK;
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        return {.isWhole = done && Status() == kStatusOk, .saysItsLength = done && SaysItsLength()};
    }

  private:
    bool Prepare(const std::string& url, HttpPatience patience) {
        const auto set = [this](CURLoption option, auto value) {
            return curl_easy_setopt(handle_.get(), option, value) == CURLE_OK;
        };
        return set(CURLOPT_URL, EncodeUrl(url).c_str()) && set(CURLOPT_PROTOCOLS_STR, "http,https") &&
               set(CURLOPT_USERAGENT, kHttpAgent) && set(CURLOPT_HTTPHEADER, headers_.get()) &&
               set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1)) &&
               set(CURLOPT_FAILONERROR, 1L) && set(CURLOPT_FOLLOWLOCATION, 1L) &&
               set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https") && set(CURLOPT_MAXREDIRS, kMostRedirections) &&
               set(CURLOPT_CONNECTTIMEOUT, Seconds(patience.silence)) && set(CURLOPT_LOW_SPEED_LIMIT, 1L) &&
               set(CURLOPT_LOW_SPEED_TIME, Seconds(patience.silence)) &&
               set(CURLOPT_TIMEOUT, Seconds(patience.whole)) && set(CURLOPT_NOSIGNAL, 1L) &&
               set(CURLOPT_WRITEFUNCTION, &PassOn) && set(CURLOPT_WRITEDATA, this);
    }

    static long Seconds(std::chrono::seconds time) { return static_cast<long>(time.count()); }

    [[nodiscard]] long Status() const {
        long status = 0;
        curl_easy_getinfo(handle_.get(), CURLINFO_RESPONSE_CODE, &status);
        return status;
    }

    [[nodiscard]] bool SaysItsLength() const {
        curl_off_t length = -1;
        curl_easy_getinfo(handle_.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
        return length >= 0;
    }

    /// The library is C: an error waits until it has returned.
    static std::size_t PassOn(const char* bytes, std::size_t, std::size_t size, void* request) {
        auto& self = *static_cast<Request*>(request);
        try {
            return self.Status() == kStatusOk && self.take_(bytes, size) ? size : CURL_WRITEFUNC_ERROR;
        } catch (...) {
            self.failure_ = std::current_exception();
            return CURL_WRITEFUNC_ERROR;
        }
    }

    const HttpTaker& take_;
    std::unique_ptr<CURL, CurlFree> handle_;
    std::unique_ptr<curl_slist, CurlFree> headers_;
    std::exception_ptr failure_;
};

}  // namespace

HttpAnswer FetchFromServer(const std::string& url, HttpPatience patience, const HttpTaker& take) {
    return Request(take).Perform(url, patience);
}

std::string TextOfBytes(const std::string& bytes) {
    return bytes;
}

}  // namespace tavrel::platform
