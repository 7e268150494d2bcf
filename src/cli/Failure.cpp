#include "cli/Failure.h"

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <memory>
#include <new>

#include "cli/Output.h"
#include "report/DisplayText.h"
#include "text/Error.h"

namespace tavrel::cli {

namespace {

/// Memory for the message that there is none: given back when it is needed.
class Reserve {
  public:
    void Release() { memory_.reset(); }

  private:
    static constexpr std::size_t kSize = std::size_t{1} << 16;
    std::unique_ptr<char[]> memory_{new (std::nothrow) char[kSize]()};
};

void ComplainOf(std::int32_t number, const std::string& description) {
    Complain("오류 " + std::to_string(number) + ": " + description);
}

void ComplainOfNumber(std::int32_t number) {
    const ErrorText* text = FindErrorText(number);
    ComplainOf(number, text != nullptr ? std::string(text->korean) : std::string());
}

bool NobodyReads() {
#ifdef EPIPE
    return errno == EPIPE;
#else
    return false;
#endif
}

/// Called from a handler: says what is being handled.
void ComplainOfPresentException() {
    try {
        throw;
    } catch (const std::ios_base::failure&) {
        if (!NobodyReads()) {
            ComplainOfNumber(errors::kDeviceFault);
        }
    } catch (...) {
        const Error error = PresentError();
        ComplainOf(error.Number(), error.Description());
    }
}

/// The same when even the message finds no memory: a text that needs none.
void ComplainOrSayWhy() {
    try {
        ComplainOfPresentException();
    } catch (const std::bad_alloc&) {
        SayThatMemoryRanOut();
    }
}

}  // namespace

void Complain(std::string_view text) {
    // The line breaks are the message's own; every other control character may come out of a file, and is
    // shown as a picture so that it cannot command the terminal.
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('\n', start);
        end = end == std::string_view::npos ? text.size() : end;
        std::string_view line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        if (!line.empty()) {
            std::cerr << report::Printable(line) << '\n';
        }
        start = end + 1;
    }
    std::cerr.flush();
}

void SayThatMemoryRanOut() noexcept {
    std::fputs("오류 7: 메모리가 부족합니다.\n", stderr);
}

ExitCode RunGuarded(const std::function<ExitCode()>& work) {
    Reserve reserve;
    try {
        const ExitCode code = work();
        StandardOutput().flush();
        return code;
    } catch (...) {
        // The stream may be what has failed: flushed once more when the program ends, it must not throw
        // again.
        const int systemError = errno;
        reserve.Release();
        StandardOutput().exceptions(std::ios_base::goodbit);
        errno = systemError;
        ComplainOrSayWhy();
        return ExitCode::Failed;
    }
}

}  // namespace tavrel::cli
